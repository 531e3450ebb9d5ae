// Reading lines and writing. Lines are taken out of the stream's buffer in pieces as long
// as they come; a stream without a buffer gives them byte by byte.

#include <istream>
#include <limits>
#include <ostream>

#include "SString.h"

inline namespace mailhearth {

namespace {

// What of its input a stream buffer has at hand. These members are protected, and an
// access by a derived class's name for them is the one way to reach them.
class InputArea : private std::streambuf {
 public:
  static std::string_view Of(const std::streambuf& buffer) {
    const char* const begin = (buffer.*&InputArea::gptr)();
    const char* const end = (buffer.*&InputArea::egptr)();
    return {begin, static_cast<std::size_t>(end - begin)};
  }

  static void Consume(std::streambuf& buffer, std::size_t bytes) {
    (buffer.*&InputArea::gbump)(static_cast<int>(bytes));
  }
};

// Returns the bytes up to and with the first line feed, all if there is none, but no more
// than one step within the buffer can take.
std::string_view UpToLineFeed(std::string_view bytes) {
  bytes = bytes.substr(0, std::numeric_limits<int>::max());
  const std::size_t feed = bytes.find('\n');
  return feed == bytes.npos ? bytes : bytes.substr(0, feed + 1);
}

}  // namespace

int SString::ReadLine(std::istream& in) {
  *this = "";
  if (!std::istream::sentry(in, true)) return 0;
  for (;;) {
    std::string_view line = UpToLineFeed(InputArea::Of(*in.rdbuf()));
    if (line.empty()) {
      // A look at the next byte fills the buffer, or marks the end of input or a failure.
      if (in.peek() == std::istream::traits_type::eof()) break;
      line = UpToLineFeed(InputArea::Of(*in.rdbuf()));
    }
    if (line.empty()) {  // there is a next byte, but no buffer
      *this += static_cast<char>(in.get());
    } else {
      _Append(line.data(), line.size());
      InputArea::Consume(*in.rdbuf(), line.size());
    }
    if ((*this)[-1] == '\n') return 1;
  }
  return Length() > 0 && !in.fail() ? 1 : 0;
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): declared so, and a copy is a count
std::ostream& operator<<(std::ostream& os, SString s) {
  s.Write(os);
  return os;
}

std::istream& operator>>(std::istream& is, SString& s) {
  s.ReadLine(is);
  return is;
}

}  // namespace mailhearth
