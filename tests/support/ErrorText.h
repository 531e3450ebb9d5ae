// What is written to the error and log streams, and addresses as streams print them.

#ifndef MAILHEARTH_TESTS_SUPPORT_ERRORTEXT_H
#define MAILHEARTH_TESTS_SUPPORT_ERRORTEXT_H

#include <iostream>
#include <locale>
#include <sstream>
#include <string>

// Returns what `write` puts to a stream.
template <class Write>
std::string TextOn(std::ostream& stream, Write write) {
  std::ostringstream out;
  std::streambuf* const before = stream.rdbuf(out.rdbuf());
  write();
  stream.rdbuf(before);
  return out.str();
}

// The same for the standard error stream and for the log.
template <class Write>
std::string ErrorText(Write write) {
  return TextOn(std::cerr, write);
}
template <class Write>
std::string LogText(Write write) {
  return TextOn(std::clog, write);
}

inline std::string Address(const void* address) {
  std::ostringstream out;
  out.imbue(std::locale::classic());
  out << address;
  return out.str();
}

#endif  // MAILHEARTH_TESTS_SUPPORT_ERRORTEXT_H
