// Not installed. The rules of a scanner of mail addresses as a table: what to do with each byte in
// each state. SParser::_Scan follows them.

#ifndef MAILHEARTH_ADDRESS_SCANRULES_H
#define MAILHEARTH_ADDRESS_SCANRULES_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "../strings/Characters.h"
#include "SToken.h"
#include "ScanState.h"

inline namespace mailhearth {

enum class ScanStep : std::uint8_t {
  // These end an atom that has begun; the byte is looked at again, except for a blank.
  kBlank,        // is passed over
  kSingle,       // is a token of its own
  kOpenQuoted,   // begins a quoted string,
  kOpenComment,  // a comment,
  kOpenLiteral,  // a domain literal

  kAppend,        // is gathered
  kEscape,        // is gathered with the next byte, whatever that is
  kDrop,          // is left out
  kNest,          // begins a comment in a comment,
  kUnnest,        // ends one, or the whole
  kClose,         // ends what has been opened
  kCloseChecked,  // ends a literal that must be an IPv4 address
  kLineEnd,       // carriage return: what it does depends on what follows

  kRefuse,         // is an error, which has what was gathered,
  kRefuseLiteral,  // the same within a literal,
  kRefuseNested,   // that has this byte as well,
  kRefuseLine,     // and one that has nothing
};

constexpr bool EndsAtom(ScanStep step) { return step <= ScanStep::kOpenLiteral; }

struct ScanRules {
  static constexpr std::size_t kBytes = 256;
  static constexpr std::size_t kStates = 4;

  std::array<ScanStep, kStates * kBytes> steps{};  // by the sum of state and byte
  std::array<std::uint16_t, kBytes> singles{};     // types of the tokens that kSingle makes

  // For a byte in a state.
  constexpr ScanStep& At(ScanState::Value state, std::size_t byte) {
    return steps[static_cast<std::size_t>(state) + byte];
  }

  // For the bytes of `bytes` in a state.
  constexpr void Set(ScanState::Value state, std::string_view bytes, ScanStep step) {
    for (const char c : bytes) At(state, static_cast<unsigned char>(c)) = step;
  }

  // For all bytes in a state.
  constexpr void Fill(ScanState::Value state, ScanStep step) {
    for (std::size_t c = 0; c < kBytes; ++c) At(state, c) = step;
  }

  // Outside of everything, makes the bytes tokens of their own.
  constexpr void SetSingle(std::string_view bytes, int type) {
    Set(ScanState::kOutside, bytes, ScanStep::kSingle);
    for (const char c : bytes) {
      singles[static_cast<unsigned char>(c)] = static_cast<std::uint16_t>(type);
    }
  }

  // What both scanners do outside of everything: the specials that they share, and a type
  // for control characters.
  constexpr void SetOutside(int control) {
    Fill(ScanState::kOutside, ScanStep::kAppend);
    for (std::size_t byte = 0; byte < kBytes; ++byte) {
      const char c = static_cast<char>(byte);
      if (IsC0OrC1Control(c)) SetSingle({&c, 1}, control);
    }
    Set(ScanState::kOutside, " ", ScanStep::kBlank);
    Set(ScanState::kOutside, "\"", ScanStep::kOpenQuoted);
    Set(ScanState::kOutside, "[", ScanStep::kOpenLiteral);
    SetSingle("<", TokLess);
    SetSingle(">", TokGreater);
    SetSingle("@", TokAt);
    SetSingle(".", TokDot);
    SetSingle(",", TokComma);
    SetSingle(";", TokSemicolon);
    SetSingle(":", TokColon);
  }
};

}  // namespace mailhearth

#endif  // MAILHEARTH_ADDRESS_SCANRULES_H
