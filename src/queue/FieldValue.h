// Whether a value that comes from outside may go into a record as it stands. The queue itself
// never asks: it stores values as they are given.
//
//   record["Subject:"] = IsFieldValue(subject) ? subject : SString("");

#ifndef MAILHEARTH_QUEUE_FIELDVALUE_H
#define MAILHEARTH_QUEUE_FIELDVALUE_H

#include "../strings/Export.h"
#include "../strings/SString.h"

inline namespace mailhearth {

// Whether a value that is stored in a record reads back as it is, and not as further values
// and fields: in it every line end is followed by a blank or a tab. `crlf` is that of the
// record, 0 for those of the queue.
[[nodiscard]] MAILHEARTH_EXPORT bool IsFieldValue(const SString& value, unsigned crlf = 0);

}  // namespace mailhearth

#endif  // MAILHEARTH_QUEUE_FIELDVALUE_H
