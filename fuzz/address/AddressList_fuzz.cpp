// Reads the list of a header from a text that comes from anywhere: the addresses are those of
// the slow parser, a bad one has a flaw within the text, the text of one that is not bad reads
// back equal, but for the exceptions that S822Address names, and reading on behind bad ones
// ends.

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "Require.h"
#include "RequireAgreement.h"
#include "address/Domains.h"
#include "address/S822Parser.h"
#include "strings/SFixedString.h"
#include "support/AddressComparison.h"
#include "support/AddressParts.h"
#include "support/ExactInput.h"

namespace {

bool Same(const S822Address& a, const S822Address& b) {
  return a.IsEnd() == b.IsEnd() && a.IsBad() == b.IsBad() && PartsOf(a) == PartsOf(b);
}

// Where angle brackets were more generous than the text without them.
bool NeedsBrackets(const S822Address& address) {
  const SString domain = address.Domain();
  return address.Phrase().Length() == 0 && address.Route().Count() == 0 &&
         (address.LocalPart()[0] == '[' || (domain.Length() > 0 && !IsValidDomain(domain)));
}

void ReadBack(const S822Address& address) {
  S822Parser again(address.Get());
  if (Same(again.NextAddress(), address) && again.NextAddress().IsEnd()) return;
  Require(NeedsBrackets(address) || HasQuotesBehindPerCent(address));
}

class Reader : public S822Parser {
 public:
  using S822Parser::S822Parser;

  // Reads every address; up to the first bad one they are those of `other`.
  void ReadAll(S822Parser& other) {
    bool isSame = true;
    for (;;) {
      const int before = position_;
      const S822Address address = NextListed();
      Require(!isSame || Same(address, other.NextAddress()));
      if (address.IsEnd()) break;
      Require(before < position_ && position_ <= input_.Length());
      const SAddressFault fault = Fault();
      Require(address.IsBad() == (fault.flaw != AddressFlaw::kNone));
      Require(!address.IsBad() || (0 <= fault.position && fault.position <= input_.Length()));
      if (!address.IsBad()) ReadBack(address);
      if (address.IsBad()) isSame = false;
    }
    Require(NextListed().IsEnd() && NextAddress().IsEnd());
  }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const ExactInput input({reinterpret_cast<const char*>(data), size});
  SFixedString text(input.Data(), input.Length());
  S822Parser other(text);
  Reader(text).ReadAll(other);
  RequireAgreement(mailhearth::CompareList(input.View()));
  return 0;
}
