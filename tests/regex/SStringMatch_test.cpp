#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "lists/SStringList.h"
#include "regex/SPerlRegex.h"
#include "strings/SFixedString.h"
#include "strings/SString.h"
#include "support/CheckText.h"
#include "support/ErrorText.h"
#include "support/ExactInput.h"
#include "support/SStringListPeek.h"

namespace {

using Strings = std::vector<std::string>;

struct Row {
  const char* name;
  std::string_view text;
  std::string_view pattern;  // without NUL
  const char* options;
  bool matches;
  Strings list;
};

const Row kRows[] = {
    {"plain", "xabcx", "abc", nullptr, true, {"abc"}},
    {"no match", "xabx", "abc", nullptr, false, {}},
    {"case counts", "ABC", "abc", nullptr, false, {}},
    {"case does not", "ABC", "abc", "i", true, {"ABC"}},
    {"other options", "ABC", "abc", "gx", false, {}},
    {"escapes", "a 42", "\\s(\\d+)", "", true, {" 42", "42"}},
    {"groups", "key=val", "(\\w+)=(\\w+)", nullptr, true, {"key=val", "key", "val"}},
    {"unmatched group", "a", "(a)(b)?", nullptr, true, {"a", "a", ""}},
    {"the leftmost, the longest", "abcabcd", "abc|abcd", nullptr, true, {"abc"}},
    {"empty match", "abc", "x*", nullptr, true, {""}},
    {"empty text", "", "x*", nullptr, true, {""}},
    {"empty text, no match", "", "x", nullptr, false, {}},
    {"NUL in the text", {"a\0b", 3}, "\\Nb", nullptr, true, {std::string("\0b", 2)}},
    {"the empty pattern", "abc", "", nullptr, false, {}},
};

TEST(Matching, AllForms) {
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.name);
    const ExactInput input(row.text);
    SFixedString fixed(input.Data(), input.Length());
    const SString s = fixed;
    const std::string text(row.pattern);
    const SString pattern(row.pattern);
    const SPerlRegex re(pattern, row.options);
    EXPECT_EQ(s.HasMatch(re), row.matches);
    EXPECT_EQ(s.HasMatch(pattern, row.options), row.matches);
    EXPECT_EQ(s.HasMatch(text.c_str(), row.options), row.matches);
    for (const SStringList& list :
         {s.M(re), s.M(pattern, row.options), s.M(text.c_str(), row.options)}) {
      EXPECT_EQ(list.Defined(), row.matches);
      EXPECT_EQ(Texts(list), row.list);
    }
  }
}

TEST(Matching, AnUndefinedStringIsTheEmptyOne) {
  EXPECT_TRUE(SString().HasMatch("^$"));
  EXPECT_EQ(Texts(SString().M("^()$")), (Strings{"", ""}));
  EXPECT_FALSE(SString().HasMatch("a"));
}

TEST(Matching, ThePatternOfAStringMayHoldNul) {
  const SString s("a\0b", 3), pattern("\0b", 2);
  EXPECT_TRUE(s.HasMatch(pattern));
  EXPECT_FALSE(s.HasMatch(SString("\0c", 2)));
  EXPECT_EQ(s.M(pattern).Get(0), pattern);
}

TEST(Matching, ANullPatternIsTheEmptyOne) {
  EXPECT_EQ(ErrorText([] {
              EXPECT_FALSE(SString("a").HasMatch(nullptr));
              EXPECT_FALSE(SString("a").M(nullptr).Defined());
              EXPECT_FALSE(SString("a").HasMatch(SString()));
            }),
            "");
}

TEST(Matching, APatternInErrorIsReportedAtEveryCall) {
  const std::string report =
      "Regular expression error -- compile aborted.  Reason:\n\tUnmatched closing parenthesis in "
      "regular expression.\n\tThe erroneous expression is 'a)'.\n";
  const SString s("a)");
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(ErrorText([&] { EXPECT_FALSE(s.HasMatch("a)")); }), report);
    EXPECT_EQ(ErrorText([&] { EXPECT_FALSE(s.HasMatch(SString("a)"), "i")); }), report);
    EXPECT_EQ(ErrorText([&] { EXPECT_FALSE(s.M("a)").Defined()); }), report);
    EXPECT_EQ(ErrorText([&] { EXPECT_FALSE(s.M(SString("a)")).Defined()); }), report);
  }
}

TEST(Matching, APatternThatDoesNotCompileMatchesNothing) {
  EXPECT_EQ(ErrorText([] {
              EXPECT_FALSE(SString("a{2,1}").HasMatch("a{2,1}"));
              EXPECT_FALSE(SString("*a").HasMatch("*a"));
            }),
            "Regular expression error -- compile aborted.  Reason:\n\tInvalid bound in braces\n\t"
            "The erroneous expression is 'a{2,1}'.\n"
            "Regular expression error -- compile aborted.  Reason:\n\tNothing before a repetition"
            "\n\tThe erroneous expression is '*a'.\n");
}

TEST(Matching, AnExpressionLearnsWhatMatched) {
  const SRegex re("b(c)");
  EXPECT_TRUE(SString("abc").HasMatch(re));
  EXPECT_EQ(re.MatchPos(), 1);
  EXPECT_EQ(re.MatchInfo(1).rm_so, 2);
}

TEST(Matching, ATextLeavesNoHandleBehind) {
  const SString s("key=val");
  EXPECT_TRUE(s.HasMatch("(\\w+)=(\\w+)"));
  EXPECT_EQ(s.M("(\\w+)=(\\w+)").Count(), 3);
  EXPECT_EQ(SStringPeek::Rep(s).links, 1);
}

TEST(Matching, ThePatternMayBeTheString) {
  const SString s("a.c");
  EXPECT_TRUE(s.HasMatch(s));
  EXPECT_EQ(Texts(s.M(s)), (Strings{"a.c"}));
}

TEST(Matching, AnUncompiledExpressionMatchesNothing) {
  const SRegex re;
  EXPECT_FALSE(SString("").HasMatch(re));
  EXPECT_FALSE(SString("").M(re).Defined());
}

}  // namespace
