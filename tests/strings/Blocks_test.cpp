#include "strings/Blocks.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <random>
#include <string>
#include <string_view>

#include "support/ExactInput.h"

namespace {

char SlowLower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }
char SlowUpper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

std::string Mapped(std::string text, char (*map)(char)) {
  std::transform(text.begin(), text.end(), text.begin(), map);
  return text;
}

constexpr std::size_t kLongest = 300;  // past what is looked at together

std::string RandomBytes(std::mt19937& random, std::size_t size) {
  std::string text;
  while (text.size() < size) text += static_cast<char>(random());
  return text;
}

// On bytes that nothing follows.
bool Equal(std::string_view a, std::string_view b) {
  return EqualNoCase(ExactInput(a).View(), ExactInput(b).View());
}

TEST(EqualNoCase, ComparesEachByteWithEachOther) {
  for (int a = 0; a < 256; ++a) {
    for (int b = 0; b < 256; ++b) {
      const std::string x(1, static_cast<char>(a)), y(1, static_cast<char>(b));
      const bool expected = Mapped(x, SlowLower) == Mapped(y, SlowLower);
      ASSERT_EQ(Equal(x, y), expected) << a << " " << b;
      ASSERT_EQ(Equal("0123456" + x + "abcdefghi", "0123456" + y + "ABCDEFGHI"), expected)
          << a << " " << b;
    }
  }
}

TEST(EqualNoCase, SeesADifferenceAnywhere) {
  std::mt19937 random(9);
  for (std::size_t size = 0; size <= kLongest; ++size) {
    const std::string text = RandomBytes(random, size);
    ASSERT_TRUE(Equal(text, Mapped(text, SlowLower))) << size;
    ASSERT_TRUE(Equal(Mapped(text, SlowUpper), text)) << size;
    for (std::size_t at = 0; at < size; ++at) {
      std::string other = Mapped(text, SlowUpper);
      other[at] = static_cast<char>(other[at] ^ (1 << random() % 8));
      ASSERT_EQ(Equal(text, other), Mapped(text, SlowLower) == Mapped(other, SlowLower))
          << testing::PrintToString(text) << " at " << at;
    }
  }
}

TEST(ChangeBytes, ChangesTheCaseOfEveryByteAndNoOther) {
  std::mt19937 random(10);
  std::string all;
  for (int c = 0; c < 256; ++c) all += static_cast<char>(c);
  for (std::size_t size = 0; size <= kLongest; ++size) {
    for (std::size_t before = 0; before < 16; ++before) {
      std::string text =
          size < 256 ? RandomBytes(random, size) : all + std::string(size - 256, 'Z');
      const std::string head(before, 'q'), expected = Mapped(text, SlowLower);
      std::string kept = head + text + "QqQ";
      ChangeBytes(kept.data() + before, size, LowerBlock);
      ASSERT_EQ(kept, head + expected + "QqQ");
      ChangeBytes(kept.data() + before, size, UpperBlock);
      ASSERT_EQ(kept, head + Mapped(text, SlowUpper) + "QqQ");
      kept.replace(before, size, text);
      ChangeBytes(kept.data() + before, size, UpperBlock);
      ASSERT_EQ(kept, head + Mapped(text, SlowUpper) + "QqQ");
    }
  }
}

TEST(ChangeBytes, StaysWithinItsBytes) {
  for (std::size_t size = 0; size <= kLongest; ++size) {
    const auto bytes = std::make_unique<char[]>(size);
    std::fill_n(bytes.get(), size, 'A');
    ChangeBytes(bytes.get(), size, LowerBlock);
    ASSERT_EQ(std::string_view(bytes.get(), size), std::string(size, 'a'));
  }
}

}  // namespace
