// The inner forms of the regex engine as text, for tests and for docs/regex-engine.md.
//
//   RegexParts parts("a*");
//   DumpTree(parts.tree)                    "repeat{0,}(a)"
//   DumpProgram(parts.program, parts.tree)  "0 split 3; 1 byte a; 2 jump 0"
//
// Letters, digits and "_" stand for themselves, other printing bytes in quotes, the rest in
// hexadecimal: a '@' \x0A. Sets stand as in patterns: [a-z], [^a], and "." for all bytes.

#ifndef MAILHEARTH_TESTS_SUPPORT_REGEXDUMP_H
#define MAILHEARTH_TESTS_SUPPORT_REGEXDUMP_H

#include <string>
#include <string_view>

#include "regex/engine/Automaton.h"
#include "regex/engine/Program.h"
#include "regex/engine/Syntax.h"

inline namespace mailhearth {

// A pattern as tree and program.
struct RegexParts {
  explicit RegexParts(std::string_view pattern, bool ignoreCase = false);

  engine::Tree tree;
  engine::Program program;
  int status;  // 0, or a code of <regex.h>; then the others are of no use
};

// As "cat(a, repeat{0,}(group1(alt(b, c))))", with the kinds "empty", "^", "$", "word-start",
// "word-end", "cat", "alt", "repeat{MIN,MAX}" and "groupN".
std::string DumpTree(const engine::Tree& tree);

// Each instruction after its place, with "; " between them.
std::string DumpProgram(const engine::Program& program, const engine::Tree& tree);

// The members of each byte class, in the order of their numbers: "[^ab] a b".
std::string DumpClasses(const engine::Program& program);

// The places of a state in braces: "|" stands between candidate matches, "*" means that a match
// may begin here too. Before the braces stands the kind of the byte read last, "edge" or "word",
// if it is known. "{1 3|2|*}", "edge {*}", "dead".
std::string DumpState(const engine::StateTable::View& state);

// The states computed so far that can be reached from `start`, a line each, in the order in
// which the lines before name them:
//
//   0 {*}: [^a] -> 0, a -> 1
//   1 {1|*}: edge -> dead matched
//
// A line has the number, the state, and its computed steps; a step has the byte class or
// "edge", the next state, and the flags "matched" and "began later".
std::string DumpStates(const engine::Program& program, const engine::Automaton& automaton,
                       engine::Automaton::StateId start);

// Computes all steps from `start` on, so that DumpStates() shows the whole DFA. Needs: it fits
// into the cache.
void ComputeStates(const engine::Program& program, engine::Automaton& automaton,
                   engine::Automaton::StateId start);

// The live places at each boundary of `text`, from the first to the last, for the whole program:
// "0 {1}; 1 {3}".
std::string DumpLivePlaces(engine::Program& program, std::string_view text);

}  // namespace mailhearth

#endif  // MAILHEARTH_TESTS_SUPPORT_REGEXDUMP_H
