// Not installed. Owns an open file, so that it is closed on every way out of a function, and errno
// stays that of the call that failed first.

#ifndef MAILHEARTH_SYSTEM_DESCRIPTOR_H
#define MAILHEARTH_SYSTEM_DESCRIPTOR_H

#include <unistd.h>

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

}  // namespace mailhearth

#endif  // MAILHEARTH_SYSTEM_DESCRIPTOR_H
