// SRegex searches strings for a pattern and remembers where it was found last. A pattern
// that does not compile makes an object that matches nothing: OK() tells, Debug() says why.
//
// The syntax is that of POSIX extended regular expressions over bytes in the C locale, with
// the word boundaries [[:<:]] and [[:>:]]. There is no escape but that a backslash makes the
// next character an ordinary one: SPerlRegex knows \d, \s, \w and the like. Pattern and
// text may hold NUL. "^" matches at offset 0 of the text only and "$" at its end only, "."
// and [^a] match a newline, and a word boundary behind offset 0 sees the byte before. The
// match is the leftmost, of these the longest. A search takes time linear in what it reads,
// whatever the pattern; but it may have to read far past a match to see that none is longer,
// as a*b|a does at every a. So a series of searches, as in splitting or replacing all, takes
// time linear in the string with most patterns and quadratic with such ones.
//
//   const SRegex re("([a-z]+)=([a-z]+)");
//   if (re.HasMatch(line)) {
//     const regmatch_t value = re.MatchInfo(2);
//     Consume(line.Segment(value.rm_so, value.rm_eo - value.rm_so));
//   }
//
// Groups of a short match cost a copy of its bytes until they are asked for; those of a
// longer one are found by the search. Either way the expression keeps nothing of the string,
// which may be edited or destroyed.
//
// Copying copies nothing; see below. Not for use between threads: a search writes to the
// object, a constant one too.

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

  // Compiles `pattern`. The only option is "i": the case of A to Z does not count. The
  // wholly empty pattern does not compile.
  explicit SRegex(const SString& pattern, const char* options = nullptr);

  // These copy nothing: the new object has nothing compiled, the one assigned to stays as
  // it is. Hand expressions about by reference.
  SRegex(SRegex& other);
  // NOLINTNEXTLINE(misc-unconventional-assign-operator)
  SRegex& operator=(SRegex& other);

  virtual ~SRegex();

  // Drops what is compiled, positions too, and compiles `pattern`.
  // Returns 0, or the code from <regex.h> that tells what is wrong with the pattern.
  virtual int Set(const SString& pattern, const char* options = nullptr);

  // Says on the standard error stream whether the last pattern compiled, and if not, why.
  virtual void Debug() const;

  // Whether a pattern is compiled.
  [[nodiscard]] bool OK() const { return status_ == 0; }

  // Searches `s` from the byte at `start` to its end. Returns whether there is a match; there
  // is none from a start outside the string, nor while nothing is compiled.
  //
  // The positions of the match are then the last ones. After a search without a match the
  // whole match reads as `start` to the end of `s`, and the groups are still those of the
  // last match.
  bool HasMatch(const SString& s, int start = 0) const;

  // Searches, and returns copies of what matched: the whole and each group, in the order of
  // the opening parentheses; defined and empty for a group that took no part, and for the
  // tenth group and those behind, whose positions are not recorded. An undefined list when
  // there is no match.
  [[nodiscard]] SStringList Match(const SString& s, int start = 0) const;

  // Returns the positions of the last match as offsets from the beginning of the string: for
  // `k` 0 of the whole, else of group `k`. (-1, -1) for a group that took no part, for the
  // tenth and those behind, for one that the expression does not have, and before any search.
  [[nodiscard]] regmatch_t MatchInfo(int k) const;

  // Where the last match starts, and its length in bytes, of what MatchInfo(0) tells: -1 and
  // 0 before any search.
  [[nodiscard]] int MatchPos() const;
  [[nodiscard]] int MatchLen() const;

  // Replaces the first match in `s` by `replacement`, in which $1 to $9 and \1 to \9 stand
  // for groups, $& for the whole match (see AppendPasteBuffer); with the option "g", every
  // match.
  //
  // Each search goes on where the match before has ended, and the match that reaches the end
  // of `s` is the last. Behind an empty match before the end, one byte is passed over as it
  // stands; from then on an empty match may also follow one that reaches the end, as in Perl.
  // So b* replaced by - turns b into -, abc into -a--c- and ab into -a--.
  //
  // Returns the list that Match() gives for the last match replaced; an undefined one, and no
  // change, when there was none. Takes time linear in the string and the result, beside the
  // searches. A string that loses all its bytes to empty replacements is left undefined.
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

  // Searches as HasMatch does, but leaves no trace.
  bool _Find(std::string_view text, int start, regmatch_t& match) const;

  // Leaves the trace of a search of `text` from `start` on, which found `match`, or nothing if
  // that is null.
  void _Record(std::string_view text, int start, const regmatch_t* match) const;

  // Finds the groups of the last match unless that has been done.
  void _FindPending() const;

  // Returns the positions of the groups of a match, and itself, in the text searched.
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
