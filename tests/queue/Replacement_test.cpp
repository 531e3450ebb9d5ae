// A record that one process writes while others read it, and while it is killed.

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <new>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "queue/Queue.h"
#include "queue/SField.h"
#include "support/Files.h"
#include "support/Text.h"

namespace {

namespace fs = std::filesystem;

// Tests that write often do so in memory, where the system has a directory for that.
class InMemory {
 public:
  InMemory() {
    if (fs::is_directory("/dev/shm")) ::setenv(key_.Name(), "/dev/shm", 1);
  }

 private:
  EnvironmentKey key_{"TMPDIR"};
};

// A number that processes share.
class Shared {
 public:
  Shared()
      : at_(::mmap(nullptr, kSize, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0)) {
    if (at_ == MAP_FAILED) std::abort();
    new (at_) std::atomic<int>(0);
  }
  ~Shared() { ::munmap(at_, kSize); }
  Shared(const Shared&) = delete;
  Shared& operator=(const Shared&) = delete;

  std::atomic<int>& operator*() const { return *static_cast<std::atomic<int>*>(at_); }

 private:
  static constexpr std::size_t kSize = sizeof(std::atomic<int>);
  void* at_;
};

// Fills a record that tells its number on each of its lines, of which there are more or fewer.
void Fill(SField& record, int number) {
  record.Reset();
  record["Number:"] = SString(number);
  SStringList& lines = record["Line:"];
  lines.Reset();
  for (int i = 0; i < 1 + number % 7 * 50; ++i) lines.Push(SString(number));
}

// Returns the number of the record; -1 when it is not whole.
int NumberOf(const SField& record) {
  const int number = std::atoi(record.Get("Number:").Get(0).Data());
  SField expected(1, 0);
  Fill(expected, number);
  const bool whole =
      record.Keys() == expected.Keys() && record.Get("Line:") == expected.Get("Line:");
  return whole ? number : -1;
}

TEST(Replacement, ReadersSeeEveryRecordWhole) {
  constexpr int kTimes = 10'000, kReads = 100;
  constexpr int kMost = 1'000'000;  // where other work of the machine keeps the readers waiting
  const InMemory memory;
  const TempDir dir;
  const SString path = Text(dir / "record");
  SField record(1, 0);
  Fill(record, 0);
  ASSERT_EQ(record.Write(path), 1);
  const Shared done, reads;
  const auto readAll = [&] {
    int last = 0;
    while (*done == 0) {
      SField read(1, 0);
      if (!read.Read(path)) return false;
      const int number = NumberOf(read);
      if (number < last) return false;
      last = number;
      ++*reads;
    }
    return true;
  };
  Child reader(readAll), another(readAll);
  for (int i = 1; i <= kTimes || (*reads <= kReads && i <= kMost); ++i) {
    Fill(record, i);
    ASSERT_EQ(record.Write(), 1);
  }
  *done = 1;
  EXPECT_TRUE(reader.Succeeds());
  EXPECT_TRUE(another.Succeeds());
  EXPECT_GT(*reads, kReads) << "the readers had no turn";
  EXPECT_EQ(FilesBelow(dir.Path()), std::vector<std::string>{"record"});
}

TEST(Replacement, AWriterThatIsKilledLeavesTheOldRecordOrTheNew) {
  constexpr int kTimes = 500, kReplaced = 50, kLeftOver = 5;
  constexpr int kMost = 50'000;  // where other work of the machine keeps the writers waiting
  const InMemory memory;
  const TempDir dir;
  const SString path = Text(dir / "record");
  SField record(1, 0);
  Fill(record, 0);
  ASSERT_EQ(record.Write(path), 1);
  const Shared written;  // the number of the last record that was called written
  std::mt19937 random(20261105);
  std::uniform_int_distribution<int> delay(0, 1500);  // microseconds
  int leftOver = 0, replaced = 0;
  const auto enough = [&] { return replaced > kReplaced && leftOver > kLeftOver; };
  for (int turn = 0; turn < kTimes || (!enough() && turn < kMost); ++turn) {
    SCOPED_TRACE(turn);
    const int before = *written;
    {
      const Shared started;
      const Child writer([&] {
        *started = 1;
        SField mine(1, 0);
        mine.PutFilename(path);
        for (int number = before + 1;; ++number) {
          Fill(mine, number);
          while (!mine.Write()) {
          }
          *written = number;
        }
        return true;
      });
      while (*started == 0) std::this_thread::yield();
      std::this_thread::sleep_for(std::chrono::microseconds(delay(random)));
    }  // kills it
    if (*written > before) ++replaced;

    SField found(1, 0);
    ASSERT_EQ(found.Read(path), 1);
    const int number = NumberOf(found);
    ASSERT_TRUE(number == *written || number == *written + 1) << number << ' ' << *written;
    *written = number;

    if (!fs::exists(dir / "record.temp")) {
      ASSERT_EQ(FilesBelow(dir.Path()), std::vector<std::string>{"record"});
      continue;
    }
    ++leftOver;
    ASSERT_EQ(FilesBelow(dir.Path()), (std::vector<std::string>{"record", "record.temp"}));
    if (turn % 2 == 0) continue;  // the next writer finds it
    ASSERT_EQ(found.Write(), 0);
    ASSERT_EQ(errno, EEXIST);
    ASSERT_EQ(FilesBelow(dir.Path()), std::vector<std::string>{"record"});
    ASSERT_EQ(found.Write(), 1);
  }
  EXPECT_GT(replaced, kReplaced);
  EXPECT_GT(leftOver, kLeftOver) << "no writer was killed while it wrote";
}

}  // namespace
