// Not installed. A path as the system takes it, and what a function answers that promises a result
// where memory runs out.

#ifndef MAILHEARTH_SYSTEM_PATHTEXT_H
#define MAILHEARTH_SYSTEM_PATHTEXT_H

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstring>
#include <new>
#include <string_view>
#include <utility>

#include "../strings/SString.h"

inline namespace mailhearth {

// A copy of a path with a NUL after it, which takes no memory but its own. The system refuses
// every path of PATH_MAX bytes or more (ENAMETOOLONG), so no more than these are copied.
//
//   if (::stat(PathText(path).Data(), &status) != 0) ...
class PathText {
 public:
  explicit PathText(const SString& path) : PathText(path.View()) {}
  explicit PathText(std::string_view path) {
    const std::size_t length = std::min<std::size_t>(path.size(), PATH_MAX);
    std::memcpy(text_.data(), path.data(), length);
    text_[length] = '\0';
  }

  [[nodiscard]] const char* Data() const { return text_.data(); }

 private:
  std::array<char, PATH_MAX + 1> text_;
};

// Returns an undefined string without taking memory, which SString() needs: as every string
// is after it was moved from. `any` is a handle on whatever string is at hand.
inline SString UndefinedWithoutMemory(SString any) noexcept {
  const SString moved(std::move(any));
  return any;  // NOLINT(bugprone-use-after-move,clang-analyzer-cplusplus.Move)
}

// Returns the result of `work`; when memory runs out during it, `failure`, with errno ENOMEM.
// An installed new-handler is called before, as for every allocation.
template <class Result, class Work>
Result UnlessOutOfMemory(Result failure, Work work) {
  try {
    return work();
  } catch (const std::bad_alloc&) {
    errno = ENOMEM;
    return failure;
  }
}

}  // namespace mailhearth

#endif  // MAILHEARTH_SYSTEM_PATHTEXT_H
