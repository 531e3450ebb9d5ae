// Deterministic automata over a program, built as texts ask for them.
//
// A state is the set of places at which a run of the program can be between two bytes, and
// what the automaton remembers of the byte that it took last. States and the steps between
// them are computed at first use and kept; when they fill the budget all are dropped, and
// where that does not help the automaton is stepped without keeping anything.

#ifndef MAILHEARTH_REGEX_ENGINE_AUTOMATON_H
#define MAILHEARTH_REGEX_ENGINE_AUTOMATON_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "ByteSearch.h"
#include "Program.h"
#include "ShiftSearch.h"

inline namespace mailhearth {

namespace engine {

// Memory that the kept states of one automaton may take, in bytes. It is looked at before a
// state is added in the course of a reading, so the last few may exceed it.
inline constexpr std::size_t kCacheBudget = std::size_t{1} << 20;

// A state, spelt out.
//
// The places are those where a byte has just been taken, before splits, jumps and
// assertions are followed. A search keeps them in groups, one for each offset at which a
// match may have begun, the earliest first, with kGroupEnd behind each group but the last;
// a place stands in the first group that reaches it. Within a group they are in order.
struct State {
  static constexpr Place kGroupEnd = kNone;

  std::vector<Place> places;
  Run run;                               // the part of the program that is run
  Neighbour behind = Neighbour::kOther;  // what stands on the side we come from
  bool searching = false;                // whether a match may begin from here on

  [[nodiscard]] bool Dead() const { return places.empty() && !searching; }
};

// States, each kept once and known by its number, from 0 on.
class StateTable {
 public:
  // A kept state; ends with the next Add() or Clear().
  struct View {
    std::span<const Place> places;
    Run run;
    Neighbour behind;
    bool searching;

    [[nodiscard]] State Spell() const {
      return {{places.begin(), places.end()}, run, behind, searching};
    }
  };

  // Returns the number of `state`, a new one if it has none.
  std::uint32_t Add(const State& state);

  [[nodiscard]] View operator[](std::uint32_t number) const;
  [[nodiscard]] std::uint32_t Count() const { return static_cast<std::uint32_t>(kept_.size()); }
  void Clear();

  // Memory in use, in bytes.
  [[nodiscard]] std::size_t Size() const;

 private:
  struct Kept {
    std::uint32_t start;  // in places_
    std::uint32_t count;
    Run run;
    std::uint32_t hash;
    Neighbour behind;
    bool searching;
  };

  [[nodiscard]] bool _Equal(const Kept& kept, const State& state, std::uint32_t hash) const;
  void _Grow();

  std::vector<Place> places_;
  std::vector<Kept> kept_;
  std::vector<std::uint32_t> slots_;  // open hashing: number + 1, 0 when free
};

// A set of places that empties at once.
class PlaceSet {
 public:
  void Reset(std::size_t places) {
    if (marks_.size() < places) marks_.resize(places, 0);
    if (++mark_ != 0) return;
    marks_.assign(marks_.size(), 0);
    mark_ = 1;
  }
  // Returns whether the place is new.
  bool Insert(Place place) {
    if (marks_[place] == mark_) return false;
    marks_[place] = mark_;
    return true;
  }
  [[nodiscard]] bool Contains(Place place) const { return marks_[place] == mark_; }

 private:
  std::vector<std::uint32_t> marks_;
  std::uint32_t mark_ = 0;
};

// Follows splits, jumps and the assertions that hold between two bytes.
class Closure {
 public:
  explicit Closure(Program& program) : program_(program) {}

  // Begins at a boundary with these neighbours, nothing reached yet.
  void Begin(Neighbour left, Neighbour right) {
    left_ = left;
    right_ = right;
    reached_.Reset(std::size_t{program_.End()} + 1);
  }

  // Adds to `taking` the places, new since Begin(), from which a byte is taken next, going
  // forward from `from`, a place in `run`; the code of a node is left at its end only.
  // Returns whether the end of `run` is reached.
  bool Forward(Place from, Run run, std::vector<Place>& taking);

  // The same going backward; the places in `taking` are those of the instructions that can
  // take the byte on the left. What leads into `run` from outside is not followed. Returns
  // whether the start of `run` is reached.
  bool Backward(Place from, Run run, std::vector<Place>& taking);

  // Whether a place was reached since Begin(). Needs: it is in the run, or at its end.
  [[nodiscard]] bool Reached(Place place) const { return reached_.Contains(place); }

 private:
  bool _TakeOpen(Place& place);

  Program& program_;
  PlaceSet reached_;
  std::vector<Place> open_;
  Neighbour left_ = Neighbour::kOther;
  Neighbour right_ = Neighbour::kOther;
};

enum class Direction : std::uint8_t { kForward, kBackward };

// The automaton that reads a text in one direction. Each state has a row of steps in one
// table and is known by where the row begins, so that a step costs one look-up.
class Automaton {
 public:
  using StateId = std::uint32_t;

  // A step is the state that it leads to, together with what is to be told of it:
  //
  //   kMatched  the run of the program was complete at the boundary before the byte
  //   kLost     in a search, this match or what goes on has not begun where the first group
  //             of the state has: another one is first now
  //
  // kUnknown is a step that has yet to be computed.
  static constexpr std::uint32_t kMatched = 0x80000000;
  static constexpr std::uint32_t kLost = 0x40000000;
  static constexpr std::uint32_t kUnknown = 0xFFFFFFFF;
  [[nodiscard]] static StateId StateOf(std::uint32_t step) { return step & (kLost - 1); }
  static constexpr StateId kDead = 0;

  // Whether a step is known, leads on and tells nothing.
  [[nodiscard]] static bool Plain(std::uint32_t step) { return step - 1 < kLost - 1; }

  Automaton(Program& program, Direction direction);

  // Returns the state at the boundary where reading begins: going forward, at the start of
  // `run`; backward, at its end. A forward automaton that is `searching` lets matches begin
  // at later boundaries too.
  [[nodiscard]] StateId Start(Run run, Neighbour behind, bool searching);

  // The steps of all states: that from `state` with a byte of a class stands at state + class.
  // Ends with the next call of Step(), Start() or Add().
  [[nodiscard]] const std::uint32_t* Table() const { return table_.data(); }

  // The classes of bytes, by byte.
  [[nodiscard]] const std::uint8_t* Classes() const { return program_.Classes().data(); }

  // Returns the step from `state`, computing it where it is unknown.
  std::uint32_t Step(StateId state, std::uint32_t byteClass);

  // Computes the step from one spelt-out state to another and keeps nothing. Returns what
  // is to be told of it.
  std::uint32_t Step(const StateTable::View& from, std::uint32_t byteClass, State& to);

  [[nodiscard]] StateTable::View operator[](StateId state) const {
    return states_[state / stride_];
  }
  StateId Add(const State& state);

  // Returns a place from `at` on, or the end of the text, up to which the bytes lead from
  // `state` back to it, or to where that makes no difference; or to another state, which
  // `state` is set to. Where few bytes lead away this takes no stepping; else the answer is
  // `at`.
  std::size_t SkipLoop(StateId& state, std::string_view text, std::size_t at);

  // Whether the budget is used up. Dropping the states is left to the caller, who knows
  // which of them are still needed.
  [[nodiscard]] bool Full() const;
  void Clear();

  // How often the states were dropped: their numbers change with that.
  [[nodiscard]] std::size_t Drops() const { return drops_; }

  // Whether a match can only begin where reading begins, at that edge of the text.
  [[nodiscard]] bool Anchored() const { return anchored_; }

 private:
  // Some states, and the steps between them.
  struct Neighbourhood {
    std::vector<StateId> states;
    ShiftSearch steps;
  };

  // A state that few bytes lead away from.
  struct Loop {
    ByteSearch leaving;
    bool returns;  // of the bytes that lead away, many may be followed by ones that lead back
    std::unique_ptr<Neighbourhood> around;  // used in long texts, and made then
  };

  std::uint32_t _StepForward(const StateTable::View& from, std::uint32_t byteClass, State& to);
  std::uint32_t _StepBackward(const StateTable::View& from, std::uint32_t byteClass, State& to);
  void _Take(std::uint32_t byteClass, Place offset, State& to);
  [[nodiscard]] bool _CanBeginLater();
  std::uint32_t _FindLoop(StateId state);
  Neighbourhood _FindNeighbourhood(StateId state);
  FewBytes _BytesLeaving(StateId state);
  FewBytes _BytesBehind(StateId state, const FewBytes& leaving);

  // What a row has behind its steps, kUnknown at first: the index in loops_ of the search for
  // where the state is left, or kNoLoop.
  static constexpr std::uint32_t kNoLoop = 0x7FFFFFFF;

  // Of a larger program the steps to look at for a loop would be too many.
  static constexpr std::uint32_t kMostClasses = 32;
  static constexpr Place kMostPlaces = 512;

  Program& program_;
  const Direction direction_;
  const std::uint32_t stride_;
  StateTable states_;
  std::vector<std::uint32_t> table_;
  std::vector<Loop> loops_;
  Closure closure_;
  std::vector<Place> taking_;
  State next_;
  std::array<StateId, 3> starts_{};  // of searches, by what is behind them
  std::size_t drops_ = 0;
  bool anchored_ = false;
};

}  // namespace engine

}  // namespace mailhearth

#endif  // MAILHEARTH_REGEX_ENGINE_AUTOMATON_H
