// Every small pattern against every small text: the engine and the slow matcher agree on
// whether the pattern compiles, on the match and on the groups.
//
// A run takes the shorter patterns and of the next longer ones a fixed share. The whole,
// with longer patterns and texts, is taken with MAILHEARTH_EXHAUSTIVE=all in the environment.

#include <gtest/gtest.h>

#include <cstdint>
#include <ostream>
#include <span>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "support/ExactInput.h"
#include "support/Exhaustive.h"
#include "support/RegexComparison.h"

namespace {

using std::string_view;

constexpr bool kIgnoreCase = true;
constexpr int kShards = 8;           // of each alphabet, each a test
constexpr int kMaxDifferences = 10;  // a shard gives up after so many
constexpr bool kInstrumented = MAILHEARTH_INSTRUMENTED != 0;

// How far patterns and texts grow.
struct Extent {
  int symbols;  // of a pattern, at most
  int bytes;    // of a text, at most
  int share;    // of the longest patterns one in so many is taken
};

// What patterns and texts are made of.
struct Alphabet {
  const char* name;
  std::span<const string_view> symbols;  // a pattern is a row of these
  string_view bytes;                     // a text is a row of these
  bool ignoreCase;
  Extent usual;
  Extent whole;
};

void PrintTo(const Alphabet& alphabet, std::ostream* out) { *out << alphabet.name; }

// Branches and repetitions of every sort.
constexpr string_view kRepetitions[] = {"a", "b", ".",   "(",     ")",     "|",    "*",
                                        "+", "?", "{2}", "{0,1}", "{1,2}", "{2,}", "{0}"};

// Groups in groups, deeper than single bytes would reach.
constexpr string_view kNested[] = {"(",  "(a",   "(b", ")", ")*", ")+",
                                   ")?", "){2}", "|",  "a", "ab", "b*"};

constexpr string_view kAnchors[] = {"a", ".",   "(", ")", "|",       "*",
                                    "?", "{2}", "^", "$", "[[:<:]]", "[[:>:]]"};

constexpr string_view kSets[] = {"a", "B", "[ab]", "[^a]", "[[:upper:]]", "\\A", ".",
                                 "(", ")", "|",    "*"};

// Brackets and bounds spelled out, right and wrong.
constexpr string_view kBrackets[] = {"a", "b", "-", "[", "]", "^", "\\"};
constexpr string_view kElements[] = {"a",     "b",     "-",         "[",  "]", "^",
                                     "[.a.]", "[=b=]", "[:alpha:]", "[.", "=]"};
constexpr string_view kBounds[] = {"a", "{", "}", "1", "2", ",", "*", "(", ")"};

constexpr Alphabet kAlphabets[] = {
    {"repetitions", kRepetitions, "ab", false, {5, 5, 3}, {6, 5, 1}},
    {"nested", kNested, "ab", false, {6, 5, 40}, {7, 5, 1}},
    {"anchors", kAnchors, "ab ", false, {5, 3, 2}, {6, 5, 1}},
    {"sets", kSets, "abAB", false, {5, 2, 3}, {6, 4, 1}},
    {"case", kSets, "abAB", kIgnoreCase, {5, 2, 3}, {6, 4, 1}},
    {"brackets", kBrackets, "ab-[]^\\", false, {7, 2, 20}, {8, 2, 1}},
    {"elements", kElements, "ab-[^", false, {6, 2, 40}, {7, 2, 1}},
    {"bounds", kBounds, "a{1", false, {7, 3, 40}, {8, 3, 1}},
};

// Every text of up to `most` of the bytes.
std::vector<ExactInput> Texts(string_view bytes, int most) {
  std::vector<std::string> all{""};
  std::size_t shorter = 0;
  for (int length = 1; length <= most; ++length) {
    const std::size_t end = all.size();
    for (; shorter < end; ++shorter) {
      for (const char c : bytes) all.push_back(all[shorter] + c);
    }
  }
  return {all.begin(), all.end()};
}

// A number whose remainders do not follow the last symbols of the pattern `index` names.
std::uint64_t Scattered(std::uint64_t index) { return (index * 0x9E3779B97F4A7C15U) >> 24; }

// The tests of one shard: its patterns, each against every text from every offset.
class Shard {
 public:
  Shard(const Alphabet& alphabet, int number)
      : alphabet_(alphabet),
        number_(static_cast<std::uint64_t>(number)),
        extent_(WholeIsAsked() ? alphabet.whole : alphabet.usual),
        texts_(Texts(alphabet.bytes, extent_.bytes)) {
    if (kInstrumented) --extent_.symbols;
  }

