// What a fuzz target takes for granted.

#ifndef MAILHEARTH_FUZZ_REQUIRE_H
#define MAILHEARTH_FUZZ_REQUIRE_H

#include <cstdlib>

// A fuzzer and a replay of the seeds both report a program that aborts.
inline void Require(bool holds) {
  if (!holds) std::abort();
}

#endif  // MAILHEARTH_FUZZ_REQUIRE_H
