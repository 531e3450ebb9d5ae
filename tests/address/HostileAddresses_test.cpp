// Texts that somebody sends on purpose: huge, and made of what scanners stumble over.

#include <gtest/gtest.h>

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>

#include "address/AddressRepair.h"
#include "address/Domains.h"
#include "address/Literals.h"
#include "address/S821Parser.h"
#include "address/S822Parser.h"
#include "strings/SFixedString.h"
#include "support/ExactInput.h"
#include "support/Growth.h"
#include "support/Text.h"

namespace {

constexpr int kMillion = 1'000'000;

// Under a sanitizer a tenth of it takes as long.
#if defined(__SANITIZE_ADDRESS__)
constexpr bool kSlow = true;
#elif defined(__has_feature)
constexpr bool kSlow = __has_feature(address_sanitizer);
#else
constexpr bool kSlow = false;
#endif
constexpr std::size_t kHuge = kSlow ? kMillion : 8 * kMillion;

SString Joined(std::initializer_list<std::string_view> parts) {
  SString text("");
  for (const std::string_view part : parts) text += part;
  return text;
}

// What a text comes to in each reader.
struct Outcome {
  bool strict, lenient;  // whether it is a good path
  int listed, good;      // addresses of the list, bad ones too; good ones

  bool operator==(const Outcome&) const = default;
};

std::ostream& operator<<(std::ostream& os, const Outcome& o) {
  return os << '{' << o.strict << ", " << o.lenient << ", " << o.listed << ", " << o.good << '}';
}

// Puts a text through every reader.
Outcome Read(const SString& text) {
  Outcome outcome{};
  outcome.strict = !S821Parser(text, 0).ExtractAddress().IsBad();
  S821Parser lenient(text, 1);
  const S821Address path = lenient.ExtractAddress();
  outcome.lenient = !path.IsBad();
  EXPECT_EQ(path.Get().Defined(), outcome.lenient);
  static_cast<void>(lenient.Extensions());
  S822Parser list(text);
  for (S822Address a = list.NextListed(); !a.IsEnd(); a = list.NextListed()) {
    ++outcome.listed;
    if (!a.IsBad()) ++outcome.good;
    static_cast<void>(a.Get());
  }
  EXPECT_LE(list.Addresses().Count(), outcome.good);
  EXPECT_FALSE(IsValidDomain(text) && text.Length() > 1 && !outcome.lenient);
  EXPECT_FALSE(IsValidLiteral(text));
  EXPECT_FALSE(S821Address(FixBogusAddress(text)).IsBad());
  return outcome;
}

// On a block that ends where a sanitizer sees the next byte.
Outcome ReadExact(std::string_view text) {
  const ExactInput input(text);
  SFixedString fixed(input.Data(), input.Length());
  return Read(fixed);
}

TEST(HostileAddresses, ManyTimesTheSameByte) {
  for (int byte = 0; byte < 256; ++byte) {
    const char c = static_cast<char>(byte);
    EXPECT_EQ(ReadExact(std::string(20'000, c)), ReadExact(std::string(64, c))) << byte;
  }
  for (const char c : std::string_view("(\"<\\@[>,:. \r\n\0a", 15)) {
    EXPECT_EQ(ReadExact(std::string(kHuge, c)), ReadExact(std::string(64, c))) << int{c};
  }
}

struct Unit {
  std::string_view text;
  Outcome outcome;  // of kMany units
};

constexpr int kMany = 100'000;

const Unit kUnits[] = {
    {"@a,", {false, false, 1, 0}},
    {"a:", {false, false, 1, 0}},
    {"a:;", {false, false, 0, 0}},
    {"(a)", {false, false, 0, 0}},
    {"()", {false, false, 0, 0}},
    {"(", {false, false, 1, 0}},
    {")", {false, false, 1, 0}},
    {"<>", {true, true, kMany, kMany}},
    {"<", {false, true, 1, 1}},
    {">", {true, true, 1, 0}},
    {"\"a\"", {false, false, 1, 1}},
    {"[1.2.3.4]", {false, true, 1, 0}},
    {"\\\"", {true, true, 1, 0}},
    {"\\", {true, true, 1, 0}},
    {"a,", {false, false, kMany, kMany}},
    {"<a@b>,", {true, true, kMany, kMany}},
    {"a@b,", {false, false, kMany, kMany}},
    {"a@b;", {false, false, 1, 0}},
    {"\r\n ", {false, false, 0, 0}},
    {"\r\n", {false, false, 0, 0}},
    {"\r\n  ", {false, false, 0, 0}},
    {"\r", {false, false, 1, 0}},
    {"\n", {false, false, 1, 0}},
    {" \r", {false, false, 1, 0}},
    {"a\r\n ", {false, false, 1, 0}},
    {"a\r\n  ", {false, false, 1, 1}},
    {"@a,\r\n ", {false, false, 1, 0}},
    {"<@a,", {false, false, kMany, 0}},
    {"\",", {false, false, 50000, 50000}},
    {"(,", {false, false, 1, 0}},
    {"[,", {false, false, 1, 0}},
    {"<,", {false, false, kMany, kMany}},
    {"a@@b,", {false, false, kMany, 0}},
    {"<a@@b,", {false, false, kMany, 0}},
    {"\\,", {true, true, 1, 0}},
    {"\"\\", {false, false, 1, 0}},
    {"(\\", {false, false, 1, 0}},
    {"[1 ", {false, false, 1, 0}},
    {"[ ", {false, false, 1, 0}},
    {"\"\r\n ", {false, false, 1, 1}},
    {"(\r\n ", {false, false, 1, 0}},
    {"[\r\n ", {false, false, 1, 0}},
    {"a ", {false, true, 1, 1}},
    {"a.", {false, true, 1, 1}},
    {".", {false, true, 1, 1}},
    {"a@", {false, false, 1, 0}},
    {"@", {false, false, 1, 0}},
    {"%", {false, true, 1, 1}},
    {"a%", {false, true, 1, 1}},
    {";", {false, false, 0, 0}},
    {":", {false, false, 1, 0}},
    {",", {false, false, 0, 0}},
    {"(\"", {false, false, 1, 0}},
    {"\"(", {false, false, 1, 0}},
    {"[(", {false, false, 1, 0}},
    {"<(,", {false, false, 1, 0}},
    {"<\",", {false, false, 50000, 50000}},
    {"\"<,", {false, false, 50000, 50000}},
    {"a<b>", {true, true, kMany, kMany}},
    {"a<b@c>", {true, true, kMany, kMany}},
    {"\"\" ", {false, false, 1, 1}},
    {"a\t", {true, true, 1, 1}},
};

TEST(HostileAddresses, ManyTimesTheSameBytes) {
  for (const Unit& unit : kUnits) {
    EXPECT_EQ(ReadExact(Repeated(unit.text, kMany)), unit.outcome) << unit.text;
  }
}

TEST(HostileAddresses, ManyTimesTheSameBytesInAngleBracketsAndQuotes) {
  for (const Unit& unit : kUnits) {
    for (const std::string_view open : {"<", "\"", "(", "[", "a@", "<a@", "g:", "<@", "a <"}) {
      static_cast<void>(ReadExact(Joined({open, Repeated(unit.text, 1000)}).View()));
    }
  }
}

TEST(HostileAddresses, TakeLinearTime) {
  for (const Unit& unit : kUnits) {
    for (const std::string_view open : {"", "<", "<a@", "g:"}) {
      const auto read = [&](int n) {
        static_cast<void>(Read(Joined({open, Repeated(unit.text, n)})));
      };
      EXPECT_TRUE(GrowsLinearly(3'000, read)) << open << ' ' << unit.text;
    }
  }
}

// --- A million of each --------------------------------------------------------------------

TEST(HostileAddresses, AMillionHosts) {
  const SString text = Joined({"<", Repeated("@a,", kMillion), "@b:joe@hub>"});
  const S821Address path(text);
  EXPECT_EQ(path.Route().Count(), kMillion + 1);
  EXPECT_EQ(path.Get(), text);
  EXPECT_EQ(S822Parser(text).Addresses().Get(0), text);
  EXPECT_EQ(S822Parser(Joined({"x ", text.View()})).NextAddress().Route().Count(), kMillion + 1);
}

TEST(HostileAddresses, AMillionGroups) {
  const SString text = Joined({Repeated("a:;", kMillion), "joe@hub"});
  S822Parser parser(text);
  EXPECT_EQ(parser.NextAddress().Get(), "joe@hub");
  EXPECT_TRUE(parser.NextAddress().IsEnd());
}

TEST(HostileAddresses, AMillionComments) {
  const std::string many = Repeated("(a)", kMillion), deep = Repeated("(", kMillion);
  const std::string nested = deep + Repeated(")", kMillion);
  for (const std::string& comments : {many, nested}) {
    const SString before = Joined({comments, "joe@hub"});
    EXPECT_EQ(S822Parser(before).NextAddress().Get(), "joe@hub");
    const SString behind = Joined({"joe@hub", comments});
    EXPECT_EQ(S822Parser(behind).NextAddress().Domain(), "hub");
    const SString within = Joined({"<joe", comments, "@", comments, "hub>"});
    EXPECT_EQ(S822Parser(within).NextAddress().Get(), "joe@hub");
  }
  const SString nestedBehind = Joined({"joe@hub ", nested});
  EXPECT_EQ(S822Parser(nestedBehind).NextAddress().Comment(), std::string_view(nested));
}

TEST(HostileAddresses, AMillionWordsLabelsAndAddresses) {
  const std::string words = Repeated("a ", kMillion), labels = Repeated("a.", kMillion);
  S822Address address = S822Parser(Joined({words, "<joe@", labels, "b>"})).NextAddress();
  EXPECT_EQ(address.Phrase().Length(), 2 * kMillion - 1);
  EXPECT_EQ(address.Domain().Length(), 2 * kMillion + 1);
  address = S822Parser(Joined({words, "@", labels})).NextAddress();
  EXPECT_TRUE(address.IsValid());
  EXPECT_EQ(address.LocalPart().Length(), 2 * kMillion - 1);
  EXPECT_EQ(S822Parser(Joined({Repeated("a@b,", kMillion)})).Addresses().Count(), kMillion);
}

}  // namespace
