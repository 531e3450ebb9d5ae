// Lazy DFAs: their states, their steps, and what is computed when. The patterns' programs stand
// in Program_test.cpp or beside them.

#include "regex/engine/Automaton.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "support/ExactInput.h"
#include "support/RegexDump.h"

namespace {

using mailhearth::ComputeStates;
using mailhearth::DumpState;
using mailhearth::DumpStates;
using mailhearth::RegexParts;
using mailhearth::engine::Automaton;
using mailhearth::engine::ByteKind;
using mailhearth::engine::Closure;
using mailhearth::engine::Direction;
using mailhearth::engine::Fragment;
using mailhearth::engine::Place;
using mailhearth::engine::PlaceSet;
using mailhearth::engine::State;
using mailhearth::engine::StateTable;

constexpr bool kSearching = true;

// A pattern's automaton with its start state beside the edge of a text.
struct Dfa {
  Dfa(std::string_view pattern, Direction direction)
      : parts(pattern),
        automaton(parts.program, direction),
        start(automaton.Start({0, parts.program.End()},
                              parts.program.KindOf(parts.program.EdgeClass()),
                              direction == Direction::kForward)) {}

  std::uint32_t Step(Automaton::StateId state, char byte) {
    return automaton.Step(state, parts.program.ClassOf(byte));
  }
  // Steps from the start through `text`. Returns the last step.
  std::uint32_t StepThrough(std::string_view text) {
    std::uint32_t step = start;
    for (const char byte : text) step = Step(Automaton::StateOf(step), byte);
    return step;
  }
  [[nodiscard]] std::string Dump() const { return DumpStates(parts.program, automaton, start); }

