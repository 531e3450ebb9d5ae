// Substitution builds its result in one go from the string, which it leaves alone until
// then: string and replacement may be the same. Groups are found for a match only if the
// replacement names one, and for the last, which is what the caller gets.

#include <string_view>

#include "../lists/SStringList.h"
#include "../strings/SString.h"
#include "../strings/Sizes.h"
#include "Covered.h"
#include "PatternOptions.h"
#include "PatternStore.h"
#include "Replacement.h"
#include "SRegex.h"
#include "Searches.h"

inline namespace mailhearth {

namespace {

// Appends what takes the place of a match.
void AppendReplacement(SString& out, const Replacement& replacement, const Searches& searches,
                       const regmatch_t& match) {
  const std::string_view text = searches.Text();
  if (replacement.HighestGroup() == 0) {
    replacement.AppendTo(out, [&](int) { return Covered(text, match); });
    return;
  }
  const auto groups = searches.Groups(match);
  replacement.AppendTo(out,
                       [&](int k) { return Covered(text, groups[static_cast<std::size_t>(k)]); });
}

// Substitutes with a pattern given as text.
SStringList Substitute(SString& s, std::string_view pattern, const SString& replacement,
                       const char* options) {
  const CompiledPattern compiled(pattern, options);
  const SString subject(s);
  Searches searches(compiled.Expression(), subject);
  const Replacement parsed(replacement.View());
  SString made = ReplaceMatches(parsed, HasOption(options, kGlobal), searches);
  SStringList list = searches.List();
  if (searches.Any()) s = std::move(made);
  return list;
}

}  // namespace

SString ReplaceMatches(const Replacement& replacement, bool global, Searches& searches) {
  const std::string_view text = searches.Text();
  SString made;
  std::size_t copied = 0;   // bytes of the text that are done with
  bool passedOver = false;  // a byte, behind an empty match
  int pos = 0;
  for (regmatch_t match; searches.Find(pos, match);) {
    made += text.substr(copied, static_cast<std::size_t>(match.rm_so) - copied);
    AppendReplacement(made, replacement, searches, match);
    pos = match.rm_eo;
    copied = static_cast<std::size_t>(pos);
    const bool empty = match.rm_so == match.rm_eo;
    if (!global || (copied == text.size() && (empty || !passedOver))) break;
    if (empty) {
      ++pos;  // or it would be found again for ever
      passedOver = true;
    }
  }
  made += text.substr(copied);
  return made;
}

SStringList SRegex::Subst(SString& s, const SString& replacement, const char* options) const {
  if (!OK()) return {};
  const SString subject(s);
  Searches searches(*this, subject);
  const Replacement parsed(replacement.View());
  SString made = ReplaceMatches(parsed, HasOption(options, kGlobal), searches);
  SStringList list = searches.List();
  searches.Record();
  if (searches.Any()) s = std::move(made);
  return list;
}

SStringList SString::S(const SRegex& re, const SString& replacement, const char* options) {
  return re.Subst(*this, replacement, options);
}

SStringList SString::S(const SString& pattern, const SString& replacement, const char* options) {
  if (pattern.Length() == 0) return _Interleave(replacement, options);
  return Substitute(*this, pattern.View(), replacement, options);
}

SStringList SString::S(const char* pattern, const SString& replacement, const char* options) {
  const std::string_view text = _Text(pattern);
  if (text.empty()) return _Interleave(replacement, options);
  return Substitute(*this, text, replacement, options);
}

SStringList SString::_Interleave(const SString& replacement, const char* options) {
  SStringList list("");
  SString made = Lasting(replacement);
  if (HasOption(options, kGlobal)) {
    const std::int64_t gaps = std::int64_t{Length()} + 1;
    const int length = CheckedLength(Length() + gaps * replacement.Length());
    if (length > 0) made._Realloc(length);
    for (const char c : View()) (made += c) += replacement;
  } else {
    made += *this;
  }
  *this = std::move(made);
  return list;
}

}  // namespace mailhearth
