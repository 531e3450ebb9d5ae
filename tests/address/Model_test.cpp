// Every short text, and random longer ones: the library's readers of addresses agree with the
// slow ones on all that they tell.
//
// A run takes the shorter texts and of the next longer ones a fixed share. The whole, with
// longer texts, is taken with MAILHEARTH_EXHAUSTIVE=all in the environment.

#include <gtest/gtest.h>

#include <cstdint>
#include <ostream>
#include <random>
#include <span>
#include <string>
#include <string_view>
#include <tuple>

#include "support/AddressComparison.h"
#include "support/Exhaustive.h"

namespace {

using std::string_view;

constexpr int kShards = 4;               // of each subject, each a test
constexpr int kMaxDifferences = 10;      // a shard gives up after so many
constexpr unsigned kRandomSymbols = 24;  // of a random text, at most
constexpr unsigned kSeed = 821822;
constexpr bool kInstrumented = MAILHEARTH_INSTRUMENTED != 0;

// How far texts grow.
struct Extent {
  int symbols;  // of a text, at most
  int share;    // of the longest texts one in so many is taken
};

// What is compared, and the symbols that a text is a row of.
struct Subject {
  const char* name;
  mailhearth::AddressComparison (*compare)(string_view text);
  std::span<const string_view> symbols;
  Extent usual;
  Extent whole;
  int random;  // how many longer texts a shard takes
};

void PrintTo(const Subject& subject, std::ostream* out) { *out << subject.name; }

// One byte of every sort that a scanner tells from the others.
constexpr string_view kBytes[] = {"a", "1", "<", "%", ".",  " ",  "\t",   "\"",  "\\",
                                  "[", "]", "(", ")", "\r", "\n", "\x7F", "\x80"};

// Literals, right and wrong.
constexpr string_view kLiterals[] = {"[", "]", ".", "1", "256", "0255", " ", "[1.2.3", ".4]"};

// Line ends, and what they stand in.
constexpr string_view kLines[] = {"a", "\r", "\n", "\r\n", " ", "\t", "\"", "(", ")", "[", ","};

constexpr string_view kPath[] = {"a", "1", "-",  "<",  ">", "@", ".",        ",",
                                 ":", "%", "\"", "\\", " ", "(", "[1.2.3.4]"};

// Paths that are nearly right.
constexpr string_view kRoutes[] = {"<",  ">", "@", "@a", ",", ":",   ".", "a",
                                   "@1", "b", "%", "\"", " ", "X=1", "\t"};

constexpr string_view kList[] = {"a", "<", ">",  "@",   ".",   ",",   ";",
                                 ":", " ", "\"", "(c)", "[1]", "\r\n"};

// Addresses that are nearly right.
constexpr string_view kAddresses[] = {
    "a@b",   "<a@b", "<a@1>", ">", "<@r:", "<@r,@s:", "g:",        ";",    ",",
    "\"J\"", " Joe", "(c)",   "@", ".",    "\r\n ",   "[1.2.3.4]", "\r\n", "<>"};

constexpr string_view kWhole[] = {"a", "1", "-", ".", " ",  "\"",  "\\",
                                  "@", "%", "[", "]", "\r", "\x80"};

// Texts of tokens, and the bar between them.
constexpr string_view kJoined[] = {"|",  "|a",   "|\"q\"", "|(c)",  "|.", "|<",  "|%x",
                                   "|[", "|[1]", "|\\",    "|\r\n", "|)", "|\"", "|\x80"};

constexpr string_view kRepair[] = {"a", "1", "<", ">", "@", ".", ",", " ", "\"", "\\", ":"};

// Pieces of what people write.
constexpr string_view kBogus[] = {"a",        "b.c",        " . ", "<",  ">",   "@",
                                  " @ ",      ", ",         "\"",  "\n", "Joe", "(J)",
                                  "10.0.0.1", "[10.0.0.1]", "@r:", "\\", "\v@", "\f"};

constexpr Subject kSubjects[] = {
    {"Bytes", mailhearth::CompareTokens, kBytes, {4, 1}, {6, 1}, 1000},
    {"Literals", mailhearth::CompareTokens, kLiterals, {5, 4}, {7, 1}, 1000},
    {"Lines", mailhearth::CompareTokens, kLines, {5, 4}, {7, 1}, 1000},
    {"Path", mailhearth::ComparePath, kPath, {5, 30}, {6, 1}, 2000},
    {"Routes", mailhearth::ComparePath, kRoutes, {5, 30}, {6, 1}, 2000},
    {"List", mailhearth::CompareList, kList, {5, 8}, {6, 1}, 2000},
    {"Addresses", mailhearth::CompareList, kAddresses, {4, 3}, {5, 1}, 2000},
    {"Whole", mailhearth::CompareWhole, kWhole, {5, 6}, {6, 1}, 2000},
    {"Joined", mailhearth::CompareJoined, kJoined, {4, 1}, {6, 1}, 2000},
    {"Repair", mailhearth::CompareRepair, kRepair, {5, 3}, {6, 1}, 2000},
    {"Bogus", mailhearth::CompareRepair, kBogus, {4, 1}, {5, 1}, 2000},
};

// The tests of one shard: some of the short texts, and random ones of its own.
class Shard {
 public:
  Shard(const Subject& subject, int number)
      : subject_(subject),
        number_(static_cast<std::uint64_t>(number)),
        extent_(WholeIsAsked() ? subject.whole : subject.usual),
        random_(kSeed + static_cast<unsigned>(number)) {
    if (kInstrumented) --extent_.symbols;
  }

