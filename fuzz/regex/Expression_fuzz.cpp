// Searches with a pattern that comes from anywhere: what is found lies in the text, does
// not depend on where the search began or what was searched before, and small cases agree
// with the slow matcher.
//
// An input is one byte of flags (1: no regard to case), the pattern, a newline, the text.

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "Require.h"
#include "regex/engine/Expression.h"
#include "support/ExactInput.h"
#include "support/RegexComparison.h"

namespace {

using mailhearth::engine::Expression;

constexpr std::size_t kSmallPattern = 12;  // in bytes, as is kSmallText
constexpr std::size_t kSmallText = 8;
constexpr int kMaxMatches = 40;  // looked at in one text
constexpr regmatch_t kUnset = {-7, -7};

bool Same(const regmatch_t& a, const regmatch_t& b) {
  return a.rm_so == b.rm_so && a.rm_eo == b.rm_eo;
}

bool Within(const regmatch_t& inner, int from, int to) {
  return from <= inner.rm_so && inner.rm_so <= inner.rm_eo && inner.rm_eo <= to;
}

// Searches from `start`. Returns the match, (-1, -1) for none.
regmatch_t Found(Expression& expression, std::string_view text, int start) {
  regmatch_t match = kUnset;
  const bool found = expression.Find(text, start, match);
  Require(found ? Within(match, start, static_cast<int>(text.size())) : Same(match, kUnset));
  return found ? match : regmatch_t{-1, -1};
}

void CheckGroups(Expression& expression, std::string_view text, const regmatch_t& match) {
  std::vector<regmatch_t> groups(static_cast<std::size_t>(expression.GroupCount()) + 1, kUnset);
  expression.FindGroups(text, match, groups);
  Require(Same(groups[0], match));
  for (const regmatch_t& group : groups) {
    Require(Same(group, {-1, -1}) || Within(group, match.rm_so, match.rm_eo));
  }

  std::vector<regmatch_t> fewer(groups.size(), kUnset);
  const std::size_t room = groups.size() / 2;
  expression.FindGroups(text, match, std::span(fewer).first(room));
  for (std::size_t k = 0; k < fewer.size(); ++k) {
    Require(Same(fewer[k], k < room ? groups[k] : kUnset));
  }
}

// The leftmost match is the same from every start up to its own.
void CheckStarts(Expression& expression, Expression& fresh, std::string_view text) {
  const int end = static_cast<int>(text.size());
  const regmatch_t first = Found(expression, text, 0);
  for (const int start : {end, end / 2, 1, first.rm_so}) {
    if (start < 0 || start > end) continue;
    const regmatch_t match = Found(expression, text, start);
    if (first.rm_so < 0 || first.rm_so >= start) Require(Same(match, first));
    Require(Same(match, Found(fresh, text, start)));
  }
  Require(Found(expression, text, -1).rm_so < 0);
  Require(Found(expression, text, end + 1).rm_so < 0);
  Require(Same(Found(expression, text, 0), first));
}

// As a caller goes through all matches of a text.
void CheckMatches(Expression& expression, std::string_view text) {
  int start = 0;
  for (int n = 0; n < kMaxMatches; ++n) {
    const regmatch_t match = Found(expression, text, start);
    if (match.rm_so < 0) return;
    CheckGroups(expression, text, match);
    start = match.rm_eo > match.rm_so ? match.rm_eo : match.rm_eo + 1;
  }
}

void CheckSmall(std::string_view pattern, std::string_view text, bool ignoreCase) {
  if (pattern.size() > kSmallPattern || text.size() > kSmallText) return;
  mailhearth::RegexComparison pair(pattern, ignoreCase);
  if (pair.TooLarge()) return;
  Require(pair.Verdict().empty());
  if (!pair.Compiles()) return;
  pair.SetText(text);
  for (std::size_t start = 0; start <= text.size(); ++start) {
    Require(pair.Difference(static_cast<int>(start)).empty());
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  const std::size_t newline = input.find('\n', 1);
  if (newline == std::string_view::npos) return 0;
  const bool ignoreCase = (data[0] & 1) != 0;
  const ExactInput pattern(input.substr(1, newline - 1)), text(input.substr(newline + 1));

  int status = -1, again = -1;
  const auto expression = Expression::Compile(pattern.View(), ignoreCase, status);
  const auto fresh = Expression::Compile(pattern.View(), ignoreCase, again);
  Require((expression == nullptr) == (status != 0) && again == status);
  Require(mailhearth::engine::ErrorText(status) != nullptr);
  if (expression != nullptr) {
    CheckStarts(*expression, *fresh, text.View());
    CheckMatches(*expression, text.View());
  }
  CheckSmall(pattern.View(), text.View(), ignoreCase);
  return 0;
}
