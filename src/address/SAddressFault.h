// SAddressFault tells why an address is bad and where in the text that shows. The parsers
// keep one beside each address they read; see S821Parser::Fault.
//
//   S821Parser parser("<joe@example..org>", 1);
//   const S821Address address = parser.ExtractAddress();
//   if (address.IsBad()) Report(Describe(parser.Fault().flaw), parser.Fault().position);

#ifndef MAILHEARTH_ADDRESS_SADDRESSFAULT_H
#define MAILHEARTH_ADDRESS_SADDRESSFAULT_H

#include "../strings/Export.h"

inline namespace mailhearth {

// Why an address is bad.
enum class AddressFlaw : unsigned char {
  kNone,           // the address is not bad
  kByte,           // a byte that may not stand there: a control character, a stray ")"
  kLineEnd,        // a line end that may not stand there, or half of one
  kOpenQuotes,     // a quoted string that does not end
  kOpenComment,    // a comment that does not end
  kOpenLiteral,    // a domain literal that does not end
  kLiteral,        // a domain literal that is not a dotted IPv4 address, or not well-formed
  kStart,          // something that no address begins with
  kWords,          // something that does not go on after the first words of an address
  kGroup,          // a group within a group, or the end of one where there is none
  kRoute,          // a source route that is not "@host,@host:"
  kLocalPart,      // something that does not belong in a local part
  kLabel,          // a label that no domain can have
  kDomain,         // something that does not belong in a domain
  kEmptyDomain,    // nothing behind the at-sign
  kInvalidDomain,  // a domain that is none: its last label is a number, say
  kIncomplete,     // a source route or a domain without a local part, or a source route
                   // and no domain
};

struct SAddressFault {
  AddressFlaw flaw = AddressFlaw::kNone;  // what is wrong

  // The byte of the text, counted from 0, that is refused; the first of a token that does not
  // belong there, of what does not end, of a domain that is none; the length of the text where
  // that ends too early. -1 without a flaw.
  int position = -1;
};

// Returns a flaw in a few English words, without an end; "" for none.
[[nodiscard]] MAILHEARTH_EXPORT const char* Describe(AddressFlaw flaw);

}  // namespace mailhearth

#endif  // MAILHEARTH_ADDRESS_SADDRESSFAULT_H
