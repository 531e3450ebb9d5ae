#include "Bare.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>

QueueDir::QueueDir()
    : path_((std::filesystem::temp_directory_path() / "mailhearth-bench-XXXXXX").string()) {
  if (::mkdtemp(path_.data()) == nullptr) std::abort();
  std::filesystem::create_directory(path_ + "/control");
  std::filesystem::create_directory(path_ + "/messages");
  ::setenv("Mailhearth", path_.c_str(), 1);
  ::setenv("ModuleName", "bench", 1);
}

QueueDir::~QueueDir() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

namespace {

bool Map(int fd, std::string_view text) {
  const auto size = static_cast<off_t>(text.size());
  if (::ftruncate(fd, size) != 0 || ::posix_fallocate(fd, 0, size) != 0) return false;
  void* const bytes = ::mmap(nullptr, text.size(), PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
  if (bytes == MAP_FAILED) return false;
  std::memcpy(bytes, text.data(), text.size());
  return ::msync(bytes, text.size(), MS_SYNC) == 0 && ::munmap(bytes, text.size()) == 0;
}

bool Put(int fd, std::string_view text, Sync sync) {
  if (sync == Sync::kMapping) return Map(fd, text);
  if (::write(fd, text.data(), text.size()) != static_cast<ssize_t>(text.size())) return false;
  return sync == Sync::kNone || ::fdatasync(fd) == 0;
}

sockaddr_in Loopback(int port) {
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return address;
}

}  // namespace

bool BareReplace(const std::string& dir, std::string_view text, Sync sync) {
  const std::string path = dir + "/record", temp = path + ".temp";
  const int fd = ::open(temp.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0660);
  if (fd < 0 || !Put(fd, text, sync) || ::close(fd) != 0) return false;
  if (std::rename(temp.c_str(), path.c_str()) != 0) return false;
  if (sync == Sync::kNone) return true;
  const int directory = ::open(dir.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  return ::fsync(directory) == 0 && ::close(directory) == 0;
}

bool BareRead(const std::string& path, std::string& text) {
  const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  struct stat status = {};
  if (fd < 0 || ::fstat(fd, &status) != 0) return false;
  text.resize(static_cast<std::size_t>(status.st_size));
  const bool whole = ::read(fd, text.data(), text.size()) == status.st_size;
  return ::close(fd) == 0 && whole;
}

bool BareIsDirectory(const std::string& path) {
  struct stat status = {};
  return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool BareRemove(const std::string& path) {
  return !BareIsDirectory(path) && ::unlink(path.c_str()) == 0;
}

int BareSocket(int* port) {
  const int fd = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  if (port == nullptr) return fd;
  sockaddr_in address = Loopback(0);
  auto* const general = reinterpret_cast<sockaddr*>(&address);
  socklen_t size = sizeof address;
  if (::bind(fd, general, size) != 0 || ::getsockname(fd, general, &size) != 0) std::abort();
  *port = ntohs(address.sin_port);
  return fd;
}

bool BareSend(int fd, int port, std::string_view text) {
  const sockaddr_in to = Loopback(port);
  return ::sendto(fd, text.data(), text.size(), 0, reinterpret_cast<const sockaddr*>(&to),
                  sizeof to) == static_cast<ssize_t>(text.size());
}

int BareReceive(int fd, char* buffer, int size, int seconds) {
  const timespec limit = {seconds, 0};
  pollfd readable = {fd, POLLIN, 0};
  if (::ppoll(&readable, 1, &limit, nullptr) <= 0) return -1;
  return static_cast<int>(::recv(fd, buffer, static_cast<std::size_t>(size), MSG_DONTWAIT));
}
