#include "system/FileLocks.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "support/FailNthCall.h"
#include "support/TempDir.h"
#include "support/Text.h"

namespace {

namespace fs = std::filesystem;

// Returns whether another process answers true.
bool InAnotherProcess(const std::function<bool()>& work) {
  const pid_t child = ::fork();
  if (child == 0) ::_exit(work() ? 0 : 1);
  int status = -1;
  ::waitpid(child, &status, 0);
  return status == 0;
}

bool OtherGets(const SString& path, int flags, int start = 0, int length = 0) {
  return InAnotherProcess([&] { return LockFile(path, flags, start, length) >= 0; });
}

TEST(LockFile, MakesAFileForItsOwnerAndLocksIt) {
  const TempDir dir;
  const SString path = Text(dir / "lock");
  const int fd = LockFile(path);
  ASSERT_GE(fd, 0);
  EXPECT_EQ(fs::status(dir / "lock").permissions(), fs::perms(0600));
  EXPECT_FALSE(OtherGets(path, 0));
  EXPECT_FALSE(OtherGets(path, kLockShared));
  EXPECT_TRUE(InAnotherProcess(
      [&] { return LockFile(path) == -1 && (errno == EAGAIN || errno == EACCES); }));
  EXPECT_EQ(UnlockFile(fd), 1);
  EXPECT_TRUE(OtherGets(path, 0));
  EXPECT_EQ(::close(fd), 0);
}

TEST(LockFile, KeepsWhatIsInTheFile) {
  const TempDir dir;
  const std::string path = dir.File("lock", "text");
  const int fd = LockFile(Text(path));
  ASSERT_GE(fd, 0);
  EXPECT_EQ(fs::file_size(path), 4U);
  ::close(fd);
  EXPECT_TRUE(OtherGets(Text(path), 0)) << "closing gives the lock back";
}

TEST(LockFile, SharesASharedLock) {
  const TempDir dir;
  const SString path = Text(dir / "lock");
  const int fd = LockFile(path, kLockShared);
  ASSERT_GE(fd, 0);
  EXPECT_TRUE(OtherGets(path, kLockShared));
  EXPECT_FALSE(OtherGets(path, 0));
  ::close(fd);
}

TEST(LockFile, LocksARange) {
  const TempDir dir;
  const SString path = Text(dir / "lock");
  const int fd = LockFile(path, 0, 10, 5);
  ASSERT_GE(fd, 0);
  EXPECT_TRUE(OtherGets(path, 0, 0, 10));
  EXPECT_FALSE(OtherGets(path, 0, 0, 11));
  EXPECT_FALSE(OtherGets(path, 0, 14, 1));
  EXPECT_TRUE(OtherGets(path, 0, 15, 0));
  EXPECT_EQ(UnlockFile(fd, 10, 4), 1);
  EXPECT_TRUE(OtherGets(path, 0, 0, 14));
  EXPECT_FALSE(OtherGets(path, 0, 14, 1));
  ::close(fd);
}

TEST(LockFile, CountsFromTheBeginningOfTheFile) {
  const TempDir dir;
  const SString path = Text(dir.File("lock", "0123456789"));
  const int fd = ::open(path.Data(), O_RDWR | O_CLOEXEC);
  ASSERT_EQ(::lseek(fd, 5, SEEK_SET), 5);
  EXPECT_EQ(LockFile(fd, 0, 2, 1), fd);
  EXPECT_TRUE(OtherGets(path, 0, 0, 2));
  EXPECT_FALSE(OtherGets(path, 0, 2, 1));
  EXPECT_TRUE(OtherGets(path, 0, 3, 0));
  EXPECT_EQ(UnlockFile(fd, 2, 1), 1);
  EXPECT_TRUE(OtherGets(path, 0));
  ::close(fd);
}

TEST(LockFile, StaysOpenInTheProgramsThatTheProcessStarts) {
  const TempDir dir;
  const int fd = LockFile(Text(dir / "lock"));
  EXPECT_EQ(::fcntl(fd, F_GETFD), 0);
  ::close(fd);
}

// A signal every few milliseconds, which ends a wait but nothing else.
class Ticking {
 public:
  Ticking() {
    struct sigaction action = {};
    action.sa_handler = [](int) {};
    ::sigaction(SIGALRM, &action, &before_);
    _Every(2000);
  }
  ~Ticking() {
    _Every(0);
    ::sigaction(SIGALRM, &before_, nullptr);
  }
  Ticking(const Ticking&) = delete;
  Ticking& operator=(const Ticking&) = delete;

 private:
  static void _Every(int microseconds) {
    const itimerval timer = {{0, microseconds}, {0, microseconds}};
    ::setitimer(ITIMER_REAL, &timer, nullptr);
  }

