// The command as a process: with stand-ins for the file system's answers, and on real
// file systems.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <random>
#include <span>
#include <sstream>

#include "support/CFormat.h"
#include "support/Process.h"
#include "support/TempDir.h"

namespace {

namespace fs = std::filesystem;

Outcome DiskFree(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), DISKFREE);
  return RunCommand({.words = arguments, .environment = {}});
}

void CheckOutcome(const Outcome& got, const std::string& out, int status) {
  EXPECT_EQ(got.out, out);
  EXPECT_EQ(got.error, "");
  EXPECT_EQ(got.status, status);
}

// A command that runs diskFree on scripted answers; stat_stand_in.cpp tells how they are
// written. The stand-in is preloaded by its name in the folder it is in: the dynamic linker
// would cut a path at a blank.
Command OnScript(const std::string& sizes, const std::string& free) {
  const fs::path standIn(STAT_STAND_IN);
  return {{DISKFREE, "the file"},
          {"LD_PRELOAD=./" + standIn.filename().string(), "STAND_IN_SIZES=" + sizes,
           "STAND_IN_FREE=" + free, "ASAN_OPTIONS=verify_asan_link_order=0"},
          [=] { fs::current_path(standIn.parent_path()); }};
}

Outcome OnAnswers(const std::string& sizes, const std::string& free) {
  return RunCommand(OnScript(sizes, free));
}

struct Row {
  const char* name;
  const char* sizes;
  const char* free;
  const char* line;
  int status;
};

void CheckRows(std::span<const Row> rows) {
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    CheckOutcome(OnAnswers(row.sizes, row.free), row.line, row.status);
  }
}

TEST(DiskFree, PrintsTheShortfallAndExitsWithTheVerdict) {
  constexpr Row kRows[] = {
      {"room enough", "1500", "1*1000000000", "-999997\n", 0},
      {"six digits", "1500", "1*10000000000", "-1e+07\n", 0},
      {"too little", "600000000", "1*1000000000", "200000\n", 1},
      {"exactly enough", "1000", "1*2000", "0\n", 0},
      {"one byte missing", "1000", "1*1999", "0.001\n", 1},
      {"one byte to spare", "1000", "1*2001", "-0.001\n", 0},
      {"half", "1000", "1*1000", "1\n", 1},
      {"nothing free", "1000", "1*0", "2\n", 1},
      {"empty file, full disk", "0", "1*0", "0\n", 0},
      {"fragments", "1000", "512*4", "-0.048\n", 0},
      {"both unknown", "-", "-", "-0.001\n", 0},
      {"size unknown", "-", "1*1000", "-1.002\n", 0},
      {"free unknown", "1000", "-", "2.001\n", 1},
      {"empty file, free unknown", "0", "-", "0.001\n", 1},
      {"directory", "d", "1*1000", "-1.002\n", 0},
      {"directory, free unknown", "d", "-", "-0.001\n", 0},
  };
  CheckRows(kRows);
}

TEST(DiskFree, DoublesTheSizeInThirtyTwoBits) {
  constexpr Row kRows[] = {
      {"wraps", "1200000000", "1*1000000000", "-2.89497e+06\n", 0},
      {"last that does not", "1073741823", "1*1000000000", "1.14748e+06\n", 1},
      {"first that does", "1073741824", "1*1000000000", "-3.14748e+06\n", 0},
      {"largest", "2147483647", "1*0", "-0.002\n", 0},
      {"too large for an answer", "2147483648", "1*0", "-0.002\n", 0},
      {"far too large", "5000000000", "1*0", "-0.002\n", 0},
  };
  CheckRows(kRows);
}

TEST(DiskFree, SeesLargeFileSystemsWhole) {
  constexpr Row kRows[] = {
      {"2^30 blocks", "1000000000", "4096*1073741824", "-4.39605e+09\n", 0},
      {"2^31 blocks", "1000000000", "4096*2147483648", "-8.79409e+09\n", 0},
      {"2^32 blocks", "1000000000", "4096*4294967296", "-1.75902e+10\n", 0},
      {"2^32 blocks of one byte", "1000000000", "1*4294967296", "-2.29497e+06\n", 0},
      {"2^32 + 1 blocks of one byte", "1", "1*4294967297", "-4.29497e+06\n", 0},
  };
  CheckRows(kRows);
}

TEST(DiskFree, JudgesBySecondAnswers) {
  constexpr Row kRows[] = {
      {"the disk fills", "1000", "1*5000 1*1999", "-3\n", 1},
      {"the disk empties", "1000", "1*1000 1*2000", "1\n", 0},
      {"the file grows", "1000 3000", "1*5000", "-3\n", 1},
      {"the file shrinks", "3000 1000", "1*5000", "1\n", 0},
      {"the file goes", "3000 -", "1*5000", "1\n", 0},
      {"the file comes", "- 3000", "1*5000", "-5.002\n", 1},
      {"the file system goes", "1000", "1*5000 -", "-3\n", 1},
  };
  CheckRows(kRows);
}

