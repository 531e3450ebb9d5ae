// Both scanners: the same rows, and every short text, by a model that follows the rules of
// scanning byte by byte.

#include "address/SParser.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "address/Domains.h"
#include "address/S821Parser.h"
#include "address/S822Parser.h"
#include "strings/SFixedString.h"
#include "support/CheckText.h"
#include "support/CountedNew.h"
#include "support/EveryText.h"
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

// The rules of scanning, one byte at a time. Moves `position` and returns the token.
class Model {
 public:
  Model(Scanner scanner, std::string text) : scanner_(scanner), text_(std::move(text)) {}

  Token Next() {
    std::string got;
    std::size_t i = position_;
    int state = 0, depth = 0;
    const auto at = [&](std::size_t k) { return k < text_.size() ? text_[k] : '\0'; };
    const auto take = [&](int type, std::size_t next) {
      position_ = next;
      return Token{type, got};
    };
    while (i < text_.size()) {
      const char c = text_[i];
      if (c == '\r' && scanner_ == k822) {
        if (at(i + 1) != '\n') return {TokError, got};
        std::size_t n = 0;
        while (i + 2 + n < text_.size() && (at(i + 2 + n) == ' ' || at(i + 2 + n) == '\t')) ++n;
        if (n > 0 && state != 0) {
          got += ' ';
          i += 2 + n;
        } else if (n > 0) {
          if (!got.empty()) return take(TokAtom, i + n);
          i += 2 + n;
        } else if (state != 0) {
          return {TokError, got};
        } else if (i + 2 == text_.size()) {
          i += 2;
        } else if (!got.empty()) {
          return take(TokAtom, i);
        } else {
          return take(TokCrlf, i + 2);
        }
      } else if (state == 0) {
        const bool blank = c == ' ' || (c == '\t' && scanner_ == k822);
        if (blank && !got.empty()) return take(TokAtom, i + 1);
        if (blank) {
          ++i;
          continue;
        }
        if (c == '\\' && scanner_ == k821) {
          got += text_.substr(i, 2);
          i = std::min(i + 2, text_.size());
          continue;
        }
        if (scanner_ == k822 && (c == '\\' || c == ')' || c == ']')) return {TokError, got};
        const int type = SpecialType(c);
        const bool control = type == 0 && ((c & 0x7F) < 32 || c == 127) && c != '\t';
        const bool opens = c == '"' || c == '[' || (c == '(' && scanner_ == k822);
        if ((type != 0 || control || opens) && !got.empty()) return take(TokAtom, i);
        got += c;
        ++i;
        if (type != 0) return take(type, i);
        if (control) return take(scanner_ == k821 ? TokBad : TokError, i);
        if (opens) state = c;
        depth = 1;
      } else if (state == '[' && scanner_ == k821 && c != ']') {
        if (c != ' ' && c != '.' && (c < '0' || c > '9')) return {TokError, got};
        if (c != ' ') got += c;
        ++i;
      } else if (c == '\\') {
        got += text_.substr(i, 2);
        i = std::min(i + 2, text_.size());
      } else if (state == '"' && scanner_ == k821 && (c == '\r' || c == '\n')) {
        return {TokError, ""};
      } else {
        got += c;
        ++i;
        if (state == '"' && c == '"') return take(TokQuoted, i);
        if (state == '[' && c == '[') return {TokError, got};
        if (state == '[' && c == ']') {
          if (scanner_ == k821 && !IsValidLiteral(SString(std::string_view(got))))
            return {TokError, ""};
          return take(TokLiteral, i);
        }
        if (state == '(' && c == '(') ++depth;
        if (state == '(' && c == ')' && --depth == 0) return take(TokComment, i);
      }
    }
    if (state != 0) return {TokError, ""};
    if (got.empty()) return kEnd;
    return take(TokAtom, i);
  }

 private:
  [[nodiscard]] int SpecialType(char c) const {
    switch (c) {
      case '<':
        return TokLess;
      case '>':
        return TokGreater;
      case '@':
        return TokAt;
      case '.':
        return TokDot;
      case ',':
        return TokComma;
      case ';':
        return TokSemicolon;
      case ':':
        return TokColon;
      case '%':
        return scanner_ == k821 ? TokPercent : 0;
      case '(':
      case ')':
      case ']':
        return scanner_ == k821 ? TokBad : 0;
      default:
        return 0;
    }
  }

  Scanner scanner_;
  std::string text_;
  std::size_t position_ = 0;
};

Tokens ModelTokens(Scanner scanner, const std::string& text, std::size_t n) {
  Model model(scanner, text);
  Tokens tokens;
  while (tokens.size() < n) tokens.push_back(model.Next());
  return tokens;
}

void Compare(const std::string& text) {
  for (const Scanner scanner : {k821, k822}) {
    const Tokens tokens = ReadTokens(scanner, text);
    ASSERT_EQ(tokens, ModelTokens(scanner, text, tokens.size())) << scanner << " '" << text << "'";
  }
}

TEST(Scanners, ScanEveryShortTextByTheRules) {
  constexpr std::string_view kBytes = "a1 \t\r\n\"\\()[].@%";
  ForEveryText(kBytes, 4, Compare);
}

TEST(Scanners, ScanEveryByteBetweenAllOthersByTheRules) {
  for (const std::string before : {"", "a", "\"", "(", "[", "[1", "((", "\\", "\"\\", "\r\n"}) {
    for (const std::string behind : {"", "b", "\"", ")", "]", " \"", "))"}) {
      for (int byte = 0; byte < 256; ++byte) {
        Compare(before + static_cast<char>(byte) + behind);
        if (HasFatalFailure()) return;
      }
    }
  }
}

TEST(Scanners, ScanLongerTextsByTheRules) {
  std::mt19937 random(7);
  constexpr std::string_view kBytes = "ab1.  \t\t\r\n\"\"\\(())[]<>@,;:%\0\x80\xFF"_v;
  for (int round = 0; round < 50'000; ++round) {
    std::string text;
    for (auto n = random() % 16; n > 0; --n) {
      if (random() % 8 == 0) text += "\r\n";
      text += kBytes[random() % kBytes.size()];
    }
    Compare(text);
    if (HasFatalFailure()) return;
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
