// What the engine promises beyond its results: patterns and texts that are made to hurt do
// not, and what it refuses has the right code. Other tests of this folder compare results.

#include "regex/engine/Expression.h"

#include <gtest/gtest.h>
#include <malloc.h>

#include <array>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "support/CountedNew.h"
#include "support/ExactInput.h"
#include "support/FailEachAllocation.h"
#include "support/Growth.h"
#include "support/Text.h"

namespace {

using mailhearth::engine::ErrorText;
using mailhearth::engine::Expression;

std::string Joined(std::initializer_list<std::string_view> parts) {
  std::string whole;
  for (const std::string_view part : parts) whole += part;
  return whole;
}

int StatusOf(std::string_view pattern) {
  int status = -1;
  const ExactInput input(pattern);
  const auto expression = Expression::Compile(input.View(), false, status);
  EXPECT_EQ(expression == nullptr, status != 0);
  return status;
}

std::unique_ptr<Expression> Compiled(std::string_view pattern) {
  int status = -1;
  auto expression = Expression::Compile(pattern, false, status);
  EXPECT_EQ(status, 0) << pattern;
  return expression;
}

using Groups = std::vector<std::pair<int, int>>;

// Returns the match and its groups, an empty list for none.
Groups Find(Expression& expression, std::string_view text, int start = 0) {
  regmatch_t match = {-1, -1};
  if (!expression.Find(text, start, match)) return {};
  std::vector<regmatch_t> found(static_cast<std::size_t>(expression.GroupCount()) + 1);
  expression.FindGroups(text, match, found);
  Groups groups;
  for (const regmatch_t& each : found) groups.emplace_back(each.rm_so, each.rm_eo);
  return groups;
}

TEST(Expression, RefusesWhatIsNoPatternAndSaysWhy) {
  struct Row {
    std::string_view pattern;
    int status;
  };
  constexpr Row kRows[] = {
      {"", REG_BADPAT},
      {"()", 0},
      {"|", 0},
      {"(|a)", 0},
      {"a||b", 0},
      {"*", REG_BADRPT},
      {"+a", REG_BADRPT},
      {"?", REG_BADRPT},
      {"(*a)", REG_BADRPT},
      {"a|*b", REG_BADRPT},
      {"{1}", REG_BADRPT},
      {"^*", 0},
      {"a**", 0},
      {"a{2}{3}", 0},
      {"{", 0},
      {"a{", 0},
      {"a{,3}", 0},
      {"a{x}", 0},
      {"a{1", REG_EBRACE},
      {"a{1,", REG_EBRACE},
      {"a{1,2", REG_EBRACE},
      {"a{1x}", REG_BADBR},
      {"a{1,x}", REG_BADBR},
      {"a{2,1}", REG_BADBR},
      {"a{255}", 0},
      {"a{256}", REG_BADBR},
      {"a{0}", 0},
      {"a{1,256}", REG_BADBR},
      {"a{99999999999}", REG_BADBR},
      {"(", REG_EPAREN},
      {"(a", REG_EPAREN},
      {"a)", REG_EPAREN},
      {")", REG_EPAREN},
      {"(a))", REG_EPAREN},
      {"\\", REG_EESCAPE},
      {"a\\", REG_EESCAPE},
      {"\\\\", 0},
      {"[", REG_EBRACK},
      {"[a", REG_EBRACK},
      {"[]", REG_EBRACK},
      {"[^]", REG_EBRACK},
      {"[]a]", 0},
      {"[^]a]", 0},
      {"]", 0},
      {"[a-", REG_EBRACK},
      {"[b-a]", REG_ERANGE},
      {"[a-a]", 0},
      {"[a-]", 0},
      {"[-a]", 0},
      {"[a-c-e]", 0},
      {"[[:alpha:]]", 0},
      {"[[:alpha:]", REG_EBRACK},
      {"[[:alpha]]", REG_EBRACK},
      {"[[:alphas:]]", REG_ECTYPE},
      {"[[::]]", REG_ECTYPE},
      {"[[:alpha:]-z]", REG_ERANGE},
      {"[a-[:alpha:]]", REG_ERANGE},
      {"[[.a.]]", 0},
      {"[[.a.]-c]", 0},
      {"[[.ab.]]", REG_ECOLLATE},
      {"[[..]]", REG_EBRACK},
      {"[[.].]]", 0},
      {"[[=a=]]", 0},
      {"[[=a=]-c]", REG_ERANGE},
      {"[[=ab=]]", REG_ECOLLATE},
      {"[[:<:]]", 0},
      {"[[:>:]]", 0},
      {"[[:<:]a]", REG_ECTYPE},
      {"[a[:<:]]", REG_ECTYPE},
  };
  for (const Row& row : kRows) EXPECT_EQ(StatusOf(row.pattern), row.status) << row.pattern;
}

TEST(Expression, HasATextForEveryCode) {
  EXPECT_STREQ(ErrorText(0), "Success");
  EXPECT_STREQ(ErrorText(REG_EPAREN), "Unmatched parenthesis");
  for (int status = -2; status < 30; ++status) {
    const std::string_view text = ErrorText(status);
    EXPECT_TRUE(!text.empty() && text.size() < 100) << text;
  }
}

// The bytes that malloc has given out.
std::size_t Allocated() { return mallinfo2().uordblks + mallinfo2().hblkhd; }

// Patterns that would need a program past all measure, or are nothing but depth. Each is
// refused or searches; both at once, and with little memory.
TEST(Expression, SurvivesPatternsThatAreMadeToHurt) {
  constexpr int kMany = 200'000;
  constexpr int kMegabyte = 1 << 20;
  struct Row {
    const char* name;
    std::string pattern;
    bool compiles;
  };
  const Row rows[] = {
      {"stars", Joined({"a", Repeated("*", kMany)}), true},
      {"pluses", Joined({"a", Repeated("+", kMany)}), true},
      {"stars, pluses, question marks", Joined({"a", Repeated("?*+", kMany)}), true},
      {"opening parentheses", Repeated("(", kMegabyte), false},
      {"closing parentheses", Repeated(")", kMegabyte), false},
      {"opening brackets", Repeated("[", kMegabyte), false},
      {"opening braces", Repeated("{", kMegabyte), false},
      {"backslashes", Repeated("\\", kMegabyte - 1), false},
      {"deep groups", Joined({Repeated("(", kMany / 2), "a", Repeated(")", kMany / 2)}), true},
      {"deep repeated groups", Joined({Repeated("(", 9000), "a", Repeated(")*", 9000)}), true},
      {"bounds in bounds in bounds", "((a{1,255}){1,255}){1,255}", false},
      {"bounds on bounds", ".*{10,}{10,}{10,}{10,}{10,}", false},
      {"bounds on nothing", Joined({Repeated("(", 20), Repeated("){255}", 20)}), true},
      {"bounds on many nothings", Joined({"(", Repeated("()", 60'000), "a){255}{255}"}), false},
      {"a million branches", Joined({Repeated("a|", 1'000'000), "b"}), false},
      {"branches", Joined({Repeated("a|", 9000), "b"}), true},
      {"a megabyte of one letter", Repeated("a", kMegabyte), false},
      {"a long word", Repeated("a", 30'000), true},
      {"one set again and again", Repeated("[^b]", 30'000), true},
      {"optional, then needed", Joined({Repeated("a?", 500), Repeated("a", 500)}), true},
  };
  const std::string text = Repeated("a", 1000);
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    const std::size_t before = Allocated();
    int status = -1;
    const auto expression = Expression::Compile(row.pattern, false, status);
    EXPECT_EQ(expression != nullptr, row.compiles) << status;
    if (expression != nullptr) static_cast<void>(Find(*expression, text));
    EXPECT_LT(Allocated(), before + (std::size_t{16} << 20));
  }
}

TEST(Expression, KeepsNoMoreThanItsBudget) {
  std::string text;
  unsigned random = 1;
  for (int i = 0; i < 200'000; ++i) {
    random = random * 1664525 + 1013904223;
    text += (random >> 30) % 2 == 0 ? 'a' : 'b';
  }
  const std::size_t before = Allocated();
  // Has a state for each row of 20 letters.
  const auto expression = Compiled("((a|b)*a(a|b){20})+c?");
  EXPECT_EQ(Find(*expression, text).size(), 4U);
  EXPECT_LT(Allocated(), before + (std::size_t{8} << 20));
}

TEST(Expression, TakesLinearTimeOnTextsThatAreMadeToHurt) {
  struct Row {
    const char* pattern;
    const char* unit;
    Groups last;  // for a text of 3 units
  };
  const Row rows[] = {
      {"[ \t>]+$", " ", {{0, 3}}},
      {"[ \t>]+$|>x", " ", {{0, 3}}},
      {"<.*>", "<", {}},
      {"(a|a)*b", "a", {}},
      {"(a*)*b", "a", {}},
      {"((a*|b)*)*", "a", {{0, 3}, {0, 3}, {0, 3}}},
      {"((a*|b)*)*", "b", {{0, 3}, {0, 3}, {2, 3}}},
      {"^(.*)@([^@]*)$", "@", {{0, 3}, {0, 2}, {3, 3}}},
      {"(.*)(.*)(.*)", "a", {{0, 3}, {0, 3}, {3, 3}, {3, 3}}},
      {"(a*)(a*)(a*)b?", "a", {{0, 3}, {0, 3}, {3, 3}, {3, 3}}},
      {"(a*b|a)*", "a", {{0, 3}, {2, 3}}},
      {"(a?){3}a*", "a", {{0, 3}, {2, 3}}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.pattern);
    const auto expression = Compiled(row.pattern);
    EXPECT_EQ(Find(*expression, Repeated(row.unit, 3)), row.last);
    const std::string whole = Repeated(row.unit, 1'200'000);
    EXPECT_TRUE(GrowsLinearly(300'000, [&](int n) {
      const auto text = std::string_view(whole).substr(0, static_cast<std::size_t>(n));
      EXPECT_EQ(Find(*expression, text).empty(), row.last.empty());
    }));
  }
}

// More turns than bounds can count, and more text than is looked at in one piece.
TEST(Expression, FindsGroupsInLongTexts) {
  struct Row {
    const char* pattern;
    const char* unit;
    std::string_view tail;
    Groups expected;  // relative to the last unit, in which the tail stands at 0
  };
  constexpr int kUnset = 1;
  const Row rows[] = {
      {"((a)|(b)|ab)*", "ab", "", {{-2, 0}, {kUnset, kUnset}, {kUnset, kUnset}}},
      {"((a)|(b))*", "ab", "", {{-1, 0}, {kUnset, kUnset}, {-1, 0}}},
      {"(a*b)*", "aaab", "ab", {{0, 2}}},
      {"(a|ab|bab)*c", "ab", "ac", {{0, 1}}},
      {"(x+)(a|b|ab)*(abc)?", "ab", "abc", {{kUnset, 0}, {-2, 0}, {0, 3}}},
  };
  for (const int units : {200, 300, 3000, 200'000}) {
    for (const Row& row : rows) {
      SCOPED_TRACE(Joined({row.pattern, " on ", std::to_string(units)}));
      const auto expression = Compiled(row.pattern);
      const bool led = row.pattern[1] == 'x';
      const std::string text = Joined({led ? "x" : "", Repeated(row.unit, units), row.tail});
      const int end = static_cast<int>(text.size() - row.tail.size());
      Groups expected = {{0, static_cast<int>(text.size())}};
      for (const auto& [from, to] : row.expected) {
        if (from == kUnset && to == kUnset) {
          expected.emplace_back(-1, -1);
        } else {
          expected.emplace_back(from == kUnset ? 0 : end + from, from == kUnset ? 1 : end + to);
        }
      }
      EXPECT_EQ(Find(*expression, text), expected);
    }
  }
}

// A reading in one direction may drop what another one has seen.
TEST(Expression, FindsGroupsWhereStatesAreDroppedOnTheWay) {
  const auto expression = Compiled("(a*)(.*)x([ab]{14}a[ab]*)(c*)(d*)");
  unsigned random = 1;
  for (int i = 0; i < 6; ++i) {
    std::string text = "aax";
    while (text.size() < 30'000) {
      random = random * 1664525 + 1013904223;
      text += (random >> 30) % 2 == 0 ? 'a' : 'b';
    }
    text[17] = 'a';
    text += "cccd";
    EXPECT_EQ(
        Find(*expression, text),
        (Groups{{0, 30'004}, {0, 2}, {2, 2}, {3, 30'000}, {30'000, 30'003}, {30'003, 30'004}}));
  }
}

TEST(Expression, FindsGroupsAmongManyPieces) {
  constexpr int kPieces = 400;
  const auto first = Compiled(Joined({"(x*)", Repeated(".*a", kPieces), "b*"}));
  const auto last = Compiled(Joined({"x*", Repeated(".*a", kPieces), "(b*)"}));
  const std::string text = Repeated("a", 2 * kPieces);
  EXPECT_EQ(Find(*first, text), (Groups{{0, 2 * kPieces}, {0, 0}}));
  EXPECT_EQ(Find(*last, text), (Groups{{0, 2 * kPieces}, {2 * kPieces, 2 * kPieces}}));
}

TEST(Expression, SearchesFromWhereItIsTold) {
  const auto word = Compiled("[[:<:]]b|^a|c$");
  const std::string_view text = "abc";
  EXPECT_EQ(Find(*word, text, -1), Groups());
  EXPECT_EQ(Find(*word, text, 0), (Groups{{0, 1}}));
  EXPECT_EQ(Find(*word, text, 1), (Groups{{2, 3}})) << "the byte before is a word's";
  EXPECT_EQ(Find(*word, text, 3), Groups());
  EXPECT_EQ(Find(*word, text, 4), Groups());
  EXPECT_EQ(Find(*word, "a b", 2), (Groups{{2, 3}}));
  EXPECT_EQ(Find(*word, "ba", 1), Groups()) << "not the start of the text";

  const auto empty = Compiled("x*$");
  EXPECT_EQ(Find(*empty, text, 3), (Groups{{3, 3}}));
  EXPECT_EQ(Find(*empty, text, 4), Groups());
  EXPECT_EQ(Find(*empty, "", 0), (Groups{{0, 0}}));
  EXPECT_EQ(Find(*empty, {}, 0), (Groups{{0, 0}}));
  EXPECT_EQ(Find(*Compiled("a*b"), {}, 0), Groups());
}

TEST(Expression, TakesEveryByteAsAByte) {
  using std::string_view_literals::operator""sv;
  const auto nul = Compiled("a\0[^b]\xFF"sv);
  EXPECT_EQ(Find(*nul, "xa\0\0\xFF"sv), (Groups{{1, 5}}));
  EXPECT_EQ(Find(*nul, "xa\0b\xFF"sv), Groups());
  const auto any = Compiled("^.{255}.$");
  std::string all;
  for (int c = 0; c < 256; ++c) all += static_cast<char>(c);
  EXPECT_EQ(Find(*any, all), (Groups{{0, 256}}));
  const auto word = Compiled("[[:<:]].[[:>:]]");
  for (int c = 0; c < 256; ++c) {
    const char byte = static_cast<char>(c);
    const bool isWord =
        (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || c == '_' || (c >= 'a' && c <= 'z');
    EXPECT_EQ(!Find(*word, {&byte, 1}).empty(), isWord) << c;
  }
}

TEST(Expression, ReportsNineGroupsAndCountsAll) {
  const auto expression = Compiled(Repeated("(a)", 12));
  EXPECT_EQ(expression->GroupCount(), 12);
  const Groups found = Find(*expression, Repeated("a", 12));
  ASSERT_EQ(found.size(), 13U);
  EXPECT_EQ(found[9], std::pair(8, 9));
  EXPECT_EQ(found[10], std::pair(-1, -1));
  EXPECT_EQ(found[12], std::pair(-1, -1));
}

// What finds no memory throws, and the next search is right.
TEST(Expression, SurvivesAnExhaustedMemory) {
  constexpr std::string_view kPattern = "((a|ab)(c|bcd)*)+(d*)$|x[[:<:]]y";
  const std::string text = Repeated("abcdabcd", 40);
  const Groups expected = Find(*Compiled(kPattern), text);
  ASSERT_EQ(expected.size(), 5U);
  int status = -1;
  const auto compile = [&] {
    status = -1;
    static_cast<void>(Expression::Compile(kPattern, false, status));
  };
  EXPECT_GT(FailEachAllocation(compile, [&] { EXPECT_EQ(status, -1); }), 10);
  EXPECT_EQ(status, 0);
  for (int n = 0;; ++n) {
    const auto expression = Compiled(kPattern);
    const bool fired = FailAllocation(n, [&] { static_cast<void>(Find(*expression, text)); }).fired;
    EXPECT_EQ(Find(*expression, text), expected) << "after " << n << " allocations";
    if (!fired) break;
  }
}

TEST(Expression, AllocatesNothingInASearchMadeBefore) {
  const auto expression = Compiled("(\\w+|[a-z]+)=([^;]*);?");
  const std::string_view text = "charset=utf-8; format=flowed";
  std::array<regmatch_t, 3> groups{};
  regmatch_t match = {};
  for (int i = 0; i < 2; ++i) {
    ASSERT_TRUE(expression->Find(text, 0, match));
    expression->FindGroups(text, match, groups);
  }
  const AllocationCount allocations;
  ASSERT_TRUE(expression->Find(text, 0, match));
  expression->FindGroups(text, match, groups);
  EXPECT_EQ(allocations.Made(), 0);
  EXPECT_EQ(groups[2].rm_eo, 13);
  groups[0] = match;
  expression->FindGroups(text, groups[0], groups);
  EXPECT_EQ(groups[0].rm_eo, match.rm_eo) << "the match may be the first of the groups";
}

}  // namespace