TEST(DiskFree, AsksInOrderAndAboutThePathItself) {
  const TempDir dir;
  Command command = OnScript("1000", "1*2000");
  command.environment.push_back("STAND_IN_LOG=" + (dir / "log"));
  const auto enter = command.inChild;
  command.inChild = [&] {  // the line goes to the log as well, and shows its place
    enter();
    ::dup2(::open((dir / "log").c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600),
           STDOUT_FILENO);
  };
  EXPECT_EQ(RunCommand(command).status, 0);
  std::ostringstream log;
  log << std::ifstream(dir / "log").rdbuf();
  EXPECT_EQ(log.str(),
            "tzset()\n"  // the library's modules have started, once
            "stat(the file)\nstatvfs(the file)\n"
            "0\n"
            "statvfs(the file)\nstat(the file)\n");
}

TEST(DiskFree, PrintsWhatTheCFormatGives) {
  std::mt19937_64 random(7);
  for (int i = 0; i < 200; ++i) {
    const auto size = static_cast<int>(random() & INT_MAX);
    const std::uint64_t free = random() >> random() % 64;
    const double shortfall =
        (static_cast<double>(static_cast<int>(static_cast<unsigned>(size) << 1)) -
         static_cast<double>(free)) /
        1000.0;
    CheckOutcome(OnAnswers(std::to_string(size), "1*" + std::to_string(free)),
                 CFormat("%g\n", shortfall), shortfall > 0 ? 1 : 0);
  }
}

TEST(DiskFree, TakesNoOptionAndNoSecondArgument) {
  const TempDir dir;
  for (const char* const word : {"--help", "-h", "--version", "--", "-", "*", "~"}) {
    SCOPED_TRACE(word);
    CheckOutcome(RunCommand({.words = {DISKFREE, word},
                             .environment = {},
                             .inChild = [&] { fs::current_path(dir.Path()); }}),
                 "-0.001\n", 0);
  }
  CheckOutcome(DiskFree({dir / "missing", dir.File("file", "12"), "more"}), "-0.001\n", 0);
}

TEST(DiskFree, RunsWithoutEvenItsOwnName) {
  const TempDir dir;
  CheckOutcome(RunCommand({.words = {DISKFREE},
                           .environment = {"A=" + dir.File("file", "1")},
                           .inChild =
                               [] {
                                 char* none[] = {nullptr};
                                 ::execv(DISKFREE, none);
                               }}),
               "-0.001\n", 0);
}

TEST(DiskFree, CountsWhatCannotBeExaminedAsMinusOne) {
  const TempDir dir;
  CheckOutcome(DiskFree({}), "-0.001\n", 0);
  CheckOutcome(DiskFree({""}), "-0.001\n", 0);
  CheckOutcome(DiskFree({dir / "missing"}), "-0.001\n", 0);
  CheckOutcome(DiskFree({dir.File("file", "") + "/below"}), "-0.001\n", 0);
  CheckOutcome(DiskFree({dir / std::string(5000, 'x')}), "-0.001\n", 0);
}

TEST(DiskFree, TakesAPathWithNewlines) {
  const TempDir dir;
  const Outcome got = DiskFree({dir.File("\na\n\nfile\n", "12")});
  EXPECT_EQ(std::count(got.out.begin(), got.out.end(), '\n'), 1);
  EXPECT_LT(std::stod(got.out), 0);
  EXPECT_EQ(got.status, 0);
  EXPECT_EQ(got.error, "");
}

TEST(DiskFree, ReadsNothingFromStandardInput) {
  const TempDir dir;
  CheckOutcome(RunCommand({.words = {DISKFREE, dir / "missing"},
                           .environment = {},
                           .inChild = [] { ::close(STDIN_FILENO); }}),
               "-0.001\n", 0);
}

// --- Output that goes nowhere -------------------------------------------------------

// Runs diskFree on a shortfall, with standard output spoilt: the verdict stands.
void CheckVerdictStands(const std::function<void()>& spoil) {
  Command command = OnScript("1000", "1*0");
  const auto enter = command.inChild;
  command.inChild = [&] {
    enter();
    spoil();
  };
  const Outcome got = RunCommand(command);
  EXPECT_EQ(got.status, 1);
  EXPECT_EQ(got.signal, 0);
  EXPECT_EQ(got.error, "");
}

