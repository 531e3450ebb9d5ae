#include "Checks.h"

#include <algorithm>
#include <string_view>

inline namespace mailhearth {

namespace {

constexpr int kLongestFile = 255;
constexpr int kLongestName = kLongestFile - static_cast<int>(sizeof "-Control.temp" - 1);

bool IsControl(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte < 0x20 || byte == 0x7F;
}

}  // namespace

bool IsPathComponent(const SString& name) {
  if (name.Length() == 0 || name.Length() > kLongestName) return false;
  if (name == "." || name == ".." || name.Index('/') >= 0) return false;
  const std::string_view bytes = name.View();
  return std::none_of(bytes.begin(), bytes.end(), IsControl);
}

bool IsFieldValue(const SString& value, unsigned crlf) {
  const std::string_view text = value.View(), end = crlf != 0 ? "\r\n" : "\n";
  for (std::size_t at = text.find(end); at != text.npos; at = text.find(end, at)) {
    at += end.size();
    if (at == text.size() || (text[at] != ' ' && text[at] != '\t')) return false;
  }
  return true;
}

}  // namespace mailhearth
