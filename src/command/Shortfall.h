// Not installed. What diskFree finds out: whether a file system has room for twice a file.

#ifndef MAILHEARTH_COMMAND_SHORTFALL_H
#define MAILHEARTH_COMMAND_SHORTFALL_H

#include <string>

#include "../strings/SString.h"

inline namespace mailhearth {

// Returns how much is missing for twice the file, in thousands of bytes; negative
// when there is room to spare. A size or a room that cannot be found out counts as -1.
// Twice the size is taken in 32 bits, so from 2^30 bytes on it wraps: scripts know
// the figures so.
[[nodiscard]] double Shortfall(const SString& file);

// Returns whether the free space is below twice the file's size. Asks the file system
// anew, so the answer may differ from what Shortfall found.
[[nodiscard]] bool TooFull(const SString& file);

// Returns a number as "%g" gives it, and a newline.
[[nodiscard]] std::string NumberLine(double number);

}  // namespace mailhearth

#endif  // MAILHEARTH_COMMAND_SHORTFALL_H