  void Run() {
    for (int length = 1; length <= extent_.symbols; ++length) {
      RunLength(length, length < extent_.symbols ? 1 : static_cast<std::uint64_t>(extent_.share));
    }
  }

  // That it was a test at all: patterns compiled, and texts matched and did not.
  void CheckCounts() const {
    EXPECT_GT(tried_, expected_ * 3 / 4);
    EXPECT_LT(tried_, expected_ * 4 / 3);
    EXPECT_GT(compiled_, tried_ / 50);
    EXPECT_LT(compiled_, tried_);
    EXPECT_GT(compared_, compiled_ * texts_.size());
    EXPECT_GT(matched_, compared_ / 200);
    EXPECT_LT(matched_, compared_);
    EXPECT_GT(compared_, 10'000U);
  }

 private:
  void RunLength(int length, std::uint64_t share) {
    std::uint64_t patterns = 1;
    for (int i = 0; i < length; ++i) patterns *= alphabet_.symbols.size();
    expected_ += patterns / kShards / share;
    for (std::uint64_t index = 0; index < patterns; ++index) {
      const std::uint64_t scattered = Scattered(index);
      if (scattered % kShards != number_ || scattered / kShards % share != 0) continue;
      if (differences_ < kMaxDifferences) RunPattern(Pattern(index, length));
    }
  }

  // The pattern with this index among those of its length.
  [[nodiscard]] std::string Pattern(std::uint64_t index, int length) const {
    std::string pattern;
    for (int i = 0; i < length; ++i) {
      pattern += alphabet_.symbols[index % alphabet_.symbols.size()];
      index /= alphabet_.symbols.size();
    }
    return pattern;
  }

  void RunPattern(const std::string& spelled) {
    ++tried_;
    const ExactInput pattern(spelled);
    mailhearth::RegexComparison pair(pattern.View(), alphabet_.ignoreCase);
    Expect(pair.Verdict());
    if (!pair.Compiles()) return;
    ++compiled_;
    for (const ExactInput& text : texts_) {
      pair.SetText(text.View());
      for (int start = 0; start <= text.Length(); ++start) {
        Expect(pair.Difference(start));
        ++compared_;
        if (pair.Matched()) ++matched_;
      }
    }
  }

  void Expect(const std::string& difference) {
    if (difference.empty()) return;
    ++differences_;
    ADD_FAILURE() << difference;
  }

  const Alphabet& alphabet_;
  const std::uint64_t number_;
  Extent extent_;
  const std::vector<ExactInput> texts_;
  std::uint64_t expected_ = 0, tried_ = 0, compiled_ = 0, compared_ = 0, matched_ = 0;
  int differences_ = 0;
};

using Parameter = std::tuple<Alphabet, int>;

class Exhaustive : public testing::TestWithParam<Parameter> {};

TEST_P(Exhaustive, EveryPatternAgreesOnEveryText) {
  const auto& [alphabet, number] = GetParam();
  Shard shard(alphabet, number);
  shard.Run();
  if (!HasFailure()) shard.CheckCounts();
}

INSTANTIATE_TEST_SUITE_P(Engine, Exhaustive,
                         testing::Combine(testing::ValuesIn(kAlphabets),
                                          testing::Range(0, kShards)),
                         [](const testing::TestParamInfo<Parameter>& tested) {
                           return std::string(std::get<0>(tested.param).name) + "_" +
                                  std::to_string(std::get<1>(tested.param));
                         });

}  // namespace
