// Questions about a path: what is there, may it be used, how large and how old is
// it, how much room has its file system. Links are followed. Nothing is kept
// between calls, so an answer can be stale by the time it is read.
//
// Every failure is a result, and no memory is needed; errno is then as the failing system call left
// it, and as it was before where no call failed: a directory has no size, and that is no error of
// the system. An undefined path is the empty one, which names nothing (ENOENT). The system reads a
// path up to its first NUL. Each question costs one system call.
//
//   if (FileSize(path) == 0 && FileAge(path) > 7) ...   // empty for a week

#ifndef MAILHEARTH_SYSTEM_FILESTATUS_H
#define MAILHEARTH_SYSTEM_FILESTATUS_H

#include "../strings/Export.h"
#include "../strings/SString.h"

inline namespace mailhearth {

// Each returns 1 if it is so, else 0. The rights are those of the real user, not of
// the effective one.
[[nodiscard]] MAILHEARTH_EXPORT int FileExists(const SString& path);
[[nodiscard]] MAILHEARTH_EXPORT int IsReadable(const SString& path);
[[nodiscard]] MAILHEARTH_EXPORT int IsWriteable(const SString& path);
[[nodiscard]] MAILHEARTH_EXPORT int IsExecutable(const SString& path);
[[nodiscard]] MAILHEARTH_EXPORT int IsRegular(const SString& path);
[[nodiscard]] MAILHEARTH_EXPORT int IsDirectory(const SString& path);

// Returns the size of a regular file in bytes; -1 for anything else, and with errno
// EOVERFLOW for a file of more than 2^31 - 1 bytes.
[[nodiscard]] MAILHEARTH_EXPORT int FileSize(const SString& path);

// Returns the days, with their fraction, since the last modification: whole seconds
// divided by 86400, negative for a time to come. Returns -1.0 on failure; a file of this
// time tomorrow has that age as well, and errno, set to 0 before, tells the two apart.
[[nodiscard]] MAILHEARTH_EXPORT double FileAge(const SString& path);

// Returns the bytes that an unprivileged user may still fill on the file system that
// holds `path`; -1.0 on failure.
[[nodiscard]] MAILHEARTH_EXPORT double FreeDiskSpace(const SString& path);

}  // namespace mailhearth

#endif  // MAILHEARTH_SYSTEM_FILESTATUS_H
