// A queue of the test's own, and a peer on the loopback address.

#ifndef MAILHEARTH_TESTS_QUEUE_QUEUE_H
#define MAILHEARTH_TESTS_QUEUE_QUEUE_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "support/EnvironmentKey.h"
#include "support/TempDir.h"

// The directories of a queue, and the environment that names them: the module is "router",
// the dispatcher has no port and the key "secret".
class Queue {
 public:
  Queue();

  // Returns the path of what is below the root.
  [[nodiscard]] std::string operator/(std::string_view name) const { return dir_ / name; }

  // Makes a file below the root.
  void Put(std::string_view name, std::string_view text) const { dir_.File(name, text); }

  // Returns the files, as paths from the root, sorted.
  [[nodiscard]] std::vector<std::string> Files() const;

  void Set(const char* key, const std::string& value) const;

 private:
  TempDir dir_;
  EnvironmentKey root_{"Mailhearth"}, module_{"ModuleName"}, port_{"DispatchSocket"},
      key_{"DispatchKey"};
};

// A socket on the loopback address, on a port that the system chose.
class Peer {
 public:
  Peer();
  ~Peer();
  Peer(const Peer&) = delete;
  Peer& operator=(const Peer&) = delete;

  [[nodiscard]] int Port() const { return port_; }

  // Returns the next datagram; nothing when none comes in time.
  [[nodiscard]] std::optional<std::string> Take(int milliseconds = 30'000) const;

  void Send(int port, std::string_view datagram) const;

 private:
  int fd_, port_;
};

// A process that does some work of the test's and ends.
class Child {
 public:
  template <class Work>
  explicit Child(Work work) : pid_(_Fork()) {
    if (pid_ == 0) _Leave(work() ? 0 : 1);
  }
  ~Child();
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;

  [[nodiscard]] int Pid() const { return pid_; }

  // Waits for its end. Returns whether the work answered true.
  bool Succeeds();

 private:
  static int _Fork();
  [[noreturn]] static void _Leave(int status);

  int pid_;
};

#endif  // MAILHEARTH_TESTS_QUEUE_QUEUE_H
