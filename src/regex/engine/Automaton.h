// Not installed. Lazy DFAs: deterministic automata built from the program, an NFA, by subset
// construction as texts ask for their states.
//
// A state of the DFA is a set of states of the NFA, the places at which the program can be
// between two bytes, together with the kind of the byte read last, for the assertions. States
// and transitions are computed at first use and cached. Cursor.h tells what happens when the
// cache is full. One class builds both the forward DFA, which finds the end of a match, and the
// reverse DFA, which reads from that end to its start.

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

// The cache of one automaton may take so many bytes. The budget is checked before a cursor adds
// a state, so the last few states may exceed it.
inline constexpr std::size_t kCacheBudget = std::size_t{1} << 20;

// A state of the DFA.
//
// Its places are those that the last byte led to, before splits, jumps and assertions are
// followed: assertions need the next byte, so the closure is taken with the next step. In a
// search, places are grouped by candidate match, that is by the offset where the match began:
// the earliest candidate first, with kMark after each but the last. A place stands with the
// earliest candidate that reaches it. The places of one candidate are in ascending order.
struct State {
  static constexpr Place kMark = kNone;

  std::vector<Place> places;
  Fragment fragment;                     // the part of the program that is run
  ByteKind previous = ByteKind::kOther;  // of the byte read last
  bool searching = false;                // whether a match may begin here or later

  [[nodiscard]] bool Dead() const { return places.empty() && !searching; }
};

// Stores each state once, under a number, from 0 on.
class StateTable {
 public:
  // A stored state; invalid after the next Add() or Clear().
  struct View {
    std::span<const Place> places;
    Fragment fragment;
    ByteKind previous;
    bool searching;

    [[nodiscard]] State ToState() const {
      return {{places.begin(), places.end()}, fragment, previous, searching};
    }
  };

  // Returns the number of `state`, storing it if it is new.
  std::uint32_t Add(const State& state);

  [[nodiscard]] View operator[](std::uint32_t number) const;
  [[nodiscard]] std::uint32_t Count() const { return static_cast<std::uint32_t>(entries_.size()); }
  void Clear();

  // Memory in use, in bytes.
  [[nodiscard]] std::size_t Size() const;

 private:
  struct Entry {
    std::uint32_t start;  // in places_
    std::uint32_t count;
    Fragment fragment;
    std::uint32_t hash;
    ByteKind previous;
    bool searching;
  };

  [[nodiscard]] bool _Equal(const Entry& entry, const State& state, std::uint32_t hash) const;
  void _Grow();

  std::vector<Place> places_;
  std::vector<Entry> entries_;
  std::vector<std::uint32_t> slots_;  // open addressing: number + 1, 0 if free
};

// A set of places that is emptied in constant time.
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

// The epsilon closure: follows splits, jumps and the assertions that hold between two bytes.
class Closure {
 public:
  explicit Closure(Program& program) : program_(program) {}

  // Begins anew at a boundary between bytes of these kinds.
  void Begin(ByteKind left, ByteKind right) {
    left_ = left;
    right_ = right;
    reached_.Reset(std::size_t{program_.End()} + 1);
  }

  // Follows the program forward from `from`, a place in `fragment`. Adds to `consuming` the
  // byte-consuming instructions that it reaches, if they are new since Begin(). Returns whether
  // it reaches the end of the fragment, which is not followed further.
  bool Forward(Place from, Fragment fragment, std::vector<Place>& consuming);

  // The same in reverse, from `from` towards the start of the fragment: adds the instructions
  // that can consume the byte on the left. Jumps into the fragment from outside are ignored.
  // Returns whether it reaches the start of the fragment.
  bool Reverse(Place from, Fragment fragment, std::vector<Place>& consuming);

  // Whether a place was reached since Begin(). Needs: a place in the fragment or at its end.
  [[nodiscard]] bool Reached(Place place) const { return reached_.Contains(place); }

 private:
  bool _Pop(Place& place);

  Program& program_;
  PlaceSet reached_;
  std::vector<Place> stack_;
  ByteKind left_ = ByteKind::kOther;
  ByteKind right_ = ByteKind::kOther;
};

enum class Direction : std::uint8_t { kForward, kReverse };

// A DFA that is built lazily and reads in one direction. Each state has a row of transitions in
// one table, and the offset of the row is the id of the state; so a step is one look-up.
class Automaton {
 public:
  using StateId = std::uint32_t;

