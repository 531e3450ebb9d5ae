// Not installed. Bytes eight at a time, as a number, to hash them without regard to the case of
// the letters A to Z, and to search them.

#ifndef MAILHEARTH_STRINGS_BYTEWORDS_H
#define MAILHEARTH_STRINGS_BYTEWORDS_H

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

inline namespace mailhearth {

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

#endif  // MAILHEARTH_STRINGS_BYTEWORDS_H
