#include "regex/PasteBuffer.h"

#include <gtest/gtest.h>

#include <new>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "regex/SPerlRegex.h"
#include "strings/SFixedString.h"
#include "support/CheckText.h"
#include "support/CountedNew.h"
#include "support/ErrorText.h"
#include "support/ExactInput.h"
#include "support/FailEachAllocation.h"
#include "support/Growth.h"
#include "support/SStringListPeek.h"

namespace {

using namespace std::string_view_literals;
using Strings = std::vector<std::string>;

const std::string kUnescaped = "Unescaped '$' in regular expression replacement string\n";
const std::string kInvalid = "Invalid replacement string in regular expression\n";

struct PasteRow {
  std::string_view replacement;
  std::string_view appended;
  int unescaped = 0;
  bool invalid = false;
};

// With the groups whole, one, two.
constexpr PasteRow kPastes[] = {
    {"", ""},
    {"abc", "abc"},
    {"$&", "whole"},
    {"[$&]", "[whole]"},
    {"$1", "one"},
    {"$2", "two"},
    {"$3", ""},
    {"$4", ""},
    {"$9", ""},
    {"$2 is $1", "two is one"},
    {"$11", "one1"},
    {R"(\1\2)", "onetwo"},
    {R"(\3\9)", ""},
    {R"(\n\t\r\f\v)", "\n\t\r\f\v"},
    {R"(a\0b)", "a\0b"sv},
    {R"(\$\\\&\/\a\d\8)", "$\\&/ad"},
    {R"(\$1)", "$1"},
    {R"(\\1)", R"(\1)"},
    {"a\0b"sv, "a\0b"sv},
    {"\\\0"sv, "\0"sv},
    {"$x", "$", 1},
    {"$0", "$", 1},
    {"$$", "$", 1},
    {"$$1", "$1", 1},
    {"a$ b", "a$b", 1},
    {"$xy$&", "$ywhole", 1},
    {"$\\1", "$1", 1},
    {"$\0a"sv, "$a"sv, 1},
    {"$x$y", "$$", 2},
    {"$", "", 0, true},
    {"a$", "", 0, true},
    {"a\\", "", 0, true},
    {"\\", "", 0, true},
    {"\\\\\\", "", 0, true},
    {"$$$", "", 1, true},
    {"$x$y$", "", 2, true},
    {"$&$1\\", "", 0, true},
};

std::string Messages(int unescaped, bool invalid) {
  std::string all;
  for (; unescaped > 0; --unescaped) all += kUnescaped;
  return invalid ? all + kInvalid : all;
}

TEST(AppendPasteBuffer, ExpandsTheReplacement) {
  const SStringList groups = {"whole", "one", "two"};
  for (const PasteRow& row : kPastes) {
    SCOPED_TRACE(row.replacement);
    const ExactInput input(row.replacement);
    SFixedString fixed(input.Data(), input.Length());
    SString out("before:");
    EXPECT_EQ(ErrorText([&] { AppendPasteBuffer(&out, fixed, groups); }),
              Messages(row.unescaped, row.invalid));
    CheckText(out, "before:" + std::string(row.appended));
  }
}

TEST(AppendPasteBuffer, WithoutGroupsNothingStandsForThem) {
  SString out;
  AppendPasteBuffer(&out, "$&$1\\1", SStringList());
  CheckUndefined(out);
  AppendPasteBuffer(&out, SString(), {"whole"});
  CheckUndefined(out);
  AppendPasteBuffer(&out, "<$&$1>", SStringList("whole"));
  CheckText(out, "<whole>");
}

TEST(AppendPasteBuffer, NineGroupsCanBeNamed) {
  SStringList groups;
  for (int k = 0; k <= 12; ++k) groups.Push(SString(k) + ",");
  SString out;
  AppendPasteBuffer(&out, "$&$1$2$3$4$5$6$7$8$9", groups);
  CheckText(out, "0,1,2,3,4,5,6,7,8,9,");
}

TEST(AppendPasteBuffer, TheTargetMayBeAnArgument) {
  SString s("a$&");
  AppendPasteBuffer(&s, s, {"b"});
  CheckText(s, "a$&ab");
  SStringList groups = {"whole", "one"};
  AppendPasteBuffer(&groups[1], "<$1>", groups);
  CheckText(groups[1], "one<one>");
  SString grown("a$&b and so much more that there is no room for it");
  AppendPasteBuffer(&grown, grown, {"x"});
  CheckText(grown,
            "a$&b and so much more that there is no room for itaxb and so much more that "
            "there is no room for it");
}

struct Row {
  const char* name;
  std::string_view text;
  const char* pattern;
  std::string_view replacement;
  const char* options;
  std::string_view result;
  Strings list;
  std::string messages = "";
};

const Row kRows[] = {
    {"groups",
     "key=val",
     "(\\w+)=(\\w+)",
     "$2 is $1",
     nullptr,
     "val is key",
     {"key=val", "key", "val"}},
    {"the first only", "foo", "o", "0", nullptr, "f0o", {"o"}},
    {"every match", "foo", "o", "0", "g", "f00", {"o"}},
    {"other options", "foo", "o", "0", "xGm", "f0o", {"o"}},
    {"case", "FOO", "o", "0", "gi", "F00", {"O"}},
    {"the whole match", "abc", "b", "[$&]", nullptr, "a[b]c", {"b"}},
    {"no match", "abc", "x", "y", "g", "abc", {}},
    {"at both ends", "xax", "x", "yy", "g", "yyayy", {"x"}},
    {"adjacent matches", "aaaa", "aa", "b", "g", "bb", {"aa"}},
    {"the last match's groups", "a1b2", "([a-z])(\\d)", "$2$1", "g", "1a2b", {"b2", "b", "2"}},
    {"a group that took no part", "ab", "(a)|(b)", "<$1$2>", "g", "<a><b>", {"b", "", "b"}},
    {"a group that is not there", "ab", "(a)", "<$2>", nullptr, "<>b", {"a", "a"}},
    {"the result is not searched", "aa", "a", "aa", "g", "aaaa", {"a"}},
    {"anchor, first only", "aaa", "^a", "b", "g", "baa", {"a"}},
    {"anchor, end", "abc", "$", "x", "g", "abcx", {""}},
    {"anchor, both", "", "^$", "x", "g", "x", {""}},
    {"word boundaries see the byte before", "aab", "[[:<:]]a", "x", "g", "xab", {"a"}},
    {"NUL", "a\0b"sv, "\\Nb", "\\0$&", nullptr, "a\0\0b"sv, {std::string("\0b", 2)}},
    {"unescaped dollar", "abc", "b", "$x", nullptr, "a$c", {"b"}, kUnescaped},
    {"unescaped dollar, each time", "bb", "b", "$x", "g", "$$", {"b"}, kUnescaped + kUnescaped},
    {"invalid replacement", "abc", "b", "a$", nullptr, "ac", {"b"}, kInvalid},
    {"invalid, each time",
     "abb",
     "b",
     "$x\\",
     "g",
     "a",
     {"b"},
     kUnescaped + kInvalid + kUnescaped + kInvalid},
    {"no match, no message", "abc", "x", "a$", "g", "abc", {}},
    {"empty match", "abc", "x*", "-", nullptr, "-abc", {""}},
    {"the longest", "aab", "a*|aab", "x", nullptr, "x", {"aab"}},
    // The match that reaches the end is the last.
    {"to the end", "b", "b*", "-", "g", "-", {"b"}},
    {"to the end, twice", "bbb", "bb*", "-", "g", "-", {"bbb"}},
    {"empty text", "", "x*", "-", "g", "-", {""}},
    // Behind an empty match one byte is passed over.
    {"between all bytes", "abc", "x*", "-", "g", "-a-b-c-", {""}},
    {"empty and not", "abc", "b*", "-", "g", "-a--c-", {""}},
    {"empty behind the last", "ab", "b*", "-", "g", "-a--", {""}},
    {"empty behind the last only", "aab", "b*$", "-", "g", "aa-", {"b"}},
    {"none behind the last", "ab", "[[:<:]]|b+", "-", "g", "-a-", {"b"}},
    {"empty at one place", "abc", "^", "-", "g", "-abc", {""}},
    {"empty with groups", "ab", "(x*)()", "<$1$2>", "g", "<>a<>b<>", {"", "", ""}},
    {"word starts", "ab cd", "[[:<:]]", "*", "g", "*ab *cd", {""}},
    {"word ends", "ab cd", "[[:>:]]", "*", "g", "ab* cd*", {""}},
};

// All forms of S, the first without "i", which belongs to the pattern there.
std::vector<std::pair<SString, SStringList>> AllForms(const Row& row) {
  const SPerlRegex re(row.pattern, row.options);
  const SString replacement(row.replacement);
  std::vector<std::pair<SString, SStringList>> results;
  const auto add = [&](auto substitute) {
    SString s(row.text);
    const SString sharer(s);
    SStringList list = substitute(s);
    EXPECT_EQ(sharer, row.text);
    results.emplace_back(s, list);
  };
  add([&](SString& s) { return s.S(re, replacement, row.options); });
  add([&](SString& s) { return re.Subst(s, replacement, row.options); });
  add([&](SString& s) { return s.S(row.pattern, replacement, row.options); });
  add([&](SString& s) { return s.S(SString(row.pattern), replacement, row.options); });
  return results;
}

TEST(Substitution, AllForms) {
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.name);
    std::vector<std::pair<SString, SStringList>> results;
    const std::string messages = ErrorText([&] { results = AllForms(row); });
    EXPECT_EQ(messages, row.messages + row.messages + row.messages + row.messages);
    for (const auto& [s, list] : results) {
      CheckText(s, row.result);
      EXPECT_EQ(Texts(list), row.list);
      EXPECT_EQ(list.Defined(), !row.list.empty());
    }
  }
}

