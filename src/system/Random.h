// Random integers, from a generator of the library's own that is seeded once before
// main from the clock and the process id. Good for spreading and sorting, not for
// secrets: who knows a few numbers knows the rest.

#ifndef MAILHEARTH_SYSTEM_RANDOM_H
#define MAILHEARTH_SYSTEM_RANDOM_H

#include "../strings/Export.h"

inline namespace mailhearth {

// Returns an integer from 0 to `n` - 1; for n = 0, 0; for n below 0, one from n + 1 to
// 0. The generator yields 15 bits, so past 32768 not every integer is reached.
[[nodiscard]] MAILHEARTH_EXPORT int RandomInt(int n);

// Seeds the generator; the program has one, made before main.
struct MAILHEARTH_EXPORT SrandomInit {
  SrandomInit();
};

}  // namespace mailhearth

#endif  // MAILHEARTH_SYSTEM_RANDOM_H
