// The current time as text, and the time-zone rules that local times are shown by.
//
// Each call reads the clock once, so the parts of one text belong to one second; two calls
// may fall into two. Zones are numeric: a sign and four digits, hours and minutes east of
// UTC. Local times follow TZ, else the system's zone. The names of days and months are the
// English ones of RFC 822 in every locale.
//
// A text that cannot be made is an undefined string; no call here fails on a clock that is
// anywhere near right.
//
//   header += "Date: " + RFC822Date();             // Thu, 5 Nov 2026 09:07:03 +0100
//   const SString id = MessageIdDate() + "-" + ProcessIdString();   // 20261105080703-1234

#ifndef MAILHEARTH_SYSTEM_DATES_H
#define MAILHEARTH_SYSTEM_DATES_H

#include "../strings/Export.h"
#include "../strings/SString.h"

inline namespace mailhearth {

// Returns local time as mail headers show it; the day of the month has no leading zero, the
// other numbers have.
[[nodiscard]] MAILHEARTH_EXPORT SString RFC822Date();

// Returns the time in UTC in fourteen digits, from the year to the second: the same in every
// zone, and in the order of time.
[[nodiscard]] MAILHEARTH_EXPORT SString MessageIdDate();

// Returns local time in fourteen digits and the zone, with nothing between them.
[[nodiscard]] MAILHEARTH_EXPORT SString LogFileDate();

// Returns the number of whole days, in UTC, since the beginning of 1970.
[[nodiscard]] MAILHEARTH_EXPORT int DaysSince1970();

// Loads the rules of the configured zone (TZ, else the system's) for the C library's
// local times; the program has one, made before main.
struct MAILHEARTH_EXPORT SdatetimeInit {
  SdatetimeInit();
};

}  // namespace mailhearth

#endif  // MAILHEARTH_SYSTEM_DATES_H
