#include "FileOperations.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>
#include <ostream>

#include "../strings/StandardError.h"
#include "Dates.h"
#include "Descriptor.h"
#include "Environment.h"
#include "EnvironmentVariables.h"
#include "FileStatus.h"
#include "Mapping.h"
#include "PathText.h"

inline namespace mailhearth {

namespace {

constexpr off_t kLongest = std::numeric_limits<int>::max() - 1;  // of a string

// Removes a file that was begun and is of no use; errno stays.
int Discard(const SString& path) {
  const ErrnoKeeper keep;
  static_cast<void>(RemoveFile(path));  // best effort
  return 0;
}

// Logs that a file could not be removed, for the reason in errno, where it is a regular one.
// Returns 0.
int LogNotRemoved(const SString& path) {
  const SString reason = GetErrorString();  // before another call sets it
  if (!IsRegular(path)) return 0;
  // In one piece: the stream has no buffer, and other processes write to the same log.
  const SString line = LogFileDate() + ':' + GetEnv(kModuleNameVariable) +
                       ":ERROR:Couldn't remove file " + path + ':' + reason + '\n';
  StandardLog() << line << std::flush;
  return 0;
}

// Copies until a read gives nothing, or has given more than `size` bytes, as an endless device
// would for ever. Returns the number of bytes read, whatever became of them.
std::int64_t CopyBytes(const Descriptor& from, const Descriptor& to, std::int64_t size) {
  std::array<char, 20480> block;
  std::int64_t count = 0;
  while (count <= size) {
    const ssize_t got = ::read(from.Get(), block.data(), sizeof block);
    if (got <= 0) break;
    count += got;
    const ErrnoKeeper keep;
    const ssize_t written = ::write(to.Get(), block.data(), static_cast<std::size_t>(got));
    static_cast<void>(written);  // not looked at: known and kept
  }
  return count;
}

// Reads the first `size` bytes of a file. Undefined, with EIO, when it has fewer by now.
//
// Reads them in place instead of copying them from a mapping: a file that becomes shorter
// would be the end of a process that touches the pages it has lost.
SString FirstBytes(const Descriptor& file, int size) {
  SStringRep* const rep = SStringRep::New(size);
  rep->links = 0;  // the string counts itself
  SString result(rep);
  while (rep->length < size) {
    const ssize_t got =
        ::read(file.Get(), rep->buffer + rep->length, static_cast<std::size_t>(size - rep->length));
    if (got > 0) {
      rep->length += static_cast<int>(got);
    } else if (got == 0 || errno != EINTR) {
      if (got == 0) errno = EIO;
      return UndefinedWithoutMemory(result);
    }
  }
  rep->buffer[size] = '\0';
  return result;
}

// Sets the length of a new file and has the disk reserve its blocks, so that no write to the
// mapping can fail.
bool Reserve(const Descriptor& file, off_t size) {
  if (::ftruncate(file.Get(), size) != 0) return false;
  if (size == 0) return true;
  int error = 0;
  do {
    error = ::posix_fallocate(file.Get(), 0, size);
  } while (error == EINTR);
  if (error == 0 || error == EOPNOTSUPP || error == EINVAL) return true;
  errno = error;
  return false;
}

// Writes the bytes of a new file through to the disk.
bool Fill(const Descriptor& file, const SString& data) {
  if (!Reserve(file, data.Length())) return false;
  if (data.Length() == 0) return true;
  const auto size = static_cast<std::size_t>(data.Length());
  Mapping bytes(file, size);
  if (bytes.Data() == nullptr) return false;
  std::memcpy(bytes.Data(), data.Data(), size);
  return ::msync(bytes.Data(), size, MS_SYNC) == 0 && bytes.Unmap();
}

}  // namespace

int RemoveFile(const SString& path) {
  if (IsDirectory(path)) {
    errno = EISDIR;
    return 0;
  }
  return ::unlink(PathText(path).Data()) == 0;
}

int RemoveFileLogged(const SString& path) {
  if (RemoveFile(path)) return 1;
  const ErrnoKeeper keep;
  return UnlessOutOfMemory(0, [&] { return LogNotRemoved(path); });
}

int CloseFile(int fd) { return ::close(fd) == 0; }

int Rename(const SString& from, const SString& to) {
  return std::rename(PathText(from).Data(), PathText(to).Data()) == 0;
}

int LinkFile(const SString& from, const SString& to) {
  if (IsDirectory(from)) {
    errno = EPERM;
    return 0;
  }
  return ::link(PathText(from).Data(), PathText(to).Data()) == 0;
}

int CopyFile(const SString& from, const SString& to, unsigned int /*mode*/) {
  constexpr mode_t kPermissions = 01777;
  struct stat status;
  const PathText source(from), target(to);
  if (::stat(source.Data(), &status) != 0) return 0;
  Descriptor in(::open(source.Data(), O_RDONLY | O_CLOEXEC));
  if (!in.IsOpen()) return 0;
  Descriptor out(::open(target.Data(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600));
  if (!out.IsOpen()) return 0;
  const int before = errno;
  errno = EIO;  // unless a read fails with a reason of its own
  const std::int64_t count = CopyBytes(in, out, status.st_size);
  if (count == status.st_size) {
    // Through the descriptor: the name may be somebody else's by now. Best effort.
    static_cast<void>(::fchmod(out.Get(), status.st_mode & kPermissions));
    const int owned = ::fchown(out.Get(), status.st_uid, status.st_gid);
    static_cast<void>(owned);
    errno = before;
    return 1;
  }
  in.Close();
  out.Close();
  return Discard(to);
}

SString MapFileRead(const SString& path) {
  // A pipe without a writer is not waited for, and a terminal does not become ours.
  constexpr int kFlags = O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
  SString undefined = UndefinedWithoutMemory(path);
  if (path.Length() == 0) {
    errno = ENOENT;
    return undefined;
  }
  const Descriptor file(::open(PathText(path).Data(), kFlags));
  if (!file.IsOpen()) return undefined;
  struct stat status;
  if (::fstat(file.Get(), &status) != 0) return undefined;
  if (!S_ISREG(status.st_mode)) {
    errno = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
    return undefined;
  }
  if (status.st_size > kLongest) {
    errno = EFBIG;
    return undefined;
  }
  const auto size = static_cast<int>(std::max<off_t>(status.st_size, 0));
  return UnlessOutOfMemory(undefined, [&] { return FirstBytes(file, size); });
}

int MapFileWrite(const SString& path, const SString& data) {
  constexpr mode_t kUserAndGroup = 0660;
  if (path.Length() == 0) {
    errno = ENOENT;
    return 0;
  }
  Descriptor file(
      ::open(PathText(path).Data(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, kUserAndGroup));
  if (!file.IsOpen()) return 0;
  if (Fill(file, data)) return 1;
  file.Close();
  return Discard(path);
}

}  // namespace mailhearth
