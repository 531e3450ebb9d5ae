// What an installation says of itself: the file .cut in the directory that the environment
// names as ProgramDir, an entry a line.
//
//   version 3.1 beta
//
// A key goes up to the first white space, its value from behind that one character to the end
// of the line. The first entry of a key counts. What stands behind the last line feed is no
// entry.

#ifndef MAILHEARTH_SYSTEM_CUTINFO_H
#define MAILHEARTH_SYSTEM_CUTINFO_H

#include "../strings/Export.h"
#include "../strings/SString.h"

inline namespace mailhearth {

// Returns the value of `key`, in which case counts; the text "Undefined" when there is no such
// entry or no file; an undefined string for an entry without a value.
//
// The file is read by the first call in the process and never again, not even when it could
// not be read or has changed since. A call that finds no memory throws std::bad_alloc; if it was
// the one to read the file, the next call reads it.
[[nodiscard]] MAILHEARTH_EXPORT SString GetCutInfo(const SString& key);

}  // namespace mailhearth

#endif  // MAILHEARTH_SYSTEM_CUTINFO_H
