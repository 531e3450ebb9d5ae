// Both scanners: the same rows, and every byte between others, by the slow reader.

#include "address/SParser.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "address/S821Parser.h"
#include "address/S822Parser.h"
#include "strings/SFixedString.h"
#include "support/AddressComparison.h"
#include "support/CheckText.h"
#include "support/CountedNew.h"
#include "support/ExactInput.h"

namespace {

struct Token {
  int type;
  std::string text;
  bool operator==(const Token&) const = default;
};

std::ostream& operator<<(std::ostream& os, const Token& token) {
  return os << token.type << ":'" << token.text << "'";
}

using Tokens = std::vector<Token>;

enum Scanner { k821, k822 };

// What tests see of a parser beyond its public face.
template <class Parser>
class Open : public Parser {
 public:
  explicit Open(const SString& text) : Parser(text) {}
  using Parser::input_;
  using Parser::position_;
  using Parser::previous_;
};

// The tokens up to the end, to an error that stays, or to the tenth. Each is taken back and
// read again on the way.
template <class Parser>
Tokens ReadTokens(std::string_view text) {
  const ExactInput input(text);
  SFixedString fixed(input.Data(), input.Length());
  Open<Parser> parser(fixed);
  Tokens tokens;
  while (tokens.size() < 10) {
    const int before = parser.position_;
    const SToken token = parser.NextToken();
    tokens.push_back({token.Type(), std::string(token.View())});
    EXPECT_STREQ(Flaw(token.Text()), "");
    EXPECT_TRUE(token.Text().Defined());
    const bool moved = parser.position_ != before;
    if (!moved) {
      EXPECT_TRUE((token.Type() & (TokEnd | TokError)) != 0) << "it moves past all others";
      EXPECT_EQ(parser.NextToken().View(), token.View());
      EXPECT_EQ(parser.position_, before);
      break;
    }
    EXPECT_GT(parser.position_, before);
    EXPECT_LE(parser.position_, input.Length());
    EXPECT_GE(parser.previous_, before);
    const int after = parser.position_;
    parser.UndoNext();
    const SToken again = parser.NextToken();
    EXPECT_EQ(again.Type(), token.Type());
    EXPECT_EQ(again.View(), token.View());
    EXPECT_EQ(parser.position_, after);
  }
  return tokens;
}

Tokens ReadTokens(Scanner scanner, std::string_view text) {
  return scanner == k821 ? ReadTokens<S821Parser>(text) : ReadTokens<S822Parser>(text);
}

constexpr std::string_view operator""_v(const char* text, std::size_t n) { return {text, n}; }
std::string operator""_s(const char* text, std::size_t n) { return {text, n}; }

const Token kEnd = {TokEnd, ""};

struct Row {
  const char* what;
  std::string_view text;
  Tokens in821, in822;
};

TEST(Scanners, ReadTokens) {
  const Tokens none = {kEnd};
  const Tokens error = {{TokError, ""}};
  const Row rows[] = {
      {"nothing", "", none, none},
      {"blanks", "  ", none, none},
      {"atoms",
       "a b",
       {{TokAtom, "a"}, {TokAtom, "b"}, kEnd},
       {{TokAtom, "a"}, {TokAtom, "b"}, kEnd}},
      {"tab", "a\tb", {{TokAtom, "a\tb"}, kEnd}, {{TokAtom, "a"}, {TokAtom, "b"}, kEnd}},
      {"tab alone", "\t", {{TokAtom, "\t"}, kEnd}, none},
      {"per-cent",
       "a%b",
       {{TokAtom, "a"}, {TokPercent, "%"}, {TokAtom, "b"}, kEnd},
       {{TokAtom, "a%b"}, kEnd}},
      {"specials",
       "<>@.,;:",
       {{TokLess, "<"},
        {TokGreater, ">"},
        {TokAt, "@"},
        {TokDot, "."},
        {TokComma, ","},
        {TokSemicolon, ";"},
        {TokColon, ":"},
        kEnd},
       {{TokLess, "<"},
        {TokGreater, ">"},
        {TokAt, "@"},
        {TokDot, "."},
        {TokComma, ","},
        {TokSemicolon, ";"},
        {TokColon, ":"},
        kEnd}},
      {"specials end atoms",
       "a@b",
       {{TokAtom, "a"}, {TokAt, "@"}, {TokAtom, "b"}, kEnd},
       {{TokAtom, "a"}, {TokAt, "@"}, {TokAtom, "b"}, kEnd}},
      {"all other marks",
       "!#$&'*+-/=?^_`{|}~",
       {{TokAtom, "!#$&'*+-/=?^_`{|}~"}, kEnd},
       {{TokAtom, "!#$&'*+-/=?^_`{|}~"}, kEnd}},
      {"high bytes", "\xA0\xFF", {{TokAtom, "\xA0\xFF"}, kEnd}, {{TokAtom, "\xA0\xFF"}, kEnd}},
      {"high control", "\x80", {{TokBad, "\x80"}, kEnd}, {{TokError, "\x80"}, kEnd}},
      {"last high control",
       "a\x9F"
       "b",
       {{TokAtom, "a"}, {TokBad, "\x9F"}, {TokAtom, "b"}, kEnd},
       {{TokAtom, "a"}, {TokError, "\x9F"}, {TokAtom, "b"}, kEnd}},
      {"DEL",
       "a\x7F",
       {{TokAtom, "a"}, {TokBad, "\x7F"}, kEnd},
       {{TokAtom, "a"}, {TokError, "\x7F"}, kEnd}},
      {"NUL",
       "a\0b"_v,
       {{TokAtom, "a"}, {TokBad, "\0"_s}, {TokAtom, "b"}, kEnd},
       {{TokAtom, "a"}, {TokError, "\0"_s}, {TokAtom, "b"}, kEnd}},
      {"line feed", "\n", {{TokBad, "\n"}, kEnd}, {{TokError, "\n"}, kEnd}},

      {"quoted", R"("a b")", {{TokQuoted, R"("a b")"}, kEnd}, {{TokQuoted, R"("a b")"}, kEnd}},
      {"quoted, empty", R"("")", {{TokQuoted, R"("")"}, kEnd}, {{TokQuoted, R"("")"}, kEnd}},
      {"escaped quote",
       R"("a\"b")",
       {{TokQuoted, R"("a\"b")"}, kEnd},
       {{TokQuoted, R"("a\"b")"}, kEnd}},
      {"escaped backslash",
       R"("\\")",
       {{TokQuoted, R"("\\")"}, kEnd},
       {{TokQuoted, R"("\\")"}, kEnd}},
      {"open quote", R"("abc)", error, error},
      {"open quote, escape last", "\"a\\", error, error},
      {"open quote, quote escaped", R"("a\")", error, error},
      {"quote ends an atom",
       R"(a"b")",
       {{TokAtom, "a"}, {TokQuoted, R"("b")"}, kEnd},
       {{TokAtom, "a"}, {TokQuoted, R"("b")"}, kEnd}},
      {"specials quoted",
       R"("<>@%.,;:()[]")",
       {{TokQuoted, R"("<>@%.,;:()[]")"}, kEnd},
       {{TokQuoted, R"("<>@%.,;:()[]")"}, kEnd}},
      {"controls quoted",
       "\"\t\x01\x7F\x80\0\""_v,
       {{TokQuoted, "\"\t\x01\x7F\x80\0\""_s}, kEnd},
       {{TokQuoted, "\"\t\x01\x7F\x80\0\""_s}, kEnd}},
      {"line feed quoted", "\"a\nb\"", error, {{TokQuoted, "\"a\nb\""}, kEnd}},
      {"carriage return quoted", "\"a\rb\"", error, {{TokError, "\"a"}}},
      {"line end quoted", "\"a\r\nb\"", error, {{TokError, "\"a"}}},
      {"line end quoted, last", "\"a\r\n", error, {{TokError, "\"a"}}},
      {"fold quoted", "\"a\r\n \t b\"", error, {{TokQuoted, "\"a b\""}, kEnd}},
      {"folds quoted", "\"\r\n a\r\n\tb\r\n \"", error, {{TokQuoted, "\" a b \""}, kEnd}},
      {"fold quoted, open", "\"a\r\n b", error, error},
      {"fold and an error quoted", "\"a\r\n b\r", error, {{TokError, "\"a b"}}},
      {"escaped line end quoted",
       "\"\\\r\\\n\"",
       {{TokQuoted, "\"\\\r\\\n\""}, kEnd},
       {{TokQuoted, "\"\\\r\\\n\""}, kEnd}},

      {"escape", R"(\<)", {{TokAtom, R"(\<)"}, kEnd}, error},
      {"escape in an atom", R"(a\ b)", {{TokAtom, R"(a\ b)"}, kEnd}, {{TokError, "a"}}},
      {"escaped backslash alone", R"(\\)", {{TokAtom, R"(\\)"}, kEnd}, error},
      {"escape last", "a\\", {{TokAtom, "a\\"}, kEnd}, {{TokError, "a"}}},
      {"escaped control", "\\\r", {{TokAtom, "\\\r"}, kEnd}, error},

      {"comment",
       "(a)",
       {{TokBad, "("}, {TokAtom, "a"}, {TokBad, ")"}, kEnd},
       {{TokComment, "(a)"}, kEnd}},
      {"nested comment",
       "(a (b) c)x",
       {{TokBad, "("},
        {TokAtom, "a"},
        {TokBad, "("},
        {TokAtom, "b"},
        {TokBad, ")"},
        {TokAtom, "c"},
        {TokBad, ")"},
        {TokAtom, "x"},
        kEnd},
       {{TokComment, "(a (b) c)"}, {TokAtom, "x"}, kEnd}},
      {"empty comments",
       "()()",
       {{TokBad, "("}, {TokBad, ")"}, {TokBad, "("}, {TokBad, ")"}, kEnd},
       {{TokComment, "()"}, {TokComment, "()"}, kEnd}},
      {"comment ends an atom",
       "a(b)",
       {{TokAtom, "a"}, {TokBad, "("}, {TokAtom, "b"}, {TokBad, ")"}, kEnd},
       {{TokAtom, "a"}, {TokComment, "(b)"}, kEnd}},
      {"open comment", "(a", {{TokBad, "("}, {TokAtom, "a"}, kEnd}, error},
      {"open outer comment",
       "((a)",
       {{TokBad, "("}, {TokBad, "("}, {TokAtom, "a"}, {TokBad, ")"}, kEnd},
       error},
      {"closing alone", ")", {{TokBad, ")"}, kEnd}, error},
      {"closing behind an atom", "a)", {{TokAtom, "a"}, {TokBad, ")"}, kEnd}, {{TokError, "a"}}},
      {"escapes in a comment",
       R"((\)\())",
       {{TokBad, "("}, {TokAtom, R"(\)\()"}, {TokBad, ")"}, kEnd},
       {{TokComment, R"((\)\())"}, kEnd}},
      {"quotes in a comment",
       R"((")x)",
       {{TokBad, "("}, {TokError, ""}},
       {{TokComment, "(\")"}, {TokAtom, "x"}, kEnd}},
      {"fold in a comment",
       "(a\r\n b)",
       {{TokBad, "("},
        {TokAtom, "a"},
        {TokBad, "\r"},
        {TokBad, "\n"},
        {TokAtom, "b"},
        {TokBad, ")"},
        kEnd},
       {{TokComment, "(a b)"}, kEnd}},
      {"line end in a comment",
       "(a\r\nb)",
       {{TokBad, "("},
        {TokAtom, "a"},
        {TokBad, "\r"},
        {TokBad, "\n"},
        {TokAtom, "b"},
        {TokBad, ")"},
        kEnd},
       {{TokError, "(a"}}},
      {"line feed in a comment",
       "(\n)",
       {{TokBad, "("}, {TokBad, "\n"}, {TokBad, ")"}, kEnd},
       {{TokComment, "(\n)"}, kEnd}},

      {"literal",
       "[1.2.3.4]",
       {{TokLiteral, "[1.2.3.4]"}, kEnd},
       {{TokLiteral, "[1.2.3.4]"}, kEnd}},
      {"literal with blanks",
       "[1.2. 3.4 ]",
       {{TokLiteral, "[1.2.3.4]"}, kEnd},
       {{TokLiteral, "[1.2. 3.4 ]"}, kEnd}},
      {"literal with letters", "[a.b]", {{TokError, "["}}, {{TokLiteral, "[a.b]"}, kEnd}},
      {"literal with a letter late",
       "[1. 2x]",
       {{TokError, "[1.2"}},
       {{TokLiteral, "[1. 2x]"}, kEnd}},
      {"literal out of range", "[1.2.3.256]", error, {{TokLiteral, "[1.2.3.256]"}, kEnd}},
      {"literal out of range, blank", "[1.2.3. 256]", error, {{TokLiteral, "[1.2.3. 256]"}, kEnd}},
      {"literal, empty", "[]", error, {{TokLiteral, "[]"}, kEnd}},
      {"literal ends an atom",
       "a[1.2.3.4]",
       {{TokAtom, "a"}, {TokLiteral, "[1.2.3.4]"}, kEnd},
       {{TokAtom, "a"}, {TokLiteral, "[1.2.3.4]"}, kEnd}},
      {"open literal", "[1.2", error, error},
      {"open literal, blank", "[1 ", error, error},
      {"literal in a literal", "[1[2]", {{TokError, "[1"}}, {{TokError, "[1["}}},
      {"escape in a literal", R"([1\]])", {{TokError, "[1"}}, {{TokLiteral, R"([1\]])"}, kEnd}},
      {"tab in a literal", "[1\t]", {{TokError, "[1"}}, {{TokLiteral, "[1\t]"}, kEnd}},
      {"fold in a literal", "[1\r\n 2]", {{TokError, "[1"}}, {{TokLiteral, "[1 2]"}, kEnd}},
      {"line end in a literal", "[1\r\n2]", {{TokError, "[1"}}, {{TokError, "[1"}}},
      {"line feed in a literal", "[\n]", {{TokError, "["}}, {{TokLiteral, "[\n]"}, kEnd}},
      {"closing bracket alone", "]", {{TokBad, "]"}, kEnd}, error},
      {"closing bracket behind an atom",
       "a]",
       {{TokAtom, "a"}, {TokBad, "]"}, kEnd},
       {{TokError, "a"}}},

      {"carriage return", "\r", {{TokBad, "\r"}, kEnd}, error},
      {"carriage return behind an atom",
       "a\rb",
       {{TokAtom, "a"}, {TokBad, "\r"}, {TokAtom, "b"}, kEnd},
       {{TokError, "a"}}},
      {"line end", "\r\n", {{TokBad, "\r"}, {TokBad, "\n"}, kEnd}, none},
      {"line end last",
       "a\r\n",
       {{TokAtom, "a"}, {TokBad, "\r"}, {TokBad, "\n"}, kEnd},
       {{TokAtom, "a"}, kEnd}},
      {"line end between",
       "a\r\nb",
       {{TokAtom, "a"}, {TokBad, "\r"}, {TokBad, "\n"}, {TokAtom, "b"}, kEnd},
       {{TokAtom, "a"}, {TokCrlf, ""}, {TokAtom, "b"}, kEnd}},
      {"two line ends",
       "\r\n\r\n",
       {{TokBad, "\r"}, {TokBad, "\n"}, {TokBad, "\r"}, {TokBad, "\n"}, kEnd},
       {{TokCrlf, ""}, kEnd}},
      {"fold with one blank behind an atom",
       "a\r\n b",
       {{TokAtom, "a"}, {TokBad, "\r"}, {TokBad, "\n"}, {TokAtom, "b"}, kEnd},
       {{TokAtom, "a"}, {TokError, "\n"}, {TokAtom, "b"}, kEnd}},
      {"fold with two blanks behind an atom",
       "a\r\n \tb",
       {{TokAtom, "a"}, {TokBad, "\r"}, {TokBad, "\n"}, {TokAtom, "\tb"}, kEnd},
       {{TokAtom, "a"}, {TokAtom, "b"}, kEnd}},
      {"fold behind a special",
       ",\r\n b",
       {{TokComma, ","}, {TokBad, "\r"}, {TokBad, "\n"}, {TokAtom, "b"}, kEnd},
       {{TokComma, ","}, {TokAtom, "b"}, kEnd}},
      {"fold behind a blank",
       "a \r\n b",
       {{TokAtom, "a"}, {TokBad, "\r"}, {TokBad, "\n"}, {TokAtom, "b"}, kEnd},
       {{TokAtom, "a"}, {TokAtom, "b"}, kEnd}},
      {"fold last",
       ",\r\n ",
       {{TokComma, ","}, {TokBad, "\r"}, {TokBad, "\n"}, kEnd},
       {{TokComma, ","}, kEnd}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(ReadTokens(k821, row.text), row.in821);
    EXPECT_EQ(ReadTokens(k822, row.text), row.in822);
  }
}

TEST(Scanners, ScanEveryByteBetweenAllOthersByTheRules) {
  for (const std::string before : {"", "a", "\"", "(", "[", "[1", "((", "\\", "\"\\", "\r\n"}) {
    for (const std::string behind : {"", "b", "\"", ")", "]", " \"", "))"}) {
      for (int byte = 0; byte < 256; ++byte) {
        const std::string text = before + static_cast<char>(byte) + behind;
        ASSERT_EQ(CompareTokens(text).difference, "");
      }
    }
  }
}

TEST(Scanners, OneTokenIsTakenBack) {
  S821Parser parser("a b c");
  EXPECT_EQ(parser.NextToken().View(), "a");
  EXPECT_EQ(parser.NextToken().View(), "b");
  parser.UndoNext();
  parser.UndoNext();
  EXPECT_EQ(parser.NextToken().View(), "b");
  EXPECT_EQ(parser.NextToken().View(), "c");
  EXPECT_EQ(parser.NextToken().Type(), TokEnd);
  parser.UndoNext();
  EXPECT_EQ(parser.NextToken().View(), "c") << "the end does not move, so this goes further back";
}

TEST(Scanners, TheLastLineEndGoesWithTheAtomBeforeIt) {
  S822Parser parser("a\r\n");
  EXPECT_EQ(parser.NextToken().View(), "a");
  EXPECT_TRUE(parser.Extensions().Defined()) << "there is nothing left";
}

TEST(Scanners, AnErrorStaysWhereItIs) {
  S822Parser parser("a \"b");
  EXPECT_EQ(parser.NextToken().View(), "a");
  for (int n = 0; n < 3; ++n) EXPECT_EQ(parser.NextToken().Type(), TokError);
  parser.UndoNext();
  EXPECT_EQ(parser.NextToken().View(), "a");
  parser.Reset();
  EXPECT_EQ(parser.NextToken().View(), "a");
}

TEST(Scanners, AParserTakesAnotherText) {
  S821Parser parser("\"a", 1);
  EXPECT_EQ(parser.NextToken().Type(), TokError);
  const SString text("b c");
  parser.Init(text);
  EXPECT_EQ(parser.NextToken().View(), "b");
  parser.Init(SString());
  EXPECT_EQ(parser.NextToken().Type(), TokEnd);
  CheckText(parser.NextToken().Text(), "");
}

// A parser of its own, on the common base.
class Letters : public SParser {
 public:
  using SParser::SParser;
  SToken NextToken() override {
    if (position_ == input_.Length()) return {"", TokEnd};
    previous_ = position_++;
    return {input_, previous_, 1, TokAtom};
  }
  void Reset() override {
    SParser::Reset();
    ++resets;
  }
  int resets = 0;
};

TEST(Scanners, TheBaseServesOthers) {
  Letters letters;
  EXPECT_EQ(letters.NextToken().Type(), TokEnd);
  letters.Init("xy");
  EXPECT_EQ(letters.resets, 1);
  EXPECT_EQ(letters.NextToken().View(), "x");
  letters.UndoNext();
  EXPECT_EQ(letters.NextToken().View(), "x");
  EXPECT_EQ(letters.NextToken().View(), "y");
  Letters other("z");
  EXPECT_EQ(other.NextToken().View(), "z");
}

TEST(Scanners, ATokenCostsNoAllocation) {
  S822Parser parser("joe.smith@host (a comment) \"quoted\" [1.2.3.4]");
  const AllocationCount count;
  while (parser.NextToken().Type() != TokEnd) {
  }
  EXPECT_EQ(count.Made(), 0);
}

}  // namespace
