// SString::HasMatch and SString::M.

#include <string_view>

#include "../lists/SStringList.h"
#include "../strings/SString.h"
#include "PatternStore.h"
#include "SRegex.h"
#include "Searches.h"

inline namespace mailhearth {

namespace {

bool Matches(const SString& s, std::string_view pattern, const char* options) {
  const CompiledPattern compiled(pattern, options);
  return Searches(compiled.Expression(), s).Find();
}

SStringList MatchOf(const SString& s, std::string_view pattern, const char* options) {
  const CompiledPattern compiled(pattern, options);
  Searches searches(compiled.Expression(), s);
  searches.Find();
  return searches.List();
}

}  // namespace

bool SString::HasMatch(const SRegex& re) const { return re.HasMatch(*this, 0); }

bool SString::HasMatch(const SString& pattern, const char* options) const {
  return Matches(*this, pattern.View(), options);
}

bool SString::HasMatch(const char* pattern, const char* options) const {
  return Matches(*this, _Text(pattern), options);
}

SStringList SString::M(const SRegex& re) const { return re.Match(*this, 0); }

SStringList SString::M(const SString& pattern, const char* options) const {
  return MatchOf(*this, pattern.View(), options);
}

SStringList SString::M(const char* pattern, const char* options) const {
  return MatchOf(*this, _Text(pattern), options);
}

}  // namespace mailhearth
