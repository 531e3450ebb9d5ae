// Domain literals: they stand for the domain of a host that has an address and no name.

#ifndef MAILHEARTH_ADDRESS_LITERALS_H
#define MAILHEARTH_ADDRESS_LITERALS_H

#include "../strings/Export.h"
#include "../strings/SString.h"

inline namespace mailhearth {

// Returns whether a text is an IPv4 address in brackets: four decimal numbers up to 255,
// separated by dots, with or without leading zeros.
[[nodiscard]] MAILHEARTH_EXPORT bool IsValidLiteral(const SString& text);

}  // namespace mailhearth

#endif  // MAILHEARTH_ADDRESS_LITERALS_H
