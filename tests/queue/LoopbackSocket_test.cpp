#include "queue/LoopbackSocket.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/resource.h>
#include <sys/select.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <limits>
#include <optional>
#include <string>

#include "queue/Queue.h"
#include "support/FailNthCall.h"
#include "support/Files.h"
#include "support/Text.h"

namespace {

TEST(PortNumber, IsTheFloatCutToAnInteger) {
  struct Row {
    const char* text;
    int port;
  };
  constexpr Row kRows[] = {{"1", 1},
                           {"65535", 65535},
                           {"65536", 65536},
                           {"65537", 65537},
                           {"70000", 65537},
                           {"0", 0},
                           {"-0", 0},
                           {"-0.9", 0},
                           {"-1", -1},
                           {"-70000", -1},
                           {"0.9", 0},
                           {"0.99999999", 1},
                           {"1.9", 1},
                           {"65535.9", 65535},
                           {"65535.999", 65536},
                           {"65536.9", 65536},
                           {" 25", 25},
                           {"25x", 25},
                           {"2.5e1", 25},
                           {"0x19", 25},
                           {"x", 0},
                           {"", 0},
                           {"nan", 0},
                           {"-nan", 0},
                           {"inf", 65537},
                           {"-inf", -1},
                           {"1e40", 65537},
                           {"-1e400", -1},
                           {"4294967297", 65537},
                           {"1e-400", 0}};
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.text);
    EXPECT_EQ(PortNumber(row.text), row.port);
  }
  EXPECT_EQ(PortNumber(SString()), 0);
  EXPECT_EQ(PortNumber(SString("2\0005", 3)), 2);
}

