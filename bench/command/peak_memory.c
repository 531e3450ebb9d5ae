// peak_memory PROGRAM ARGUMENT...: runs the program with its output thrown away and
// prints the most memory it had resident, in KiB.

#include <fcntl.h>
#include <stdio.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

int main(int argc, char** argv) {
  if (argc < 2) return 2;
  const pid_t child = vfork();
  if (child == 0) {
    dup2(open("/dev/null", O_WRONLY), STDOUT_FILENO);
    execv(argv[1], argv + 1);
    _exit(127);
  }
  int status;
  struct rusage usage;
  if (child < 0 || wait4(child, &status, 0, &usage) < 0) return 1;
  printf("%ld\n", usage.ru_maxrss);
  return 0;
}
