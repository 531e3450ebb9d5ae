#include "FileStatus.h"

#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <cerrno>
#include <ctime>
#include <limits>

#include "PathText.h"

inline namespace mailhearth {

static_assert(sizeof(off_t) == 8, "on a 32-bit system, build with -D_FILE_OFFSET_BITS=64");

namespace {

bool Stat(const SString& path, struct stat& status) {
  return ::stat(PathText(path).Data(), &status) == 0;
}

int HasAccess(const SString& path, int rights) {
  return ::access(PathText(path).Data(), rights) == 0;
}

int IsOfType(const SString& path, mode_t type) {
  struct stat status;
  return Stat(path, status) && (status.st_mode & S_IFMT) == type;
}

constexpr double kSecondsPerDay = 86400.0;

}  // namespace

int FileExists(const SString& path) { return HasAccess(path, F_OK); }
int IsReadable(const SString& path) { return HasAccess(path, R_OK); }
int IsWriteable(const SString& path) { return HasAccess(path, W_OK); }
int IsExecutable(const SString& path) { return HasAccess(path, X_OK); }

int IsRegular(const SString& path) { return IsOfType(path, S_IFREG); }
int IsDirectory(const SString& path) { return IsOfType(path, S_IFDIR); }

int FileSize(const SString& path) {
  struct stat status;
  if (!Stat(path, status) || !S_ISREG(status.st_mode)) return -1;
  if (status.st_size > std::numeric_limits<int>::max()) {
    errno = EOVERFLOW;
    return -1;
  }
  return static_cast<int>(status.st_size);
}

double FileAge(const SString& path) {
  struct stat status;
  if (!Stat(path, status)) return -1.0;
  // As doubles: a file may carry any time at all, and their difference must not wrap.
  const auto now = static_cast<double>(std::time(nullptr));
  return (now - static_cast<double>(status.st_mtime)) / kSecondsPerDay;
}

double FreeDiskSpace(const SString& path) {
  struct statvfs system;
  if (::statvfs(PathText(path).Data(), &system) != 0) return -1.0;
  return static_cast<double>(system.f_frsize) * static_cast<double>(system.f_bavail);
}

}  // namespace mailhearth
