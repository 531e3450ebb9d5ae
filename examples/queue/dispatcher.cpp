// dispatcher DIRECTORY: starts a module for each record that is announced to it.
//
// Listens on port DispatchSocket of the loopback address, or on a free one where that is 0,
// and prints the port. For each datagram with the right key it starts the program in
// DIRECTORY that is named like the record's function, with the record's id as its argument
// and ModuleName set to the function. Ends when it is killed.

#include <arpa/inet.h>
#include <mailhearth/mailhearth.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <iostream>

namespace {

// Returns a socket on the port, which may be 0 for any; -1 when there is none.
int Listen(int port) {
  const int fd = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  const auto* const general = reinterpret_cast<const sockaddr*>(&address);
  return ::bind(fd, general, sizeof address) == 0 ? fd : -1;
}

int PortOf(int fd) {
  sockaddr_in address = {};
  socklen_t size = sizeof address;
  if (::getsockname(fd, reinterpret_cast<sockaddr*>(&address), &size) != 0) return 0;
  return ntohs(address.sin_port);
}

// Starts the module in a process of its own, which nobody waits for.
void Start(const SString& program, const SString& function, const SString& id) {
  if (::fork() != 0) return;
  std::signal(SIGCHLD, SIG_DFL);
  PutEnv("ModuleName", function);
  ::execl(program.Data(), program.Data(), id.Data(), nullptr);
  ::_exit(EXIT_FAILURE);
}

// Looks at a datagram: id, key, function, type and priority, a line each.
void Dispatch(const SString& datagram, const SString& modules) {
  const SStringList lines = datagram.SplitExact("\n");
  const SString id = lines.Get(0), function = lines.Get(2);
  if (lines.Count() != 5 || lines.Get(1) != GetEnv("DispatchKey")) return;
  // Both become parts of paths.
  if (!IsPathComponent(id) || !IsPathComponent(function)) return;
  const SString program = modules + "/" + function;
  if (!IsRegular(program) || !IsExecutable(program)) return;
  Start(program, function, id);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: dispatcher DIRECTORY\n";
    return EXIT_FAILURE;
  }
  const int fd = Listen(std::atoi(GetEnv("DispatchSocket").Data()));
  const int port = fd < 0 ? 0 : PortOf(fd);
  if (port == 0) {
    std::cerr << "dispatcher: " << GetErrorString() << '\n';
    return EXIT_FAILURE;
  }
  PutEnv("DispatchSocket", SString(port));  // for the modules
  std::cout << port << std::endl;
  std::signal(SIGCHLD, SIG_IGN);
  static std::array<char, 65536> buffer;
  for (;;) {
    const ssize_t length = ::recv(fd, buffer.data(), buffer.size(), 0);
    if (length > 0) Dispatch(SString(buffer.data(), static_cast<int>(length)), argv[1]);
  }
}
