// Translates a pattern that comes from anywhere and uses it: a pattern is either reported or
// translated, one without escapes and brackets as it stands; replacing every match by itself
// changes nothing, and fields are parts of the text.
//
// An input is the pattern, a newline, the text.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "Require.h"
#include "lists/SStringList.h"
#include "regex/SPerlRegex.h"
#include "strings/SFixedString.h"
#include "support/ErrorText.h"
#include "support/ExactInput.h"

namespace {

void Translate(const SString& pattern) {
  SString translation;
  const std::string report = ErrorText([&] { translation = PerlRegexConv(pattern); });
  Require(report.empty() == (translation.Defined() || pattern.Length() == 0));
  const bool plain = pattern.View().find_first_of("\\[") == std::string_view::npos;
  Require(!plain || !translation.Defined() || translation == pattern);
}

void CheckFields(const SStringList& fields, std::string_view text) {
  std::size_t at = 0;
  for (const SString& field : fields) {
    at = text.find(field.View(), at);
    Require(at != text.npos);
    at += field.View().size();
  }
}

void Use(const SString& pattern, const SString& text) {
  SString same(text);
  const bool matches = text.HasMatch(pattern);
  Require(text.M(pattern).Defined() == matches);
  if (pattern.Length() > 0) {
    Require(same.S(pattern, "$&", "g").Defined() == matches);
    Require(same == text);
  }
  CheckFields(text.Split(pattern), text.View());
  CheckFields(text.SplitExact(pattern), text.View());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  const std::size_t end = std::min(input.find('\n'), size);
  const ExactInput pattern(input.substr(0, end));
  const ExactInput text(input.substr(std::min(end + 1, size)));
  SFixedString fixedPattern(pattern.Data(), pattern.Length());
  SFixedString fixedText(text.Data(), text.Length());
  Translate(fixedPattern);
  static_cast<void>(ErrorText([&] { Use(fixedPattern, fixedText); }));
  return 0;
}
