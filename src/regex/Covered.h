// Not installed. The bytes that a match covers.

#ifndef MAILHEARTH_REGEX_COVERED_H
#define MAILHEARTH_REGEX_COVERED_H

#include <regex.h>  // regmatch_t

#include <cstddef>
#include <string_view>

inline namespace mailhearth {

// Returns what a match covers of a text; nothing for a group that took no part.
inline std::string_view Covered(std::string_view text, const regmatch_t& match) {
  if (match.rm_so < 0) return {};
  return text.substr(static_cast<std::size_t>(match.rm_so),
                     static_cast<std::size_t>(match.rm_eo - match.rm_so));
}

}  // namespace mailhearth

#endif  // MAILHEARTH_REGEX_COVERED_H
