// Paths as text, and the one that the system calls the real one.
//
//   PathFromFilename("a/b/c")   // a/b
//   FileFromFilename("a/b/c")   // c

#ifndef MAILHEARTH_SYSTEM_PATHS_H
#define MAILHEARTH_SYSTEM_PATHS_H

#include "../strings/Export.h"
#include "../strings/SString.h"

inline namespace mailhearth {

// Returns the absolute path of what is at `path`, with no links, no "." or ".." and no double
// slash in it; `path` itself when there is nothing or it cannot be reached, with errno from
// the system, and when memory runs out (ENOMEM). Of a path that is a view, itself means a copy;
// without memory for that, std::bad_alloc is thrown.
[[nodiscard]] MAILHEARTH_EXPORT SString RealPath(const SString& path);

// Returns the part of `name` before its last slash; "." when that is empty or there is no
// slash. Known and kept: the directory of /c is ".", too.
[[nodiscard]] MAILHEARTH_EXPORT SString PathFromFilename(SString name);

// Returns the part of `name` behind its last slash, which is empty when the name ends in one;
// all of it when there is no slash.
[[nodiscard]] MAILHEARTH_EXPORT SString FileFromFilename(SString name);

}  // namespace mailhearth

#endif  // MAILHEARTH_SYSTEM_PATHS_H
