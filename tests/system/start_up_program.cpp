// A program as a user links it. It stands in for the C library's functions that the
// modules call at start, and so sees what runs before main, in what order, how often.

#include <sys/types.h>
#include <cstdio>
#include <cstring>
#include <ctime>

#include "mailhearth.h"

namespace {

constinit char calls[64] = "";

void Record(const char* call) {
  if (std::strlen(calls) + std::strlen(call) < sizeof calls) std::strcat(calls, call);
}

// A static object of the program uses the library: it has started by then.
struct Early {
  Early() { std::strcpy(before, calls), drawn = RandomInt(32768); }
  char before[64];
  int drawn;
} early;

}  // namespace

#pragma GCC visibility push(default)  // or nobody would find them
extern "C" {

void tzset() noexcept { Record("tzset "); }
std::time_t time(std::time_t* out) noexcept {
  Record("time ");
  if (out != nullptr) *out = 1'800'000'000;
  return 1'800'000'000;
}
pid_t getpid() noexcept {
  Record("getpid ");
  return 4711;
}

}  // extern "C"
#pragma GCC visibility pop

int main() {
  // The table's last module first, each once; its second one asks for clock and process.
  const bool inOrder = std::strcmp(calls, "tzset time getpid ") == 0 ||
                       std::strcmp(calls, "tzset getpid time ") == 0;
  const bool beforeEarly = std::strcmp(calls, early.before) == 0;
  // With the same seed the numbers come again; another SrandomInit starts them over.
  const SrandomInit again;
  const bool seeded = early.drawn == RandomInt(32768);
  const SdatetimeInit zone;
  const bool zoneLoaded = std::strcmp(calls + std::strlen(calls) - 6, "tzset ") == 0;
  std::printf("calls: %s\nbefore the program's static objects: %d, seeded: %d, zone: %d\n", calls,
              beforeEarly, seeded, zoneLoaded);
  return inOrder && beforeEarly && seeded && zoneLoaded ? 0 : 1;
}
