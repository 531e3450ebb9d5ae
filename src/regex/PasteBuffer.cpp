#include "PasteBuffer.h"

#include <array>
#include <cstddef>
#include <string_view>

#include "Replacement.h"

inline namespace mailhearth {

void AppendPasteBuffer(SString* out, const SString& replacement, const SStringList& groups) {
  constexpr std::size_t kNameable = 10;
  std::array<std::string_view, kNameable> texts{};
  std::size_t n = 0;
  for (const SString& group : groups) {
    if (n < kNameable) texts[n++] = group.View();
  }
  SString buffer;  // `out` may be one of the arguments
  Replacement(replacement.View()).AppendTo(buffer, [&](int k) {
    return texts[static_cast<std::size_t>(k)];
  });
  *out += buffer;
}

}  // namespace mailhearth
