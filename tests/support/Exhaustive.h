// Whether a run compares all there is, which takes long, or a part of it.

#ifndef MAILHEARTH_TESTS_SUPPORT_EXHAUSTIVE_H
#define MAILHEARTH_TESTS_SUPPORT_EXHAUSTIVE_H

#include <cstdlib>
#include <string_view>

inline bool WholeIsAsked() {
  const char* const value = std::getenv("MAILHEARTH_EXHAUSTIVE");
  return value != nullptr && std::string_view(value) == "all";
}

#endif  // MAILHEARTH_TESTS_SUPPORT_EXHAUSTIVE_H
