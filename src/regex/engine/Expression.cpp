// Compiles by parsing the pattern to a tree and the tree to a program. Matcher finds the bounds of
// a match, GroupFinder its groups; they and their DFAs are created at first use.

#include "Expression.h"

#include <optional>
#include <utility>

#include "Groups.h"
#include "Matcher.h"
#include "Program.h"
#include "Syntax.h"

inline namespace mailhearth {

namespace engine {

struct Expression::Parts {
  Tree tree;
  Program program;

  // Created at first use.
  std::optional<Matcher> matcher;
  std::optional<GroupFinder> groups;
};

Expression::Expression(std::unique_ptr<Parts> parts) : parts_(std::move(parts)) {}

Expression::~Expression() = default;

std::unique_ptr<Expression> Expression::Compile(std::string_view pattern, bool ignoreCase,
                                                int& status) {
  auto parts = std::make_unique<Parts>();
  int error = Parse(pattern, ignoreCase, parts->tree);
  if (error == 0) error = parts->program.Compile(parts->tree);
  std::unique_ptr<Expression> result;
  if (error == 0) result.reset(new Expression(std::move(parts)));
  status = error;  // last: on an exception the caller's value stays
  return result;
}

int Expression::GroupCount() const { return parts_->tree.groups; }

bool Expression::Find(std::string_view text, int start, regmatch_t& match) {
  if (start < 0 || static_cast<std::size_t>(start) > text.size()) return false;
  Parts& parts = *parts_;
  if (!parts.matcher) parts.matcher.emplace(parts.tree, parts.program);
  Span found{};
  if (!parts.matcher->Find(text, static_cast<std::size_t>(start), found)) return false;
  match = {static_cast<regoff_t>(found.from), static_cast<regoff_t>(found.to)};
  return true;
}

void Expression::FindGroups(std::string_view text, regmatch_t match, std::span<regmatch_t> groups) {
  Parts& parts = *parts_;
  if (!parts.groups) {
    parts.groups.emplace(parts.tree, parts.program, parts.matcher->Reverse());
  }
  parts.groups->Find(text, match, groups);
}

const char* ErrorText(int status) {
  switch (status) {
    case 0:
      return "Success";
    case REG_BADPAT:
      return "Empty regular expression";
    case REG_ECOLLATE:
      return "Invalid collating element";
    case REG_ECTYPE:
      return "Invalid character class";
    case REG_EESCAPE:
      return "Trailing backslash";
    case REG_EBRACK:
      return "Unmatched opening bracket";
    case REG_EPAREN:
      return "Unmatched parenthesis";
    case REG_EBRACE:
      return "Unmatched opening brace";
    case REG_BADBR:
      return "Invalid bound in braces";
    case REG_ERANGE:
      return "Invalid end of a range";
    case REG_ESPACE:
      return "Regular expression too big";
    case REG_BADRPT:
      return "Nothing before a repetition";
    default:
      return "Unknown error of a regular expression";
  }
}

}  // namespace engine

}  // namespace mailhearth
