// The examples of docs/regex-engine.md are what the engine does. An example is a fenced block
// "dump"; its first line says what is shown, the others are that:
//
//   tree of PATTERN           forward DFA of PATTERN [after TEXT]
//   program of PATTERN        reverse DFA of PATTERN
//   classes of PATTERN        live places of PATTERN in TEXT
//   groups of PATTERN in TEXT

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "regex/engine/Cursor.h"
#include "regex/engine/Expression.h"
#include "support/RegexDump.h"

namespace {

using mailhearth::DumpClasses;
using mailhearth::DumpLivePlaces;
using mailhearth::DumpProgram;
using mailhearth::DumpStates;
using mailhearth::DumpTree;
using mailhearth::RegexParts;
using mailhearth::engine::Automaton;
using mailhearth::engine::Cursor;
using mailhearth::engine::Direction;
using mailhearth::engine::Expression;

// What is separated by "; ", a line each.
std::string InLines(const std::string& text) {
  std::string lines;
  for (std::size_t from = 0; from <= text.size();) {
    const std::size_t to = std::min(text.find("; ", from), text.size());
    lines += text.substr(from, to - from);
    lines += '\n';
    from = to + 2;
  }
  return lines;
}

std::string DumpDfa(RegexParts& parts, Direction direction) {
  Automaton automaton(parts.program, direction);
  const Automaton::StateId start =
      automaton.Start({0, parts.program.End()}, parts.program.KindOf(parts.program.EdgeClass()),
                      direction == Direction::kForward);
  ComputeStates(parts.program, automaton, start);
  return DumpStates(parts.program, automaton, start);
}

// The states that a search of the text computes.
std::string DumpDfaAfter(RegexParts& parts, std::string_view text) {
  Automaton automaton(parts.program, Direction::kForward);
  const Automaton::StateId start = automaton.Start(
      {0, parts.program.End()}, parts.program.KindOf(parts.program.EdgeClass()), true);
  Cursor cursor(automaton, start);
  for (std::size_t at = 0; at <= text.size() && !cursor.Dead(); ++at) {
    cursor.Step(parts.program.ClassAfter(text, at));
  }
  return DumpStates(parts.program, automaton, start);
}

std::string GroupsOf(std::string_view pattern, std::string_view text) {
  int status = -1;
  const auto expression = Expression::Compile(pattern, false, status);
  regmatch_t match{};
  if (expression == nullptr || !expression->Find(text, 0, match)) return "none\n";
  std::vector<regmatch_t> groups(static_cast<std::size_t>(expression->GroupCount()) + 1);
  expression->FindGroups(text, match, groups);
  std::ostringstream out;
  for (std::size_t k = 0; k < groups.size(); ++k) {
    out << k << ' ';
    if (groups[k].rm_so < 0) {
      out << "unset\n";
    } else {
      out << groups[k].rm_so << " to " << groups[k].rm_eo << '\n';
    }
  }
  return out.str();
}

// Splits at a word, which the patterns and texts of the page do not contain.
std::pair<std::string, std::string> SplitAt(const std::string& text, std::string_view word) {
  const std::size_t at = text.find(word);
  if (at == text.npos) return {text, ""};
  return {text.substr(0, at), text.substr(at + word.size())};
}

// Returns what an example shows.
std::string Shown(const std::string& title) {
  const auto [what, rest] = SplitAt(title, " of ");
  if (what == "groups") {
    const auto [pattern, text] = SplitAt(rest, " in ");
    return GroupsOf(pattern, text);
  }
  const auto [pattern, text] = SplitAt(rest, what == "live places" ? " in " : " after ");
  RegexParts parts(pattern);
  if (parts.status != 0) return "the pattern does not compile\n";
  if (what == "tree") return DumpTree(parts.tree) + "\n";
  if (what == "program") return InLines(DumpProgram(parts.program, parts.tree));
  if (what == "classes") return DumpClasses(parts.program) + "\n";
  if (what == "live places") return InLines(DumpLivePlaces(parts.program, text));
  if (what == "reverse DFA") return DumpDfa(parts, Direction::kReverse);
  if (what != "forward DFA") return "no such example\n";
  return text.empty() ? DumpDfa(parts, Direction::kForward) : DumpDfaAfter(parts, text);
}

TEST(Page, ShowsWhatTheEngineDoes) {
  std::ifstream page(SOURCE_DIR "/docs/regex-engine.md");
  int examples = 0;
  for (std::string line; std::getline(page, line);) {
    if (line != "```dump") continue;
    std::string title, shown;
    std::getline(page, title);
    while (std::getline(page, line) && line != "```") (shown += line) += '\n';
    EXPECT_EQ(shown, Shown(title)) << title;
    ++examples;
  }
  EXPECT_GT(examples, 5) << "the examples are not recognised";
}

}  // namespace
