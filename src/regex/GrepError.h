// What SStringList::Grep says of a test that it does not understand.

#ifndef MAILHEARTH_REGEX_GREPERROR_H
#define MAILHEARTH_REGEX_GREPERROR_H

#include "../strings/Export.h"
#include "../strings/SString.h"

inline namespace mailhearth {

// Reports on the standard error stream: 1, there is no test; 2, no such kind of test; 3, the
// test is incomplete. Any other code gives no reason, but the test like all.
MAILHEARTH_EXPORT void GrepError(int code, const SString& test);

}  // namespace mailhearth

#endif  // MAILHEARTH_REGEX_GREPERROR_H