  RegexParts parts;
  Automaton automaton;
  Automaton::StateId start;
};

struct Row {
  std::string_view pattern;
  std::string_view states;
};

void CheckWhole(const Row& row, Direction direction) {
  SCOPED_TRACE(row.pattern);
  Dfa dfa(row.pattern, direction);
  ComputeStates(dfa.parts.program, dfa.automaton, dfa.start);
  EXPECT_EQ(dfa.Dump(), row.states);
}

TEST(Automaton, SearchesForward) {
  constexpr Row kRows[] = {
      // An empty match ends the search at once.
      {"a*",
       "0 {*}: [^a] -> dead matched, a -> 1 matched, edge -> dead matched\n"
       "1 {2}: [^a] -> dead matched, a -> 1 matched, edge -> dead matched\n"},
      {"ab",
       "0 {*}: [^ab] -> 0, a -> 1, b -> 0, edge -> 0\n"
       "1 {1|*}: [^ab] -> 0, a -> 1 began later, b -> 2, edge -> 0\n"
       "2 {2|*}: [^ab] -> dead matched, a -> dead matched, b -> dead matched,"
       " edge -> dead matched\n"},
      // A longer run of the same candidate is no later one.
      {"a+b",
       "0 {*}: [^ab] -> 0, a -> 1, b -> 0, edge -> 0\n"
       "1 {1|*}: [^ab] -> 0, a -> 1, b -> 2, edge -> 0\n"
       "2 {3|*}: [^ab] -> dead matched, a -> dead matched, b -> dead matched,"
       " edge -> dead matched\n"},
      // Two candidates live in state 2; the later one dies when the earlier one has matched.
      {"a{2,3}",
       "0 {*}: [^a] -> 0, a -> 1, edge -> 0\n"
       "1 {1|*}: [^a] -> 0, a -> 2, edge -> 0\n"
       "2 {2|1|*}: [^a] -> dead matched, a -> 3 matched, edge -> dead matched\n"
       "3 {4}: [^a] -> dead matched, a -> dead matched, edge -> dead matched\n"},
      // In state 3 the later candidate matches and the earlier one may still.
      {"abc|b",
       "0 {*}: [^a-c] -> 0, a -> 1, b -> 2, c -> 0, edge -> 0\n"
       "1 {2|*}: [^a-c] -> 0, a -> 1 began later, b -> 3, c -> 0, edge -> 0\n"
       "2 {6|*}: [^a-c] -> dead matched, a -> dead matched, b -> dead matched,"
       " c -> dead matched, edge -> dead matched\n"
       "3 {3|6|*}: [^a-c] -> dead matched began later, a -> dead matched began later,"
       " b -> dead matched began later, c -> 4 matched began later,"
       " edge -> dead matched began later\n"
       "4 {4}: [^a-c] -> dead matched, a -> dead matched, b -> dead matched,"
       " c -> dead matched, edge -> dead matched\n"},
      // Anchored: no candidate begins later.
      {"^a",
       "0 edge {*}: [^a] -> dead, a -> 1, edge -> dead\n"
       "1 {2}: [^a] -> dead matched, a -> dead matched, edge -> dead matched\n"},
      {"a$",
       "0 edge {*}: [^a] -> 1, a -> 2, edge -> 0\n"
       "1 {*}: [^a] -> 1, a -> 2, edge -> 0\n"
       "2 {1|*}: [^a] -> 1, a -> 2 began later, edge -> dead matched\n"},
      {"[[:<:]]a",
       "0 edge {*}: [^0-9A-Z_a-z] -> 1, [0-9A-Z_b-z] -> 2, a -> 3, edge -> 0\n"
       "1 {*}: [^0-9A-Z_a-z] -> 1, [0-9A-Z_b-z] -> 2, a -> 3, edge -> 0\n"
       "2 word {*}: [^0-9A-Z_a-z] -> 1, [0-9A-Z_b-z] -> 2, a -> 2, edge -> 0\n"
       "3 word {2|*}: [^0-9A-Z_a-z] -> dead matched, [0-9A-Z_b-z] -> dead matched,"
       " a -> dead matched, edge -> dead matched\n"},
  };
  for (const Row& row : kRows) CheckWhole(row, Direction::kForward);
}

TEST(Automaton, ReadsInReverse) {
  constexpr Row kRows[] = {
      {"ab",
       "0 {2}: [^ab] -> dead, a -> dead, b -> 1, edge -> dead\n"
       "1 {1}: [^ab] -> dead, a -> 2, b -> dead, edge -> dead\n"
       "2 {0}: [^ab] -> dead matched, a -> dead matched, b -> dead matched,"
       " edge -> dead matched\n"},
      {"a+b",
       "0 {3}: [^ab] -> dead, a -> dead, b -> 1, edge -> dead\n"
       "1 {2}: [^ab] -> dead, a -> 2, b -> dead, edge -> dead\n"
       "2 {0}: [^ab] -> dead matched, a -> 2 matched, b -> dead matched,"
       " edge -> dead matched\n"},
      {"a*",
       "0 {3}: [^a] -> dead matched, a -> 1 matched, edge -> dead matched\n"
       "1 {1}: [^a] -> dead matched, a -> 1 matched, edge -> dead matched\n"},
      // Places of several branches are one set: in reverse there are no candidates.
      {"ab|b",
       "0 {5}: [^ab] -> dead, a -> dead, b -> 1, edge -> dead\n"
       "1 {2 4}: [^ab] -> dead matched, a -> 2 matched, b -> dead matched,"
       " edge -> dead matched\n"
       "2 {1}: [^ab] -> dead matched, a -> dead matched, b -> dead matched,"
       " edge -> dead matched\n"},
      {"^a|b$",
       "0 edge {6}: [^ab] -> dead, a -> 1, b -> 2, edge -> dead\n"
       "1 {2}: [^ab] -> dead, a -> dead, b -> dead, edge -> dead matched\n"
       "2 {4}: [^ab] -> dead matched, a -> dead matched, b -> dead matched,"
       " edge -> dead matched\n"},
  };
  for (const Row& row : kRows) CheckWhole(row, Direction::kReverse);
}

TEST(Automaton, ComputesWhatATextAsksFor) {
  Dfa dfa("a+b", Direction::kForward);
  EXPECT_EQ(dfa.Dump(), "0 {*}\n");
  dfa.StepThrough("xa");
  EXPECT_EQ(dfa.Dump(),
            "0 {*}: [^ab] -> 0, a -> 1\n"
            "1 {1|*}\n");
  dfa.StepThrough("xaab");
  EXPECT_EQ(dfa.Dump(),
            "0 {*}: [^ab] -> 0, a -> 1\n"
            "1 {1|*}: a -> 1, b -> 2\n"
            "2 {3|*}\n");
  dfa.automaton.Clear();
  dfa.start = dfa.automaton.Start({0, dfa.parts.program.End()}, ByteKind::kOther, kSearching);
  EXPECT_EQ(dfa.Dump(), "0 {*}\n");
}

TEST(Automaton, StepsTheSameWithoutItsCache) {
  for (const char* pattern : {"abc|b", "a{2,3}|b", "(a|ab)(c|bcd)*", "[[:<:]]a|b$", "^(a*|b)c"}) {
    SCOPED_TRACE(pattern);
    Dfa dfa(pattern, Direction::kForward);
    State state = dfa.automaton[dfa.start].ToState(), next;
    std::uint32_t step = dfa.start;
    for (const char byte : std::string_view("abcabbacab cbaab")) {
      const StateTable::View view{state.places, state.fragment, state.previous, state.searching};
      const std::uint32_t flags = dfa.automaton.Step(view, dfa.parts.program.ClassOf(byte), next);
      std::swap(state, next);
      step = dfa.Step(Automaton::StateOf(step), byte);
      ASSERT_EQ(step & ~Automaton::StateOf(step), flags);
      ASSERT_EQ(DumpState(dfa.automaton[Automaton::StateOf(step)]),
                DumpState({state.places, state.fragment, state.previous, state.searching}));
      if (state.Dead()) break;
    }
  }
}

TEST(Automaton, KnowsWhetherItIsAnchored) {
  struct AnchorRow {
    std::string_view pattern;
    bool forward, reverse;
  };
  constexpr AnchorRow kRows[] = {
      {"a", false, false},     {"^a", true, false},       {"a$", false, true},
      {"^a$", true, true},     {"^a|b", false, false},    {"^a|^b", true, false},
      {"(^a)*", false, false}, {"(^|x)a", false, false},  {"a($|b)", false, false},
      {"^*a", false, false},   {"(^a|^b)c", true, false}, {"[[:<:]]a", false, false},
      {"a^b", false, false},   {"(a|b)$", false, true},   {"^", true, false},
  };
  for (const AnchorRow& row : kRows) {
    SCOPED_TRACE(row.pattern);
    EXPECT_EQ(Dfa(row.pattern, Direction::kForward).automaton.Anchored(), row.forward);
    EXPECT_EQ(Dfa(row.pattern, Direction::kReverse).automaton.Anchored(), row.reverse);
  }
}

TEST(Automaton, IsDeadInsideATextIfAnchored) {
  Dfa dfa("^a", Direction::kForward);
  const Fragment whole{0, dfa.parts.program.End()};
  EXPECT_EQ(dfa.automaton.Start(whole, ByteKind::kOther, kSearching), Automaton::kDead);
  EXPECT_NE(dfa.automaton.Start(whole, ByteKind::kEdge, kSearching), Automaton::kDead);
}

TEST(Automaton, RunsAFragmentAlone) {
  Dfa dfa("ab*c", Direction::kForward);  // 0 byte a; 1 split 4; 2 byte b; 3 jump 1; 4 byte c
  const Automaton::StateId start = dfa.automaton.Start({1, 4}, ByteKind::kOther, !kSearching);
  ComputeStates(dfa.parts.program, dfa.automaton, start);
  EXPECT_EQ(DumpStates(dfa.parts.program, dfa.automaton, start),
            "0 {1}: [^a-c] -> dead matched, a -> dead matched, b -> 1 matched,"
            " c -> dead matched, edge -> dead matched\n"
            "1 {3}: [^a-c] -> dead matched, a -> dead matched, b -> 1 matched,"
            " c -> dead matched, edge -> dead matched\n");
  Dfa reverse("ab*c", Direction::kReverse);
  const Automaton::StateId end = reverse.automaton.Start({1, 4}, ByteKind::kOther, !kSearching);
  ComputeStates(reverse.parts.program, reverse.automaton, end);
  EXPECT_EQ(DumpStates(reverse.parts.program, reverse.automaton, end),
            "0 {4}: [^a-c] -> dead matched, a -> dead matched, b -> 1 matched,"
            " c -> dead matched, edge -> dead matched\n"
            "1 {2}: [^a-c] -> dead matched, a -> dead matched, b -> 1 matched,"
            " c -> dead matched, edge -> dead matched\n");
}

TEST(Automaton, CountsItsGenerationsAndFillsUp) {
  Dfa dfa("(a|b)*a(a|b){14}c", Direction::kForward);
  const std::size_t generation = dfa.automaton.Generation();
  unsigned random = 1;
  std::uint32_t step = dfa.start;
  int steps = 0;
  for (; !dfa.automaton.Full() && steps < 1'000'000; ++steps) {
    random = random * 1664525 + 1013904223;
    step = dfa.Step(Automaton::StateOf(step), (random >> 30) % 2 == 0 ? 'a' : 'b');
  }
  EXPECT_TRUE(dfa.automaton.Full());
  EXPECT_GT(steps, 1000);
  EXPECT_EQ(dfa.automaton.Generation(), generation);
  dfa.automaton.Clear();
  EXPECT_FALSE(dfa.automaton.Full());
  EXPECT_EQ(dfa.automaton.Generation(), generation + 1);
}

TEST(Automaton, TellsPlainStepsFromOthers) {
  constexpr Automaton::StateId kState = 12;
  EXPECT_TRUE(Automaton::Plain(kState));
  EXPECT_FALSE(Automaton::Plain(Automaton::kDead));
  EXPECT_FALSE(Automaton::Plain(Automaton::kUnknown));
  EXPECT_FALSE(Automaton::Plain(kState | Automaton::kMatched));
  EXPECT_FALSE(Automaton::Plain(kState | Automaton::kBeganLater));
  EXPECT_EQ(Automaton::StateOf(kState | Automaton::kMatched | Automaton::kBeganLater), kState);
}

// In the state that `prefix` leads to, skips to where stepping has to go on.
TEST(Automaton, SkipsBytesThatLoop) {
  struct SkipRow {
    const char* name;
    std::string_view pattern, prefix, text;
    std::size_t expected;
  };
  constexpr SkipRow kRows[] = {
      {"one byte leaves", "ab", "", "xxbxxab", 5},
      {"its second byte leads back", "ab", "", "axaxaxab", 6},
      {"the last byte counts", "ab", "", "xxxa", 3},
      {"none leaves", "ab", "", "xxxx", 4},
      {"two bytes leave", "[ab]c", "", "xxaxbxbc", 6},
      {"five bytes leave", "[a-e]x", "", "zzzza", 0},
      {"within a candidate", "a.*b", "ax", "xxxxb", 4},
      {"an empty text", "ab", "", "", 0},
      {"a leaving byte after another", "^([^ac]|a[^x]|c[^y])*$", "zz", "zzacyzz", 2},
  };
  for (const SkipRow& row : kRows) {
    SCOPED_TRACE(row.name);
    Dfa dfa(row.pattern, Direction::kForward);
    const ExactInput text(row.text);
    const Automaton::StateId before = Automaton::StateOf(dfa.StepThrough(row.prefix));
    Automaton::StateId state = before;
    EXPECT_EQ(dfa.automaton.SkipLoop(state, text.View(), 0), row.expected);
    EXPECT_EQ(state, before);
  }
}

// Where it skips through several states, it ends where stepping would be.
TEST(Automaton, SkipsThroughItsHotStates) {
  Dfa dfa("[ab][cd][ef]", Direction::kForward);
  std::string bytes;
  for (int i = 0; i < 200; ++i) bytes += "xaxbcx acx";
  bytes += "ace" + std::string(20, 'x');
  const ExactInput text(bytes);
  for (std::size_t from = 0; from < 40; ++from) {
    Automaton::StateId state = dfa.start;
    const std::size_t at = dfa.automaton.SkipLoop(state, text.View(), from);
    ASSERT_GT(at, from + 1900);
    ASSERT_LT(at, bytes.size());
    std::uint32_t step = dfa.start;
    for (std::size_t i = from; i < at; ++i) {
      step = dfa.Step(Automaton::StateOf(step), bytes[i]);
    }
    EXPECT_EQ(Automaton::StateOf(step), state) << from;
  }
}

TEST(Closure, FollowsTheProgramInBothDirections) {
  constexpr ByteKind kEdge = ByteKind::kEdge, kOther = ByteKind::kOther;
  struct ClosureRow {
    std::string_view pattern;
    Place from;
    ByteKind left, right;
    bool forwardComplete;
    std::vector<Place> forward;
    bool reverseComplete;
    std::vector<Place> reverse;
  };
  const ClosureRow rows[] = {
      // 0 split 3; 1 byte a; 2 jump 0
      {"a*", 0, kOther, kOther, true, {1}, true, {1}},
      {"a*", 1, kOther, kOther, false, {1}, true, {1}},
      {"a*", 2, kOther, kOther, true, {1}, false, {1}},
      {"a*", 3, kOther, kOther, true, {}, true, {1}},
      // 0 split 3; 1 byte a; 2 jump 4; 3 byte b
      {"a|b", 0, kOther, kOther, false, {1, 3}, true, {}},
      {"a|b", 2, kOther, kOther, true, {}, false, {1}},
      {"a|b", 4, kOther, kOther, true, {}, false, {1, 3}},
      // 0 assert ^; 1 byte a; 2 assert $
      {"^a$", 0, kEdge, kOther, false, {1}, true, {}},
      {"^a$", 0, kOther, kOther, false, {}, true, {}},
      {"^a$", 1, kEdge, kOther, false, {1}, true, {}},
      {"^a$", 1, kOther, kOther, false, {1}, false, {}},
      {"^a$", 2, kOther, kEdge, true, {}, false, {1}},
      {"^a$", 3, kOther, kEdge, true, {}, false, {1}},
      {"^a$", 3, kOther, kOther, true, {}, false, {}},
  };
  for (const ClosureRow& row : rows) {
    SCOPED_TRACE(testing::Message() << row.pattern << " from " << row.from);
    RegexParts parts(row.pattern);
    const Fragment whole{0, parts.program.End()};
    Closure closure(parts.program);
    std::vector<Place> consuming;
    closure.Begin(row.left, row.right);
    EXPECT_EQ(closure.Forward(row.from, whole, consuming), row.forwardComplete);
    std::sort(consuming.begin(), consuming.end());
    EXPECT_EQ(consuming, row.forward);
    EXPECT_TRUE(closure.Reached(row.from));

    consuming.clear();
    closure.Begin(row.left, row.right);
    EXPECT_EQ(closure.Reverse(row.from, whole, consuming), row.reverseComplete);
    std::sort(consuming.begin(), consuming.end());
    EXPECT_EQ(consuming, row.reverse);
  }
}

TEST(Closure, AddsEachPlaceOnce) {
  RegexParts parts("a*");
  const Fragment whole{0, parts.program.End()};
  Closure closure(parts.program);
  std::vector<Place> consuming;
  closure.Begin(ByteKind::kOther, ByteKind::kOther);
  EXPECT_TRUE(closure.Forward(0, whole, consuming));
  EXPECT_FALSE(closure.Forward(2, whole, consuming)) << "the end was reached before";
  EXPECT_EQ(consuming, (std::vector<Place>{1}));
}

TEST(StateTable, StoresEachStateOnce) {
  StateTable table;
  const State first{{1, 2}, {0, 5}, ByteKind::kOther, false};
  const State different[] = {
      {{1, 3}, {0, 5}, ByteKind::kOther, false},
      {{1, 2, 3}, {0, 5}, ByteKind::kOther, false},
      {{1}, {0, 5}, ByteKind::kOther, false},
      {{1, 2}, {1, 5}, ByteKind::kOther, false},
      {{1, 2}, {0, 4}, ByteKind::kOther, false},
      {{1, 2}, {0, 5}, ByteKind::kWord, false},
      {{1, 2}, {0, 5}, ByteKind::kOther, true},
      {{}, {0, 5}, ByteKind::kOther, true},
      {{1, State::kMark, 2}, {0, 5}, ByteKind::kOther, false},
  };
  EXPECT_EQ(table.Add(first), 0U);
  EXPECT_EQ(table.Add(first), 0U);
  std::uint32_t expected = 0;
  for (const State& state : different) EXPECT_EQ(table.Add(state), ++expected);
  EXPECT_EQ(table.Add(first), 0U);
  EXPECT_EQ(table.Count(), expected + 1);
  EXPECT_EQ(DumpState(table[0]), "{1 2}");
  EXPECT_EQ(DumpState(table[expected]), "{1|2}");
  const State copy = table[6].ToState();
  EXPECT_EQ(copy.places, (std::vector<Place>{1, 2}));
  EXPECT_EQ(copy.previous, ByteKind::kWord);
}

TEST(StateTable, FindsManyAndForgetsAll) {
  StateTable table;
  constexpr Place kMany = 5000;
  for (Place i = 0; i < kMany; ++i) EXPECT_EQ(table.Add({{i}, {0, 1}, ByteKind::kOther, false}), i);
  for (Place i = 0; i < kMany; ++i) EXPECT_EQ(table.Add({{i}, {0, 1}, ByteKind::kOther, false}), i);
  const std::size_t full = table.Size();
  EXPECT_GT(full, kMany * sizeof(Place));
  table.Clear();
  EXPECT_EQ(table.Count(), 0U);
  EXPECT_LT(table.Size(), full);
  EXPECT_EQ(table.Add({{7}, {0, 1}, ByteKind::kOther, false}), 0U);
}

TEST(PlaceSet, HoldsWhatWasInsertedSinceReset) {
  PlaceSet set;
  set.Reset(4);
  EXPECT_FALSE(set.Contains(3));
  EXPECT_TRUE(set.Insert(3));
  EXPECT_FALSE(set.Insert(3));
  EXPECT_TRUE(set.Contains(3));
  EXPECT_FALSE(set.Contains(2));
  set.Reset(10);
  EXPECT_FALSE(set.Contains(3));
  EXPECT_TRUE(set.Insert(9));
}

}  // namespace
