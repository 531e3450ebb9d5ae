// The quick way to a needle is a search for its first byte and a look at each candidate.
// That is quadratic on some texts, so its work is counted. Where it gets out of proportion
// the rest is searched in a way that is sure to be linear: forward by the C library,
// backward and for positions that overlap by the method of Knuth, Morris and Pratt.

#include "Search.h"

#include <string.h>  // memmem, memrchr: not in <cstring>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <vector>

inline namespace mailhearth {

namespace {

// Counts the work of looking at candidates against the bytes passed on the way.
class Effort {
 public:
  void Spend(std::size_t bytes) { spent_ += bytes; }
  [[nodiscard]] bool OutOfProportion(std::size_t passed) const {
    return spent_ > kProportion * passed + kFree;
  }

 private:
  static constexpr std::size_t kProportion = 4;
  static constexpr std::size_t kFree = 1024;
  std::size_t spent_ = 0;
};

// A needle of `size` bytes, the byte at `i` being at(i), matched byte after byte.
template <class At>
class Matcher {
 public:
  Matcher(At at, std::size_t size) : at_(at), borders_(size, 0) {
    for (std::size_t i = 1; i < size; ++i) borders_[i] = Extend(borders_[i - 1], at_(i));
  }

  // Takes the next byte of the text; returns whether the needle ends with it.
  bool Take(char byte) {
    if (matched_ == borders_.size()) matched_ = borders_[matched_ - 1];
    matched_ = Extend(matched_, byte);
    return matched_ == borders_.size();
  }

 private:
  // The longest beginning of the needle that ends in the first `matched` bytes of it
  // followed by `byte`.
  [[nodiscard]] unsigned Extend(unsigned matched, char byte) const {
    while (matched > 0 && at_(matched) != byte) matched = borders_[matched - 1];
    return at_(matched) == byte ? matched + 1 : 0;
  }

  At at_;
  std::vector<unsigned> borders_;  // of each beginning: its longest border
  unsigned matched_ = 0;
};

// Whether the needle stands at this position, where its first byte does.
bool StandsAt(std::string_view text, std::size_t at, std::string_view needle, Effort& effort) {
  constexpr std::size_t kCandidate = 16;  // what finding one costs, in bytes passed
  effort.Spend(kCandidate);
  if (text[at + needle.size() - 1] != needle.back()) return false;
  effort.Spend(needle.size());
  return std::memcmp(text.data() + at, needle.data(), needle.size()) == 0;
}

int FindFirstSurely(std::string_view text, std::size_t from, std::string_view needle) {
  const void* const found =
      ::memmem(text.data() + from, text.size() - from, needle.data(), needle.size());
  return found == nullptr ? -1 : static_cast<int>(static_cast<const char*>(found) - text.data());
}

int FindLastSurely(std::string_view text, std::string_view needle) {
  const auto backward = [=](std::size_t i) { return needle[needle.size() - 1 - i]; };
  Matcher matcher(backward, needle.size());
  for (std::size_t i = text.size(); i-- > 0;) {
    if (matcher.Take(text[i])) return static_cast<int>(i);
  }
  return -1;
}

int CountAllSurely(std::string_view text, std::string_view needle) {
  Matcher matcher([=](std::size_t i) { return needle[i]; }, needle.size());
  return static_cast<int>(
      std::count_if(text.begin(), text.end(), [&](char byte) { return matcher.Take(byte); }));
}

}  // namespace

int FindFirst(std::string_view text, std::string_view needle) {
  if (needle.size() > text.size()) return -1;
  Effort effort;
  const std::size_t last = text.size() - needle.size();
  for (std::size_t at = 0; at <= last; ++at) {
    const void* const found = std::memchr(text.data() + at, needle.front(), last - at + 1);
    if (found == nullptr) return -1;
    at = static_cast<std::size_t>(static_cast<const char*>(found) - text.data());
    if (StandsAt(text, at, needle, effort)) return static_cast<int>(at);
    if (effort.OutOfProportion(at)) return FindFirstSurely(text, at + 1, needle);
  }
  return -1;
}

int FindLast(std::string_view text, std::string_view needle) {
  if (needle.size() > text.size()) return -1;
  Effort effort;
  // Where the needle's first byte may stand: the beginnings still to be looked at.
  std::size_t left = text.size() - needle.size() + 1;
  while (const void* const found = ::memrchr(text.data(), needle.front(), left)) {
    left = static_cast<std::size_t>(static_cast<const char*>(found) - text.data());
    if (StandsAt(text, left, needle, effort)) return static_cast<int>(left);
    if (effort.OutOfProportion(text.size() - left)) {
      return FindLastSurely(text.substr(0, left + needle.size() - 1), needle);
    }
  }
  return -1;
}

int CountAll(std::string_view text, std::string_view needle) {
  if (needle.size() == 1) {
    return static_cast<int>(std::count(text.begin(), text.end(), needle.front()));
  }
  Effort effort;
  int count = 0;
  std::size_t passed = 0;
  for (int at; (at = FindFirstSurely(text, passed, needle)) >= 0; ++count) {
    passed = static_cast<std::size_t>(at) + 1;
    effort.Spend(needle.size());  // the next call prepares the needle anew
    if (effort.OutOfProportion(passed)) {
      return count + 1 + CountAllSurely(text.substr(passed), needle);
    }
  }
  return count;
}

}  // namespace mailhearth
