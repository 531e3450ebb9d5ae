// diskFree as a process, from start to exit, beside a bare C program that asks the same
// questions and beside stat(1). The counter `peak_KiB` is the most memory resident.

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

using Words = std::vector<const char*>;

constexpr const char* kFile = PEAK_MEMORY;  // any file will do

// Runs a program with its output thrown away. Returns its exit status.
int Run(const Words& words) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  Words terminated = words;
  terminated.push_back(nullptr);
  pid_t child = -1;
  int status = -1;
  if (::posix_spawn(&child, words[0], &actions, nullptr, const_cast<char**>(terminated.data()),
                    environ) == 0) {
    ::waitpid(child, &status, 0);
  }
  posix_spawn_file_actions_destroy(&actions);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// Returns what a shell command prints, as a number.
double NumberFrom(const std::string& command) {
  double number = 0;
  std::FILE* const out = ::popen(command.c_str(), "r");
  if (out == nullptr || std::fscanf(out, "%lf", &number) != 1) number = -1;
  if (out != nullptr) ::pclose(out);
  return number;
}

void Process(benchmark::State& state, const Words& words) {
  std::string line = "'" PEAK_MEMORY "'";
  for (const char* const word : words) line += std::string(" '") + word + "'";
  state.counters["peak_KiB"] = NumberFrom(line);
  for (auto _ : state) {
    if (Run(words) != 0) state.SkipWithError("it failed");
  }
}

BENCHMARK_CAPTURE(Process, diskFree, Words{DISKFREE, kFile})
    ->Name("process/mailhearth/0")
    ->UseRealTime();
BENCHMARK_CAPTURE(Process, bare, Words{BARE_DISK_FREE, kFile})
    ->Name("process/bare C/0")
    ->UseRealTime();
BENCHMARK_CAPTURE(Process, stat, Words{"/usr/bin/stat", "-c", "%s", kFile})
    ->Name("process/stat/0")
    ->UseRealTime();

}  // namespace
