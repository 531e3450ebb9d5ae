// A cached step is a look-up, in the header. Here are the steps that have to be computed, the
// clearing of a full cache, and stepping without it.

#include "Cursor.h"

#include <utility>

inline namespace mailhearth {

namespace engine {

std::uint32_t Cursor::_Compute(std::uint32_t byteClass) {
  if (!automaton_.Full()) return automaton_.Step(state_, byteClass);
  // Earlier texts may have filled the cache, so the first time does not count.
  uncached_ = cleared_ && steps_ - stepsAtClear_ < kFewSteps;
  cleared_ = true;
  stepsAtClear_ = steps_;
  const std::uint32_t flags = automaton_.Step(automaton_[state_], byteClass, next_);
  automaton_.Clear();
  std::swap(current_, next_);
  // Without the cache, any state but the dead one stands for being alive.
  return automaton_.Add(current_) | flags;
}

std::size_t Cursor::TakePlainStepsBack(std::string_view text, std::size_t start, std::size_t at) {
  if (uncached_) return at;
  const std::uint32_t* const table = automaton_.Table();
  const std::uint8_t* const classes = automaton_.Classes();
  const std::size_t from = at;
  for (; at > start; --at) {
    const std::uint32_t step = table[state_ + classes[static_cast<unsigned char>(text[at - 1])]];
    if (!Automaton::Plain(step)) break;
    state_ = step;
  }
  steps_ += from - at;
  return at;
}

std::uint32_t Cursor::_StepUncached(std::uint32_t byteClass) {
  const StateTable::View from{current_.places, current_.fragment, current_.previous,
                              current_.searching};
  const std::uint32_t flags = automaton_.Step(from, byteClass, next_);
  std::swap(current_, next_);
  if (current_.Dead()) state_ = Automaton::kDead;
  return state_ | flags;
}

}  // namespace engine

}  // namespace mailhearth
