// Whether the library and the slow readers agree; what they differ in is printed.

#ifndef MAILHEARTH_FUZZ_ADDRESS_REQUIREAGREEMENT_H
#define MAILHEARTH_FUZZ_ADDRESS_REQUIREAGREEMENT_H

#include <cstdio>

#include "Require.h"
#include "support/AddressComparison.h"

inline void RequireAgreement(const mailhearth::AddressComparison& pair) {
  if (!pair.difference.empty()) std::fprintf(stderr, "%s\n", pair.difference.c_str());
  Require(pair.difference.empty());
}

#endif  // MAILHEARTH_FUZZ_ADDRESS_REQUIREAGREEMENT_H
