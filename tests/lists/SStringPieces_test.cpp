#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "lists/SStringList.h"
#include "strings/SFixedString.h"
#include "strings/SString.h"
#include "support/CheckText.h"
#include "support/ExactInput.h"
#include "support/Growth.h"
#include "support/SStringListPeek.h"

namespace {

using namespace std::string_view_literals;
using Strings = std::vector<std::string>;

struct SplitRow {
  std::string_view text;
  std::string_view separator;
  int max;
  Strings pieces;
};

const SplitRow kSplits[] = {
    {"a//b", "/", 0, {"a", "", "b"}},
    {"a/", "/", 0, {"a", ""}},
    {"/", "/", 0, {"", ""}},
    {"//", "/", 0, {"", "", ""}},
    {"/x/", "/", 0, {"", "x", ""}},
    {"", "/", 0, {""}},
    {"", "/", 1, {""}},
    {"", "/", 2, {""}},
    {"a", "/", 0, {"a"}},
    {"a/b/c", "/", 1, {"a/b/c"}},
    {"a/b/c", "/", 2, {"a", "b/c"}},
    {"a/b/c", "/", 3, {"a", "b", "c"}},
    {"a/b/c", "/", 4, {"a", "b", "c"}},
    {"a/b/c", "/", -1, {"a", "b", "c"}},
    {"a/b/", "/", 2, {"a", "b/"}},
    {"a/b/", "/", 3, {"a", "b", ""}},
    {"a.b", ".", 0, {"a", "b"}},
    {"a\\sb", "\\s", 0, {"a", "b"}},
    {"aaa", "aa", 0, {"", "a"}},
    {"a--b-c", "--", 0, {"a", "b-c"}},
    {"ab", "abc", 0, {"ab"}},
    {"abc", "abc", 0, {"", ""}},
    {"a\0b\0"sv, "\0"sv, 0, {"a", "b", ""}},
    {"abc", "", 0, {"a", "b", "c"}},
    {"abc", "", 1, {"abc"}},
    {"abc", "", 2, {"a", "bc"}},
    {"abc", "", -1, {"abc"}},
    {"", "", 0, {}},
};

TEST(SplitExact, Splits) {
  for (const SplitRow& row : kSplits) {
    SCOPED_TRACE(::testing::Message() << row.text << " at " << row.separator << ' ' << row.max);
    const ExactInput text(row.text), separator(row.separator);
    SFixedString fixedText(text.Data(), text.Length());
    SFixedString fixedSeparator(separator.Data(), separator.Length());
    const SString s = fixedText;
    const SStringList pieces = s.SplitExact(fixedSeparator, row.max);
    EXPECT_TRUE(pieces.Defined());
    EXPECT_EQ(Texts(pieces), row.pieces);
    EXPECT_STREQ(Flaw(pieces), "");
  }
}

TEST(SplitExact, OfAnUndefinedStringIsUndefined) {
  for (const int max : {-1, 0, 1, 2}) {
    EXPECT_FALSE(SString().SplitExact("/", max).Defined());
    EXPECT_FALSE(SString().SplitExact("", max).Defined());
  }
}

TEST(SplitExact, IntoOnePieceComesBeforeAllElse) {
  const SStringList pieces = SString("").SplitExact("", 1);
  ASSERT_EQ(pieces.Count(), 1);
  CheckText(pieces.Get(0), "");
  SStringList kept;
  {
    const ExactInput input("a/b");
    SFixedString view(input.Data(), input.Length());
    kept = SString(view).SplitExact("/", 1);
  }
  CheckText(kept.Get(0), "a/b");
}

TEST(SplitExact, TheSeparatorMayBeTheString) {
  const SString s("ab");
  EXPECT_EQ(Texts(s.SplitExact(s)), (Strings{"", ""}));
}

TEST(SplitExact, AnUndefinedSeparatorIsTheEmptyOne) {
  EXPECT_EQ(Texts(SString("ab").SplitExact(SString())), (Strings{"a", "b"}));
}

TEST(SplitExact, JoinPutsItTogetherAgain) {
  std::mt19937 random(5);
  for (int i = 0; i < 5000; ++i) {
    std::string text;
    for (auto n = random() % 12; n > 0; --n) text += "ab"[random() % 2];
    const SString s{std::string_view(text)}, separator(random() % 2 == 0 ? "a" : "ab");
    const int max = static_cast<int>(random() % 5);
    const SStringList pieces = s.SplitExact(separator, max);
    ASSERT_EQ(pieces.Join(separator), s);
    ASSERT_TRUE(max == 0 || pieces.Count() <= max);
    int whole = 0;
    for (const SString& piece : pieces) whole += piece.Index(separator) < 0;
    ASSERT_GE(whole, pieces.Count() - (max > 0 ? 1 : 0));
  }
}

TEST(SplitExact, TakesLinearTime) {
  EXPECT_TRUE(GrowsLinearly(50'000, [](int n) {
    SString s;
    for (int i = 0; i < n / 4; ++i) s += "ab--";
    EXPECT_EQ(s.SplitExact("--").Count(), n / 4 + 1);
  }));
}

