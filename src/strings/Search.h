// Not installed. Searching for bytes in bytes. All of it takes time linear in the text, however
// often the text comes close to the needle; against texts that do so on purpose a table of four
// bytes for each byte of the needle is made.

#ifndef MAILHEARTH_STRINGS_SEARCH_H
#define MAILHEARTH_STRINGS_SEARCH_H

#include <string_view>

inline namespace mailhearth {

// Each needs a needle that is not empty, and text and needle no longer than kMaxLength.

// Returns the first or last position at which the needle occurs; -1 when there is none.
[[nodiscard]] int FindFirst(std::string_view text, std::string_view needle);
[[nodiscard]] int FindLast(std::string_view text, std::string_view needle);

// Returns the number of positions at which the needle occurs; they may overlap.
[[nodiscard]] int CountAll(std::string_view text, std::string_view needle);

}  // namespace mailhearth

#endif  // MAILHEARTH_STRINGS_SEARCH_H
