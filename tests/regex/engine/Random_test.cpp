// Random patterns, larger than all small ones, on random texts: matches and groups against
// the slow matcher; matches alone against two peers, each within what it does right.

#include <gtest/gtest.h>
#include <re2/re2.h>
#include <regex.h>

#include <algorithm>
#include <array>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "regex/engine/Expression.h"
#include "support/ExactInput.h"
#include "support/RandomRegex.h"
#include "support/RegexComparison.h"

namespace {

using mailhearth::Chance;
using mailhearth::Dialect;
using mailhearth::PatternMaker;
using mailhearth::RandomText;
using mailhearth::engine::Expression;

constexpr int kTexts = 6;            // for each pattern
constexpr int kMaxDifferences = 10;  // a test gives up after so many

constexpr Dialect kAll = {true, true, true, true, true, 4, 9};

// The C library loses anchors within repetitions, does not return from some repetitions of
// nothing, and takes long to compile bounds within bounds. Its texts are single lines, as
// some of its anchors see the ends of lines unasked.
constexpr Dialect kCLibrary = {false, false, false, false, false, 3, 2};

// Programs of thousands of instructions, which outgrow what is kept from one search to the
// next.
constexpr Dialect kLarge = {true, true, true, true, true, 60, 2};

constexpr Dialect kScaled = {true, true, true, true, true, 3, 3, true};

constexpr Dialect kRe2 = {false, true, false, true, true, 4, 3};

constexpr Dialect kLargeRe2 = {false, true, false, true, true, 25, 2};

// How much is compared.
struct Extent {
  int patterns;
  int symbols;  // of a pattern, at most
  int bytes;    // of a text, at most
};

constexpr Extent Shorter(Extent extent) {
  if (MAILHEARTH_INSTRUMENTED != 0) extent.patterns /= 15;
  return extent;
}

constexpr std::string_view kLineBytes = "aaaabbbAc .";
constexpr std::string_view kBytes = "aaaabbbAc .\n";

// What was compared, and how much of it: a test of nothing fails.
class Tally {
 public:
  explicit Tally(int expected) : expected_(expected) {}

  void Add(bool matched, const std::string& difference) {
    ++compared_;
    if (matched) ++matched_;
    if (difference.empty()) return;
    ++differences_;
    ADD_FAILURE() << difference;
  }

  [[nodiscard]] bool GiveUp() const { return differences_ >= kMaxDifferences; }

  void Check() const {
    if (differences_ > 0) return;
    EXPECT_GT(compared_, expected_ * 9 / 10);
    EXPECT_GT(matched_, compared_ / 4);
    EXPECT_LT(matched_, compared_ * 9 / 10);
  }

