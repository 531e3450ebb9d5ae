// Not installed. A replacement, read once for all the matches it takes the place of.

#ifndef MAILHEARTH_REGEX_REPLACEMENT_H
#define MAILHEARTH_REGEX_REPLACEMENT_H

#include <string_view>
#include <vector>

#include "../strings/SString.h"

inline namespace mailhearth {

class Replacement {
 public:
  // Refers to the bytes of `text`, which must outlive it. Needs: a text of a string.
  explicit Replacement(std::string_view text);

  // The highest group it names; 0 if none but the whole match.
  [[nodiscard]] int HighestGroup() const { return highest_; }

  // Appends it to `out`. `group` gives the bytes of a group by its number, 0 being the whole
  // match. What is wrong with the text is reported at each call.
  template <class Group>
  void AppendTo(SString& out, Group group) const {
    if (unescaped_ > 0 || !valid_) _Report();
    if (!valid_) return;
    for (const Piece& piece : pieces_) out += piece.group < 0 ? piece.text : group(piece.group);
  }

 private:
  // Bytes as they stand, or a group.
  struct Piece {
    std::string_view text;
    int group = -1;
  };

  // Read what follows a "$" or a backslash.
  void _ReadDollar(std::string_view dollar);
  void _ReadEscape(std::string_view escape);

  void _Push(std::string_view text) { pieces_.push_back({text, -1}); }
  void _PushGroup(int group);

  void _Report() const;

  std::vector<Piece> pieces_;
  int highest_ = 0;
  int unescaped_ = 0;  // "$" before anything else
  bool valid_ = true;
};

class Searches;

// Returns the text of `searches` with the first match replaced, or every match; see
// SRegex::Subst. The searches are at the last of them afterwards.
[[nodiscard]] SString ReplaceMatches(const Replacement& replacement, bool global,
                                     Searches& searches);

}  // namespace mailhearth

#endif  // MAILHEARTH_REGEX_REPLACEMENT_H
