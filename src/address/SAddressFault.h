// SAddressFault tells why an address is bad and where in the text the error is. A parser keeps
// that of the last address it read; see S821Parser::Fault.
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
  kStart,          // a token that no address begins with
  kWords,          // a token that cannot follow the first words of an address
  kGroup,          // a group within a group, or the end of a group outside any
  kRoute,          // a source route that is not "@host,@host:"
  kLocalPart,      // a token that does not belong in a local part
  kLabel,          // an invalid label in a host or domain
  kDomain,         // a token that does not belong in a domain
  kEmptyDomain,    // no domain after the at-sign
  kInvalidDomain,  // labels that are no domain: the last of several is a number, say
  kIncomplete,     // a source route or a domain without a local part, or a source route
                   // and no domain
};

struct SAddressFault {
  AddressFlaw flaw = AddressFlaw::kNone;  // what is wrong

  // A byte offset from 0 in the whole text that the parser was given, whichever address of a
  // list is bad; line ends, blanks and backslashes count like all other bytes. It is
  //
  //   - the byte refused, for kByte, kLineEnd and a kLiteral with a byte that it may not have;
  //   - the opening delimiter, for a string, comment or literal that does not end (the
  //     outermost, if comments nest) and for any other kLiteral;
  //   - the first byte of the domain, for kInvalidDomain;
  //   - the offset at which the parser stopped after the address, for kIncomplete;
  //   - the first byte of the token that does not belong there, for all others; the length of
  //     the text if it ends too early.
  //
  // So it lies between 0 and the length of the text, both included; it is -1 without a flaw.
  int position = -1;
};

// Returns a description of a flaw in a few English words, without a full stop or line end; ""
// for none.
[[nodiscard]] MAILHEARTH_EXPORT const char* Describe(AddressFlaw flaw);

}  // namespace mailhearth

#endif  // MAILHEARTH_ADDRESS_SADDRESSFAULT_H
