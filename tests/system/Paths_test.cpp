#include "system/Paths.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <string>

#include "strings/SFixedString.h"
#include "support/CheckText.h"
#include "support/FailEachAllocation.h"
#include "support/FailNthCall.h"
#include "support/TempDir.h"

namespace {

struct Row {
  const char* name;
  const char* path;
  const char* file;
};

constexpr Row kRows[] = {
    {"a/b/c", "a/b", "c"}, {"c", ".", "c"},      {"a/b/", "a/b", ""}, {"/c", ".", "c"},
    {"/a/b", "/a", "b"},   {"/etc", ".", "etc"}, {"dir/", "dir", ""}, {"", ".", ""},
    {"/", ".", ""},        {"//c", "/", "c"},    {"a//c", "a/", "c"},
};

TEST(Paths, AreCutAtTheirLastSlash) {
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.name);
    CheckText(PathFromFilename(row.name), row.path);
    CheckText(FileFromFilename(row.name), row.file);
  }
}

TEST(Paths, OfAnUndefinedNameHaveADirectoryAndNoFile) {
  CheckText(PathFromFilename(SString()), ".");
  CheckUndefined(FileFromFilename(SString()));
}

TEST(Paths, KeepNuls) {
  CheckText(FileFromFilename(SString("a/b\0c", 5)), std::string_view("b\0c", 3));
}

TEST(Paths, OfAViewAreNoViews) {
  SString file, path, real, sum;
  {
    SFixedString view("name", 4);
    file = FileFromFilename(view);
    path = PathFromFilename(view);
    real = RealPath(view);
    sum = SString(view) + "";
  }  // would end the process if one of them shared the view
  EXPECT_EQ(file, "name");
  EXPECT_EQ(path, ".");
  EXPECT_EQ(real, "name");
  EXPECT_EQ(sum, "name");
}

TEST(RealPath, HasNoLinksAndNoDots) {
  const TempDir dir;
  const std::string real = std::filesystem::canonical(dir.Path()).string();
  dir.File("file", "");
  ASSERT_EQ(::symlink("file", (dir / "link").c_str()), 0);
  CheckText(RealPath(SString((dir / ".//./link").c_str())), real + "/file");
  CheckText(RealPath("/"), "/");
}

TEST(RealPath, OfWhatIsNotThereIsThePathItself) {
  const TempDir dir;
  const std::string missing = dir / "missing/../x";
  errno = 0;
  CheckText(RealPath(SString(missing.c_str())), missing);
  EXPECT_EQ(errno, ENOENT);
  CheckUndefined(RealPath(SString()));
  const SString endless('x', 100'000);
  EXPECT_EQ(RealPath(endless), endless);
  EXPECT_EQ(errno, ENAMETOOLONG);
  for (const int error : {EACCES, EIO, ELOOP, ENOMEM}) {
    const FailNthCall fault("realpath", 1, error);
    CheckText(RealPath("/."), "/.");
    EXPECT_EQ(errno, error);
    EXPECT_TRUE(fault.Fired());
  }
}

TEST(Paths, WithoutMemoryAreNotCut) {
  const SString name("a long name of a directory/a long name of a file");
  SString path, file;
  EXPECT_GE(FailEachAllocation(
                [&] {
                  path = PathFromFilename(name);
                  file = FileFromFilename(name);
                },
                [] {}),
            2);
  CheckText(path, "a long name of a directory");
  CheckText(file, "a long name of a file");
}

}  // namespace
