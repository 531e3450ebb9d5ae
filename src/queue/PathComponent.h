// Checks whether a name from outside may be used in a path of the queue. The queue itself never
// checks: it uses names as they are given.
//
//   if (!IsPathComponent(host)) return Refuse(message);
//   record["Host-To:"] = host;

#ifndef MAILHEARTH_QUEUE_PATHCOMPONENT_H
#define MAILHEARTH_QUEUE_PATHCOMPONENT_H

#include "../strings/Export.h"
#include "../strings/SString.h"

inline namespace mailhearth {

// Returns whether a name is safe as one component of a path: as the id of a message, the name
// of a host for which messages are deferred, or the name of a module. Such a name is not empty
// and not "." or ".."; it has no slash, NUL or other control character (a line feed would end
// a line of the dispatcher's datagram). It has at most 242 bytes, so that with the longest
// suffix of the queue, "-Control.temp", it does not exceed the limit of a file name (255).
[[nodiscard]] MAILHEARTH_EXPORT bool IsPathComponent(const SString& name);

}  // namespace mailhearth

#endif  // MAILHEARTH_QUEUE_PATHCOMPONENT_H
