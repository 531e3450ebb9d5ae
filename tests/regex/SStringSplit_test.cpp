#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "lists/SStringList.h"
#include "regex/SPerlRegex.h"
#include "strings/SFixedString.h"
#include "strings/SString.h"
#include "support/CheckText.h"
#include "support/CountedNew.h"
#include "support/ErrorText.h"
#include "support/ExactInput.h"
#include "support/Growth.h"
#include "support/SStringListPeek.h"

namespace {

using namespace std::string_view_literals;
using Strings = std::vector<std::string>;

struct Row {
  std::string_view text;
  const char* separator;
  int limit;
  Strings fields;
};

const Row kRows[] = {
    {"a,b,c", ",", 0, {"a", "b", "c"}},
    {"a,b,,c,", ",", 0, {"a", "b", "", "c"}},
    {"a,b,c,,", ",", 0, {"a", "b", "c", ""}},
    {",a", ",", 0, {"", "a"}},
    {",,a", ",", 0, {"", "", "a"}},
    {",", ",", 0, {""}},
    {",,", ",", 0, {"", ""}},
    {"", ",", 0, {}},
    {"a", ",", 0, {"a"}},
    {"a,b,c", ",", 1, {"a,b,c"}},
    {"a,b,c", ",", 2, {"a", "b,c"}},
    {"a,b,c", ",", 3, {"a", "b", "c"}},
    {"a,b,c", ",", 4, {"a", "b", "c"}},
    {"a,b,", ",", 2, {"a", "b,"}},
    {"a,b,", ",", 3, {"a", "b"}},
    {"a,", ",", 2, {"a"}},
    {",a,b,c", ",", 2, {"", "a", "b,c"}},
    {",,,a,,b", ",", 2, {"", "", "", "a", ",b"}},
    {"a,,,b,c", ",", 3, {"a", "", "", "b", "c"}},
    {"a,b,c", ",", -1, {"a,b,c"}},
    {"a,b,c", ",", -2147483647 - 1, {"a,b,c"}},
    {"", ",", 1, {}},
    {"", ",", -1, {}},
    {"a, b ,c", "\\s*,\\s*", 0, {"a", "b", "c"}},
    {"  a b\tc ", "\\s+", 0, {"", "a", "b", "c"}},
    {"a12b3c", "\\d+", 0, {"a", "b", "c"}},
    {"aXbxc", "x", 0, {"aXb", "c"}},
    {"a--b-c", "-|--", 0, {"a", "b", "c"}},
    {"a(b)c", "(\\()|(\\))", 0, {"a", "b", "c"}},
    {"abc", "x*", 0, {"a", "b", "c"}},
    {"abc", "x*", 2, {"a", "bc"}},
    {"axb", "x*", 0, {"a", "b"}},
    {"xab", "x*", 0, {"", "a", "b"}},
    {"abc", "b*", 0, {"a", "c"}},
    {"abc", "$", 0, {"abc"}},
    {"abc", "^", 0, {"bc"}},
    {"abc", "^", 1, {"abc"}},
    {"a", "^", 0, {}},
    {"ab cd", "[[:<:]]", 0, {"ab ", "d"}},
    {"abc", "abc", 0, {""}},
    {"abc", "abcd", 0, {"abc"}},
    {"a\0b\0c"sv, "[^a-z]", 0, {"a", "b", "c"}},
    {"a.b", ".", 0, {"", "", ""}},
    {"a|b", "|", 0, {"a", "|", "b"}},
    {"a$b", "$", 0, {"a$b"}},
    {"a{b", "{", 0, {"a", "b"}},
    {"a}b", "}", 0, {"a", "b"}},
    {"a.b", "\\.", 0, {"a", "b"}},
};

TEST(Split, AllForms) {
  for (const Row& row : kRows) {
    SCOPED_TRACE(::testing::Message() << row.text << " at " << row.separator << ' ' << row.limit);
    const ExactInput input(row.text);
    SFixedString fixed(input.Data(), input.Length());
    const SString s = fixed;
    for (const SStringList& fields :
         {s.Split(SPerlRegex(row.separator), row.limit), s.Split(row.separator, row.limit),
          s.Split(SString(row.separator), row.limit)}) {
      EXPECT_EQ(Texts(fields), row.fields);
      EXPECT_EQ(fields.Defined(), !row.fields.empty());
      EXPECT_STREQ(Flaw(fields), "");
    }
  }
}

TEST(Split, AnUncompiledSeparatorGivesAnUndefinedList) {
  const SRegex re;
  EXPECT_FALSE(SString("a").Split(re).Defined());
  EXPECT_NE(ErrorText([] { EXPECT_FALSE(SString("a{2,1}").Split("a{2,1}").Defined()); }), "");
  EXPECT_EQ(ErrorText([] { EXPECT_FALSE(SString("a]").Split("]").Defined()); }),
            "Regular expression error -- compile aborted.  Reason:\n\tUnmatched closing bracket in "
            "regular expression.\n\tThe erroneous expression is ']'.\n");
}

TEST(Split, OfAnUndefinedString) {
  EXPECT_FALSE(SString().Split(",").Defined());
  EXPECT_FALSE(SString().Split("x*").Defined());
  EXPECT_FALSE(SString().Split(',').Defined());
  EXPECT_FALSE(SString().Split(' ').Defined());
  EXPECT_FALSE(SString().Split("").Defined());
}

TEST(Split, TheTextOfASeparatorHasNoOptions) {
  EXPECT_EQ(Texts(SString("aBcbd").Split("b")), (Strings{"aBc", "d"}));
  EXPECT_EQ(Texts(SString("aBcbd").Split("b+")), (Strings{"aBc", "d"}));
  EXPECT_EQ(Texts(SString("aBcbd").Split(SRegex("b", "i"))), (Strings{"a", "c", "d"}));
}

TEST(Split, AByteThatIsNoPatternIsNoSeparator) {
  for (const char* const sep : {"*", "+", "?", "(", ")", "[", "]", "\\"}) {
    const SString text = SString("a") + sep + "b";
    SStringList fields = {"before"};
    const std::string said = ErrorText([&] { fields = text.Split(sep); });
    EXPECT_FALSE(fields.Defined()) << sep;
    EXPECT_NE(said, "") << sep;
  }
}

TEST(Split, FieldsAreCopies) {
  const SString s("abc");
  EXPECT_FALSE(SStringPeek::Shares(s.Split(",").Get(0), s));
  CheckText(SString(",a").Split(",").Get(0), "");
}

struct CharacterRow {
  const char* text;
  int limit;
  Strings fields;
};

const CharacterRow kCharacters[] = {
    {"abc", 0, {"a", "b", "c"}},
    {"abc", 1, {"abc"}},
    {"abc", 2, {"a", "bc"}},
    {"abc", 3, {"a", "b", "c"}},
    {"abc", 4, {"a", "b", "c"}},
    {"abc", 99, {"a", "b", "c"}},
    {"a", 0, {"a"}},
    {"a", 1, {"a"}},
    {"a", 5, {"a"}},
    {"", 0, {}},
    {"", 1, {}},
    {"", 7, {}},
    {"abc", -1, {"abc"}},
};

TEST(Split, IntoCharacters) {
  for (const CharacterRow& row : kCharacters) {
    SCOPED_TRACE(::testing::Message() << row.text << ' ' << row.limit);
    const SString s(row.text);
    for (const SStringList& fields :
         {s.Split("", row.limit), s.Split(static_cast<const char*>(nullptr), row.limit),
          s.Split(SString(""), row.limit), s.Split(SString(), row.limit)}) {
      EXPECT_EQ(Texts(fields), row.fields);
      EXPECT_TRUE(fields.Defined()) << "as the string";
    }
  }
  EXPECT_EQ(Texts(SString("a\0\xff", 3).Split("")), (Strings{"a", std::string("\0", 1), "\xff"}));
}

TEST(Split, AtABlank) {
  const auto split = [](std::string_view text, int limit) {
    return Texts(SString(text).Split(' ', limit));
  };
  EXPECT_EQ(split("  a b\tc ", 0), (Strings{"a", "b", "c"}));
  EXPECT_EQ(split("a b", 0), (Strings{"a", "b"}));
  EXPECT_EQ(split("\r\n\t a", 0), (Strings{"a"}));
  EXPECT_EQ(split("a\r\nb\t\tc", 0), (Strings{"a", "b", "c"}));
  EXPECT_EQ(split("a\vb\fc d", 0), (Strings{"a\vb\fc", "d"}));
  EXPECT_EQ(split(" ", 0), (Strings{""})) << "nothing else";
  EXPECT_EQ(split("   ", 0), (Strings{""}));
  EXPECT_EQ(split("", 0), (Strings{}));
  EXPECT_EQ(split(" a b c", 2), (Strings{"a", "b c"}));
  EXPECT_EQ(split(" a b c ", 1), (Strings{" a b c "})) << "one field stays as it is";
  EXPECT_EQ(split(" a  b c ", 2), (Strings{"a", "b c "}));
}

TEST(Split, AtABlankIsSplitAtTheRunsOfWhiteSpace) {
  const SRegex runs("[ \t\r\n]+");
  std::mt19937 random(11);
  for (int i = 0; i < 5000; ++i) {
    std::string text;
    for (auto n = random() % 12; n > 0; --n) text += " \t\r\nabv\v"[random() % 8];
    const SString s{std::string_view(text)};
    const int limit = static_cast<int>(random() % 5);
    SStringList expected = s.Split(runs, limit);
    if (expected.Count() > 1 && expected.Get(0) == "") expected.Shift();
    const SStringList fields = s.Split(' ', limit);
    ASSERT_EQ(fields, expected) << text;
    ASSERT_EQ(fields.Defined(), expected.Defined());
  }
}

TEST(Split, AtAnyOtherByte) {
  EXPECT_EQ(Texts(SString("a.b").Split('.')), (Strings{"a", "b"}));
  EXPECT_EQ(Texts(SString("a\tb c").Split('\t')), (Strings{"a", "b c"}));
  EXPECT_EQ(Texts(SString("a\0b", 3).Split('\0')), (Strings{"a", "b"}));
  EXPECT_EQ(Texts(SString("a:b:c").Split(':', 2)), (Strings{"a", "b:c"}));
}

TEST(Split, EveryByteStandsForItself) {
  for (int i = 0; i < 256; ++i) {
    const char c = static_cast<char>(i);
    if (c == ' ') continue;
    SCOPED_TRACE(i);
    const char other = c == '-' ? '+' : '-';
    const SString text = SString(c, 1) + other + c + c + other + other + c;
    SString pattern;
    if (std::string_view("$()*+.?[\\]^{|}").find(c) != std::string_view::npos) pattern += '\\';
    pattern += c;
    for (const int limit : {0, 1, 2, 3, -1}) {
      const SStringList fields = text.Split(c, limit);
      EXPECT_EQ(fields, text.Split(SPerlRegex(pattern), limit));
      EXPECT_EQ(fields, text.Split(pattern, limit));
    }
  }
}

// What the header says, in the smallest steps.
Strings Model(const SRegex& re, const std::string& text, int limit) {
  const SString s{std::string_view(text)};
  const int length = s.Length();
  Strings result;
  int pos = 0, fields = 1;
  while (limit == 0 || fields < limit) {
    if (pos >= length) return result;
    if (!re.HasMatch(s, pos)) break;
    int mpos = re.MatchPos(), mlen = re.MatchLen();
    if (mpos == pos) {
      if (mlen > 0) {
        result.emplace_back();
        pos += mlen;
        continue;
      }
      if (!re.HasMatch(s, pos + 1)) {
        ++pos;
        continue;
      }
      mpos = re.MatchPos();
      mlen = re.MatchLen();
    }
    result.push_back(
        text.substr(static_cast<std::size_t>(pos), static_cast<std::size_t>(mpos - pos)));
    ++fields;
    pos = mpos + mlen;
  }
  if (pos < length) result.push_back(text.substr(static_cast<std::size_t>(pos)));
  return result;
}

TEST(Split, AgreesWithTheStepsOnRandomTexts) {
  constexpr const char* kPatterns[] = {"a",       "a*",  "ab|b", "[ab]+", "^",     "$",       "^a",
                                       "(a)(b)?", "c?b", "x",    "a$",    "(^a)?", "[[:<:]]", "."};
  std::mt19937 random(3);
  for (const char* const pattern : kPatterns) {
    const SRegex re(pattern);
    for (int i = 0; i < 2000; ++i) {
      std::string text;
      for (auto n = random() % 9; n > 0; --n) text += "abc "[random() % 4];
      const int limit = static_cast<int>(random() % 5) - 1;
      const Strings expected = Model(re, text, limit);
      ASSERT_EQ(Texts(SString(std::string_view(text)).Split(re, limit)), expected)
          << '"' << text << "\" at " << pattern << ' ' << limit;
      ASSERT_EQ(Texts(SString(std::string_view(text)).Split(pattern, limit)), expected);
    }
  }
}

TEST(Split, AnExpressionLearnsOfTheSearches) {
  const SRegex re("(,)");
  EXPECT_EQ(SString("ab,c,de").Split(re).Count(), 3);
  EXPECT_EQ(re.MatchPos(), 5) << "of the last search, which failed";
  EXPECT_EQ(re.MatchLen(), 2);
  EXPECT_EQ(re.MatchInfo(1).rm_so, 4);
  EXPECT_EQ(SString("ab,c,de").Split(re, 2).Count(), 2);
  EXPECT_EQ(re.MatchPos(), 2);
  EXPECT_EQ(re.MatchLen(), 1);
  EXPECT_EQ(SString("x,x").Split(re, 1).Count(), 1);
  EXPECT_EQ(re.MatchPos(), 2) << "nothing was searched";
}

TEST(Split, TakesLinearTime) {
  for (const char* const separator : {",", "\\s*,", "x*", "(b)", ""}) {
    EXPECT_TRUE(GrowsLinearly(10'000, [&](int n) {
      SString s;
      for (int i = 0; i < n / 4; ++i) s += "ab,c";
      EXPECT_GE(s.Split(separator).Count(), n / 4);
    })) << separator;
  }
}

TEST(Split, AFieldCostsTwoAllocations) {
  SString s;
  for (int i = 0; i < 1000; ++i) s += "ab,c;";
  static_cast<void>(s.Split("[;,]"));
  for (const char* const separator : {",", "[;,]"}) {
    const AllocationCount count;
    const int fields = s.Split(separator).Count();
    EXPECT_LE(count.Made(), 2 * fields + 4) << separator;
  }
  const AllocationCount count;
  const int fields = s.Split(';').Count();
  EXPECT_LE(count.Made(), 2 * fields + 4);
}

}  // namespace
