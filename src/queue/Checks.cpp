#include "Checks.h"

#include <algorithm>
#include <string_view>

#include "../strings/Characters.h"

inline namespace mailhearth {

namespace {

constexpr int kLongestFile = 255;
constexpr int kLongestName = kLongestFile - static_cast<int>(sizeof "-Control.temp" - 1);

}  // namespace

bool IsPathComponent(const SString& name) {
  if (name.Length() == 0 || name.Length() > kLongestName) return false;
  if (name == "." || name == ".." || name.Index('/') >= 0) return false;
  const std::string_view bytes = name.View();
  return std::none_of(bytes.begin(), bytes.end(), IsC0Control);
}

bool IsFieldValue(const SString& value, unsigned crlf) {
  const std::string_view text = value.View(), end = crlf != 0 ? "\r\n" : "\n";
  for (std::size_t at = text.find(end); at != text.npos; at = text.find(end, at)) {
    at += end.size();
    if (at == text.size() || !IsBlank(text[at])) return false;
  }
  return true;
}

}  // namespace mailhearth