struct WordsRow {
  std::string_view text;
  Strings words;
};

const WordsRow kWords[] = {
    {"", {}},
    {"a", {}},
    {" ", {}},
    {"\"", {}},
    {"ab", {"ab"}},
    {"a b", {"a"}},
    {"a bc", {"a", "bc"}},
    {"ab c", {"ab"}},
    {"ab c ", {"ab", "c"}},
    {"ab cd ", {"ab", "cd"}},
    {"ab\n", {"ab"}},
    {"ab cd\n", {"ab", "cd"}},
    {"a\n", {"a"}},
    {"  ab", {"ab"}},
    {"ab\tcd\nef gh", {"ab", "cd", "ef", "gh"}},
    {"ab  \t\n  cd", {"ab", "cd"}},
    {"ab\rcd", {"ab\rcd"}},
    {"ab\r\n", {"ab\r"}},
    {"   ", {}},
    {"\n\n", {}},
    {"say \"hi there\" ok", {"say", "\"hi there", "ok"}},
    {"\"ab\"", {"\"ab"}},
    {"\"ab\" ", {"\"ab"}},
    {"\"abc", {"\"ab"}},
    {"\"a", {"\""}},
    {"\"\"", {"\""}},
    {"\"\"ab", {"\"", "ab"}},
    {"\"\" ab", {"\"", "ab"}},
    {"\"ab\"cd", {"\"ab", "cd"}},
    {"\"ab\"c", {"\"ab"}},
    {"\"a b\"\"c d\"", {"\"a b", "\"c d"}},
    {"a\"b c\"d", {"a\"b", "c\"d"}},
    {"ab \"", {"ab", "\""}},
    {" \"", {"\""}},
    {"\"a \n b\" cd", {"\"a \n b", "cd"}},
    {"a\0b cd"sv, {std::string("a\0b", 3), "cd"}},
    {"\xff\xfe \x80\x81", {"\xff\xfe", "\x80\x81"}},
};

TEST(BreakToWords, Breaks) {
  for (const WordsRow& row : kWords) {
    SCOPED_TRACE(row.text);
    const ExactInput text(row.text);
    SFixedString fixed(text.Data(), text.Length());
    const SString s = fixed;
    const SStringList words = s.BreakToWords();
    EXPECT_TRUE(words.Defined());
    EXPECT_EQ(Texts(words), row.words);
    EXPECT_STREQ(Flaw(words), "");
  }
}

TEST(BreakToWords, OfAnUndefinedStringIsUndefined) {
  EXPECT_FALSE(SString().BreakToWords().Defined());
}

// What the header says, in the smallest steps.
Strings Model(const std::string& s) {
  const auto separator = [&](int i) {
    return std::string_view(" \t\n").find(s[static_cast<std::size_t>(i)]) != std::string_view::npos;
  };
  const auto piece = [&](int from, int to) {
    return s.substr(static_cast<std::size_t>(from), static_cast<std::size_t>(to - from));
  };
  Strings words;
  const int last = static_cast<int>(s.size()) - 1;
  if (last < 1) return words;
  int i = 0;
  while (i < last) {
    while (i < last && separator(i)) ++i;
    const int start = i;
    if (s[static_cast<std::size_t>(start)] == '"') {
      int j = i + 1;
      for (;; ++j) {
        if (j >= last) break;
        if (s[static_cast<std::size_t>(j)] == '"') break;
      }
      words.push_back(piece(start, j));
      if (j >= last) break;
      i = j + 1;
    } else if (i < last) {
      while (i < last && !separator(i)) ++i;
      if (i == last && !separator(i)) {
        words.push_back(piece(start, i + 1));
      } else {
        words.push_back(piece(start, i));
      }
    }
  }
  return words;
}

TEST(BreakToWords, AgreesWithTheStepsOnRandomTexts) {
  std::mt19937 random(13);
  for (int i = 0; i < 50'000; ++i) {
    std::string text;
    for (auto n = random() % 14; n > 0; --n) text += "ab\" \t\n\r\""[random() % 8];
    ASSERT_EQ(Texts(SString(std::string_view(text)).BreakToWords()), Model(text)) << text;
  }
}

TEST(BreakToWords, TakesLinearTime) {
  EXPECT_TRUE(GrowsLinearly(50'000, [](int n) {
    SString s;
    for (int i = 0; i < n / 10; ++i) s += "ab \"c d\"  ";
    EXPECT_EQ(s.BreakToWords().Count(), n / 10 * 2);
  }));
}

}  // namespace
