// The vectorised search against a loop.

#include "regex/engine/ByteSearch.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>

#include "support/ExactInput.h"

namespace {

using mailhearth::engine::ByteSearch;
using mailhearth::engine::FewBytes;

FewBytes SetOf(std::string_view bytes) {
  FewBytes set;
  for (const char byte : bytes) set.Add(byte);
  return set;
}

TEST(FewBytes, HoldsFourAndThenNone) {
  const FewBytes none;
  EXPECT_EQ(none.Count(), 0U);
  EXPECT_EQ(none.begin(), none.end());
  const FewBytes four = SetOf("abcabcdd");
  EXPECT_EQ(four.Count(), 4U);
  EXPECT_FALSE(four.Overflowed());
  EXPECT_EQ(std::string(four.begin(), four.end()), "abcd");
  EXPECT_TRUE(four.Has('d') != 0 && four.Has('e') == 0);
  const FewBytes five = SetOf("abcde");
  EXPECT_TRUE(five.Overflowed());
  EXPECT_EQ(five.begin(), five.end());
  const FewBytes one = SetOf(std::string_view("\0", 1));
  EXPECT_TRUE(one.Count() == 1 && one.Has('\0') != 0 && one.Has('a') == 0);
}

std::size_t FindSlowly(std::string_view text, std::size_t at, std::string_view first,
                       std::string_view second) {
  for (; at < text.size(); ++at) {
    const bool last = at + 1 == text.size();
    const bool followed = second.size() > 4 || last || second.find(text[at + 1]) != second.npos;
    if (first.find(text[at]) != first.npos && followed) break;
  }
  return at;
}

TEST(ByteSearch, FindsWhatIsThereAndNothingElse) {
  constexpr std::string_view kSets[] = {"",
                                        "a",
                                        "ab",
                                        "abc",
                                        "\xFF"
                                        "bcd",
                                        "abcde"};
  std::mt19937 random(5);
  const auto below = [&](std::size_t n) { return random() % n; };
  int found = 0;
  for (int i = 0; i < 20'000; ++i) {
    const std::string_view first = kSets[below(5)];
    const std::string_view second = kSets[1 + below(5)];
    std::string bytes(below(100), 'x');
    for (std::size_t n = below(6); n > 0 && !bytes.empty(); --n) {
      bytes[below(bytes.size())] = "abcd\xFFx"[below(6)];
    }
    const ExactInput text(bytes);
    const std::size_t at = below(bytes.size() + 1);
    const std::size_t expected = FindSlowly(text.View(), at, first, second);
    ASSERT_EQ(ByteSearch(SetOf(first), SetOf(second)).Find(text.View(), at), expected)
        << bytes << " from " << at << " for " << first << " and " << second;
    if (expected < bytes.size()) ++found;
  }
  EXPECT_GT(found, 1'000);
}

}  // namespace
