// Questions about a path: existence, type and rights, size, age, free space on its file
// system. Links are followed. Nothing is cached, so a result can be out of date by the time
// the caller looks at it.
//
// These functions never throw and take no memory; each makes one system call. errno tells why
// a result is negative or 0:
//
//   - If the system call failed, errno is the system's: ENOENT for a path that names nothing,
//     EACCES for a right that the user does not have, and so on.
//   - If the call succeeded, errno is as it was before. This holds even if the result is 0 or
//     -1, as IsRegular and FileSize return for a directory. Set errno to 0 before the call to
//     tell the two cases apart.
//   - A file too large for FileSize is the one exception: errno is then EOVERFLOW.
//
// An undefined path counts as the empty path, which names nothing (ENOENT). The system reads a
// path up to its first NUL.
//
//   if (FileSize(path) == 0 && FileAge(path) > 7) ...   // empty for a week

#ifndef MAILHEARTH_SYSTEM_FILESTATUS_H
#define MAILHEARTH_SYSTEM_FILESTATUS_H

#include "../strings/Export.h"
#include "../strings/SString.h"

inline namespace mailhearth {

// Each returns 1 for yes, else 0. FileExists and the rights are checked for the real user, not
// the effective one.
[[nodiscard]] MAILHEARTH_EXPORT int FileExists(const SString& path);
[[nodiscard]] MAILHEARTH_EXPORT int IsReadable(const SString& path);
[[nodiscard]] MAILHEARTH_EXPORT int IsWriteable(const SString& path);
[[nodiscard]] MAILHEARTH_EXPORT int IsExecutable(const SString& path);
[[nodiscard]] MAILHEARTH_EXPORT int IsRegular(const SString& path);
[[nodiscard]] MAILHEARTH_EXPORT int IsDirectory(const SString& path);

// Returns the size of a regular file in bytes. Returns -1 for anything else, and, with errno
// EOVERFLOW, for a file of more than 2^31 - 1 bytes.
[[nodiscard]] MAILHEARTH_EXPORT int FileSize(const SString& path);

// Returns the days since the last modification: whole seconds divided by 86400, negative for a
// time in the future. Returns -1.0 on failure. A file dated exactly one day ahead has the same
// age; set errno to 0 before the call to tell the two apart.
[[nodiscard]] MAILHEARTH_EXPORT double FileAge(const SString& path);

// Returns the bytes that are free for unprivileged users on the file system of `path`; -1.0 on
// failure.
[[nodiscard]] MAILHEARTH_EXPORT double FreeDiskSpace(const SString& path);

}  // namespace mailhearth

#endif  // MAILHEARTH_SYSTEM_FILESTATUS_H
