#include "queue/Queue.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <utility>

#include "support/Files.h"

namespace {

sockaddr_in Loopback(int port) {
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return address;
}

}  // namespace

Queue::Queue() {
  std::filesystem::create_directory(*this / "control");
  std::filesystem::create_directory(*this / "messages");
  Set("Mailhearth", dir_.Path());
  Set("ModuleName", "router");
  ::unsetenv("DispatchSocket");
  Set("DispatchKey", "secret");
}

std::vector<std::string> Queue::Files() const { return FilesBelow(dir_.Path()); }

void Queue::Set(const char* key, const std::string& value) const {
  ::setenv(key, value.c_str(), 1);
}

Peer::Peer() : fd_(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
  sockaddr_in address = Loopback(0);
  auto* const general = reinterpret_cast<sockaddr*>(&address);
  socklen_t size = sizeof address;
  if (::bind(fd_, general, size) != 0 || ::getsockname(fd_, general, &size) != 0) std::abort();
  port_ = ntohs(address.sin_port);
}

Peer::~Peer() { ::close(fd_); }

std::optional<std::string> Peer::Take(int milliseconds) const {
  pollfd readable = {fd_, POLLIN, 0};
  if (::poll(&readable, 1, milliseconds) <= 0) return std::nullopt;
  std::string bytes(70'000, '\0');
  const ssize_t length = ::recv(fd_, bytes.data(), bytes.size(), MSG_DONTWAIT);
  if (length < 0) return std::nullopt;
  bytes.resize(static_cast<std::size_t>(length));
  return bytes;
}

void Peer::Send(int port, std::string_view datagram) const {
  const sockaddr_in to = Loopback(port);
  static_cast<void>(::sendto(fd_, datagram.data(), datagram.size(), 0,
                             reinterpret_cast<const sockaddr*>(&to), sizeof to));
}

Child::~Child() {
  if (pid_ <= 0) return;
  ::kill(pid_, SIGKILL);
  ::waitpid(pid_, nullptr, 0);
}

bool Child::Succeeds() {
  int status = -1;
  ::waitpid(std::exchange(pid_, -1), &status, 0);
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

int Child::_Fork() {
  const pid_t child = ::fork();
  if (child < 0) std::abort();
  return child;
}

void Child::_Leave(int status) { ::_exit(status); }
