// A copy of a text on a heap block of exactly its size, without a NUL: a sanitizer sees
// the first byte read too far.

#ifndef MAILHEARTH_TESTS_SUPPORT_EXACTINPUT_H
#define MAILHEARTH_TESTS_SUPPORT_EXACTINPUT_H

#include <memory>
#include <string_view>

class ExactInput {
 public:
  explicit ExactInput(std::string_view text)
      : bytes_(std::make_unique<char[]>(text.size())),
        size_(text.copy(bytes_.get(), text.size())) {}

  [[nodiscard]] const char* Data() const { return bytes_.get(); }
  [[nodiscard]] int Length() const { return static_cast<int>(size_); }
  [[nodiscard]] std::string_view View() const { return {bytes_.get(), size_}; }

 private:
  std::unique_ptr<char[]> bytes_;
  std::size_t size_;
};

#endif  // MAILHEARTH_TESTS_SUPPORT_EXACTINPUT_H
