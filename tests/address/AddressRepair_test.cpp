#include "address/AddressRepair.h"

#include <gtest/gtest.h>

#include <new>
#include <random>
#include <string>
#include <string_view>

#include "address/Domains.h"
#include "address/S821Address.h"
#include "address/S821Parser.h"
#include "lists/SStringList.h"
#include "strings/SFixedString.h"
#include "support/CheckText.h"
#include "support/CountedNew.h"
#include "support/EveryText.h"
#include "support/ExactInput.h"

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

TEST(AddressRepair, ThrowsAndLeavesNothingWhenMemoryRunsOut) {
  const SString text("<joe (x)@10.0.0.1>");
  for (int n = 0;; ++n) {
    const FailNthAllocation fail(n);
    try {
      EXPECT_EQ(FixBogusAddress(text), "<\"joe (x)\"@[10.0.0.1]>");
    } catch (const std::bad_alloc&) {
      EXPECT_TRUE(fail.Fired());
    }
    if (!fail.Fired()) {
      EXPECT_GT(n, 10);
      return;
    }
  }
}

// --- The series of patterns ---------------------------------------------------------------

bool Check(const SString& text, SString& repaired) {
  repaired = S821Parser(text, 1).ExtractAddress().Get();
  return repaired.Length() >= 3;
}

SString RepairedByPatterns(SString text) {
  SString repaired;
  if (text.HasMatch("<.*>")) {
    text.S("^.+<", "");
    text.S(">.+$", "");
  }
  text.S("^[\\s<]+", "");
  text.S("[\\s>]+$", "");
  if (text.Index('@') > 0) {
    const SStringList groups = text.M("^(.*)@([^@]*)$");
    if (groups.Get(1).Index('@') >= 0) {
      text = "\"" + groups.Get(1) + "\"@" + groups.Get(2);
      if (Check(text, repaired)) return repaired;
    }
  }
  SStringList pieces = text.Split("\\s*(@\\s*)+");
  if (pieces.Count() >= 3 && pieces.Get(0).HasPrefix("@")) {
    ADD_FAILURE() << "the split leaves no at-sign";
  }
  if (pieces.Count() == 1 && Check(text, repaired)) return repaired;
  if (pieces.Count() == 2) {
    const SString local = pieces.Get(0);
    SStringList labels = pieces.Get(1).Split("[\\s.,]+");
    if (labels.Count() > 0 && labels.Get(0) == "") labels.Shift();
    if (labels.Count() > 0 && labels.Get(-1) == "") labels.Pop();
    SString domain = labels.Join(".");
    if (!IsValidDomain(domain) && IsValidDomain("[" + domain + "]")) domain = "[" + domain + "]";
    if (IsValidDomain(domain)) {
      if (Check("<" + local + "@" + domain + ">", repaired)) return repaired;
      if (Check("<\"" + local + "\"@" + domain + ">", repaired)) return repaired;
    }
  }
  return "<>";
}

void Compare(const std::string& text) {
  const SString fixed = Fixed(text);
  ASSERT_EQ(fixed, RepairedByPatterns(SString(std::string_view(text)))) << '\'' << text << '\'';
  const S821Address address(fixed);
  ASSERT_FALSE(address.IsBad()) << text;
  ASSERT_EQ(address.IsNull(), fixed == "<>") << text;
  ASSERT_TRUE(fixed == "<>" || fixed.Length() >= 3) << text;
  ASSERT_TRUE(fixed[0] == '<' && fixed[-1] == '>') << text;
}

TEST(AddressRepair, IsThatOfThePatternsForEveryShortText) {
  constexpr std::string_view kBytes = "a1@<>. \",\\(:";
  ForEveryText(kBytes, 5, Compare);
}

TEST(AddressRepair, IsThatOfThePatternsForLongerTexts) {
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
