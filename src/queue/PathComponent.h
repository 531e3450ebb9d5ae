// Whether a name that comes from outside may go into a path of the queue as it stands. The queue
// itself never asks: it uses names as they are given.
//
//   if (!IsPathComponent(host)) return Refuse(message);
//   record["Host-To:"] = host;

#ifndef MAILHEARTH_QUEUE_PATHCOMPONENT_H
#define MAILHEARTH_QUEUE_PATHCOMPONENT_H

#include "../strings/Export.h"
#include "../strings/SString.h"

inline namespace mailhearth {

// Whether a name is safe as one part of a path: as a message's id, the name of a host that
// messages are deferred for, the name of a module. It is not empty, not "." or "..", has no
// slash, NUL or other control character (a line feed would end a line of the dispatcher's
// datagram), and at most 242 bytes, so that with all the queue puts behind it, "-Control.temp"
// at the most, it is not too long for a file (255).
[[nodiscard]] MAILHEARTH_EXPORT bool IsPathComponent(const SString& name);

}  // namespace mailhearth

#endif  // MAILHEARTH_QUEUE_PATHCOMPONENT_H
