// Upper and lower case of bytes as in the C locale, whatever the locale is: only the
// letters A to Z have a case. And bytes eight at a time, as a number.

#ifndef MAILHEARTH_STRINGS_BYTES_H
#define MAILHEARTH_STRINGS_BYTES_H

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

inline namespace mailhearth {

// Without a branch and without a table, so that loops over them become vectors.
constexpr char LowerByte(char c) {
  const bool upper = c >= 'A' && c <= 'Z';
  return static_cast<char>(c | (upper ? 0x20 : 0));
}

constexpr char UpperByte(char c) {
  const bool lower = c >= 'a' && c <= 'z';
  return static_cast<char>(c & (lower ? ~0x20 : ~0));
}

static_assert(LowerByte('A') == 'a' && LowerByte('Z') == 'z' && UpperByte('z') == 'Z');
static_assert(LowerByte('@') == '@' && LowerByte('[') == '[' && LowerByte('\xC4') == '\xC4');
static_assert(UpperByte('`') == '`' && UpperByte('{') == '{' && UpperByte('\xE4') == '\xE4');

inline constexpr std::size_t kWord = sizeof(std::uint64_t);

constexpr std::uint64_t InEachByte(std::uint64_t byte) { return byte * 0x0101010101010101; }

// The letters A to Z among the bytes of a word in lower case. Sums of 7-bit bytes carry
// into the eighth bit only, which so tells where a byte is at or above a bound.
constexpr std::uint64_t LowerWord(std::uint64_t word) {
  constexpr std::uint64_t kHigh = InEachByte(0x80);
  const std::uint64_t low = word & ~kHigh;
  const std::uint64_t fromA = low + InEachByte(0x80 - 'A');
  const std::uint64_t pastZ = low + InEachByte(0x80 - 'Z' - 1);
  return word | ((fromA & ~pastZ & ~word & kHigh) >> 2);
}

static_assert(LowerWord(0x40415A5B61C1DA00) == 0x40617A5B61C1DA00);

// Returns the kWord bytes from `bytes` on, the first as the lowest.
inline std::uint64_t WordAt(const char* bytes) {
  std::uint64_t word;
  std::memcpy(&word, bytes, kWord);
  return std::endian::native == std::endian::little ? word : __builtin_bswap64(word);
}

// Needs: equal sizes.
inline bool EqualNoCase(std::string_view a, std::string_view b) {
  const auto equalAt = [&](std::size_t i) {
    return LowerWord(WordAt(a.data() + i)) == LowerWord(WordAt(b.data() + i));
  };
  if (a.size() < kWord) {
    return std::equal(a.begin(), a.end(), b.begin(),
                      [](char x, char y) { return LowerByte(x) == LowerByte(y); });
  }
  for (std::size_t i = 0; i + kWord < a.size(); i += kWord) {
    if (!equalAt(i)) return false;
  }
  return equalAt(a.size() - kWord);  // the last word, part of it once more
}

}  // namespace mailhearth

#endif  // MAILHEARTH_STRINGS_BYTES_H
