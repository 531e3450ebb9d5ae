// GrepError reports a test that SStringList::Grep cannot read. The text of the test goes into
// the report as it is, without escapes.
//
//   list.Grep("?abc");   // Unknown test type for Grep function
//                        // The test field for Grep was '?abc'
//                        // ... and the same for each byte of abc, then reason 1

#ifndef MAILHEARTH_REGEX_GREPERROR_H
#define MAILHEARTH_REGEX_GREPERROR_H

#include "../strings/Export.h"
#include "../strings/SString.h"

inline namespace mailhearth {

// Writes a reason and, on the next line, the whole test to the standard error stream:
//
//   1  no test: the text ends before a kind of test is known
//   2  no kind of test begins with the byte read; Grep skips the byte and reads on
//   3  incomplete: no delimiter follows m or s, or a backslash ends the text; Grep uses the
//      parts that it has read
//
// Any other code gives no reason, only the test. Throws std::bad_alloc, and reports nothing,
// when memory runs out.
MAILHEARTH_EXPORT void GrepError(int code, const SString& test);

}  // namespace mailhearth

#endif  // MAILHEARTH_REGEX_GREPERROR_H
