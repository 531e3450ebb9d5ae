// Not installed. Pointers as text, for dumps.

#ifndef MAILHEARTH_STRINGS_POINTERTEXT_H
#define MAILHEARTH_STRINGS_POINTERTEXT_H

#include <string>

inline namespace mailhearth {

// Returns a pointer as streams print it, but whatever their flags and locale are.
[[nodiscard]] std::string PointerText(const void* pointer);

}  // namespace mailhearth

#endif  // MAILHEARTH_STRINGS_POINTERTEXT_H
