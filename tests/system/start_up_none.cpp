// A program that uses strings and file status only: nothing of the start-up is in it.

#include <cstdio>

#include "strings/SString.h"
#include "system/FileStatus.h"

static int zoneLoads = 0;
extern "C" __attribute__((visibility("default"))) void tzset() noexcept { ++zoneLoads; }

int main(int, char** argv) {
  const int found = FileExists(argv[0]);
  std::printf("found: %d, loads of the time zone: %d\n", found, zoneLoads);
  return found == 1 && zoneLoads == 0 ? 0 : 1;
}
