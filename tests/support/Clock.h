// The clock of the C library, as long as a test has another time stand in.

#ifndef MAILHEARTH_TESTS_SUPPORT_CLOCK_H
#define MAILHEARTH_TESTS_SUPPORT_CLOCK_H

#include <ctime>
#include <optional>

extern std::optional<std::time_t> clockStandIn;
extern int clockReadings;  // since the program started

#endif  // MAILHEARTH_TESTS_SUPPORT_CLOCK_H
