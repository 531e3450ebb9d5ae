// Expansion of replacements, as SString::S and SRegex::Subst substitute them for a match.
//
//   SString out;
//   AppendPasteBuffer(&out, "$2-$1", {"a=b", "a", "b"});   // b-a

#ifndef MAILHEARTH_REGEX_PASTEBUFFER_H
#define MAILHEARTH_REGEX_PASTEBUFFER_H

#include "../lists/SStringList.h"
#include "../strings/Export.h"
#include "../strings/SString.h"

inline namespace mailhearth {

// Appends `replacement` to `out` and expands in it
//
//   $&                to the first of `groups`, the whole match
//   $1 to $9, \1 to \9  to the groups after it, or to nothing if there is no such group
//   \n \t \r \f \v    to the control character
//   \0                to a NUL
//   \ and any other character  to that character
//
// A "$" before any other character is reported on the standard error stream; the "$" is
// appended and the character after it left out. A single "$" or backslash at the end is
// reported too, and then nothing at all is appended.
MAILHEARTH_EXPORT void AppendPasteBuffer(SString* out, const SString& replacement,
                                         const SStringList& groups);

}  // namespace mailhearth

#endif  // MAILHEARTH_REGEX_PASTEBUFFER_H
