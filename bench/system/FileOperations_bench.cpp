// Reading and writing whole files beside bare system calls: reading by a mapping that is copied
// into a std::string, writing by the calls that ours makes. The clock stands while the file
// written is read back and removed. What writing takes is mostly the disk's.

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <stdlib.h>  // mkdtemp: POSIX, not in <cstdlib>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <string>
#include <system_error>

#include "system/FileOperations.h"

namespace {

// A file name in a directory of its own, which goes with it.
class TempFile {
 public:
  TempFile() {
    if (::mkdtemp(directory_.data()) == nullptr) {
      throw std::system_error(errno, std::generic_category(), directory_);
    }
  }
  ~TempFile() { std::filesystem::remove_all(directory_); }
  TempFile(const TempFile&) = delete;
  TempFile& operator=(const TempFile&) = delete;

  [[nodiscard]] std::string Path() const { return directory_ + "/file"; }

 private:
  std::string directory_ = std::filesystem::temp_directory_path() / "mailhearth_bench.XXXXXX";
};

struct Ours {
  using Text = SString;
  static Text Make(const std::string& text) { return SString(std::string_view(text)); }
  static Text Read(const Text& path) { return MapFileRead(path); }
  static bool Write(const Text& path, const Text& text) { return MapFileWrite(path, text) != 0; }
};

struct Bare {
  using Text = std::string;
  static Text Make(const std::string& text) { return text; }

  static Text Read(const Text& path) {
    std::string text;
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (file < 0) return text;
    struct stat status;
    if (::fstat(file, &status) == 0 && status.st_size > 0) {
      const auto size = static_cast<std::size_t>(status.st_size);
      void* const bytes = ::mmap(nullptr, size, PROT_READ, MAP_SHARED, file, 0);
      if (bytes != MAP_FAILED) {
        text.assign(static_cast<const char*>(bytes), size);
        ::munmap(bytes, size);
      }
    }
    ::close(file);
    return text;
  }

  static bool Write(const Text& path, const Text& text) {
    const int file = ::open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0660);
    if (file < 0) return false;
    const bool written = _Fill(file, text);
    return ::close(file) == 0 && written;
  }

 private:
  static bool _Fill(int file, const Text& text) {
    const auto size = static_cast<off_t>(text.size());
    if (::ftruncate(file, size) != 0 || ::posix_fallocate(file, 0, size) != 0) return false;
    void* const bytes = ::mmap(nullptr, text.size(), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    if (bytes == MAP_FAILED) return false;
    std::memcpy(bytes, text.data(), text.size());
    const bool synced = ::msync(bytes, text.size(), MS_SYNC) == 0;
    return ::munmap(bytes, text.size()) == 0 && synced;
  }
};

std::string Contents(benchmark::State& state) {
  return std::string(static_cast<std::size_t>(state.range(0)), 'x');
}

template <class Type>
void ReadFile(benchmark::State& state) {
  const TempFile file;
  const auto path = Type::Make(file.Path()), text = Type::Make(Contents(state));
  if (!Type::Write(path, text) || Type::Read(path) != text) state.SkipWithError("wrong answer");
  for (auto _ : state) {
    auto read = Type::Read(path);
    benchmark::DoNotOptimize(read);
  }
  state.SetBytesProcessed(state.iterations() * state.range(0));
}

template <class Type>
void WriteFile(benchmark::State& state) {
  const TempFile file;
  const std::string path = file.Path();
  const auto name = Type::Make(path), text = Type::Make(Contents(state));
  for (auto _ : state) {
    if (!Type::Write(name, text)) state.SkipWithError("not written");
    state.PauseTiming();
    if (Bare::Read(path) != Contents(state)) state.SkipWithError("wrong answer");
    ::unlink(path.c_str());
    state.ResumeTiming();
  }
  state.SetBytesProcessed(state.iterations() * state.range(0));
}

#define PEERS(function, name, sizes)                                         \
  BENCHMARK(function<Ours>)->Name(name "/mailhearth")->sizes->UseRealTime(); \
  BENCHMARK(function<Bare>)->Name(name "/bare")->sizes->UseRealTime()

PEERS(ReadFile, "read_file", Arg(1000)->Arg(100000));
PEERS(WriteFile, "write_file", Arg(1000)->Arg(100000));

}  // namespace
