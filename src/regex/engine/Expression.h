// Not installed. A compiled POSIX extended regular expression: the interface of the engine, the
// only header that code outside this folder includes. docs/regex-engine.md explains how the engine
// works.
//
// Syntax: that of POSIX extended regular expressions (IEEE Std 1003.1, XBD 9.4) over bytes
// in the C locale, with the word boundaries [[:<:]] and [[:>:]]. NUL is an ordinary byte. A
// backslash before any character makes it that character; there are no back-references. Where
// the standard leaves the meaning open:
//
//   the empty pattern               REG_BADPAT
//   a(|b), (), |                    an empty branch matches the empty text
//   *a, (+a), a|?                   a repetition of nothing is REG_BADRPT
//   a**, a{2}+, ^*                  repeats whatever stands before it
//   a{, a{,3}, {x}                  a "{" with no digit after it is itself
//   a{3, a{1x}, a{2,1}, a{256}      REG_EBRACE; the others REG_BADBR
//   [a-c-e]                         a "-" after a range is itself
//
// In one place it departs from the standard, to which the ")" of "a)" is an ordinary character:
// here it is REG_EPAREN, since one parenthesis too many is more often a slip than meant.
//
// "^" matches only at offset 0 of the text and "$" only at its end, whatever lines the text has;
// "." and [^a] match a newline and NUL too.
//
// Meaning: the leftmost match, and the longest of those; FindGroups() defines the groups.
//
// Cost: a search takes time linear in the bytes it reads, whatever the pattern: mostly one
// look-up a byte, at worst a step for each instruction of the program, in each direction. It uses
// constant stack, and caches of a few megabytes at most that the expression keeps for the next
// search. Compiling takes time and memory proportional to the program. A program has at most
// 32,768 instructions, one or two for each byte, set, branch and repetition, with bounds written
// out; a pattern that needs more is refused with REG_ESPACE.
//
// When memory runs out, compiling and searching throw std::bad_alloc; an expression that silently
// matched nothing would let everything through. The expression remains usable.
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
  // Compiles `pattern`, ignoring the case of A to Z if `ignoreCase`.
  // Returns the expression and sets `status` to 0; or returns null and sets it to one of the
  // codes of <regex.h>. The expression keeps no reference to the pattern.
  static std::unique_ptr<Expression> Compile(std::string_view pattern, bool ignoreCase,
                                             int& status);

  Expression(const Expression&) = delete;
  Expression& operator=(const Expression&) = delete;
  ~Expression();

  // Returns the number of groups, pairs of parentheses, in the pattern.
  [[nodiscard]] int GroupCount() const;

  // Searches `text` from offset `start` on; word boundaries see the byte before `start`.
  // Needs: at most 2^31 - 1 bytes of text. Sets `match` to the bounds of the match, as offsets
  // into `text`. Returns whether there is one; none for a start below 0 or after the end. On
  // failure `match` is left alone.
  bool Find(std::string_view text, int start, regmatch_t& match);

  // Finds the groups of a match. Needs: `match` as Find() set it, and the `text` it searched.
  // `match` may be an element of `groups`.
  // Sets groups[0] to the match and groups[k], as far as there is room, to group k, or to
  // (-1, -1) if that took no part. Groups from the tenth on are not reported and stay (-1, -1).
  //
  // Of all ways to match these bounds, the groups show the one in which each subpattern takes the
  // longest text: from left to right, the outer before its parts; of equal branches, the first.
  // A group in a repetition reports the last iteration; a group that took no part in that
  // iteration is unset. An iteration is empty only if the minimum asks for it, or if the
  // whole repetition matches nothing and its operand can.
  //
  // Reads the match again, a few times for each level of groups.
  void FindGroups(std::string_view text, regmatch_t match, std::span<regmatch_t> groups);

 private:
  struct Parts;

  explicit Expression(std::unique_ptr<Parts> parts);

  std::unique_ptr<Parts> parts_;  // never null
};

// Returns the message for a status of Compile(): never null, shorter than 100 bytes.
[[nodiscard]] const char* ErrorText(int status);

}  // namespace engine

}  // namespace mailhearth

#endif  // MAILHEARTH_REGEX_ENGINE_EXPRESSION_H
