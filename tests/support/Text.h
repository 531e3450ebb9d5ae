// Texts in the library's own strings, and long ones.

#ifndef MAILHEARTH_TESTS_SUPPORT_TEXT_H
#define MAILHEARTH_TESTS_SUPPORT_TEXT_H

#include <string>
#include <string_view>

#include "strings/SString.h"

inline SString Text(std::string_view s) { return SString(s); }

inline std::string Bytes(const SString& s) { return std::string(s.View()); }

// Returns a text `n` times over.
inline std::string Repeated(std::string_view text, int n) {
  std::string whole;
  whole.reserve(text.size() * static_cast<std::size_t>(n));
  for (; n > 0; --n) whole += text;
  return whole;
}

#endif  // MAILHEARTH_TESTS_SUPPORT_TEXT_H
