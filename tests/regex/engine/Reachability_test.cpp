// The live places at each boundary, against a reverse DFA whose states are all stored.

#include "regex/engine/Reachability.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "support/ExactInput.h"
#include "support/RegexDump.h"

namespace {

using mailhearth::DumpLivePlaces;
using mailhearth::DumpState;
using mailhearth::RegexParts;
using mailhearth::engine::Automaton;
using mailhearth::engine::Direction;
using mailhearth::engine::Fragment;
using mailhearth::engine::Place;
using mailhearth::engine::Program;
using mailhearth::engine::Reachability;

TEST(Reachability, TellsTheLivePlaces) {
  struct Row {
    std::string_view pattern, text, live;
  };
  constexpr Row kRows[] = {
      // 0 byte a; 1 split 0; 2 byte b
      {"a+b", "aab", "0 {0}; 1 {0}; 2 {2}; 3 {3}"},
      {"a+b", "xab", "0 dead; 1 {0}; 2 {2}; 3 {3}"},
      {"a+b", "abx", "0 dead; 1 dead; 2 dead; 3 {3}"},
      {"a+b", "", "0 {3}"},
      // 0 split 3; 1 byte a; 2 jump 5; 3 byte a; 4 byte b; 5 split 8; 6 byte c; 7 jump 11;
      // 8 byte b; 9 byte c; 10 byte d; 11 split 14; 12 byte d; 13 jump 11
      {"(a|ab)(c|bcd)(d*)", "abcd", "0 {1 3}; 1 {4 8}; 2 {6 9}; 3 {10 12}; 4 {14}"},
      {"(a|ab)(c|bcd)(d*)", "acd", "0 {1}; 1 {6 9}; 2 {10 12}; 3 {14}"},
      {"^a$", "a", "0 {1}; 1 edge {3}"},
  };
  for (const Row& row : kRows) {
    const ExactInput text(row.text);
    RegexParts parts(row.pattern);
    EXPECT_EQ(DumpLivePlaces(parts.program, text.View()), row.live) << row.pattern << row.text;
  }
}

// The states at the boundaries from `start` to `end`, as text.
std::vector<std::string> LiveSlowly(Program& program, std::string_view text, std::size_t start,
                                    std::size_t end, Fragment fragment) {
  Automaton reverse(program, Direction::kReverse);
  Automaton::StateId state =
      reverse.Start(fragment, program.KindOf(program.ClassAfter(text, end)), false);
  std::vector<std::string> live(end - start + 1);
  live.back() = DumpState(reverse[state]);
  for (std::size_t at = end; at > start; --at) {
    if (reverse.Full()) {
      const auto copy = reverse[state].ToState();
      reverse.Clear();
      state = reverse.Add(copy);
    }
    state = Automaton::StateOf(reverse.Step(state, program.ClassBefore(text, at)));
    live[at - 1 - start] = DumpState(reverse[state]);
  }
  return live;
}

void CheckRange(Program& program, Reachability& reachability, Automaton& reverse,
                std::string_view text, std::size_t start, std::size_t end, Fragment fragment,
                std::size_t stride) {
  const std::vector<std::string> expected = LiveSlowly(program, text, start, end, fragment);
  reachability.Begin(text, start, end, fragment);
  for (std::size_t at = start;; at = std::min(at + stride, end)) {
    ASSERT_EQ(DumpState(reverse[reachability.At(at)]), expected[at - start]) << at;
    if (at == end) break;
  }
}

std::string RandomLetters(std::size_t length) {
  std::string text;
  unsigned random = 1;
  while (text.size() < length) {
    random = random * 1664525 + 1013904223;
    text += (random >> 30) % 2 == 0 ? 'a' : 'b';
  }
  return text;
}

struct LongRow {
  const char* name;
  std::string_view pattern;
  std::size_t length;
  std::size_t stride;
};

// Texts of one block, of several, and of several levels; programs with large states, which make
// blocks small; a reverse DFA that does not fit into its cache.
TEST(Reachability, TellsThemInLongTexts) {
  constexpr LongRow kRows[] = {
      {"a block", "(a|ab|b)*", 4'000, 1},
      {"just more than a block", "(a|ab|b)*", 4'097, 1},
      {"two levels", "(a|ab|b)*", 100'000, 1},
      {"three levels", "(a|ab|b)*", 600'000, 1},
      {"in leaps", "(a|ab|b)*", 600'000, 777},
      {"in leaps over parts", "(a|ab|b)*", 600'000, 199'999},
      {"large states", "((a|b){1,200}){1,9}", 3'000, 1},
      {"many states", "((a|b){14}a(a|b)*){1,2}", 20'000, 1},
  };
  for (const LongRow& row : kRows) {
    SCOPED_TRACE(row.name);
    RegexParts parts(row.pattern);
    ASSERT_EQ(parts.status, 0);
    Automaton reverse(parts.program, Direction::kReverse);
    Reachability reachability(parts.program, reverse);
    const std::string text = RandomLetters(row.length);
    CheckRange(parts.program, reachability, reverse, text, 0, text.size(), {0, parts.program.End()},
               row.stride);
  }
}

TEST(Reachability, TellsThemInARangeForAFragment) {
  RegexParts parts("a(b|ab)*a");  // the repetition's code lies between the bytes a
  const Fragment inner{1, parts.program.End() - 1};
  Automaton reverse(parts.program, Direction::kReverse);
  Reachability reachability(parts.program, reverse);
  const std::string text = RandomLetters(20'000);
  for (const auto& [start, end] : {std::pair(1, 7), std::pair(100, 9'000), std::pair(5, 5)}) {
    CheckRange(parts.program, reachability, reverse, text, static_cast<std::size_t>(start),
               static_cast<std::size_t>(end), inner, 1);
  }
}

}  // namespace
