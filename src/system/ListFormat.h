// Words filled into lines, as for usage texts and messages to people.
//
//   Format("The queue is full. Try again.", 16, 2, "\n")
//
// gives three lines, with two blanks in front of each:
//
//     The queue is
//     full.  Try
//     again.

#ifndef MAILHEARTH_SYSTEM_LISTFORMAT_H
#define MAILHEARTH_SYSTEM_LISTFORMAT_H

#include "../lists/SStringList.h"
#include "../strings/Export.h"
#include "../strings/SString.h"

inline namespace mailhearth {

// Returns the words in lines that begin with `indent` blanks and end with `lineEnd`, the last
// one too; undefined when there are no words. A negative indent is no blank.
//
// A line takes its first word however long it is, and a further one as long as the line so
// far, indent included, and the word are together shorter than `width` less `indent`. Between
// words is a blank, or two where the line so far ends in a full stop, a colon, an exclamation
// or a question mark. Known and kept: neither is counted, so a line can come out one or two
// bytes longer than such a sum, and the indent counts twice.
[[nodiscard]] MAILHEARTH_EXPORT SString FormatList(SStringList words, int width, int indent,
                                                   const SString& lineEnd);

// The same for the words of a text, between which there are blanks or line ends: see Split at
// a blank.
[[nodiscard]] MAILHEARTH_EXPORT SString Format(const SString& text, int width, int indent,
                                               const SString& lineEnd);

}  // namespace mailhearth

#endif  // MAILHEARTH_SYSTEM_LISTFORMAT_H
