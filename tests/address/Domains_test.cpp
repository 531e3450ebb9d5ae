#include "address/Domains.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "address/S821Parser.h"
#include "strings/SFixedString.h"
#include "support/ExactInput.h"

namespace {

struct Row {
  const char* what;
  std::string_view text;
  bool valid;
};

// Asks with a text that ends where a sanitizer sees the next byte.
template <class Question>
bool Ask(Question question, std::string_view text) {
  const ExactInput input(text);
  SFixedString fixed(input.Data(), input.Length());
  return question(fixed);
}

TEST(Domains, AreLabelsOrALiteral) {
  const Row rows[] = {
      {"two labels", "hub.lan", true},
      {"one label", "localhost", true},
      {"one byte", "a", true},
      {"many labels", "a.b.c.d.e.f", true},
      {"literal", "[10.0.0.1]", true},
      {"literal with blanks", "[10. 0 .0.1]", true},
      {"number alone", "123", true},
      {"number first", "1.a", true},
      {"number last", "a.1", false},
      {"numbers", "10.0.0.1", false},
      {"number and a letter last", "a.1b", true},
      {"number and a mark last", "a.1-", true},
      {"dot behind", "hub.lan.", false},
      {"dot before", ".hub.lan", false},
      {"two dots", "hub..lan", false},
      {"dot alone", ".", false},
      {"hyphen first", "-hub.lan", false},
      {"hyphen first in the second", "hub.-lan", false},
      {"hyphens", "h-u-b.lan-", true},
      {"underscore first", "_hub.lan", false},
      {"underscores", "h_b.lan_", true},
      {"marks", "#1.~a.?", true},
      {"marks behind", "a#.b~.c?", true},
      {"upper case", "HUB.LAN", true},
      {"high byte",
       "h\xFC"
       "b.lan",
       false},
      {"other mark", "hub!.lan", false},
      {"blanks around", " hub . lan ", true},
      {"blank between", "hub lan", false},
      {"tab", "hub\t.lan", false},
      {"escaped byte", "h\\ub.lan", false},
      {"quoted", "\"hub\".lan", false},
      {"literal and a label", "[10.0.0.1].lan", false},
      {"label and a literal", "hub.[10.0.0.1]", false},
      {"two literals", "[10.0.0.1][10.0.0.1]", false},
      {"no literal", "[10.0.0.256]", false},
      {"at-sign", "hub@lan", false},
      {"angle bracket", "hub.lan>", false},
      {"per-cent sign", "hub%lan", false},
      {"comma behind", "hub.lan,", false},
      {"NUL behind", std::string_view("hub.lan\0", 8), false},
      {"line end behind", "hub.lan\n", false},
      {"empty", "", false},
      {"blank alone", " ", false},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(Ask([](const SString& s) { return IsValidDomain(s); }, row.text), row.valid)
        << row.what;
    EXPECT_EQ(Ask([](const SString& s) { return S821Parser(s, 0).IsValidDomain(); }, row.text),
              row.valid)
        << row.what;
  }
  EXPECT_FALSE(IsValidDomain(SString()));
}

TEST(Domains, AParserLooksAtItsWholeText) {
  S821Parser parser("hub.lan");
  static_cast<void>(parser.NextToken());
  EXPECT_TRUE(parser.IsValidDomain());
  EXPECT_TRUE(parser.IsValidDomain());
}

// Which bytes a label has, first and later: every byte in both places.
TEST(Domains, LabelsAreTestedByteByByte) {
  const S821Parser parser("");
  const std::string first = "#?~0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
  const std::string later = first + "-_";
  for (int byte = 0; byte < 256; ++byte) {
    const char c = static_cast<char>(byte);
    EXPECT_EQ(parser.IsValidElement(SString(c)), first.find(c) != first.npos) << byte;
    EXPECT_EQ(parser.IsValidElement(SString("a") + c), later.find(c) != later.npos) << byte;
  }
  EXPECT_FALSE(parser.IsValidElement(SString()));
  EXPECT_FALSE(parser.IsValidElement(""));
}

}  // namespace
