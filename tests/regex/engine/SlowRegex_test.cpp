// The judge is judged first: by cases worked out by hand from what the groups mean.

#include "support/SlowRegex.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <string_view>

namespace {

constexpr bool kIgnoreCase = true;

// What a pattern finds, as "(0,4)(0,2)"; "none", or "bad" if it does not compile.
std::string Found(std::string_view pattern, std::string_view text, int start = 0,
                  bool ignoreCase = false) {
  mailhearth::SlowRegex slow(pattern, ignoreCase);
  if (!slow.Compiles()) return "bad";
  slow.SetText(text);
  std::ostringstream found;
  for (const auto& [from, to] : slow.Find(start)) found << '(' << from << ',' << to << ')';
  return found.str().empty() ? "none" : found.str();
}

struct Row {
  const char* name;
  std::string_view pattern;
  std::string_view text;
  std::string_view found;
};

void Check(const auto& rows) {
  for (const Row& row : rows) EXPECT_EQ(Found(row.pattern, row.text), row.found) << row.name;
}

TEST(SlowRegex, FindsTheLeftmostThenTheLongest) {
  constexpr Row kRows[] = {
      {"leftmost before longest", "b|aaa|bbbb", "cbaaa", "(1,2)"},
      {"longest, not first", "a|ab|abc", "xabc", "(1,4)"},
      {"empty at the start", "b*", "abb", "(0,0)"},
      {"none", "ba", "abb", "none"},
      {"on the empty text", "a*", "", "(0,0)"},
      {"past a failed start", "aab", "aaab", "(1,4)"},
  };
  Check(kRows);
}

TEST(SlowRegex, ReadsGroupsFromLeftToRightAndTheOuterFirst) {
  constexpr Row kRows[] = {
      {"longest first piece", "(a|ab)(c|bcd)(d*)", "abcd", "(0,4)(0,2)(2,3)(3,4)"},
      {"whole before parts", "(a|ab)(bcd|c)", "abcd", "(0,4)(0,1)(1,4)"},
      {"outer before inner", "((a)(b)?)(b?)", "ab", "(0,2)(0,2)(0,1)(1,2)(2,2)"},
      {"first of equal branches", "(a)|(a)", "a", "(0,1)(0,1)(-1,-1)"},
      {"branch for the whole span", "(a|(ab))b?", "ab", "(0,2)(0,2)(0,2)"},
      {"an earlier piece takes all", "(a*)(a*)", "aa", "(0,2)(0,2)(2,2)"},
      {"a row is flat", "a?(ab)?(b?)", "ab", "(0,2)(-1,-1)(1,2)"},
      {"inner choice by span", "(a|b|ab)(bc|c)?", "abc", "(0,3)(0,2)(2,3)"},
      {"empty branch", "(|a)b", "ab", "(0,2)(0,1)"},
      {"empty group", "a()b", "ab", "(0,2)(1,1)"},
  };
  Check(kRows);
}

TEST(SlowRegex, ReadsTheLastTurnOfARepetition) {
  constexpr Row kRows[] = {
      {"the last turn", "(a|b)*", "ab", "(0,2)(1,2)"},
      {"unset by a later turn", "((a)|(b))*", "ab", "(0,2)(1,2)(-1,-1)(1,2)"},
      {"each turn the longest", "(ab|a|b|cd)*", "abcd", "(0,4)(2,4)"},
      {"a turn leaves enough", "(a|ab|b){2}", "ab", "(0,2)(1,2)"},
      {"the longest turn first", "(a|aa){2}", "aaa", "(0,3)(2,3)"},
      {"no turn", "(a)*", "b", "(0,0)(-1,-1)"},
      {"one empty turn", "(a*)*", "b", "(0,0)(0,0)"},
      {"no empty turn after others", "(a*)*", "aa", "(0,2)(0,2)"},
      {"no empty turn that none needs", "(a*)+", "aa", "(0,2)(0,2)"},
      {"a needed turn is empty", "(a*){2}", "aa", "(0,2)(2,2)"},
      {"needed turns on nothing", "(a*){3}", "b", "(0,0)(0,0)"},
      {"more turns than needed", "(a*){1,3}", "aa", "(0,2)(0,2)"},
      {"optional, empty", "(a*)?", "b", "(0,0)(0,0)"},
      {"only empty", "()*", "a", "(0,0)(0,0)"},
      {"zero turns", "(a*){0}b", "b", "(0,1)(-1,-1)"},
      {"inner repetition begins anew", "((a)*b)*", "abb", "(0,3)(2,3)(-1,-1)"},
      {"nested repetitions", "(a{2}){2}", "aaaaa", "(0,4)(2,4)"},
      {"stacked repetitions", "(a)*{2}", "aa", "(0,2)(-1,-1)"},
      {"stacked, outer has no turn", "(a*)+*", "b", "(0,0)(0,0)"},
      {"an open bound", "(a){2,}", "aaa", "(0,3)(2,3)"},
  };
  Check(kRows);
}

TEST(SlowRegex, SeesTheEndsOfTheTextAndOfWords) {
  constexpr Row kRows[] = {
      {"both ends", "^a$", "a", "(0,1)"},
      {"not at a line", "^b", "a\nb", "none"},
      {"not before a line's end", "a$", "a\nb", "none"},
      {"in a group", "(^a|b)*", "ab", "(0,2)(1,2)"},
      {"repeated", "^*a", "ba", "(1,2)"},
      {"word begin", "[[:<:]]b", "ab b", "(3,4)"},
      {"word end", "a[[:>:]]", "ab_a", "(3,4)"},
      {"no word, no end", "[[:>:]]", " - ", "none"},
  };
  Check(kRows);
  EXPECT_EQ(Found("^a", "aa", 1), "none");
  EXPECT_EQ(Found("[[:<:]]a", "aa a", 1), "(3,4)") << "the byte before the start counts";
  EXPECT_EQ(Found("a$", "aa", 1), "(1,2)");
  EXPECT_EQ(Found("a*", "aa", 2), "(2,2)");
  EXPECT_EQ(Found("a*", "aa", 3), "none");
  EXPECT_EQ(Found("a*", "aa", -1), "none");
}

TEST(SlowRegex, ReadsSetsOfBytes) {
  constexpr Row kRows[] = {
      {"any byte", "a.b", {"a\0b", 3}, "(0,3)"},
      {"negated", "[^a]", "a\nb", "(1,2)"},
      {"bracket first", "[]a]*", "a]b", "(0,2)"},
      {"bracket first, negated", "[^]a]", "a]b", "(2,3)"},
      {"dash last", "[a-]*", "a-b", "(0,2)"},
      {"dash first", "[-a]*", "a-b", "(0,2)"},
      {"dash behind a range", "[a-c-e]*", "b-ed", "(0,3)"},
      {"range to a dash", "[+--]*", ",-.", "(0,2)"},
      {"class", "[[:digit:]x]*", "1x2y", "(0,3)"},
      {"element", "[[.-.]-/]*", "./a", "(0,2)"},
      {"equal to one", "[[=a=]-]*", "a-b", "(0,2)"},
      {"elements that are delimiters", "[[...][=]=]]*", ".]a", "(0,2)"},
      {"backslash within", R"([\n]*)", R"(\nx)", "(0,2)"},
      {"backslash without", R"(\n\.)", "n.", "(0,2)"},
      {"brace alone", "a{,2}", "a{,2}", "(0,5)"},
      {"closing alone", "]}", "]}", "(0,2)"},
  };
  Check(kRows);
  EXPECT_EQ(Found("aB[c-d]", "AbC", 0, kIgnoreCase), "(0,3)");
  EXPECT_EQ(Found("[^a]", "Ab", 0, kIgnoreCase), "(1,2)");
  EXPECT_EQ(Found("[[:upper:]]", "a", 0, kIgnoreCase), "(0,1)");
}

TEST(SlowRegex, RefusesWhatDoesNotCompile) {
  for (const char* pattern : {"",      "*a",       "(+a)",      "a|?",       "{1}",
                              "(",     "(a",       "a)",        ")",         "a{3",
                              "a{1x}", "a{2,1}",   "a{256}",    "a{1,256}",  "[a",
                              "[]",    "[^]",      "[b-a]",     "[[:a:]]",   "[a-[:alpha:]]",
                              "\\",    "[[.ab.]]", "[[=a=]-c]", "[a-[=c=]]", "[[.a.",
                              "[a-[."}) {
    EXPECT_EQ(Found(pattern, ""), "bad") << pattern;
  }
  for (const char* pattern : {"()", "|", "(|a)", "a||b", "a**", "a{2}+", "^*", "a{0}", "a{255}",
                              "a{", "{a", "{,1}", "}", "]", "[[:<:]]?", "\\("}) {
    EXPECT_NE(Found(pattern, ""), "bad") << pattern;
  }
}

}  // namespace
