// Not installed. Owns the bytes of a file in memory, so that they go back on every way out of a
// function, and errno stays that of the call that failed first.

#ifndef MAILHEARTH_SYSTEM_MAPPING_H
#define MAILHEARTH_SYSTEM_MAPPING_H

#include <sys/mman.h>

#include <cstddef>
#include <utility>

#include "Descriptor.h"
#include "ErrnoKeeper.h"

inline namespace mailhearth {

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

#endif  // MAILHEARTH_SYSTEM_MAPPING_H
