#include "support/RegexComparison.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <sstream>

inline namespace mailhearth {

namespace {

bool Same(const regmatch_t& a, const regmatch_t& b) {
  return a.rm_so == b.rm_so && a.rm_eo == b.rm_eo;
}

std::string Quoted(std::string_view text) {
  std::string quoted = "\"";
  for (const char c : text) {
    if (c >= ' ' && c <= '~') {
      quoted += c;
      continue;
    }
    std::array<char, 8> code{};
    std::snprintf(code.data(), code.size(), "<%02X>", static_cast<unsigned char>(c));
    quoted += code.data();
  }
  return quoted + "\"";
}

std::string Bounds(const std::vector<regmatch_t>& groups) {
  std::ostringstream bounds;
  for (const auto& [from, to] : groups) bounds << '(' << from << ',' << to << ')';
  return groups.empty() ? "no match" : bounds.str();
}

}  // namespace

RegexComparison::RegexComparison(std::string_view pattern, bool ignoreCase)
    : pattern_(pattern),
      slow_(pattern, ignoreCase),
      fast_(engine::Expression::Compile(pattern, ignoreCase, status_)) {}

std::string RegexComparison::Verdict() const {
  if ((fast_ != nullptr) != (status_ == 0)) {
    return Quoted(pattern_) + ": status " + std::to_string(status_) + " belies the result";
  }
  if ((fast_ != nullptr) != slow_.Compiles()) {
    return Quoted(pattern_) + (slow_.Compiles() ? " should" : " should not") + " compile, status " +
           std::to_string(status_);
  }
  if (fast_ != nullptr && fast_->GroupCount() != slow_.GroupCount()) {
    return Quoted(pattern_) + ": " + std::to_string(fast_->GroupCount()) + " groups";
  }
  return "";
}

void RegexComparison::SetText(std::string_view text) {
  text_ = text;
  slow_.SetText(text);
}

std::string RegexComparison::Difference(int start) {
  const std::vector<regmatch_t>& expected = slow_.Find(start);
  matched_ = !expected.empty();

  regmatch_t match{-7, -7};  // what no search sets
  groups_.clear();
  if (fast_->Find(text_, start, match)) {
    groups_.assign(static_cast<std::size_t>(fast_->GroupCount()) + 1, {-7, -7});
    groups_[0] = match;
    // The groups of a wrong match mean nothing, and the match may lie anywhere.
    if (matched_ && Same(match, expected[0])) fast_->FindGroups(text_, match, groups_);
  } else if (!Same(match, {-7, -7})) {
    groups_.push_back(match);
  }
  if (std::equal(groups_.begin(), groups_.end(), expected.begin(), expected.end(), Same)) return "";
  return Quoted(pattern_) + " on " + Quoted(text_) + " from " + std::to_string(start) +
         ": expected " + Bounds(expected) + ", got " + Bounds(groups_);
}

}  // namespace mailhearth
