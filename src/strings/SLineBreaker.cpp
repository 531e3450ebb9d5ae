#include "SLineBreaker.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

inline namespace mailhearth {

namespace {

// A line end: where it is and how long.
struct LineEnd {
  int at;
  int length;
};

// Returns the first line end at or after `from`, at -1 when there is none.
LineEnd FindLineEnd(std::string_view text, int from) {
  const char* const begin = text.data() + from;
  const auto* const feed = static_cast<const char*>(
      std::memchr(begin, '\n', text.size() - static_cast<std::size_t>(from)));
  if (feed == nullptr) return {-1, 0};
  const bool pair = feed > begin && feed[-1] == '\r';
  const auto at = static_cast<int>(feed - text.data());
  return pair ? LineEnd{at - 1, 2} : LineEnd{at, 1};
}

}  // namespace

SLineBreaker::SLineBreaker(const SString& text, unsigned int stripEnds)
    : text_(text.Data(), text.Length()), textString_(text_), stripEnds_(stripEnds) {}

int SLineBreaker::ReadLine(SString& out) {
  const int length = textString_.Length();
  LineEnd end = {-1, 0};
  if (position_ < length) {
    end = FindLineEnd(textString_.View(), position_);
    if (end.at < 0 && position_ < out.Length()) end = {std::min(out.Length(), length), 1};
  }
  if (end.at < 0) {
    out = SString();
    return 0;
  }
  const int next =
      static_cast<int>(std::min(std::int64_t{end.at} + end.length, std::int64_t{length}));
  _Take((stripEnds_ == 0 ? next : end.at) - position_, next);
  out = line_;
  return 1;
}

SString SLineBreaker::GetRemainder() {
  line_.SetBuffer(textString_.Data() + position_, textString_.Length() - position_);
  return line_;
}

void SLineBreaker::_Take(int count, int next) {
  line_.SetBuffer(textString_.Data() + position_, count);
  position_ = next;
}

}  // namespace mailhearth
