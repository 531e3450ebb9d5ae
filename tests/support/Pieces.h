// What comes to a stream, and in how many pieces.

#ifndef MAILHEARTH_TESTS_SUPPORT_PIECES_H
#define MAILHEARTH_TESTS_SUPPORT_PIECES_H

#include <streambuf>
#include <string>

// A buffer for a stream to write to, which takes no memory while it does.
class Pieces : public std::streambuf {
 public:
  Pieces() { text_.reserve(4096); }
  [[nodiscard]] const std::string& Text() const { return text_; }
  [[nodiscard]] int Count() const { return count_; }
  [[nodiscard]] int Flushes() const { return flushes_; }

 protected:
  std::streamsize xsputn(const char* text, std::streamsize size) override {
    ++count_;
    text_.append(text, static_cast<std::size_t>(size));
    return size;
  }
  int_type overflow(int_type c) override {
    const char byte = traits_type::to_char_type(c);
    xsputn(&byte, 1);
    return c;
  }
  int sync() override {
    ++flushes_;
    return 0;
  }

 private:
  std::string text_;
  int count_ = 0;
  int flushes_ = 0;
};

#endif  // MAILHEARTH_TESTS_SUPPORT_PIECES_H
