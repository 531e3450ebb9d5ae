#include "strings/Search.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <iterator>
#include <random>
#include <string>
#include <string_view>

#include "support/ExactInput.h"
#include "support/Growth.h"

namespace {

// The obvious way.
struct Found {
  int first = -1;
  int last = -1;
  int count = 0;
  bool operator==(const Found&) const = default;
};

Found SlowSearch(std::string_view text, std::string_view needle) {
  Found found;
  for (std::size_t i = 0; i + needle.size() <= text.size(); ++i) {
    if (text.substr(i, needle.size()) != needle) continue;
    found.last = static_cast<int>(i);
    if (found.count++ == 0) found.first = found.last;
  }
  return found;
}

// The searches on bytes that nothing follows, `before` bytes after an aligned address.
Found Search(std::string_view text, std::string_view needle, std::size_t before = 0) {
  const ExactInput exact(std::string(before, '?') + std::string(text)), sought(needle);
  const std::string_view in = exact.View().substr(before);
  return {FindFirst(in, sought.View()), FindLast(in, sought.View()), CountAll(in, sought.View())};
}

std::string RandomText(std::mt19937& random, std::size_t size, unsigned letters) {
  std::string text;
  while (text.size() < size) text += static_cast<char>('a' + random() % letters);
  return text;
}

constexpr std::size_t kLongest = 200;  // past what is looked at together

TEST(Search, AgreesWithTheObviousWayOnRandomTextsOfEverySize) {
  std::mt19937 random(8);
  for (std::size_t size = 0; size <= kLongest; ++size) {
    for (std::size_t round = 0; round < 96; ++round) {
      constexpr unsigned kLetters[] = {1, 2, 3, 20, 256};
      const unsigned letters = kLetters[random() % std::size(kLetters)];
      const std::string text = RandomText(random, size, letters);
      std::string needle = text.substr(random() % (size + 1), 1 + random() % 40);
      if (round % 2 == 0) needle += RandomText(random, 1 + random() % 3, letters);
      if (needle.empty()) needle = "a";
      ASSERT_EQ(Search(text, needle, round % 16), SlowSearch(text, needle))
          << testing::PrintToString(text) << " " << testing::PrintToString(needle);
    }
  }
}

// The needle is nowhere but at one place, and everything else is nearly it.
TEST(Search, FindsTheNeedleAtEachPlace) {
  const std::string needles[] = {"n", "nm", "mnn", "nnmm", "the end", "=_boundary-0123456789_="};
  for (const std::string& needle : needles) {
    for (std::size_t size = needle.size(); size <= kLongest; ++size) {
      for (std::size_t at = 0; at + needle.size() <= size; at += 1 + size / 50) {
        std::string text(size, '.');
        text.replace(at, needle.size(), needle);
        const int place = static_cast<int>(at);
        ASSERT_EQ(Search(text, needle), (Found{place, place, 1})) << size << " " << needle;
        text[at + needle.size() / 2] = '.';
        ASSERT_EQ(Search(text, needle), Found()) << size << " " << needle << " at " << at;
      }
    }
  }
}

TEST(Search, TakesEveryByteAsItIs) {
  for (int c = 0; c < 256; ++c) {
    const char byte = static_cast<char>(c), other = static_cast<char>(c ^ 0x80);
    const std::string text = std::string(100, other) + byte + std::string(70, other);
    EXPECT_EQ(Search(text, std::string(1, byte)), (Found{100, 100, 1})) << c;
    EXPECT_EQ(Search(text, std::string{byte, other}), (Found{100, 100, 1})) << c;
    EXPECT_EQ(Search(text, std::string{other, byte, other}), (Found{99, 99, 1})) << c;
    EXPECT_EQ(Search(text, std::string{byte, byte}), Found()) << c;
  }
}

TEST(Search, CountsNothingTwice) {
  for (int size = 1; size < 300; ++size) {
    const std::string text(static_cast<std::size_t>(size), 'a');
    ASSERT_EQ(Search(text, "aa").count, size - 1);
    ASSERT_EQ(Search(text, "a").count, size);
  }
}

// Long texts of which the needle's bytes are everywhere, and long needles.
std::string Repeated(std::string_view piece, std::size_t size) {
  std::string text;
  while (text.size() < size) text += piece;
  text.resize(size);
  return text;
}

TEST(Search, AgreesWithTheObviousWayOnHostileTexts) {
  for (const std::string_view piece : {"a", "ab", "abc", "aab", "aabaab "}) {
    const std::string run = Repeated(piece, 9'000), part = Repeated(piece, 400);
    const std::string texts[] = {run, run + "x" + run, "x" + run, run + "x"};
    const std::string needles[] = {part, part + "x", "x" + part, part + "x" + part,
                                   part + "y" + part};
    for (const std::string& text : texts) {
      for (const std::string& needle : needles) {
        EXPECT_EQ(Search(text, needle), SlowSearch(text, needle)) << piece;
      }
    }
  }
}

// With half of the text as the needle.
TEST(Search, TakesLinearTime) {
  for (const std::string_view piece : {"a", "ab", "aab"}) {
    SCOPED_TRACE(piece);
    EXPECT_TRUE(GrowsLinearly(50'000, [&](int n) {
      const auto size = static_cast<std::size_t>(n);
      const std::string text = Repeated(piece, 2 * size), half = Repeated(piece, size);
      EXPECT_EQ(FindFirst(text, half + "x"), -1);
      EXPECT_EQ(FindFirst(text, "x" + half), -1);
      EXPECT_EQ(FindLast(text, half + "x"), -1);
      EXPECT_EQ(FindLast(text, "x" + half), -1);
      EXPECT_EQ(CountAll(text, half + "x"), 0);
      EXPECT_GT(CountAll(text, half), 1);
    }));
  }
}

}  // namespace
