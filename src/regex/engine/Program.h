// The program of a pattern: a nondeterministic automaton as a row of instructions.
//
// A place is a position in the row; the place behind the last instruction is the end. The
// code of each node of the tree is one run of instructions, entered at its first place and
// left at the place behind its last one, so any node can be run for itself.

#ifndef MAILHEARTH_REGEX_ENGINE_PROGRAM_H
#define MAILHEARTH_REGEX_ENGINE_PROGRAM_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "Syntax.h"

inline namespace mailhearth {

namespace engine {

using Place = std::uint32_t;

enum class Operation : std::uint8_t {
  kByte,    // matches the byte `argument` and goes on
  kSet,     // matches a byte of the set with that index and goes on
  kAssert,  // goes on where that Assertion holds
  kSplit,   // goes on, and goes to the place `argument` as well
  kJump,    // goes to the place `argument`
};

struct Instruction {
  Operation operation;
  std::uint32_t argument;
};

// A run of instructions: the code of a node.
struct Run {
  Place start = 0;
  Place end = 0;  // behind the last instruction

  bool operator==(const Run&) const = default;
};

// What stands on one side of a place in the text, as far as assertions can see.
enum class Neighbour : std::uint8_t { kEdge, kOther, kWord };

class Program {
 public:
  // A program has at most so many instructions: a search may take a step for each of them
  // at each byte.
  static constexpr std::size_t kMaxInstructions = std::size_t{1} << 15;

  // Makes the program of `tree`, whose nodes learn their size and width.
  // Returns 0, or REG_ESPACE for a program that would be too long.
  int Make(Tree& tree);

  [[nodiscard]] Place End() const { return static_cast<Place>(code_.size()); }
  [[nodiscard]] const Instruction& operator[](Place place) const { return code_[place]; }

  // Bytes between which no instruction makes a difference are one class; the classes count
  // from 0, and the one behind the last stands for the edge of the text.
  [[nodiscard]] const std::array<std::uint8_t, 256>& Classes() const { return classOf_; }
  [[nodiscard]] std::uint32_t EdgeClass() const { return classes_; }

  [[nodiscard]] std::uint32_t ClassOf(char byte) const {
    return classOf_[static_cast<unsigned char>(byte)];
  }

  // The class of the byte before or behind a boundary in `text`.
  [[nodiscard]] std::uint32_t ClassBefore(std::string_view text, std::size_t at) const {
    return at == 0 ? EdgeClass() : ClassOf(text[at - 1]);
  }
  [[nodiscard]] std::uint32_t ClassBehind(std::string_view text, std::size_t at) const {
    return at == text.size() ? EdgeClass() : ClassOf(text[at]);
  }

  // What assertions see of a byte of a class, or of the edge.
  [[nodiscard]] Neighbour NeighbourOf(std::uint32_t byteClass) const {
    return neighbourOf_[byteClass];
  }

  // Whether there is an assertion of the text's end.
  [[nodiscard]] bool SeesEnd() const { return seesEnd_; }

  // Whether there are word boundaries.
  [[nodiscard]] bool SeesWords() const { return seesWords_; }

  // Whether the instruction at `place` matches the bytes of a class, not the edge's.
  [[nodiscard]] bool Matches(Place place, std::uint32_t byteClass) const {
    const Instruction& instruction = code_[place];
    const unsigned char byte = sampleOf_[byteClass];
    return instruction.operation == Operation::kByte ? instruction.argument == byte
                                                     : sets_[instruction.argument][byte];
  }

  // Whether the assertion `which` holds between two neighbours.
  [[nodiscard]] static bool Holds(std::uint32_t which, Neighbour left, Neighbour right);

  // The places of the splits and jumps that go to `place`. Makes a table at its first call.
  [[nodiscard]] std::span<const Place> Jumps(Place place);

 private:
  class Writer;

  void _MakeClasses();
  void _MakeJumps();

  std::vector<Instruction> code_;
  std::vector<ByteSet> sets_;

  std::array<std::uint8_t, 256> classOf_{};
  std::array<std::uint8_t, 256> sampleOf_{};  // a byte of each class
  std::array<Neighbour, 257> neighbourOf_{};
  std::uint32_t classes_ = 0;
  bool seesWords_ = false;
  bool seesEnd_ = false;

  std::vector<Place> jumps_;               // grouped by where they go
  std::vector<std::uint32_t> jumpsStart_;  // of each place in jumps_; empty until needed
};

}  // namespace engine

}  // namespace mailhearth

#endif  // MAILHEARTH_REGEX_ENGINE_PROGRAM_H
