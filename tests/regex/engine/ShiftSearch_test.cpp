// The shift-based DFA against stepping by hand.

#include "regex/engine/ShiftSearch.h"

#include <gtest/gtest.h>

#include <string>

#include "support/ExactInput.h"

namespace {

using mailhearth::engine::ShiftSearch;

TEST(ShiftSearch, StepsAsItWasTold) {
  // Counts the letters a, up to the last state; b goes back to the first, c leads out.
  ShiftSearch search;
  for (unsigned state = 0; state < ShiftSearch::kStates; ++state) {
    if (state + 1 < ShiftSearch::kStates) search.SetStep(state, 'a', state + 1);
    search.SetStep(state, 'b', 0);
    search.SetStep(state, 0xFF, state);
  }
  const std::string most(ShiftSearch::kStates - 1, 'a');
  struct Row {
    std::string text;
    unsigned from;
    std::size_t stays;  // bytes before the one that leads out
  };
  const Row rows[] = {
      {"", 0, 0},
      {most + "bbbbbbbbbbbb" + most + "bbbbbbbbbbbb", 0, 40},
      {most + "abbbbbbbbbbb", 0, 8},
      {"aabaab\xFF\xFF"
       "aac",
       0, 10},
      {"a" + most, 7, 1},
      {std::string(100, '\xFF') + "a", 8, 100},
      {std::string(100, 'b') + "c", 3, 100},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.text);
    const ExactInput text(row.text);
    unsigned state = row.from;
    const std::size_t at = search.Skip(text.View(), 0, state);
    EXPECT_LE(at, row.stays);
    EXPECT_GT(at + 8, row.stays) << "no more than seven bytes are left";
    unsigned expected = row.from;
    for (const char c : row.text.substr(0, at)) {
      expected = c == 'a' ? expected + 1 : c == 'b' ? 0 : expected;
    }
    EXPECT_EQ(state, expected);
  }
}

}  // namespace
