// Why an address is bad, and where.

#include "address/SAddressFault.h"

#include <gtest/gtest.h>

#include <ostream>
#include <set>
#include <string>
#include <string_view>

#include "address/S821Parser.h"
#include "address/S822Parser.h"

inline namespace mailhearth {

std::ostream& operator<<(std::ostream& os, AddressFlaw flaw) {
  return os << '"' << Describe(flaw) << '"';
}

}  // namespace mailhearth

namespace {

using enum AddressFlaw;

struct Row {
  std::string_view text;
  AddressFlaw flaw;
  int position;
};

TEST(SAddressFault, OfPaths) {
  const Row rows[] = {
      {"<joe@hub.lan>", kNone, -1},
      {"<>", kNone, -1},
      {"<joe@hub> [", kNone, -1},
      {"<> \"", kNone, -1},

      {"\"joe", kOpenQuotes, 0},
      {"x \"joe <a@b>", kOpenQuotes, 2},
      {"<\"jo\ne\"@b>", kLineEnd, 4},
      {"<\"jo\re\"@b>", kLineEnd, 4},
      {"joe@[1.2", kOpenLiteral, 4},
      {"joe@[1.2.3]", kLiteral, 4},
      {"joe@[1.2.x]", kLiteral, 9},
      {"joe@[1. 2\t]", kLiteral, 9},
      {"<jo\x01>", kByte, 3},
      {"<jo(x)@b>", kByte, 3},
      {"<joe@b\n", kByte, 6},
      {std::string_view("<joe@\0", 6), kByte, 5},

      {"<@a b:joe@c>", kRoute, 4},
      {"<@a,b:joe@c>", kRoute, 4},
      {"<@a", kRoute, 3},
      {"<@:joe@c>", kRoute, 2},
      {"<@a..b:joe@c>", kRoute, 4},
      {"<@a,@-b:joe@c>", kLabel, 5},
      {"<@a[:joe@c>", kLiteral, 4},
      {"<@a(:joe@c>", kByte, 3},

      {"<joe,x@b>", kLocalPart, 4},
      {"<joe<x@b>", kLocalPart, 4},
      {"<joe \"x\"@b>", kLocalPart, 5},

      {"<joe@>", kEmptyDomain, 5},
      {"joe@", kEmptyDomain, 4},
      {"joe@ ", kEmptyDomain, 5},
      {"<joe@hub..lan>", kDomain, 9},
      {"<joe@hub lan>", kDomain, 9},
      {"<joe@ hub@lan>", kDomain, 9},
      {"<joe@hub.-lan>", kLabel, 9},
      {"<joe@ 10.1.2.3>", kInvalidDomain, 6},
      {"<joe@[1.2.3.4].a> \"", kInvalidDomain, 5},

      {"<@a:joe>", kIncomplete, 8},
      {"<@a:@b>", kIncomplete, 7},
      {"<@a:@b>> [", kIncomplete, 8},
  };
  for (const Row& row : rows) {
    S821Parser parser(SString(row.text), 1);
    const S821Address address = parser.ExtractAddress();
    EXPECT_EQ(address.IsBad(), row.flaw != kNone) << row.text;
    EXPECT_EQ(parser.Fault().flaw, row.flaw) << row.text;
    EXPECT_EQ(parser.Fault().position, row.position) << row.text;
  }
}

TEST(SAddressFault, OfStrictLocalParts) {
  const Row rows[] = {
      {"<a..b@c>", kLocalPart, 3}, {"<.a@c>", kLocalPart, 1}, {"<a b@c>", kLocalPart, 3},
      {"<", kLocalPart, 1},        {"", kLocalPart, 0},       {"a.", kLocalPart, 2},
      {"<@a:@b>", kLocalPart, 4},
  };
  for (const Row& row : rows) {
    S821Parser parser(SString(row.text), 0);
    EXPECT_TRUE(parser.ExtractAddress().IsBad()) << row.text;
    EXPECT_EQ(parser.Fault().flaw, row.flaw) << row.text;
    EXPECT_EQ(parser.Fault().position, row.position) << row.text;
  }
}

TEST(SAddressFault, OfLists) {
  const Row rows[] = {
      {"a@b", kNone, -1},
      {"", kNone, -1},
      {"<a@b> \"", kNone, -1},

      {"\"a", kOpenQuotes, 0},
      {"a@b (c(d)", kOpenComment, 4},
      {"a@[1", kOpenLiteral, 2},
      {"a@[[1]", kLiteral, 3},
      {"a \\b", kByte, 2},
      {"a )", kByte, 2},
      {"a\x01@b", kByte, 1},
      {"\x7F", kByte, 0},
      {"a@b\rc", kLineEnd, 3},
      {"a@\"b\r\nc\"", kLineEnd, 4},
      {"a@b\r\n c", kByte, 4},

      {"> a@b", kStart, 0},
      {"(x), [a]", kStart, 5},
      {": a", kStart, 0},
      {"a b > c", kWords, 4},
      {"a [b] <c>", kWords, 6},
      {"g: h: a@b", kGroup, 4},
      {"a [b]: c", kGroup, 5},
      {"a;", kGroup, 1},
      {"a@b ;", kGroup, 4},
      {"a <@b,c:d@e>", kRoute, 6},
      {"@b,", kRoute, 3},
      {"<a:b@c>", kLocalPart, 2},
      {"<a;", kLocalPart, 2},
      {"<a@b@c>", kDomain, 4},
      {"<a@b.-c>", kLabel, 5},
      {"a@b@c", kDomain, 3},
      {"a@b:c", kDomain, 3},
      {"a@, b", kEmptyDomain, 2},
      {"a@.", kEmptyDomain, 3},
      {"<a@(x)>", kEmptyDomain, 6},
      {"a@ (x) b c", kInvalidDomain, 7},
      {"a@1.2, b", kInvalidDomain, 2},
      {"<@r:a>, b", kIncomplete, 6},
  };
  for (const Row& row : rows) {
    S822Parser parser{SString(row.text)};
    const S822Address address = parser.NextAddress();
    EXPECT_EQ(address.IsBad(), row.flaw != kNone) << row.text;
    EXPECT_EQ(parser.Fault().flaw, row.flaw) << row.text;
    EXPECT_EQ(parser.Fault().position, row.position) << row.text;
    parser.Reset();
    static_cast<void>(parser.NextListed());
    EXPECT_EQ(parser.Fault().flaw, row.flaw) << row.text << ": listed";
    EXPECT_EQ(parser.Fault().position, row.position) << row.text << ": listed";
  }
}

TEST(SAddressFault, IsThatOfTheLastAddress) {
  S822Parser parser("a@@b, c@d, e@1.2");
  EXPECT_TRUE(parser.NextListed().IsBad());
  EXPECT_EQ(parser.Fault().position, 2);
  EXPECT_FALSE(parser.NextListed().IsBad());
  EXPECT_EQ(parser.Fault().flaw, kNone);
  EXPECT_EQ(parser.Fault().position, -1);
  EXPECT_TRUE(parser.NextListed().IsBad());
  EXPECT_EQ(parser.Fault().position, 13);
  EXPECT_TRUE(parser.NextListed().IsEnd());
  EXPECT_EQ(parser.Fault().flaw, kNone);
}

TEST(SAddressFault, TellsWhatTheScannerMet) {
  S822Parser parser("a (b");
  EXPECT_EQ(parser.NextToken().View(), "a");
  EXPECT_EQ(parser.Fault().flaw, kNone);
  EXPECT_EQ(parser.NextToken().Type(), TokError);
  EXPECT_EQ(parser.Fault().flaw, kOpenComment);
  EXPECT_EQ(parser.Fault().position, 2);
}

// A parser whose scanner does not tell what is wrong.
class Silent : public S821Parser {
 public:
  using S821Parser::S821Parser;
  SToken NextToken() override {
    SToken token = S821Parser::NextToken();
    if (token.Type() != TokError) return token;
    fault_ = {};
    return {"", TokError};
  }
};

TEST(SAddressFault, IsSomethingForAnyScanner) {
  Silent parser("joe \"", 1);
  EXPECT_TRUE(parser.ExtractAddress().IsBad());
  EXPECT_EQ(parser.Fault().flaw, kByte);
  EXPECT_EQ(parser.Fault().position, 4);
}

TEST(SAddressFault, EachIsDescribedInItsOwnWords) {
  std::set<std::string> texts;
  for (int flaw = 0; flaw <= static_cast<int>(kIncomplete); ++flaw) {
    texts.insert(Describe(static_cast<AddressFlaw>(flaw)));
  }
  EXPECT_EQ(texts.size(), static_cast<std::size_t>(kIncomplete) + 1);
  EXPECT_STREQ(Describe(kNone), "");
  EXPECT_STREQ(Describe(static_cast<AddressFlaw>(200)), "");
}

}  // namespace
