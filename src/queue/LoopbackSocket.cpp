#include "LoopbackSocket.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <cstdint>
#include <ctime>

#include "Layout.h"

inline namespace mailhearth {

namespace {

constexpr int kMicroseconds = 1'000'000;  // in a second

// Port 65536 becomes 0, to which the system sends nothing.
sockaddr_in LoopbackAddress(int port) {
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return address;
}

}  // namespace

int PortNumber(const SString& text) {
  constexpr float kAboveAll = kLastDispatchPort + 1;
  const auto number = static_cast<float>(text);
  if (std::isnan(number)) return 0;
  return static_cast<int>(std::clamp(number, -1.0F, kAboveAll));
}

timeval WaitLimit(double seconds) {
  constexpr double kLongest = 2'147'483'647;
  if (std::isnan(seconds)) return {-1, 0};
  const auto whole = static_cast<std::int64_t>(std::clamp(seconds, -kLongest, kLongest));
  // Where the seconds were cut down, many microseconds are left.
  const double rest = (seconds - static_cast<double>(whole)) * kMicroseconds;
  const auto micro = static_cast<int>(std::clamp(rest, -2.0 * kMicroseconds, 2.0 * kMicroseconds));
  return {whole, micro > kMicroseconds ? kMicroseconds - 1 : micro};
}

LoopbackSocket::LoopbackSocket() : socket_(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {}

int LoopbackSocket::Bind() const {
  sockaddr_in address = LoopbackAddress(0);
  auto* const general = reinterpret_cast<sockaddr*>(&address);
  socklen_t size = sizeof address;
  if (!socket_.IsOpen()) return 0;
  if (::bind(socket_.Get(), general, size) != 0) return 0;
  if (::getsockname(socket_.Get(), general, &size) != 0) return 0;
  return ntohs(address.sin_port);
}

bool LoopbackSocket::SendTo(int port, const SString& datagram) const {
  if (!socket_.IsOpen()) return false;
  const sockaddr_in address = LoopbackAddress(port);
  const auto size = static_cast<std::size_t>(datagram.Length());
  return ::sendto(socket_.Get(), datagram.Data(), size, 0,
                  reinterpret_cast<const sockaddr*>(&address), sizeof address) == datagram.Length();
}

bool LoopbackSocket::Wait(double seconds) const {
  // Not by select, which knows no descriptors above FD_SETSIZE.
  const timeval limit = WaitLimit(seconds);
  const timespec time = {limit.tv_sec + limit.tv_usec / kMicroseconds,
                         limit.tv_usec % kMicroseconds * 1000};
  pollfd readable = {socket_.Get(), POLLIN, 0};
  const int ready = ::ppoll(&readable, 1, &time, nullptr);
  if (ready == 0) errno = ETIMEDOUT;
  return ready > 0;
}

int LoopbackSocket::Receive() const {
  std::array<char, 5> bytes;
  // Never waits: the system may have dropped what it had announced.
  return static_cast<int>(::recv(socket_.Get(), bytes.data(), bytes.size(), MSG_DONTWAIT));
}

}  // namespace mailhearth
