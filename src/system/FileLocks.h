// Record locks, by which processes take turns at a file or a part of it.
//
// The system keeps these locks for a process, not for a descriptor: one process never waits
// for itself, a child does not inherit them, and all that a process holds on a file are gone
// when it closes any descriptor of that file. An exclusive lock needs a descriptor open for
// writing, a shared one a descriptor open for reading.
//
// `start` is the first byte, from the beginning of the file; a `length` of 0 goes to the end
// of the file however it grows. A failure leaves errno as the system set it: EAGAIN or EACCES
// when somebody else has the lock, EINTR when a signal ended the wait. Nothing here
// takes memory or throws.
//
//   const int fd = LockFile("queue.lock", kLockWait);
//   if (fd >= 0) {
//     ...
//     CloseFile(fd);   // gives the lock back as well
//   }

#ifndef MAILHEARTH_SYSTEM_FILELOCKS_H
#define MAILHEARTH_SYSTEM_FILELOCKS_H

#include "../strings/Export.h"
#include "../strings/SString.h"

inline namespace mailhearth {

// What `flags` may hold. Without the first, a lock that somebody else has is a failure at
// once; without the second, the lock is exclusive.
inline constexpr int kLockWait = 1;
inline constexpr int kLockShared = 2;

// Locks a range of an open file.
// Returns `fd`, or -1. The descriptor stays the caller's in either case.
MAILHEARTH_EXPORT int LockFile(int fd, int flags = 0, int start = 0, int length = 0);
MAILHEARTH_EXPORT int LockFile_fcntl(int fd, int flags = 0, int start = 0, int length = 0);

// Opens a file for reading and writing, making an empty one for its owner alone if there is
// none, and locks a range of it.
// Returns the descriptor, or -1. The caller closes it, which also ends the lock.
[[nodiscard]] MAILHEARTH_EXPORT int LockFile(const SString& path, int flags = 0, int start = 0,
                                             int length = 0);

// Give a range back. Return 1, or 0; there need not have been a lock.
MAILHEARTH_EXPORT int UnlockFile(int fd, int start = 0, int length = 0);
MAILHEARTH_EXPORT int UnlockFile_fcntl(int fd, int start = 0, int length = 0);

// Waits for a lock on all of an open file: an exclusive one, or a shared one when `exclusive`
// is 0. For callers in C.
// Returns 1, or 0.
extern "C" MAILHEARTH_EXPORT int db_lock_fd(int fd, int exclusive);

}  // namespace mailhearth

#endif  // MAILHEARTH_SYSTEM_FILELOCKS_H
