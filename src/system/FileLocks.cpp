#include "FileLocks.h"

#include <fcntl.h>

#include <cstdio>

#include "Descriptor.h"
#include "PathText.h"

inline namespace mailhearth {

namespace {

struct flock Range(short type, int start, int length) {
  struct flock range = {};
  range.l_type = type;
  range.l_whence = SEEK_SET;
  range.l_start = start;
  range.l_len = length;
  return range;
}

}  // namespace

int LockFile(int fd, int flags, int start, int length) {
  return LockFile_fcntl(fd, flags, start, length);
}

int LockFile_fcntl(int fd, int flags, int start, int length) {
  const bool shared = (flags & kLockShared) != 0;
  struct flock range = Range(shared ? F_RDLCK : F_WRLCK, start, length);
  const int command = (flags & kLockWait) != 0 ? F_SETLKW : F_SETLK;
  return ::fcntl(fd, command, &range) == -1 ? -1 : fd;
}

int LockFile(const SString& path, int flags, int start, int length) {
  constexpr mode_t kOwnerOnly = 0600;
  // Stays open over an exec, as the caller's descriptors do unless he says otherwise.
  Descriptor file(::open(PathText(path).Data(), O_RDWR | O_CREAT, kOwnerOnly));
  if (!file.IsOpen() || LockFile(file.Get(), flags, start, length) == -1) return -1;
  return file.Release();
}

int UnlockFile(int fd, int start, int length) { return UnlockFile_fcntl(fd, start, length); }

int UnlockFile_fcntl(int fd, int start, int length) {
  struct flock range = Range(F_UNLCK, start, length);
  return ::fcntl(fd, F_SETLK, &range) == 0;
}

int db_lock_fd(int fd, int exclusive) {
  const int flags = exclusive != 0 ? kLockWait : kLockWait | kLockShared;
  return LockFile(fd, flags, 0, 0) != -1;
}

}  // namespace mailhearth
