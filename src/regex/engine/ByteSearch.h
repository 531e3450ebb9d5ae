// Searches for places in a text that may matter, past those that cannot.

#ifndef MAILHEARTH_REGEX_ENGINE_BYTESEARCH_H
#define MAILHEARTH_REGEX_ENGINE_BYTESEARCH_H

#include <array>
#include <cstddef>
#include <string_view>

inline namespace mailhearth {

namespace engine {

// A set of at most four bytes. One more makes it overflow; then it has no bytes.
class FewBytes {
 public:
  void Add(char byte);

  [[nodiscard]] bool Overflown() const { return count_ > bytes_.size(); }
  [[nodiscard]] std::size_t Count() const { return count_; }
  [[nodiscard]] char operator[](std::size_t i) const { return bytes_[i]; }
  [[nodiscard]] const char* begin() const { return bytes_.data(); }
  [[nodiscard]] const char* end() const { return Overflown() ? begin() : begin() + count_; }

  // Whether it has the byte: 1 or 0. Needs: a set with bytes. All four are compared, so that
  // compilers can make vector instructions of it.
  [[nodiscard]] unsigned Has(char byte) const {
    const auto is = [&](std::size_t i) { return static_cast<unsigned>(bytes_[i] == byte); };
    return is(0) | is(1) | is(2) | is(3);
  }

 private:
  std::array<char, 4> bytes_{};  // the last ones equal to the last that was added
  std::size_t count_ = 0;
};

// Looks for a byte of the first set that has one of the second behind it. Where the second
// is overflown any byte will do there.
class ByteSearch {
 public:
  // Needs: `first` is not overflown.
  ByteSearch(const FewBytes& first, const FewBytes& second) : first_(first), second_(second) {}

  // Returns the next such place from `at` on, or the end of the text. The last byte of the
  // text is such a place if the first set has it.
  [[nodiscard]] std::size_t Find(std::string_view text, std::size_t at) const;

 private:
  [[nodiscard]] bool _IsPlace(std::string_view text, std::size_t at) const;
  [[nodiscard]] std::size_t _FindOne(std::string_view text, std::size_t at) const;
  [[nodiscard]] std::size_t _FindInBlocks(std::string_view text, std::size_t at) const;

  FewBytes first_;
  FewBytes second_;
};

}  // namespace engine

}  // namespace mailhearth

#endif  // MAILHEARTH_REGEX_ENGINE_BYTESEARCH_H
