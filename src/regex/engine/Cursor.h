// Not installed. A cursor steps a lazy DFA through one text and keeps its cache within the budget.
// When the cache is full, it is cleared; if the states filled it again after too few steps to be
// worth caching, the cursor steps without it for the rest of the text, as an NFA simulation does.

#ifndef MAILHEARTH_REGEX_ENGINE_CURSOR_H
#define MAILHEARTH_REGEX_ENGINE_CURSOR_H

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "Automaton.h"

inline namespace mailhearth {

namespace engine {

class Cursor {
 public:
  using StateId = Automaton::StateId;

  Cursor(Automaton& automaton, StateId start) : automaton_(automaton), state_(start) {}

  // Takes a step on a byte class, or on the edge of the text. Returns the step, whose flags
  // tell of the boundary before the byte.
  std::uint32_t Step(std::uint32_t byteClass) {
    ++steps_;
    if (uncached_) return _StepUncached(byteClass);
    std::uint32_t step = automaton_.Table()[state_ + byteClass];
    if (step == Automaton::kUnknown) step = _Compute(byteClass);
    state_ = Automaton::StateOf(step);
    return step;
  }

  // For a reverse DFA: takes plain, cached steps on the bytes of `text` from offset `at` back to
  // `start` at most. Returns the offset where they end.
  std::size_t TakePlainStepsBack(std::string_view text, std::size_t start, std::size_t at);

  // Whether no match can follow.
  [[nodiscard]] bool Dead() const { return state_ == Automaton::kDead; }

  // Whether the cursor uses the cache. Then a caller may step from State() through the
  // transition table by itself, and tells by MoveTo() where it got in how many steps.
  [[nodiscard]] bool Cached() const { return !uncached_; }
  [[nodiscard]] StateId State() const { return state_; }
  void MoveTo(StateId state, std::size_t steps) {
    state_ = state;
    steps_ += steps;
  }

  // Returns a copy of the current state.
  [[nodiscard]] engine::State ToState() const {
    return uncached_ ? current_ : automaton_[state_].ToState();
  }

 private:
  // A cleared cache is worth filling again if it lasted for so many steps.
  static constexpr std::size_t kFewSteps = std::size_t{1} << 16;

  std::uint32_t _Compute(std::uint32_t byteClass);
  std::uint32_t _StepUncached(std::uint32_t byteClass);

  Automaton& automaton_;
  StateId state_;
  bool uncached_ = false;
  bool cleared_ = false;
  std::size_t steps_ = 0;
  std::size_t stepsAtClear_ = 0;
  engine::State current_;  // this and the next one are used without the cache
  engine::State next_;
};

}  // namespace engine

}  // namespace mailhearth

#endif  // MAILHEARTH_REGEX_ENGINE_CURSOR_H
