#include "Paths.h"

#include <stdlib.h>  // realpath: POSIX, not in <cstdlib>

#include <array>
#include <climits>
#include <utility>

#include "PathText.h"

inline namespace mailhearth {

SString RealPath(const SString& path) {
  const SString itself = Lasting(path);
  return UnlessOutOfMemory(itself, [&] {
    // All of the path: slashes and dots may make one longer than the system takes.
    std::array<char, PATH_MAX> real;
    const bool found = ::realpath(Terminated(itself).Data(), real.data()) != nullptr;
    return found ? SString(real.data()) : itself;
  });
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
