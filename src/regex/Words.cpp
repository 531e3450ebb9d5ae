// SString::SplitExact and SString::BreakToWords.

#include "../lists/SStringList.h"
#include "../strings/Characters.h"
#include "../strings/SString.h"

inline namespace mailhearth {

namespace {

bool IsSeparator(char c) { return IsBlank(c) || c == '\n'; }

// Returns the first position from `i` on whose byte is, or is not, a separator; at most
// `last`.
int SkipTo(bool separator, std::string_view text, int i, int last) {
  while (i < last && IsSeparator(text[static_cast<std::size_t>(i)]) != separator) ++i;
  return i;
}

}  // namespace

SStringList SString::SplitExact(const SString& sep, int max) const {
  if (!Defined()) return {};
  if (max == 1) return SStringList(Segment(0, Length()));
  if (sep.Length() == 0) return Split("", max);
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
