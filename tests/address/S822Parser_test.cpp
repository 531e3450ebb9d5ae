#include "address/S822Parser.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "strings/SFixedString.h"
#include "support/AddressParts.h"
#include "support/CheckText.h"
#include "support/EveryText.h"
#include "support/ExactInput.h"
#include "support/FailEachAllocation.h"

namespace {

using Names = std::vector<std::string>;

std::string_view operator""_v(const char* text, std::size_t n) { return {text, n}; }

// One answer of NextAddress.
struct Answer {
  enum Kind { kGood, kBad, kEnd } kind = kGood;
  AddressParts parts;
  std::string phrase, comment;

  bool operator==(const Answer&) const = default;
};

std::ostream& operator<<(std::ostream& os, const Answer& answer) {
  constexpr const char* kKinds[] = {"good ", "bad ", "end "};
  return os << kKinds[answer.kind] << answer.parts << " phrase '" << answer.phrase << "' comment '"
            << answer.comment << "'";
}

using Answers = std::vector<Answer>;

Answer AnswerOf(const S822Address& address) {
  const Answer::Kind kind = address.IsEnd()   ? Answer::kEnd
                            : address.IsBad() ? Answer::kBad
                                              : Answer::kGood;
  return {kind, PartsOf(address), std::string(address.Phrase().View()),
          std::string(address.Comment().View())};
}

// A parser on a text that ends where a sanitizer sees the next byte.
struct Reader {
  explicit Reader(std::string_view text)
      : input(text), fixed(input.Data(), input.Length()), parser(fixed) {}

