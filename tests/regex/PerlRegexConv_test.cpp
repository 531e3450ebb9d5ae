#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>

#include "regex/SPerlRegex.h"
#include "strings/SFixedString.h"
#include "support/CheckText.h"
#include "support/CountedNew.h"
#include "support/ErrorText.h"
#include "support/ExactInput.h"
#include "support/Growth.h"

namespace {

using namespace std::string_view_literals;

struct Row {
  std::string_view pattern;
  std::string_view translation;
};

constexpr Row kTranslations[] = {
    {"a", "a"},
    {"abc", "abc"},
    {".*+?{}|^$", ".*+?{}|^$"},
    {"a{2,3}", "a{2,3}"},
    {R"(\d)", "[0-9]"},
    {R"(\s)", "[ \f\n\r\t\v]"},
    {R"(\w)", "[A-Za-z_0-9]"},
    {R"(\D)", "[^0-9]"},
    {R"(\S)", "[^ \f\n\r\t\v]"},
    {R"(\W)", "[^A-Za-z_0-9]"},
    {R"(\N)", "[^\n]"},
    {R"(a\Nb)", "a[^\n]b"},
    {R"(\f\n\r\t\v)", "\f\n\r\t\v"},
    {R"(\d+\.\d+)", R"([0-9]+\.[0-9]+)"},
    {R"(\.\(\)\[\]\\)", R"(\.\(\)\[\]\\)"},
    {R"(\b\B\1\<\>\e\0)", R"(\b\B\1\<\>\e\0)"},
    {"\\\n", "\\\n"},
    {"\\\0a"sv, "\\\0a"sv},
    {"a\0b"sv, "a\0b"sv},
    {"\0"sv, "\0"sv},
    {"\xff\\d\x80", "\xff[0-9]\x80"},
    {"()", "()"},
    {"(a)(b)", "(a)(b)"},
    {"((a)|(b))", "((a)|(b))"},
    {"(((((((((())))))))))", "(((((((((())))))))))"},
    {"()()()()()()()()()()", "()()()()()()()()()()"},
    {R"(\(\(\(\(\(\(\(\(\(\(\()", R"(\(\(\(\(\(\(\(\(\(\(\()"},
    {"[((((((((((((()]", "[((((((((((((()]"},
    {"[)]", "[)]"},
    {"[a]", "[a]"},
    {"[a-c]", "[a-c]"},
    {"[]a]", "[]a]"},
    {"[]]", "[]]"},
    {"[^]a]", "[^]a]"},
    {"[^^]", "[^^]"},
    {"[a^]", "[a^]"},
    {"[[]", "[[]"},
    {"[a[]", "[a[]"},
    {"[a[b]", "[a[b]"},
    {R"([\d])", "[0-9]"},
    {R"([\s])", "[ \f\n\r\t\v]"},
    {R"([^\s])", "[^ \f\n\r\t\v]"},
    {R"([\w.-])", "[A-Za-z_0-9.-]"},
    {R"([\f\n\r\t\v])", "[\f\n\r\t\v]"},
    {R"([\]])", R"([\]])"},
    {R"([\]a])", R"([\]a])"},
    {R"([\\])", R"([\\])"},
    {R"([\[\-\q])", R"([\[\-\q])"},
    {"[\\\0]"sv, "[\\\0]"sv},
    {"[\0]"sv, "[\0]"sv},
    {"[[:<:]]", "[[:<:]]"},
    {"[[:>:]]", "[[:>:]]"},
    {"[[:<:]]foo[[:>:]]", "[[:<:]]foo[[:>:]]"},
    {"[[:<:]](a)[[:>:]]", "[[:<:]](a)[[:>:]]"},
    {"[[:<:]", "[[:<:]"},
    {"[[:>:a]", "[[:>:a]"},
    {"[[:<:}]", "[[:<:}]"},
    {"[[:alpha:]", "[[:alpha:]"},
    {R"(^\s*(\w+)\s*=\s*([^#\n]*))",
     "^[ \f\n\r\t\v]*([A-Za-z_0-9]+)[ \f\n\r\t\v]*=[ \f\n\r\t\v]*([^#\n]*)"},
};

// Translates a pattern that ends where its block of memory ends.
SString Translated(std::string_view pattern) {
  const ExactInput input(pattern);
  SFixedString fixed(input.Data(), input.Length());
  return PerlRegexConv(fixed);
}

TEST(PerlRegexConv, Translates) {
  for (const Row& row : kTranslations) {
    SCOPED_TRACE(row.pattern);
    SString translation;
    EXPECT_EQ(ErrorText([&] { translation = Translated(row.pattern); }), "");
    CheckText(translation, row.translation);
  }
}

TEST(PerlRegexConv, TheEmptyPatternIsUndefined) {
  EXPECT_EQ(ErrorText([] {
              CheckUndefined(PerlRegexConv(""));
              CheckUndefined(PerlRegexConv(SString()));
            }),
            "");
}

TEST(PerlRegexConv, TheConstants) {
  EXPECT_STREQ(RX_DIGIT, "0-9");
  EXPECT_STREQ(RX_SPACE, " \f\n\r\t\v");
  EXPECT_STREQ(RX_WORD, "A-Za-z_0-9");
  EXPECT_STREQ(RX_BDIGIT, "[0-9]");
  EXPECT_STREQ(RX_BSPACE, "[ \f\n\r\t\v]");
  EXPECT_STREQ(RX_BWORD, "[A-Za-z_0-9]");
  EXPECT_STREQ(RX_BXDIGIT, "[^0-9]");
  EXPECT_STREQ(RX_BXSPACE, "[^ \f\n\r\t\v]");
  EXPECT_STREQ(RX_BXWORD, "[^A-Za-z_0-9]");
  EXPECT_STREQ(RX_BXNL, "[^\n]");
}

constexpr std::string_view kReasons[] = {
    "",
    "Regular expression can't end with a single backslash.\n",
    "Too many parenthesized elements in regular expression (maximum 10).\n",
    "Unmatched opening parenthesis in regular expression.\n",
    "Unterminated range [...] in regular expression.\n",
    "Unmatched closing parenthesis in regular expression.\n",
    "Unmatched closing bracket in regular expression.\n",
    "Special characters not allowed in a range (\\D, \\S, or \\W)\n",
    "Regular expression terminated prematurely.\n",
};

std::string Report(int code, std::string_view escapedPattern) {
  const bool known = code >= 1 && code <= 8;
  return "Regular expression error -- compile aborted.  Reason:\n\t" +
         std::string(known ? kReasons[code] : "") + "\tThe erroneous expression is '" +
         std::string(escapedPattern) + "'.\n";
}

TEST(RegexError, WritesTheReasonAndThePattern) {
  for (int code = -1; code <= 10; ++code) {
    EXPECT_EQ(ErrorText([&] { RegexError(code, SString("a\n\\\0", 4)); }),
              Report(code, "a\\n\\\\\\0"));
  }
  EXPECT_EQ(ErrorText([] { RegexError(3, SString()); }), Report(3, ""));
  EXPECT_EQ(ErrorText([] { RegexError(-2147483647 - 1, "x"); }), Report(0, "x"));
}

struct ErrorRow {
  std::string_view pattern;
  int code;
  std::string_view escaped;
};

constexpr ErrorRow kErrors[] = {
    {"((((((((((()))))))))))", 2, "((((((((((()))))))))))"},
    {"()()()()()()()()()()()", 2, "()()()()()()()()()()()"},
    {"(((((((((((", 2, "((((((((((("},
    {"(a", 3, "(a"},
    {"(", 3, "("},
    {"(a(b)", 3, "(a(b)"},
    {R"((a\))", 3, R"((a\\))"},
    {"[a", 4, "[a"},
    {"[", 4, "["},
    {"[^", 4, "[^"},
    {"[]", 4, "[]"},
    {"[^]", 4, "[^]"},
    {"[[:<:", 4, "[[:<:"},
    {R"([\)", 4, R"([\\)"},
    {R"([a\)", 4, R"([a\\)"},
    {R"([\])", 4, R"([\\])"},
    {"a)", 5, "a)"},
    {")(", 5, ")("},
    {"(a))", 5, "(a))"},
    {"[[:alpha:]]", 6, "[[:alpha:]]"},
    {"a]", 6, "a]"},
    {"]", 6, "]"},
    {"[a]]", 6, "[a]]"},
    {"[[:<:]]]", 6, "[[:<:]]]"},
    {"[^[:<:]]", 6, "[^[:<:]]"},
    {R"([\D])", 7, R"([\\D])"},
    {R"([\S])", 7, R"([\\S])"},
    {R"([a\W])", 7, R"([a\\W])"},
    {R"([^\N])", 7, R"([^\\N])"},
    {R"(ab\)", 8, R"(ab\\)"},
    {R"(\)", 8, R"(\\)"},
    {R"(\\\)", 8, R"(\\\\\\)"},
    {R"((a)\)", 8, R"((a)\\)"},
    {"a\0\\"sv, 8, R"(a\0\\)"},
    // The first from left to right ...
    {"a)]", 5, "a)]"},
    {"a])", 6, "a])"},
    {R"([\D)", 7, R"([\\D)"},
    {R"((]\)", 6, R"((]\\)"},
    // ... and at the end, brackets before parentheses before the backslash.
    {"([a", 4, "([a"},
    {R"(([a\)", 4, R"(([a\\)"},
    {R"((a\)", 3, R"((a\\)"},
};

TEST(PerlRegexConv, ReportsTheFirstError) {
  for (const ErrorRow& row : kErrors) {
    SCOPED_TRACE(row.pattern);
    EXPECT_EQ(ErrorText([&] { CheckUndefined(Translated(row.pattern)); }),
              Report(row.code, row.escaped));
  }
}

// The same translation, one character at a time.
class Model {
 public:
  explicit Model(std::string_view pattern) : in_(pattern) {}

