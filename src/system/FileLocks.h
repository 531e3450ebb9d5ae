// Record locks: with them, processes take turns at a file or a part of it.
//
// The system associates these locks with a process, not with a descriptor: a process never
// waits for itself, a child does not inherit them, and when a process closes any descriptor of
// a file, it loses all its locks on that file. An exclusive lock needs a descriptor open for
// writing, a shared lock one open for reading.
//
// `start` is the offset of the first byte in the file; a `length` of 0 extends to the end of
// the file, however it grows. A failure leaves errno as the system set it: EAGAIN or EACCES
// when another process has the lock, EINTR when a signal ended the wait. These functions take
// no memory and do not throw.
//
//   const int fd = LockFile("queue.lock", kLockWait);
//   if (fd >= 0) {
//     ...
//     CloseFile(fd);   // releases the lock as well
//   }

#ifndef MAILHEARTH_SYSTEM_FILELOCKS_H
#define MAILHEARTH_SYSTEM_FILELOCKS_H

#include "../strings/Export.h"
#include "../strings/SString.h"

inline namespace mailhearth {

// The bits of `flags`. Without kLockWait, the call fails at once if another process has the
// lock; without kLockShared, the lock is exclusive.
inline constexpr int kLockWait = 1;
inline constexpr int kLockShared = 2;

// Locks a range of an open file.
// Returns `fd`, or -1. The descriptor stays the caller's in either case.
[[nodiscard]] MAILHEARTH_EXPORT int LockFile(int fd, int flags = 0, int start = 0, int length = 0);
[[nodiscard]] MAILHEARTH_EXPORT int LockFile_fcntl(int fd, int flags = 0, int start = 0,
                                                   int length = 0);

// Opens a file for reading and writing and locks a range of it. If there is no file, makes an
// empty one that only its owner may use.
// Returns the descriptor, or -1. The caller closes it, which also ends the lock.
[[nodiscard]] MAILHEARTH_EXPORT int LockFile(const SString& path, int flags = 0, int start = 0,
                                             int length = 0);

// Unlock a range. Return 1, or 0; the range need not be locked.
MAILHEARTH_EXPORT int UnlockFile(int fd, int start = 0, int length = 0);
MAILHEARTH_EXPORT int UnlockFile_fcntl(int fd, int start = 0, int length = 0);

// Waits for a lock on a whole open file: an exclusive one, or a shared one when `exclusive` is
// 0. For callers in C.
// Returns 1, or 0.
extern "C" [[nodiscard]] MAILHEARTH_EXPORT int db_lock_fd(int fd, int exclusive);

}  // namespace mailhearth

#endif  // MAILHEARTH_SYSTEM_FILELOCKS_H
