#include "support/FailNthCall.h"

#include <dirent.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <initializer_list>
#include <utility>

int openedForOthers = 0;
int syncFlags = 0;
std::function<void()> afterFstat;

namespace {

struct {
  std::string function;
  int left = 0;  // calls until it fails; 0 for none, below once it has
  int error = 0;
} fault;

std::vector<std::string>* calls = nullptr;  // where they are kept; null for nowhere

// Whether this call is the one that fails. Allocates only where calls are kept.
bool Fails(const char* function, std::initializer_list<const char*> paths = {}) {
  if (calls != nullptr) {
    std::string& call = calls->emplace_back(function);
    for (const char* const path : paths) call.append(" ").append(path);
  }
  if (fault.left <= 0 || (!fault.function.empty() && fault.function != function)) return false;
  if (--fault.left > 0) return false;
  fault.left = -1;
  errno = fault.error;
  return true;
}

}  // namespace

FailNthCall::FailNthCall(std::string function, int n, int error) {
  fault = {std::move(function), n, error};
}
FailNthCall::~FailNthCall() { fault = {}; }
bool FailNthCall::Fired() const { return fault.left < 0; }

RecordCalls::RecordCalls() { calls = &calls_; }
RecordCalls::~RecordCalls() { calls = nullptr; }

// A function of the C library that fails with -1.
#define STAND_IN(name, parameters, ...) \
  int __real_##name parameters;         \
  int __wrap_##name parameters {        \
    if (Fails(#name)) return -1;        \
    return __real_##name(__VA_ARGS__);  \
  }

extern "C" {

STAND_IN(stat, (const char* path, struct stat* out), path, out)
STAND_IN(access, (const char* path, int rights), path, rights)
STAND_IN(mkdir, (const char* path, mode_t mode), path, mode)
STAND_IN(rmdir, (const char* path), path)
STAND_IN(chdir, (const char* path), path)
STAND_IN(unlink, (const char* path), path)
STAND_IN(link, (const char* from, const char* to), from, to)
STAND_IN(fchmod, (int fd, mode_t mode), fd, mode)
STAND_IN(fchown, (int fd, uid_t user, gid_t group), fd, user, group)
STAND_IN(ftruncate, (int fd, off_t size), fd, size)

int __real_fstat(int fd, struct stat* out);
int __wrap_fstat(int fd, struct stat* out) {
  if (Fails("fstat")) return -1;
  const int result = __real_fstat(fd, out);
  if (result == 0 && afterFstat) std::exchange(afterFstat, nullptr)();
  return result;
}

int __real_msync(void* data, std::size_t size, int flags);
int __wrap_msync(void* data, std::size_t size, int flags) {
  syncFlags = flags;
  return Fails("msync") ? -1 : __real_msync(data, size, flags);
}

STAND_IN(socket, (int domain, int type, int protocol), domain, type, protocol)
STAND_IN(bind, (int fd, const sockaddr* address, socklen_t size), fd, address, size)
STAND_IN(getsockname, (int fd, sockaddr* address, socklen_t* size), fd, address, size)
STAND_IN(ppoll, (pollfd * fds, nfds_t n, const timespec* limit, const sigset_t* mask), fds, n,
         limit, mask)

int __real_rename(const char* from, const char* to);
int __wrap_rename(const char* from, const char* to) {
  return Fails("rename", {from, to}) ? -1 : __real_rename(from, to);
}

int __real_fsync(int fd);
int __wrap_fsync(int fd) {
  std::array<char, 4096> path = {};
  std::array<char, 40> link;
  std::snprintf(link.data(), link.size(), "/proc/self/fd/%d", fd);
  const ssize_t length = ::readlink(link.data(), path.data(), path.size() - 1);
  return length < 0 || Fails("fsync", {path.data()}) ? -1 : __real_fsync(fd);
}

ssize_t __real_sendto(int fd, const void* data, std::size_t size, int flags, const sockaddr* to,
                      socklen_t toSize);
ssize_t __wrap_sendto(int fd, const void* data, std::size_t size, int flags, const sockaddr* to,
                      socklen_t toSize) {
  return Fails("sendto") ? -1 : __real_sendto(fd, data, size, flags, to, toSize);
}

ssize_t __real_recv(int fd, void* out, std::size_t size, int flags);
ssize_t __wrap_recv(int fd, void* out, std::size_t size, int flags) {
  return Fails("recv") ? -1 : __real_recv(fd, out, size, flags);
}

// These fail, but do their work: what they release is gone.
int __real_close(int fd);
int __wrap_close(int fd) {
  const int result = __real_close(fd);
  return Fails("close") ? -1 : result;
}

int __real_munmap(void* data, std::size_t size);
int __wrap_munmap(void* data, std::size_t size) {
  const int result = __real_munmap(data, size);
  return Fails("munmap") ? -1 : result;
}

int __real_closedir(DIR* dir);
int __wrap_closedir(DIR* dir) {
  const int result = __real_closedir(dir);
  return Fails("closedir") ? -1 : result;
}

int __real_open(const char* path, int flags, ...);
int __wrap_open(const char* path, int flags, ...) {
  if ((flags & O_CLOEXEC) == 0) ++openedForOthers;
  if (Fails("open")) return -1;
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
  va_end(arguments);
  return __real_open(path, flags, mode);
}

int __real_fcntl(int fd, int command, ...);
int __wrap_fcntl(int fd, int command, ...) {
  if (Fails("fcntl")) return -1;
  va_list arguments;
  va_start(arguments, command);
  void* const argument = va_arg(arguments, void*);
  va_end(arguments);
  return __real_fcntl(fd, command, argument);
}

int __real_posix_fallocate(int fd, off_t start, off_t size);
int __wrap_posix_fallocate(int fd, off_t start, off_t size) {
  const int before = errno;
  if (!Fails("posix_fallocate")) return __real_posix_fallocate(fd, start, size);
  return std::exchange(errno, before);  // it answers the error and leaves errno alone
}

ssize_t __real_read(int fd, void* out, std::size_t size);
ssize_t __wrap_read(int fd, void* out, std::size_t size) {
  return Fails("read") ? -1 : __real_read(fd, out, size);
}

ssize_t __real_write(int fd, const void* data, std::size_t size);
ssize_t __wrap_write(int fd, const void* data, std::size_t size) {
  return Fails("write") ? -1 : __real_write(fd, data, size);
}

void* __real_mmap(void* at, std::size_t size, int protection, int flags, int fd, off_t start);
void* __wrap_mmap(void* at, std::size_t size, int protection, int flags, int fd, off_t start) {
  if (Fails("mmap")) return MAP_FAILED;
  return __real_mmap(at, size, protection, flags, fd, start);
}

DIR* __real_opendir(const char* path);
DIR* __wrap_opendir(const char* path) { return Fails("opendir") ? nullptr : __real_opendir(path); }

char* __real_realpath(const char* path, char* out);
char* __wrap_realpath(const char* path, char* out) {
  return Fails("realpath") ? nullptr : __real_realpath(path, out);
}

// What a hardened build calls in its place.
char* __real___realpath_chk(const char* path, char* out, std::size_t size);
char* __wrap___realpath_chk(const char* path, char* out, std::size_t size) {
  return Fails("realpath") ? nullptr : __real___realpath_chk(path, out, size);
}

dirent* __real_readdir(DIR* dir);
dirent* __wrap_readdir(DIR* dir) { return Fails("readdir") ? nullptr : __real_readdir(dir); }

}  // extern "C"
