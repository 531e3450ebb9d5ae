// From patterns to syntax trees. Expression_test.cpp has the patterns that are refused.

#include "regex/engine/Syntax.h"

#include <gtest/gtest.h>
#include <regex.h>

#include <string_view>

#include "support/ExactInput.h"
#include "support/RegexDump.h"

namespace {

using mailhearth::DumpTree;
using mailhearth::RegexParts;
using mailhearth::engine::kMaxNodes;
using mailhearth::engine::Parse;
using mailhearth::engine::Tree;

constexpr bool kIgnoreCase = true;

struct Row {
  std::string_view pattern;
  std::string_view tree;
};

void Check(const Row& row, bool ignoreCase = false) {
  SCOPED_TRACE(row.pattern);
  const ExactInput pattern(row.pattern);
  Tree tree;
  ASSERT_EQ(Parse(pattern.View(), ignoreCase, tree), 0);
  EXPECT_EQ(DumpTree(tree), row.tree);
}

TEST(Syntax, MakesATreeOfAPattern) {
  using std::string_view_literals::operator""sv;
  constexpr Row kRows[] = {
      {"a", "a"},
      {"ab", "cat(a, b)"},
      {"abc", "cat(a, b, c)"},
      {"a|b", "alt(a, b)"},
      {"a|b|c", "alt(a, b, c)"},
      {"ab|c", "alt(cat(a, b), c)"},
      {"|", "alt(empty, empty)"},
      {"a|", "alt(a, empty)"},
      {"()", "group1(empty)"},
      {"(a)", "group1(a)"},
      {"(a)(b)", "cat(group1(a), group2(b))"},
      {"((a)b)(c)", "cat(group1(cat(group2(a), b)), group3(c))"},
      {"(a|b)c", "cat(group1(alt(a, b)), c)"},
      {"^a$", "cat(^, a, $)"},
      {"[[:<:]]a[[:>:]]", "cat(word-start, a, word-end)"},
      {".", "."},
      {"\\.", "'.'"},
      {"\\a", "a"},
      {"@", "'@'"},
      {"]", "']'"},
      {"\0"sv, "\\x00"},
      {"\n\xFF", "cat(\\x0A, \\xFF)"},
  };
  for (const Row& row : kRows) Check(row);
}

TEST(Syntax, RepeatsThePieceBefore) {
  constexpr Row kRows[] = {
      {"a*", "repeat{0,}(a)"},
      {"a+", "repeat{1,}(a)"},
      {"a?", "repeat{0,1}(a)"},
      {"a{3}", "repeat{3,3}(a)"},
      {"a{3,}", "repeat{3,}(a)"},
      {"a{3,5}", "repeat{3,5}(a)"},
      {"a{0}", "repeat{0,0}(a)"},
      {"a{255}", "repeat{255,255}(a)"},
      {"a{1}", "a"},
      {"a{1,1}", "a"},
      {"a{1,2}", "repeat{1,2}(a)"},
      {"ab*", "cat(a, repeat{0,}(b))"},
      {"(ab)*", "repeat{0,}(group1(cat(a, b)))"},
      {"a|b*", "alt(a, repeat{0,}(b))"},
      {"^*", "repeat{0,}(^)"},
      {"a{", "cat(a, '{')"},
      {"a{,3}", "cat(a, '{', ',', 3, '}')"},
      {"{x}", "cat('{', x, '}')"},
  };
  for (const Row& row : kRows) Check(row);
}

TEST(Syntax, FoldsSimpleRepetitionsOfEachOther) {
  constexpr Row kRows[] = {
      {"a**", "repeat{0,}(a)"},
      {"a*+", "repeat{0,}(a)"},
      {"a+?", "repeat{0,}(a)"},
      {"a++", "repeat{1,}(a)"},
      {"a??", "repeat{0,1}(a)"},
      {"a?{0,1}", "repeat{0,1}(a)"},
      {"a*{2}", "repeat{2,2}(repeat{0,}(a))"},
      {"a{2}*", "repeat{0,}(repeat{2,2}(a))"},
      {"a{2}{3}", "repeat{3,3}(repeat{2,2}(a))"},
      {"(a*)*", "repeat{0,}(group1(repeat{0,}(a)))"},
  };
  for (const Row& row : kRows) Check(row);
}

TEST(Syntax, ReadsBrackets) {
  constexpr Row kRows[] = {
      {"[a]", "[a]"},
      {"[ab]", "[ab]"},
      {"[a-c]", "[a-c]"},
      {"[^a]", "[^a]"},
      {"[^a-c]", "[^a-c]"},
      {"[]a]", "[\\]a]"},
      {"[^]a]", "[^\\]a]"},
      {"[a^]", "[\\^a]"},
      {"[a-]", "[\\-a]"},
      {"[-a]", "[\\-a]"},
      {"[a-c-e]", "[\\-a-ce]"},
      {"[\\n]", "[\\\\n]"},
      {"[[:digit:]x]", "[0-9x]"},
      {"[[:alpha:]]", "[A-Za-z]"},
      {"[[:space:]]", "[\\x09-\\x0D ]"},
      {"[[.a.]-c]", "[a-c]"},
      {"[[.].]]", "[\\]]"},
      {"[[=a=]]", "[a]"},
  };
  for (const Row& row : kRows) Check(row);
}

TEST(Syntax, IgnoresCaseOfLettersIfAsked) {
  constexpr Row kRows[] = {
      {"aB", "cat([Aa], [Bb])"}, {"a1@", "cat([Aa], 1, '@')"}, {"[a-c]", "[A-Ca-c]"},
      {"[^a]", "[^Aa]"},         {"[@-[]", "[@-\\[a-z]"},      {"\xE4", "\\xE4"},
  };
  for (const Row& row : kRows) Check(row, kIgnoreCase);
}

TEST(Syntax, SharesEqualSets) {
  Tree tree;
  ASSERT_EQ(Parse("[ab].[ba].x[a-b]", false, tree), 0);
  EXPECT_EQ(tree.sets.size(), 2U);
}

TEST(Syntax, CountsAllGroups) {
  EXPECT_EQ(RegexParts("a").tree.groups, 0);
  EXPECT_EQ(RegexParts("(a(b))|()").tree.groups, 3);
}

TEST(Syntax, OpensAsManyGroupsAsItSays) {
  Tree tree, tooDeep;
  EXPECT_EQ(Parse(std::string(kMaxNodes, '('), false, tree), REG_EPAREN);
  EXPECT_EQ(Parse(std::string(kMaxNodes + 1, '('), false, tooDeep), REG_ESPACE);
}

}  // namespace
