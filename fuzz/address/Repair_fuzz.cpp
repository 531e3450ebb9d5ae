// Repairs a text that comes from anywhere: what comes out is the null address or one that
// reads as good, and the same as of the slow repair.

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "Require.h"
#include "RequireAgreement.h"
#include "address/AddressRepair.h"
#include "address/S821Address.h"
#include "strings/SFixedString.h"
#include "support/AddressComparison.h"
#include "support/ExactInput.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const ExactInput input({reinterpret_cast<const char*>(data), size});
  SFixedString text(input.Data(), input.Length());
  const SString repaired = FixBogusAddress(text);
  Require(repaired[0] == '<' && repaired[-1] == '>');
  Require(repaired.Length() == 2 ? S821Address(repaired).IsNull()
                                 : S821Address(repaired).IsValid());
  RequireAgreement(mailhearth::CompareRepair(input.View()));
  return 0;
}
