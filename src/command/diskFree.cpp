// diskFree FILE: prints how many thousands of bytes are missing on FILE's file system
// for twice FILE's size, and exits with 1 if any are, else with 0.

#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <string_view>

#include "../strings/SString.h"
#include "Shortfall.h"

namespace {

// Writes `text` to standard output as far as that takes it.
void Print(std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = ::write(STDOUT_FILENO, text.data(), text.size());
    if (written > 0) {
      text.remove_prefix(static_cast<std::size_t>(written));
    } else if (written == 0 || errno != EINTR) {
      return;
    }
  }
}

}  // namespace

int main(int /*argc*/, char** argv) {
  // The verdict is the exit status; a reader who has gone must not take it away.
  static_cast<void>(std::signal(SIGPIPE, SIG_IGN));

  // Null when there is none, also where the system lets a program start without its name:
  // the empty path.
  const char* const file = argv[0] == nullptr ? nullptr : argv[1];
  Print(NumberLine(Shortfall(file)));
  return TooFull(file) ? 1 : 0;
}
