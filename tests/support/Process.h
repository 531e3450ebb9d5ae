// Runs a command as a process of its own and tells all that comes out of it.

#ifndef MAILHEARTH_TESTS_SUPPORT_PROCESS_H
#define MAILHEARTH_TESTS_SUPPORT_PROCESS_H

#include <functional>
#include <string>
#include <vector>

struct Outcome {
  int status = -1;    // the exit status; -1 when the process was killed
  int signal = 0;     // the signal that killed it
  std::string out;    // standard output
  std::string error;  // standard error
};

struct Command {
  std::vector<std::string> words;         // the program and its arguments
  std::vector<std::string> environment;   // "KEY=value", beside this process's own
  std::function<void()> inChild = [] {};  // called last before the program starts
};

// Runs the command to its end.
Outcome RunCommand(const Command& command);

#endif  // MAILHEARTH_TESTS_SUPPORT_PROCESS_H
