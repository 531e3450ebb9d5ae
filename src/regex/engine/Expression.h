// A compiled POSIX extended regular expression: the engine's one face. What the classes
// of this folder promise about patterns is built on it; nothing outside the folder sees it.
//
// Syntax: that of POSIX extended regular expressions (IEEE Std 1003.1, XBD 9.4) over bytes
// in the C locale, with the word boundaries [[:<:]] and [[:>:]]. NUL is a byte like others;
// the end of a pattern is given, never searched for. A backslash before any character is
// that character; there are no back-references. Where the standard leaves it open:
//
//   a wholly empty pattern          does not compile (REG_BADPAT)
//   a(|b), (), |                    an empty branch matches the empty text
//   *a, (+a), a|?                   a repetition of nothing is REG_BADRPT
//   a**, a{2}+, ^*                  whatever stands before is repeated
//   a{, a{,3}, {x}                  a "{" with no digit behind it is itself
//   a{3, a{1x}, a{2,1}, a{256}      REG_EBRACE, then REG_BADBR
//   [a-c-e]                         a "-" behind a range is itself
//
// In one place it departs from the standard, to which the ")" of "a)" is an ordinary character:
// here it is REG_EPAREN, since one parenthesis too many is more often a slip than meant.
//
// "^" matches at offset 0 of the text only and "$" at its end only, whatever lines it has;
// "." and [^a] match a newline and NUL.
//
// Meaning: the leftmost match, of these the longest; see FindGroups for the groups.
//
// Cost: a search takes time in proportion to the bytes it reads, whatever the pattern: at
// most a step for each instruction of the program a byte, in each direction; mostly one
// look-up a byte. Stack is constant, and memory within a fixed budget, a few megabytes, that
// the expression keeps for the next search. A compilation takes time and memory in
// proportion to the program. That has at most about 32,000 instructions, one for each byte,
// set, branch and repetition, bounds written out; a pattern that needs more is refused with
// REG_ESPACE.
//
// A compilation or a search that finds no memory throws std::bad_alloc, rather than let
// everything through by matching nothing; an expression can still be used.
//
// Not for use between threads: a search writes to the expression's caches.

#ifndef MAILHEARTH_REGEX_ENGINE_EXPRESSION_H
#define MAILHEARTH_REGEX_ENGINE_EXPRESSION_H

#include <regex.h>

#include <memory>
#include <span>
#include <string_view>

inline namespace mailhearth {

namespace engine {

class Expression {
 public:
  // Compiles `pattern`, without regard to the case of A to Z if `ignoreCase`.
  // Returns the expression, or null with one of the codes of <regex.h> in `status`; on
  // success `status` is 0. The pattern is not needed afterwards.
  static std::unique_ptr<Expression> Compile(std::string_view pattern, bool ignoreCase,
                                             int& status);

  Expression(const Expression&) = delete;
  Expression& operator=(const Expression&) = delete;
  ~Expression();

  // Number of parenthesised groups in the pattern.
  [[nodiscard]] int GroupCount() const;

  // Searches `text` from offset `start` to its end; word boundaries see the byte before
  // `start`. Needs: no more than 2^31 - 1 bytes of text. Sets `match` to the bounds of the match,
  // as offsets into `text`. Returns whether there is one; none for a start below 0 or past the end.
  // On failure `match` is left alone.
  bool Find(std::string_view text, int start, regmatch_t& match);

  // Finds the groups of a match. Needs: `match` is what Find() set, `text` what it searched.
  // The match may be the first of the groups.
  // Sets groups[0] to the match and groups[k], where there is room, to group k, or to (-1, -1)
  // where that took no part; groups from the tenth on are not reported and stay (-1, -1).
  //
  // Of the ways to match these bounds it is the one in which each subpattern, from left to
  // right and the outer before its parts, takes the longest text, of equal branches the
  // first. A group in a repetition reports the last turn, and groups that took no part in
  // that turn are unset. A turn is empty only where the least number of turns asks for it,
  // or where the whole repetition matches nothing and its operand can.
  //
  // Reads the match again, a few times for each level of groups.
  void FindGroups(std::string_view text, regmatch_t match, std::span<regmatch_t> groups);

 private:
  struct Parts;

  explicit Expression(std::unique_ptr<Parts> parts);

  std::unique_ptr<Parts> parts_;  // never null
};

// Returns the text for a code that Compile() gave: never null, less than 100 bytes.
[[nodiscard]] const char* ErrorText(int status);

}  // namespace engine

}  // namespace mailhearth

#endif  // MAILHEARTH_REGEX_ENGINE_EXPRESSION_H