TEST(Substitution, WithNothingCompiledNothingChanges) {
  SString s("abc");
  const SRegex re;
  EXPECT_FALSE(re.Subst(s, "x").Defined());
  EXPECT_FALSE(s.S(re, "x", "g").Defined());
  EXPECT_NE(ErrorText([&] { EXPECT_FALSE(s.S("a)", "x").Defined()); }), "");
  EXPECT_NE(ErrorText([&] { EXPECT_FALSE(s.S("a{2,1}", "x").Defined()); }), "");
  EXPECT_EQ(s, "abc");
}

TEST(Substitution, WithoutAMatchTheStringIsNotTouched) {
  SString s("abc"), undefined;
  const SString sharer(s);
  s.S("x", "y", "g");
  EXPECT_TRUE(SStringPeek::Shares(s, sharer));
  undefined.S("x", "y");
  CheckUndefined(undefined);
}

TEST(Substitution, OfAnUndefinedString) {
  SString s;
  EXPECT_EQ(s.S("x*", "-", "g").Count(), 1);
  CheckText(s, "-");
}

TEST(Substitution, WhatIsLeftWithoutBytesIsUndefined) {
  SString s("abc");
  EXPECT_EQ(s.S("\\w+", "").Count(), 1);
  CheckUndefined(s);
}