  // Returns the code of the error, 0 if there is none.
  int Run() {
    while (at_ < in_.size()) {
      if (const int code = inside_ ? StepInside() : StepOutside()) return code;
    }
    if (inside_) return 4;
    if (opened_ > closed_) return 3;
    return overrun_ ? 8 : 0;
  }

  std::string out;

 private:
  int StepOutside() {
    const char c = in_[at_++];
    if (c == '(' && ++opened_ == 11) return 2;
    if (c == ')' && ++closed_ > opened_) return 5;
    if (c == ']') return 6;
    if (c == '\\') return Escape();
    out += c;
    if (c == '[') Open();
    return 0;
  }

  void Open() {
    const std::string_view six = in_.substr(at_, 6);
    if (six == "[:<:]]" || six == "[:>:]]") {
      out += six;
      at_ += 6;
      return;
    }
    inside_ = true;
    if (in_.substr(at_, 1) == "^") out += in_[at_++];
    if (in_.substr(at_, 1) == "]") out += in_[at_++];
  }

  int StepInside() {
    const char c = in_[at_++];
    if (c == '\\') return Escape();
    out += c;
    if (c == ']') inside_ = false;
    return 0;
  }

  int Escape() {
    if (at_ == in_.size()) {
      overrun_ = true;
      return 0;
    }
    const char x = in_[at_++];
    if (inside_ && std::string_view("DSWN").find(x) != std::string_view::npos) return 7;
    const std::string open = inside_ ? "" : "[", close = inside_ ? "" : "]";
    switch (x) {
      case 'd':
        out += open + "0-9" + close;
        break;
      case 's':
        out += open + " \f\n\r\t\v" + close;
        break;
      case 'w':
        out += open + "A-Za-z_0-9" + close;
        break;
      case 'D':
        out += "[^0-9]";
        break;
      case 'S':
        out += "[^ \f\n\r\t\v]";
        break;
      case 'W':
        out += "[^A-Za-z_0-9]";
        break;
      case 'N':
        out += "[^\n]";
        break;
      case 'f':
        out += '\f';
        break;
      case 'n':
        out += '\n';
        break;
      case 'r':
        out += '\r';
        break;
      case 't':
        out += '\t';
        break;
      case 'v':
        out += '\v';
        break;
      default:
        (out += '\\') += x;
    }
    return 0;
  }

