#include "SField.h"

#include <cerrno>
#include <string_view>

#include "../system/Directories.h"
#include "../system/Environment.h"
#include "../system/EnvironmentVariables.h"
#include "../system/ErrnoKeeper.h"
#include "../system/FileOperations.h"
#include "Layout.h"

inline namespace mailhearth {

namespace {

constexpr int kNoFilename = -11;

// Returns the directory that a path is in, as the system finds it.
SString DirectoryOf(const SString& path) {
  const std::size_t slash = path.View().rfind('/');
  if (slash == std::string_view::npos) return ".";
  return SString(path.View().substr(0, slash + 1));
}

// Whether the system sees a path as a whole. Of "a", a NUL and more it sees "a", and so it
// would for the same with ".temp" behind, which is not to be written over "a", nor removed.
bool IsWhole(const SString& path) { return path.View().find('\0') == std::string_view::npos; }

int Refuse(int error) {
  errno = error;
  return 0;
}

}  // namespace

SField::SField(unsigned caseSensitive, unsigned crlf)
    : SNamedStringList(caseSensitive, crlf), messageDir_(GetEnv(kRootVariable) + kMessagesDir) {}

SField& SField::operator=(const SField& other) {
  SNamedStringList::operator=(other);  // may throw; the rest does not
  filename_ = other.filename_;
  loaded_ = other.loaded_;
  return *this;
}

SField::~SField() = default;

SString SField::GetFilename() const { return filename_; }

void SField::PutFilename(const SString& name) { filename_ = name; }

int SField::Read() {
  error_ = 0;
  if (filename_.Length() == 0) return Refuse(ENOENT);
  const SString text = MapFileRead(filename_);
  if (!text.Defined()) return 0;
  text >> *this;
  loaded_ = 1;
  return 1;
}

int SField::Read(const SString& name) {
  filename_ = name;
  return Read();
}

int SField::Write() {
  if (filename_.Length() == 0) {
    error_ = kNoFilename;
    return Refuse(ENOENT);
  }
  if (!IsWhole(filename_)) return Refuse(EINVAL);
  // All that takes memory comes before the first file.
  const SString temp = filename_ + kTempSuffix, directory = DirectoryOf(filename_);
  SString text("");
  text << *this;
  if (!MapFileWrite(temp, text) || !Rename(temp, filename_)) {
    const ErrnoKeeper keep;
    static_cast<void>(RemoveFile(temp));  // best effort
    return 0;
  }
  loaded_ = 1;
  const ErrnoKeeper keep;
  static_cast<void>(SyncDir(directory));  // best effort: not every file system can
  return 1;
}

int SField::Write(const SString& name) {
  filename_ = name;
  return Write();
}

void SField::UnlockFile() {}

}  // namespace mailhearth
