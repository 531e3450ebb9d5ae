#include "system/Random.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <climits>

namespace {

TEST(RandomInt, StaysBelowItsBound) {
  for (const int n : {1, 2, 3, 10, 1000, 32768, 100'000, INT_MAX}) {
    for (int i = 0; i < 1000; ++i) {
      const int drawn = RandomInt(n);
      ASSERT_GE(drawn, 0);
      ASSERT_LT(drawn, n);
    }
  }
}

TEST(RandomInt, BelowOneFollowsTheSameFormula) {
  bool negative = false;
  for (int i = 0; i < 1000; ++i) {
    EXPECT_EQ(RandomInt(0), 0);
    EXPECT_EQ(RandomInt(-1), 0);
    const int drawn = RandomInt(-10);
    ASSERT_LE(drawn, 0);
    ASSERT_GT(drawn, -10);
    ASSERT_GT(RandomInt(INT_MIN), INT_MIN);
    negative = negative || drawn < 0;
  }
  EXPECT_TRUE(negative);
}

TEST(RandomInt, YieldsAllFifteenBitsAndNoMore) {
  int low = INT_MAX, high = 0;
  for (int i = 0; i < 1'000'000; ++i) {
    const int drawn = RandomInt(32768);
    low = std::min(low, drawn);
    high = std::max(high, drawn);
  }
  EXPECT_EQ(low, 0);
  EXPECT_EQ(high, 32767);
}

TEST(RandomInt, IsSpreadEvenly) {
  constexpr int kBuckets = 10, kDraws = 100'000;
  std::array<int, kBuckets> hits{};
  for (int i = 0; i < kDraws; ++i) ++hits[static_cast<std::size_t>(RandomInt(kBuckets))];
  for (const int hit : hits) EXPECT_NEAR(hit, kDraws / kBuckets, kDraws / kBuckets / 10);
}

}  // namespace
