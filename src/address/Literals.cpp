#include "Literals.h"

#include <algorithm>
#include <string_view>

#include "../strings/Characters.h"

inline namespace mailhearth {

namespace {

constexpr int kNumbers = 4;
constexpr int kHighest = 255;

// Takes a number and the dot behind it, if any, off `text`. Returns whether there is one in
// the range.
bool TakeNumber(std::string_view& text) {
  const std::string_view digits = text.substr(0, text.find('.'));
  text.remove_prefix(std::min(digits.size() + 1, text.size()));
  int value = 0;
  for (const char c : digits) {
    if (!IsDigit(c)) return false;
    value = value * 10 + (c - '0');
    if (value > kHighest) return false;
  }
  return !digits.empty();
}

}  // namespace

bool IsValidLiteral(const SString& text) {
  std::string_view rest = text.View();
  if (!rest.starts_with('[') || !rest.ends_with(']')) return false;
  rest.remove_prefix(1);
  rest.remove_suffix(1);
  if (std::count(rest.begin(), rest.end(), '.') != kNumbers - 1) return false;
  for (int n = 0; n < kNumbers; ++n) {
    if (!TakeNumber(rest)) return false;
  }
  return true;
}

}  // namespace mailhearth
