// Upper and lower case of single bytes as in the C locale, whatever the locale is:
// only the letters A to Z have a case.

#ifndef MAILHEARTH_STRINGS_BYTES_H
#define MAILHEARTH_STRINGS_BYTES_H

inline namespace mailhearth {

// Without a branch and without a table, so that loops over them become vectors.
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

#endif  // MAILHEARTH_STRINGS_BYTES_H
