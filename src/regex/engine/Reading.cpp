#include "Reading.h"

#include <utility>

inline namespace mailhearth {

namespace engine {

std::uint32_t Reading::_Compute(std::uint32_t byteClass) {
  if (!automaton_.Full()) return automaton_.Step(state_, byteClass);
  // The first drop may be due to earlier readings.
  direct_ = dropped_ && steps_ - stepsAtDrop_ < kFewSteps;
  dropped_ = true;
  stepsAtDrop_ = steps_;
  const std::uint32_t told = automaton_.Step(automaton_[state_], byteClass, next_);
  automaton_.Clear();
  std::swap(current_, next_);
  // Stepping directly, any state that is not dead serves as the sign that this one is not.
  return automaton_.Add(current_) | told;
}

std::size_t Reading::TakePlainStepsBack(std::string_view text, std::size_t start, std::size_t at) {
  if (direct_) return at;
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

std::uint32_t Reading::_StepDirectly(std::uint32_t byteClass) {
  const StateTable::View from{current_.places, current_.run, current_.behind, current_.searching};
  const std::uint32_t told = automaton_.Step(from, byteClass, next_);
  std::swap(current_, next_);
  if (current_.Dead()) state_ = Automaton::kDead;
  return state_ | told;
}

}  // namespace engine

}  // namespace mailhearth
