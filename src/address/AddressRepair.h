// Repair of the malformed addresses that people and programs write.

#ifndef MAILHEARTH_ADDRESS_ADDRESSREPAIR_H
#define MAILHEARTH_ADDRESS_ADDRESSREPAIR_H

#include "../strings/Export.h"
#include "../strings/SString.h"

inline namespace mailhearth {

// Returns the address that a text most likely means, in envelope form, or "<>" when it means
// none. S821Address accepts every result. Takes time linear in the text.
//
//   Joe <joe@example.org> (home)   <joe@example.org>
//   joe @ example . org            <joe@example.org>
//   joe@10.0.0.1                   <joe@[10.0.0.1]>
//   a@b@example.org                <"a@b"@example.org>
//   postmaster                     <postmaster>
//   joe@                           <>
//
// The steps, in this order; each but the last two works on the result of the one before:
//
//   1. if there is a "<" before a ">", take the part after the last "<", up to the first ">"
//      with text after it
//   2. strip white space from both ends, "<" from the front and ">" from the back
//   3. if there are two at-signs and the first is not the first byte, quote all text before
//      the last at-sign
//   4. split the text at at-signs and the white space around them; if there is one part, try
//      the text as it is
//   5. if there are two parts, replace white space and commas in the second by dots, and
//      enclose it in brackets if only these make it a domain
//   6. then quote the first part as well
[[nodiscard]] MAILHEARTH_EXPORT SString FixBogusAddress(SString bogus);

}  // namespace mailhearth

#endif  // MAILHEARTH_ADDRESS_ADDRESSREPAIR_H
