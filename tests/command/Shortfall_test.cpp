#include "command/Shortfall.h"

#include <gtest/gtest.h>

#include <bit>
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <random>

#include "support/CFormat.h"

namespace {

std::string Expected(double number) { return CFormat("%g\n", number); }

TEST(NumberLine, IsTheShortestFormOfSixDigits) {
  EXPECT_EQ(NumberLine(-999997), "-999997\n");
  EXPECT_EQ(NumberLine(-1e7), "-1e+07\n");
  EXPECT_EQ(NumberLine(200000), "200000\n");
  EXPECT_EQ(NumberLine(-0.001), "-0.001\n");
  EXPECT_EQ(NumberLine(0), "0\n");
  EXPECT_EQ(NumberLine(-1234567), "-1.23457e+06\n");
  EXPECT_EQ(NumberLine(-1.234567e-308), "-1.23457e-308\n");
  EXPECT_EQ(NumberLine(DBL_MAX), "1.79769e+308\n");
}

TEST(NumberLine, EqualsTheCFormatForRandomShortfalls) {
  std::mt19937_64 random(42);
  for (int i = 0; i < 100'000; ++i) {
    const int doubled = static_cast<int>(random());
    const double free = static_cast<double>(random() >> random() % 64);
    const double number = (doubled - free) / 1000.0;
    ASSERT_EQ(NumberLine(number), Expected(number));
  }
}

TEST(NumberLine, EqualsTheCFormatForRandomBits) {
  std::mt19937_64 random(43);
  for (int i = 0; i < 100'000; ++i) {
    const auto number = std::bit_cast<double>(std::uint64_t{random()});
    if (std::isnan(number)) continue;
    ASSERT_EQ(NumberLine(number), Expected(number));
  }
}

}  // namespace