 private:
  const int expected_;
  int compared_ = 0, matched_ = 0, differences_ = 0;
};

void CompareWithSlowMatcher(unsigned seed, const Dialect& dialect, const Extent& extent) {
  Chance chance(seed);
  PatternMaker maker(chance, dialect);
  Tally tally(extent.patterns * kTexts);
  for (int i = 0; i < extent.patterns && !tally.GiveUp(); ++i) {
    const ExactInput pattern(maker.Make(1 + chance.Below(extent.symbols)));
    mailhearth::RegexComparison pair(pattern.View(), chance.Is(25));
    ASSERT_EQ(pair.Verdict(), "");
    ASSERT_TRUE(pair.Compiles()) << pattern.View();
    for (int k = 0; k < kTexts; ++k) {
      const ExactInput text(RandomText(chance, kBytes, extent.bytes));
      pair.SetText(text.View());
      const std::string difference = pair.Difference(chance.Below(text.Length() + 1) * k / kTexts);
      tally.Add(pair.Matched(), difference);
    }
  }
  tally.Check();
}

TEST(Random, PatternsAgreeWithTheSlowMatcher) {
  CompareWithSlowMatcher(20260301, kAll, Shorter({60'000, 25, 16}));
}

TEST(Random, LargePatternsAgreeWithTheSlowMatcher) {
  CompareWithSlowMatcher(20260302, kLarge, Shorter({1'500, 12, 60}));
}

// Tells where a peer that found `expected`, or (-1, -1), differs from the engine.
std::string Difference(std::string_view pattern, Expression& expression, std::string_view text,
                       int start, const regmatch_t& expected) {
  regmatch_t match{-1, -1};
  static_cast<void>(expression.Find(text, start, match));  // the bounds tell
  if (match.rm_so == expected.rm_so && match.rm_eo == expected.rm_eo) return "";
  std::ostringstream difference;
  difference << pattern << " on \"" << text << "\" from " << start << ": expected "
             << expected.rm_so << ',' << expected.rm_eo << ", got " << match.rm_so << ','
             << match.rm_eo;
  return difference.str();
}

TEST(Random, MatchesAgreeWithTheCLibrary) {
  constexpr Extent kExtent = Shorter({60'000, 16, 20});
  Chance chance(20260303);
  PatternMaker maker(chance, kCLibrary);
  Tally tally(kExtent.patterns * kTexts);
  for (int i = 0; i < kExtent.patterns && !tally.GiveUp(); ++i) {
    const std::string pattern = maker.Make(1 + chance.Below(kExtent.symbols));
    const bool ignoreCase = chance.Is(25);
    int status = 0;
    const auto expression = Expression::Compile(pattern, ignoreCase, status);
    ASSERT_NE(expression, nullptr) << pattern;
    regex_t peer;
    ASSERT_EQ(::regcomp(&peer, pattern.c_str(), REG_EXTENDED | (ignoreCase ? REG_ICASE : 0)), 0);
    for (int k = 0; k < kTexts; ++k) {
      const std::string text = RandomText(chance, kLineBytes, kExtent.bytes);
      regmatch_t expected{-1, -1};
      const bool matched = ::regexec(&peer, text.c_str(), 1, &expected, 0) == 0;
      tally.Add(matched, Difference(pattern, *expression, text, 0, expected));
    }
    ::regfree(&peer);
  }
  tally.Check();
}

constexpr int kScale = 250;  // no more than a bound may be

// The pattern with a bound behind each part that matches one byte.
std::string ScaledPattern(const std::string& marked) {
  std::ostringstream pattern;
  for (const char c : marked) {
    if (c == PatternMaker::kBehindByte) {
      pattern << '{' << kScale << '}';
    } else {
      pattern << c;
    }
  }
  return pattern.str();
}

// The text with each byte so many times.
std::string ScaledText(const std::string& text) {
  std::string scaled;
  for (const char c : text) scaled.append(kScale, c);
  return scaled;
}

// Returns all groups of the first match, none if there is no match.
std::vector<regmatch_t> FindAll(Expression& expression, std::string_view text) {
  regmatch_t match{};
  if (!expression.Find(text, 0, match)) return {};
  std::vector<regmatch_t> groups(static_cast<std::size_t>(expression.GroupCount()) + 1);
  expression.FindGroups(text, match, groups);
  return groups;
}

// Of what was found in a short text and in the scaled one.
bool IsScaled(const std::vector<regmatch_t>& small, const std::vector<regmatch_t>& large) {
  const auto scaled = [](regoff_t at) { return at < 0 ? at : at * kScale; };
  return std::equal(small.begin(), small.end(), large.begin(), large.end(),
                    [&](const regmatch_t& a, const regmatch_t& b) {
                      return scaled(a.rm_so) == b.rm_so && scaled(a.rm_eo) == b.rm_eo;
                    });
}

// Where each byte of a pattern asks for kScale of them, and each byte of the text stands so
// many times, offsets grow by that and nothing else changes: a match that began within a row
// of equal bytes would be one, too, if it began with the row.
TEST(Random, GroupsInLongTextsAreThoseOfShortOnes) {
  constexpr Extent kExtent = Shorter({300, 15, 40});
  Chance chance(20260306);
  PatternMaker maker(chance, kScaled);
  Tally tally(kExtent.patterns * kTexts);
  for (int i = 0; i < kExtent.patterns && !tally.GiveUp(); ++i) {
    const std::string marked = maker.Make(1 + chance.Below(kExtent.symbols));
    std::string pattern = marked;
    std::erase(pattern, PatternMaker::kBehindByte);
    mailhearth::SlowRegex slow(pattern, false);
    ASSERT_TRUE(slow.Compiles()) << pattern;
    int status = 0;
    const auto expression = Expression::Compile(ScaledPattern(marked), false, status);
    if (status == REG_ESPACE) continue;
    ASSERT_NE(expression, nullptr) << pattern;
    for (int k = 0; k < kTexts; ++k) {
      const std::string text = RandomText(chance, kBytes, kExtent.bytes);
      slow.SetText(text);
      const std::vector<regmatch_t>& expected = slow.Find(0);
      const bool same = IsScaled(expected, FindAll(*expression, ScaledText(text)));
      tally.Add(!expected.empty(), same ? "" : pattern + " on \"" + text + "\", each byte scaled");
    }
  }
  tally.Check();
}

re2::RE2::Options LongestMatch(bool ignoreCase) {
  re2::RE2::Options options;
  options.set_encoding(re2::RE2::Options::EncodingLatin1);
  options.set_posix_syntax(true);
  options.set_longest_match(true);
  options.set_dot_nl(true);
  options.set_one_line(true);
  options.set_case_sensitive(!ignoreCase);
  options.set_log_errors(false);
  return options;
}

// Searches from `start`. Returns the match, (-1, -1) for none.
regmatch_t FoundByRe2(const re2::RE2& peer, const std::string& text, int start) {
  re2::StringPiece found;
  if (!peer.Match(text, static_cast<std::size_t>(start), text.size(), re2::RE2::UNANCHORED, &found,
                  1)) {
    return {-1, -1};
  }
  const auto from = static_cast<regoff_t>(found.data() - text.data());
  return {from, from + static_cast<regoff_t>(found.size())};
}

void CompareWithRe2(unsigned seed, const Dialect& dialect, const Extent& extent) {
  Chance chance(seed);
  PatternMaker maker(chance, dialect);
  Tally tally(extent.patterns * kTexts);
  for (int i = 0; i < extent.patterns && !tally.GiveUp(); ++i) {
    const std::string pattern = maker.Make(1 + chance.Below(extent.symbols));
    const bool ignoreCase = chance.Is(25);
    int status = 0;
    const auto expression = Expression::Compile(pattern, ignoreCase, status);
    ASSERT_NE(expression, nullptr) << pattern;
    const re2::RE2 peer(pattern, LongestMatch(ignoreCase));
    if (!peer.ok()) continue;  // it refuses bounds whose product is large
    // It takes any start for that of the text.
    const bool anchored = pattern.find('^') != std::string::npos;
    for (int k = 0; k < kTexts; ++k) {
      const std::string text = RandomText(chance, kBytes, extent.bytes);
      const int start = anchored ? 0 : chance.Below(static_cast<int>(text.size()) + 1) * k / kTexts;
      const regmatch_t expected = FoundByRe2(peer, text, start);
      tally.Add(expected.rm_so >= 0, Difference(pattern, *expression, text, start, expected));
    }
  }
  tally.Check();
}

TEST(Random, MatchesAgreeWithRe2) { CompareWithRe2(20260304, kRe2, Shorter({60'000, 20, 20})); }

TEST(Random, MatchesInLongTextsAgreeWithRe2) {
  CompareWithRe2(20260305, kLargeRe2, Shorter({3'000, 12, 3'000}));
}

// An automaton for "an a so many bytes ago" has a state for every row of that many bytes.
TEST(Random, SearchesWithMoreStatesThanAreKeptAgreeWithRe2) {
  constexpr Extent kExtent = Shorter({30, 0, 40'000});
  Chance chance(20260307);
  Tally tally(kExtent.patterns * kTexts);
  for (int i = 0; i < kExtent.patterns && !tally.GiveUp(); ++i) {
    std::ostringstream spelled;
    spelled << chance.OneOf(std::array{"", "^.*", "b?", "(a|b.)*"}) << "a.{"
            << 12 + chance.Below(20) << '}'
            << chance.OneOf(std::array{"c", "c.*", "c|b.{9}c", "c$"});
    const std::string pattern = spelled.str();
    int status = 0;
    const auto expression = Expression::Compile(pattern, false, status);
    ASSERT_NE(expression, nullptr) << pattern;
    const re2::RE2 peer(pattern, LongestMatch(false));
    for (int k = 0; k < kTexts; ++k) {
      std::string text = RandomText(chance, "ab", kExtent.bytes);
      if (chance.Is(70)) text += "c";
      const regmatch_t expected = FoundByRe2(peer, text, 0);
      tally.Add(expected.rm_so >= 0, Difference(pattern, *expression, text, 0, expected));
    }
  }
  tally.Check();
}

}  // namespace
