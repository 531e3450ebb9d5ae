#include "support/TempDir.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace fs = std::filesystem;

TempDir::TempDir() : path_((fs::temp_directory_path() / "mailhearth-XXXXXX").string()) {
  if (::mkdtemp(path_.data()) == nullptr) std::abort();
}

TempDir::~TempDir() {
  std::error_code ignored;  // nothing to be done about it here
  fs::remove_all(path_, ignored);
}

std::string TempDir::operator/(std::string_view name) const {
  return path_ + "/" + std::string(name);
}

std::string TempDir::File(std::string_view name, std::string_view text) const {
  const std::string path = *this / name;
  std::ofstream(path, std::ios::binary) << text;
  return path;
}

std::string TempDir::SparseFile(std::string_view name, long bytes) const {
  const std::string path = File(name, "");
  fs::resize_file(path, static_cast<std::uintmax_t>(bytes));
  return path;
}

int OpenDescriptors() {
  const fs::directory_iterator open("/proc/self/fd");
  return static_cast<int>(std::distance(begin(open), end(open)));
}
