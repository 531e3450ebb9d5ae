// Owns what the system hands out, so that it goes back on every way out of a function, and
// errno stays that of the call that failed first.

#ifndef MAILHEARTH_SYSTEM_DESCRIPTOR_H
#define MAILHEARTH_SYSTEM_DESCRIPTOR_H

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <utility>

#include "ErrnoKeeper.h"

inline namespace mailhearth {

// An open file, closed with the object; -1 for none.
class Descriptor {
 public:
  explicit Descriptor(int fd) : fd_(fd) {}
  ~Descriptor() { Close(); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  [[nodiscard]] bool IsOpen() const { return fd_ >= 0; }
  [[nodiscard]] int Get() const { return fd_; }

  // Hands the descriptor to the caller, who closes it.
  [[nodiscard]] int Release() { return std::exchange(fd_, -1); }

  // Closes now. Never repeated: after an error the descriptor may be somebody else's.
  void Close() {
    if (!IsOpen()) return;
    const ErrnoKeeper keep;
    static_cast<void>(::close(Release()));  // what had to reach the disk was seen to before
  }

 private:
  int fd_;
};

// The bytes of a file in memory, from its beginning, to be written; null data for none.
class Mapping {
 public:
  // Maps `size` bytes, shared with the file.
  // Needs: `size` is above 0; the file is open for reading and writing.
  Mapping(const Descriptor& file, std::size_t size) : size_(size) {
    void* const data = ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, file.Get(), 0);
    if (data != MAP_FAILED) data_ = data;
  }
  ~Mapping() {
    const ErrnoKeeper keep;
    static_cast<void>(Unmap());
  }
  Mapping(const Mapping&) = delete;
  Mapping& operator=(const Mapping&) = delete;

  [[nodiscard]] void* Data() const { return data_; }

  // Ends the mapping now. Returns whether that went well, as it does for none.
  bool Unmap() {
    void* const data = std::exchange(data_, nullptr);
    return data == nullptr || ::munmap(data, size_) == 0;
  }

 private:
  void* data_ = nullptr;
  std::size_t size_;
};

}  // namespace mailhearth

#endif  // MAILHEARTH_SYSTEM_DESCRIPTOR_H