  ExactInput input;
  SFixedString fixed;
  S822Parser parser;
};

// The answers up to the end, to the first bad one, or to the tenth.
Answers Read(std::string_view text) {
  Reader reader(text);
  Answers answers;
  do {
    const S822Address address = reader.parser.NextAddress();
    answers.push_back(AnswerOf(address));
    EXPECT_EQ(reader.parser.Fault().flaw != AddressFlaw::kNone, address.IsBad());
    EXPECT_EQ(reader.parser.Fault().position >= 0, address.IsBad());
  } while (answers.back().kind == Answer::kGood && answers.size() < 10);
  if (answers.back().kind == Answer::kEnd) {
    EXPECT_EQ(AnswerOf(reader.parser.NextAddress()), answers.back()) << "the end stays";
  }
  return answers;
}

Answer Good(std::string local, std::string domain, std::string phrase = "",
            std::string comment = "") {
  return {Answer::kGood,
          {{}, std::move(local), std::move(domain)},
          std::move(phrase),
          std::move(comment)};
}
Answer Routed(Names route, std::string local, std::string domain, std::string phrase = "") {
  return {Answer::kGood,
          {std::move(route), std::move(local), std::move(domain)},
          std::move(phrase),
          ""};
}
Answer Bad(std::string local = "", std::string domain = "", std::string phrase = "") {
  return {Answer::kBad, {{}, std::move(local), std::move(domain)}, std::move(phrase), ""};
}
const Answer kEnd = {Answer::kEnd, {}, "", ""};

struct Row {
  const char* what;
  std::string_view text;
  Answers answers;
};

void Check(const Row& row) {
  SCOPED_TRACE(row.what);
  EXPECT_EQ(Read(row.text), row.answers);
}

TEST(S822Parser, ReadsAddresses) {
  const Row rows[] = {
      {"nothing", "", {kEnd}},
      {"blanks and commas", " ,\t, ,", {kEnd}},
      {"comments alone", "(a) (b), (c)", {kEnd}},
      {"semicolons alone", ";;,;", {kEnd}},
      {"bare", "a@b.lan", {Good("a", "b.lan"), kEnd}},
      {"two", "a@b.lan, c@d.lan", {Good("a", "b.lan"), Good("c", "d.lan"), kEnd}},
      {"commas around", ",, a@b.lan ,, c@d.lan ,", {Good("a", "b.lan"), Good("c", "d.lan"), kEnd}},
      {"local part alone", "joe", {Good("joe", ""), kEnd}},
      {"local parts alone", "joe, jim", {Good("joe", ""), Good("jim", ""), kEnd}},
      {"words", "john smith@hub.lan", {Good("john.smith", "hub.lan"), kEnd}},
      {"words alone", "john smith", {Good("john.smith", ""), kEnd}},
      {"dots and words", "a. b c .d@h", {Good("a.b.c.d", "h"), kEnd}},
      {"dot first", ".a@h", {Good(".a", "h"), kEnd}},
      {"dot alone", ".", {Good(".", ""), kEnd}},
      {"per-cent", "a%b@h", {Good("a%b", "h"), kEnd}},
      {"quoted", R"("a b"@h)", {Good(R"("a b")", "h"), kEnd}},
      {"quoted for nothing", R"("ab"@h)", {Good("ab", "h"), kEnd}},
      {"quoted, a dot, atom", R"("a b".c@h)", {Good(R"("a b".c)", "h"), kEnd}},
      {"quoted and atom", R"("a b" c@h)", {Good(R"("a b".c)", "h"), kEnd}},
      {"literal in the local part", "a [x] b@h", {Good("a[x]b", "h"), kEnd}},
      {"blanks in the domain", "a@ b . lan .", {Good("a", "b.lan"), kEnd}},
      {"dot behind the domain", "a@b.lan.", {Good("a", "b.lan"), kEnd}},
      {"literal", "a@[1.2.3.4]", {Good("a", "[1.2.3.4]"), kEnd}},
      {"one number", "a@1", {Good("a", "1"), kEnd}},

      {"comment behind",
       "john@hub.lan (John Smith)",
       {Good("john", "hub.lan", "", "(John Smith)"), kEnd}},
      {"comment before", "(Note) john@hub.lan", {Good("john", "hub.lan"), kEnd}},
      {"comment within", "john(1)@(2)hub(3).(4)lan", {Good("john", "hub.lan"), kEnd}},
      {"last of the comments", "john@hub (1) (2)", {Good("john", "hub", "", "(2)"), kEnd}},
      {"comment of a local part", "john (1)", {Good("john", "", "", "(1)"), kEnd}},
      {"comment between words", "john (1) smith", {Good("john.smith", ""), kEnd}},
      {"comments of two",
       "a@b (1), c@d (2)",
       {Good("a", "b", "", "(1)"), Good("c", "d", "", "(2)"), kEnd}},
      {"comment before the comma of another",
       "a@b, (1) c@d",
       {Good("a", "b"), Good("c", "d"), kEnd}},
      {"nested comment", "a@b ((1) \\) 2)", {Good("a", "b", "", "((1) \\) 2)"), kEnd}},
      {"folded comment", "a@b (1\r\n 2)", {Good("a", "b", "", "(1 2)"), kEnd}},
      {"comment behind the at-sign", "a@(1)b", {Good("a", "b"), kEnd}},

      {"phrase", "John Smith <john@hub.lan>", {Good("john", "hub.lan", "John Smith"), kEnd}},
      {"phrase of one", "John<john@hub.lan>", {Good("john", "hub.lan", "John"), kEnd}},
      {"phrase with a dot",
       "John Q. Smith <john@hub.lan>",
       {Good("john", "hub.lan", "John Q.Smith"), kEnd}},
      {"phrase quoted",
       R"("Smith, John" <john@hub.lan>)",
       {Good("john", "hub.lan", R"("Smith, John")"), kEnd}},
      {"phrase quoted and atom",
       R"("J" Smith <john@hub.lan>)",
       {Good("john", "hub.lan", R"("J" Smith)"), kEnd}},
      {"phrase quoted with a fold", "\"J\r\n\t S\" x <j@h>", {Good("j", "h", "\"J S\" x"), kEnd}},
      {"phrase and comment",
       "John (1) Smith (2) <john@hub.lan>",
       {Good("john", "hub.lan", "John Smith"), kEnd}},
      {"phrase over blanks",
       "John \t  Smith   <john@hub.lan>",
       {Good("john", "hub.lan", "John Smith"), kEnd}},
      {"comment behind the bracket",
       "John <john@hub.lan> (1), a@b",
       {Good("john", "hub.lan", "John"), Good("a", "b"), kEnd}},

      {"angle", "<a@b.lan>", {Good("a", "b.lan"), kEnd}},
      {"angles", "<<a@b.lan>>", {Good("a", "b.lan"), kEnd}},
      {"angles open", "<a@b.lan", {Good("a", "b.lan"), kEnd}},
      {"angles open, comma", "<a@b.lan, c@d", {Good("a", "b.lan"), Good("c", "d"), kEnd}},
      {"angle, dot behind", "<a@b.lan.>", {Good("a", "b.lan"), kEnd}},
      {"angle, local part alone", "Joe <joe>", {Good("joe", "", "Joe"), kEnd}},
      {"angle, local part open", "Joe <joe", {Good("joe", "", "Joe"), kEnd}},
      {"angle, local part and comma",
       "Joe <joe, a@b",
       {Good("joe", "", "Joe"), Good("a", "b"), kEnd}},
      {"angle, words", "<john smith@h>", {Good("john.smith", "h"), kEnd}},
      {"angle, quoted and literal", R"(<"a b"[x].c@h>)", {Good(R"("a b"[x].c)", "h"), kEnd}},
      {"angle, comments", "<(1)a(2)@(3)b(4).(5)c(6)>", {Good("a", "b.c"), kEnd}},
      {"angle and words behind",
       "<a@b> x, c@d",
       {Good("a", "b"), Good("x", ""), Good("c", "d"), kEnd}},
      {"two angles", "<a@b><c@d>", {Good("a", "b"), Good("c", "d"), kEnd}},
      {"angle open and nothing", "<", {Good("", ""), kEnd}},
      {"angle open and a comma", "<, a@b", {Good("", ""), Good("a", "b"), kEnd}},
      {"angle and no local part", "<@>", {Bad()}},

      {"null", "<>", {Good("", ""), kEnd}},
      {"null with a phrase", "Joe <>", {Good("", "", "Joe"), kEnd}},
      {"null repeated", "<<>>, a@b", {Good("", ""), Good("a", "b"), kEnd}},
      {"null and text", "<> a@b", {Good("", ""), Good("a", "b"), kEnd}},

      {"route", "<@r1,@r2:a@b.lan>", {Routed({"r1", "r2"}, "a", "b.lan"), kEnd}},
      {"route and phrase", "A <@r1:a@b.lan>", {Routed({"r1"}, "a", "b.lan", "A"), kEnd}},
      {"route bare",
       "@r1,@r2:a@b.lan, c@d",
       {Routed({"r1", "r2"}, "a", "b.lan"), Good("c", "d"), kEnd}},
      {"route with comments",
       "<@(1)r1(2),@r2:(3)a@b.lan>",
       {Routed({"r1", "r2"}, "a", "b.lan"), kEnd}},

      {"group", "friends: a@b.lan, c@d.lan;", {Good("a", "b.lan"), Good("c", "d.lan"), kEnd}},
      {"group of words", "my \"best\" friends.: a@b;", {Good("a", "b"), kEnd}},
      {"group with a comment", "g (1): a@b;", {Good("a", "b"), kEnd}},
      {"group, empty", "g:;", {kEnd}},
      {"group, empty, and more", "g:;, a@b", {Good("a", "b"), kEnd}},
      {"group with commas", "g:, ,a@b, ;", {Good("a", "b"), kEnd}},
      {"group of angles",
       "g: A <a@b>, <c@d>; e@f",
       {Good("a", "b", "A"), Good("c", "d"), Good("e", "f"), kEnd}},
      {"group of local parts", "g: a; b", {Good("a", ""), Good("b", ""), kEnd}},
      {"groups", "g: a@b; h: c@d;", {Good("a", "b"), Good("c", "d"), kEnd}},
      {"empty groups", "g:;h:;i:; a@b", {Good("a", "b"), kEnd}},
      {"group open", "g: a@b", {Good("a", "b"), kEnd}},
      {"group behind an address",
       "a@b, g: c@d;, e@f",
       {Good("a", "b"), Good("c", "d"), Good("e", "f"), kEnd}},
      {"comment behind a member", "g: a@b (1);", {Good("a", "b", "", "(1)"), kEnd}},
      {"group of a null", "g: <>;", {Good("", ""), kEnd}},

      {"fold behind a comma", "a@b,\r\n c@d", {Good("a", "b"), Good("c", "d"), kEnd}},
      {"fold with two blanks", "a@b\r\n  (1)", {Good("a", "b", "", "(1)"), kEnd}},
      {"fold behind a bracket", "<a@b>\r\n (1),c", {Good("a", "b"), Good("c", ""), kEnd}},
      {"line end last", "a@b\r\n", {Good("a", "b"), kEnd}},
  };
  for (const Row& row : rows) Check(row);
}

TEST(S822Parser, RefusesWhatIsNoAddress) {
  const Row rows[] = {
      {"numbers", "a@10.1.2.3", {Bad("a", "10.1.2.3")}},
      {"empty domain", "a@", {Bad("a")}},
      {"empty domain, comma", "a@, b@c", {Bad("a")}},
      {"domain of a dot", "a@.", {Bad("a")}},
      {"two dots", "a@b..c", {Bad("a", "b..c")}},
      {"two dots behind", "a@b..", {Bad("a", "b.")}},
      {"two labels", "a@b c", {Bad("a", "b c")}},
      {"bad label", "a@-b", {Bad("a", "-b")}},
      {"literal and label", "a@[1.2.3.4].b", {Bad("a", "[1.2.3.4].b")}},
      {"literal out of range", "a@[1.2.3.256]", {Bad("a", "[1.2.3.256]")}},
      {"quoted domain", "a@\"b\"", {Bad("a")}},
      {"two at-signs", "a@b@c", {Bad("a")}},
      {"bracket in the domain", "a@b<c", {Bad("a")}},
      {"closing bracket in the domain", "a@b>", {Bad("a")}},
      {"colon in the domain", "a@b:c", {Bad("a")}},
      {"semicolon outside a group", "a@b;", {Bad("a")}},
      {"semicolon behind words", "a;", {Bad()}},
      {"colon in a group", "g: h: a@b;", {Bad()}},
      {"colon in a group, behind a member", "g: a@b, h: c@d;", {Good("a", "b"), Bad()}},
      {"colon behind a literal", "a [1]: b@c;", {Bad()}},
      {"bracket behind a literal", "a [1] <b@c>", {Bad()}},
      {"bracket first", ">", {Bad()}},
      {"literal first", "[1.2.3.4]@h", {Bad()}},
      {"colon first", ": a@b", {Bad()}},
      {"error first", "\"a", {Bad()}},
      {"control first", "\x01", {Bad()}},
      {"stray parenthesis", ") a@b", {Bad()}},
      {"bracket behind words", "a >", {Bad()}},
      {"error behind words", "a \\", {Bad()}},
      {"open comment", "a@b (1", {Bad("a")}},
      {"bare line end", "a@b\rc", {Bad("a")}},
      {"NUL", "a@b\0"_v, {Bad("a")}},
      {"second bracket in angles", "<a<b>", {Bad()}},
      {"semicolon in angles", "g: <a;", {Bad()}},
      {"colon in angles", "A <a:b>", {Bad("", "", "A")}},
      {"error in angles", "<a\\>", {Bad()}},
      {"empty domain in angles", "<a@>", {Bad("a")}},
      {"empty domain in angles, comma", "<a@, b>", {Bad("a")}},
      {"dot first in angles", "<a@.b>", {Bad("a")}},
      {"two dots in angles", "<a@b..c>", {Bad("a", "b.")}},
      {"two labels in angles", "<a@b c>", {Bad("a", "b")}},
      {"bad label in angles", "<a@b.-c>", {Bad("a", "b.")}},
      {"two at-signs in angles", "<a@b@c>", {Bad("a", "b")}},
      {"semicolon in the domain in angles", "g: <a@b;>", {Bad("a", "b")}},
      {"route without colon", "<@a,b@c>", {Bad()}},
      {"route that ends", "@a", {Bad()}},
  };
  for (const Row& row : rows) Check(row);
}

// Known and kept.
TEST(S822Parser, TheDomainInAngleBracketsNeedOnlyHaveLabels) {
  Check({"numbers", "<a@10.1.2.3>", {Good("a", "10.1.2.3"), kEnd}});
  Check({"literal and label", "<a@[x].b>", {Good("a", "[x].b"), kEnd}});
}

// Known and kept.
TEST(S822Parser, OneClosingBracketIsTakenBehindALocalPartAlone) {
  Check({"two", "<a>>, b@c", {Good("a", ""), Bad()}});
  Check({"one", "<a>, b@c", {Good("a", ""), Good("b", "c"), kEnd}});
}

// Known and kept.
TEST(S822Parser, ASingleBlankInAFoldBehindAnAtomIsNotEnough) {
  Check({"one", "a@b\r\n (1)", {Bad("a")}});
  Check({"one, in a phrase", "John\r\n Smith <a@b>", {Bad()}});
  Check({"two, in a phrase", "John\r\n  Smith <a@b>", {Good("a", "b", "John Smith"), kEnd}});
}

TEST(S822Parser, ALineEndWithoutAFoldEndsTheList) {
  for (const char* const text : {"\r\nc@d", "a@b\r\nc@d", "a\r\nc@d", "<a@b\r\nc@d", "<a\r\nc@d",
                                 "<a@b>\r\nc@d", "a@b,\r\nc@d", "g: a@b;\r\nc@d"}) {
    Reader reader(text);
    const bool empty = *text == '\r';
    if (!empty) {
      EXPECT_EQ(reader.parser.NextAddress().LocalPart(), "a") << text;
    }
    for (int n = 0; n < 3; ++n) EXPECT_TRUE(reader.parser.NextAddress().IsEnd()) << text;
    EXPECT_EQ(reader.parser.Addresses().Count(), empty ? 0 : 1) << text;
  }
}

TEST(S822Parser, ALineEndInABadAddressEndsTheListToo) {
  for (const char* const text :
       {"<a@\r\nb@c.d", "<a@(1)\r\nb@c.d", "<a@ \r\nb@c.d", "A <a@\r\n,b@c.d", "g: <a@\r\nb@c.d;",
        "a@\r\nb@c.d", "a@1.2\r\nb@c.d", "<@r\r\nb@c.d", "<@r.\r\nb@c.d", "<@\r\nb@c.d",
        "<@r,\r\n@s:b@c.d", "<@r,@\r\nb@c.d", "<@r,@s\r\n:b@c.d", "@r\r\nb@c.d", "@\r\nb@c.d"}) {
    SCOPED_TRACE(text);
    for (const auto next : {&S822Parser::NextAddress, &S822Parser::NextListed}) {
      S822Parser parser(text);
      EXPECT_TRUE((parser.*next)().IsBad());
      for (int n = 0; n < 3; ++n) EXPECT_TRUE((parser.*next)().IsEnd());
      EXPECT_EQ(parser.NextToken().Type(), TokCrlf);
      EXPECT_FALSE(parser.Addresses().Defined());
    }
  }
  Check({"folded", "<a@\r\n b.c>", {Good("a", "b.c"), kEnd}});
  Check({"folded, in a route", "<@r:\r\n a@b>", {Routed({"r"}, "a", "b"), kEnd}});
  Check({"last", "<@r:a@b>\r\n", {Routed({"r"}, "a", "b"), kEnd}});
}

TEST(S822Parser, AGroupGoesOnFromCallToCall) {
  S822Parser parser("g: a@b, h: c@d;");
  EXPECT_FALSE(parser.NextAddress().IsBad());
  EXPECT_TRUE(parser.NextAddress().IsBad()) << "a group in a group";
  parser.Set("a: b@c");
  EXPECT_FALSE(parser.NextAddress().IsBad());
  parser.Set("a: b@c;");
  EXPECT_FALSE(parser.NextAddress().IsBad()) << "it begins outside";
  parser.Reset();
  EXPECT_EQ(parser.NextAddress().Get(), "b@c");
  EXPECT_TRUE(parser.NextAddress().IsEnd());
}

TEST(S822Parser, GivesAllAddressesInTheFormOfTheEnvelope) {
  struct List {
    std::string_view text;
    bool defined;
    Names addresses;
  };
  const List rows[] = {
      {"", true, {}},
      {" , ,", true, {}},
      {"g:;", true, {}},
      {"A <@r:a@b>, c@d (1), <>, joe", true, {"<@r:a@b>", "<c@d>", "<>", "<joe>"}},
      {"g: a@b, c@d; e@f", true, {"<a@b>", "<c@d>", "<e@f>"}},
      {"a@b, c@@d, e@f", true, {"<a@b>"}},
      {"a@@b, c@d", false, {}},
      {"<@r:a>, c@d", false, {}},
      {"a@b\r\n", true, {"<a@b>"}},
  };
  for (const List& row : rows) {
    Reader reader(row.text);
    for (int n = 0; n < 2; ++n) {
      EXPECT_EQ(reader.parser.Addresses().Defined(), row.defined) << row.text;
      EXPECT_EQ(Texts(reader.parser.Get()), row.addresses) << row.text;
    }
  }
  EXPECT_TRUE(S822Parser(SString()).Addresses().Defined());
}

// Nothing is special about it but its scanner.
TEST(S822Parser, ReadsAPathAsItsBaseDoes) {
  S822Parser parser("x (1) <@(1)a,@b:joe@host>");
  EXPECT_EQ(parser.ExtractAddress().Get(), "<@a,@b:joe@host>");
  parser.Set("<joe@(1)host>");
  EXPECT_TRUE(parser.ExtractAddress().IsBad());
}

// --- Lists with bad addresses -------------------------------------------------------------

Names ReadListed(std::string_view text) {
  Reader reader(text);
  Names names;
  for (S822Address a = reader.parser.NextListed(); !a.IsEnd(); a = reader.parser.NextListed()) {
    names.emplace_back(a.IsBad() ? "bad" : a.S821Address::Address().View());
    if (names.size() > text.size()) return {"no end"};
  }
  EXPECT_TRUE(reader.parser.NextListed().IsEnd());
  return names;
}

TEST(S822Parser, GoesOnBehindABadAddress) {
  const std::pair<std::string_view, Names> rows[] = {
      {"a@b, c@d", {"<a@b>", "<c@d>"}},
      {"a@@b, c@d", {"bad", "<c@d>"}},
      {"a@, c@d", {"bad", "<c@d>"}},
      {"a@1.2, c@d", {"bad", "<c@d>"}},
      {",, (1) a@@b, c@d", {"bad", "<c@d>"}},
      {"a@@b, c@@d, e@f", {"bad", "bad", "<e@f>"}},
      {"a@@b", {"bad"}},
      {"a@@b,", {"bad"}},
      {"a@b c, d@e", {"bad", "<d@e>"}},
      {"a@@\"b, c\", d@e", {"bad", "<d@e>"}},
      {"a@@(b, (c),), d@e", {"bad", "<d@e>"}},
      {"a@@[b, c], d@e", {"bad", "<d@e>"}},
      {"a@@[b[, c], d@e", {"bad", "<d@e>"}},
      {"a@@\\, b, d@e", {"bad", "<d@e>"}},
      {"a@@\"\\\", b\", d@e", {"bad", "<d@e>"}},
      {"\"a, b@c", {"bad"}},
      {"(a, b@c", {"bad"}},
      {"a@@b [c, d@e", {"bad"}},
      {"a@@b, \"c, d@e", {"bad", "bad"}},
      {"<a@@b, c>, d@e", {"bad", "<d@e>"}},
      {"<@a b, @c: d@e>, f@g", {"bad", "<f@g>"}},
      {"<@a, b: d@e>, f@g", {"bad", "<f@g>"}},
      {"@a,@b,c@d", {"bad", "<c@d>"}},
      {"@a,@b", {"bad"}},
      {"@a,@b, @c", {"bad"}},
      {"<a@@b, c@d", {"bad", "<c@d>"}},
      {"<a@@b, c@d, e@f", {"bad", "<c@d>", "<e@f>"}},
      {"<a@@b, <c@d>, e@f", {"bad", "<c@d>", "<e@f>"}},
      {"<a@@b, \"c, d", {"bad", "bad"}},
      {"<a@@b <c, d>, e@f", {"bad", "<e@f>"}},
      {"<@r:a>, c@d", {"bad", "<c@d>"}},
      {"<a>>, c@d", {"<a>", "bad", "<c@d>"}},
      {"a;, c@d", {"bad", "<c@d>"}},
      {"\x01, c@d", {"bad", "<c@d>"}},
      {")(, c@d", {"bad"}},
      {"g: a@@b, c@d; e@f", {"bad", "<c@d>", "<e@f>"}},
      {"g: a@b, c@@d; e@f, h: i@j;", {"<a@b>", "bad", "<i@j>"}},
      {"g: h: a@b, c@d; e@f", {"bad", "<c@d>", "<e@f>"}},
      {"a@@b; g: c@d, e@f; h@i", {"bad", "<e@f>", "<h@i>"}},
      {"a@@b\r\n , c@d", {"bad", "<c@d>"}},
      {"a@@b\r\n, c@d", {"bad"}},
      {"a@@\"b\r\n, c@d\", e@f", {"bad"}},
      {"\"a\r\n, c@d", {"bad"}},
      {"a\r, c@d", {"bad", "<c@d>"}},
  };
  for (const auto& [text, names] : rows) EXPECT_EQ(ReadListed(text), names) << text;
}

TEST(S822Parser, EveryListEnds) {
  int bad = 0;
  ForEveryText("a,@<>:;\"(\\[ ", 5, [&](const std::string& bytes) {
    const SString text{std::string_view(bytes)};
    S822Parser listed(text), plain(text);
    bool agree = true;  // until there is a bad one
    for (std::size_t answers = 0;; ++answers) {
      ASSERT_LE(answers, bytes.size()) << bytes;
      const S822Address address = listed.NextListed();
      if (agree) {
        const S822Address same = plain.NextAddress();
        ASSERT_EQ(AnswerOf(address), AnswerOf(same)) << bytes;
      }
      agree = agree && !address.IsBad();
      if (address.IsBad()) ++bad;
      if (address.IsEnd()) break;
    }
  });
  EXPECT_GT(bad, 10'000);
}

// Good addresses come through, whatever bad ones stand between them.
TEST(S822Parser, GoodAddressesAreFoundBetweenBadOnes) {
  const std::string good[] = {"a@b",        "<c@d>",       "E F <e@f>", "\"g, h\" <g@h>",
                              "i@j (k, l)", "<@m,@n:o@p>", "q",         "r@[1.2.3.4]"};
  const std::string bad[] = {"a@@b",    "a@1.2",    "a@b c", "<a@@b>",    "<a b@>", "<@r:a>",
                             "\x01",    "a\x7F",    "@a:",   ">",         "a >",    ")",
                             "a@\"b\"", "<a@b\rc>", "a@(,)", "a [b] <c>", "a@b.-c"};
  std::mt19937 random(3);
  for (int round = 0; round < 20'000; ++round) {
    std::string text;
    Names expected;
    for (auto n = random() % 6; n > 0; --n) {
      if (!text.empty()) text += random() % 3 != 0 ? ", " : ",\r\n ";
      if (random() % 2 != 0) {
        const std::string& address = good[random() % std::size(good)];
        text += address;
        const SString envelope =
            S822Parser(SString(std::string_view(address))).NextAddress().S821Address::Address();
        expected.emplace_back(envelope.View());
      } else {
        text += bad[random() % std::size(bad)];
        expected.emplace_back("bad");
      }
    }
    ASSERT_EQ(ReadListed(text), expected) << text;
  }
}

TEST(S822Parser, IsWholeAfterMemoryHasRunOut) {
  const SString text(
      "g: \"J\r\n S\" x <@r1,@r2:\"a b\".c@hub.lan>, d@@e, john smith@hub (1\r\n 2); <>, joe");
  const auto readAll = [](S822Parser& parser) {
    Names names;
    for (S822Address a = parser.NextListed(); !a.IsEnd(); a = parser.NextListed()) {
      names.emplace_back(a.Get().Defined() ? a.Get().View() : "bad");
    }
    return names;
  };
  S822Parser all(text);
  const Names expected = readAll(all);
  EXPECT_EQ(expected.size(), 5U);
  const int failed = FailEachAllocation([&] { return S822Parser(text); },
                                        [&](S822Parser& parser) { readAll(parser); },
                                        [&](S822Parser& parser) {
                                          parser.Reset();
                                          EXPECT_EQ(readAll(parser), expected);
                                        });
  EXPECT_GT(failed, 20);
}

}  // namespace
