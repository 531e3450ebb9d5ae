// The current time as text, and the time-zone rules for local times.
//
// Each call reads the clock once, so all parts of one text are of the same second; two calls
// may see different seconds. Zones are numeric: a sign and four digits, hours and minutes east
// of UTC. Local times follow TZ, else the system's zone. The names of days and months are the
// English names of RFC 822 in every locale.
//
// A function that cannot make its text returns an undefined string. None fails if the clock is
// even roughly right.
//
//   header += "Date: " + RFC822Date();             // Thu, 5 Nov 2026 09:07:03 +0100
//   const SString id = MessageIdDate() + "-" + ProcessIdString();   // 20261105080703-1234

#ifndef MAILHEARTH_SYSTEM_DATES_H
#define MAILHEARTH_SYSTEM_DATES_H

#include "../strings/Export.h"
#include "../strings/SString.h"

inline namespace mailhearth {

// Returns local time in the form of mail headers. The day of the month has no leading zero;
// the other numbers do.
[[nodiscard]] MAILHEARTH_EXPORT SString RFC822Date();

// Returns the time in UTC in fourteen digits, from the year to the second: it is the same in
// every zone and sorts by time.
[[nodiscard]] MAILHEARTH_EXPORT SString MessageIdDate();

// Returns local time in fourteen digits and the zone, with nothing between them.
[[nodiscard]] MAILHEARTH_EXPORT SString LogFileDate();

// Returns the number of whole days, in UTC, since the beginning of 1970.
[[nodiscard]] MAILHEARTH_EXPORT int DaysSince1970();

// Loads the rules of the configured zone (TZ, else the system's) for the C library's local
// times. The library makes one before main.
struct MAILHEARTH_EXPORT SdatetimeInit {
  SdatetimeInit();
};

}  // namespace mailhearth

#endif  // MAILHEARTH_SYSTEM_DATES_H