TEST(Substitution, TheReplacementMayBeTheString) {
  SString s("a$&");
  s.S("a", s);
  CheckText(s,
            "a"
            "a"
            "$&");
  SString t("aba");
  t.S("a", t, "g");
  CheckText(t, "abababa");
  SString u("ab");
  u.S(u, u);
  CheckText(u, "ab");
}

TEST(Substitution, ViewedBytesAreLeftAlone) {
  char bytes[] = "abc";
  {
    SFixedString fixed(bytes, 3);
    SString s = fixed;
    const SRegex re("(b)");
    EXPECT_EQ(s.S(re, "x").Count(), 2);
    CheckText(s, "axc");
    EXPECT_EQ(re.MatchInfo(1).rm_so, 1);
  }
  EXPECT_STREQ(bytes, "abc");
}

TEST(Substitution, AnExpressionLearnsOfTheSearches) {
  const SRegex re("b(c)");
  SString s("abcbcx");
  re.Subst(s, "-", "g");
  EXPECT_EQ(re.MatchPos(), 5) << "of the last search, which failed";
  EXPECT_EQ(re.MatchLen(), 1);
  EXPECT_EQ(re.MatchInfo(1).rm_so, 4) << "of the last match, in the string as it was";
  s = "xbc";
  re.Subst(s, "-", "g");
  EXPECT_EQ(re.MatchPos(), 1);
  EXPECT_EQ(re.MatchLen(), 2);
  s = "x";
  re.Subst(s, "-");
  EXPECT_EQ(re.MatchPos(), 0);
  EXPECT_EQ(re.MatchLen(), 1);
  EXPECT_EQ(re.MatchInfo(1).rm_so, 2);
}

