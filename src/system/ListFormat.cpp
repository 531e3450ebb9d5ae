#include "ListFormat.h"

#include <cstdint>
#include <string_view>

inline namespace mailhearth {

namespace {

const char* SeparatorBehind(const SString& line) {
  constexpr std::string_view kEnds = ".:!?";
  return kEnds.find(line[-1]) != kEnds.npos ? "  " : " ";
}

}  // namespace

// NOLINTNEXTLINE(performance-unnecessary-value-param): callers may count on the value
SString FormatList(SStringList words, int width, int indent, const SString& lineEnd) {
  const std::int64_t limit = std::int64_t{width} - indent;
  const SString margin(' ', indent);
  SString text;
  for (auto word = words.begin(); word != words.end();) {
    SString line = margin + *word++;
    while (word != words.end() && std::int64_t{line.Length()} + word->Length() < limit) {
      line += SeparatorBehind(line);
      line += *word++;
    }
    text += line;
    text += lineEnd;
  }
  return text;
}

SString Format(const SString& text, int width, int indent, const SString& lineEnd) {
  return FormatList(text.Split(' ', 0), width, indent, lineEnd);
}

}  // namespace mailhearth