  // A step is the id of the next state with flags:
  //
  //   kMatched     the fragment was complete at the boundary before the byte; assertions need
  //                that byte, so matches are reported one byte late
  //   kBeganLater  searches only: what matched, or if nothing did what lives on, began later than
  //                the earliest candidate of the state
  //
  // kUnknown is a step that has not been computed.
  static constexpr std::uint32_t kMatched = 0x80000000;
  static constexpr std::uint32_t kBeganLater = 0x40000000;
  static constexpr std::uint32_t kUnknown = 0xFFFFFFFF;
  [[nodiscard]] static StateId StateOf(std::uint32_t step) { return step & (kBeganLater - 1); }
  static constexpr StateId kDead = 0;

  // Whether a step is known, has no flag and does not lead to the dead state.
  [[nodiscard]] static bool Plain(std::uint32_t step) { return step - 1 < kBeganLater - 1; }

  Automaton(Program& program, Direction direction);

  // Returns the start state for `fragment`, with the kind of the byte that stands before the
  // text, or after it for a reverse DFA. A forward DFA that is `searching` lets matches begin
  // at later boundaries too: it is unanchored.
  [[nodiscard]] StateId Start(Fragment fragment, ByteKind previous, bool searching);

  // The transition table: the step from `state` on a byte class is at state + class. Invalid
  // after the next Step(), Start(), Add() or SkipLoop().
  [[nodiscard]] const std::uint32_t* Table() const { return table_.data(); }

  // The class of each byte.
  [[nodiscard]] const std::uint8_t* Classes() const { return program_.Classes().data(); }

  // Returns the step from `state`, computing and caching it if it is unknown.
  std::uint32_t Step(StateId state, std::uint32_t byteClass);

  // Computes a step without the cache: sets `to` to the next state and returns the flags.
  std::uint32_t Step(const StateTable::View& from, std::uint32_t byteClass, State& to);

  [[nodiscard]] StateTable::View operator[](StateId state) const {
    return states_[state / stride_];
  }
  StateId Add(const State& state);

  // Skips bytes of `text` from offset `at` on that keep a forward DFA in `state`, by vectorised
  // search or by a shift-based DFA. Returns the offset where stepping has to go on, in the state
  // that `state` is set to; it may have been left and entered again on the way. Returns `at` if
  // too many bytes lead out of the state.
  std::size_t SkipLoop(StateId& state, std::string_view text, std::size_t at);

  // Whether the cache has used up its budget. The caller clears it, knowing which states it
  // still needs.
  [[nodiscard]] bool Full() const;
  void Clear();

  // Counts calls of Clear(), each of which invalidates all state ids.
  [[nodiscard]] std::size_t Generation() const { return generation_; }

  // Whether matches can only begin at the edge of the text where reading begins: its start for
  // a forward DFA, its end for a reverse one.
  [[nodiscard]] bool Anchored() const { return anchored_; }

 private:
  // The states that a search spends most of its time in, with a shift-based DFA of them.
  struct HotStates {
    std::vector<StateId> states;  // by their number in the shift-based DFA
    ShiftSearch dfa;
  };

  // How to skip bytes in a state that loops to itself on all bytes but a few.
  struct Loop {
    ByteSearch leaving;
    bool returns;                    // whether many bytes after a leaving one lead back
    std::unique_ptr<HotStates> hot;  // used in long texts, built at first use
  };

  std::uint32_t _StepForward(const StateTable::View& from, std::uint32_t byteClass, State& to);
  std::uint32_t _StepReverse(const StateTable::View& from, std::uint32_t byteClass, State& to);
  void _Take(std::uint32_t byteClass, Place offset, State& to);
  [[nodiscard]] bool _CanBeginLater();
  std::uint32_t _FindLoop(StateId state);
  HotStates _FindHotStates(StateId state);
  FewBytes _BytesLeaving(StateId state);
  FewBytes _SecondBytes(StateId state, const FewBytes& leaving);

  // The last entry of a row, after its transitions: the index into loops_, kNoLoop if the state
  // has no loop worth it, kUnknown before that was looked for.
  static constexpr std::uint32_t kNoLoop = 0x7FFFFFFF;

  // Looking for a loop computes a step for every class; larger programs do without.
  static constexpr std::uint32_t kMostClasses = 32;
  static constexpr Place kMostPlaces = 512;

  Program& program_;
  const Direction direction_;
  const std::uint32_t stride_;
  StateTable states_;
  std::vector<std::uint32_t> table_;
  std::vector<Loop> loops_;
  Closure closure_;
  std::vector<Place> consuming_;
  State next_;
  std::array<StateId, 3> starts_{};  // of searches, by what is previous them
  std::size_t generation_ = 0;
  bool anchored_ = false;
};

}  // namespace engine

}  // namespace mailhearth

#endif  // MAILHEARTH_REGEX_ENGINE_AUTOMATON_H
