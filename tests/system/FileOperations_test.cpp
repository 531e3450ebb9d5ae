#include "system/FileOperations.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <vector>

#include "support/CheckText.h"
#include "support/CountedNew.h"
#include "support/EnvironmentKey.h"
#include "support/ErrorText.h"
#include "support/FailNthCall.h"
#include "support/Files.h"
#include "support/OrdinaryUser.h"
#include "support/Pieces.h"
#include "support/TempDir.h"
#include "support/Text.h"

namespace {

namespace fs = std::filesystem;

mode_t ModeOf(const std::string& path) {
  struct stat status = {};
  EXPECT_EQ(::lstat(path.c_str(), &status), 0);
  return status.st_mode & 07777;
}

TEST(RemoveFile, RemovesFilesAndRefusesDirectories) {
  const TempDir dir;
  const std::string file = dir.File("file", "");
  fs::create_directory(dir / "d");
  ASSERT_EQ(::symlink("d", (dir / "link").c_str()), 0);
  ASSERT_EQ(::symlink("missing", (dir / "dangling").c_str()), 0);
  EXPECT_EQ(RemoveFile(Text(file)), 1);
  EXPECT_EQ(RemoveFile(Text(dir / "dangling")), 1);
  const std::pair<SString, int> rows[] = {{Text(dir / "d"), EISDIR},
                                          {Text(dir / "link"), EISDIR},
                                          {Text(file), ENOENT},
                                          {Text(dir.File("f", "") + "/x"), ENOTDIR},
                                          {SString(), ENOENT}};
  for (const auto& [path, error] : rows) {
    errno = 0;
    EXPECT_EQ(RemoveFile(path), 0);
    EXPECT_EQ(errno, error);
  }
  EXPECT_TRUE(fs::is_directory(dir / "link"));
}

TEST(RemoveFileLogged, IsSilentUnlessARegularFileStays) {
  const TempDir dir;
  const std::string file = dir.File("file", "");
  EXPECT_EQ(LogText([&] {
              EXPECT_EQ(RemoveFileLogged(Text(file)), 1);
              errno = 0;
              EXPECT_EQ(RemoveFileLogged(Text(file)), 0);
              EXPECT_EQ(errno, ENOENT);
              EXPECT_EQ(RemoveFileLogged(Text(dir.Path())), 0);
              EXPECT_EQ(errno, EISDIR);
              EXPECT_EQ(RemoveFileLogged(SString()), 0);
            }),
            "");
}

TEST(RemoveFileLogged, WritesOneLineForAFileThatStays) {
  const TempDir dir;
  const EnvironmentKey key("ModuleName");
  ::setenv(key.Name(), "mailer", 1);
  const std::string file = dir.File("file", "");
  const std::string log = LogText([&] {
    const FailNthCall fault("unlink", 1, EPERM);
    EXPECT_EQ(RemoveFileLogged(Text(file)), 0);
    EXPECT_EQ(errno, EPERM);
  });
  const std::string rest =
      ":mailer:ERROR:Couldn't remove file " + file + ':' + std::strerror(EPERM) + '\n';
  EXPECT_TRUE(Text(log).HasMatch("^\\d{14}[-+]\\d{4}:")) << log;
  EXPECT_EQ(log.substr(std::min<std::size_t>(19, log.size())), rest);
}

TEST(RemoveFileLogged, WritesItsLineInOnePieceOrNotAtAll) {
  const TempDir dir;
  const SString file = Text(dir.File("file", ""));
  Pieces pieces;
  std::streambuf* const before = std::clog.rdbuf(&pieces);
  int failed = -1;
  for (bool fired = true; fired; ++failed) {
    EXPECT_EQ(pieces.Text(), "");
    const FailNthCall fault("unlink", 1, EBUSY);
    const FailNthAllocation memory(failed + 1);
    EXPECT_EQ(RemoveFileLogged(file), 0);
    EXPECT_EQ(errno, EBUSY);
    fired = memory.Fired();
  }
  std::clog.rdbuf(before);
  EXPECT_GE(failed, 1);
  EXPECT_EQ(pieces.Count(), 1);
  EXPECT_EQ(pieces.Flushes(), 1);
  EXPECT_EQ(std::count(pieces.Text().begin(), pieces.Text().end(), '\n'), 1);
  EXPECT_TRUE(pieces.Text().ends_with(std::string(":") + std::strerror(EBUSY) + '\n'))
      << pieces.Text();
}

TEST(RemoveFileLogged, OfAFileThatNobodyCanLookAtIsSilent) {
  const TempDir dir;
  const SString file = Text(dir.File("file", ""));
  EXPECT_EQ(LogText([&] {
              // The directory test, then the one for a regular file.
              const FailNthCall fault("stat", 2, EIO);
              EXPECT_EQ(RemoveFileLogged(file + "/x"), 0);
              EXPECT_EQ(errno, ENOTDIR);
              EXPECT_TRUE(fault.Fired());
            }),
            "");
}

TEST(CloseFile, TellsWhetherItWasOpen) {
  const int fd = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
  EXPECT_EQ(CloseFile(fd), 1);
  EXPECT_EQ(CloseFile(fd), 0);
  EXPECT_EQ(errno, EBADF);
}

TEST(Rename, ReplacesWhatWasThere) {
  const TempDir dir;
  const std::string a = dir.File("a", "new"), b = dir.File("b", "old");
  {
    const FailNthCall fault("rename", 1, EXDEV);
    EXPECT_EQ(Rename(Text(a), Text(b)), 0);
    EXPECT_EQ(errno, EXDEV);
  }
  EXPECT_EQ(Rename(Text(a), Text(b)), 1);
  EXPECT_EQ(ReadText(b), "new");
  EXPECT_EQ(Rename(Text(a), Text(b)), 0);
  EXPECT_EQ(errno, ENOENT);
  EXPECT_EQ(Rename(SString(), Text(b)), 0);
  EXPECT_EQ(errno, ENOENT);
}

TEST(LinkFile, GivesAFileAnotherName) {
  const TempDir dir;
  const std::string a = dir.File("a", "text");
  ASSERT_EQ(::symlink(".", (dir / "link").c_str()), 0);
  EXPECT_EQ(LinkFile(Text(a), Text(dir / "b")), 1);
  EXPECT_TRUE(fs::equivalent(a, dir / "b"));
  EXPECT_EQ(LinkFile(Text(a), Text(dir / "b")), 0);
  EXPECT_EQ(errno, EEXIST);
  for (const std::string& from : {dir.Path(), dir / "link"}) {
    EXPECT_EQ(LinkFile(Text(from), Text(dir / "c")), 0);
    EXPECT_EQ(errno, EPERM);
  }
  EXPECT_EQ(LinkFile(SString(), Text(dir / "c")), 0);
  EXPECT_EQ(errno, ENOENT);
  const FailNthCall fault("link", 1, EMLINK);
  EXPECT_EQ(LinkFile(Text(a), Text(dir / "c")), 0);
  EXPECT_EQ(errno, EMLINK);
}

TEST(CopyFile, CopiesBytesAndPermissions) {
  const TempDir dir;
  std::string bytes(100'000, 'x');
  bytes[20480] = '\0';
  const std::string from = dir.File("from", bytes);
  const std::pair<mode_t, mode_t> rows[] = {
      {0644, 0644}, {04755, 0755}, {02711, 0711}, {06700, 0700}, {01600, 01600}};
  for (const auto& [mode, expected] : rows) {
    SCOPED_TRACE(mode);
    const NoDescriptorLeft check;
    ASSERT_EQ(::chmod(from.c_str(), mode), 0);
    EXPECT_EQ(CopyFile(Text(from), Text(dir / "to"), 0777), 1);
    EXPECT_EQ(ReadText(dir / "to"), bytes);
    EXPECT_EQ(ModeOf(dir / "to"), expected);
  }
}

TEST(CopyFile, KeepsTheOwnerWhereItMay) {
  if (::getuid() != 0) GTEST_SKIP() << "only root gives files away";
  const TempDir dir;
  const std::string from = dir.File("from", "text");
  ASSERT_EQ(::chown(from.c_str(), 1234, 2345), 0);
  EXPECT_EQ(CopyFile(Text(from), Text(dir / "to"), 0), 1);
  struct stat status = {};
  ASSERT_EQ(::lstat((dir / "to").c_str(), &status), 0);
  EXPECT_EQ(status.st_uid, 1234U);
  EXPECT_EQ(status.st_gid, 2345U);
}

TEST(CopyFile, FollowsALink) {
  const TempDir dir;
  const std::string from = dir.File("from", "text");
  ASSERT_EQ(::chmod(from.c_str(), 0640), 0);
  ASSERT_EQ(::symlink("from", (dir / "link").c_str()), 0);
  EXPECT_EQ(CopyFile(Text(dir / "link"), Text(dir / "to")), 1);
  EXPECT_TRUE(fs::symlink_status(dir / "to").type() == fs::file_type::regular);
  EXPECT_EQ(ReadText(dir / "to"), "text");
  EXPECT_EQ(ModeOf(dir / "to"), 0640U);
}

TEST(CopyFile, ReplacesTheContentsOfAnExistingFile) {
  const TempDir dir;
  const std::string to = dir.File("to", "a longer text than before");
  EXPECT_EQ(CopyFile(Text(dir.File("from", "text")), Text(to), 0), 1);
  EXPECT_EQ(ReadText(to), "text");
  EXPECT_EQ(CopyFile(Text(dir.File("empty", "")), Text(to), 0), 1);
  EXPECT_EQ(ReadText(to), "");
}

TEST(CopyFile, FailsAtEveryCallThatCounts) {
  struct Row {
    const char* function;
    int n;
    int error;
    bool left;  // whether there is a file afterwards
  };
  constexpr Row kRows[] = {{"stat", 1, EACCES, true},
                           {"open", 1, EMFILE, true},
                           {"open", 2, ENOSPC, true},
                           {"read", 1, EIO, false},
                           {"read", 2, EINTR, false}};
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.function);
    const TempDir dir;
    const NoDescriptorLeft check;
    const std::string from = dir.File("from", std::string(30'000, 'x')), to = dir.File("to", "old");
    const FailNthCall fault(row.function, row.n, row.error);
    EXPECT_EQ(CopyFile(Text(from), Text(to), 0), 0);
    EXPECT_EQ(errno, row.error);
    EXPECT_TRUE(fault.Fired());
    EXPECT_EQ(fs::exists(to), row.left);
    if (row.left) {
      EXPECT_EQ(ReadText(to), "old");
    }
  }
}

TEST(CopyFile, GoesOnWhereAFailureDoesNotCount) {
  for (const char* const function : {"write", "fchmod", "fchown", "close"}) {
    SCOPED_TRACE(function);
    const TempDir dir;
    const NoDescriptorLeft check;
    const FailNthCall fault(function, 1, ENOSPC);
    errno = ENOTTY;
    EXPECT_EQ(CopyFile(Text(dir.File("from", "text")), Text(dir / "to"), 0), 1);
    EXPECT_EQ(errno, ENOTTY);
    EXPECT_TRUE(fault.Fired());
    EXPECT_TRUE(fs::exists(dir / "to"));
    if (function == std::string("fchmod")) {
      EXPECT_EQ(ModeOf(dir / "to"), 0600U) << "nobody else reads what is being copied";
    }
  }
}

TEST(CopyFile, OfWhatIsNotAsLongAsItSaysIsRemoved) {
  const TempDir dir;
  for (const char* from : {"/proc/self/status", "/dev/zero"}) {  // the second never ends
    EXPECT_EQ(CopyFile(from, Text(dir / "to"), 0), 0);
    EXPECT_EQ(errno, EIO);
    EXPECT_FALSE(fs::exists(dir / "to"));
  }
  {
    const FailNthCall fault("unlink", 1, EROFS);
    EXPECT_EQ(CopyFile("/proc/self/status", Text(dir / "to"), 0), 0);
    EXPECT_EQ(errno, EIO) << "not that of the clean-up";
    EXPECT_TRUE(fault.Fired());
    fs::remove(dir / "to");
  }
  {
    const FailNthCall fault("write", 1, ENOSPC);
    EXPECT_EQ(CopyFile("/proc/self/status", Text(dir / "to"), 0), 0);
    EXPECT_EQ(errno, EIO) << "writes do not count";
    EXPECT_TRUE(fault.Fired());
  }
  fs::create_directory(dir / "d");
  EXPECT_EQ(CopyFile(Text(dir / "d"), Text(dir.Path()), 0), 0);
  EXPECT_EQ(errno, EISDIR);
  EXPECT_EQ(CopyFile(Text(dir / "x"), Text(dir / "to"), 0), 0);
  EXPECT_EQ(errno, ENOENT);
  EXPECT_EQ(CopyFile(SString(), SString(), 0), 0);
  EXPECT_EQ(errno, ENOENT);
  EXPECT_FALSE(fs::exists(dir / "to"));
}

TEST(FileOperations, CloseBeforeTheyRemoveWhatTheyBegan) {
  const TempDir dir;
  const SString from = Text(dir.File("from", "text")), to = Text(dir / "to"), data("text");
  for (const char* const function : {"read", "ftruncate"}) {
    SCOPED_TRACE(function);
    const FailNthCall fault(function, 1, EIO);
    const RecordCalls recorded;
    const bool copy = function == std::string("read");
    EXPECT_EQ(copy ? CopyFile(from, to) : MapFileWrite(to, data), 0);
    const std::vector<std::string>& calls = recorded.Calls();
    const auto failed = std::find(calls.begin(), calls.end(), function);
    std::vector<std::string> expected = {"close", "stat", "unlink"};
    if (copy) expected.insert(expected.begin(), "close");
    EXPECT_EQ(std::vector<std::string>(failed + 1, calls.end()), expected);
  }
}

TEST(MapFileRead, TellsEmptyFromMissing) {
  const TempDir dir;
  const NoDescriptorLeft check;
  CheckText(MapFileRead(Text(dir.File("empty", ""))), "");
  const std::string nuls("a\0b\0", 4);
  CheckText(MapFileRead(Text(dir.File("nuls", nuls))), nuls);
  for (const std::size_t size : {4095U, 4096U, 4097U, 1'000'000U}) {
    const std::string bytes(size, 'x');
    CheckText(MapFileRead(Text(dir.File("file", bytes))), bytes);
  }
}

TEST(MapFileRead, OfAnythingElseIsUndefined) {
  const TempDir dir;
  const NoDescriptorLeft check;
  const std::string file = dir.File("file", "text");
  ASSERT_EQ(::mkfifo((dir / "pipe").c_str(), 0600), 0);
  ASSERT_EQ(::symlink("loop", (dir / "loop").c_str()), 0);
  const std::pair<SString, int> rows[] = {{SString(), ENOENT},
                                          {"", ENOENT},
                                          {Text(dir / "x"), ENOENT},
                                          {Text(file + "/x"), ENOTDIR},
                                          {Text(dir.Path()), EISDIR},
                                          {Text(dir / "pipe"), EINVAL},
                                          {"/dev/null", EINVAL},
                                          {Text(dir / "loop"), ELOOP},
                                          {Text(dir.SparseFile("large", 3'000'000'000L)), EFBIG},
                                          {Text(dir.SparseFile("int", INT_MAX)), EFBIG}};
  for (const auto& [path, error] : rows) {
    SCOPED_TRACE(path.View());
    errno = 0;
    CheckUndefined(MapFileRead(path));
    EXPECT_EQ(errno, error);
  }
}

TEST(MapFileRead, FailsAtEveryCall) {
  const TempDir dir;
  const SString path = Text(dir.File("file", "text"));
  for (const auto& [function, error] :
       {std::pair("open", EMFILE), {"fstat", EIO}, {"read", EISDIR}, {"read", EIO}}) {
    SCOPED_TRACE(function);
    const NoDescriptorLeft check;
    const FailNthCall fault(function, 1, error);
    CheckUndefined(MapFileRead(path));
    EXPECT_EQ(errno, error);
    EXPECT_TRUE(fault.Fired());
  }
  for (const auto& [function, error] : {std::pair("read", EINTR), {"close", EIO}}) {
    SCOPED_TRACE(function);
    const NoDescriptorLeft check;
    const FailNthCall fault(function, 1, error);
    CheckText(MapFileRead(path), "text");
    EXPECT_TRUE(fault.Fired());
  }
}

TEST(MapFileRead, OfAFileThatShrinksIsUndefined) {
  const TempDir dir;
  for (const int left : {0, 5000, 19'999}) {
    SCOPED_TRACE(left);
    const std::string path = dir.File("file", std::string(20'000, 'x'));
    const NoDescriptorLeft check;
    afterFstat = [&] { fs::resize_file(path, static_cast<std::uintmax_t>(left)); };
    CheckUndefined(MapFileRead(Text(path)));
    EXPECT_EQ(errno, EIO);
  }
}

TEST(MapFileRead, OfAFileThatGrowsGivesWhatWasThere) {
  const TempDir dir;
  const std::string path = dir.File("file", std::string(20'000, 'x'));
  afterFstat = [&] { fs::resize_file(path, 30'000); };
  CheckText(MapFileRead(Text(path)), std::string(20'000, 'x'));
}

TEST(MapFileRead, WithoutTheRightIsUndefined) {
  const TempDir dir;
  fs::permissions(dir.Path(), fs::perms(0755));
  const std::string path = dir.File("file", "text");
  fs::permissions(path, fs::perms::none);
  EXPECT_TRUE(AsOrdinaryUser(
      [](const SString& file) { return !MapFileRead(file).Defined() && errno == EACCES; },
      Text(path)));
}

TEST(MapFileRead, OfATerminalDoesNotTakeItOver) {
  const int master = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
  if (master < 0 || ::grantpt(master) != 0 || ::unlockpt(master) != 0) {
    GTEST_SKIP() << "no terminals here";
  }
  const SString terminal(::ptsname(master));
  const pid_t child = ::fork();
  if (child == 0) {
    ::setsid();  // without a terminal: the next one opened would become its own
    const bool refused = !MapFileRead(terminal).Defined() && errno == EINVAL;
    ::_exit(refused && ::open("/dev/tty", O_RDONLY | O_CLOEXEC) == -1 ? 0 : 1);
  }
  int status = -1;
  ::waitpid(child, &status, 0);
  EXPECT_EQ(status, 0);
  ::close(master);
}

TEST(MapFileWrite, MakesAFileThatReadsBack) {
  const TempDir dir;
  const NoDescriptorLeft check;
  const mode_t before = ::umask(0);
  int n = 0;
  for (const std::string& data : {std::string(), std::string("text"), std::string("\0a\0", 3),
                                  std::string(4096, 'x'), std::string(1'000'001, '\0')}) {
    const std::string path = dir / std::to_string(++n);
    EXPECT_EQ(MapFileWrite(Text(path), Text(data)), 1);
    CheckText(MapFileRead(Text(path)), data);
    EXPECT_EQ(ModeOf(path), 0660U);
  }
  ::umask(before);
  EXPECT_EQ(MapFileWrite(Text(dir / "undefined"), SString()), 1);
  EXPECT_EQ(fs::file_size(dir / "undefined"), 0U);
}

TEST(MapFileWrite, LeavesAnExistingFileAlone) {
  const TempDir dir;
  const NoDescriptorLeft check;
  const std::string file = dir.File("file", "old");
  ASSERT_EQ(::symlink("missing", (dir / "link").c_str()), 0);
  for (const std::string& path : {file, dir / "link", dir.Path()}) {
    errno = 0;
    EXPECT_EQ(MapFileWrite(Text(path), "new"), 0);
    EXPECT_EQ(errno, EEXIST);
  }
  EXPECT_EQ(ReadText(file), "old");
  EXPECT_FALSE(fs::exists(dir / "missing"));
  for (const SString& path : {SString(), SString(""), Text(dir / "x/y")}) {
    EXPECT_EQ(MapFileWrite(path, "new"), 0);
    EXPECT_EQ(errno, ENOENT);
  }
  EXPECT_EQ(MapFileWrite(Text(file + "/x"), "new"), 0);
  EXPECT_EQ(errno, ENOTDIR);
}

TEST(MapFileWrite, LeavesNoFileWhereACallFails) {
  for (const auto& [function, error] : {std::pair("open", ENFILE),
                                        {"ftruncate", EFBIG},
                                        {"posix_fallocate", ENOSPC},
                                        {"mmap", ENOMEM},
                                        {"msync", EIO},
                                        {"munmap", ENOMEM}}) {
    SCOPED_TRACE(function);
    const TempDir dir;
    const NoDescriptorLeft check;
    const FailNthCall fault(function, 1, error);
    EXPECT_EQ(MapFileWrite(Text(dir / "file"), "text"), 0);
    EXPECT_EQ(errno, error);
    EXPECT_TRUE(fault.Fired());
    EXPECT_TRUE(fs::is_empty(dir.Path()));
  }
  const TempDir dir;
  const FailNthCall fault("ftruncate", 1, EIO);
  EXPECT_EQ(MapFileWrite(Text(dir / "file"), ""), 0);
  EXPECT_TRUE(fs::is_empty(dir.Path()));
}

TEST(MapFileWrite, GoesOnWhereTheSystemReservesNothing) {
  for (const int error : {EOPNOTSUPP, EINVAL, EINTR}) {
    const TempDir dir;
    const NoDescriptorLeft check;
    const FailNthCall fault("posix_fallocate", 1, error);
    EXPECT_EQ(MapFileWrite(Text(dir / "file"), "text"), 1);
    EXPECT_EQ(ReadText(dir / "file"), "text");
    EXPECT_TRUE(fault.Fired());
  }
}

TEST(MapFileWrite, ReservesNoRoomForNothing) {
  const TempDir dir;
  const FailNthCall fault("posix_fallocate", 1, EIO);
  EXPECT_EQ(MapFileWrite(Text(dir / "file"), ""), 1);
  EXPECT_FALSE(fault.Fired());
}

TEST(MapFileWrite, FailsWhereNoRoomIsReserved) {
  for (const int error : {ENOSPC, EIO, EFBIG, EDQUOT}) {
    const TempDir dir;
    const NoDescriptorLeft check;
    const FailNthCall fault("posix_fallocate", 1, error);
    EXPECT_EQ(MapFileWrite(Text(dir / "file"), "text"), 0);
    EXPECT_EQ(errno, error);
    EXPECT_TRUE(fault.Fired());
    EXPECT_TRUE(fs::is_empty(dir.Path()));
  }
}

TEST(MapFileWrite, WaitsForTheDisk) {
  const TempDir dir;
  syncFlags = 0;
  EXPECT_EQ(MapFileWrite(Text(dir / "file"), "text"), 1);
  EXPECT_EQ(syncFlags, MS_SYNC);
}

TEST(MapFileWrite, OnAFullDiskSaysSo) {
  const TempDir dir;
  if (::mount("none", dir.Path().c_str(), "tmpfs", 0, "size=64k") != 0) {
    GTEST_SKIP() << "only root mounts a small disk";
  }
  errno = 0;
  EXPECT_EQ(MapFileWrite(Text(dir / "large"), SString('x', 200'000)), 0);
  EXPECT_EQ(errno, ENOSPC);
  EXPECT_TRUE(fs::is_empty(dir.Path()));
  {
    const FailNthCall fault("unlink", 1, EIO);
    EXPECT_EQ(MapFileWrite(Text(dir / "large"), SString('x', 200'000)), 0);
    EXPECT_EQ(errno, ENOSPC) << "not that of the clean-up";
    EXPECT_TRUE(fault.Fired());
    fs::remove(dir / "large");
  }
  EXPECT_EQ(MapFileWrite(Text(dir / "small"), SString('x', 20'000)), 1);
  EXPECT_EQ(::umount2(dir.Path().c_str(), MNT_DETACH), 0);
}

TEST(MapFileWrite, InAReadOnlyDirectoryIsRefused) {
  const TempDir dir;
  fs::permissions(dir.Path(), fs::perms(0555));
  EXPECT_TRUE(AsOrdinaryUser(
      [](const SString& path) { return !MapFileWrite(path, "text") && errno == EACCES; },
      Text(dir / "file")));
  fs::permissions(dir.Path(), fs::perms::owner_all);
}

TEST(MapFileWrite, OfManyProcessesAtOnceSucceedsInOne) {
  const TempDir dir;
  for (int turn = 0; turn < 50; ++turn) {
    const SString path = Text(dir / std::to_string(turn));
    std::vector<pid_t> children;
    for (int i = 0; i < 4; ++i) {
      children.push_back(::fork());
      if (children.back() != 0) continue;
      const int made = MapFileWrite(path, SString(static_cast<char>('0' + i), 10'000));
      ::_exit(made ? 1 : errno == EEXIST ? 0 : 2);
    }
    int made = 0, winner = -1;
    for (int i = 0; i < 4; ++i) {
      int status = -1;
      ::waitpid(children[static_cast<std::size_t>(i)], &status, 0);
      ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) < 2);
      if (WEXITSTATUS(status) == 1) winner = i;
      made += WEXITSTATUS(status);
    }
    EXPECT_EQ(made, 1);
    EXPECT_EQ(MapFileRead(path), SString(static_cast<char>('0' + winner), 10'000));
  }
}

}  // namespace
