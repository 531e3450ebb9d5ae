// One reading of a text by an automaton.

#ifndef MAILHEARTH_REGEX_ENGINE_READING_H
#define MAILHEARTH_REGEX_ENGINE_READING_H

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "Automaton.h"

inline namespace mailhearth {

namespace engine {

// Steps an automaton and keeps to its budget: when that is used up the states are dropped,
// and if they were hardly used the rest of the text is read without keeping any.
class Reading {
 public:
  using StateId = Automaton::StateId;

  Reading(Automaton& automaton, StateId start) : automaton_(automaton), state_(start) {}

  // Takes a byte of a class, or the edge of the text. Returns the step, which tells about
  // the boundary before the byte.
  std::uint32_t Step(std::uint32_t byteClass) {
    ++steps_;
    if (direct_) return _StepDirectly(byteClass);
    std::uint32_t step = automaton_.Table()[state_ + byteClass];
    if (step == Automaton::kUnknown) step = _Compute(byteClass);
    state_ = Automaton::StateOf(step);
    return step;
  }

  // Going backward from `at`, takes the bytes of `text` whose steps are known and tell
  // nothing, to `start` at most. Returns the boundary where they end.
  std::size_t TakePlainStepsBack(std::string_view text, std::size_t start, std::size_t at);

  // Whether nothing can match any more.
  [[nodiscard]] bool Dead() const { return state_ == Automaton::kDead; }

  // Whether the steps go through the automaton's table; then State() is where they are,
  // and a caller who follows the table himself tells where he got with how many bytes.
  [[nodiscard]] bool Kept() const { return !direct_; }
  [[nodiscard]] StateId State() const { return state_; }
  void MoveTo(StateId state, std::size_t steps) {
    state_ = state;
    steps_ += steps;
  }

  // Returns where the reading is, spelt out.
  [[nodiscard]] engine::State Spell() const {
    return direct_ ? current_ : automaton_[state_].Spell();
  }

 private:
  // States are worth keeping if they last for so many steps.
  static constexpr std::size_t kFewSteps = std::size_t{1} << 16;

  std::uint32_t _Compute(std::uint32_t byteClass);
  std::uint32_t _StepDirectly(std::uint32_t byteClass);

  Automaton& automaton_;
  StateId state_;
  bool direct_ = false;
  bool dropped_ = false;
  std::size_t steps_ = 0;
  std::size_t stepsAtDrop_ = 0;
  engine::State current_;  // these two when stepping directly
  engine::State next_;
};

}  // namespace engine

}  // namespace mailhearth

#endif  // MAILHEARTH_REGEX_ENGINE_READING_H
