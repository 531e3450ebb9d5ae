// Work with the rights of an ordinary user, whoever runs the tests.

#ifndef MAILHEARTH_TESTS_SUPPORT_ORDINARYUSER_H
#define MAILHEARTH_TESTS_SUPPORT_ORDINARYUSER_H

#include <grp.h>
#include <sys/wait.h>
#include <unistd.h>

#include "strings/SString.h"

// Runs `work` in a process of an ordinary user; returns whether it answered true. The
// user must be able to reach the directory for temporary files.
inline bool AsOrdinaryUser(bool (*work)(const SString& path), const SString& path) {
  const pid_t child = ::fork();
  if (child == 0) {
    constexpr uid_t kNobody = 65534;
    const bool dropped = ::getuid() != 0 || (::setgroups(0, nullptr) == 0 &&
                                             ::setgid(kNobody) == 0 && ::setuid(kNobody) == 0);
    ::_exit(dropped && work(path) ? 0 : 1);
  }
  int status = -1;
  ::waitpid(child, &status, 0);
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

#endif  // MAILHEARTH_TESTS_SUPPORT_ORDINARYUSER_H
