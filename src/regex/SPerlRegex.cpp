#include "SPerlRegex.h"

#include <algorithm>
#include <array>
#include <ostream>
#include <string_view>
#include <utility>

#include "../strings/Characters.h"
#include "../strings/StandardError.h"
#include "engine/Expression.h"

inline namespace mailhearth {

namespace {

// The reasons, by code. The codes are part of the interface, so the first stays, although no
// translation gives it.
constexpr std::array<std::string_view, 9> kRegexErrors = {
    "",
    "Regular expression can't end with a single backslash.",
    "Too many parenthesized elements in regular expression (maximum 10).",
    "Unmatched opening parenthesis in regular expression.",
    "Unterminated range [...] in regular expression.",
    "Unmatched closing parenthesis in regular expression.",
    "Unmatched closing bracket in regular expression.",
    "Special characters not allowed in a range (\\D, \\S, or \\W)",
    "Regular expression terminated prematurely."};

enum Code {
  kNoError = 0,
  kTooManyGroups = 2,
  kUnmatchedOpening = 3,
  kUnterminatedRange = 4,
  kUnmatchedClosing = 5,
  kUnmatchedBracket = 6,
  kSpecialInRange = 7,
  kEndsInBackslash = 8,
};

constexpr int kMaxGroups = 10;

static_assert(RX_SPACE == kWhiteSpace);

// Returns what an escape stands for inside or outside of brackets; null if it is nothing but
// the character itself.
const char* Meaning(char escaped, bool inRange) {
  switch (escaped) {
    case 'd':
      return inRange ? RX_DIGIT : RX_BDIGIT;
    case 's':
      return inRange ? RX_SPACE : RX_BSPACE;
    case 'w':
      return inRange ? RX_WORD : RX_BWORD;
    case 'D':
      return RX_BXDIGIT;
    case 'S':
      return RX_BXSPACE;
    case 'W':
      return RX_BXWORD;
    case 'N':
      return RX_BXNL;
    case 'f':
      return "\f";
    case 'n':
      return "\n";
    case 'r':
      return "\r";
    case 't':
      return "\t";
    case 'v':
      return "\v";
    default:
      return nullptr;
  }
}

bool IsSpecial(char escaped) {
  return std::string_view("DSWN").find(escaped) != std::string_view::npos;
}

// One pass over a pattern. What needs no change is appended run by run.
class Translator {
 public:
  explicit Translator(std::string_view pattern) : rest_(pattern) {}

  // Returns the first error.
  Code Translate();

  [[nodiscard]] SString& Output() { return out_; }

 private:
  Code _Next();
  Code _Escape();
  Code _Range();
  Code _RangeMembers();
  Code _AtEnd() const;

  // Appends the next `n` bytes as they stand.
  void _Copy(std::size_t n) {
    out_ += rest_.substr(0, n);
    rest_.remove_prefix(n);
  }

  // Appends what the escape at hand stands for. Needs: two bytes.
  void _CopyEscape(bool inRange) {
    const char* const meaning = Meaning(rest_[1], inRange);
    if (meaning == nullptr) {
      _Copy(2);
    } else {
      out_ += meaning;
      rest_.remove_prefix(2);
    }
  }

  // Appends all up to the first of these characters, or the end.
  void _CopyUpTo(std::string_view stops) {
    _Copy(std::min(rest_.find_first_of(stops), rest_.size()));
  }

  std::string_view rest_;
  SString out_;
  int opened_ = 0;
  int closed_ = 0;
  bool backslash_ = false;  // the pattern ends in a single one
};

Code Translator::Translate() {
  for (;;) {
    _CopyUpTo("()[]\\");
    if (rest_.empty()) return _AtEnd();
    if (const Code error = _Next(); error != kNoError) return error;
  }
}

Code Translator::_Next() {
  switch (rest_.front()) {
    case '(':
      if (++opened_ > kMaxGroups) return kTooManyGroups;
      break;
    case ')':
      if (++closed_ > opened_) return kUnmatchedClosing;
      break;
    case ']':
      return kUnmatchedBracket;
    case '[':
      return _Range();
    default:
      return _Escape();
  }
  _Copy(1);
  return kNoError;
}

Code Translator::_Escape() {
  if (rest_.size() > 1) {
    _CopyEscape(false);
  } else {
    backslash_ = true;
    rest_ = {};
  }
  return kNoError;
}

Code Translator::_Range() {
  _Copy(1);
  if (rest_.starts_with("[:<:]]") || rest_.starts_with("[:>:]]")) {
    _Copy(6);
    return kNoError;
  }
  if (rest_.starts_with('^')) _Copy(1);
  if (rest_.starts_with(']')) _Copy(1);  // in the first place it is a member
  return _RangeMembers();
}

Code Translator::_RangeMembers() {
  for (;;) {
    _CopyUpTo("]\\");
    if (rest_.starts_with(']')) break;
    if (rest_.size() < 2) return kUnterminatedRange;
    if (IsSpecial(rest_[1])) return kSpecialInRange;
    _CopyEscape(true);
  }
  _Copy(1);
  return kNoError;
}

Code Translator::_AtEnd() const {
  if (opened_ > closed_) return kUnmatchedOpening;
  return backslash_ ? kEndsInBackslash : kNoError;
}

// Reports what is wrong with a pattern; no reason if that is empty.
void Report(std::string_view reason, const SString& pattern) {
  std::ostream& out = StandardError();
  SString text("Regular expression error -- compile aborted.  Reason:\n\t");
  if (!reason.empty()) (text += reason) += '\n';
  (text += "\tThe erroneous expression is '").Write(out);
  pattern.Debug(0);
  out.write("'.\n", 3);
}

// Reports what the engine has made of the translation of a pattern, if that is an error. Not
// that of the empty translation: it is no error of the pattern, or one reported before.
// Returns `status`.
int Reported(int status, const SString& posix, const SString& pattern) {
  if (status != 0 && posix.Length() > 0) Report(engine::ErrorText(status), pattern);
  return status;
}

}  // namespace

SString PerlRegexConv(const SString& pattern) {
  Translator translator(pattern.View());
  if (const Code error = translator.Translate(); error != kNoError) {
    RegexError(error, pattern);
    return SString();
  }
  return std::move(translator.Output());
}

void RegexError(int code, const SString& pattern) {
  const bool known = code > 0 && code < static_cast<int>(kRegexErrors.size());
  Report(kRegexErrors[known ? static_cast<std::size_t>(code) : 0], pattern);
}

SPerlRegex::SPerlRegex() : perl_(""), posix_("") {}

SPerlRegex::SPerlRegex(const SString& pattern, const char* options)
    : perl_(pattern), posix_(PerlRegexConv(pattern)) {
  Reported(SRegex::Set(posix_, options), posix_, perl_);
}

SPerlRegex::SPerlRegex(SPerlRegex& other) : SRegex(other) {}
// A constant object is not assigned: NOLINTNEXTLINE(misc-unconventional-assign-operator)
SPerlRegex& SPerlRegex::operator=(SPerlRegex&) { return *this; }
SPerlRegex::~SPerlRegex() = default;

int SPerlRegex::Set(const SString& pattern, const char* options) {
  SString posix = PerlRegexConv(pattern);
  perl_ = pattern;
  posix_ = std::move(posix);
  return posix_.Length() > 0 ? Reported(SRegex::Set(posix_, options), posix_, perl_) : 0;
}

void SPerlRegex::Debug() const {
  std::ostream& out = StandardError();
  out.write("Perl Regex:    '", 16);
  perl_.Debug(0);
  out.write("'Regular Regex: '", 17);
  posix_.Debug(0);
  out.write("'\n", 2);
}

}  // namespace mailhearth
