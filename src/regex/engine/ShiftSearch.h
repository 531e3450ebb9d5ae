// Steps through the few states in which a search spends most of its time, faster than a table
// of rows can be followed.

#ifndef MAILHEARTH_REGEX_ENGINE_SHIFTSEARCH_H
#define MAILHEARTH_REGEX_ENGINE_SHIFTSEARCH_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

inline namespace mailhearth {

namespace engine {

// An automaton of up to kStates states, of which those that are not set lead out of it. All
// steps of a byte are in one word: the bits at each state are the state that the byte leads
// to, as the number of bits by which the word of the next byte is shifted. So a step takes
// as long as a shift, and words are loaded ahead of it.
class ShiftSearch {
 public:
  static constexpr unsigned kStates = 9;

  ShiftSearch() { words_.fill(kAllOut); }

  // Sets the step from a state with a byte. Needs: states below kStates, each step once.
  void SetStep(unsigned from, unsigned char byte, unsigned to) {
    const std::uint64_t leaveOut = (std::uint64_t{kOut} ^ Shift(to)) << Shift(from);
    words_[byte] ^= leaveOut;
  }

  // Takes bytes of `text` from `at` on as long as steps are set, or a few less. Returns the
  // boundary where that ends, and sets `state` to the state there.
  std::size_t Skip(std::string_view text, std::size_t at, unsigned& state) const;

 private:
  static constexpr unsigned kBits = 6;
  static constexpr unsigned Shift(unsigned state) { return state * kBits; }

  // The state outside, which no step leaves.
  static constexpr unsigned kOut = kStates * kBits;
  static constexpr std::uint64_t kAllOut = [] {
    std::uint64_t word = 0;
    for (unsigned at = 0; at <= kOut; at += kBits) word |= std::uint64_t{kOut} << at;
    return word;
  }();

  std::array<std::uint64_t, 256> words_;
};

}  // namespace engine

}  // namespace mailhearth

#endif  // MAILHEARTH_REGEX_ENGINE_SHIFTSEARCH_H
