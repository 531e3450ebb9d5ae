/* A program in C, which can call one function of the library. */

#include <errno.h>
#include <stdio.h>

int db_lock_fd(int fd, int exclusive);

int main(void) {
  const int locked = db_lock_fd(-1, 1);
  printf("%d %d\n", locked, errno == EBADF);
  return 0;
}
