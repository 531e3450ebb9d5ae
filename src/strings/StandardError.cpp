#include "StandardError.h"

#include <ios>
#include <ostream>

#ifdef __GLIBCXX__
// std::cerr by its linker name: <iostream> is the only header that declares it, and
// cannot be had without its static object.
extern std::ostream cerrOfTheStandardLibrary __asm__("_ZSt4cerr");
#else
#include <iostream>
static std::ostream& cerrOfTheStandardLibrary = std::cerr;
#endif

inline namespace mailhearth {

std::ostream& StandardError() {
  static const std::ios_base::Init streams;  // constructs the streams if nobody has
  return cerrOfTheStandardLibrary;
}

}  // namespace mailhearth
