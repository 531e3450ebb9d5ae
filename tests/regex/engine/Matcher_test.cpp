// The bounds of matches, for each way that their end and their start are found.

#include "regex/engine/Matcher.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "support/ExactInput.h"
#include "support/RegexDump.h"

namespace {

using mailhearth::RegexParts;
using mailhearth::engine::Matcher;
using mailhearth::engine::Span;

constexpr std::size_t kNone = std::string_view::npos;

struct Row {
  const char* name;
  std::string_view pattern, text;
  std::size_t start, from, to;
};

void Check(const Row& row, Matcher& matcher, std::string_view text) {
  Span match{kNone, kNone};
  const bool found = matcher.Find(text, row.start, match);
  EXPECT_EQ(found, row.from != kNone);
  if (!found) return;
  EXPECT_EQ(match.from, row.from);
  EXPECT_EQ(match.to, row.to);
}

// Twice: the second time, states are cached and steps are plain.
void Check(const Row& row) {
  SCOPED_TRACE(testing::Message() << row.name << ": " << row.pattern << " in " << row.text);
  const ExactInput text(row.text);
  RegexParts parts(row.pattern);
  ASSERT_EQ(parts.status, 0);
  Matcher matcher(parts.tree, parts.program);
  Check(row, matcher, text.View());
  Check(row, matcher, text.View());
}

TEST(Matcher, FindsTheLeftmostAndOfTheseTheLongest) {
  constexpr Row kRows[] = {
      {"the longest branch", "a|ab|abc", "xabcd", 0, 1, 4},
      {"the leftmost, not the longest", "b|abc|cdef", "abcdef", 0, 0, 3},
      {"the leftmost, found last", "abc|b", "abc", 0, 0, 3},
      {"a later one, where the leftmost dies", "abc|b", "abx", 0, 1, 2},
      {"an empty one first", "b*", "abb", 0, 0, 0},
      {"from a later start", "b*", "abb", 1, 1, 3},
      {"none", "b+", "aaa", 0, kNone, 0},
      {"none after the start", "b", "baa", 1, kNone, 0},
      {"the empty text", "a*", "", 0, 0, 0},
      {"the empty text, none", "a+", "", 0, kNone, 0},
      {"empty at the end", "$", "ab", 0, 2, 2},
      {"empty from the end", "a*", "ab", 2, 2, 2},
  };
  for (const Row& row : kRows) Check(row);
}

TEST(Matcher, FindsTheStart) {
  constexpr Row kRows[] = {
      {"by the width", "[ab]c", "aabcc", 0, 2, 4},
      {"at the text's start, anchored", "^a+", "aab", 0, 0, 2},
      {"not later, anchored", "^a+", "aab", 1, kNone, 0},
      {"as it was seen idle", "a+b", "xxaab", 0, 2, 5},
      {"after a first one died", "a+b", "aaxxab", 0, 4, 6},
      {"after a first one died at once", "a+b|xb", "aaxb", 0, 2, 4},
      {"in reverse, with candidates before", "ab+c|b+d", "abbbd", 0, 1, 5},
      {"in reverse, far before a shorter one", "a.*z|b+", "a.bb.z.bz", 0, 0, 9},
      {"in reverse, at the search's start", "a*b|xb*y", "aaab", 2, 2, 4},
      {"with word boundaries", "[[:<:]]a+", "ba aa", 0, 3, 5},
      {"with word boundaries, at the start", "[[:<:]]a+", "aa", 0, 0, 2},
      {"with word boundaries, from within", "[[:<:]]a+", "aa a", 1, 3, 4},
      {"by reverse alone, end-anchored", "a+$", "aab aa", 0, 4, 6},
      {"by reverse alone, none", "a+$", "aab", 0, kNone, 0},
      {"by reverse alone, not before the start", "a+$", "aaaa", 2, 2, 4},
      {"by reverse alone, the leftmost", "b*a*$", "abbaa", 0, 1, 5},
  };
  for (const Row& row : kRows) Check(row);
}

TEST(Matcher, NeedsTheByteThatEveryMatchHas) {
  constexpr Row kRows[] = {
      {"in a concatenation", "[ab]+x[cd]", "abxc", 0, 0, 4},
      {"missing", "[ab]+x[cd]", "abyc", 0, kNone, 0},
      {"before the start only", "x[ab]*", "xab", 1, kNone, 0},
      {"in a group", "(a*)(bx)+", "aabx", 0, 0, 4},
      {"not in what is optional", "a(x)*b", "ab", 0, 0, 2},
      {"not in a branch", "ax|b", "b", 0, 0, 1},
      {"not without iterations", "(x){0}a*", "aa", 0, 0, 2},
  };
  for (const Row& row : kRows) Check(row);
}

// The text has 3000 bytes before the match, through which the search skips.
TEST(Matcher, SkipsToMatchesInLongTexts) {
  struct LongRow {
    std::string_view pattern, unit, tail;
    std::size_t from, to;  // in the tail
  };
  constexpr LongRow kRows[] = {
      {"needle", "haystack ", "needle", 0, 6},
      {"ab", "a", "b", kNone, 1},  // begins in the last unit
      {"[ab][cd][ef]", "acx", "xbdf", 1, 4},
      {"x+y", "zxz", "xxy.", 0, 3},
      {"[xy]+z", "wxw", "yxz", 0, 3},
      {"[[:<:]]to[[:>:]]", "tomato ", "to", 0, 2},
  };
  for (const LongRow& row : kRows) {
    std::string text;
    while (text.size() < 3000) text += row.unit;
    const std::size_t length = text.size();
    text += row.tail;
    const std::size_t from = row.from == kNone ? length - 1 : length + row.from;
    Check({"long", row.pattern, text, 0, from, length + row.to});
    Check({"long, none", row.pattern, std::string_view(text).substr(0, length), 0, kNone, 0});
  }
}

}  // namespace
