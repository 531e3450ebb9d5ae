// A program as a user links it. It stands in for the C library's functions that the
// modules call at start, and so sees what runs before main, in what order, how often.

#include <sys/types.h>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <ctime>

#include "mailhearth.h"

namespace {

constinit char calls[64] = "";

void Record(const char* call) {
  if (std::strlen(calls) + std::strlen(call) < sizeof calls) std::strcat(calls, call);
}

// The first number for this clock and this process id.
constexpr int kFirst = [] {
  const std::uint64_t seed = 1'800'000'000 + 4711;
  return static_cast<int>((seed * 6364136223846793005u + 1442695040888963407u) >> 49);
}();

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
  const bool seeded = early.drawn == RandomInt(32768) && early.drawn == kFirst;
  const SdatetimeInit zone;
  const bool zoneLoaded = std::strcmp(calls + std::strlen(calls) - 6, "tzset ") == 0;
  std::printf("calls: %s\nbefore the program's static objects: %d, seeded: %d, zone: %d\n", calls,
              beforeEarly, seeded, zoneLoaded);
  // The rest of the library is at hand as well, from whatever it is linked with.
  const bool linked = (SString("a") += "b").Index("b") == 1 && FileExists("/") == 1 &&
                      SStringList{"a", "b"}.Join() == "ab" && MD5("").Length() == 32;
  return inOrder && beforeEarly && seeded && zoneLoaded && linked ? 0 : 1;
}
