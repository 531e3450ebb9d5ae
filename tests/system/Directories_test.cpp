#include "system/Directories.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "support/FailNthCall.h"
#include "support/OrdinaryUser.h"
#include "support/TempDir.h"
#include "support/Text.h"
#include "system/FileStatus.h"

namespace {

namespace fs = std::filesystem;

std::vector<std::string> Sorted(const SStringList& list) {
  std::vector<std::string> texts;
  for (const SString& s : list) texts.emplace_back(s.View());
  std::sort(texts.begin(), texts.end());
  return texts;
}

// The working directory, put back afterwards.
class WorkingDirectory {
 public:
  explicit WorkingDirectory(const std::string& path) { fs::current_path(path); }
  ~WorkingDirectory() { fs::current_path(before_); }
  WorkingDirectory(const WorkingDirectory&) = delete;
  WorkingDirectory& operator=(const WorkingDirectory&) = delete;

 private:
  fs::path before_ = fs::current_path();
};

TEST(ReadDir, GivesPathsWithSingleSlashes) {
  const TempDir dir;
  dir.File("a", "");
  dir.File(".hidden", "");
  fs::create_directory(dir / "d");
  const std::vector<std::string> expected = {dir / ".hidden", dir / "a", dir / "d"};
  for (const std::string& path : {dir.Path(), dir.Path() + "/", dir.Path() + "///",
                                  "/" + dir.Path(), "//" + dir.Path().substr(1) + "//"}) {
    SCOPED_TRACE(path);
    const int open = OpenDescriptors();
    EXPECT_EQ(Sorted(ReadDir(Text(path))), expected);
    EXPECT_EQ(errno, 0);
    EXPECT_EQ(OpenDescriptors(), open);
  }
}

TEST(ReadDir, KeepsTheOrderOfTheSystem) {
  const TempDir dir;
  for (int i = 0; i < 20; ++i) dir.File(std::to_string(i * 7919), "");
  std::vector<std::string> expected, got;
  for (const fs::directory_entry& entry : fs::directory_iterator(dir.Path())) {
    expected.push_back(entry.path().string());
  }
  for (const SString& path : ReadDir(Text(dir.Path()))) got.emplace_back(path.View());
  EXPECT_EQ(got, expected);
}

TEST(ReadDir, OfAnEmptyDirectoryIsDefined) {
  const TempDir dir;
  const SStringList list = ReadDir(Text(dir.Path()));
  EXPECT_TRUE(list.Defined());
  EXPECT_EQ(list.Count(), 0);
}

TEST(ReadDir, ThatCannotOpenIsUndefined) {
  const TempDir dir;
  const std::string file = dir.File("file", "");
  const std::pair<SString, int> rows[] = {
      {SString(), ENOENT}, {"", ENOENT}, {Text(dir / "x"), ENOENT}, {Text(file), ENOTDIR}};
  for (const auto& [path, error] : rows) {
    errno = 0;
    EXPECT_FALSE(ReadDir(path).Defined());
    EXPECT_EQ(errno, error);
  }
  const FailNthCall fault("opendir", 1, EMFILE);
  EXPECT_FALSE(ReadDir(Text(dir.Path())).Defined());
  EXPECT_EQ(errno, EMFILE);
}

TEST(ReadDir, StopsAtAnErrorAndGoesOnAfterASignal) {
  const TempDir dir;
  dir.File("a", "");
  dir.File("b", "");
  for (int n = 1; n <= 5; ++n) {
    SCOPED_TRACE(n);
    const int open = OpenDescriptors();
    {
      const FailNthCall fault("readdir", n, EIO);
      const SStringList list = ReadDir(Text(dir.Path()));
      EXPECT_EQ(errno, EIO);
      EXPECT_TRUE(fault.Fired());
      EXPECT_TRUE(list.Defined());
      EXPECT_LT(list.Count(), n);
    }
    {
      const FailNthCall fault("readdir", n, EINTR);
      EXPECT_EQ(ReadDir(Text(dir.Path())).Count(), 2);
      EXPECT_TRUE(fault.Fired());
      EXPECT_EQ(errno, 0);
    }
    EXPECT_EQ(OpenDescriptors(), open);
  }
  const FailNthCall fault("closedir", 1, EINTR);
  EXPECT_EQ(ReadDir(Text(dir.Path())).Count(), 2);
  EXPECT_EQ(errno, 0);
}

TEST(CreateDirectory, MakesOne) {
  const TempDir dir;
  const mode_t before = ::umask(022);
  EXPECT_EQ(CreateDirectory(Text(dir / "d"), 0777), 1);
  EXPECT_EQ(CreateDirectory(Text(dir / "theirs"), 0070), 1);
  ::umask(before);
  EXPECT_EQ(fs::status(dir / "theirs").permissions(), fs::perms(0050));
  EXPECT_EQ(fs::status(dir / "d").permissions(), fs::perms(0755));
  EXPECT_EQ(CreateDirectory(Text(dir / "d"), 0777), 0);
  EXPECT_EQ(errno, EEXIST);
  EXPECT_EQ(CreateDirectory(Text(dir / "x/y"), 0777), 0);
  EXPECT_EQ(errno, ENOENT);
  EXPECT_EQ(CreateDirectory(SString(), 0777), 0);
  EXPECT_EQ(errno, ENOENT);
}

TEST(MakeDir, MakesEveryMissingAncestor) {
  const TempDir dir;
  const WorkingDirectory here(dir.Path());
  EXPECT_EQ(MakeDir("a/b/c/", 0755), 1);
  EXPECT_TRUE(fs::is_directory(dir / "a/b/c"));
  EXPECT_EQ(MakeDir("a/b/c/", 0755), 1);
  EXPECT_EQ(MakeDir("x//y", 0755), 1);
  EXPECT_TRUE(fs::is_directory(dir / "x/y"));
  EXPECT_EQ(MakeDir(Text(dir / "p/q"), 0755), 1);
  EXPECT_TRUE(fs::is_directory(dir / "p/q"));
  EXPECT_EQ(MakeDir("/", 0755), 1);
  EXPECT_EQ(MakeDir("x/../z", 0755), 1);
  EXPECT_TRUE(fs::is_directory(dir / "z"));
}

TEST(MakeDir, GivesEachDirectoryTheMode) {
  const TempDir dir;
  const mode_t before = ::umask(0);
  EXPECT_EQ(MakeDir(Text(dir / "a/b"), 0730), 1);
  ::umask(027);
  EXPECT_EQ(MakeDir(Text(dir / "x/y"), 0777), 1);
  ::umask(before);
  for (const char* const name : {"a", "a/b"}) {
    EXPECT_EQ(fs::status(dir / name).permissions(), fs::perms(0730));
  }
  for (const char* const name : {"x", "x/y"}) {
    EXPECT_EQ(fs::status(dir / name).permissions(), fs::perms(0750));
  }
}

TEST(MakeDir, AtOnceWhenItIsThere) {
  const TempDir dir;
  for (const char* const function : {"access", "mkdir"}) {
    const FailNthCall fault(function, 1, EIO);
    EXPECT_EQ(MakeDir(Text(dir.Path()), 0755), 1);
    EXPECT_FALSE(fault.Fired());
  }
}

TEST(MakeDir, StopsAtAFile) {
  const TempDir dir;
  const std::string file = dir.File("file", "text");
  for (const std::string& path : {file, file + "/a", file + "/a/b", file + "/"}) {
    SCOPED_TRACE(path);
    errno = 0;
    EXPECT_EQ(MakeDir(Text(path), 0755), 0);
    EXPECT_EQ(errno, ENOTDIR);
  }
  EXPECT_TRUE(fs::is_regular_file(file));
}

TEST(MakeDir, OfNothingFails) {
  for (const SString& path : {SString(), SString("")}) {
    errno = 0;
    EXPECT_EQ(MakeDir(path, 0755), 0);
    EXPECT_EQ(errno, ENOENT);
  }
}

TEST(MakeDir, KeepsTheErrorOfTheDirectoryThatFailed) {
  const TempDir dir;
  for (int n = 1;; ++n) {
    const FailNthCall fault("mkdir", n, ENOSPC);
    const int made = MakeDir(Text(dir / std::to_string(n) + "/a/b"), 0755);
    const int error = errno;
    if (!fault.Fired()) {
      EXPECT_EQ(made, 1);
      EXPECT_EQ(n, 4);
      break;
    }
    EXPECT_EQ(made, 0);
    EXPECT_EQ(error, ENOSPC);
  }
}

TEST(MakeDir, OfManyProcessesAtOnceSucceedsInAll) {
  const TempDir dir;
  for (int turn = 0; turn < 20; ++turn) {
    const SString path = Text(dir / std::to_string(turn)) + "/a/b/c/d/e";
    std::vector<pid_t> children;
    for (int i = 0; i < 4; ++i) {
      children.push_back(::fork());
      if (children.back() == 0) ::_exit(MakeDir(path, 0755) ? 0 : 1);
    }
    for (const pid_t child : children) {
      int status = -1;
      ::waitpid(child, &status, 0);
      EXPECT_EQ(status, 0);
    }
    EXPECT_EQ(IsDirectory(path), 1);
  }
}

TEST(MakeDir, InAReadOnlyDirectoryIsRefused) {
  const TempDir dir;
  fs::permissions(dir.Path(), fs::perms(0555));
  EXPECT_TRUE(
      AsOrdinaryUser([](const SString& path) { return !MakeDir(path, 0755) && errno == EACCES; },
                     Text(dir / "a/b")));
  fs::permissions(dir.Path(), fs::perms::owner_all);
}

TEST(RemoveDir, RemovesAnEmptyDirectoryOnly) {
  const TempDir dir;
  fs::create_directories(dir / "a/b");
  dir.File("file", "");
  ASSERT_EQ(::symlink("a", (dir / "link").c_str()), 0);
  const std::pair<std::string, int> rows[] = {{dir / "a", ENOTEMPTY},  {dir / "file", ENOTDIR},
                                              {dir / "link", ENOTDIR}, {dir / "x", ENOENT},
                                              {"/", ENOENT},           {"", ENOENT}};
  for (const auto& [path, error] : rows) {
    SCOPED_TRACE(path);
    errno = 0;
    EXPECT_EQ(RemoveDir(Text(path)), 0);
    EXPECT_EQ(errno, error);
  }
  errno = EXDEV;
  EXPECT_EQ(RemoveDir(Text(dir / "a/b//")), 1);
  EXPECT_EQ(errno, EXDEV) << "success leaves it alone";
  fs::create_directory(dir / "a/b");
  EXPECT_EQ(RemoveDir(Text(dir / "a/b/")), 1);
  EXPECT_EQ(RemoveDir(Text(dir / "a")), 1);
  EXPECT_FALSE(fs::exists(dir / "a"));
}

TEST(RemoveDir, KeepsTheErrorOfTheSystem) {
  const TempDir dir;
  const FailNthCall fault("rmdir", 1, EBUSY);
  EXPECT_EQ(RemoveDir(Text(dir.Path())), 0);
  EXPECT_EQ(errno, EBUSY);
}

TEST(Chdir, GoesToADirectory) {
  const TempDir dir;
  const WorkingDirectory here(".");
  errno = EXDEV;
  EXPECT_EQ(Chdir(Text(dir.Path())), 1);
  EXPECT_EQ(errno, EXDEV) << "success leaves it alone";
  EXPECT_TRUE(fs::equivalent(fs::current_path(), dir.Path()));
  const std::string file = dir.File("file", "");
  EXPECT_EQ(Chdir(Text(file)), 0);
  EXPECT_EQ(errno, ENOTDIR);
  EXPECT_EQ(Chdir(SString()), 0);
  EXPECT_EQ(errno, ENOENT);
  const FailNthCall fault("chdir", 1, EACCES);
  EXPECT_EQ(Chdir("/"), 0);
  EXPECT_EQ(errno, EACCES);
  EXPECT_TRUE(fs::equivalent(fs::current_path(), dir.Path()));
}

TEST(SyncDir, OpensSyncsAndCloses) {
  const TempDir dir;
  const int open = OpenDescriptors();
  const RecordCalls recorded;
  EXPECT_EQ(SyncDir(Text(dir.Path())), 1);
  EXPECT_EQ(recorded.Calls(), (std::vector<std::string>{"open", "fsync " + dir.Path(), "close"}));
  const std::pair<SString, int> rows[] = {
      {SString(), ENOENT}, {Text(dir / "x"), ENOENT}, {Text(dir.File("file", "")), ENOTDIR}};
  for (const auto& [path, error] : rows) {
    EXPECT_EQ(SyncDir(path), 0);
    EXPECT_EQ(errno, error);
  }
  for (const auto& [function, error] : {std::pair("open", EMFILE), {"fsync", EIO}}) {
    const FailNthCall fault(function, 1, error);
    EXPECT_EQ(SyncDir(Text(dir.Path())), 0);
    EXPECT_EQ(errno, error);
    EXPECT_TRUE(fault.Fired());
  }
  EXPECT_EQ(OpenDescriptors(), open);
}

}  // namespace
