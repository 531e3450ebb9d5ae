#include "Paths.h"

#include <stdlib.h>  // realpath: POSIX, not in <cstdlib>

#include <array>
#include <climits>
#include <utility>

inline namespace mailhearth {

SString RealPath(const SString& path) {
  std::array<char, PATH_MAX> real;
  if (::realpath(Terminated(path).Data(), real.data()) == nullptr) return Lasting(path);
  return SString(real.data());
}

SString PathFromFilename(SString name) {
  const int slash = name.RIndex('/');
  if (slash <= 0) return SString(".");
  return std::as_const(name).Segment(0, slash);
}

SString FileFromFilename(SString name) {
  const int slash = name.RIndex('/');
  if (slash < 0) return Lasting(name);
  return std::as_const(name).Segment(slash + 1, name.Length());
}

}  // namespace mailhearth
