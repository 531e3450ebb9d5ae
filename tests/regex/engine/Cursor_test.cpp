// Cursors: the same steps, whether states are cached, dropped or not kept at all.

#include "regex/engine/Cursor.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "support/ExactInput.h"
#include "support/RegexDump.h"

namespace {

using mailhearth::DumpState;
using mailhearth::RegexParts;
using mailhearth::engine::Automaton;
using mailhearth::engine::ByteKind;
using mailhearth::engine::Cursor;
using mailhearth::engine::Direction;
using mailhearth::engine::Fragment;
using mailhearth::engine::State;
using mailhearth::engine::StateTable;

constexpr bool kSearching = true;

StateTable::View ViewOf(const State& state) {
  return {state.places, state.fragment, state.previous, state.searching};
}

std::string RandomLetters(int length) {
  std::string text;
  unsigned random = 1;
  for (int i = 0; i < length; ++i) {
    random = random * 1664525 + 1013904223;
    text += (random >> 30) % 2 == 0 ? 'a' : 'b';
  }
  return text;
}

TEST(Cursor, StepsThroughATextUntilNoMatchCanFollow) {
  struct Row {
    std::string_view pattern, text;
    std::string_view states;  // after each byte
  };
  constexpr Row kRows[] = {
      {"ab", "xab", "{*} {1|*} {2|*}"},
      {"ab", "aab", "{1|*} {1|*} {2|*}"},
      {"^ab", "abx", "{2} {3} dead"},
      {"a*", "aax", "{2} {2} dead"},
  };
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.pattern);
    RegexParts parts(row.pattern);
    Automaton automaton(parts.program, Direction::kForward);
    Cursor cursor(automaton,
                  automaton.Start({0, parts.program.End()}, ByteKind::kEdge, kSearching));
    std::string states;
    for (const char byte : row.text) {
      ASSERT_FALSE(cursor.Dead());
      cursor.Step(parts.program.ClassOf(byte));
      if (!states.empty()) states += ' ';
      states += DumpState(automaton[cursor.State()]);
    }
    EXPECT_EQ(cursor.Dead(), row.states.ends_with("dead"));
    EXPECT_EQ(states, row.states);
  }
}

// The DFA has a state for every sequence of 17 letters, too many to be worth caching.
TEST(Cursor, StopsCachingWhereThatDoesNotPay) {
  RegexParts parts("(a|b)*a(a|b){16}c?");
  Automaton automaton(parts.program, Direction::kForward);
  const Fragment whole{0, parts.program.End()};
  Cursor cursor(automaton, automaton.Start(whole, ByteKind::kOther, !kSearching));
  Automaton uncached(parts.program, Direction::kForward);
  State state = uncached[uncached.Start(whole, ByteKind::kOther, !kSearching)].ToState(), next;
  const std::size_t generation = automaton.Generation();
  for (const char byte : RandomLetters(40'000)) {
    const std::uint32_t byteClass = parts.program.ClassOf(byte);
    const std::uint32_t step = cursor.Step(byteClass);
    const std::uint32_t flags = uncached.Step(ViewOf(state), byteClass, next);
    std::swap(state, next);
    ASSERT_EQ(step & Automaton::kMatched, flags & Automaton::kMatched);
    ASSERT_EQ(cursor.ToState().places, state.places);
    ASSERT_FALSE(cursor.Dead());
  }
  EXPECT_FALSE(cursor.Cached());
  EXPECT_EQ(automaton.Generation(), generation + 2) << "the first time may be due to other texts";
  cursor.Step(parts.program.ClassOf('c'));
  EXPECT_FALSE(cursor.Dead());
  cursor.Step(parts.program.ClassOf('c'));
  EXPECT_TRUE(cursor.Dead());
}

TEST(Cursor, KeepsCachingWhereItPays) {
  RegexParts parts("(a|b)*a(a|b){4}c?");
  Automaton automaton(parts.program, Direction::kForward);
  const std::size_t generation = automaton.Generation();
  Cursor cursor(automaton,
                automaton.Start({0, parts.program.End()}, ByteKind::kOther, !kSearching));
  for (const char byte : RandomLetters(40'000)) cursor.Step(parts.program.ClassOf(byte));
  EXPECT_TRUE(cursor.Cached());
  EXPECT_EQ(automaton.Generation(), generation);
}

TEST(Cursor, TakesCachedPlainStepsBack) {
  RegexParts parts("xa*b");
  Automaton automaton(parts.program, Direction::kReverse);
  const Fragment whole{0, parts.program.End()};
  const ExactInput input("xaaaab");
  const std::string_view text = input.View();
  const auto start = [&] { return automaton.Start(whole, ByteKind::kOther, !kSearching); };

  Cursor first(automaton, start());
  EXPECT_EQ(first.TakePlainStepsBack(text, 0, text.size()), text.size()) << "nothing is cached";
  for (std::size_t at = text.size(); at > 0; --at) {
    first.Step(parts.program.ClassBefore(text, at));
  }
  EXPECT_EQ(first.Step(parts.program.EdgeClass()) & Automaton::kMatched, Automaton::kMatched);

  for (const std::size_t to : {std::size_t{0}, std::size_t{3}, text.size()}) {
    Cursor second(automaton, start());
    EXPECT_EQ(second.TakePlainStepsBack(text, to, text.size()), to);
  }
  Cursor third(automaton, start());
  EXPECT_EQ(third.TakePlainStepsBack("bxaab", 0, 5), 1U) << "the step from x on b has a flag";
}

TEST(Cursor, GoesOnWhereACallerHasStepped) {
  RegexParts parts("ab");
  Automaton automaton(parts.program, Direction::kForward);
  const Automaton::StateId idle =
      automaton.Start({0, parts.program.End()}, ByteKind::kOther, kSearching);
  const Automaton::StateId afterA = automaton.Step(idle, parts.program.ClassOf('a'));
  Cursor cursor(automaton, idle);
  cursor.MoveTo(afterA, 1);
  EXPECT_EQ(cursor.State(), afterA);
  cursor.Step(parts.program.ClassOf('b'));
  EXPECT_EQ(DumpState(automaton[cursor.State()]), "{2|*}");
}

}  // namespace