TEST(Substitution, ThatFindsNoMemoryLeavesTheStringAsItWas) {
  const SRegex re("(b)");
  const SString replacement("$1, and more than fits into the room of the string");
  for (int n = 0;; ++n) {
    SString s("abcabc");
    const SString sharer(s);
    if (!FailAllocation(n, [&] { re.Subst(s, replacement, "g"); }).fired) break;
    EXPECT_EQ(s, "abcabc");
    EXPECT_STREQ(Flaw(s), "");
    EXPECT_EQ(sharer, "abcabc");
  }
}

TEST(Substitution, WithTextThatFindsNoMemoryLeavesTheStringAsItWas) {
  ASSERT_TRUE(SString("b").HasMatch("(b)c?")) << "from now on the pattern is known";
  for (const char* const pattern : {"(b)c?", ""}) {
    for (int n = 0;; ++n) {
      SString s("abcabc");
      const auto edit = [&] {
        s.S(pattern, "<$1>, and more than fits into the room of the string", "g");
      };
      if (!FailAllocation(n, edit).fired) break;
      EXPECT_EQ(s, "abcabc");
    }
  }
}

TEST(Substitution, NamesTheHighestGroupFirst) {
  SString s("key=val");
  s.S("(\\w+)=(\\w+)", "$2 $1 $&");
  CheckText(s, "val key key=val");
}

TEST(Substitution, OfTheEmptyPatternKeepsNoHandleOnViewedBytes) {
  SString s("");
  {
    const ExactInput input("abc");
    SFixedString view(input.Data(), input.Length());
    s.S("", view);
  }
  CheckText(s, "abc");
}

