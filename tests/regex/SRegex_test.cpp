#include "regex/SRegex.h"

#include <gtest/gtest.h>

#include <iomanip>
#include <iostream>
#include <limits>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "regex/engine/Expression.h"
#include "strings/SFixedString.h"
#include "support/CheckText.h"
#include "support/CountedNew.h"
#include "support/ErrorText.h"
#include "support/ExactInput.h"
#include "support/FailEachAllocation.h"
#include "support/RegexDebug.h"
#include "support/SStringListPeek.h"

namespace {

using Pair = std::pair<int, int>;
using Strings = std::vector<std::string>;

Pair Info(const SRegex& re, int k) {
  const regmatch_t match = re.MatchInfo(k);
  return {match.rm_so, match.rm_eo};
}

constexpr Pair kNone = {-1, -1};

// Checks that nothing is compiled and all answers say so.
void CheckUnusable(const SRegex& re) {
  EXPECT_FALSE(re.OK());
  EXPECT_FALSE(re.HasMatch("abc", 0));
  EXPECT_FALSE(re.HasMatch(SString(), 0));
  EXPECT_FALSE(re.Match("abc", 0).Defined());
  EXPECT_EQ(re.MatchPos(), -1);
  EXPECT_EQ(re.MatchLen(), 0);
  EXPECT_EQ(Info(re, 0), kNone);
  EXPECT_EQ(Info(re, 1), kNone);
  SString s("abc");
  EXPECT_FALSE(re.Subst(s, "x", "g").Defined());
  EXPECT_EQ(s, "abc");
}

TEST(SRegex, NeverCompiled) {
  const SRegex re;
  CheckUnusable(re);
  EXPECT_EQ(DebugText(re), "SRegex was never compiled\n");
}

TEST(SRegex, Compiled) {
  const SRegex re("b(c)");
  EXPECT_TRUE(re.OK());
  EXPECT_EQ(DebugText(re), "SRegex is OK\n");
  EXPECT_EQ(Info(re, 0), kNone) << "nothing was searched";
  EXPECT_EQ(re.MatchPos(), -1);
  EXPECT_EQ(re.MatchLen(), 0);
}

TEST(SRegex, InError) {
  for (const char* const pattern : {"a(", "a)", "[a", "*", "a{2,1}", "", "[b-a]", "[[:none:]]"}) {
    SCOPED_TRACE(pattern);
    SRegex re(pattern);
    CheckUnusable(re);
    const int status = SRegex().Set(pattern);
    EXPECT_GT(status, 0);
    const std::string reason = engine::ErrorText(status);
    EXPECT_EQ(DebugText(re), "SRegex didn't compile because of the following reason:\n" +
                                 reason.substr(0, 99) + "\n");
    EXPECT_EQ(re.Set(pattern), status);
  }
}

TEST(SRegex, TheEmptyPatternDoesNotCompile) {
  SRegex re;
  EXPECT_EQ(re.Set(""), REG_BADPAT);
  EXPECT_EQ(re.Set(SString()), REG_BADPAT) << "undefined";
  CheckUnusable(SRegex(""));
}

TEST(SRegex, DebugIgnoresTheFormatOfTheStream) {
  std::cerr << std::hex << std::setw(100);
  EXPECT_EQ(DebugText(SRegex("a")), "SRegex is OK\n");
  std::cerr << std::dec << std::setw(0);
}

TEST(SRegex, SetReplacesTheExpression) {
  SRegex re("a(b)");
  EXPECT_TRUE(re.HasMatch("ab", 0));
  EXPECT_EQ(re.Set("c", nullptr), 0);
  EXPECT_EQ(Info(re, 0), kNone) << "positions go with the expression";
  EXPECT_FALSE(re.HasMatch("ab", 0));
  EXPECT_TRUE(re.HasMatch("xc", 0));
  EXPECT_NE(re.Set("c(", nullptr), 0);
  CheckUnusable(re);
  EXPECT_EQ(re.Set("a"), 0);
  EXPECT_TRUE(re.HasMatch("a"));
}

TEST(SRegex, OnlyTheLetterIIsAnOption) {
  EXPECT_TRUE(SRegex("abc", "i").HasMatch("xABC"));
  EXPECT_TRUE(SRegex("abc", "gi").HasMatch("xABC"));
  for (const char* const options : {static_cast<const char*>(nullptr), "", "g", "I", "nmsx"}) {
    EXPECT_FALSE(SRegex("abc", options).HasMatch("ABC"));
    EXPECT_TRUE(SRegex("abc", options).HasMatch("abc"));
  }
}

TEST(SRegex, APatternMayHoldNul) {
  const SRegex re(SString("a\0(b)", 5));
  EXPECT_FALSE(re.HasMatch("a"));
  EXPECT_TRUE(re.HasMatch(SString("xa\0b", 4)));
  EXPECT_EQ(Info(re, 1), Pair(3, 4));
}

TEST(SRegex, APatternNeedsNoNulBehind) {
  const ExactInput pattern("a[b]");
  SFixedString fixed(pattern.Data(), pattern.Length());
  EXPECT_TRUE(SRegex(fixed).HasMatch("ab"));
}

struct SearchRow {
  const char* pattern;
  std::string_view text;
  int start;
  Pair match;  // kNone if there is none
};

constexpr SearchRow kSearches[] = {
    {"b", "abc", 0, {1, 2}},
    {"b", "abc", 1, {1, 2}},
    {"b", "abc", 2, kNone},
    {"^b", "ab", 1, kNone},
    {"^b", "b", 0, {0, 1}},
    {"^b", "a\nb", 0, kNone},
    {"^b", "a\nb", 2, kNone},
    {"a$", "a\nb", 0, kNone},
    {"a$", "a\n", 0, kNone},
    {"$", "abc", 0, {3, 3}},
    {"$", "abc", 3, {3, 3}},
    {"^", "abc", 0, {0, 0}},
    {"^", "abc", 1, kNone},
    {"^", "", 0, {0, 0}},
    {"x*", "", 0, {0, 0}},
    {"x*", "abc", 3, {3, 3}},
    {"x*", "abc", 4, kNone},
    {"x*", "abc", -1, kNone},
    {"x*", "abc", 2147483647, kNone},
    {"x*", "abc", -2147483647 - 1, kNone},
    {"a.c", "a\nc", 0, {0, 3}},
    {"a[^b]c", "a\nc", 0, {0, 3}},
    {"a.c", {"a\0c", 3}, 0, {0, 3}},
    {"c$", {"a\0c", 3}, 0, {2, 3}},
    {"a$", {"a\0c", 3}, 0, kNone},
    {"a|ab|abc", "xabcd", 0, {1, 4}},
    {"[[:<:]]b", "a bc", 0, {2, 3}},
    {"[[:<:]]b", "abc", 1, kNone},
    {"[[:<:]]b", " bc", 1, {1, 2}},
    {"a[[:>:]]", "a b", 0, {0, 1}},
    {"a[[:>:]]", "ab", 0, kNone},
    {"[[:alpha:]]+", "12ab", 0, {2, 4}},
};

TEST(SRegex, Searches) {
  for (const SearchRow& row : kSearches) {
    SCOPED_TRACE(::testing::Message() << row.pattern << " from " << row.start);
    const SRegex re(row.pattern);
    ASSERT_TRUE(re.OK());
    const ExactInput input(row.text);
    SFixedString fixed(input.Data(), input.Length());
    const SString s = fixed;
    EXPECT_EQ(re.HasMatch(s, row.start), row.match != kNone);
    const int length = static_cast<int>(row.text.size());
    const Pair whole = row.match == kNone ? Pair(row.start, length) : row.match;
    EXPECT_EQ(Info(re, 0), whole);
    EXPECT_EQ(re.MatchPos(), whole.first);
  }
}

TEST(SRegex, AnUndefinedStringIsTheEmptyOne) {
  const SRegex re("x*()");
  EXPECT_TRUE(re.HasMatch(SString(), 0));
  EXPECT_EQ(Info(re, 0), Pair(0, 0));
  EXPECT_EQ(Info(re, 1), Pair(0, 0));
  EXPECT_FALSE(re.HasMatch(SString(), 1));
}

TEST(SRegex, TellsPositions) {
  const SRegex re("b(c)");
  EXPECT_TRUE(re.HasMatch("abcd", 0));
  EXPECT_EQ(re.MatchPos(), 1);
  EXPECT_EQ(re.MatchLen(), 2);
  EXPECT_EQ(Info(re, 0), Pair(1, 3));
  EXPECT_EQ(Info(re, 1), Pair(2, 3));
  for (const int k : {2, 9, 10, 11, 1000, -1, -2147483647}) EXPECT_EQ(Info(re, k), kNone) << k;
  EXPECT_EQ(Texts(re.Match("abcd", 0)), (Strings{"bc", "c"}));
}

TEST(SRegex, PositionsCountFromTheBeginningOfTheString) {
  const SRegex re("b(c)");
  EXPECT_TRUE(re.HasMatch("bcbc", 1));
  EXPECT_EQ(Info(re, 0), Pair(2, 4));
  EXPECT_EQ(Info(re, 1), Pair(3, 4));
}

TEST(SRegex, AFailedSearchLeavesTheGroupsOfTheLastMatch) {
  const SRegex re("b(c)|(d)");
  EXPECT_FALSE(re.HasMatch("xyz", 1));
  EXPECT_EQ(Info(re, 0), Pair(1, 3));
  EXPECT_EQ(Info(re, 1), kNone);
  EXPECT_TRUE(re.HasMatch("abcd", 0));
  EXPECT_FALSE(re.HasMatch("xyz", 2)) << "before the groups were asked for";
  EXPECT_EQ(Info(re, 0), Pair(2, 3));
  EXPECT_EQ(re.MatchPos(), 2);
  EXPECT_EQ(re.MatchLen(), 1);
  EXPECT_EQ(Info(re, 1), Pair(2, 3));
  EXPECT_EQ(Info(re, 2), kNone);
  EXPECT_EQ(Info(re, 0), Pair(2, 3));
  EXPECT_FALSE(re.HasMatch("xyz", 0)) << "after they were";
  EXPECT_EQ(Info(re, 0), Pair(0, 3));
  EXPECT_EQ(Info(re, 1), Pair(2, 3));
  EXPECT_FALSE(re.HasMatch("xyz", 7)) << "outside of the string";
  EXPECT_EQ(Info(re, 0), Pair(7, 3));
  EXPECT_EQ(re.MatchLen(), -4);
  EXPECT_TRUE(re.HasMatch("xd", 0));
  EXPECT_EQ(Info(re, 1), kNone);
  EXPECT_EQ(Info(re, 2), Pair(1, 2));
}

TEST(SRegex, GroupsAreThoseOfTheStringAsItWasSearched) {
  const SRegex re("(b+)");
  {
    SString s("abbc");
    EXPECT_TRUE(re.HasMatch(s, 0));
    s = "xxxxxxxxxxxxxxxxxxxxxxxxx";
    s += 'y';
  }
  EXPECT_EQ(Info(re, 1), Pair(1, 3));
}

TEST(SRegex, KeepsNoHandleOnTheString) {
  const SRegex re("(b+)");
  for (const int length : {1, 200, 300, 100'000}) {
    SString s = "a" + SString('b', length) + "c";
    EXPECT_TRUE(re.HasMatch(s));
    EXPECT_EQ(SStringPeek::Rep(s).links, 1);
    EXPECT_EQ(Info(re, 1), Pair(1, length + 1));
  }
}

TEST(SRegex, ASearchLeavesTheNextEditAsCheapAsItWas) {
  const SRegex re("(x)(y*)");
  SString s('x', 100'000);
  s += 'y';
  EXPECT_TRUE(re.HasMatch(s, s.Length() - 2));  // builds what later searches use
  const AllocationCount count;
  for (int i = 0; i < 20; ++i) {
    EXPECT_TRUE(re.HasMatch(s, s.Length() - 2 - i));
    s += 'y';
  }
  EXPECT_LT(count.Bytes(), 100'000U) << "the string was copied";
}

TEST(SRegex, KeepsNothingOfAStringOfOthers) {
  const SRegex re("a(b)");
  {
    const ExactInput input("xab");
    SFixedString fixed(input.Data(), input.Length());
    EXPECT_TRUE(re.HasMatch(fixed));
  }  // would end the process if a handle were left
  EXPECT_EQ(Info(re, 1), Pair(2, 3));
  {
    // The bytes come right after the representation, as they do in the library's own.
    struct Block {
      SStringRep rep;
      char text[8];
    };
    const auto block = std::make_unique<Block>(Block{{nullptr, 2, 1, 3}, "ab"});
    block->rep.buffer = block->text;
    EXPECT_TRUE(re.HasMatch(SString(&block->rep)));
    EXPECT_EQ(block->rep.links, 1);
  }
  EXPECT_EQ(Info(re, 1), Pair(1, 2));
}

TEST(SRegex, GroupsDependOnTheBytesBesideTheMatch) {
  struct Row {
    const char *pattern, *text;
    int start;
    std::pair<int, int> group;
  };
  const Row rows[] = {
      {"b([[:<:]]|x*)c", "abc", 1, {2, 2}},     {"(^b|)(b*)", "abb", 1, {1, 1}},
      {"(^b|)(b*)", "bb", 0, {0, 1}},           {"([[:<:]]b|bb*)(b*)", "abb", 1, {1, 3}},
      {"([[:<:]]b|bb*)(b*)", " bb", 1, {1, 3}}, {"([[:<:]]|b)(b*)", "abb", 1, {1, 2}},
      {"([[:<:]]|b)(b*)", " bb", 1, {1, 2}},    {"(b*)(b[[:>:]]|b|)", "bbc", 0, {0, 2}},
      {"(b|bb$)(b*)", "bb", 0, {0, 2}},         {"(b|bb$)(b*)", "bbc", 0, {0, 1}},
      {"(b|bb[[:>:]])(b*)", "bbc", 0, {0, 1}},  {"(b|bb[[:>:]])(b*)", "bb.", 0, {0, 2}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.pattern + std::string(" on ") + row.text);
    const SRegex re(row.pattern);
    ASSERT_TRUE(re.HasMatch(row.text, row.start));
    EXPECT_EQ(Info(re, 1), Pair(row.group.first, row.group.second));
  }
}

TEST(SRegex, LongAndShortMatchesHaveTheSameGroups) {
  const SRegex re("[[:<:]](b)(b*)(c*$|c*)");
  for (int length = 2; length < 600; ++length) {
    const SString text = "a " + SString('b', length) + "cc";
    ASSERT_TRUE(re.HasMatch(text, 1));
    EXPECT_EQ(Info(re, 0), Pair(2, length + 4));
    EXPECT_EQ(Info(re, 2), Pair(3, length + 2)) << length;
    EXPECT_EQ(Info(re, 3), Pair(length + 2, length + 4)) << length;
  }
}

TEST(SRegex, ForgetsTheStringOfTheMatchBefore) {
  const SRegex re("(a)|(b)");
  EXPECT_TRUE(re.HasMatch("xxa"));
  const ExactInput input("b");
  SFixedString view(input.Data(), input.Length());
  EXPECT_TRUE(re.HasMatch(view));
  EXPECT_EQ(Info(re, 1), kNone);
  EXPECT_EQ(Info(re, 2), Pair(0, 1));
}

TEST(SRegex, TellsTheLengthBehindAnyStart) {
  const SRegex re("x");
  EXPECT_FALSE(re.HasMatch("abc", std::numeric_limits<int>::min()));
  EXPECT_EQ(re.MatchLen(), std::numeric_limits<int>::max());
  EXPECT_FALSE(re.HasMatch("abc", 7));
  EXPECT_EQ(re.MatchLen(), -4);
}

TEST(SRegex, GroupsThatTookNoPartAreDefinedAndEmpty) {
  const SStringList list = SRegex("(a)(b)?").Match("a", 0);
  EXPECT_EQ(Texts(list), (Strings{"a", "a", ""}));
  CheckText(list.Get(2), "");
}

TEST(SRegex, NineGroupsAreRecorded) {
  const SRegex re("(a)(b)(c)(d)(e)(f)(g)(h)(i)(j)(k)(l)");
  EXPECT_TRUE(re.HasMatch("abcdefghijkl"));
  for (int k = 1; k <= 9; ++k) EXPECT_EQ(Info(re, k), Pair(k - 1, k));
  for (int k = 10; k <= 13; ++k) EXPECT_EQ(Info(re, k), kNone);
  const SStringList list = re.Match("abcdefghijkl");
  EXPECT_EQ(Texts(list),
            (Strings{"abcdefghijkl", "a", "b", "c", "d", "e", "f", "g", "h", "i", "", "", ""}));
}

TEST(SRegex, MatchIsUndefinedWithoutAMatch) {
  const SRegex re("b");
  EXPECT_FALSE(re.Match("aaa").Defined());
  EXPECT_FALSE(re.Match("b", 1).Defined());
  EXPECT_FALSE(re.Match(SString()).Defined());
  const SStringList list = re.Match("abab", 2);
  EXPECT_TRUE(list.Defined());
  EXPECT_EQ(Texts(list), (Strings{"b"}));
  EXPECT_EQ(re.MatchPos(), 3);
}

TEST(SRegex, MatchCopiesTheBytes) {
  const SString s("abc");
  const SStringList list = SRegex("abc").Match(s);
  EXPECT_FALSE(SStringPeek::Shares(list.Get(0), s));
}

TEST(SRegex, CopiesNothing) {
  static_assert(!std::is_constructible_v<SRegex, const SRegex&>);
  static_assert(!std::is_assignable_v<SRegex&, const SRegex&>);
  SRegex re("a(b)"), other("c");
  EXPECT_TRUE(re.HasMatch("ab"));
  SRegex copy(re);
  CheckUnusable(copy);
  EXPECT_EQ(DebugText(copy), "SRegex was never compiled\n");
  EXPECT_EQ(&(other = re), &other);
  EXPECT_TRUE(other.HasMatch("c"));
  EXPECT_FALSE(other.HasMatch("ab"));
  EXPECT_EQ(Info(re, 1), Pair(1, 2));
  EXPECT_EQ(copy.Set("x"), 0);
  EXPECT_TRUE(copy.HasMatch("x"));
}

TEST(SRegex, ASearchAllocatesNothing) {
  const SRegex groups("(b+)c"), plain("b+c");
  const SString s("aabbbcaab");
  for (const SRegex* const re : {&groups, &plain}) {
    EXPECT_TRUE(re->HasMatch(s));  // the expression's caches are filled
    EXPECT_TRUE(re->HasMatch(s));
    const AllocationCount count;
    for (int i = 0; i < 100; ++i) EXPECT_TRUE(re->HasMatch(s));
    EXPECT_EQ(count.Made(), 0);
  }
}

TEST(SRegex, AFailedCompilationLeavesNothingBehind) {
  const SString pattern("n(e)w+");
  FailEachAllocation([] { return std::make_unique<SRegex>("old"); },
                     [&](const auto& re) { re->Set(pattern); },
                     [](const auto& re) {
                       CheckUnusable(*re);
                       EXPECT_EQ(re->Set("n(e)w+"), 0);
                       EXPECT_TRUE(re->HasMatch("neww"));
                     });
}

}  // namespace
