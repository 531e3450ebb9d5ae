#include "address/S822Address.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "address/S822Parser.h"
#include "support/AddressParts.h"
#include "support/CheckText.h"

namespace {

S822Address Made(const char* envelope, const char* phrase, const char* comment) {
  S822Address address((S821Address(envelope)));
  address.Phrase() = phrase;
  address.Comment() = comment;
  return address;
}

TEST(S822Address, IsNullByDefault) {
  const S822Address address;
  EXPECT_TRUE(address.IsNull());
  EXPECT_FALSE(address.IsBad());
  EXPECT_FALSE(address.IsValid());
  EXPECT_FALSE(address.IsEnd());
  CheckText(address.Get(), "<>");
  EXPECT_EQ(address.Phrase(), "");
  EXPECT_EQ(address.Comment(), "");
}

TEST(S822Address, IsWrittenAsInAHeader) {
  struct Row {
    const char* what;
    const char *envelope, *phrase, *comment, *text;
  };
  const Row rows[] = {
      {"bare", "joe@hub.lan", "", "", "joe@hub.lan"},
      {"local part alone", "joe", "", "", "joe"},
      {"one byte", "j", "", "", "j"},
      {"phrase", "joe@hub.lan", "Joe X", "", "Joe X <joe@hub.lan>"},
      {"comment", "joe@hub.lan", "", "(Joe)", "joe@hub.lan (Joe)"},
      {"the phrase wins", "joe@hub.lan", "Joe", "(X)", "Joe <joe@hub.lan>"},
      {"the phrase is not quoted", "joe@hub.lan", "J. <X>", "", "J. <X> <joe@hub.lan>"},
      {"route", "<@r:joe@hub.lan>", "", "", "<@r:joe@hub.lan>"},
      {"route and comment", "<@r:joe@hub.lan>", "", "(Joe)", "<@r:joe@hub.lan> (Joe)"},
      {"route and phrase", "<@r:joe@hub.lan>", "Joe", "", "Joe <@r:joe@hub.lan>"},
      {"null", "<>", "", "", "<>"},
      {"null drops the rest", "<>", "Joe", "(Joe)", "<>"},
      {"quoted local part", "\"a b\"@hub", "", "", "\"a b\"@hub"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    const S822Address address = Made(row.envelope, row.phrase, row.comment);
    CheckText(address.Address(), row.text);
    CheckText(address.Get(), row.text);
    CheckText(address.S821Address::Address(), S821Address(row.envelope).Get().View());
  }
  CheckUndefined(Made("joe@10.1.2.3", "Joe", "(Joe)").Get());
}

TEST(S822Address, TheEnvelopeLosesTheBlanksOfALiteral) {
  const std::pair<const char*, const char*> rows[] = {{"a@[1.1.1.1]", "<a@[1.1.1.1]>"},
                                                      {"a@[1. 1.1.1]", "<a@[1.1.1.1]>"},
                                                      {"<a@[1 .1.1.1]>", "<a@[1.1.1.1]>"},
                                                      {"<[1. 1.1.1]@b>", "<[1.1.1.1]@b>"}};
  for (const auto& [text, form] : rows) {
    const S822Address address = S822Parser(text).NextAddress();
    EXPECT_EQ(S821Address(address.S821Address::Address()).Get(), form) << text;
  }
}

TEST(S822Address, PhraseAndCommentReadBackButBehindAPerCentSign) {
  struct Row {
    const char *text, *phrase, *comment;
  };
  const Row rows[] = {{"John  Smith <joe@hub>", "John Smith", ""},
                      {R"("Smith, \"J\"" X. <joe@hub>)", R"("Smith, \"J\"" X.)", ""},
                      {"joe@hub (Joe (x) \\) y)", "", "(Joe (x) \\) y)"},
                      {"% a b <joe@hub>", "%ab", ""},
                      {"a %\"b\" <joe@hub>", "a% \"b\"", ""}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.text);
    const SString text = S822Parser(row.text).NextAddress().Get();
    const S822Address again = S822Parser(text).NextAddress();
    EXPECT_EQ(again.Phrase(), row.phrase);
    EXPECT_EQ(again.Comment(), row.comment);
  }
}

TEST(S822Address, TheFirstByteGoesWhateverItIs) {
  S822Address address;
  address.LocalPart() = SString("\n\0x", 3);
  CheckText(address.Get(), std::string_view("\n\0x", 3));
}

TEST(S822Address, TheEndOfAListIsNoText) {
  S822Parser parser("");
  const S822Address end = parser.NextAddress();
  EXPECT_TRUE(end.IsEnd());
  CheckText(end.Get(), "");
  const S822Address copy(end);
  EXPECT_TRUE(copy.IsEnd());
  S822Address other;
  other = end;
  EXPECT_TRUE(other.IsEnd());
  other = S821Address("joe@hub");
  EXPECT_FALSE(other.IsEnd());
  EXPECT_EQ(other.Get(), "joe@hub");
  EXPECT_FALSE(S822Address(static_cast<const S821Address&>(end)).IsEnd());
}

TEST(S822Address, TakesTheAddressOfAnEnvelope) {
  S822Address address = Made("joe@hub", "Joe", "(Joe)");
  address = S821Address("<@r:jim@lan>");
  EXPECT_EQ(PartsOf(address), (AddressParts{{"r"}, "jim", "lan"}));
  EXPECT_EQ(address.Phrase(), "");
  EXPECT_EQ(address.Comment(), "");
  address = S821Address("@");
  EXPECT_TRUE(address.IsBad());
}

TEST(S822Address, CopiesAllOfIt) {
  const S822Address joe = Made("joe@hub", "Joe", "(J)");
  S822Address copy(joe);
  copy.Phrase() = "Jim";
  EXPECT_EQ(joe.Phrase(), "Joe");
  EXPECT_EQ(copy.Comment(), "(J)");
  copy = joe;
  EXPECT_EQ(copy.Get(), "Joe <joe@hub>");
  S822Address moved(std::move(copy));
  EXPECT_EQ(moved.Get(), "Joe <joe@hub>");
  copy = std::move(moved);
  EXPECT_EQ(copy.Get(), "Joe <joe@hub>");
}

// Known and kept.
TEST(S822Address, SetReadsAnEnvelopeAndLeavesTheRest) {
  S822Address address = Made("joe@hub", "Joe", "(J)");
  address.Set("Jim <jim@lan> (x)");
  EXPECT_EQ(address.Phrase(), "Joe");
  EXPECT_EQ(address.Comment(), "(J)");
  EXPECT_EQ(address.Get(), "Joe <jim@lan>");
  S822Parser parser("");
  S822Address end = parser.NextAddress();
  end.Set("jim@lan");
  EXPECT_TRUE(end.IsEnd());
  EXPECT_EQ(end.LocalPart(), "jim");
}

}  // namespace
