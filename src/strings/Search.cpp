// Places in the text are looked at a block at a time: those where two bytes of the needle
// stand are its candidates. Comparing at each of them is quadratic on some texts, so that work
// is counted. Where it gets out of proportion, the rest is searched in a way that is sure to be
// linear: forward by the C library, backward and for positions that overlap by the method of
// Knuth, Morris and Pratt.

#include "Search.h"

#include <string.h>  // memmem, memrchr: not in <cstring>

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>
#include <vector>

#include "Blocks.h"
#include "ByteWords.h"

inline namespace mailhearth {

namespace {

// Counts the work of looking at candidates against the places passed on the way.
class Effort {
 public:
  void Spend(std::size_t bytes) { spent_ += bytes; }
  [[nodiscard]] bool OutOfProportion(std::size_t passed) const { return spent_ > passed + kFree; }

 private:
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

// Returns where a function of the C library has found something, -1 where it has not.
int Position(std::string_view text, const void* found) {
  return found == nullptr ? -1 : static_cast<int>(static_cast<const char*>(found) - text.data());
}

int FindFirstSurely(std::string_view text, std::size_t from, std::string_view needle) {
  return Position(text,
                  ::memmem(text.data() + from, text.size() - from, needle.data(), needle.size()));
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

// The tasks of a search: its direction, what it does with an occurrence (Take() returns
// whether it ends there), and how it finishes linearly after the candidate `at`. kPrice is
// what finding a candidate costs, in places that Finish() would have passed meanwhile.
struct First {
  static constexpr bool kForward = true;
  static constexpr std::size_t kPrice = 64;
  int result = -1;

  bool Take(std::size_t at) {
    result = static_cast<int>(at);
    return true;
  }
  void Finish(std::string_view text, std::string_view needle, std::size_t at) {
    result = FindFirstSurely(text, at + 1, needle);
  }
};

struct Last {
  static constexpr bool kForward = false;
  static constexpr std::size_t kPrice = 8;
  int result = -1;

  bool Take(std::size_t at) {
    result = static_cast<int>(at);
    return true;
  }
  void Finish(std::string_view text, std::string_view needle, std::size_t at) {
    result = FindLastSurely(text.substr(0, at + needle.size() - 1), needle);
  }
};

struct All {
  static constexpr bool kForward = true;
  static constexpr std::size_t kPrice = 8;
  int result = 0;

  bool Take(std::size_t) {
    ++result;
    return false;
  }
  void Finish(std::string_view text, std::string_view needle, std::size_t at) {
    result += CountAllSurely(text.substr(at + 1), needle);
  }
};

// How common bytes are in mail: 0 for the rare ones.
constexpr auto kCommon = [] {
  constexpr std::string_view kRising = "=-5432A10.:/bvkwygpfumcdhlsrniaot e";
  std::array<unsigned char, 256> common{};
  for (std::size_t i = 0; i < kRising.size(); ++i) {
    common[static_cast<unsigned char>(kRising[i])] = static_cast<unsigned char>(i + 1);
  }
  return common;
}();

// The positions in a needle of the two bytes that mark its candidates.
struct Pair {
  std::size_t one;
  std::size_t other;
};

// Returns the first byte of the needle and the last that differs from it, if there is one:
// texts have runs of one byte.
Pair PairOfEnds(std::string_view needle) {
  const std::size_t other = needle.find_last_not_of(needle.front());
  return {0, other == needle.npos ? needle.size() - 1 : other};
}

// Returns the two rarest of the bytes that the needle begins with; they differ if they can.
Pair RarestPair(std::string_view needle) {
  Pair pair = PairOfEnds(needle);
  const auto common = [&](std::size_t i) { return kCommon[static_cast<unsigned char>(needle[i])]; };
  for (std::size_t i = 0; i < needle.size(); ++i) {
    if (common(i) < common(pair.one)) {
      pair.other = std::exchange(pair.one, i);
    } else if (common(i) < common(pair.other) && needle[i] != needle[pair.one]) {
      pair.other = i;
    }
  }
  return pair;
}

// One search. Its places are the positions where the needle may begin, numbered in the order
// of its direction.
template <class Task>
class Search {
 public:
  // Needs: a needle that is not longer than the text.
  Search(std::string_view text, std::string_view needle)
      : text_(text), needle_(needle), places_(text.size() - needle.size() + 1) {
    // The more places, the more bytes of the needle are worth a look.
    constexpr std::size_t kMany = 256, kLeast = 32, kMore = 64;
    pair_ = places_ < kMany ? PairOfEnds(needle)
                            : RarestPair(needle.substr(0, kLeast + places_ / kMore));
    one_ = FilledBlock(needle[pair_.one]);
    other_ = FilledBlock(needle[pair_.other]);
  }

  // Returns the result of the task.
  int Run() {
    constexpr std::size_t kTogether = 4;
    if (places_ < kBlock) return _RunOnFew();
    while (places_ - passed_ >= kTogether * kBlock) {
      if (_EndsInBlocks<kTogether>()) return task_.result;
    }
    while (passed_ < places_ && !_EndsInBlocks<1>()) continue;
    return task_.result;
  }

 private:
  // Run() where places do not fill a block.
  int _RunOnFew() {
    while (passed_ < places_) {
      if (text_[_Position(passed_)] == needle_.front() && _EndsAt(passed_)) break;
      ++passed_;
    }
    return task_.result;
  }

  // Passes the next blocks of places. The last one holds some that have been passed before
  // unless the places end with it. Returns whether the search ends there.
  template <std::size_t kBlocks>
  bool _EndsInBlocks() {
    const std::size_t place = std::min(passed_, places_ - kBlocks * kBlock);
    Block any{};
    for (std::size_t i = 0; i < kBlocks; ++i) any |= _Candidates(place + i * kBlock);
    if (HasBits(any)) {
      for (std::size_t i = 0; i < kBlocks; ++i) {
        if (_EndsInBlock(place + i * kBlock)) return true;
      }
    }
    passed_ = place + kBlocks * kBlock;
    return false;
  }

  // Whether the search ends in the block from `place` on.
  bool _EndsInBlock(std::size_t place) {
    const auto words = reinterpret_cast<Words>(_Candidates(place));
    const bool swap = !Task::kForward;
    return (words[swap] != 0 && _EndsInWord(words[swap], place)) ||
           (words[!swap] != 0 && _EndsInWord(words[!swap], place + kWord));
  }

  // The same for a word that is not 0.
  bool _EndsInWord(std::uint64_t candidates, std::size_t place) {
    const std::uint64_t forward = FirstLowest(candidates);
    std::uint64_t word = Task::kForward ? forward : __builtin_bswap64(forward);
    do {
      const int bit = std::countr_zero(word);
      if (_EndsAt(place + static_cast<std::size_t>(bit) / 8)) return true;
      word &= ~(std::uint64_t{0xFF} << bit);
    } while (word != 0);
    return false;
  }

  // Returns a block with all bits set where the two bytes of the needle stand, in the order
  // of the text.
  [[nodiscard]] Block _Candidates(std::size_t place) const {
    const char* const begin = text_.data() + (Task::kForward ? place : places_ - place - kBlock);
    return EqualBytes(BlockAt(begin + pair_.one), one_) &
           EqualBytes(BlockAt(begin + pair_.other), other_);
  }

  // Whether the search ends at this place.
  bool _EndsAt(std::size_t place) {
    if (place < passed_) return false;
    const std::size_t at = _Position(place);
    if (std::memcmp(text_.data() + at, needle_.data(), needle_.size()) == 0 && task_.Take(at)) {
      return true;
    }
    constexpr std::size_t kComparedAtOnce = 8;
    effort_.Spend(Task::kPrice + needle_.size() / kComparedAtOnce);
    if (!effort_.OutOfProportion(place)) return false;
    task_.Finish(text_, needle_, at);
    return true;
  }

  [[nodiscard]] std::size_t _Position(std::size_t place) const {
    return Task::kForward ? place : places_ - place - 1;
  }

  std::string_view text_;
  std::string_view needle_;
  std::size_t places_;
  std::size_t passed_ = 0;
  Pair pair_;
  Block one_;
  Block other_;
  Effort effort_;
  Task task_;
};

template <class Task>
int Searched(std::string_view text, std::string_view needle) {
  return needle.size() > text.size() ? Task().result : Search<Task>(text, needle).Run();
}

}  // namespace

int FindFirst(std::string_view text, std::string_view needle) {
  if (needle.size() > 1) return Searched<First>(text, needle);
  return Position(text, std::memchr(text.data(), needle.front(), text.size()));
}

int FindLast(std::string_view text, std::string_view needle) {
  if (needle.size() > 1) return Searched<Last>(text, needle);
  return Position(text, ::memrchr(text.data(), needle.front(), text.size()));
}

int CountAll(std::string_view text, std::string_view needle) {
  if (needle.size() > 1) return Searched<All>(text, needle);
  return static_cast<int>(std::count(text.begin(), text.end(), needle.front()));
}

}  // namespace mailhearth
