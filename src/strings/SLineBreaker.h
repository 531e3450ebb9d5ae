// SLineBreaker returns the lines of a text one by one, as views into the text: nothing is
// copied. A line ends with a line feed, or with a carriage return and a line feed.
//
//   SLineBreaker lines(text, 1);
//   for (SString line; lines.ReadLine(line);) Consume(line);
//   Consume(lines.GetRemainder());       // the last line, if no line end follows it
//
// The caller keeps `text` alive and unchanged: a temporary will not do. Every line is a view
// on one representation, so the next call changes the bytes of all strings that share it. To
// keep a line, copy it: SString(line.Data(), line.Length()). If a string from the breaker has
// not been released or reassigned when the breaker is destroyed, the process exits with
// status 110, as for any SFixedString.
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
  // Breaks `text`; an undefined text counts as empty. With `stripEnds` 0 the lines keep
  // their line ends, otherwise these are left out.
  SLineBreaker(const SString& text, unsigned int stripEnds);

  // Makes `out` share the next line and returns 1. When no line end is left, makes `out`
  // undefined and returns 0.
  //
  // Known and kept: when no line end is left, the length that `out` has on entry counts
  // first. If it is greater than the position at which the line starts, the line extends to
  // the position of that number; the one byte after it counts as the line end. Neither goes
  // past the text. A caller that passes the previous line or an undefined string can ignore
  // this.
  int ReadLine(SString& out);

  // Returns a view of the text that has not been returned yet.
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
