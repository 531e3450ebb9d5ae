// Tells, boundary by boundary through a stretch of text, from which places a run of the
// program can still be completed at the end of the stretch.

#ifndef MAILHEARTH_REGEX_ENGINE_VIABILITY_H
#define MAILHEARTH_REGEX_ENGINE_VIABILITY_H

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "Automaton.h"

inline namespace mailhearth {

namespace engine {

// The stretch is read backward, and what was seen is given out forward. The states of all
// boundaries would take memory in proportion to the text; so only those of one block are
// kept, and of the others a few spelt out from which the blocks are read once more: at the
// ends of each part of the whole, of the parts of the part in use, and so on down to a block.
// That reads each byte once for every level. A block has up to 4096 boundaries and a part up
// to 64 parts, so there are at most five levels; large programs, whose states may be large,
// make blocks and numbers of parts smaller, down to 16 and 2, and more levels.
class Viability {
 public:
  using StateId = Automaton::StateId;

  Viability(Program& program, Automaton& backward) : program_(program), backward_(backward) {}

  // Begins with the stretch from `start` to `end` of `text`, for `run`.
  void Begin(std::string_view text, std::size_t start, std::size_t end, Run run);

  // Returns the state of the backward automaton at the boundary `at`: its places are those
  // of the instructions that can take the byte behind the boundary, or at the end of the
  // stretch the end of the run. Needs: no lower `at` than before, within the stretch.
  [[nodiscard]] StateId At(std::size_t at) {
    if (at >= blockEnd_) _Load(at);
    return block_[at - blockStart_];
  }

 private:
  // A part of the stretch, and the state at its end.
  struct Part {
    std::size_t start;
    std::size_t end;
    State atEnd;
  };

  void _Load(std::size_t at);
  void _Divide(const Part& part);
  void _ReadBlock(std::size_t start, std::size_t end, StateId atEnd);

  Program& program_;
  Automaton& backward_;
  std::string_view text_;
  std::size_t last_ = 0;  // the end of the stretch
  std::size_t blockLength_ = 0;
  std::size_t fanOut_ = 0;
  std::vector<Part> parts_;  // still to come; the next one last
  std::vector<StateId> block_;
  std::size_t blockStart_ = 0;
  std::size_t blockEnd_ = 0;
};

}  // namespace engine

}  // namespace mailhearth

#endif  // MAILHEARTH_REGEX_ENGINE_VIABILITY_H