  void Run() {
    for (int length = 0; length <= extent_.symbols; ++length) {
      RunLength(length, length < extent_.symbols ? 1 : static_cast<std::uint64_t>(extent_.share));
    }
    for (int n = 0; n < (WholeIsAsked() ? subject_.random * 100 : subject_.random); ++n) {
      Compare(RandomText());
    }
  }

  // That it was a test at all: texts of both sorts.
  void CheckCounts() const {
    EXPECT_GT(compared_, 1000);
    EXPECT_GT(good_, compared_ / 1000);
    EXPECT_LT(good_, compared_);
  }

 private:
  void RunLength(int length, std::uint64_t share) {
    std::uint64_t texts = 1;
    for (int i = 0; i < length; ++i) texts *= subject_.symbols.size();
    for (std::uint64_t index = 0; index < texts; ++index) {
      const std::uint64_t scattered = Scattered(index);
      if (scattered % kShards != number_ || scattered / kShards % share != 0) continue;
      Compare(Text(index, length));
    }
  }

  // A number whose remainders do not follow the last symbols of the text `index` names.
  static std::uint64_t Scattered(std::uint64_t index) {
    return (index * 0x9E3779B97F4A7C15U) >> 24;
  }

  // The text with this index among those of its length.
  [[nodiscard]] std::string Text(std::uint64_t index, int length) const {
    std::string text;
    for (int i = 0; i < length; ++i) {
      text += subject_.symbols[index % subject_.symbols.size()];
      index /= subject_.symbols.size();
    }
    return text;
  }

  std::string RandomText() {
    std::string text;
    for (auto left = random_() % (kRandomSymbols + 1); left > 0; --left) {
      text += subject_.symbols[random_() % subject_.symbols.size()];
    }
    return text;
  }

  void Compare(const std::string& text) {
    if (differences_ >= kMaxDifferences) return;
    const mailhearth::AddressComparison pair = subject_.compare(text);
    ++compared_;
    if (pair.good) ++good_;
    if (pair.difference.empty()) return;
    ++differences_;
    ADD_FAILURE() << pair.difference;
  }

  const Subject& subject_;
  const std::uint64_t number_;
  Extent extent_;
  std::mt19937 random_;
  int compared_ = 0, good_ = 0, differences_ = 0;
};

using Parameter = std::tuple<Subject, int>;

class ExhaustiveModel : public testing::TestWithParam<Parameter> {};

TEST_P(ExhaustiveModel, AgreesOnShortTextsAndRandomOnes) {
  const auto& [subject, number] = GetParam();
  Shard shard(subject, number);
  shard.Run();
  if (!HasFailure()) shard.CheckCounts();
}

INSTANTIATE_TEST_SUITE_P(Address, ExhaustiveModel,
                         testing::Combine(testing::ValuesIn(kSubjects), testing::Range(0, kShards)),
                         [](const testing::TestParamInfo<Parameter>& tested) {
                           return std::string(std::get<0>(tested.param).name) + "_" +
                                  std::to_string(std::get<1>(tested.param));
                         });

}  // namespace
