#include "SAddressFault.h"

inline namespace mailhearth {

const char* Describe(AddressFlaw flaw) {
  switch (flaw) {
    case AddressFlaw::kNone:
      return "";
    case AddressFlaw::kByte:
      return "a character that may not stand here";
    case AddressFlaw::kLineEnd:
      return "a line end that may not stand here";
    case AddressFlaw::kOpenQuotes:
      return "a quoted string that does not end";
    case AddressFlaw::kOpenComment:
      return "a comment that does not end";
    case AddressFlaw::kOpenLiteral:
      return "a domain literal that does not end";
    case AddressFlaw::kLiteral:
      return "an invalid domain literal";
    case AddressFlaw::kStart:
      return "no address begins like this";
    case AddressFlaw::kWords:
      return "no address goes on like this";
    case AddressFlaw::kGroup:
      return "a group begins or ends where it may not";
    case AddressFlaw::kRoute:
      return "an invalid source route";
    case AddressFlaw::kLocalPart:
      return "this does not belong in a local part";
    case AddressFlaw::kLabel:
      return "an invalid part of a domain";
    case AddressFlaw::kDomain:
      return "this does not belong in a domain";
    case AddressFlaw::kEmptyDomain:
      return "an empty domain";
    case AddressFlaw::kInvalidDomain:
      return "an invalid domain";
    case AddressFlaw::kIncomplete:
      return "an incomplete address";
  }
  return "";
}

}  // namespace mailhearth