  std::string_view in_;
  std::size_t at_ = 0;
  int opened_ = 0, closed_ = 0;
  bool inside_ = false, overrun_ = false;
};

TEST(PerlRegexConv, AgreesWithTheRulesOnRandomPatterns) {
  constexpr std::string_view kPieces[] = {
      "(", ")", "(",  ")",    "[",       "]",       "[",   "]",    "\\", "\\", "^",   "d",
      "s", "w", "D",  "S",    "W",       "N",       "f",   "n",    "r",  "t",  "v",   "a",
      ".", "*", "\n", "\0"sv, "[[:<:]]", "[[:>:]]", "[:<", "((((", ":]", "()", "\xff"};
  std::mt19937 random(20240607);
  const auto below = [&](int n) { return std::uniform_int_distribution<int>(0, n - 1)(random); };
  int good = 0, codes[9] = {};
  for (int i = 0; i < 100'000; ++i) {
    std::string pattern;
    for (int n = below(below(4) == 0 ? 40 : 8); n >= 0; --n)
      pattern += kPieces[below(std::size(kPieces))];
    Model model(pattern);
    const int code = model.Run();
    SString got;
    const std::string message =
        ErrorText([&] { got = PerlRegexConv(SString(std::string_view(pattern))); });
    ++codes[code];
    if (code == 0) {
      ++good;
      ASSERT_TRUE(got.Defined() && got == model.out && message.empty()) << pattern;
    } else {
      ASSERT_FALSE(got.Defined()) << pattern;
      ASSERT_NE(message.find(kReasons[code]), message.npos) << pattern;
    }
  }
  EXPECT_GT(good, 10'000);
  for (const int code : {2, 3, 4, 5, 6, 7, 8}) EXPECT_GT(codes[code], 10) << code;
  EXPECT_EQ(codes[1], 0);
}

TEST(PerlRegexConv, TakesLinearTime) {
  EXPECT_TRUE(GrowsLinearly(200'000, [](int n) {
    std::string pattern;
    while (static_cast<int>(pattern.size()) < n) pattern += R"(ab\d[c\s]\.)";
    EXPECT_TRUE(PerlRegexConv(SString(std::string_view(pattern))).Defined());
  }));
}

TEST(PerlRegexConv, AllocatesLittle) {
  const SString plain("an ordinary pattern"), escapes(R"(^\s*(\w+)\s*=\s*([^#\n]*))");
  AllocationCount count;
  static_cast<void>(PerlRegexConv(plain));
  EXPECT_LE(count.Made(), 2);
  const AllocationCount more;
  static_cast<void>(PerlRegexConv(escapes));
  EXPECT_LE(more.Made(), 6);
}

}  // namespace
