// Domains: the part of an address after its at-sign.

#ifndef MAILHEARTH_ADDRESS_DOMAINS_H
#define MAILHEARTH_ADDRESS_DOMAINS_H

#include "../strings/Export.h"
#include "../strings/SString.h"

inline namespace mailhearth {

// Returns whether a text is a domain: either labels separated by dots, where the last label
// is not all digits unless it is the only one, or an IPv4 address in brackets. See
// S821Parser::IsValidElement for labels. Blanks around labels and dots are ignored. Takes time
// linear in the text.
//
//   IsValidDomain("example.org")     true         IsValidDomain("example.org.")  false
//   IsValidDomain("localhost")       true         IsValidDomain("10.0.0.1")      false
//   IsValidDomain("[10.0.0.1]")      true         IsValidDomain("-a.example")    false
[[nodiscard]] MAILHEARTH_EXPORT bool IsValidDomain(const SString& text);

}  // namespace mailhearth

#endif  // MAILHEARTH_ADDRESS_DOMAINS_H
