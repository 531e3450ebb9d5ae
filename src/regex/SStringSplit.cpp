// SString::Split at the matches of a pattern.

#include <string_view>

#include "../lists/Fields.h"
#include "../lists/SStringList.h"
#include "../strings/SString.h"
#include "PatternStore.h"
#include "SRegex.h"
#include "Searches.h"

inline namespace mailhearth {

namespace {

// Bytes that a pattern means something else by than themselves.
constexpr std::string_view kSpecial = "$()*+.?[\\]^{|}";

// Splits at the matches of an expression.
SStringList FieldsBetween(Searches& searches, int limit) {
  return Fields(searches.Text(), limit, [&](int start, Separator& separator) {
    regmatch_t match;
    if (!searches.Find(start, match)) return false;
    separator = {match.rm_so, match.rm_eo};
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
    return SplitAtByte(View(), sep[0], limit);
  }
  const CompiledPattern pattern(sep, nullptr);
  if (!pattern.Expression().OK()) return {};
  Searches searches(pattern.Expression(), *this);
  return FieldsBetween(searches, limit);
}

}  // namespace mailhearth
