// Not installed. Option letters, as the operations on patterns take them: a C string, or null for
// none.

#ifndef MAILHEARTH_REGEX_PATTERNOPTIONS_H
#define MAILHEARTH_REGEX_PATTERNOPTIONS_H

#include <cstring>

inline namespace mailhearth {

inline constexpr char kIgnoreCase = 'i';
inline constexpr char kGlobal = 'g';

// Returns whether the letter is anywhere among the options.
inline bool HasOption(const char* options, char letter) {
  return options != nullptr && std::strchr(options, letter) != nullptr;
}

}  // namespace mailhearth

#endif  // MAILHEARTH_REGEX_PATTERNOPTIONS_H
