#include "StandardError.h"

#include <charconv>
#include <cstdint>
#include <ios>
#include <ostream>

#ifdef __GLIBCXX__
// The streams by their linker names: <iostream> is the only header that declares them, and
// cannot be had without its static object.
extern std::ostream cerrOfTheStandardLibrary __asm__("_ZSt4cerr");
extern std::ostream clogOfTheStandardLibrary __asm__("_ZSt4clog");
#else
#include <iostream>
static std::ostream& cerrOfTheStandardLibrary = std::cerr;
static std::ostream& clogOfTheStandardLibrary = std::clog;
#endif

inline namespace mailhearth {

std::ostream& StandardError() {
  static const std::ios_base::Init streams;  // constructs the streams if nobody has
  return cerrOfTheStandardLibrary;
}

std::ostream& StandardLog() {
  static const std::ios_base::Init streams;
  return clogOfTheStandardLibrary;
}

std::string AddressText(const void* address) {
  if (address == nullptr) return "0";
  char text[2 + 2 * sizeof address] = {'0', 'x'};
  const auto bits = reinterpret_cast<std::uintptr_t>(address);
  return {text, std::to_chars(text + 2, text + sizeof text, bits, 16).ptr};
}

}  // namespace mailhearth
