// What diskFree does, with nothing around it: the same four questions to the file system,
// and, for files below 1 GiB, the same line and verdict.

#include <stdio.h>
#include <sys/stat.h>
#include <sys/statvfs.h>

static double Doubled(const char* path) {
  struct stat status;
  const int known = stat(path, &status) == 0 && S_ISREG(status.st_mode);
  return known ? 2.0 * (double)status.st_size : -2.0;
}

static double Free(const char* path) {
  struct statvfs system;
  if (statvfs(path, &system) != 0) return -1.0;
  return (double)system.f_frsize * (double)system.f_bavail;
}

int main(int argc, char** argv) {
  const char* const path = argc > 1 ? argv[1] : "";
  const double doubled = Doubled(path);
  printf("%g\n", (doubled - Free(path)) / 1000.0);
  fflush(stdout);
  const double free = Free(path);
  return free < Doubled(path);
}
