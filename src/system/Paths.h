// Paths: their parts, and the canonical path of a file.
//
//   PathFromFilename("a/b/c")   // a/b
//   FileFromFilename("a/b/c")   // c

#ifndef MAILHEARTH_SYSTEM_PATHS_H
#define MAILHEARTH_SYSTEM_PATHS_H

#include "../strings/Export.h"
#include "../strings/SString.h"

inline namespace mailhearth {

// Returns the absolute path of the file at `path`, without links, "." or ".." and double
// slashes. Returns `path` itself when there is no file or it cannot be reached, with errno
// from the system, and when memory runs out (ENOMEM). If `path` is a view, returns a copy of
// it instead; without memory for the copy, throws std::bad_alloc.
[[nodiscard]] MAILHEARTH_EXPORT SString RealPath(const SString& path);

// Returns the part of `name` before its last slash; "." when that part is empty or there is no
// slash. Known and kept: the directory of /c is "." too.
[[nodiscard]] MAILHEARTH_EXPORT SString PathFromFilename(SString name);

// Returns the part of `name` after its last slash, which is empty when the name ends in a
// slash; the whole name when there is no slash.
[[nodiscard]] MAILHEARTH_EXPORT SString FileFromFilename(SString name);

}  // namespace mailhearth

#endif  // MAILHEARTH_SYSTEM_PATHS_H
