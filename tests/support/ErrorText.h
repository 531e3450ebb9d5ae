// What is written to the standard error stream, and addresses as streams print them.

#ifndef MAILHEARTH_TESTS_SUPPORT_ERRORTEXT_H
#define MAILHEARTH_TESTS_SUPPORT_ERRORTEXT_H

#include <iostream>
#include <sstream>
#include <string>

// Returns what `write` puts to the standard error stream.
template <class Write>
std::string ErrorText(Write write) {
  std::ostringstream out;
  std::streambuf* const before = std::cerr.rdbuf(out.rdbuf());
  write();
  std::cerr.rdbuf(before);
  return out.str();
}

inline std::string Address(const void* address) {
  std::ostringstream out;
  out << address;
  return out.str();
}

#endif  // MAILHEARTH_TESTS_SUPPORT_ERRORTEXT_H
