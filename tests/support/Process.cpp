#include "support/Process.h"

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>

namespace {

// What the process writes goes to a file in memory: no reader has to keep up with it.
class Sink {
 public:
  Sink() : fd_(::memfd_create("sink", MFD_CLOEXEC)) {
    if (fd_ < 0) std::abort();
  }
  ~Sink() { ::close(fd_); }
  Sink(const Sink&) = delete;
  Sink& operator=(const Sink&) = delete;

  void TakePlaceOf(int fd) const { ::dup2(fd_, fd); }

  [[nodiscard]] std::string Text() const {
    std::string text;
    std::array<char, 4096> piece;
    ::lseek(fd_, 0, SEEK_SET);
    for (ssize_t n; (n = ::read(fd_, piece.data(), piece.size())) > 0;) {
      text.append(piece.data(), static_cast<std::size_t>(n));
    }
    return text;
  }

 private:
  int fd_;
};

[[noreturn]] void Become(const Command& command) {
  for (const std::string& setting : command.environment) {
    const std::size_t equals = setting.find('=');
    ::setenv(setting.substr(0, equals).c_str(), setting.substr(equals + 1).c_str(), 1);
  }
  std::vector<char*> words;
  for (const std::string& word : command.words) words.push_back(const_cast<char*>(word.c_str()));
  words.push_back(nullptr);
  command.inChild();
  ::execv(words[0], words.data());
  ::_exit(127);
}

}  // namespace

Outcome RunCommand(const Command& command) {
  const Sink out, error;
  const pid_t child = ::fork();
  if (child < 0) std::abort();
  if (child == 0) {
    out.TakePlaceOf(STDOUT_FILENO);
    error.TakePlaceOf(STDERR_FILENO);
    Become(command);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, WIFSIGNALED(status) ? WTERMSIG(status) : 0,
          out.Text(), error.Text()};
}
