// SRegex searches strings for a pattern and remembers the positions of the last match. A
// pattern that does not compile makes an object that matches nothing: OK() is then false, and
// Debug() gives the reason.
//
// The syntax is that of POSIX extended regular expressions over bytes in the C locale, with
// the word boundaries [[:<:]] and [[:>:]]. The only escape is a backslash, which makes the
// next character an ordinary one; SPerlRegex knows \d, \s, \w and the like. Pattern and
// text may hold NUL. "^" matches only at offset 0 of the text, and "$" only at its end. "."
// and [^a] match a newline. A word boundary after offset 0 looks at the byte before it. The
// match is the leftmost-longest. A search takes time linear in the bytes that it reads,
// whatever the pattern; but it may have to read far past a match to rule out a longer one, as
// a*b|a does at every a. So a series of searches, as in splitting or replacing all, takes
// time linear in the string with most patterns and quadratic with such patterns.
//
//   const SRegex re("([a-z]+)=([a-z]+)");
//   if (re.HasMatch(line)) {
//     const regmatch_t value = re.MatchInfo(2);
//     Consume(line.Segment(value.rm_so, value.rm_eo - value.rm_so));
//   }
//
// For a short match the expression copies the matched bytes, and finds the groups when they
// are asked for; for a longer match the search finds the groups at once. Either way the
// expression keeps no reference to the string, which may be edited or destroyed.
//
// Copying copies nothing; see below. Not for use between threads: a search writes to the
// object, even a constant one.

#ifndef MAILHEARTH_REGEX_SREGEX_H
#define MAILHEARTH_REGEX_SREGEX_H

#include <regex.h>  // regmatch_t

#include <array>
#include <memory>
#include <string_view>

#include "../lists/SStringList.h"
#include "../strings/Export.h"
#include "../strings/SString.h"

inline namespace mailhearth {

namespace engine {
class Expression;
}  // namespace engine

class Searches;

class MAILHEARTH_EXPORT SRegex {
 public:
  // Nothing is compiled.
  SRegex();

  // Compiles `pattern`. The only option is "i", which ignores the case of A to Z. An empty
  // pattern does not compile.
  explicit SRegex(const SString& pattern, const char* options = nullptr);

  // These copy nothing: a new object has no pattern compiled, and an object assigned to stays
  // as it is. Pass expressions by reference.
  SRegex(SRegex& other);
  // NOLINTNEXTLINE(misc-unconventional-assign-operator)
  SRegex& operator=(SRegex& other);

  virtual ~SRegex();

  // Drops the compiled pattern and the positions, and compiles `pattern`.
  // Returns 0, or the code from <regex.h> for the error in the pattern.
  virtual int Set(const SString& pattern, const char* options = nullptr);

  // Writes to the standard error stream whether the last pattern compiled, and if not, why.
  virtual void Debug() const;

  // Whether a pattern is compiled.
  [[nodiscard]] bool OK() const { return status_ == 0; }

  // Searches `s` from the byte at `start` to its end. Returns whether there is a match; there
  // is none if `start` is outside the string or no pattern is compiled.
  //
  // Records the positions of the match. After a search without a match the position of the
  // whole match is from `start` to the end of `s`, and the groups are still those of the last
  // match.
  bool HasMatch(const SString& s, int start = 0) const;

  // Searches, and returns copies of the match and of each group, in the order of the opening
  // parentheses. A group that took no part is a defined empty string, as are the tenth group
  // and those after it, whose positions are not recorded. Returns an undefined list when
  // there is no match.
  [[nodiscard]] SStringList Match(const SString& s, int start = 0) const;

  // Returns positions of the last match as offsets from the beginning of the string: with `k`
  // 0 those of the whole match, else those of group `k`. Returns (-1, -1) for a group that
  // took no part, for the tenth group and those after it, for a group that the expression
  // does not have, and before any search.
  [[nodiscard]] regmatch_t MatchInfo(int k) const;

  // Return the start of the last match and its length in bytes, from MatchInfo(0): -1 and 0
  // before any search.
  [[nodiscard]] int MatchPos() const;
  [[nodiscard]] int MatchLen() const;

  // Replaces the first match in `s` by `replacement`, in which $1 to $9 and \1 to \9 stand
  // for groups, $& for the whole match (see AppendPasteBuffer); with the option "g", every
  // match.
  //
  // Each search starts at the end of the previous match, and a match that reaches the end of
  // `s` is the last. After an empty match before the end, one byte is copied unchanged; from
  // then on an empty match may also follow a match that reaches the end, as in Perl. So b*
  // replaced by - turns b into -, abc into -a--c- and ab into -a--.
  //
  // Returns the list that Match() gives for the last match replaced. Without a match, returns
  // an undefined list and changes nothing. Takes time linear in the string and the result, in
  // addition to the searches. A string that loses all its bytes to empty replacements becomes
  // undefined.
  SStringList Subst(SString& s, const SString& replacement, const char* options = nullptr) const;

 private:
  friend class Searches;

  // The positions of the whole match and of groups 1 to 9; the last is always (-1, -1).
  static constexpr int kEntries = 11;
  static constexpr int kRecorded = 10;
  using Positions = std::array<regmatch_t, kEntries>;

  struct Matches;

  void _Init(const SString& pattern, const char* options);
  void _Free();

  // Searches as HasMatch does, but records nothing.
  bool _Find(std::string_view text, int start, regmatch_t& match) const;

  // Records a search of `text` from `start` on, which found `match`; a null `match` records
  // that there is none.
  void _Record(std::string_view text, int start, const regmatch_t* match) const;

  // Finds the groups of the last match, unless they are known.
  void _FindPending() const;

  // Returns the positions of a match and its groups in the text searched.
  [[nodiscard]] Positions _FindGroups(std::string_view text, const regmatch_t& match) const;

  // Returns the bytes at these positions, for the whole match and each group.
  [[nodiscard]] SStringList _List(std::string_view text, const Positions& positions) const;

  std::unique_ptr<engine::Expression> compiled_;  // null unless status_ is 0
  std::unique_ptr<Matches> matches_;              // null when compiled_ is
  int status_ = kNeverCompiled;

  static constexpr int kNeverCompiled = -1;
};

}  // namespace mailhearth

#endif  // MAILHEARTH_REGEX_SREGEX_H
