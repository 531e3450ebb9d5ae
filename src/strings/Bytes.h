// Upper and lower case of bytes as in the C locale, whatever the locale is: only the
// letters A to Z have a case. And bytes eight at a time, as a number.

#ifndef MAILHEARTH_STRINGS_BYTES_H
#define MAILHEARTH_STRINGS_BYTES_H

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

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

// Returns the number whose lowest byte is the first in memory of `word`.
constexpr std::uint64_t FirstLowest(std::uint64_t word) {
  return std::endian::native == std::endian::little ? word : __builtin_bswap64(word);
}

// Returns the kWord bytes from `bytes` on, the first as the lowest.
inline std::uint64_t WordAt(const char* bytes) {
  std::uint64_t word;
  std::memcpy(&word, bytes, kWord);
  return FirstLowest(word);
}

}  // namespace mailhearth

#endif  // MAILHEARTH_STRINGS_BYTES_H
