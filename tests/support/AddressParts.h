// What an address holds, for tests to compare and print, and what need not read back.

#ifndef MAILHEARTH_TESTS_SUPPORT_ADDRESSPARTS_H
#define MAILHEARTH_TESTS_SUPPORT_ADDRESSPARTS_H

#include <ostream>
#include <string>
#include <vector>

#include "address/S821Address.h"
#include "address/S822Address.h"
#include "support/SStringListPeek.h"

struct AddressParts {
  std::vector<std::string> route;
  std::string local, domain;

  bool operator==(const AddressParts&) const = default;
};

inline AddressParts PartsOf(const S821Address& address) {
  return {Texts(address.Route()), std::string(address.LocalPart().View()),
          std::string(address.Domain().View())};
}

inline std::ostream& operator<<(std::ostream& os, const AddressParts& parts) {
  for (const std::string& host : parts.route) os << '@' << host << ' ';
  return os << '\'' << parts.local << "' at '" << parts.domain << '\'';
}

// Addresses whose text need not read back equal, as the headers say.

// More than a quoted string, and a backslash at the end of the text that escapes nothing.
inline bool EndsInABackslash(const S821Address& address) {
  const SString local = address.LocalPart();
  return local[0] == '"' && local[-1] == '\\' && address.Domain().Length() == 0;
}

// A quoted string behind an atom with a per-cent sign in it.
inline bool HasQuotesBehindPerCent(const S821Address& address) {
  return address.LocalPart().HasMatch("%[^\".]*\"");
}

#endif  // MAILHEARTH_TESTS_SUPPORT_ADDRESSPARTS_H
