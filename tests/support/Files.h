// Files as tests see them.

#ifndef MAILHEARTH_TESTS_SUPPORT_FILES_H
#define MAILHEARTH_TESTS_SUPPORT_FILES_H

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "support/TempDir.h"

inline std::string ReadText(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

// Returns the paths of all that is below a directory but directories, from there on, sorted.
inline std::vector<std::string> FilesBelow(const std::string& dir) {
  std::vector<std::string> found;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(dir)) {
    if (!entry.is_directory()) {
      found.push_back(entry.path().lexically_relative(dir).string());
    }
  }
  std::sort(found.begin(), found.end());
  return found;
}

// Checks that no descriptor is left open.
class NoDescriptorLeft {
 public:
  NoDescriptorLeft() = default;
  ~NoDescriptorLeft() { EXPECT_EQ(OpenDescriptors(), before_); }
  NoDescriptorLeft(const NoDescriptorLeft&) = delete;
  NoDescriptorLeft& operator=(const NoDescriptorLeft&) = delete;

 private:
  const int before_ = OpenDescriptors();
};

#endif  // MAILHEARTH_TESTS_SUPPORT_FILES_H
