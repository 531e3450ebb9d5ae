// Scans a text that comes from anywhere, with both scanners: every token moves on, unless it
// is the end or an error, and all of them are those of the slow scanners.

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "Require.h"
#include "RequireAgreement.h"
#include "address/S821Parser.h"
#include "address/S822Parser.h"
#include "strings/SFixedString.h"
#include "support/AddressComparison.h"
#include "support/ExactInput.h"

namespace {

template <class Parser>
class Scanner : public Parser {
 public:
  using Parser::Parser;

  void ScanAll() {
    for (;;) {
      const int before = this->position_;
      const int type = this->NextToken().Type();
      Require(type > 0 && (type & (type - 1)) == 0);
      Require(before <= this->position_ && this->position_ <= this->input_.Length());
      if (this->position_ > before) continue;
      Require(type == TokEnd || type == TokError);
      return;
    }
  }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const ExactInput input({reinterpret_cast<const char*>(data), size});
  SFixedString text(input.Data(), input.Length());
  Scanner<S821Parser>(text).ScanAll();
  Scanner<S822Parser>(text).ScanAll();
  RequireAgreement(mailhearth::CompareTokens(input.View()));
  return 0;
}
