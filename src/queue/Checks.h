// Whether what comes from outside may go into the queue as it stands. The queue itself never
// asks: it uses names and values as they are given.
//
//   if (!IsPathComponent(host)) return Refuse(message);
//   record["Host-To:"] = host;
//   record["Subject:"] = IsFieldValue(subject) ? subject : SString("");

#ifndef MAILHEARTH_QUEUE_CHECKS_H
#define MAILHEARTH_QUEUE_CHECKS_H

#include "../strings/Export.h"
#include "../strings/SString.h"

inline namespace mailhearth {

// Whether a name is safe as one part of a path: as a message's id, the name of a host that
// messages are deferred for, the name of a module. It is not empty, not "." or "..", has no
// slash, NUL or other control character (a line feed would end a line of the dispatcher's
// datagram), and at most 242 bytes, so that with all the queue puts behind it, "-Control.temp"
// at the most, it is not too long for a file (255).
[[nodiscard]] MAILHEARTH_EXPORT bool IsPathComponent(const SString& name);

// Whether a value that is stored in a record reads back as it is, and not as further values
// and fields: in it every line end is followed by a blank or a tab. `crlf` is that of the
// record, 0 for those of the queue.
[[nodiscard]] MAILHEARTH_EXPORT bool IsFieldValue(const SString& value, unsigned crlf = 0);

}  // namespace mailhearth

#endif  // MAILHEARTH_QUEUE_CHECKS_H
