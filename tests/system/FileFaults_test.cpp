// Every operation on files, with each of its system calls and of its allocations failing in
// turn: what it answers, and what it leaves behind.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "support/CheckText.h"
#include "support/FailEachAllocation.h"
#include "support/TempDir.h"
#include "support/UnendedText.h"
#include "system/Directories.h"
#include "system/FailNthCall.h"
#include "system/FileLocks.h"
#include "system/FileOperations.h"
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
      all{dir.Path() + "//"};
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
int DoMapFileWrite(Place& at) { return MapFileWrite(at.to.String(), "text"); }
int DoLockFile(Place& at) { return Lock(at.to.String()); }
int DoRealPath(Place& at) { return RealPath(at.file.String()).Length() > 0; }
int DoReadDir(Place& at) {
  const SStringList entries = ReadDir(at.all.String());
  return entries.Count() == 2 && entries[0].Index("//") == -1;
}
int DoCreateDirectory(Place& at) { return CreateDirectory(at.to.String(), 0755); }
int DoMakeDir(Place& at) { return MakeDir(at.deep.String(), 0755); }
int DoRemoveDir(Place& at) { return RemoveDir(at.sub.String()); }
int DoChdir(Place& at) {
  const fs::path before = fs::current_path();
  const int gone = Chdir(at.sub.String());
  const int error = errno;
  fs::current_path(before);
  errno = error;
  return gone;
}

struct Operation {
  const char* name;
  int (*run)(Place& at);
  Names after;  // what is there where nothing fails
};

const Operation kOperations[] = {{"RemoveFile", DoRemoveFile, {"sub"}},
                                 {"RemoveFileLogged", DoRemoveFileLogged, {"sub"}},
                                 {"Rename", DoRename, {"sub", "to"}},
                                 {"LinkFile", DoLinkFile, kWithTo},
                                 {"CopyFile", DoCopyFile, kWithTo},
                                 {"MapFileRead", DoMapFileRead, kBefore},
                                 {"MapFileWrite", DoMapFileWrite, kWithTo},
                                 {"LockFile", DoLockFile, kWithTo},
                                 {"RealPath", DoRealPath, kBefore},
                                 {"ReadDir", DoReadDir, kBefore},
                                 {"CreateDirectory", DoCreateDirectory, kWithTo},
                                 {"MakeDir", DoMakeDir, {"file", "p", "p/q", "sub"}},
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

TEST(FileFaults, MemoryThatRunsOutLeavesNothingBehind) {
  for (const Operation& operation : kOperations) {
    SCOPED_TRACE(operation.name);
    Place at;
    const int failed = FailEachAllocation([&] { operation.run(at); },
                                          [&] {
                                            Names left = Below(at.dir);
                                            std::erase(left, "p");  // stays, once it is made
                                            std::erase(left, "p/q");
                                            EXPECT_EQ(left, kBefore);
                                          });
    EXPECT_GE(failed, 1) << "the copy of the path";
    EXPECT_EQ(Below(at.dir), operation.after);
  }
}

TEST(FileFaults, WhatWasBegunIsRemovedWithoutMemory) {
  const std::pair<int (*)(Place&), const char*> rows[] = {{DoCopyFile, "read"},
                                                          {DoMapFileWrite, "msync"}};
  for (const auto& [run, function] : rows) {
    SCOPED_TRACE(function);
    Place at;
    const auto work = [&, run = run, function = function] {
      const FailNthCall fault(function, 1, EIO);
      EXPECT_EQ(run(at), 0);
      EXPECT_EQ(errno, EIO);
    };
    EXPECT_GE(FailEachAllocation(work, [&] { EXPECT_EQ(Below(at.dir), kBefore); }), 1);
    EXPECT_EQ(Below(at.dir), kBefore);
  }
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