TEST(Substitution, OfTheEmptyPatternPastTheLargestLength) {
  SString s('a', 100'000);
  const SString replacement('b', 100'000);
  EXPECT_THROW(s.S("", replacement, "g"), std::bad_alloc);
  EXPECT_EQ(s.Length(), 100'000);
}

struct EmptyRow {
  const char* text;
  const char* replacement;
  const char* options;
  const char* result;
};

constexpr EmptyRow kEmpty[] = {
    {"abc", "-", "g", "-a-b-c-"},  {"abc", "-", nullptr, "-abc"},
    {"abc", "-", "i", "-abc"},     {"abc", "$1\\n", "g", "$1\\na$1\\nb$1\\nc$1\\n"},
    {"abc", "$", nullptr, "$abc"}, {"a", "-", "g", "-a-"},
    {"", "-", "g", "-"},           {"", "-", nullptr, "-"},
    {"abc", "", "g", "abc"},       {"abc", "", nullptr, "abc"},
};

TEST(Substitution, OfTheEmptyPattern) {
  for (const EmptyRow& row : kEmpty) {
    for (int form = 0; form < 4; ++form) {
      SString s(row.text);
      const SStringList list = form == 0   ? s.S("", row.replacement, row.options)
                               : form == 1 ? s.S(SString(""), row.replacement, row.options)
                               : form == 2 ? s.S(SString(), row.replacement, row.options)
                                           : s.S(nullptr, row.replacement, row.options);
      CheckText(s, row.result);
      EXPECT_EQ(Texts(list), (Strings{""}));
      CheckText(list.Get(0), "");
    }
  }
}

TEST(Substitution, OfTheEmptyPatternInUndefinedStrings) {
  SString s;
  s.S("", SString(), "g");
  CheckUndefined(s);
  s.S("", "", "g");
  CheckText(s, "");
  SString t;
  t.S("", "-", "g");
  CheckText(t, "-");
  SString own("ab");
  own.S("", own, "g");
  CheckText(own, "abaabbab");
  own = "ab";
  own.S("", own);
  CheckText(own, "abab");
}

// What the header says, one step after the other.
std::string Model(const SRegex& re, std::string_view text, const std::string& replacement,
                  bool global) {
  const SString s(text);
  std::string head;
  std::size_t copied = 0;
  bool any = false;
  bool passedOver = false;
  for (int pos = 0;;) {
    const SStringList match = re.Match(s, pos);
    if (match.Count() == 0) break;
    any = true;
    const auto start = static_cast<std::size_t>(re.MatchPos());
    head += text.substr(copied, start - copied);
    SString pasted;
    AppendPasteBuffer(&pasted, SString(std::string_view(replacement)), match);
    head += pasted.View();
    copied = start + static_cast<std::size_t>(re.MatchLen());
    pos = static_cast<int>(copied);
    if (!global) break;
    if (copied == text.size() && (!passedOver || re.MatchLen() == 0)) break;
    if (re.MatchLen() > 0) continue;
    ++pos;
    passedOver = true;
  }
  return any ? head + std::string(text.substr(copied)) : std::string(text);
}

TEST(Substitution, AgreesWithTheRulesOnRandomTexts) {
  constexpr const char* kPatterns[] = {"a",      "b*",   "(a)(b)?", "^a", "a|b|$", "[[:<:]]",
                                       "(a|b)+", "[^a]", "x",       "()", "a*$",   "(a*)(b*)"};
  constexpr const char* kReplacements[] = {"", "-", "$&", "<$1>", "$2$1", "$&$&"};
  std::mt19937 random(7);
  const auto below = [&](std::size_t n) { return random() % n; };
  for (int i = 0; i < 20'000; ++i) {
    const SRegex re(kPatterns[below(std::size(kPatterns))]);
    const std::string replacement = kReplacements[below(std::size(kReplacements))];
    std::string text;
    for (std::size_t n = below(10); n > 0; --n) text += "ab c"[below(4)];
    const bool global = below(2) == 0;
    SString s{std::string_view(text)};
    re.Subst(s, SString(std::string_view(replacement)), global ? "g" : nullptr);
    ASSERT_EQ(s.View(), Model(re, text, replacement, global)) << text;
  }
}

TEST(Substitution, TakesLinearTime) {
  for (const char* const pattern : {"a", "(a)", "x*", "[ab]", "b+a"}) {
    EXPECT_TRUE(GrowsLinearly(10'000, [&](int n) {
      SString s;
      for (int i = 0; i < n / 4; ++i) s += "ab b";
      s.S(pattern, "<$&$1>", "g");
      EXPECT_GT(s.Length(), n);
    })) << pattern;
  }
}

TEST(Substitution, AllocatesNothingForEachMatch) {
  SString s;
  for (int i = 0; i < 1000; ++i) s += "ab";
  SString warm(s);
  warm.S("(a)b", "$1", "g");
  const AllocationCount count;
  s.S("(a)b", "$1", "g");
  EXPECT_EQ(s.Length(), 1000);
  EXPECT_LT(count.Made(), 40);
}

}  // namespace
