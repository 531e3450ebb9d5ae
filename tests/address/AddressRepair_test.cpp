#include "address/AddressRepair.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>

#include "address/S821Address.h"
#include "strings/SFixedString.h"
#include "support/AddressComparison.h"
#include "support/CheckText.h"
#include "support/EveryText.h"
#include "support/ExactInput.h"
#include "support/FailEachAllocation.h"

namespace {

SString Fixed(std::string_view text) {
  const ExactInput input(text);
  SFixedString fixed(input.Data(), input.Length());
  return FixBogusAddress(fixed);
}

TEST(AddressRepair, RepairsAddresses) {
  struct Row {
    const char* what;
    std::string_view text;
    const char* address;
  };
  const Row rows[] = {
      {"good", "joe@hub.lan", "<joe@hub.lan>"},
      {"good path", "<joe@hub.lan>", "<joe@hub.lan>"},
      {"brackets repeated", "<<joe@hub.lan>>", "<joe@hub.lan>"},
      {"name before", "Joe <joe@hub.lan>", "<joe@hub.lan>"},
      {"name before, text behind", "Joe <joe@hub.lan> (home)", "<joe@hub.lan>"},
      {"brackets apart", "< joe@hub.lan >", "<joe@hub.lan>"},
      {"two addresses", "<a@b> <joe@hub.lan>", "<joe@hub.lan>"},
      {"bracket not closed", "Joe <joe@hub.lan", "<\"Joe <joe\"@hub.lan>"},
      {"bracket not opened", "joe@hub.lan> x", "<>"},
      {"brackets the wrong way", ">joe@hub.lan<", "<>"},
      {"blanks", "joe @ hub . lan", "<joe@hub.lan>"},
      {"all blanks", "\t\r\n\f\v joe\t@\r\nhub\v.\flan \n", "<joe@hub.lan>"},
      {"commas", "joe@hub,lan,", "<joe@hub.lan>"},
      {"dots", "joe@.hub..lan.", "<joe@hub.lan>"},
      {"blank for a dot", "joe@hub lan", "<joe@hub.lan>"},
      {"at-signs", "joe@@hub.lan", "<\"joe@\"@hub.lan>"},
      {"at-signs apart", "joe@ @hub.lan", "<\"joe@ \"@hub.lan>"},
      {"literal without brackets", "joe@10.0.0.1", "<joe@[10.0.0.1]>"},
      {"literal", "joe@[10.0.0.1]", "<joe@[10.0.0.1]>"},
      {"literal with commas", "joe@10,0 0.1", "<joe@[10.0.0.1]>"},
      {"literal out of range", "joe@10.0.0.256", "<>"},
      {"two at-signs", "a@b@hub.lan", "<\"a@b\"@hub.lan>"},
      {"three at-signs", "a@b@c@hub.lan", "<\"a@b@c\"@hub.lan>"},
      {"two at-signs and no domain", "a@b@1.2", "<>"},
      {"needs quotes", "joe(x)@hub.lan", "<\"joe(x)\"@hub.lan>"},
      {"comma in the local part", "joe,x@hub.lan", "<\"joe,x\"@hub.lan>"},
      {"blank in the local part", "joe x@hub.lan", "<joex@hub.lan>"},
      {"quotes in the local part", "joe\"x@hub.lan", "<>"},
      {"backslash in the local part", "joe\\x@hub.lan", "<joex@hub.lan>"},
      {"control in the local part", "joe\x01@hub.lan", "<\"joe\x01\"@hub.lan>"},
      {"NUL in the local part", std::string_view("j\0e@hub", 7), nullptr},
      {"no local part", "@hub.lan", "<\"\"@hub.lan>"},
      {"no local part, brackets", "<@hub.lan>", "<\"\"@hub.lan>"},
      {"route", "@r1:joe@hub.lan", "<>"},
      {"route, brackets", "<@r1:joe@hub.lan>", "<>"},
      {"route of two", "<@r1,@r2:joe@hub.lan>", "<>"},
      {"no domain", "joe@", "<>"},
      {"domain of dots", "joe@..", "<>"},
      {"bad domain", "joe@-hub", "<>"},
      {"local part alone", "postmaster", "<postmaster>"},
      {"local part alone, brackets", "x <postmaster> y", "<postmaster>"},
      {"at-sign alone", "@", "<>"},
      {"brackets alone", "<>", "<>"},
      {"empty", "", "<>"},
      {"blanks alone", " \t", "<>"},
      {"open quote", "\"joe", "<>"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    if (row.address != nullptr) {
      CheckText(Fixed(row.text), row.address);
    } else {
      CheckText(Fixed(row.text), std::string_view("<\"j\0e\"@hub>", 11));
    }
  }
  CheckText(FixBogusAddress(SString()), "<>");
}

TEST(AddressRepair, LeavesTheCallersTextAlone) {
  const SString text("a@b@hub");
  static_cast<void>(FixBogusAddress(text));
  EXPECT_EQ(text, "a@b@hub");
}

TEST(AddressRepair, ThrowsWhenMemoryRunsOut) {
  const SString text("<joe (x)@10.0.0.1>");
  const auto fix = [&] { EXPECT_EQ(FixBogusAddress(text), "<\"joe (x)\"@[10.0.0.1]>"); };
  EXPECT_GT(FailEachAllocation(fix, [] {}), 10);
}

// --- As the slow repair does it -----------------------------------------------------------

void Compare(const std::string& text) {
  const SString fixed = Fixed(text);
  ASSERT_EQ(CompareRepair(text).difference, "");
  const S821Address address(fixed);
  ASSERT_FALSE(address.IsBad()) << text;
  ASSERT_EQ(address.IsNull(), fixed == "<>") << text;
  ASSERT_TRUE(fixed == "<>" || fixed.Length() >= 3) << text;
  ASSERT_TRUE(fixed[0] == '<' && fixed[-1] == '>') << text;
}

TEST(AddressRepair, IsAnAddressOrNoneForEveryShortText) {
  constexpr std::string_view kBytes = "a1@<>. \",\\(:";
  ForEveryText(kBytes, 4, Compare);
}

TEST(AddressRepair, IsAnAddressOrNoneForLongerTexts) {
  std::mt19937 random(19);
  constexpr std::string_view kParts[] = {"joe", "hub", "lan", "10",   "1.2.3.4", "@",   "@",
                                         "<",   ">",   ".",   ",",    " ",       "\t",  "\r\n",
                                         "\"",  "\\",  "(x)", "[",    "]",       ":",   ";",
                                         "%",   "\v",  "\f",  "\x01", "\x80",    "\xFC"};
  for (int round = 0; round < 20'000; ++round) {
    std::string text;
    for (auto n = random() % 14; n > 0; --n) text += kParts[random() % std::size(kParts)];
    if (random() % 16 == 0) text += '\0';
    Compare(text);
    if (HasFatalFailure()) return;
  }
}

}  // namespace
