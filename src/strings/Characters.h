// Not installed. Classes of bytes as characters of the C locale, whatever the locale is: digits,
// letters and their case, blanks, controls. Bytes above 7F are in no class but kC1Control.

#ifndef MAILHEARTH_STRINGS_CHARACTERS_H
#define MAILHEARTH_STRINGS_CHARACTERS_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

inline namespace mailhearth {

// What separates words within a line, and may fold a line into the next.
inline constexpr std::string_view kBlanks = " \t";

// What a pattern means by \s.
inline constexpr std::string_view kWhiteSpace = " \f\n\r\t\v";

// One bit each, so a set of classes is a mask.
namespace character {

inline constexpr std::uint8_t kDigit = 0x01;
inline constexpr std::uint8_t kUpper = 0x02;
inline constexpr std::uint8_t kLower = 0x04;
inline constexpr std::uint8_t kBlank = 0x08;
inline constexpr std::uint8_t kWhiteSpace = 0x10;
inline constexpr std::uint8_t kC0Control = 0x20;  // 00 to 1F, and DEL
inline constexpr std::uint8_t kC1Control = 0x40;  // 80 to 9F, as ISO 8859 has them

inline constexpr std::array<std::uint8_t, 256> kClasses = [] {
  std::array<std::uint8_t, 256> classes{};
  const auto range = [&](std::size_t first, std::size_t last, std::uint8_t bit) {
    for (std::size_t c = first; c <= last; ++c) classes[c] |= bit;
  };
  const auto set = [&](std::string_view bytes, std::uint8_t bit) {
    for (const char c : bytes) classes[static_cast<unsigned char>(c)] |= bit;
  };
  range('0', '9', kDigit);
  range('A', 'Z', kUpper);
  range('a', 'z', kLower);
  set(kBlanks, kBlank);
  set(mailhearth::kWhiteSpace, kWhiteSpace);
  range(0x00, 0x1F, kC0Control);
  range(0x7F, 0x7F, kC0Control);
  range(0x80, 0x9F, kC1Control);
  return classes;
}();

// Whether a byte is in one of the classes of a mask.
constexpr bool Is(char c, unsigned mask) {
  return (kClasses[static_cast<unsigned char>(c)] & mask) != 0;
}

}  // namespace character

constexpr bool IsDigit(char c) { return character::Is(c, character::kDigit); }
constexpr bool IsLetter(char c) { return character::Is(c, character::kUpper | character::kLower); }
constexpr bool IsBlank(char c) { return character::Is(c, character::kBlank); }
constexpr bool IsWhiteSpace(char c) { return character::Is(c, character::kWhiteSpace); }

// The controls of ASCII, and those with the highest bit set as well. DEL has no such twin.
constexpr bool IsC0Control(char c) { return character::Is(c, character::kC0Control); }
constexpr bool IsC0OrC1Control(char c) {
  return character::Is(c, character::kC0Control | character::kC1Control);
}

static_assert(IsDigit('0') && IsDigit('9') && !IsDigit('/') && !IsDigit(':'));
static_assert(IsLetter('A') && IsLetter('Z') && IsLetter('a') && IsLetter('z'));
static_assert(!IsLetter('@') && !IsLetter('[') && !IsLetter('`') && !IsLetter('{'));
static_assert(!IsLetter('\xC4') && !IsLetter('\xE4') && !IsLetter('0'));
static_assert(IsBlank(' ') && IsBlank('\t') && !IsBlank('\n') && !IsBlank('\0'));
static_assert(IsWhiteSpace(' ') && IsWhiteSpace('\t') && IsWhiteSpace('\v') && IsWhiteSpace('\r'));
static_assert(!IsWhiteSpace('\x08') && !IsWhiteSpace('\x0E') && !IsWhiteSpace('\xA0'));
static_assert(IsC0Control('\0') && IsC0Control('\x1F') && IsC0Control('\x7F'));
static_assert(!IsC0Control(' ') && !IsC0Control('~') && !IsC0Control('\x80'));
static_assert(IsC0OrC1Control('\0') && IsC0OrC1Control('\x7F') && IsC0OrC1Control('\x80') &&
              IsC0OrC1Control('\x9F'));
static_assert(!IsC0OrC1Control(' ') && !IsC0OrC1Control('\xA0') && !IsC0OrC1Control('\xFF'));

// Case. Without a branch and without the table, so that loops over them become vectors.
constexpr char LowerByte(char c) {
  const bool upper = c >= 'A' && c <= 'Z';
  return static_cast<char>(c | (upper ? 0x20 : 0));
}

constexpr char UpperByte(char c) {
  const bool lower = c >= 'a' && c <= 'z';
  return static_cast<char>(c & (lower ? ~0x20 : ~0));
}

static_assert(LowerByte('A') == 'a' && LowerByte('Z') == 'z' && UpperByte('z') == 'Z');
static_assert(LowerByte('@') == '@' && LowerByte('[') == '[' && LowerByte('\xC4') == '\xC4');
static_assert(UpperByte('`') == '`' && UpperByte('{') == '{' && UpperByte('\xE4') == '\xE4');

}  // namespace mailhearth

#endif  // MAILHEARTH_STRINGS_CHARACTERS_H
