// Filling of words into lines, as for usage texts and messages to people.
//
//   Format("The queue is full. Try again.", 16, 2, "\n")
//
// gives three lines, each with an indent of two blanks:
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

// Returns the words in lines. Each line, even the last, begins with `indent` blanks, none if
// `indent` is negative, and ends with `lineEnd`. An empty result is an undefined string, as it
// is without words. Words are neither split nor changed: an empty word counts, and a line end
// within a word does not start a new line. Throws std::bad_alloc when memory runs out.
//
// A line takes its first word, however long it is. It takes another word if the length of the
// line so far, indent included, plus that of the word is less than `width` less `indent`; so
// with a `width` of 0 or less, and an `indent` of 0 or more, each word has its own line. A
// blank separates words, or two blanks if the line so far ends in a full stop, a colon, an
// exclamation mark or a question mark.
//
// Known and kept: the separator does not count and the indent counts twice. So a line of
// several words has at most `width` - `indent` + 1 bytes, indent included and line end not.
[[nodiscard]] MAILHEARTH_EXPORT SString FormatList(SStringList words, int width, int indent,
                                                   const SString& lineEnd);

// The same for the words of a text, separated by blanks, tabs, carriage returns and line feeds
// (see SString::Split at a blank). An empty text has no words; a text of nothing else than
// separators has one empty word.
[[nodiscard]] MAILHEARTH_EXPORT SString Format(const SString& text, int width, int indent,
                                               const SString& lineEnd);

}  // namespace mailhearth

#endif  // MAILHEARTH_SYSTEM_LISTFORMAT_H
