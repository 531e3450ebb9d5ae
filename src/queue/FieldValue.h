// Checks whether a value from outside may be stored in a record. The queue itself never checks:
// it stores values as they are given.
//
//   record["Subject:"] = IsFieldValue(subject) ? subject : SString("");

#ifndef MAILHEARTH_QUEUE_FIELDVALUE_H
#define MAILHEARTH_QUEUE_FIELDVALUE_H

#include "../strings/Export.h"
#include "../strings/SString.h"

inline namespace mailhearth {

// Returns whether a value stored in a record reads back as itself, and not as more values or
// fields: a blank or a tab follows every line end in it. `crlf` is that of the record, 0 for
// records of the queue.
[[nodiscard]] MAILHEARTH_EXPORT bool IsFieldValue(const SString& value, unsigned crlf = 0);

}  // namespace mailhearth

#endif  // MAILHEARTH_QUEUE_FIELDVALUE_H
