#include "support/Clock.h"

std::optional<std::time_t> clockStandIn;
int clockReadings = 0;

extern "C" {

std::time_t __real_time(std::time_t* out);
std::time_t __wrap_time(std::time_t* out) {
  ++clockReadings;
  return clockStandIn ? *clockStandIn : __real_time(out);
}

}  // extern "C"
