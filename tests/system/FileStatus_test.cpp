#include "system/FileStatus.h"

#include <fcntl.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <ctime>
#include <filesystem>
#include <limits>

#include "support/Clock.h"
#include "support/OrdinaryUser.h"
#include "support/TempDir.h"
#include "support/Text.h"

// The file system, as long as a test has them stand in.
namespace {

const struct statvfs* statvfsStandIn = nullptr;
const struct stat* statStandIn = nullptr;

}  // namespace

extern "C" {

int __real_stat(const char* path, struct stat* out);
int __wrap_stat(const char* path, struct stat* out) {
  if (statStandIn == nullptr) return __real_stat(path, out);
  *out = *statStandIn;
  return 0;
}

int __real_statvfs(const char* path, struct statvfs* out);
int __wrap_statvfs(const char* path, struct statvfs* out) {
  if (statvfsStandIn == nullptr) return __real_statvfs(path, out);
  *out = *statvfsStandIn;
  return 0;
}

}  // extern "C"

namespace {

namespace fs = std::filesystem;

// All that can be asked about a path.
struct Answers {
  int exists, readable, writeable, executable, regular, directory, size;
};

void CheckAnswers(const SString& path, const Answers& expected) {
  EXPECT_EQ(FileExists(path), expected.exists);
  EXPECT_EQ(IsReadable(path), expected.readable);
  EXPECT_EQ(IsWriteable(path), expected.writeable);
  EXPECT_EQ(IsExecutable(path), expected.executable);
  EXPECT_EQ(IsRegular(path), expected.regular);
  EXPECT_EQ(IsDirectory(path), expected.directory);
  EXPECT_EQ(FileSize(path), expected.size);
}

// Checks that every query fails on the path, and leaves errno at `error`.
void CheckFailure(const SString& path, int error) {
  const auto failsWith = [&](double expected, auto query) {
    errno = 0;
    EXPECT_EQ(query(path), expected);
    EXPECT_EQ(errno, error);
  };
  for (int (*const query)(const SString&) :
       {FileExists, IsReadable, IsWriteable, IsExecutable, IsRegular, IsDirectory}) {
    failsWith(0, query);
  }
  failsWith(-1, FileSize);
  failsWith(-1.0, FileAge);
  failsWith(-1.0, FreeDiskSpace);
}

TEST(FileStatus, OfARegularFile) {
  const TempDir dir;
  const std::string path = dir.File("file", "12345");
  fs::permissions(path, fs::perms::owner_read | fs::perms::owner_write);
  CheckAnswers(Text(path), {1, 1, 1, 0, 1, 0, 5});
  fs::permissions(path, fs::perms::owner_all);
  CheckAnswers(Text(path), {1, 1, 1, 1, 1, 0, 5});
}

TEST(FileStatus, OfAnEmptyFileIsOfSizeZero) {
  const TempDir dir;
  EXPECT_EQ(FileSize(Text(dir.File("file", ""))), 0);
}

TEST(FileStatus, OfADirectoryHasNoSize) {
  const TempDir dir;
  errno = 0;
  CheckAnswers(Text(dir.Path()), {1, 1, 1, 1, 0, 1, -1});
  EXPECT_EQ(errno, 0) << "no call failed";
  EXPECT_GE(FreeDiskSpace(Text(dir.Path())), 0.0);
}

TEST(FileStatus, OfADeviceAndAPipeHasNoSize) {
  const TempDir dir;
  CheckAnswers("/dev/null", {1, 1, 1, 0, 0, 0, -1});
  ASSERT_EQ(::mkfifo((dir / "pipe").c_str(), 0600), 0);
  CheckAnswers(Text(dir / "pipe"), {1, 1, 1, 0, 0, 0, -1});
}

TEST(FileStatus, FollowsLinks) {
  const TempDir dir;
  dir.File("file", "123");
  fs::create_symlink("file", dir / "to file");
  fs::create_symlink(".", dir / "to directory");
  fs::create_symlink("missing", dir / "to nothing");
  EXPECT_EQ(FileSize(Text(dir / "to file")), 3);
  EXPECT_EQ(IsRegular(Text(dir / "to file")), 1);
  EXPECT_EQ(IsDirectory(Text(dir / "to directory")), 1);
  CheckFailure(Text(dir / "to nothing"), ENOENT);
}

TEST(FileStatus, OfWhatCannotBeReachedLeavesTheSystemsError) {
  const TempDir dir;
  dir.File("file", "");
  fs::create_symlink("loop", dir / "loop");
  struct Row {
    const char* name;
    SString path;
    int error;
  };
  const Row rows[] = {
      {"missing", Text(dir / "missing"), ENOENT},
      {"empty", "", ENOENT},
      {"undefined", SString(), ENOENT},
      {"through a file", Text(dir / "file/below"), ENOTDIR},
      {"a loop of links", Text(dir / "loop"), ELOOP},
      {"5000 bytes", SString('x', 5000), ENAMETOOLONG},
      {"5000 bytes of directories", Text("/" + std::string(5000, '/') + "x"), ENAMETOOLONG},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    CheckFailure(row.path, row.error);
  }
}

TEST(FileStatus, TakesAPathAsItStands) {
  const TempDir dir;
  for (const char* const name : {"two\nlines\n", " blanks ", "*", "~", "\xC8\xFF", "-x"}) {
    SCOPED_TRACE(name);
    EXPECT_EQ(FileSize(Text(dir / name)), -1);
    EXPECT_EQ(FileSize(Text(dir.File(name, "12"))), 2);
  }
}

TEST(FileStatus, ReadsAPathUpToItsFirstNul) {
  const TempDir dir;
  const SString path = Text(dir.File("file", "12"));
  EXPECT_EQ(FileSize(path + '\0' + "behind"), 2);
}

TEST(FileStatus, ReadsAPathThatEndsWithoutNul) {
  const TempDir dir;
  std::string text = dir.File("file", "12") + "behind";
  const int length = static_cast<int>(text.size() - 6);
  SStringRep view{text.data(), length, 1, length};
  const SString path(&view);
  CheckAnswers(path, {1, 1, 1, 0, 1, 0, 2});
  EXPECT_NE(FileAge(path), -1.0);
  EXPECT_GE(FreeDiskSpace(path), 0.0);
}

TEST(FileStatus, LeaksNoDescriptor) {
  const TempDir dir;
  const int before = OpenDescriptors();
  CheckAnswers(Text(dir.File("file", "1")), {1, 1, 1, 0, 1, 0, 1});
  CheckFailure(Text(dir / "missing"), ENOENT);
  EXPECT_EQ(OpenDescriptors(), before);
}

TEST(FileStatus, RightsAreThoseOfTheRealUser) {
  const TempDir dir;
  fs::permissions(dir.Path(), fs::perms::all);
  const std::string path = dir.File("file", "12");
  fs::permissions(path, fs::perms::none);
  EXPECT_TRUE(AsOrdinaryUser(
      [](const SString& file) {
        return FileExists(file) == 1 && IsReadable(file) == 0 && errno == EACCES &&
               IsWriteable(file) == 0 && IsExecutable(file) == 0 && FileSize(file) == 2;
      },
      Text(path)));
}

TEST(FileStatus, EachRightIsAskedForByItself) {
  const TempDir dir;
  fs::permissions(dir.Path(), fs::perms::all);
  const std::string path = dir.File("file", "12");
  if (::getuid() == 0) {
    ASSERT_EQ(::chown(path.c_str(), 65534, 65534), 0);
  }
  fs::permissions(path, fs::perms::owner_read);
  EXPECT_TRUE(AsOrdinaryUser(
      [](const SString& file) { return IsReadable(file) == 1 && IsWriteable(file) == 0; },
      Text(path)));
  fs::permissions(path, fs::perms::owner_write);
  EXPECT_TRUE(AsOrdinaryUser(
      [](const SString& file) { return IsReadable(file) == 0 && IsWriteable(file) == 1; },
      Text(path)));
}

TEST(FileStatus, RightsAreNotThoseOfTheEffectiveUser) {
  if (::getuid() != 0) GTEST_SKIP() << "only root can be one user and act as another";
  const TempDir dir;
  fs::permissions(dir.Path(), fs::perms::all);
  const std::string path = dir.File("file", "12");
  fs::permissions(path, fs::perms::owner_read);
  const pid_t child = ::fork();
  if (child == 0) ::_exit(::seteuid(65534) == 0 && IsReadable(Text(path)) == 1 ? 0 : 1);
  int status = -1;
  ::waitpid(child, &status, 0);
  EXPECT_EQ(status, 0) << "the real user, root, may read it";
}

TEST(FileStatus, TellsATypeByAllItsBits) {
  const TempDir dir;
  const int bound = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  sockaddr_un address = {};
  address.sun_family = AF_UNIX;
  (dir / "s").copy(address.sun_path, sizeof address.sun_path - 1);
  ASSERT_EQ(::bind(bound, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  ::close(bound);
  CheckAnswers(Text(dir / "s"), {1, 1, 1, ::access((dir / "s").c_str(), X_OK) == 0, 0, 0, -1});
  struct stat block = {};
  block.st_mode = S_IFBLK;
  statStandIn = &block;
  EXPECT_EQ(IsDirectory("any"), 0);
  EXPECT_EQ(IsRegular("any"), 0);
  statStandIn = nullptr;
}

TEST(FileStatus, LeavesTheErrorNumberAloneWhereNothingFails) {
  const TempDir dir;
  const SString file = Text(dir.File("file", "1")), directory = Text(dir.Path());
  errno = ENOTTY;
  EXPECT_EQ(FileExists(file) + IsReadable(file) + IsRegular(file) + FileSize(file), 4);
  EXPECT_EQ(IsDirectory(file) + IsRegular(directory) + FileSize(directory), -1);
  EXPECT_NE(FileAge(file), -1.0);
  EXPECT_NE(FreeDiskSpace(file), -1.0);
  EXPECT_EQ(errno, ENOTTY);
}

TEST(FileStatus, BehindAClosedDirectoryNothingIsKnown) {
  const TempDir dir;
  fs::permissions(dir.Path(), fs::perms::all);
  fs::create_directory(dir / "closed");
  dir.File("closed/file", "12");
  fs::permissions(dir / "closed", fs::perms::none);
  EXPECT_TRUE(AsOrdinaryUser(
      [](const SString& file) {
        CheckFailure(file, EACCES);
        return !testing::Test::HasFailure();
      },
      Text(dir / "closed/file")));
  fs::permissions(dir / "closed", fs::perms::owner_all);
}

TEST(FileSize, GoesUpToTheLargestInt) {
  const TempDir dir;
  EXPECT_EQ(FileSize(Text(dir.SparseFile("largest", INT_MAX))), INT_MAX);
}

TEST(FileSize, OfMoreIsAnOverflow) {
  const TempDir dir;
  for (const long size : {1L << 31, (1L << 32) - 1, 1L << 32, (1L << 32) + 5, 3'000'000'000L}) {
    SCOPED_TRACE(size);
    const SString path = Text(dir.SparseFile("large", size));
    errno = 0;
    EXPECT_EQ(FileSize(path), -1);
    EXPECT_EQ(errno, EOVERFLOW);
    EXPECT_EQ(IsRegular(path), 1);
  }
}

// The age of a file of this modification time at this time.
double AgeAt(std::time_t now, std::time_t modified) {
  const TempDir dir;
  const std::string path = dir.File("file", "");
  const timespec times[] = {{0, UTIME_OMIT}, {modified, 999'999'999}};
  EXPECT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
  clockStandIn = now;
  const double age = FileAge(Text(path));
  clockStandIn.reset();
  return age;
}

TEST(FileAge, IsInDaysOfWholeSeconds) {
  constexpr std::time_t kNow = 1'800'000'000;
  EXPECT_EQ(AgeAt(kNow, kNow), 0.0);
  EXPECT_EQ(AgeAt(kNow, kNow - 36 * 3600), 1.5);
  EXPECT_EQ(AgeAt(kNow, kNow - 1), 1 / 86400.0);
  EXPECT_EQ(AgeAt(kNow, kNow + 86400), -1.0) << "from tomorrow";
  EXPECT_EQ(AgeAt(kNow, 0), 1'800'000'000 / 86400.0);
}

TEST(FileAge, OfAnyTimeAtAllIsFinite) {
  struct stat file = {};
  statStandIn = &file;
  clockStandIn = 1'800'000'000;
  for (const std::time_t modified :
       {std::numeric_limits<std::time_t>::max(), std::numeric_limits<std::time_t>::min(),
        std::time_t{-1} << 40}) {
    file.st_mtime = modified;
    EXPECT_EQ(FileAge("any"), (1.8e9 - static_cast<double>(modified)) / 86400.0);
  }
  statStandIn = nullptr;
  clockStandIn.reset();
}

TEST(FileAge, OfADirectoryIsKnown) {
  const TempDir dir;
  EXPECT_NEAR(FileAge(Text(dir.Path())), 0.0, 0.5);
}

double FreeOf(unsigned long fragment, fsblkcnt_t available) {
  struct statvfs system = {};
  system.f_bsize = 7;  // not what counts
  system.f_bfree = available + 1000;
  system.f_frsize = fragment;
  system.f_bavail = available;
  statvfsStandIn = &system;
  const double free = FreeDiskSpace("any");
  statvfsStandIn = nullptr;
  return free;
}

TEST(FreeDiskSpace, IsWhatAnUnprivilegedUserMayFill) {
  EXPECT_EQ(FreeOf(1, 0), 0.0);
  EXPECT_EQ(FreeOf(512, 3), 1536.0);
  EXPECT_EQ(FreeOf(4096, 1'000'000'000), 4096e9);
}

TEST(FreeDiskSpace, IsNotCutAtThirtyTwoBits) {
  EXPECT_EQ(FreeOf(1, fsblkcnt_t{1} << 31), 2147483648.0);
  EXPECT_EQ(FreeOf(4096, fsblkcnt_t{1} << 31), 4096 * 2147483648.0);
  EXPECT_EQ(FreeOf(4096, fsblkcnt_t{1} << 32), 4096 * 4294967296.0);
  EXPECT_EQ(FreeOf(1UL << 31, 2), 4294967296.0);
  EXPECT_EQ(FreeOf(1UL << 32, 3), 12884901888.0);
  EXPECT_EQ(FreeOf(1UL << 32, fsblkcnt_t{1} << 40), 4294967296.0 * 1099511627776.0);
}

TEST(FreeDiskSpace, OfAFileIsThatOfItsFileSystem) {
  const TempDir dir;
  struct statvfs system;
  ASSERT_EQ(::__real_statvfs(dir.Path().c_str(), &system), 0);
  statvfsStandIn = nullptr;
  const double expected =
      static_cast<double>(system.f_frsize) * static_cast<double>(system.f_bavail);
  EXPECT_NEAR(FreeDiskSpace(Text(dir.File("file", "1"))), expected, 1e9) << "others write too";
}

}  // namespace
