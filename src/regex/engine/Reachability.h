// Not installed. Reverse reachability: for each boundary of a range of text, the live places of the
// NFA, those from which the end of a fragment can still be reached exactly at the end of the range.

#ifndef MAILHEARTH_REGEX_ENGINE_REACHABILITY_H
#define MAILHEARTH_REGEX_ENGINE_REACHABILITY_H

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "Automaton.h"

inline namespace mailhearth {

namespace engine {

// A reverse DFA reads the range backward, and its states are the sets of live places; they are
// then needed forward. To store one for each boundary would take memory proportional to the
// text. So only one block of boundaries is stored, and checkpoints, copies of states from which
// the other blocks can be read again. The range is divided into parts with a checkpoint at the end
// of each, the part in use into smaller parts, and so on down to a block. Each level reads each
// byte once. A block has up to 4096 boundaries and a part is divided into up to 64, so there are
// at most five levels. Large programs, whose states may be large, have smaller blocks and fewer
// parts, down to 16 and 2, and more levels.
class Reachability {
 public:
  using StateId = Automaton::StateId;

  Reachability(Program& program, Automaton& reverse) : program_(program), reverse_(reverse) {}

  // Begins with the range of `text` from `start` to `end`, for `fragment`.
  void Begin(std::string_view text, std::size_t start, std::size_t end, Fragment fragment);

  // Returns the state of the reverse DFA at the boundary `at`. Its places are the live
  // instructions that consume the byte after the boundary; at the end of the range, the end of
  // the fragment. Needs: an `at` within the range, not before that of the last call.
  [[nodiscard]] StateId At(std::size_t at) {
    if (at >= blockEnd_) _Load(at);
    return block_[at - blockStart_];
  }

 private:
  // A part of the range with its checkpoint.
  struct Part {
    std::size_t start;
    std::size_t end;
    State atEnd;
  };

  void _Load(std::size_t at);
  void _Divide(const Part& part);
  void _ReadBlock(std::size_t start, std::size_t end, StateId atEnd);

  Program& program_;
  Automaton& reverse_;
  std::string_view text_;
  std::size_t last_ = 0;  // the end of the range
  std::size_t blockLength_ = 0;
  std::size_t fanOut_ = 0;
  std::vector<Part> parts_;  // those not yet in use; the next one is the last
  std::vector<StateId> block_;
  std::size_t blockStart_ = 0;
  std::size_t blockEnd_ = 0;
};

}  // namespace engine

}  // namespace mailhearth

#endif  // MAILHEARTH_REGEX_ENGINE_REACHABILITY_H
