// Not installed. How SString::Split makes fields of a text, however the separators are found.

#ifndef MAILHEARTH_LISTS_FIELDS_H
#define MAILHEARTH_LISTS_FIELDS_H

#include <string_view>

#include "../strings/SString.h"
#include "SStringList.h"

inline namespace mailhearth {

// A separator in a text: where it starts, and where it ends. It may be empty.
struct Separator {
  int start;
  int end;
};

// Returns the bytes of a text from `start` to `end`.
inline SString Part(std::string_view text, int start, int end) {
  return SString(text.data() + start, end - start);
}

// Splits a text. find(start, separator) searches for a separator from `start` on; it returns
// whether there is one, and sets `separator` to it.
template <class Find>
SStringList Fields(std::string_view text, int limit, Find find) {
  SStringList fields;
  const int length = static_cast<int>(text.size());
  int pos = 0;
  for (int counted = 1; limit == 0 || counted < limit;) {
    if (pos >= length) return fields;
    Separator separator;
    if (!find(pos, separator)) break;
    if (separator.start == pos && separator.end > pos) {
      fields.Push(SString(""));  // not counted
      pos = separator.end;
    } else if (separator.start == pos && !find(pos + 1, separator)) {
      ++pos;
    } else {
      fields.Push(Part(text, pos, separator.start));
      ++counted;
      pos = separator.end;
    }
  }
  if (pos < length) fields.Push(Part(text, pos, length));
  return fields;
}

// Splits a text at a byte, a blank being one like any other.
[[nodiscard]] SStringList SplitAtByte(std::string_view text, char c, int limit);

}  // namespace mailhearth

#endif  // MAILHEARTH_LISTS_FIELDS_H
