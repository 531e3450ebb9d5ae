#include "regex/SPerlRegex.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <utility>

#include "lists/SStringList.h"
#include "strings/SString.h"
#include "support/ErrorText.h"
#include "support/RegexDebug.h"
#include "support/SStringListPeek.h"

namespace {

// Makes an expression from a pattern in error, which is reported.
template <class Work>
void Reported(Work work) {
  EXPECT_NE(ErrorText(work), "");
}

TEST(SPerlRegex, NeverCompiled) {
  const SPerlRegex re;
  EXPECT_FALSE(re.OK());
  EXPECT_FALSE(re.HasMatch("", 0));
  EXPECT_EQ(DebugText(re), "Perl Regex:    ''Regular Regex: ''\n");
}

TEST(SPerlRegex, CompilesTheTranslation) {
  const SPerlRegex re("(\\w+)=(\\d+)");
  EXPECT_TRUE(re.OK());
  EXPECT_TRUE(re.HasMatch("  key=42", 0));
  EXPECT_EQ(re.MatchPos(), 2);
  EXPECT_EQ(re.MatchInfo(2).rm_so, 6);
  EXPECT_FALSE(re.HasMatch("key=x"));
}

TEST(SPerlRegex, DumpsBothForms) {
  EXPECT_EQ(DebugText(SPerlRegex("a\\d\n")),
            "Perl Regex:    'a\\\\d\\n'Regular Regex: 'a[0-9]\\n'\n");
}

TEST(SPerlRegex, Options) {
  EXPECT_TRUE(SPerlRegex("a\\wc", "i").HasMatch("ABC"));
  EXPECT_FALSE(SPerlRegex("a\\wc", "g").HasMatch("ABC"));
  SPerlRegex re;
  EXPECT_EQ(re.Set("abc", "gi"), 0);
  EXPECT_TRUE(re.HasMatch("ABC"));
}

TEST(SPerlRegex, APatternInErrorMatchesNothing) {
  Reported([] {
    const SPerlRegex re("a)");
    EXPECT_FALSE(re.OK());
    EXPECT_FALSE(re.HasMatch("a"));
    EXPECT_FALSE(re.HasMatch(""));
    EXPECT_EQ(DebugText(re), "Perl Regex:    'a)'Regular Regex: ''\n");
  });
}

TEST(SPerlRegex, TheEmptyPatternIsCompiledAndFails) {
  const SPerlRegex re("");
  EXPECT_EQ(ErrorText([&] { re.SRegex::Debug(); }),
            "SRegex didn't compile because of the following reason:\nEmpty regular expression\n");
}

TEST(SPerlRegex, InBracketsABackslashIsAMemberToo) {
  EXPECT_TRUE(SPerlRegex("^[\\.]$").HasMatch("\\"));
  EXPECT_TRUE(SPerlRegex("^[a\\-z]$").HasMatch("m"));
  EXPECT_FALSE(SPerlRegex("^[a\\-z]$").HasMatch("-"));
  EXPECT_FALSE(SPerlRegex("^[\\]a]$").HasMatch("]"));
  EXPECT_TRUE(SPerlRegex("^[\\]a]$").HasMatch("\\a]"));
}

TEST(SPerlRegex, ConstructedFromTheEmptyPattern) {
  EXPECT_EQ(ErrorText([] {
              EXPECT_FALSE(SPerlRegex("").OK());
              EXPECT_FALSE(SPerlRegex(SString()).OK());
            }),
            "");
}

TEST(SPerlRegex, AFailedSetKeepsTheExpression) {
  SPerlRegex re;
  EXPECT_EQ(re.Set("(x)"), 0);
  EXPECT_TRUE(re.HasMatch("ax"));
  Reported([&] { EXPECT_EQ(re.Set("a)"), 0); });
  EXPECT_TRUE(re.OK());
  EXPECT_EQ(re.MatchInfo(1).rm_so, 1) << "with its positions";
  EXPECT_TRUE(re.HasMatch("x"));
  EXPECT_FALSE(re.HasMatch("a"));
  EXPECT_EQ(DebugText(re), "Perl Regex:    'a)'Regular Regex: ''\n") << "but not its text";
  EXPECT_EQ(re.Set(""), 0) << "no error, but no translation";
  EXPECT_EQ(re.Set(SString()), 0);
  EXPECT_TRUE(re.HasMatch("x"));
}

TEST(SPerlRegex, ASetThatFailsBeforeTheFirstExpression) {
  SPerlRegex re;
  Reported([&] { EXPECT_EQ(re.Set("a)"), 0); });
  EXPECT_FALSE(re.OK());
}

TEST(SPerlRegex, ATranslationThatDoesNotCompileReplacesTheExpression) {
  SPerlRegex re("x");
  Reported([&] { EXPECT_GT(re.Set("a{2,1}"), 0); });
  EXPECT_FALSE(re.OK());
  EXPECT_FALSE(re.HasMatch("x"));
}

// A pattern that is translated, but does not compile.
struct RefusedRow {
  const char* pattern;
  const char* reason;
};

constexpr RefusedRow kRefused[] = {
    {"[[.]", "Unmatched opening bracket"},      {"[<>()[.]", "Unmatched opening bracket"},
    {"[[:]", "Unmatched opening bracket"},      {"[[=]", "Unmatched opening bracket"},
    {"[^\\d[.]+", "Unmatched opening bracket"}, {"[[:alpha:]", "Unmatched opening bracket"},
    {"[[:x:][y]", "Invalid character class"},   {"[[.xy.][z]", "Invalid collating element"},
    {"[z-a]", "Invalid end of a range"},        {"*a", "Nothing before a repetition"},
    {"a{2,1}", "Invalid bound in braces"},      {"a{256}", "Invalid bound in braces"},
    {"a{1", "Unmatched opening brace"},         {"x{255}{255}", "Regular expression too big"},
};

TEST(SPerlRegex, APatternThatDoesNotCompileIsReportedOnce) {
  for (const RefusedRow& row : kRefused) {
    SCOPED_TRACE(row.pattern);
    SString dumped(row.pattern);
    dumped.S("\\\\", "\\\\\\\\", "g");
    const std::string report = "Regular expression error -- compile aborted.  Reason:\n\t" +
                               std::string(row.reason) + "\n\tThe erroneous expression is '" +
                               std::string(dumped.View()) + "'.\n";
    const SString text("text"), pattern(row.pattern);
    SString edited(text);
    SStringList list(text);
    EXPECT_EQ(ErrorText([&] { EXPECT_FALSE(SPerlRegex(pattern).OK()); }), report);
    EXPECT_EQ(ErrorText([&] { EXPECT_GT(SPerlRegex().Set(pattern, "i"), 0); }), report);
    for (int n = 0; n < 2; ++n) {
      EXPECT_EQ(ErrorText([&] { EXPECT_FALSE(text.HasMatch(row.pattern)); }), report);
      EXPECT_EQ(ErrorText([&] { EXPECT_FALSE(text.HasMatch(pattern, "i")); }), report);
      EXPECT_EQ(ErrorText([&] { EXPECT_FALSE(text.M(pattern).Defined()); }), report);
      EXPECT_EQ(ErrorText([&] { EXPECT_FALSE(edited.S(pattern, "x").Defined()); }), report);
      EXPECT_EQ(ErrorText([&] { EXPECT_FALSE(text.Split(pattern).Defined()); }), report);
      EXPECT_EQ(ErrorText([&] { EXPECT_FALSE(list.Grep(SString("/") + pattern + "/").Defined()); }),
                report);
    }
    EXPECT_EQ(ErrorText([&] { EXPECT_GT(SRegex().Set(PerlRegexConv(pattern)), 0); }), "");
  }
}

TEST(SPerlRegex, APatternWithoutATranslationIsReportedOnceOrNotAtAll) {
  const std::string report = ErrorText([] { RegexError(5, "a)"); });
  EXPECT_EQ(ErrorText([] { EXPECT_FALSE(SPerlRegex("a)").OK()); }), report);
  EXPECT_EQ(ErrorText([] { EXPECT_EQ(SPerlRegex().Set("a)"), 0); }), report);
  EXPECT_EQ(ErrorText([] {
              EXPECT_FALSE(SPerlRegex("").OK());
              EXPECT_EQ(SPerlRegex().Set(""), 0);
            }),
            "");
}

TEST(SPerlRegex, AnOpeningBracketIsAMemberWhereItIsLast) {
  const std::pair<const char*, std::string> rows[] = {
      {"[.[]", ".["}, {"[<>().[]", "<>().["}, {"[:[]", ":["},           {"[=[]", "=["},
      {"[][]", "]["}, {"[[a]", "[a"},         {"[\\d[]", "0123456789["}};
  for (const auto& [pattern, members] : rows) {
    SCOPED_TRACE(pattern);
    const SPerlRegex re(pattern);
    for (char c = ' '; c <= '~'; ++c) {
      EXPECT_EQ(re.HasMatch(SString(c)), members.find(c) != members.npos) << c;
    }
  }
  EXPECT_TRUE(SPerlRegex("^[[:alpha:][x]$").HasMatch("q")) << "closed, it is a name";
}

TEST(SPerlRegex, IsAnSRegex) {
  SPerlRegex perl("a");
  SRegex& re = perl;
  EXPECT_EQ(re.Set("\\d"), 0);
  EXPECT_TRUE(re.HasMatch("1")) << "the dialect's Set";
  EXPECT_EQ(DebugText(re), "Perl Regex:    '\\\\d'Regular Regex: '[0-9]'\n");
  EXPECT_EQ(re.SRegex::Set("\\d"), 0);
  EXPECT_TRUE(re.HasMatch("d")) << "the base's";
  SRegex* const owned = new SPerlRegex("a");
  delete owned;
}

TEST(SPerlRegex, CopiesNothing) {
  static_assert(!std::is_constructible_v<SPerlRegex, const SPerlRegex&>);
  SPerlRegex re("a"), other("b");
  SPerlRegex copy(re);
  EXPECT_FALSE(copy.OK());
  EXPECT_EQ(DebugText(copy), "Perl Regex:    ''Regular Regex: ''\n");
  EXPECT_EQ(&(other = re), &other);
  EXPECT_TRUE(other.HasMatch("b"));
  EXPECT_FALSE(other.HasMatch("a"));
  EXPECT_EQ(DebugText(other), "Perl Regex:    'b'Regular Regex: 'b'\n");
}

TEST(SPerlRegex, WordBoundaries) {
  const SPerlRegex re("[[:<:]]foo[[:>:]]");
  EXPECT_TRUE(re.HasMatch("a foo b"));
  EXPECT_FALSE(re.HasMatch("afoo"));
  EXPECT_FALSE(re.HasMatch("food"));
  EXPECT_FALSE(re.HasMatch("afoo", 1)) << "the byte before the start counts";
}

TEST(SPerlRegex, ABackslashMakesACharacterOrdinary) {
  EXPECT_TRUE(SPerlRegex("\\.\\(\\\\\\[").HasMatch(".(\\["));
  EXPECT_TRUE(SPerlRegex("\\b\\1\\<").HasMatch("b1<"));
  EXPECT_FALSE(SPerlRegex("\\.").HasMatch("a"));
}

TEST(SPerlRegex, TenGroups) {
  const SPerlRegex re("(a)(b)(c)(d)(e)(f)(g)(h)(i)(j)");
  EXPECT_TRUE(re.OK());
  EXPECT_EQ(re.Match("abcdefghij").Count(), 11);
}

}  // namespace
