// SLineBreaker hands out the lines of a text one by one, as views into it: nothing is
// copied. A line ends with a line feed, or with a carriage return and a line feed.
//
//   SLineBreaker lines(text, 1);
//   for (SString line; lines.ReadLine(line);) Consume(line);
//   Consume(lines.GetRemainder());       // the last line, if it has no end
//
// The caller keeps `text` alive and unchanged: a temporary will not do. Every line is a view on the
// same representation: the next call changes what all strings that share it show. Who keeps a line
// copies it, by SString(line.Data(), line.Length()). A string from the breaker that has not been
// released or reassigned when the breaker goes ends the process with status 110, as for any
// SFixedString.
//
// Neither copyable nor movable.

#ifndef MAILHEARTH_STRINGS_SLINEBREAKER_H
#define MAILHEARTH_STRINGS_SLINEBREAKER_H

#include "Export.h"
#include "SFixedString.h"
#include "SString.h"

inline namespace mailhearth {

class MAILHEARTH_EXPORT SLineBreaker {
 public:
  // Breaks `text`; an undefined one counts as empty. With `stripEnds` 0 the lines keep
  // their ends, otherwise these are left out.
  SLineBreaker(const SString& text, unsigned int stripEnds);

  // Makes `out` share the next line and returns 1; when no line end is left, makes it
  // undefined and returns 0.
  //
  // Known and kept: before giving up, the length that `out` has on entry is looked at. If
  // that lies beyond where the line starts, the line goes up to there, one byte more
  // counting as its end, but never past the text. A caller who hands back the line before,
  // or an undefined string, need not care.
  int ReadLine(SString& out);

  // Returns a view of what has not been handed out yet.
  [[nodiscard]] SString GetRemainder();

 private:
  // Points the line at the `count` bytes at the position, then moves on to `next`.
  void _Take(int count, int next);

  SFixedString text_;
  SString textString_;
  SFixedString line_;
  int position_ = 0;
  unsigned int stripEnds_;
};

}  // namespace mailhearth

#endif  // MAILHEARTH_STRINGS_SLINEBREAKER_H
