// Domain literals: what stands for a domain where a host has an address and no name.

#ifndef MAILHEARTH_ADDRESS_LITERALS_H
#define MAILHEARTH_ADDRESS_LITERALS_H

#include "../strings/Export.h"
#include "../strings/SString.h"

inline namespace mailhearth {

// Returns whether a text is an IPv4 address in brackets: four decimal numbers up to 255, with
// or without leading zeros, and dots between them.
[[nodiscard]] MAILHEARTH_EXPORT bool IsValidLiteral(const SString& text);

}  // namespace mailhearth

#endif  // MAILHEARTH_ADDRESS_LITERALS_H
