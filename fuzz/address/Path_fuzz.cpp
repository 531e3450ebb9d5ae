// Reads the path of an envelope from a text that comes from anywhere, strictly and leniently,
// and takes the text for a domain, a label, a literal, a local part and words to join: all of it is
// what the slow parser reads, a bad address has a flaw within the text, and the text of one that is
// not bad reads back equal, but for the exception that S821Address names.

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "Require.h"
#include "RequireAgreement.h"
#include "address/S821Parser.h"
#include "strings/SFixedString.h"
#include "support/AddressComparison.h"
#include "support/AddressParts.h"
#include "support/ExactInput.h"

namespace {

void Read(const SString& text, unsigned lenient) {
  S821Parser parser(text, lenient);
  const S821Address address = parser.ExtractAddress();
  const SAddressFault fault = parser.Fault();
  Require(address.IsBad() == (fault.flaw != AddressFlaw::kNone));
  Require(address.IsBad() ? 0 <= fault.position && fault.position <= text.Length()
                          : fault.position == -1);
  if (address.IsBad()) return;
  const S821Address again(address.Get());
  if (!again.IsBad() && PartsOf(again) == PartsOf(address)) return;
  Require(EndsInABackslash(address));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const ExactInput input({reinterpret_cast<const char*>(data), size});
  SFixedString text(input.Data(), input.Length());
  Read(text, 0);
  Read(text, 1);
  RequireAgreement(mailhearth::ComparePath(input.View()));
  RequireAgreement(mailhearth::CompareWhole(input.View()));
  RequireAgreement(mailhearth::CompareJoined(input.View()));
  return 0;
}
