// What SString has to cut itself up without a pattern: Split at a byte and into characters,
// SplitExact, BreakToWords.

#include <algorithm>
#include <string_view>

#include "../strings/Characters.h"
#include "../strings/SString.h"
#include "Fields.h"
#include "SStringList.h"

inline namespace mailhearth {

namespace {

// What Split at a blank takes for one.
bool IsBlankOrLineEnd(char c) { return IsBlank(c) || c == '\r' || c == '\n'; }

// Splits at runs of white space.
SStringList SplitAtBlanks(std::string_view text, int limit) {
  return Fields(text, limit, [&](int start, Separator& separator) {
    const auto* const found = std::find_if(text.begin() + start, text.end(), IsBlankOrLineEnd);
    if (found == text.end()) return false;
    const auto* const end = std::find_if_not(found, text.end(), IsBlankOrLineEnd);
    separator.start = static_cast<int>(found - text.begin());
    separator.end = static_cast<int>(end - text.begin());
    return true;
  });
}

// What words stand between.
bool IsSeparator(char c) { return IsBlank(c) || c == '\n'; }

// Returns the first position from `i` on whose byte is, or is not, a separator; at most
// `last`.
int SkipTo(bool separator, std::string_view text, int i, int last) {
  while (i < last && IsSeparator(text[static_cast<std::size_t>(i)]) != separator) ++i;
  return i;
}

}  // namespace

SStringList SplitAtByte(std::string_view text, char c, int limit) {
  return Fields(text, limit, [&](int start, Separator& separator) {
    const std::size_t found = text.find(c, static_cast<std::size_t>(start));
    if (found == text.npos) return false;
    separator.start = static_cast<int>(found);
    separator.end = separator.start + 1;
    return true;
  });
}

SStringList SString::Split(char c, int limit) const {
  if (c != ' ') return SplitAtByte(View(), c, limit);
  SStringList fields = SplitAtBlanks(View(), limit);
  if (fields.Count() > 1 && *fields.begin() == "") fields.Shift();
  return fields;
}

SStringList SString::_SplitCharacters(int limit) const {
  SStringList fields;
  if (!Defined()) return fields;
  fields.Reset();
  const int last = limit == 0 || limit > Length() ? Length() - 1 : std::max(limit - 1, 0);
  for (int i = 0; i < last; ++i) fields.Push(SString(Data()[i], 1));
  if (Length() > 0) fields.Push(Part(View(), last, Length()));
  return fields;
}

SStringList SString::SplitExact(const SString& sep, int max) const {
  if (!Defined()) return {};
  if (max == 1) return SStringList(Segment(0, Length()));
  if (sep.Length() == 0) return _SplitCharacters(max);
  SStringList pieces;
  int pos = 0;
  while (max < 1 || pieces.Count() < max - 1) {
    const int found = Index(sep, pos);
    if (found < 0) break;
    pieces.Push(Segment(pos, found - pos));
    pos = found + sep.Length();
  }
  pieces.Push(Segment(pos, Length() - pos));
  return pieces;
}

SStringList SString::BreakToWords() const {
  SStringList words;
  if (Defined()) words.Reset();
  const std::string_view text = View();
  const int last = Length() - 1;
  for (int i = 0; i < last;) {
    i = SkipTo(false, text, i, last);
    const int start = i;
    if (Data()[i] == '"') {
      int end = i + 1;
      while (end < last && Data()[end] != '"') ++end;
      words.Push(Segment(start, end - start));
      if (end >= last) break;
      i = end + 1;
    } else if (i < last) {
      i = SkipTo(true, text, i, last);
      const bool toTheEnd = i == last && !IsSeparator(Data()[i]);
      words.Push(Segment(start, i - start + (toTheEnd ? 1 : 0)));
    }
  }
  return words;
}

}  // namespace mailhearth
