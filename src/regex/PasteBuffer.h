// Replacements, as SString::S and SRegex::Subst put them in the place of a match.

#ifndef MAILHEARTH_REGEX_PASTEBUFFER_H
#define MAILHEARTH_REGEX_PASTEBUFFER_H

#include "../lists/SStringList.h"
#include "../strings/Export.h"
#include "../strings/SString.h"

inline namespace mailhearth {

// Appends `replacement` to `out`, with
//
//   $& for the first of `groups`, the whole match,
//   $1 to $9, \1 to \9 for the ones behind it, or nothing where there is none,
//   \n \t \r \f \v for the control character, \0 for a NUL,
//   a backslash and any other character for that character.
//
// A "$" before anything else is reported on the standard error stream; it is appended, and
// what stands behind it left out. A single "$" or backslash at the end is reported too, and
// nothing is appended at all.
MAILHEARTH_EXPORT void AppendPasteBuffer(SString* out, const SString& replacement,
                                         const SStringList& groups);

}  // namespace mailhearth

#endif  // MAILHEARTH_REGEX_PASTEBUFFER_H
