// SPerlRegex is an SRegex for patterns written by hand: POSIX extended expressions with these
// escapes of Perl.
//
//   \d \s \w      a digit, white space, a letter, digit or underscore; also in brackets
//   \D \S \W      any other byte; not in brackets
//   \N            any byte but a newline; not in brackets
//   \f \n \r \t \v  the control character; also in brackets
//
// A backslash before any other character makes it an ordinary one. A pattern has at most ten
// groups.
//
// In a bracket expression only these escapes are known: any other backslash is a member
// itself, as is the character after it. A "[" is a member too, and the first "]" ends the
// expression, so there are no class names like [:alpha:]; only the word boundaries [[:<:]] and
// [[:>:]] are known. Avoid a backslash before a "]": the check of brackets does not take that
// "]" as the end, but the search does. To have a "]" as a member, put it first.
//
// Put a "[" last among the members: before a ".", ":" or "=" it begins a name for the engine,
// as in POSIX. So "[[.]", "[<>()[.]" and "[[:]" do not compile, and "[.[]" does. If the name is
// closed, as in "[[:alpha:][x]", the members are not the ones they seem to be.
//
//   SPerlRegex date("(\\d+)-(\\d+)-(\\d+)");
//   if (date.HasMatch(line)) ...

#ifndef MAILHEARTH_REGEX_SPERLREGEX_H
#define MAILHEARTH_REGEX_SPERLREGEX_H

#include "../strings/Export.h"
#include "../strings/SString.h"
#include "SRegex.h"

inline namespace mailhearth {

// The translations of the escapes: within brackets, ...
inline constexpr const char* RX_DIGIT = "0-9";
inline constexpr const char* RX_SPACE = " \f\n\r\t\v";
inline constexpr const char* RX_WORD = "A-Za-z_0-9";

// ... outside of them, ...
inline constexpr const char* RX_BDIGIT = "[0-9]";
inline constexpr const char* RX_BSPACE = "[ \f\n\r\t\v]";
inline constexpr const char* RX_BWORD = "[A-Za-z_0-9]";

// ... and with the opposite meaning.
inline constexpr const char* RX_BXDIGIT = "[^0-9]";
inline constexpr const char* RX_BXSPACE = "[^ \f\n\r\t\v]";
inline constexpr const char* RX_BXWORD = "[^A-Za-z_0-9]";
inline constexpr const char* RX_BXNL = "[^\n]";

// Returns the POSIX extended form of a pattern. Returns an undefined string for the empty
// pattern, and for a pattern with unbalanced brackets or parentheses, more than ten groups,
// \D, \S, \W or \N in brackets, or a single backslash at its end. RegexError then reports the
// first error from left to right; at the end of the pattern, brackets come before
// parentheses, and these before the backslash. Takes time linear in the pattern.
[[nodiscard]] MAILHEARTH_EXPORT SString PerlRegexConv(const SString& pattern);

// Reports an error in a pattern on the standard error stream:
//
//   2  more than ten groups              6  a "]" without a "["
//   3  an unmatched "("                  7  \D, \S, \W or \N in brackets
//   4  a "[" without a "]"               8  a single backslash at the end
//   5  an unmatched ")"                  1  as 8, in other words; PerlRegexConv uses 8
//
// Any other code gives no reason.
MAILHEARTH_EXPORT void RegexError(int code, const SString& pattern);

class MAILHEARTH_EXPORT SPerlRegex : public SRegex {
 public:
  // Nothing is compiled.
  SPerlRegex();

  // Compiles `pattern`; the option "i" ignores case. A pattern that cannot be translated is
  // reported and counts as the empty pattern, which does not compile. A pattern whose
  // translation does not compile is reported with the engine's reason. The empty pattern is
  // not reported.
  explicit SPerlRegex(const SString& pattern, const char* options = nullptr);

  // These copy nothing; see SRegex.
  SPerlRegex(SPerlRegex& other);
  // NOLINTNEXTLINE(misc-unconventional-assign-operator)
  SPerlRegex& operator=(SPerlRegex& other);

  ~SPerlRegex() override;

  // Compiles another pattern. Returns 0, or a code from <regex.h> after reporting the reason.
  //
  // If the translation is empty, as it is for a pattern in error, returns 0 and keeps the
  // expression compiled before.
  int Set(const SString& pattern, const char* options = nullptr) override;

  // Dumps the pattern and its translation to the standard error stream.
  void Debug() const override;

 private:
  SString perl_;   // the pattern as written
  SString posix_;  // its translation
};

}  // namespace mailhearth

#endif  // MAILHEARTH_REGEX_SPERLREGEX_H
