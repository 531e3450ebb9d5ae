// What a fuzz target does when a promise is broken.

#ifndef MAILHEARTH_FUZZ_ADDRESS_REQUIRE_H
#define MAILHEARTH_FUZZ_ADDRESS_REQUIRE_H

#include <cstdio>
#include <cstdlib>

#include "support/AddressComparison.h"

inline void Require(bool holds) {
  if (!holds) std::abort();
}

inline void RequireAgreement(const mailhearth::AddressComparison& pair) {
  if (pair.difference.empty()) return;
  std::fprintf(stderr, "%s\n", pair.difference.c_str());
  std::abort();
}

#endif  // MAILHEARTH_FUZZ_ADDRESS_REQUIRE_H
