// Random integers from the library's own generator, which is seeded once before main from the
// clock and the process id. They are good for spreading and sorting, not for secrets: a few
// numbers reveal the rest.

#ifndef MAILHEARTH_SYSTEM_RANDOM_H
#define MAILHEARTH_SYSTEM_RANDOM_H

#include "../strings/Export.h"

inline namespace mailhearth {

// Returns an integer from 0 to `n` - 1; 0 for `n` 0; from `n` + 1 to 0 for a negative `n`. The
// generator yields 15 bits, so with `n` beyond 32768 or -32768 some integers never occur.
[[nodiscard]] MAILHEARTH_EXPORT int RandomInt(int n);

// Seeds the generator. The library makes one before main.
struct MAILHEARTH_EXPORT SrandomInit {
  SrandomInit();
};

}  // namespace mailhearth

#endif  // MAILHEARTH_SYSTEM_RANDOM_H
