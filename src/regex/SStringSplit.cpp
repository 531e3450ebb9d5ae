// SString::Split at a pattern.

#include <algorithm>
#include <string_view>

#include "../lists/SStringList.h"
#include "../strings/Characters.h"
#include "../strings/SString.h"
#include "PatternStore.h"
#include "SRegex.h"
#include "Searches.h"

inline namespace mailhearth {

namespace {

// Bytes that a pattern means something else by than themselves.
constexpr std::string_view kSpecial = "$()*+.?[\\]^{|}";

SString Part(std::string_view text, int start, int end) {
  return SString(text.data() + start, end - start);
}

// Splits a text: find(start, match) searches for a separator from `start` on.
template <class Find>
SStringList Fields(std::string_view text, int limit, Find find) {
  SStringList fields;
  const int length = static_cast<int>(text.size());
  int pos = 0;
  for (int counted = 1; limit == 0 || counted < limit;) {
    if (pos >= length) return fields;
    regmatch_t match;
    if (!find(pos, match)) break;
    if (match.rm_so == pos && match.rm_eo > pos) {
      fields.Push(SString(""));  // not counted
      pos = match.rm_eo;
    } else if (match.rm_so == pos && !find(pos + 1, match)) {
      ++pos;
    } else {
      fields.Push(Part(text, pos, match.rm_so));
      ++counted;
      pos = match.rm_eo;
    }
  }
  if (pos < length) fields.Push(Part(text, pos, length));
  return fields;
}

// Splits at the matches of an expression.
SStringList FieldsBetween(Searches& searches, int limit) {
  return Fields(searches.Text(), limit,
                [&](int start, regmatch_t& match) { return searches.Find(start, match); });
}

// Splits at a byte.
SStringList SplitAtByte(std::string_view text, int limit, char c) {
  return Fields(text, limit, [&](int start, regmatch_t& match) {
    const std::size_t found = text.find(c, static_cast<std::size_t>(start));
    if (found == text.npos) return false;
    match.rm_so = static_cast<regoff_t>(found);
    match.rm_eo = match.rm_so + 1;
    return true;
  });
}

bool IsBlankOrLineEnd(char c) { return IsBlank(c) || c == '\r' || c == '\n'; }

// Splits at runs of white space.
SStringList SplitAtBlanks(std::string_view text, int limit) {
  return Fields(text, limit, [&](int start, regmatch_t& match) {
    const auto* const found = std::find_if(text.begin() + start, text.end(), IsBlankOrLineEnd);
    if (found == text.end()) return false;
    const auto* const end = std::find_if_not(found, text.end(), IsBlankOrLineEnd);
    match.rm_so = static_cast<regoff_t>(found - text.begin());
    match.rm_eo = static_cast<regoff_t>(end - text.begin());
    return true;
  });
}

}  // namespace

SStringList SString::Split(const SRegex& re, int limit) const {
  if (!re.OK()) return {};
  Searches searches(re, *this);
  SStringList fields = FieldsBetween(searches, limit);
  searches.Record();
  return fields;
}

SStringList SString::Split(const SString& sep, int limit) const {
  return _Split(sep.View(), limit);
}

SStringList SString::Split(const char* sep, int limit) const { return _Split(_Text(sep), limit); }

SStringList SString::_Split(std::string_view sep, int limit) const {
  if (sep.empty()) return _SplitCharacters(limit);
  // What a compiled pattern would find, without one.
  if (sep.size() == 1 && kSpecial.find(sep[0]) == kSpecial.npos) {
    return SplitAtByte(View(), limit, sep[0]);
  }
  const CompiledPattern pattern(sep, nullptr);
  if (!pattern.Expression().OK()) return {};
  Searches searches(pattern.Expression(), *this);
  return FieldsBetween(searches, limit);
}

SStringList SString::Split(char c, int limit) const {
  if (c != ' ') return SplitAtByte(View(), limit, c);
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

}  // namespace mailhearth
