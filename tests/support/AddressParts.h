// What an address holds, for tests to compare and print.

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

#endif  // MAILHEARTH_TESTS_SUPPORT_ADDRESSPARTS_H
