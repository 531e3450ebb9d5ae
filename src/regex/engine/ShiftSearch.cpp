// Eight steps at a time, then one look whether they have led out. If they have, the state before
// them counts: the caller finds the exact byte.

#include "ShiftSearch.h"

inline namespace mailhearth {

namespace engine {

std::size_t ShiftSearch::Skip(std::string_view text, std::size_t at, unsigned& state) const {
  constexpr std::size_t kAtOnce = 8;
  constexpr unsigned kMask = (1U << kBits) - 1;
  std::uint64_t before = Shift(state);
  for (; text.size() - at >= kAtOnce; at += kAtOnce) {
    std::uint64_t shift = before;
    for (std::size_t i = 0; i < kAtOnce; ++i) {
      shift = words_[static_cast<unsigned char>(text[at + i])] >> (shift & 63);
    }
    if ((shift & kMask) == kOut) break;
    before = shift;
  }
  state = static_cast<unsigned>(before & kMask) / kBits;
  return at;
}

}  // namespace engine

}  // namespace mailhearth
