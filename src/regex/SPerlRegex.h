// SPerlRegex is an SRegex for patterns as people write them by hand: what POSIX extended
// expressions have, and these escapes of Perl.
//
//   \d \s \w      a digit, white space, a letter, digit or underscore; also in brackets
//   \D \S \W      any other byte; not in brackets
//   \N            any byte but a newline; not in brackets
//   \f \n \r \t \v  the control character; also in brackets
//
// A backslash before any other character makes that an ordinary one. At most ten groups.
//
// In brackets only these escapes are known: any other backslash is a member itself, as is
// what follows it. A "[" is a member too and the first "]" ends them, so there are no class
// names like [:alpha:]; only the word boundaries [[:<:]] and [[:>:]] are known. A backslash
// before a "]" is best avoided: it keeps the check of brackets from seeing their end, but
// for the search they do end there. To have a "]" among the members, put it first.
//
// A "[" among the members is best put last: before a ".", ":" or "=" it begins a name for the
// engine, as in POSIX. So "[[.]", "[<>()[.]" and "[[:]" do not compile, and "[.[]" does. Where
// the name is closed, as in "[[:alpha:][x]", the members are others than they seem.
//
//   SPerlRegex date("(\\d+)-(\\d+)-(\\d+)");
//   if (date.HasMatch(line)) ...

#ifndef MAILHEARTH_REGEX_SPERLREGEX_H
#define MAILHEARTH_REGEX_SPERLREGEX_H

#include "../strings/Export.h"
#include "../strings/SString.h"
#include "SRegex.h"

inline namespace mailhearth {

// What the escapes stand for: within brackets, ...
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

// Returns the POSIX extended form of a pattern. An undefined string for the empty pattern,
// and for one with unbalanced brackets or parentheses, more than ten groups, \D, \S, \W or
// \N in brackets, or a single backslash at its end; that is reported by RegexError: the
// first that is met from left to right, at the end of the pattern brackets before
// parentheses before the backslash. Takes time linear in the pattern.
[[nodiscard]] MAILHEARTH_EXPORT SString PerlRegexConv(const SString& pattern);

// Reports on the standard error stream what is wrong with a pattern:
//
//   2  more than ten groups              6  a "]" without a "["
//   3  an opening parenthesis too many   7  \D, \S, \W or \N in brackets
//   4  a "[" without a "]"               8  a single backslash at the end
//   5  a closing parenthesis too many    1  the same, in other words; PerlRegexConv uses 8
//
// Any other code gives no reason.
MAILHEARTH_EXPORT void RegexError(int code, const SString& pattern);

class MAILHEARTH_EXPORT SPerlRegex : public SRegex {
 public:
  // Nothing is compiled.
  SPerlRegex();

  // Compiles `pattern`; the option "i" ignores case. One that cannot be translated is
  // reported and counts as the empty pattern, which does not compile. One whose translation
  // does not compile is reported as well, with the engine's reason; the empty pattern is not.
  explicit SPerlRegex(const SString& pattern, const char* options = nullptr);

  // These copy nothing, as those of SRegex.
  SPerlRegex(SPerlRegex& other);
  // NOLINTNEXTLINE(misc-unconventional-assign-operator)
  SPerlRegex& operator=(SPerlRegex& other);

  ~SPerlRegex() override;

  // Compiles another pattern. Returns 0, or a code from <regex.h> after reporting the reason.
  //
  // Where the translation is empty, as that of a pattern in error is, the answer is 0 and
  // the expression compiled before goes on to be used.
  int Set(const SString& pattern, const char* options = nullptr) override;

  // Dumps the pattern and its translation to the standard error stream.
  void Debug() const override;

 private:
  SString perl_;   // the pattern as written
  SString posix_;  // its translation
};

}  // namespace mailhearth

#endif  // MAILHEARTH_REGEX_SPERLREGEX_H