  struct sigaction before_ = {};
};

TEST(LockFile, WaitsWhereItIsAskedTo) {
  const TempDir dir;
  const SString path = Text(dir / "lock");
  const int fd = LockFile(path);
  ASSERT_GE(fd, 0);
  struct Row {
    int flags;
    int error;
  };
  constexpr Row kRows[] = {
      {0, EAGAIN}, {kLockShared, EAGAIN}, {kLockWait, EINTR}, {kLockWait | kLockShared, EINTR}};
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.flags);
    EXPECT_TRUE(InAnotherProcess([&] {
      const Ticking signals;
      return LockFile(path, row.flags) == -1 && errno == row.error;
    }));
  }
  for (const int exclusive : {0, 1}) {
    EXPECT_TRUE(InAnotherProcess([&] {
      const int other = ::open(path.Data(), O_RDWR | O_CLOEXEC);
      const Ticking signals;
      return db_lock_fd(other, exclusive) == 0 && errno == EINTR;
    }));
  }
  ::close(fd);
}

TEST(LockFile, FailsWithTheReasonAndLeavesNoDescriptor) {
  const TempDir dir;
  const std::string file = dir.File("file", "");
  const int open = OpenDescriptors();
  const std::pair<SString, int> rows[] = {{Text(dir.Path()), EISDIR},
                                          {Text(file + "/x"), ENOTDIR},
                                          {Text(dir / "x/y"), ENOENT},
                                          {SString(), ENOENT}};
  for (const auto& [path, error] : rows) {
    errno = 0;
    EXPECT_EQ(LockFile(path), -1);
    EXPECT_EQ(errno, error);
  }
  for (const int error : {ENOLCK, EINTR, EDEADLK}) {
    const FailNthCall fault("fcntl", 1, error);
    EXPECT_EQ(LockFile(Text(file), kLockWait), -1);
    EXPECT_EQ(errno, error);
  }
  EXPECT_EQ(LockFile(-1), -1);
  EXPECT_EQ(errno, EBADF);
  EXPECT_EQ(UnlockFile(-1), 0);
  EXPECT_EQ(errno, EBADF);
  EXPECT_EQ(db_lock_fd(-1, 1), 0);
  EXPECT_EQ(errno, EBADF);
  {
    const int fd = ::open(file.c_str(), O_RDWR | O_CLOEXEC);
    for (const int error : {ENOLCK, EINTR, EDEADLK, EACCES, EAGAIN}) {
      for (int (*const call)(int) : {+[](int to) { return LockFile(to) == -1 ? 0 : 1; },
                                     +[](int to) { return UnlockFile(to, 1, 2); },
                                     +[](int to) { return db_lock_fd(to, 0); }}) {
        const FailNthCall fault("fcntl", 1, error);
        EXPECT_EQ(call(fd), 0);
        EXPECT_EQ(errno, error);
        EXPECT_TRUE(fault.Fired());
      }
    }
    ::close(fd);
  }
  EXPECT_EQ(LockFile(Text(file), 0, -1, 0), -1) << "before the beginning";
  EXPECT_EQ(errno, EINVAL);
  EXPECT_EQ(OpenDescriptors(), open);
}

TEST(LockFile, OfADescriptorReturnsIt) {
  const TempDir dir;
  const int fd = ::open(dir.File("file", "").c_str(), O_RDONLY | O_CLOEXEC);
  EXPECT_EQ(LockFile(fd, kLockShared), fd);
  EXPECT_EQ(LockFile_fcntl(fd, kLockShared), fd);
  EXPECT_EQ(UnlockFile_fcntl(fd), 1);
  EXPECT_EQ(LockFile(fd), -1) << "an exclusive lock needs the right to write";
  EXPECT_EQ(errno, EBADF);
  ::close(fd);
}

// Several processes count a number in a file up; without a lock they lose counts.
TEST(LockFile, LetsProcessesTakeTurns) {
  const TempDir dir;
  const std::string counter = dir.File("counter", "0");
  constexpr int kProcesses = 4, kTurns = 200;
  std::vector<pid_t> children;
  for (int i = 0; i < kProcesses; ++i) {
    children.push_back(::fork());
    if (children.back() != 0) continue;
    for (int turn = 0; turn < kTurns; ++turn) {
      const int fd = LockFile(Text(dir / "lock"), kLockWait);
      if (fd < 0) ::_exit(1);
      int count = 0;
      std::ifstream(counter) >> count;
      std::ofstream(counter) << count + 1 << std::flush;
      ::close(fd);
    }
    ::_exit(0);
  }
  for (const pid_t child : children) {
    int status = -1;
    ::waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
  }
  int count = 0;
  std::ifstream(counter) >> count;
  EXPECT_EQ(count, kProcesses * kTurns);
}

TEST(DbLockFd, LocksTheWholeFile) {
  const TempDir dir;
  const SString path = Text(dir.File("file", "text"));
  const int fd = ::open(path.Data(), O_RDWR | O_CLOEXEC);
  EXPECT_EQ(db_lock_fd(fd, 0), 1);
  EXPECT_TRUE(OtherGets(path, kLockShared));
  EXPECT_FALSE(OtherGets(path, 0, 1'000'000, 1));
  EXPECT_EQ(db_lock_fd(fd, 7), 1);
  EXPECT_FALSE(OtherGets(path, kLockShared));
  ::close(fd);
}

}  // namespace
