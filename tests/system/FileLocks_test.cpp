#include "system/FileLocks.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "support/TempDir.h"
#include "system/FailNthCall.h"

namespace {

namespace fs = std::filesystem;

SString Text(const std::string& s) { return SString(std::string_view(s)); }

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
