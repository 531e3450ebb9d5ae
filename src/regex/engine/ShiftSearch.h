// Not installed. A shift-based DFA: a search through up to nine states with one shift and one load
// a byte.

#ifndef MAILHEARTH_REGEX_ENGINE_SHIFTSEARCH_H
#define MAILHEARTH_REGEX_ENGINE_SHIFTSEARCH_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

inline namespace mailhearth {

namespace engine {

// A DFA of up to kStates states. Each byte has one 64-bit word with its transitions from all
// states: in the six bits of a state is the next one, given as the offset of its own bits. So a
// step shifts the word of the byte by the result of the last step. The words do not depend on
// the state and can be loaded ahead; a table of rows would wait for each step. A transition that
// is not set leads out of the DFA.
class ShiftSearch {
 public:
  static constexpr unsigned kStates = 9;

  ShiftSearch() { words_.fill(kAllOut); }

  // Sets a transition. Needs: states below kStates, each transition set once.
  void SetStep(unsigned from, unsigned char byte, unsigned to) {
    const std::uint64_t leaveOut = (std::uint64_t{kOut} ^ Shift(to)) << Shift(from);
    words_[byte] ^= leaveOut;
  }

  // Steps from `state` through `text`, from offset `at` on, until a byte leads out. Returns that
  // byte's offset or one up to seven bytes before it, and sets `state` to the state there.
  std::size_t Skip(std::string_view text, std::size_t at, unsigned& state) const;

 private:
  static constexpr unsigned kBits = 6;
  static constexpr unsigned Shift(unsigned state) { return state * kBits; }

  // The state of having left; all its transitions lead to itself.
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
