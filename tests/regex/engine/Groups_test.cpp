// Groups of a match by the rule of POSIX, for each way that a node's text is divided.

#include "regex/engine/Groups.h"

#include <gtest/gtest.h>

#include <array>
#include <sstream>
#include <string>
#include <string_view>

#include "regex/engine/Matcher.h"
#include "support/ExactInput.h"
#include "support/RegexDump.h"

namespace {

using mailhearth::RegexParts;
using mailhearth::engine::GroupFinder;
using mailhearth::engine::Matcher;
using mailhearth::engine::Span;

struct Row {
  const char* name;
  std::string_view pattern, text;
  std::string_view groups;  // from group 1 on, "-" for one that took no part
};

// Finds the groups of the whole text.
std::string GroupsOf(std::string_view pattern, std::string_view text) {
  RegexParts parts(pattern);
  EXPECT_EQ(parts.status, 0);
  Matcher matcher(parts.tree, parts.program);
  GroupFinder finder(parts.tree, parts.program, matcher.Reverse());
  std::array<regmatch_t, 10> groups{};
  finder.Find(text, {0, static_cast<regoff_t>(text.size())},
              std::span(groups).first(static_cast<std::size_t>(parts.tree.groups) + 1));
  std::ostringstream out;
  for (int k = 1; k <= parts.tree.groups; ++k) {
    const regmatch_t& group = groups[static_cast<std::size_t>(k)];
    out << (k > 1 ? " " : "");
    if (group.rm_so < 0) {
      out << '-';
    } else {
      out << group.rm_so << ',' << group.rm_eo;
    }
  }
  return out.str();
}

void Check(const Row& row) {
  const ExactInput text(row.text);
  EXPECT_EQ(GroupsOf(row.pattern, text.View()), row.groups) << row.name << ": " << row.pattern;
}

TEST(Groups, DividesAConcatenationFromTheLeft) {
  constexpr Row kRows[] = {
      {"the first takes most", "(a*)(a*)", "aaa", "0,3 3,3"},
      {"as far as the rest can match", "(a*)(ab)", "aab", "0,1 1,3"},
      {"and the rest is needed", "(a|ab)(c|bcd)(d*)", "abcd", "0,2 2,3 3,4"},
      {"the first by the rest's choice", "(a|ab)(bcd)(d*)", "abcd", "0,1 1,4 4,4"},
      {"by widths", "(..)(.)(..)", "abcde", "0,2 2,3 3,5"},
      {"by the rest's width", "(a*)(a)(a)", "aaaa", "0,2 2,3 3,4"},
      {"anything, then a byte", "(.*)(b)", "abab", "0,3 3,4"},
      {"anything, then more", "(.*)(b+)", "abb", "0,2 2,3"},
      {"at least one of anything", "(.+)(b*)", "b", "0,1 1,1"},
      {"at least two of anything", "(.{2,})(b*)", "abb", "0,3 3,3"},
      {"anything again", "(.*)(a*)(.*)", "aab", "0,3 3,3 3,3"},
      {"within a group", "((a*)(b|ab))c", "aabc", "0,3 0,2 2,3"},
      {"the outer before its parts", "((a)|(ab))((c)|(bc))", "abc", "0,2 - 0,2 2,3 2,3 -"},
  };
  for (const Row& row : kRows) Check(row);
}

TEST(Groups, GivesAnAlternationToItsFirstBranchThatTakesAll) {
  constexpr Row kRows[] = {
      {"the first", "(a)|(.)", "a", "0,1 -"},
      {"the second", "(a)|(b)", "b", "- 0,1"},
      {"the last", "(a)|(b)|(c)", "c", "- - 0,1"},
      {"the first of equals", "(a|b)|([ab])", "b", "0,1 -"},
      {"not the first that takes a part", "(a)|(ab)", "ab", "- 0,2"},
      {"an empty branch", "(|a)(b)", "b", "0,0 0,1"},
      {"an empty branch last", "(a|())b", "b", "0,0 0,0"},
  };
  for (const Row& row : kRows) Check(row);
}

TEST(Groups, ReportsTheLastIteration) {
  constexpr Row kRows[] = {
      {"of one byte", "(a)*", "aaa", "2,3"},
      {"of a width", "(ab)*", "abab", "2,4"},
      {"of several", "(a|ab)*", "aba", "2,3"},
      {"each the longest", "(a*b|a)*", "aabaa", "4,5"},
      {"and the rest can match", "(a|ab|bb)*", "abb", "1,3"},
      {"none", "(a)*b", "b", "-"},
      {"unset what took no part", "((a)|b)*", "ab", "1,2 -"},
      {"inner ones of the last", "((a)|(b))*", "ba", "1,2 1,2 -"},
      {"with a minimum", "(a|ab){2,}", "aba", "2,3"},
      {"at the maximum", "(a*){2}", "aa", "2,2"},
      {"of the optional ones", "(a*b?){1,3}", "abab", "2,4"},
      {"up to the maximum", "(a?){3}a*", "aaaa", "2,3"},
      {"never", "(a){0}b", "b", "-"},
      {"of nothing", "(){3}", "", "0,0"},
  };
  for (const Row& row : kRows) Check(row);
}

TEST(Groups, IterateEmptyOnlyIfNeedBe) {
  constexpr Row kRows[] = {
      {"not after text", "(a*)*", "aa", "0,2"},
      {"not after text, plus", "(a*)+", "aa", "0,2"},
      {"if the whole is empty", "(a*)*", "", "0,0"},
      {"if the whole is empty, plus", "(a*)+b", "b", "0,0"},
      {"if the minimum asks", "(a*){2,}", "aa", "2,2"},
      {"not if it needs a byte", "(a)*", "", "-"},
      {"with an inner group", "((a)*)*", "", "0,0 -"},
  };
  for (const Row& row : kRows) Check(row);
}

TEST(Groups, SeeAssertions) {
  constexpr Row kRows[] = {
      {"the start", "(^a|b)*", "abb", "2,3"},
      {"the end", "(a|b$)*", "aab", "2,3"},
      {"a word's start", "(a |[[:<:]]b| )*", "a b", "2,3"},
      {"a word's end", "(a*)([[:>:]] )(a*)", "aa a", "0,2 2,3 3,4"},
  };
  for (const Row& row : kRows) Check(row);
}

TEST(Groups, LieInTheMatchAlone) {
  RegexParts parts("(a*)(b*)");
  Matcher matcher(parts.tree, parts.program);
  GroupFinder finder(parts.tree, parts.program, matcher.Reverse());
  std::array<regmatch_t, 3> groups{};
  finder.Find("aaabbb", {2, 4}, groups);
  EXPECT_EQ(groups[0].rm_so, 2);
  EXPECT_EQ(groups[1].rm_so, 2);
  EXPECT_EQ(groups[1].rm_eo, 3);
  EXPECT_EQ(groups[2].rm_so, 3);
  EXPECT_EQ(groups[2].rm_eo, 4);
}

TEST(Groups, FillTheRoomThatThereIs) {
  RegexParts parts("(a)(b)");
  Matcher matcher(parts.tree, parts.program);
  GroupFinder finder(parts.tree, parts.program, matcher.Reverse());
  std::array<regmatch_t, 4> groups{};
  finder.Find("ab", {0, 2}, std::span(groups).first(0));
  EXPECT_EQ(groups[0].rm_eo, 0);
  finder.Find("ab", {0, 2}, std::span(groups).first(2));
  EXPECT_EQ(groups[1].rm_eo, 1);
  EXPECT_EQ(groups[2].rm_eo, 0);
  finder.Find("ab", {0, 2}, groups);
  EXPECT_EQ(groups[2].rm_eo, 2);
  EXPECT_EQ(groups[3].rm_so, -1);
}

}  // namespace
