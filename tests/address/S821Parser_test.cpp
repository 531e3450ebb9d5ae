#include "address/S821Parser.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "address/S822Parser.h"
#include "strings/SFixedString.h"
#include "support/AddressParts.h"
#include "support/CheckText.h"
#include "support/CountedNew.h"
#include "support/EveryText.h"
#include "support/ExactInput.h"
#include "support/SStringListPeek.h"

namespace {

using Names = std::vector<std::string>;

std::string_view operator""_v(const char* text, std::size_t n) { return {text, n}; }

constexpr unsigned kStrict = 0;
constexpr unsigned kLenient = 1;

// What became of a text: the parts, and what stands behind the address.
struct Outcome {
  bool bad;
  AddressParts parts;

  bool operator==(const Outcome&) const = default;
};

std::ostream& operator<<(std::ostream& os, const Outcome& outcome) {
  return os << (outcome.bad ? "bad " : "good ") << outcome.parts;
}

// Reads a text that ends where a sanitizer sees the next byte.
Outcome Read(std::string_view text, unsigned lenient) {
  const ExactInput input(text);
  SFixedString fixed(input.Data(), input.Length());
  S821Parser parser(fixed, lenient);
  const S821Address address = parser.ExtractAddress();
  EXPECT_EQ(parser.Fault().flaw != AddressFlaw::kNone, address.IsBad());
  EXPECT_EQ(parser.Fault().position >= 0, address.IsBad());
  EXPECT_LE(parser.Fault().position, input.Length());
  return {address.IsBad(), PartsOf(address)};
}

Outcome Good(Names route, std::string local, std::string domain) {
  return {false, {std::move(route), std::move(local), std::move(domain)}};
}
Outcome Good(std::string local, std::string domain) {
  return Good({}, std::move(local), std::move(domain));
}
Outcome Bad(Names route, std::string local, std::string domain) {
  return {true, {std::move(route), std::move(local), std::move(domain)}};
}
const Outcome kNull = Good("", "");
const Outcome kBad = Bad({}, "", "");

struct Row {
  const char* what;
  std::string_view text;
  Outcome outcome;
};

TEST(S821Parser, ReadsPathsStrictAndLenientAlike) {
  const Row rows[] = {
      {"path", "<joe@hub.lan>", Good("joe", "hub.lan")},
      {"without brackets", "joe@hub.lan", Good("joe", "hub.lan")},
      {"name before", "Joe <joe@hub.lan>", Good("joe", "hub.lan")},
      {"anything before", "a@b, ;: \"<\" (x) % <joe@hub.lan>", Good("joe", "hub.lan")},
      {"brackets repeated", "<<joe@hub.lan>>", Good("joe", "hub.lan")},
      {"no closing bracket", "<joe@hub.lan", Good("joe", "hub.lan")},
      {"no opening bracket", "joe@hub.lan>", Good("joe", "hub.lan")},
      {"blanks", " < joe @ hub . lan > ", Good("joe", "hub.lan")},
      {"text behind", "<joe@hub.lan> x@y", Good("joe", "hub.lan")},
      {"error behind", "<joe@hub.lan> [", Good("joe", "hub.lan")},
      {"control behind", "<joe@hub.lan>\n", Good("joe", "hub.lan")},

      {"null path", "<>", kNull},
      {"null path, repeated", "<<>>", kNull},
      {"null path, more closing", "<>>>", kNull},
      {"null path and text", "x <> y", kNull},
      {"null path and an error", "<>\"", kNull},

      {"no domain", "postmaster", Good("postmaster", "")},
      {"no domain, brackets", "<postmaster>", Good("postmaster", "")},

      {"dots", "a.b.c@hub.lan", Good("a.b.c", "hub.lan")},
      {"hops", "a.b%host%[1.2.3.4]@hub.lan", Good("a.b%host%[1.2.3.4]", "hub.lan")},
      {"doubled per-cent", "a%%b@hub.lan", Good("a%%b", "hub.lan")},
      {"quoted and hop", R"("a b"%host@hub.lan)", Good(R"("a b"%host)", "hub.lan")},
      {"quoted", R"("john doe"@host)", Good(R"("john doe")", "host")},
      {"quoted for nothing", R"("john"@host)", Good("john", "host")},
      {"quoted, empty", R"(""@host)", Good(R"("")", "host")},
      {"escape", R"(john\ doe@host)", Good(R"("john doe")", "host")},
      {"escape for nothing", R"(jo\hn@host)", Good("john", "host")},
      {"high bytes", "\xFC@host", Good("\xFC", "host")},

      {"literal", "joe@[10.1.2.3]", Good("joe", "[10.1.2.3]")},
      {"literal with blanks", "joe@[10. 1.2.3 ]", Good("joe", "[10.1.2.3]")},
      {"one label", "joe@localhost", Good("joe", "localhost")},
      {"number", "joe@1", Good("joe", "1")},
      {"dot behind the domain", "joe@host.", Good("joe", "host")},
      {"dot behind the domain, bracket", "<joe@host.>", Good("joe", "host")},

      {"route", "<@a.b,@c:joe@hub.lan>", Good({"a.b", "c"}, "joe", "hub.lan")},
      {"route, one", "<@a:joe@hub.lan>", Good({"a"}, "joe", "hub.lan")},
      {"route without brackets", "@a:joe@hub.lan", Good({"a"}, "joe", "hub.lan")},
      {"route of literals", "<@[1.2.3.4],@[1.2.3.4].x:joe@h>",
       Good({"[1.2.3.4]", "[1.2.3.4].x"}, "joe", "h")},
      {"route with a number", "<@10.0.0.1:joe@h>", Good({"10.0.0.1"}, "joe", "h")},
      {"route with dots behind", "<@a.,@b.:joe@h>", Good({"a", "b"}, "joe", "h")},
      {"route with blanks", "< @ a . b , @ c : joe@h>", Good({"a.b", "c"}, "joe", "h")},

      {"route without colon", "<@a,joe@host>", kBad},
      {"route without colon, one", "<@a>", kBad},
      {"route that ends", "<@a", kBad},
      {"route without a host", "<@:joe@h>", kBad},
      {"route of a dot", "<@.:joe@h>", kBad},
      {"route with an empty host", "<@a,@,@b:joe@h>", kBad},
      {"route with two dots", "<@a..b:joe@h>", kBad},
      {"route with a bad label", "<@-a:joe@h>", kBad},
      {"route of two atoms", "<@a b:joe@h>", kBad},
      {"route with a comma behind", "<@a,:joe@h>", kBad},
      {"route with two at-signs", "<@@a:joe@h>", kBad},
      {"route with a parenthesis", "<@(x)a:joe@h>", kBad},
      {"route with an error", "<@a[:joe@h>", kBad},
      {"route and no domain", "<@a:joe>", Bad({"a"}, "joe", "")},

      {"empty domain", "joe@", Bad({}, "joe", "")},
      {"empty domain, bracket", "<joe@>", Bad({}, "joe", "")},
      {"empty domain, route", "<@a:joe@>", Bad({"a"}, "joe", "")},
      {"numbers", "joe@10.1.2.3", Bad({}, "joe", "10.1.2.3")},
      {"number last, route", "<@a:joe@b.1>", Bad({"a"}, "joe", "b.1")},
      {"literal and label", "joe@[1.2.3.4].a", Bad({}, "joe", "[1.2.3.4].a")},
      {"label and literal", "joe@a.[1.2.3.4]", Bad({}, "joe", "a.[1.2.3.4]")},
      {"two dots", "joe@host..org", kBad},
      {"dot first", "joe@.org", kBad},
      {"hyphen first", "joe@-hub.lan", kBad},
      {"hyphen first, route", "<@a:joe@-hub.lan>", kBad},
      {"two labels", "joe@hub lan", kBad},
      {"label and literal, no dot", "joe@hub[1.2.3.4]", kBad},
      {"two at-signs", "joe@hub@lan", kBad},
      {"comma", "joe@hub,x", kBad},
      {"colon", "joe@hub:x", kBad},
      {"quoted domain", R"(joe@"hub")", kBad},
      {"per-cent in the domain", "joe@hub%lan", kBad},
      {"opening bracket in the domain", "<joe@hub<lan>", kBad},
      {"control in the domain", "joe@hub\x01", kBad},
      {"tab behind the domain", "joe@hub\t", kBad},
      {"NUL behind the domain", "joe@hub\0"_v, kBad},
      {"line end behind the domain", "joe@hub\r\n", kBad},
      {"bad literal", "joe@[1.2.3]", kBad},
      {"open literal", "joe@[1.2.3.4", kBad},

      {"open quote", "\"joe@hub", kBad},
      {"error before the bracket", "\"x <joe@hub>", kBad},
      {"bad literal before the bracket", "[x] <joe@hub>", kBad},
      {"parenthesis", "(joe@hub", kBad},
      {"comma in the local part", "joe,x@hub", Bad({}, "joe", "")},
      {"colon in the local part", "joe:x@hub", Bad({}, "joe", "")},
      {"semicolon in the local part", "joe;x@hub", Bad({}, "joe", "")},
      {"opening bracket in the local part", "<joe<x@hub>", Bad({}, "joe", "")},
      {"closing square bracket in the local part", "joe]@hub", Bad({}, "joe", "")},
      {"control in the local part",
       "jo\x7F"
       "e@hub",
       Bad({}, "jo", "")},
      {"NUL in the local part", "jo\0e@hub"_v, Bad({}, "jo", "")},
      {"route, comma in the local part", "<@a:joe,x@hub>", Bad({"a"}, "joe", "")},
  };
  for (const Row& row : rows) {
    for (const unsigned lenient : {kStrict, kLenient, 2U}) {
      EXPECT_EQ(Read(row.text, lenient), row.outcome) << row.what << ", lenient " << lenient;
    }
  }
}

TEST(S821Parser, ReadsLocalPartsStrictlyOrLeniently) {
  struct Modes {
    const char* what;
    std::string_view text;
    Outcome strict, lenient;
  };
  const Modes rows[] = {
      {"nothing", "", kBad, kNull},
      {"blank", " ", kBad, kNull},
      {"lone bracket", "<", kBad, kNull},
      {"lone closing bracket", ">", kNull, kNull},
      {"two dots", "a..b@host", Bad({}, "a.", ""), Good("a..b", "host")},
      {"dot first", ".a@host", kBad, Good(".a", "host")},
      {"dot last", "a.@host", Bad({}, "a.", ""), Good("a.", "host")},
      {"dot alone", ".", kBad, Good(".", "")},
      {"two atoms", "a b@host", Bad({}, "a", ""), Good("ab", "host")},
      {"quoted and atom", R"("a b"c@host)", Bad({}, R"("a b")", ""), Good(R"("a b"c)", "host")},
      {"quoted and dot", R"("a b".c@host)", Bad({}, R"("a b")", ""), Good(R"("a b".c)", "host")},
      {"quoted second", R"(a"b c"@host)", Bad({}, "a", ""), Bad({}, "a", "")},
      {"quoted behind a dot", R"(a."b c"@host)", Bad({}, "a.", ""), Bad({}, "a.", "")},
      {"two quoted", R"("a b""c d"@host)", Bad({}, R"("a b")", ""), Bad({}, R"("a b")", "")},
      {"literal first", "[1.2.3.4]@host", kBad, Good("[1.2.3.4]", "host")},
      {"literal behind an atom", "a[1.2.3.4]@host", Bad({}, "a", ""), Good("a[1.2.3.4]", "host")},
      {"per-cent first", "%a@host", kBad, Good("%a", "host")},
      {"per-cent last", "a%@host", Bad({}, "a%", ""), Good("a%", "host")},
      {"dot behind per-cent", "a%.b@host", Bad({}, "a%", ""), Good("a%.b", "host")},
      {"atom behind a literal", "a%[1.2.3.4]b@host", Bad({}, "a%[1.2.3.4]", ""),
       Good("a%[1.2.3.4]b", "host")},
      {"tab", "a\tb@host", Good("a\tb", "host"), Good("a\tb", "host")},
      {"route and no local part", "<@a:@b>", Bad({"a"}, "", ""), Bad({"a"}, "", "b")},
      {"route alone", "<@a:>", Bad({"a"}, "", ""), Bad({"a"}, "", "")},
  };
  for (const Modes& row : rows) {
    EXPECT_EQ(Read(row.text, kStrict), row.strict) << row.what;
    EXPECT_EQ(Read(row.text, kLenient), row.lenient) << row.what;
  }
}

TEST(S821Parser, IsStrictUnlessSaidOtherwise) {
  EXPECT_TRUE(S821Parser("a..b@host").ExtractAddress().IsBad());
}

// --- The states of the local part, all of them with all tokens ----------------------------

// A parser that is handed its tokens. What it overrides is what the grammar reads.
class Fed : public S821Parser {
 public:
  Fed(std::vector<SToken> tokens, unsigned lenient)
      : S821Parser("", lenient), tokens_(std::move(tokens)) {}