TEST(DiskFree, KeepsItsVerdictWhenStandardOutputIsFull) {
  CheckVerdictStands([] { ::dup2(::open("/dev/full", O_WRONLY | O_CLOEXEC), STDOUT_FILENO); });
}

TEST(DiskFree, KeepsItsVerdictWhenStandardOutputIsClosed) {
  CheckVerdictStands([] { ::close(STDOUT_FILENO); });
}

TEST(DiskFree, KeepsItsVerdictWhenNobodyReadsIt) {
  CheckVerdictStands([] {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0) ::_exit(127);
    ::dup2(ends[1], STDOUT_FILENO);
    ::close(ends[0]);
    std::signal(SIGPIPE, SIG_DFL);
  });
}

// --- Real file systems --------------------------------------------------------------

std::string ExpectedLine(const std::string& path) {
  struct stat status = {};
  struct statvfs system = {};
  const bool known = ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
  EXPECT_EQ(::statvfs(path.c_str(), &system), 0);
  const double size = known ? static_cast<double>(status.st_size) : -1.0;
  const double free = static_cast<double>(system.f_frsize) * static_cast<double>(system.f_bavail);
  return CFormat("%g\n", (2 * size - free) / 1000.0);
}

// A memory file system of the test's own, seen by this process and its children only.
class SmallFileSystem {
 public:
  explicit SmallFileSystem(const char* options) {
    mounted_ = ::unshare(CLONE_NEWNS) == 0 &&
               ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
               ::mount("tmpfs", dir_.Path().c_str(), "tmpfs", 0, options) == 0;
  }
  ~SmallFileSystem() {
    if (mounted_) ::umount(dir_.Path().c_str());
  }
  SmallFileSystem(const SmallFileSystem&) = delete;
  SmallFileSystem& operator=(const SmallFileSystem&) = delete;

  [[nodiscard]] bool Mounted() const { return mounted_; }
  [[nodiscard]] const TempDir& Dir() const { return dir_; }

 private:
  TempDir dir_;
  bool mounted_;
};

TEST(DiskFreeOnTmpfs, JudgesFilesOfAllSizes) {
  const SmallFileSystem small("size=1m");
  if (!small.Mounted()) GTEST_SKIP() << "may not mount: 4 cases on a small file system unseen";
  struct Size {
    std::size_t bytes;
    int status;
  };
  constexpr std::size_t kThird = 349'525;  // of the whole: free is then twice the file
  constexpr std::size_t kPages = 1 << 16;  // as large as they come
  constexpr Size kSizes[] = {
      {0, 0}, {kThird - kPages, 0}, {kThird + kPages, 1}, {(1 << 20) - kPages, 1}};
  for (const Size& size : kSizes) {
    SCOPED_TRACE(size.bytes);
    const std::string path = small.Dir().File("file", std::string(size.bytes, 'x'));
    CheckOutcome(DiskFree({path}), ExpectedLine(path), size.status);
    fs::remove(path);
  }
}

TEST(DiskFreeOnTmpfs, SeesAFullFileSystem) {
  const SmallFileSystem small("size=64k");
  if (!small.Mounted()) GTEST_SKIP() << "may not mount: 2 cases on a full file system unseen";
  const std::string one = small.Dir().File("one", "1");
  small.Dir().File("rest", std::string(60 * 1024, 'x'));
  CheckOutcome(DiskFree({one}), "0.002\n", 1);
  CheckOutcome(DiskFree({small.Dir().File("empty", "")}), "0\n", 0);
}

TEST(DiskFreeOnTmpfs, CountsADirectoryAsUnknownSize) {
  const SmallFileSystem small("size=1m");
  if (!small.Mounted()) GTEST_SKIP() << "may not mount: 2 cases of directories unseen";
  CheckOutcome(DiskFree({small.Dir().Path()}), "-1048.58\n", 0);
  fs::permissions(small.Dir().Path(), fs::perms::none);  // nobody may read it
  CheckOutcome(DiskFree({small.Dir().Path()}), "-1048.58\n", 0);
}

TEST(DiskFreeOnTmpfs, WrapsTheSizeOfASparseFile) {
  const SmallFileSystem small("size=1m");
  if (!small.Mounted()) GTEST_SKIP() << "may not mount: 2 cases of sparse files unseen";
  // Twice 1.2e9 is -1894967296 in 32 bits; 2^31 is no size that the answer can hold.
  CheckOutcome(DiskFree({small.Dir().SparseFile("wraps", 1'200'000'000)}), "-1.89602e+06\n", 0);
  CheckOutcome(DiskFree({small.Dir().SparseFile("too large", 1L << 31)}), "-1048.58\n", 0);
}

}  // namespace
