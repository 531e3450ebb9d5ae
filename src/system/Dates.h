// The time-zone rules that dates are shown by.

#ifndef MAILHEARTH_SYSTEM_DATES_H
#define MAILHEARTH_SYSTEM_DATES_H

#include "../strings/Export.h"

inline namespace mailhearth {

// Loads the rules of the configured zone (TZ, else the system's) for the C library's
// local times; the program has one, made before main.
struct MAILHEARTH_EXPORT SdatetimeInit {
  SdatetimeInit();
};

}  // namespace mailhearth

#endif  // MAILHEARTH_SYSTEM_DATES_H
