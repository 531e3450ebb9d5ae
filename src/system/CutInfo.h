// Information about the installation, from the file .cut in the directory that the environment
// variable ProgramDir names. Each line is an entry.
//
//   version 3.1 beta
//
// The key extends to the first white space; the value starts after that one character and
// extends to the end of the line. The first entry of a key counts. Text after the last line
// feed is no entry.

#ifndef MAILHEARTH_SYSTEM_CUTINFO_H
#define MAILHEARTH_SYSTEM_CUTINFO_H

#include "../strings/Export.h"
#include "../strings/SString.h"

inline namespace mailhearth {

// Returns the value of `key`, which is case-sensitive; the text "Undefined" when there is no
// such entry or no file; an undefined string for an entry without a value.
//
// The first call in the process reads the file; later calls never read it again, even if it
// could not be read or has changed. A call that finds no memory throws std::bad_alloc; if that
// happens while it reads the file, the next call reads the file.
[[nodiscard]] MAILHEARTH_EXPORT SString GetCutInfo(const SString& key);

}  // namespace mailhearth

#endif  // MAILHEARTH_SYSTEM_CUTINFO_H
