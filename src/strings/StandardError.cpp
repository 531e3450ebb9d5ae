#include "StandardError.h"

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

}  // namespace mailhearth
