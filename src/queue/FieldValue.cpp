#include "FieldValue.h"

#include <string_view>

#include "../strings/Characters.h"

inline namespace mailhearth {

bool IsFieldValue(const SString& value, unsigned crlf) {
  const std::string_view text = value.View(), end = crlf != 0 ? "\r\n" : "\n";
  for (std::size_t at = text.find(end); at != text.npos; at = text.find(end, at)) {
    at += end.size();
    if (at == text.size() || !IsBlank(text[at])) return false;
  }
  return true;
}

}  // namespace mailhearth
