// Not installed. Vectorised search for a few bytes, or pairs of bytes: skips text on which a DFA
// stays in its state.

#ifndef MAILHEARTH_REGEX_ENGINE_BYTESEARCH_H
#define MAILHEARTH_REGEX_ENGINE_BYTESEARCH_H

#include <array>
#include <cstddef>
#include <string_view>

inline namespace mailhearth {

namespace engine {

// A set of at most four bytes. A fifth makes it overflow; then it is empty and stays so.
class FewBytes {
 public:
  void Add(char byte);

  [[nodiscard]] bool Overflowed() const { return count_ > bytes_.size(); }
  [[nodiscard]] std::size_t Count() const { return count_; }
  [[nodiscard]] char operator[](std::size_t i) const { return bytes_[i]; }
  [[nodiscard]] const char* begin() const { return bytes_.data(); }
  [[nodiscard]] const char* end() const { return Overflowed() ? begin() : begin() + count_; }

  // Returns 1 if the set has the byte, else 0. Needs: a set that is not empty. Always compares
  // four bytes, so that compilers can vectorise it.
  [[nodiscard]] unsigned Has(char byte) const {
    const auto is = [&](std::size_t i) { return static_cast<unsigned>(bytes_[i] == byte); };
    return is(0) | is(1) | is(2) | is(3);
  }

 private:
  std::array<char, 4> bytes_{};  // unused ones repeat the last byte added
  std::size_t count_ = 0;
};

// Searches for a byte of the first set followed by one of the second. If the second set has
// overflowed, any byte may follow.
class ByteSearch {
 public:
  // Needs: `first` is not overflowed.
  ByteSearch(const FewBytes& first, const FewBytes& second) : first_(first), second_(second) {}

  // Returns the offset of the next match at `at` or later, or the end of the text. The last byte
  // of the text matches if the first set has it.
  [[nodiscard]] std::size_t Find(std::string_view text, std::size_t at) const;

 private:
  [[nodiscard]] bool _IsMatch(std::string_view text, std::size_t at) const;
  [[nodiscard]] std::size_t _FindOne(std::string_view text, std::size_t at) const;
  [[nodiscard]] std::size_t _FindInBlocks(std::string_view text, std::size_t at) const;

  FewBytes first_;
  FewBytes second_;
};

}  // namespace engine

}  // namespace mailhearth

#endif  // MAILHEARTH_REGEX_ENGINE_BYTESEARCH_H
