// A directory of the test's own, gone with everything in it when the object goes.

#ifndef MAILHEARTH_TESTS_SUPPORT_TEMPDIR_H
#define MAILHEARTH_TESTS_SUPPORT_TEMPDIR_H

#include <string>
#include <string_view>

class TempDir {
 public:
  TempDir();
  ~TempDir();
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  [[nodiscard]] const std::string& Path() const { return path_; }
  [[nodiscard]] std::string operator/(std::string_view name) const;

  // Makes a file with this text, or a sparse one of so many bytes. Returns its path.
  std::string File(std::string_view name, std::string_view text) const;
  std::string SparseFile(std::string_view name, long bytes) const;

 private:
  std::string path_;
};

// Returns the number of descriptors this process has open.
int OpenDescriptors();

#endif  // MAILHEARTH_TESTS_SUPPORT_TEMPDIR_H
