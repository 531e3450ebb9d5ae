// Not installed. The program of a pattern: its NFA as a sequence of instructions, by Thompson's
// construction, and the classes of bytes that it tells apart.
//
// A place, the index of an instruction, is a state of the NFA; the place after the last
// instruction is the accepting one. The code of each node of the tree is one contiguous
// fragment, entered at its first place and left at the place after its last one, so any node
// can be run on its own.
//
//   a*       0 split 3; 1 byte a; 2 jump 0
//   (ab|c)   0 split 4; 1 byte a; 2 byte b; 3 jump 5; 4 byte c

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
  kByte,    // consumes the byte `argument`
  kSet,     // consumes a byte of the set with index `argument`
  kAssert,  // goes on if the Assertion `argument` holds
  kSplit,   // goes on, and to the place `argument` too
  kJump,    // goes to the place `argument`
};

struct Instruction {
  Operation operation;
  std::uint32_t argument;
};

// The code of a node.
struct Fragment {
  Place start = 0;
  Place end = 0;  // after the last instruction

  bool operator==(const Fragment&) const = default;
};

// What assertions see of the byte on one side of a boundary. kEdge is the start or end of the
// text; kWord is told from kOther only if the program has word boundaries.
enum class ByteKind : std::uint8_t { kEdge, kOther, kWord };

class Program {
 public:
  // The maximal number of instructions. A search may take a step for each of them at each byte.
  static constexpr std::size_t kMaxInstructions = std::size_t{1} << 15;

  // Compiles `tree` and sets the size and width of its nodes.
  // Returns 0, or REG_ESPACE if the program would be too long.
  int Compile(Tree& tree);

  [[nodiscard]] Place End() const { return static_cast<Place>(code_.size()); }
  [[nodiscard]] const Instruction& operator[](Place place) const { return code_[place]; }

  // The byte classes: bytes that no instruction tells apart share a class. Classes count from 0;
  // one more stands for the edge of the text.
  [[nodiscard]] const std::array<std::uint8_t, 256>& Classes() const { return classOf_; }
  [[nodiscard]] std::uint32_t EdgeClass() const { return classes_; }

  [[nodiscard]] std::uint32_t ClassOf(char byte) const {
    return classOf_[static_cast<unsigned char>(byte)];
  }

  // The class of the byte before or after the boundary at an offset of `text`.
  [[nodiscard]] std::uint32_t ClassBefore(std::string_view text, std::size_t at) const {
    return at == 0 ? EdgeClass() : ClassOf(text[at - 1]);
  }
  [[nodiscard]] std::uint32_t ClassAfter(std::string_view text, std::size_t at) const {
    return at == text.size() ? EdgeClass() : ClassOf(text[at]);
  }

  [[nodiscard]] ByteKind KindOf(std::uint32_t byteClass) const { return kindOf_[byteClass]; }

  // Whether the program has a "$".
  [[nodiscard]] bool SeesEnd() const { return seesEnd_; }

  // Whether the program has word boundaries.
  [[nodiscard]] bool SeesWords() const { return seesWords_; }

  // Whether the instruction at `place` consumes bytes of a class. Needs: an instruction that
  // consumes bytes, and not the edge class.
  [[nodiscard]] bool Matches(Place place, std::uint32_t byteClass) const {
    const Instruction& instruction = code_[place];
    const unsigned char byte = representative_[byteClass];
    return instruction.operation == Operation::kByte ? instruction.argument == byte
                                                     : sets_[instruction.argument][byte];
  }

  // Whether the assertion `which` holds between bytes of these kinds.
  [[nodiscard]] static bool Holds(std::uint32_t which, ByteKind left, ByteKind right);

  // Returns the places of the splits and jumps that go to `place`, for following the program in
  // reverse. The first call builds a table of them all.
  [[nodiscard]] std::span<const Place> JumpsTo(Place place);

 private:
  class Writer;

  void _MakeClasses();
  void _MakeJumps();

  std::vector<Instruction> code_;
  std::vector<ByteSet> sets_;

  std::array<std::uint8_t, 256> classOf_{};
  std::array<std::uint8_t, 256> representative_{};  // one byte of each class
  std::array<ByteKind, 257> kindOf_{};
  std::uint32_t classes_ = 0;
  bool seesWords_ = false;
  bool seesEnd_ = false;

  std::vector<Place> jumps_;  // sorted by where they go
  std::vector<std::uint32_t>
      jumpsStart_;  // by place: its first entry in jumps_; empty until needed
};

}  // namespace engine

}  // namespace mailhearth

#endif  // MAILHEARTH_REGEX_ENGINE_PROGRAM_H
