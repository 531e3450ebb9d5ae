// Not installed. The arithmetic of lengths. Lengths and positions are signed 32-bit values, so
// every new one is computed in 64 bits and passes CheckedLength before it is narrowed: no length
// ever wraps.

#ifndef MAILHEARTH_STRINGS_SIZES_H
#define MAILHEARTH_STRINGS_SIZES_H

#include <bit>
#include <cstdint>
#include <limits>

#include "Export.h"

inline namespace mailhearth {

static_assert(sizeof(int) == 4, "lengths are 32-bit");

// The longest string: a NUL follows it, and both together are counted in an int.
inline constexpr int kMaxLength = std::numeric_limits<int>::max() - 1;

// Memory is exhausted: calls the installed new-handler for as long as there is
// one, as `operator new` does, then throws std::bad_alloc.
[[noreturn]] MAILHEARTH_EXPORT void OutOfMemory();

// Returns `n` as a length. More than kMaxLength is a request that no memory can
// meet: OutOfMemory(). Needs: n >= 0.
inline int CheckedLength(std::int64_t n) {
  if (n > kMaxLength) [[unlikely]]
    OutOfMemory();
  return static_cast<int>(n);
}

// Returns the bytes to allocate for a string of `n` bytes: 8 at the least, else
// twice the largest power of two not above `n`, at most what an int holds. So
// there is always room for the NUL, and growth by appending doubles.
// Needs: n <= kMaxLength.
constexpr int AllocationFor(int n) {
  if (n < 8) return 8;
  const std::uint32_t below = std::bit_floor(static_cast<std::uint32_t>(n));
  constexpr std::uint32_t kLargest = std::numeric_limits<int>::max();
  return static_cast<int>(below > kLargest / 2 ? kLargest : below * 2);
}

static_assert(AllocationFor(0) == 8 && AllocationFor(7) == 8 && AllocationFor(8) == 16);
static_assert(AllocationFor(15) == 16 && AllocationFor(16) == 32 && AllocationFor(1000) == 1024);
static_assert(AllocationFor((1 << 30) - 1) == 1 << 30);
static_assert(AllocationFor(1 << 30) > 1 << 30 && AllocationFor(kMaxLength) > kMaxLength);

}  // namespace mailhearth

#endif  // MAILHEARTH_STRINGS_SIZES_H
