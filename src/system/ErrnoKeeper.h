// Not installed. Keeps errno over clean-up, so that the caller sees the first error.

#ifndef MAILHEARTH_SYSTEM_ERRNOKEEPER_H
#define MAILHEARTH_SYSTEM_ERRNOKEEPER_H

#include <cerrno>

inline namespace mailhearth {

// Puts errno back on leaving the scope.
class ErrnoKeeper {
 public:
  ErrnoKeeper() = default;
  ErrnoKeeper(const ErrnoKeeper&) = delete;
  ErrnoKeeper& operator=(const ErrnoKeeper&) = delete;
  ~ErrnoKeeper() { errno = kept_; }

 private:
  const int kept_ = errno;
};

}  // namespace mailhearth

#endif  // MAILHEARTH_SYSTEM_ERRNOKEEPER_H