  SToken NextToken() override {
    const auto at = static_cast<std::size_t>(position_);
    if (at >= tokens_.size()) return {"", TokEnd};
    const bool moves = (tokens_[at].Type() & (TokEnd | TokError)) == 0;
    if (moves) previous_ = position_++;
    return tokens_[at];
  }

 private:
  std::vector<SToken> tokens_;
};

const SToken kTokens[] = {
    SToken("e", TokError),        SToken("", TokEnd),        SToken("a", TokAtom),
    SToken("\"q q\"", TokQuoted), SToken("(c)", TokComment), SToken("[1.2.3.4]", TokLiteral),
    SToken("(", TokBad),          SToken("<", TokLess),      SToken(">", TokGreater),
    SToken("@", TokAt),           SToken(".", TokDot),       SToken(",", TokComma),
    SToken(";", TokSemicolon),    SToken(":", TokColon),     SToken("", TokCrlf),
    SToken("%", TokPercent)};

const SToken& TokenOf(int type) {
  for (const SToken& token : kTokens) {
    if (token.Type() == type) return token;
  }
  return kTokens[0];
}

std::string Join(const std::vector<SToken>& tokens) {
  std::string text;
  for (const SToken& token : tokens) text += token.View();
  return text;
}

// Which tokens may follow which in a strict local part; that a lenient one has none but for
// quoted strings is all of its rules.
constexpr int kEnds = TokAt | TokGreater | TokEnd;
const std::pair<std::vector<int>, int> kStrictStates[] = {
    {{}, TokQuoted | TokAtom},
    {{TokQuoted}, TokPercent | kEnds},
    {{TokAtom}, TokDot | TokPercent | kEnds},
    {{TokAtom, TokDot}, TokAtom},
    {{TokAtom, TokPercent}, TokAtom | TokPercent | TokLiteral},
    {{TokAtom, TokPercent, TokLiteral}, TokPercent | kEnds},
};
constexpr int kLenientFirst = TokQuoted | TokAtom | TokDot | TokPercent | TokLiteral | kEnds;
constexpr int kLenientLater = kLenientFirst & ~TokQuoted;

TEST(S821Parser, EveryTokenInEveryStateOfTheLocalPart) {
  for (const unsigned lenient : {kStrict, kLenient}) {
    for (const auto& [state, strictly] : kStrictStates) {
      const int leniently = state.empty() ? kLenientFirst : kLenientLater;
      const int allowed = lenient != 0 ? leniently : strictly;
      for (const SToken& token : kTokens) {
        std::vector<SToken> tokens = {SToken("<", TokLess)};
        std::vector<SToken> local;
        for (const int type : state) local.push_back(TokenOf(type));
        tokens.insert(tokens.end(), local.begin(), local.end());
        // At once behind the first "<", three tokens are no local part's.
        if (state.empty() && (token.Type() & (TokLess | TokGreater | TokAt)) != 0) continue;
        tokens.push_back(token);
        const bool taken = (token.Type() & allowed) != 0;
        if (taken && (token.Type() & kEnds) == 0) local.push_back(token);
        if (token.Type() == TokAt) tokens.emplace_back("host", TokAtom);
        Fed parser(tokens, lenient);
        S821Address address = parser._ParseAddress();
        std::string text = Join(tokens);
        EXPECT_EQ(address.LocalPart().View(), Join(local)) << text;
        // What is taken but does not end it may be followed by an end, or not.
        if ((token.Type() & kEnds) != 0 || !taken) {
          EXPECT_EQ(address.IsBad(), !taken) << text << " type " << token.Type();
        }
        if (taken && token.Type() == TokAt) {
          EXPECT_EQ(address.Domain(), "host");
        }
      }
    }
  }
}

// Two tokens on: where each accepted token has led to.
TEST(S821Parser, EveryTokenLeadsToItsState) {
  for (const unsigned lenient : {kStrict, kLenient}) {
    for (const auto& [state, strictly] : kStrictStates) {
      const int allowed = lenient == 0 ? strictly : state.empty() ? kLenientFirst : kLenientLater;
      for (const SToken& token : kTokens) {
        if ((token.Type() & allowed & ~kEnds) == 0) continue;
        const auto next = [&]() -> int {
          if (lenient != 0) return kLenientLater;
          for (const auto& [later, then] : kStrictStates) {
            if (!later.empty() && later.back() == token.Type()) return then;
          }
          return 0;
        }();
        for (const SToken& second : kTokens) {
          std::vector<SToken> tokens = {SToken("<", TokLess)};
          for (const int type : state) tokens.push_back(TokenOf(type));
          tokens.push_back(token);
          const std::string before = Join(tokens).substr(1);
          tokens.push_back(second);
          Fed parser(tokens, lenient);
          const std::string local(parser._ParseAddress().LocalPart().View());
          const bool more = (second.Type() & next & ~kEnds) != 0;
          EXPECT_EQ(local, more ? before + std::string(second.View()) : before)
              << Join(tokens) << " lenient " << lenient;
        }
      }
    }
  }
}

// --- Where the parser stays ---------------------------------------------------------------

std::string_view Rest(std::string_view text, unsigned lenient = kLenient) {
  class Peek : public S821Parser {
   public:
    using S821Parser::position_;
    using S821Parser::S821Parser;
  };
  Peek parser(SString(text), lenient);
  static_cast<void>(parser.ExtractAddress());
  return text.substr(static_cast<std::size_t>(parser.position_));
}

TEST(S821Parser, StaysBehindTheAddress) {
  EXPECT_EQ(Rest("<a@b> SIZE=1"), "SIZE=1");
  EXPECT_EQ(Rest("<a@b>>> x"), "x");
  EXPECT_EQ(Rest("<a@b>, x"), ", x");
  EXPECT_EQ(Rest("<a@b> \"x"), " \"x") << "an error has not been moved past";
  EXPECT_EQ(Rest("<a@b>  "), "  ");
  EXPECT_EQ(Rest("<>> x"), "x");
  EXPECT_EQ(Rest("<> [x"), " [x");
  EXPECT_EQ(Rest("a@b"), "");
  EXPECT_EQ(Rest("<@a x"), "") << "a wrong token has been read";
  EXPECT_EQ(Rest("<@a,x:"), "x:") << "but for the one that should be an at-sign";
  EXPECT_EQ(Rest("<@a,"), ",") << "known and kept: no token was read, the one before is taken back";
}

// Known and kept.
TEST(S821Parser, TakesOneClosingBracketBehindALocalPartAlone) {
  EXPECT_EQ(Rest("<a>> x"), "> x");
  EXPECT_EQ(Rest("<a> x"), " x");
}

// Known and kept.
TEST(S821Parser, ASecondAddressBeginsAtTheNextBracketOrAtTheBeginning) {
  S821Parser parser("<a@b> x <c@d> y", kLenient);
  EXPECT_EQ(parser.ExtractAddress().Get(), "<a@b>");
  EXPECT_EQ(parser.ExtractAddress().Get(), "<c@d>");
  EXPECT_EQ(parser.ExtractAddress().Get(), "<a@b>") << "there is no third";
  S821Parser bare("a@b", kLenient);
  EXPECT_EQ(bare.ExtractAddress().Get(), "<a@b>");
  EXPECT_EQ(bare.ExtractAddress().Get(), "<a@b>");
}

TEST(S821Parser, ExtensionsAreTheWordsBehindTheAddress) {
  struct Words {
    std::string_view text;
    bool defined;
    Names words;
  };
  const Words rows[] = {
      {"<a@b> SIZE=100  BODY=8BITMIME", true, {"SIZE=100", "BODY=8BITMIME"}},
      {"<a@b>SIZE=100 ", true, {"SIZE=100"}},
      {"<a@b>", true, {}},
      {"<a@b>   ", true, {}},
      {"<a@b> \xFF\xA0", true, {"\xFF\xA0"}},
      {"<a@b> \"x y\" (z", true, {"\"x", "y\"", "(z"}},
      {"<a>> x", true, {">", "x"}},
      {"<a@b> x\ty", false, {}},
      {"<a@b> x\r\n", false, {}},
      {"<a@b> \x7F", false, {}},
      {"<a@b> \x1F", false, {}},
      {"<a@b> \x80", false, {}},
      {"<a@b> \x9F", false, {}},
      {"<a@b> x\0y"_v, false, {}},
  };
  for (const Words& row : rows) {
    S821Parser parser(SString(row.text), kStrict);
    static_cast<void>(parser.ExtractAddress());
    EXPECT_EQ(parser.Extensions().Defined(), row.defined) << row.text;
    EXPECT_EQ(Texts(parser.Extensions()), row.words) << row.text;
  }
  EXPECT_EQ(Texts(S821Parser("a b").Extensions()), (Names{"a", "b"})) << "before any address";
}

TEST(S821Parser, ExtractsRoutes) {
  S821Parser parser("@a,@b: @c x");
  EXPECT_EQ(Texts(parser._ExtractRoute()), (Names{"a", "b"}));
  EXPECT_FALSE(parser._ExtractRoute().Defined());
  parser.Init("x");
  EXPECT_FALSE(parser._ExtractRoute().Defined());
  EXPECT_EQ(parser.NextToken().View(), "x") << "taken back";
  S822Parser comments("@(1)a(2).(3)b(4),@(5)c(6):");
  EXPECT_EQ(Texts(comments._ExtractRoute()), (Names{"a.b", "c"}));
  S822Parser between("@a,(1)@c:");
  EXPECT_FALSE(between._ExtractRoute().Defined());
}

// --- Local parts, tokens ------------------------------------------------------------------

TEST(S821Parser, FixesLocalParts) {
  const std::pair<std::string_view, std::string_view> rows[] = {
      {"", ""},
      {"john", "john"},
      {"a b", "a b"},
      {"\"john\"", "john"},
      {"\"john doe\"", "\"john doe\""},
      {R"("jo\hn")", "john"},
      {R"(jo\hn)", "john"},
      {R"(john\ doe)", R"("john doe")"},
      {R"("a\"b")", R"("a\"b")"},
      {R"("a\\b")", R"("a\\b")"},
      {R"("a.b")", "a.b"},
      {R"("a..b")", "a..b"},
      {R"("a%b")", R"("a%b")"},
      {R"("a@b")", R"("a@b")"},
      {"\"a\rb\nc\"", "\"a\\\rb\\\nc\""},
      {"\"a\tb\"", "\"a\tb\""},
      {"\"a\x7F\"", "\"a\x7F\""},
      {"\"a\x80\"", "\"a\x80\""},
      {"\"a\xFF\"", "a\xFF"},
      {"\"\"", "\"\""},
      {"\"", "\"\""},
      {"\\", R"("\\")"},
      {R"(a\)", R"("a\\")"},
      {R"(\\)", R"("\\")"},
      {"\\\0"_v, "\"\0\""_v},
      // More than a quoted string is left alone ...
      {R"("a b".c)", R"("a b".c)"},
      {R"("a"b)", R"("a"b)"},
      {R"(a"b"c)", R"(a"b"c)"},
      {R"(""x)", R"(""x)"},
      // ... known and kept, but not where the quotes come last or right behind a backslash
      {R"(a"b")", R"(a"b")"},
      {R"(a")", R"("a\"")"},
      {R"("a\\"b)", R"("\"a\\\"b")"},
      {R"("\""x)", R"("\""x)"},
  };
  const S821Parser parser("");
  for (const auto& [text, fixed] : rows) {
    SString local(text);
    parser._FixLocalPart(local);
    EXPECT_EQ(local.View(), fixed) << text;
  }
  SString undefined;
  parser._FixLocalPart(undefined);
  CheckUndefined(undefined);
}

// What the rules say in patterns, applied one after the other.
SString FixedByPatterns(SString local) {
  if (!local.HasMatch("[\\\\\"]")) return local;
  if (local.HasMatch("[^\\\\]\".")) return local;
  if (local[0] == '"' && local[-1] == '"') {
    local = SString(local).Segment(1, local.Length() - 2);
  }
  local.S("\\\\(.)", "\\1", "g");
  if (local.HasMatch("[] <>()@%,;:\\\\\"[]") || local.HasMatch("[\x01-\x1F\x7F\x80-\x9F]") ||
      local.Index('\0') >= 0) {
    local.S("([\r\n\"\\\\])", "\\\\\\1", "g");
    local = "\"" + local + "\"";
  }
  return local.Length() == 0 ? SString("\"\"") : local;
}

TEST(S821Parser, FixesEveryShortLocalPartAsThePatternsDo) {
  constexpr std::string_view kBytes("a \"\\.@\n\0\xFF", 9);
  const S821Parser parser("");
  ForEveryText(kBytes, 5, [&](const std::string& text) {
    SString local{std::string_view(text)};
    const SString expected = FixedByPatterns(local);
    parser._FixLocalPart(local);
    ASSERT_EQ(local, expected) << text;
  });
}

TEST(S821Parser, TellsTypesOfTexts) {
  const std::pair<std::string_view, int> rows[] = {
      {"", TokEnd},      {"\"", TokBad},     {"\"a", TokQuoted},  {"\"\"", TokQuoted},
      {"(", TokBad},     {"(a", TokComment}, {"[", TokBad},       {"[]", TokLiteral},
      {"\\", TokBad},    {"\\a", TokAtom},   {"<", TokLess},      {"<a", TokLess},
      {">", TokGreater}, {">>", TokGreater}, {"@", TokAt},        {"@a", TokAt},
      {"%", TokPercent}, {"%a", TokPercent}, {".", TokDot},       {".a", TokDot},
      {",", TokComma},   {",a", TokComma},   {";", TokSemicolon}, {";a", TokSemicolon},
      {":", TokColon},   {":a", TokColon},   {")", TokBad},       {")a", TokBad},
      {"]", TokBad},     {"]a", TokBad},     {"\r\n", TokCrlf},   {"\r", TokBad},
      {"\n", TokBad},    {"\r\nx", TokBad},  {"\t", TokBad},      {"\x1F", TokBad},
      {"\x7F", TokBad},  {"\x80", TokAtom},  {"\xFF", TokAtom},   {"a", TokAtom},
      {"a@", TokAtom},   {"!", TokAtom},     {"\0"_v, TokBad},    {" ", TokAtom}};
  const S821Parser parser("");
  for (const auto& [text, type] : rows) EXPECT_EQ(parser._TokenType(SString(text)), type) << text;
  EXPECT_EQ(parser._TokenType(SString()), TokEnd);
}

TEST(S821Parser, JoinsTokens) {
  struct Joined {
    SStringList tokens;
    const char *byDots, *byBlanks;
  };
  const Joined rows[] = {
      {{"a"}, "a", "a"},
      {{"a", "b"}, "a.b", "a b"},
      {{"a", ".", "b"}, "a.b", "a.b"},
      {{"a", "b", ".", "c"}, "a.b.c", "a b.c"},
      {{".", "a"}, ".a", ".a"},
      {{"a", ".", "."}, "a..", "a.."},
      {{"\"a\"", "b"}, "\"a\".b", "\"a\" b"},
      {{"a", "\"b\""}, "a.\"b\"", "a \"b\""},
      {{"\"a\"", "\"b\""}, "\"a\".\"b\"", "\"a\" \"b\""},
      {{"\"a\"", ".", "b"}, "\"a\".b", "\"a\".b"},
      {{"\"a\"", "%b"}, "\"a\"%b", "\"a\"%b"},
      {{"a", "%b", "c"}, "a%bc", "a%bc"},
      {{"a", "[1.2.3.4]", "b"}, "a[1.2.3.4]b", "a[1.2.3.4]b"},
      {{"a", "<", "b"}, "a<b", "a <b"},
      {{"\"a\"", "<"}, "\"a\"<", "\"a\" <"},
      {{".", "<"}, ".<", ".<"},
      {{"a", "(c)"}, "a(c)", "a (c)"},
      {{"a", "(c)", "b"}, "a(c)b", "a (c)b"},
      {{"a", "(c)", "."}, "a(c).", "a(c)."},
      {{"\"a\"", "(c)", "."}, "\"a\"(c).", "\"a\" (c)."},
      {{"a", "@", "b"}, "a@b", "a@b"},
      {{"a", "", "b"}, "ab", "ab"},
      {{"", ""}, "", ""},
  };
  const S821Parser parser("");
  for (const Joined& row : rows) {
    EXPECT_EQ(parser._JoinTokens(row.tokens, '.'), row.byDots) << row.tokens.Join("|");
    EXPECT_EQ(parser._JoinTokens(row.tokens, ' '), row.byBlanks) << row.tokens.Join("|");
  }
  CheckUndefined(parser._JoinTokens(SStringList(), '.'));
  SStringList empty;
  empty.Reset();
  CheckText(parser._JoinTokens(empty, '.'), "");
  EXPECT_EQ(parser._JoinTokens({"a", "b"}, '-'), "a-b");
}

}  // namespace
