// Repair of addresses as people and programs write them.

#ifndef MAILHEARTH_ADDRESS_ADDRESSREPAIR_H
#define MAILHEARTH_ADDRESS_ADDRESSREPAIR_H

#include "../strings/Export.h"
#include "../strings/SString.h"

inline namespace mailhearth {

// Returns the address that a text most likely means, in the form of an envelope, or "<>" when
// it means none. Whatever it returns, S821Address takes it. Takes time linear in the text.
//
//   Joe <joe@example.org> (home)   <joe@example.org>
//   joe @ example . org            <joe@example.org>
//   joe@10.0.0.1                   <joe@[10.0.0.1]>
//   a@b@example.org                <"a@b"@example.org>
//   postmaster                     <postmaster>
//   joe@                           <>
//
// What is tried, in this order; each but the last two works on what the one before has left:
//
//   1. between a "<" and a ">", the part behind the last "<", up to the first ">" that more
//      follows
//   2. without blanks and brackets around it, "<" before and ">" behind
//   3. if it has two at-signs and the first is not its first byte: all before the last one in
//      quotes
//   4. parts between at-signs with blanks around them; one part: the text as it is
//   5. two parts: the second without blanks and commas, with dots for them, in brackets if
//      only that makes it a domain
//   6. and then, the first in quotes
[[nodiscard]] MAILHEARTH_EXPORT SString FixBogusAddress(SString bogus);

}  // namespace mailhearth

#endif  // MAILHEARTH_ADDRESS_ADDRESSREPAIR_H