TEST(WaitLimit, IsCutToWholeMicroseconds) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  constexpr long kMost = 2'147'483'647;
  struct Row {
    double seconds;
    long whole, micro;
  };
  constexpr Row kRows[] = {{0, 0, 0},
                           {-0.0, 0, 0},
                           {1, 1, 0},
                           {1.5, 1, 500'000},
                           {0.0000019, 0, 1},
                           {0.9999999, 0, 999'999},
                           {0.99999999999999989, 0, 999'999},
                           {1e9, 1'000'000'000, 0},
                           {2147483647.5, kMost, 500'000},
                           {2147483648, kMost, 1'000'000},
                           {2147483648.5, kMost, 999'999},
                           {2147483649, kMost, 999'999},
                           {1e300, kMost, 999'999},
                           {kInfinity, kMost, 999'999},
                           {-0.0000001, 0, 0},
                           {-0.5, 0, -500'000},
                           {-1.5, -1, -500'000},
                           {-1e300, -kMost, -2'000'000},
                           {-kInfinity, -kMost, -2'000'000},
                           {std::numeric_limits<double>::quiet_NaN(), -1, 0}};
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.seconds);
    const timeval limit = WaitLimit(row.seconds);
    EXPECT_EQ(limit.tv_sec, row.whole);
    EXPECT_EQ(limit.tv_usec, row.micro);
  }
}

TEST(LoopbackSocket, SendsOneDatagramOfTheseBytes) {
  const Peer peer;
  const LoopbackSocket socket;
  for (const std::string& bytes :
       {std::string(), std::string("0"), std::string("a\0\n", 3), std::string(65'507, 'x')}) {
    EXPECT_TRUE(socket.SendTo(peer.Port(), Text(bytes)));
    EXPECT_EQ(peer.Take(), bytes);
  }
  EXPECT_FALSE(socket.SendTo(peer.Port(), SString('x', 65'508)));
  EXPECT_EQ(errno, EMSGSIZE);
  EXPECT_FALSE(socket.SendTo(65536, "0"));
  EXPECT_EQ(errno, EINVAL);
  EXPECT_EQ(peer.Take(0), std::nullopt);
}

TEST(LoopbackSocket, TellsTheLengthOfWhatCame) {
  const Peer peer;
  const LoopbackSocket socket;
  const int port = socket.Bind();
  ASSERT_GT(port, 0);
  for (const int length : {0, 1, 2, 4, 5, 6, 65'000}) {
    SCOPED_TRACE(length);
    peer.Send(port, std::string(static_cast<std::size_t>(length), '0'));
    ASSERT_TRUE(socket.Wait(5));
    EXPECT_EQ(socket.Receive(), length < 5 ? length : 5);
    EXPECT_EQ(socket.Receive(), -1) << "the rest of a long one is gone";
    EXPECT_EQ(errno, EAGAIN);
  }
}

double SecondsOfWait(const LoopbackSocket& socket, double limit, int error) {
  const auto before = std::chrono::steady_clock::now();
  errno = 0;
  EXPECT_FALSE(socket.Wait(limit));
  EXPECT_EQ(errno, error);
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - before).count();
}

TEST(LoopbackSocket, WaitsAsLongAsItMay) {
  const LoopbackSocket socket;
  ASSERT_GT(socket.Bind(), 0);
  EXPECT_GE(SecondsOfWait(socket, 0.25, ETIMEDOUT), 0.25);
  SecondsOfWait(socket, 0, ETIMEDOUT);
  SecondsOfWait(socket, -0.0000001, ETIMEDOUT);
  SecondsOfWait(socket, -0.5, EINVAL);
  SecondsOfWait(socket, -1, EINVAL);
  SecondsOfWait(socket, -1e300, EINVAL);
  SecondsOfWait(socket, std::numeric_limits<double>::quiet_NaN(), EINVAL);
}

TEST(LoopbackSocket, TakesAnyLongLimit) {
  const Peer peer;
  for (const double limit : {1e9, 2147483648.0, 1e30, std::numeric_limits<double>::infinity()}) {
    const LoopbackSocket socket;
    const int port = socket.Bind();
    peer.Send(port, "0");
    EXPECT_TRUE(socket.Wait(limit));
  }
}

TEST(LoopbackSocket, WaitsAboveTheDescriptorsThatSelectKnows) {
  rlimit before = {};
  ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &before), 0);
  const rlimit wide = {before.rlim_max, before.rlim_max};
  if (before.rlim_max <= FD_SETSIZE + 10) GTEST_SKIP() << "so many files may not be open";
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &wide), 0);
  std::vector<int> open;
  while (open.empty() || open.back() < FD_SETSIZE) {
    open.push_back(::open("/dev/null", O_RDONLY | O_CLOEXEC));
    ASSERT_GE(open.back(), 0);
  }
  {
    const Peer peer;
    const LoopbackSocket socket;
    const int port = socket.Bind();
    EXPECT_GE(SecondsOfWait(socket, 0.01, ETIMEDOUT), 0.01);
    peer.Send(port, "0");
    EXPECT_TRUE(socket.Wait(5));
    EXPECT_EQ(socket.Receive(), 1);
  }
  for (const int fd : open) ::close(fd);
  ::setrlimit(RLIMIT_NOFILE, &before);
}

// Returns the descriptor that the next file or socket will have.
int NextDescriptor() {
  const int next = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
  ::close(next);
  return next;
}

TEST(LoopbackSocket, IsNotSeenByProgramsStarted) {
  const int fd = NextDescriptor();
  const LoopbackSocket socket;
  EXPECT_EQ(::fcntl(fd, F_GETFD), FD_CLOEXEC);
}

TEST(LoopbackSocket, HasItsPortOnTheLoopbackAddressAlone) {
  const int fd = NextDescriptor();
  const LoopbackSocket socket;
  const int port = socket.Bind();
  sockaddr_in address = {};
  socklen_t size = sizeof address;
  ASSERT_EQ(::getsockname(fd, reinterpret_cast<sockaddr*>(&address), &size), 0);
  EXPECT_EQ(address.sin_family, AF_INET);
  EXPECT_EQ(address.sin_addr.s_addr, htonl(INADDR_LOOPBACK));
  EXPECT_EQ(ntohs(address.sin_port), port);
}

TEST(LoopbackSocket, FailsWithEachCall) {
  const NoDescriptorLeft check;
  for (const auto& [function, error] :
       {std::pair("socket", EMFILE), {"bind", EADDRINUSE}, {"getsockname", ENOBUFS}}) {
    const FailNthCall fault(function, 1, error);
    const LoopbackSocket socket;
    EXPECT_EQ(socket.Bind(), 0);
    EXPECT_EQ(errno, error);
    EXPECT_TRUE(fault.Fired());
  }
  for (const auto& [function, error] : {std::pair("socket", EMFILE), {"sendto", ENOBUFS}}) {
    const FailNthCall fault(function, 1, error);
    EXPECT_FALSE(LoopbackSocket().SendTo(9, "0"));
    EXPECT_EQ(errno, error);
    EXPECT_TRUE(fault.Fired());
  }
}

}  // namespace
