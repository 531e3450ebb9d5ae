// Not installed. A series of searches through one string, of which the expression learns when it is
// over, if at all: nothing is written to it and no group looked for on the way.

#ifndef MAILHEARTH_REGEX_SEARCHES_H
#define MAILHEARTH_REGEX_SEARCHES_H

#include <string_view>

#include "SRegex.h"

inline namespace mailhearth {

class Searches {
 public:
  // Both arguments must outlive it, and the string must not be edited.
  Searches(const SRegex& re, const SString& s) : re_(re), text_(s.View()) {}

  [[nodiscard]] std::string_view Text() const { return text_; }

  // Searches from `start` on. Returns whether there is a match, and sets `match` to it.
  bool Find(int start, regmatch_t& match) {
    start_ = start;
    found_ = re_._Find(text_, start, match);
    if (found_) last_ = match;
    return found_;
  }

  // The same from the beginning.
  bool Find() {
    regmatch_t match;
    return Find(0, match);
  }

  // Whether there has been a match.
  [[nodiscard]] bool Any() const { return last_.rm_so >= 0; }

  // Returns the positions of a match and its groups.
  [[nodiscard]] auto Groups(const regmatch_t& match) const { return re_._FindGroups(text_, match); }

  // Returns the bytes of the last match and its groups; an undefined list if there is none.
  [[nodiscard]] SStringList List() const {
    return Any() ? re_._List(text_, Groups(last_)) : SStringList();
  }

  // Leaves the traces in the expression that these searches would have left one by one.
  // Needs: an expression that is compiled.
  void Record() const {
    if (Any()) re_._Record(text_, last_.rm_so, &last_);
    if (start_ >= 0 && !found_) re_._Record(text_, start_, nullptr);
  }

 private:
  const SRegex& re_;
  const std::string_view text_;
  regmatch_t last_ = {-1, -1};
  int start_ = -1;  // of the last search; negative if there was none
  bool found_ = false;
};

}  // namespace mailhearth

#endif  // MAILHEARTH_REGEX_SEARCHES_H
