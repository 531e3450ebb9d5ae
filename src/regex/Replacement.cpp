#include "Replacement.h"

#include <algorithm>
#include <ostream>

#include "../strings/Characters.h"
#include "../strings/StandardError.h"

inline namespace mailhearth {

namespace {

// The bytes that letters behind a backslash stand for, each where its letter is.
constexpr std::string_view kLetters = "ntrfv0";
constexpr std::string_view kMeanings("\n\t\r\f\v\0", 6);

bool IsGroup(char c) { return IsDigit(c) && c != '0'; }

}  // namespace

Replacement::Replacement(std::string_view text) {
  while (!text.empty()) {
    const std::size_t plain = std::min(text.find_first_of("$\\"), text.size());
    if (plain > 0) _Push(text.substr(0, plain));
    text.remove_prefix(plain);
    if (text.empty()) return;
    if (text.size() == 1) {
      valid_ = false;
      return;
    }
    if (text.front() == '$') {
      _ReadDollar(text.substr(0, 2));
    } else {
      _ReadEscape(text.substr(0, 2));
    }
    text.remove_prefix(2);
  }
}

void Replacement::_ReadDollar(std::string_view dollar) {
  if (IsGroup(dollar[1])) {
    _PushGroup(dollar[1] - '0');
  } else if (dollar[1] == '&') {
    _PushGroup(0);
  } else {
    ++unescaped_;
    _Push(dollar.substr(0, 1));
  }
}

void Replacement::_ReadEscape(std::string_view escape) {
  if (IsGroup(escape[1])) {
    _PushGroup(escape[1] - '0');
  } else if (const std::size_t at = kLetters.find(escape[1]); at != kLetters.npos) {
    _Push(kMeanings.substr(at, 1));
  } else {
    _Push(escape.substr(1));
  }
}

void Replacement::_PushGroup(int group) {
  highest_ = std::max(highest_, group);
  pieces_.push_back({{}, group});
}

void Replacement::_Report() const {
  constexpr std::string_view kUnescaped =
      "Unescaped '$' in regular expression replacement string\n";
  constexpr std::string_view kInvalid = "Invalid replacement string in regular expression\n";
  std::ostream& out = StandardError();
  for (int n = unescaped_; n > 0; --n) out.write(kUnescaped.data(), kUnescaped.size());
  if (!valid_) out.write(kInvalid.data(), kInvalid.size());
}

}  // namespace mailhearth
