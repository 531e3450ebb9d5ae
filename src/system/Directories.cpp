#include "Directories.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <memory>
#include <string_view>

#include "Descriptor.h"
#include "ErrnoKeeper.h"
#include "FileStatus.h"
#include "PathText.h"

inline namespace mailhearth {

namespace {

struct CloseDir {
  void operator()(DIR* dir) const {
    const ErrnoKeeper keep;
    static_cast<void>(::closedir(dir));  // it was only read
  }
};

using OpenDir = std::unique_ptr<DIR, CloseDir>;

// Returns the next entry; null at the end, with errno 0, or after an error.
const dirent* NextEntry(DIR* dir) {
  const dirent* entry = nullptr;
  do {
    errno = 0;
    entry = ::readdir(dir);
  } while (entry == nullptr && errno == EINTR);
  return entry;
}

bool IsDots(std::string_view name) { return name == "." || name == ".."; }

// Returns `dir` and a slash, with every run of slashes made one. Not by a substitution: a
// pattern that finds no memory to compile would let the runs stand.
SString Prefix(const SString& dir) {
  SString prefix;
  for (const char c : dir.View()) {
    if (c != '/' || prefix[-1] != '/') prefix += c;
  }
  if (prefix[-1] != '/') prefix += '/';
  return prefix;
}

// IsDirectory, where its errno would hide that of the call before.
bool IsNowDirectory(const SString& path) {
  const ErrnoKeeper keep;
  return IsDirectory(path) != 0;
}

// IsDirectory, where the answer no is an error.
bool NeedDirectory(const PathText& path) {
  struct stat status;
  if (::stat(path.Data(), &status) != 0) return false;
  if (S_ISDIR(status.st_mode)) return true;
  errno = ENOTDIR;
  return false;
}

// The steps of ReadDir and MakeDir, which may find no memory.

SStringList Entries(DIR* dir, const SString& name) {
  const SString prefix = Prefix(name);
  SStringList entries;
  entries.Reset();
  while (const dirent* const entry = NextEntry(dir)) {
    if (!IsDots(entry->d_name)) entries.Push(prefix + entry->d_name);
  }
  return entries;
}

int MakeEach(const SString& path, unsigned long mode) {
  SStringList pieces = path.SplitExact("/");
  if (path[-1] == '/') pieces.Pop();
  SString prefix;
  if (path[0] == '/') {
    pieces.Shift();
  } else {
    prefix = ".";
  }
  for (const SString& piece : pieces) {
    prefix += '/';
    prefix += piece;
    if (FileExists(prefix) || CreateDirectory(prefix, mode)) continue;
    if (!IsNowDirectory(prefix)) return 0;  // nor has another process made it meanwhile
  }
  return NeedDirectory(PathText(path));
}

}  // namespace

SStringList ReadDir(const SString& dir) {
  SStringList undefined;  // before anything is open: there is no list without memory
  if (dir.Length() == 0) {
    errno = ENOENT;
    return undefined;
  }
  const OpenDir open(::opendir(PathText(dir).Data()));  // close-on-exec
  if (open == nullptr) return undefined;
  return UnlessOutOfMemory(undefined, [&] { return Entries(open.get(), dir); });
}

int CreateDirectory(const SString& path, unsigned long mode) {
  return ::mkdir(PathText(path).Data(), static_cast<mode_t>(mode)) == 0;
}

int MakeDir(const SString& path, unsigned long mode) {
  if (path.Length() == 0) {
    errno = ENOENT;
    return 0;
  }
  if (IsDirectory(path)) return 1;
  return UnlessOutOfMemory(0, [&] { return MakeEach(path, mode); });
}

int RemoveDir(const SString& path) {
  std::string_view name = path.View();
  if (name.ends_with('/')) name.remove_suffix(1);
  const PathText dir(name);
  return NeedDirectory(dir) && ::rmdir(dir.Data()) == 0;
}

int SyncDir(const SString& path) {
  const Descriptor dir(::open(PathText(path).Data(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  return dir.IsOpen() && ::fsync(dir.Get()) == 0;
}

int Chdir(const SString& path) {
  const PathText dir(path);
  return NeedDirectory(dir) && ::chdir(dir.Data()) == 0;
}

}  // namespace mailhearth
