// Every operation on files, with each of its system calls and of its allocations failing in
// turn: what it answers, and what it leaves behind.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "support/CheckText.h"
#include "support/CountedNew.h"
#include "support/FailEachAllocation.h"
#include "support/FailNthCall.h"
#include "support/TempDir.h"
#include "support/UnendedText.h"
#include "system/Directories.h"
#include "system/Environment.h"
#include "system/FileLocks.h"
#include "system/FileOperations.h"
#include "system/FileStatus.h"
#include "system/Paths.h"

namespace {

namespace fs = std::filesystem;

using Names = std::vector<std::string>;

// What is below a directory, in order.
Names Below(const TempDir& dir) {
  Names names;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(dir.Path())) {
    names.push_back(entry.path().lexically_relative(dir.Path()).string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

// The paths that the operations get, in a directory with a file and an empty directory.
struct Place {
  TempDir dir;
  std::string fileName = dir.File("file", std::string(30'000, 'x'));
  bool made = fs::create_directory(dir / "sub");
  UnendedText file{fileName}, sub{dir / "sub"}, to{dir / "to"}, deep{dir / "p/q"},
      all{dir.Path() + "//"}, dotted{dir / "./file"};
  std::string real = fs::canonical(fileName).string(), before = fs::current_path().string();
  SString text{"text"};
};

const Names kBefore = {"file", "sub"};
const Names kWithTo = {"file", "sub", "to"};

int Lock(const SString& path) {
  const int fd = LockFile(path, kLockWait);
  return fd != -1 && CloseFile(fd);
}

// The operations, as yes or no.
int DoRemoveFile(Place& at) { return RemoveFile(at.file.String()); }
int DoRemoveFileLogged(Place& at) { return RemoveFileLogged(at.file.String()); }
int DoRename(Place& at) { return Rename(at.file.String(), at.to.String()); }
int DoLinkFile(Place& at) { return LinkFile(at.file.String(), at.to.String()); }
int DoCopyFile(Place& at) { return CopyFile(at.file.String(), at.to.String()); }
int DoMapFileRead(Place& at) { return MapFileRead(at.file.String()).Length() == 30'000; }
int DoMapFileWrite(Place& at) { return MapFileWrite(at.to.String(), at.text); }
int DoLockFile(Place& at) { return Lock(at.to.String()); }
int DoRealPath(Place& at) { return RealPath(at.dotted.String()).View() == at.real; }
int DoReadDir(Place& at) {
  const SStringList entries = ReadDir(at.all.String());
  return entries.Count() == 2 && entries[0].Index("//") == -1;
}
int DoCreateDirectory(Place& at) { return CreateDirectory(at.to.String(), 0755); }
int DoMakeDir(Place& at) { return MakeDir(at.deep.String(), 0755); }
int DoRemoveDir(Place& at) { return RemoveDir(at.sub.String()); }
int DoChdir(Place& at) {
  const int gone = Chdir(at.sub.String());
  const int error = errno;
  EXPECT_EQ(::chdir(at.before.c_str()), 0);
  errno = error;
  return gone;
}

// What an operation takes memory for.
enum Memory {
  kNothing,
  kWork,
  kResult,  // and work: without memory for what a failure answers with, it throws
};

struct Operation {
  const char* name;
  int (*run)(Place& at);
  Names after;  // what is there where nothing fails
  Memory memory = kNothing;
};

const Operation kOperations[] = {{"RemoveFile", DoRemoveFile, {"sub"}},
                                 {"RemoveFileLogged", DoRemoveFileLogged, {"sub"}},
                                 {"Rename", DoRename, {"sub", "to"}},
                                 {"LinkFile", DoLinkFile, kWithTo},
                                 {"CopyFile", DoCopyFile, kWithTo},
                                 {"MapFileRead", DoMapFileRead, kBefore, kWork},
                                 {"MapFileWrite", DoMapFileWrite, kWithTo},
                                 {"LockFile", DoLockFile, kWithTo},
                                 {"RealPath", DoRealPath, kBefore, kResult},
                                 {"ReadDir", DoReadDir, kBefore, kResult},
                                 {"CreateDirectory", DoCreateDirectory, kWithTo},
                                 {"MakeDir", DoMakeDir, {"file", "p", "p/q", "sub"}, kWork},
                                 {"RemoveDir", DoRemoveDir, {"file"}},
                                 {"Chdir", DoChdir, kBefore}};

TEST(FileFaults, WithoutThemEachOperationTakesPathsThatEndWithoutANul) {
  for (const Operation& operation : kOperations) {
    SCOPED_TRACE(operation.name);
    Place at;
    const int open = OpenDescriptors();
    EXPECT_EQ(operation.run(at), 1);
    EXPECT_EQ(OpenDescriptors(), open);
    EXPECT_EQ(Below(at.dir), operation.after);
  }
}

TEST(FileFaults, WithoutThemDescriptorZeroIsLikeAnyOther) {
  const pid_t child = ::fork();
  if (child == 0) {
    for (const Operation& operation : kOperations) {
      SCOPED_TRACE(operation.name);
      Place at;
      ::close(0);
      EXPECT_EQ(operation.run(at), 1);
      EXPECT_EQ(::fcntl(0, F_GETFD), -1) << "left open";
    }
    ::_exit(testing::Test::HasFailure() ? 1 : 0);
  }
  int status = -1;
  ::waitpid(child, &status, 0);
  EXPECT_EQ(status, 0);
}

TEST(FileFaults, NoProgramSeesADescriptorThatNobodyGets) {
  const int before = openedForOthers;
  for (const Operation& operation : kOperations) {
    if (operation.run == DoLockFile) continue;  // its caller gets it
    Place at;
    static_cast<void>(operation.run(at));
    EXPECT_EQ(openedForOthers, before) << operation.name;
  }
}

// Runs an operation with the allocation after the first `n` failing. Returns whether it came to
// that.
bool RunsOutOfMemory(const Operation& operation, Place& at, int n) {
  const int open = OpenDescriptors();
  int done = 0, reason = 0;
  const auto [fired, thrown] = FailAllocation(n, [&] {
    done = operation.run(at);
    reason = errno;
  });
  if (thrown) {
    EXPECT_TRUE(operation.memory == kResult && n == 0);
    reason = ENOMEM;
  }
  EXPECT_EQ(OpenDescriptors(), open);
  EXPECT_EQ(done, fired ? 0 : 1);
  if (fired) {
    EXPECT_EQ(reason, ENOMEM);
  }
  return fired;
}

TEST(FileFaults, MemoryThatRunsOutIsAFailureLikeOthers) {
  for (const Operation& operation : kOperations) {
    SCOPED_TRACE(operation.name);
    Place at;
    int failed = 0;
    for (; RunsOutOfMemory(operation, at, failed); ++failed) {
      Names left = Below(at.dir);
      std::erase(left, "p");  // stays, once it is made
      std::erase(left, "p/q");
      EXPECT_EQ(left, kBefore);
    }
    EXPECT_EQ(failed > 0, operation.memory != kNothing);
    EXPECT_EQ(Below(at.dir), operation.after);
  }
}

TEST(FileFaults, WhatWasBegunIsRemovedWithoutMemory) {
  const std::pair<int (*)(Place&), const char*> rows[] = {{DoCopyFile, "read"},
                                                          {DoMapFileWrite, "msync"}};
  for (const auto& [run, function] : rows) {
    SCOPED_TRACE(function);
    Place at;
    {
      const FailNthCall fault(function, 1, EIO);
      const FailNthAllocation memory(0);
      EXPECT_EQ(run(at), 0);
      EXPECT_EQ(errno, EIO);
      EXPECT_TRUE(fault.Fired() && !memory.Fired());
    }
    EXPECT_EQ(Below(at.dir), kBefore);
  }
}

TEST(FileFaults, QuestionsNeedNoMemory) {
  Place at;
  const SString file = at.file.String(), sub = at.sub.String(), missing = at.to.String();
  const FailNthAllocation fault(0);
  EXPECT_TRUE(FileExists(file) && IsReadable(file) && IsWriteable(file) && IsExecutable(sub));
  EXPECT_TRUE(IsRegular(file) && IsDirectory(sub) && !FileExists(missing));
  EXPECT_EQ(FileSize(file), 30'000);
  EXPECT_EQ(FileSize(missing), -1);
  EXPECT_LT(FileAge(file), 1);
  EXPECT_EQ(FileAge(missing), -1.0);
  EXPECT_GE(FreeDiskSpace(file), 0);
  EXPECT_EQ(FreeDiskSpace(missing), -1.0);
  EXPECT_EQ(errno, ENOENT);
  EXPECT_EQ(SyncDir(sub), 1);
  EXPECT_FALSE(fault.Fired());
}

TEST(FileFaults, AnUndefinedContentsNeedsNoMemory) {
  Place at;
  const SString missing = at.to.String(), directory = at.sub.String(), file = at.file.String();
  const FailNthAllocation fault(0);
  EXPECT_FALSE(MapFileRead(missing).Defined() || errno != ENOENT);
  EXPECT_FALSE(MapFileRead(directory).Defined() || errno != EISDIR);
  EXPECT_FALSE(fault.Fired());
  EXPECT_FALSE(MapFileRead(file).Defined() || errno != ENOMEM);
}

TEST(FileFaultsDeathTest, AnInstalledNewHandlerHasItsTurn) {
  Place at;
  const SString file = at.file.String();
  EXPECT_EXIT(
      {
        SetNewHandler();
        const FailNthAllocation fault(0);
        static_cast<void>(MapFileRead(file));
      },
      testing::ExitedWithCode(106), "");
}

struct Row {
  int (*run)(Place& at);
  const char* function;
  int n;        // which of its calls
  bool counts;  // whether the operation fails then
  Names left;
};

const Names kGone = {"sub"};
const Names kMade = {"file", "p", "p/q", "sub"};
const Names kHalfMade = {"file", "p", "sub"};

const Row kRows[] = {
    {DoRemoveFile, "stat", 1, false, kGone},
    {DoRemoveFile, "unlink", 1, true, kBefore},
    {DoRemoveFileLogged, "stat", 1, false, kGone},
    {DoRename, "rename", 1, true, kBefore},
    {DoLinkFile, "stat", 1, false, kWithTo},
    {DoLinkFile, "link", 1, true, kBefore},
    {DoCopyFile, "stat", 1, true, kBefore},
    {DoCopyFile, "open", 1, true, kBefore},
    {DoCopyFile, "open", 2, true, kBefore},
    {DoCopyFile, "read", 1, true, kBefore},
    {DoCopyFile, "read", 2, true, kBefore},
    {DoCopyFile, "read", 3, false, kWithTo},  // nothing was left to read
    {DoCopyFile, "write", 1, false, kWithTo},
    {DoCopyFile, "write", 2, false, kWithTo},
    {DoCopyFile, "fchmod", 1, false, kWithTo},
    {DoCopyFile, "fchown", 1, false, kWithTo},
    {DoCopyFile, "close", 1, false, kWithTo},
    {DoCopyFile, "close", 2, false, kWithTo},
    {DoMapFileRead, "open", 1, true, kBefore},
    {DoMapFileRead, "fstat", 1, true, kBefore},
    {DoMapFileRead, "close", 1, false, kBefore},
    {DoMapFileWrite, "open", 1, true, kBefore},
    {DoMapFileWrite, "ftruncate", 1, true, kBefore},
    {DoMapFileWrite, "mmap", 1, true, kBefore},
    {DoMapFileWrite, "msync", 1, true, kBefore},
    {DoMapFileWrite, "munmap", 1, true, kBefore},
    {DoMapFileWrite, "close", 1, false, kWithTo},
    {DoLockFile, "open", 1, true, kBefore},
    {DoLockFile, "fcntl", 1, true, kWithTo},
    {DoReadDir, "opendir", 1, true, kBefore},
    {DoReadDir, "closedir", 1, false, kBefore},
    {DoCreateDirectory, "mkdir", 1, true, kBefore},
    {DoMakeDir, "stat", 1, false, kMade},
    {DoMakeDir, "access", 1, false, kMade},  // it is there, as making it shows
    {DoMakeDir, "mkdir", 1, true, kBefore},
    {DoMakeDir, "mkdir", 2, true, kHalfMade},
    {DoRemoveDir, "stat", 1, true, kBefore},
    {DoRemoveDir, "rmdir", 1, true, kBefore},
    {DoChdir, "stat", 1, true, kBefore},
    {DoChdir, "chdir", 1, true, kBefore},
};

TEST(FileFaults, ComeOutWithTheirReasonAndLeaveNothingBehind) {
  for (const Row& row : kRows) {
    for (const int error : {EINTR, EIO, EACCES, ENOSPC, EMFILE, ENOMEM}) {
      SCOPED_TRACE(std::string(row.function) + ' ' + std::to_string(row.n) + ' ' +
                   std::to_string(error));
      Place at;
      const int open = OpenDescriptors();
      {
        const FailNthCall fault(row.function, row.n, error);
        const int done = row.run(at);
        const int reason = errno;
        EXPECT_TRUE(fault.Fired());
        EXPECT_EQ(done, row.counts ? 0 : 1);
        if (row.counts) {
          EXPECT_EQ(reason, error);
        }
      }
      EXPECT_EQ(OpenDescriptors(), open);
      EXPECT_EQ(Below(at.dir), row.left);
    }
  }
}

}  // namespace
