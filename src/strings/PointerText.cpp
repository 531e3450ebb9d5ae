#include "PointerText.h"

#include <charconv>
#include <cstdint>

inline namespace mailhearth {

std::string PointerText(const void* pointer) {
  if (pointer == nullptr) return "0";
  char text[2 + 2 * sizeof pointer] = {'0', 'x'};
  const auto bits = reinterpret_cast<std::uintptr_t>(pointer);
  return {text, std::to_chars(text + 2, text + sizeof text, bits, 16).ptr};
}

}  // namespace mailhearth
