#include "queue/SField.h"

#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "support/CheckText.h"
#include "support/EnvironmentKey.h"
#include "support/FailEachAllocation.h"
#include "support/FailNthCall.h"
#include "support/Files.h"
#include "support/OrdinaryUser.h"
#include "support/TempDir.h"
#include "support/Text.h"

namespace {

namespace fs = std::filesystem;

using Files = std::vector<std::string>;

constexpr char kNew[] = "Trace: a\nTrace: b\n";

// Returns a record of kNew that belongs to the file.
SField NewRecord(const std::string& path) {
  SField record(1, 0);
  record.PutFilename(Text(path));
  record["Trace:"] = {"a", "b"};
  return record;
}

TEST(SField, HasNoFileAtFirst) {
  SField record(1, 0);
  EXPECT_EQ(record.GetFilename(), "");
  EXPECT_EQ(record.Error(), 0);
  EXPECT_EQ(record.Loaded(), 0);
  EXPECT_FALSE(record.Keys().Defined());
  EXPECT_EQ(record.CaseSensitive(), 1u);
  EXPECT_EQ(record.Crlf(), 0u);
  EXPECT_EQ(SField(0, 1).CaseSensitive(), 0u);
  EXPECT_EQ(SField(0, 1).Crlf(), 1u);
}

TEST(SField, WithoutAFileIsNeitherReadNorWritten) {
  SField record(1, 0);
  record["A:"] = "1";
  EXPECT_EQ(record.Write(), 0);
  EXPECT_EQ(errno, ENOENT);
  EXPECT_EQ(record.Error(), -11);
  errno = 0;
  EXPECT_EQ(record.Read(), 0);
  EXPECT_EQ(errno, ENOENT);
  EXPECT_EQ(record.Error(), 0);
  EXPECT_EQ(record.Write(SString()), 0);
  EXPECT_EQ(record.Error(), -11);
  EXPECT_EQ(record.Read(SString("")), 0);
  EXPECT_EQ(record.Error(), 0);
  EXPECT_EQ(record.Loaded(), 0);
  EXPECT_EQ(record.Get("A:").Count(), 1);
}

TEST(SField, AnErrorLastsUntilItIsRead) {
  const TempDir dir;
  SField record(1, 0);
  EXPECT_EQ(record.Write(), 0);
  EXPECT_EQ(record.Write(Text(dir / "record")), 1);
  EXPECT_EQ(record.Error(), -11);
  EXPECT_EQ(record.Read(), 1);
  EXPECT_EQ(record.Error(), 0);
}

TEST(SField, WritesWhatItReads) {
  const TempDir dir;
  const NoDescriptorLeft check;
  SField record = NewRecord(dir / "record");
  EXPECT_EQ(record.Write(), 1);
  EXPECT_EQ(record.Loaded(), 1);
  EXPECT_EQ(ReadText(dir / "record"), kNew);
  EXPECT_EQ(FilesBelow(dir.Path()), Files{"record"});

  SField again(1, 0);
  again["Old:"] = "1";
  EXPECT_EQ(again.Read(Text(dir / "record")), 1);
  EXPECT_EQ(again.Loaded(), 1);
  EXPECT_EQ(again.GetFilename(), Text(dir / "record"));
  EXPECT_EQ(again.Keys(), SStringList("Trace:"));
  EXPECT_EQ(again.Get("Trace:"), (SStringList{"a", "b"}));
  EXPECT_EQ(again.Write(Text(dir / "copy")), 1);
  EXPECT_EQ(again.GetFilename(), Text(dir / "copy"));
  EXPECT_EQ(ReadText(dir / "copy"), kNew);
}

TEST(SField, KeepsItsLineEndAndItsCase) {
  const TempDir dir;
  SField record(0, 1);
  record["A:"] = "1";
  record["a:"].Push("2");
  EXPECT_EQ(record.Write(Text(dir / "record")), 1);
  EXPECT_EQ(ReadText(dir / "record"), "A: 1\r\nA: 2\r\n");
  SField again(1, 0);
  EXPECT_EQ(again.Read(Text(dir / "record")), 1);
  EXPECT_EQ(again.Get("A:"), (SStringList{"1\r", "2\r"}));
}

TEST(SField, WithoutFieldsIsAnEmptyFile) {
  const TempDir dir;
  SField record(1, 0);
  EXPECT_EQ(record.Write(Text(dir / "record")), 1);
  EXPECT_EQ(ReadText(dir / "record"), "");
  record["A:"] = "1";
  EXPECT_EQ(record.Read(), 1);
  EXPECT_FALSE(record.Keys().Defined());
}

TEST(SField, ReplacesTheFileAsAWhole) {
  const TempDir dir;
  const std::string path = dir.File("record", std::string(100'000, 'x'));
  ASSERT_EQ(::link(path.c_str(), (dir / "other").c_str()), 0);
  EXPECT_EQ(NewRecord(path).Write(), 1);
  EXPECT_EQ(ReadText(path), kNew);
  EXPECT_EQ(ReadText(dir / "other").size(), 100'000u) << "another file took the name";
}

TEST(SField, AnAssignmentTakesTheListTheNameAndWhetherItWasLoaded) {
  const TempDir dir;
  SField record = NewRecord(dir / "record");
  ASSERT_EQ(record.Write(), 1);
  SField other(1, 0);
  ASSERT_EQ(other.Write(), 0);
  other = record;
  EXPECT_EQ(other.GetFilename(), Text(dir / "record"));
  EXPECT_EQ(other.Loaded(), 1);
  EXPECT_EQ(other.Error(), -11) << "its own";
  EXPECT_EQ(other.Get("Trace:"), (SStringList{"a", "b"}));
  other["Trace:"].Push("c");
  EXPECT_EQ(record.Get("Trace:").Count(), 2);
  const SField& self = other;
  other = self;
  EXPECT_EQ(other.Get("Trace:").Count(), 3);
  const SField copy(other);
  EXPECT_EQ(copy.Get("Trace:").Count(), 3);
  EXPECT_EQ(copy.Error(), -11);
}

// A record that counts the calls of its own Read and Write.
class Counting : public SField {
 public:
  Counting() : SNamedStringList(1, 0), SField(1, 0) {}
  using SField::Read;
  using SField::Write;
  int Read() override { return ++reads; }
  int Write() override { return ++writes; }
  int reads = 10, writes = 20;
};

TEST(SField, ReadsAndWritesANamedFileAsTheDerivedClassDoes) {
  Counting record;
  SField& field = record;
  EXPECT_EQ(field.Read("a"), 11);
  EXPECT_EQ(field.GetFilename(), "a");
  EXPECT_EQ(field.Write("b"), 21);
  EXPECT_EQ(field.GetFilename(), "b");
  field.UnlockFile();
}

// Checks that reading fails with `error` and changes nothing.
void CheckUnreadable(const SString& path, int error) {
  SCOPED_TRACE(path.View());
  const NoDescriptorLeft check;
  SField record(1, 0);
  record["A:"] = "1";
  static_cast<void>(record.Write());
  errno = 0;
  EXPECT_EQ(record.Read(path), 0);
  EXPECT_EQ(errno, error);
  EXPECT_EQ(record.Error(), 0);
  EXPECT_EQ(record.Loaded(), 0);
  EXPECT_EQ(record.Get("A:"), SStringList("1"));
}

TEST(SField, WhatIsNoFileIsNotRead) {
  const TempDir dir;
  ASSERT_EQ(::mkfifo((dir / "pipe").c_str(), 0600), 0);
  CheckUnreadable(Text(dir / "missing"), ENOENT);
  CheckUnreadable(Text(dir.Path()), EISDIR);
  CheckUnreadable(Text(dir / "pipe"), EINVAL);
  CheckUnreadable("/dev/null", EINVAL);
  CheckUnreadable(Text(dir / std::string(300, 'x')), ENAMETOOLONG);
  for (const auto& [function, error] : {std::pair("open", EMFILE), {"fstat", EIO}, {"read", EIO}}) {
    const FailNthCall fault(function, 1, error);
    CheckUnreadable(Text(dir.File("file", "A: 2\n")), error);
    EXPECT_TRUE(fault.Fired());
  }
}

TEST(SField, ReadsAnyBytes) {
  const TempDir dir;
  std::string bytes;
  for (int i = 0; i < 10'000; ++i) bytes += static_cast<char>(i * 7919 >> 3);
  SField record(1, 0);
  EXPECT_EQ(record.Read(Text(dir.File("garbage", bytes))), 1);
  EXPECT_EQ(record.Write(Text(dir / "again")), 1);
  SField again(1, 0);
  EXPECT_EQ(again.Read(Text(dir / "again")), 1);
  EXPECT_EQ(again.Keys(), record.Keys());

  const std::string line = "Field: " + std::string(43, 'x') + "\n";
  std::string large;
  for (int i = 0; i < 1'000'000; ++i) large += line;
  EXPECT_EQ(record.Read(Text(dir.File("large", large))), 1);
  EXPECT_EQ(record.Get("Field:").Count(), 1'000'000);
}

// Checks that writing fails with `error`, and what files are there afterwards.
void CheckUnwritable(const TempDir& dir, SField& record, int error, const Files& left) {
  const NoDescriptorLeft check;
  errno = 0;
  EXPECT_EQ(record.Write(), 0);
  EXPECT_EQ(errno, error);
  EXPECT_EQ(record.Error(), 0);
  EXPECT_EQ(record.Loaded(), 0);
  EXPECT_EQ(FilesBelow(dir.Path()), left);
}

TEST(SField, RemovesAnOldTemporaryFileAndFails) {
  const TempDir dir;
  SField record = NewRecord(dir.File("record", "old"));
  dir.File("record.temp", "half");
  CheckUnwritable(dir, record, EEXIST, {"record"});
  EXPECT_EQ(ReadText(dir / "record"), "old");
  EXPECT_EQ(record.Write(), 1) << "the next time";
  EXPECT_EQ(ReadText(dir / "record"), kNew);
}

TEST(SField, ADirectoryInTheWayOfTheTemporaryFileStays) {
  const TempDir dir;
  SField record = NewRecord(dir.File("record", "old"));
  fs::create_directory(dir / "record.temp");
  CheckUnwritable(dir, record, EEXIST, {"record"});
  EXPECT_TRUE(fs::is_directory(dir / "record.temp"));
}

TEST(SField, IsNotWrittenWhereItCannotBe) {
  const TempDir dir;
  fs::create_directory(dir / "d");
  dir.File("file", "");
  struct Row {
    std::string path;
    int error;
  };
  const Row rows[] = {{dir / "missing/record", ENOENT},
                      {dir / "file/record", ENOTDIR},
                      {dir / "d", EISDIR},
                      {dir / std::string(251, 'x'), ENAMETOOLONG}};  // with .temp 256
  for (const Row& row : rows) {
    SCOPED_TRACE(row.path);
    SField record = NewRecord(row.path);
    CheckUnwritable(dir, record, row.error, {"file"});
  }
  EXPECT_EQ(NewRecord(dir / std::string(250, 'x')).Write(), 1);
}

TEST(SField, ANameWithANulIsRefused) {
  const TempDir dir;
  dir.File("record", "old");
  SField record = NewRecord((dir / "record") + std::string("\0x", 2));
  CheckUnwritable(dir, record, EINVAL, {"record"});
  EXPECT_EQ(ReadText(dir / "record"), "old");
}

TEST(SField, IsNotWrittenToAFullDisk) {
  const TempDir dir;
  if (::mount("none", dir.Path().c_str(), "tmpfs", 0, "size=64k") != 0) {
    GTEST_SKIP() << "only root mounts a small disk";
  }
  SField record = NewRecord(dir.File("record", "old"));
  record["Large:"] = SString('x', 200'000);
  CheckUnwritable(dir, record, ENOSPC, {"record"});
  EXPECT_EQ(ReadText(dir / "record"), "old");
  EXPECT_EQ(::umount2(dir.Path().c_str(), MNT_DETACH), 0);
}

TEST(SField, IsNotWrittenToAReadOnlyDirectory) {
  const TempDir dir;
  fs::permissions(dir.Path(), fs::perms(0555));
  EXPECT_TRUE(AsOrdinaryUser(
      [](const SString& path) {
        SField record(1, 0);
        return !record.Write(path) && errno == EACCES;
      },
      Text(dir / "record")));
  fs::permissions(dir.Path(), fs::perms::owner_all);
}

TEST(SField, IsWrittenInAnyDirectory) {
  const TempDir dir;
  const fs::path before = fs::current_path();
  fs::current_path(dir.Path());
  for (const char* const path : {"record", "./other"}) {
    const RecordCalls recorded;
    ASSERT_EQ(NewRecord(path).Write(), 1);
    EXPECT_EQ(recorded.Calls().end()[-2], "fsync " + dir.Path());
  }
  fs::current_path(before);
  EXPECT_EQ(FilesBelow(dir.Path()), (Files{"other", "record"}));
}

TEST(SField, EveryCallOfAWriteMayFail) {
  for (int n = 1;; ++n) {
    SCOPED_TRACE(n);
    const TempDir dir;
    const NoDescriptorLeft check;
    SField record = NewRecord(dir.File("record", "old"));
    FailNthCall fault("", n, EIO);
    errno = 0;
    const int ok = record.Write();
    const int error = errno;
    const std::string text = ReadText(dir / "record");
    EXPECT_EQ(record.Loaded(), ok);
    EXPECT_EQ(text, ok ? kNew : "old");
    EXPECT_EQ(FilesBelow(dir.Path()), Files{"record"});
    if (!fault.Fired()) {
      EXPECT_EQ(ok, 1);
      EXPECT_GT(n, 10);  // open, ftruncate, posix_fallocate, mmap, msync, munmap, close, rename ...
      break;
    }
    if (!ok) {
      EXPECT_EQ(error, EIO);
    }
  }
}

TEST(SField, FailsWithEachCallThatCounts) {
  struct Row {
    const char* function;
    int n;
    int ok;
  };
  constexpr Row kRows[] = {{"open", 1, 0},   {"ftruncate", 1, 0}, {"posix_fallocate", 1, 0},
                           {"mmap", 1, 0},   {"msync", 1, 0},     {"munmap", 1, 0},
                           {"rename", 1, 0}, {"close", 1, 1},     {"open", 2, 1},
                           {"fsync", 1, 1},  {"close", 2, 1}};
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.function);
    const TempDir dir;
    SField record = NewRecord(dir.File("record", "old"));
    const FailNthCall fault(row.function, row.n, ENOSPC);
    errno = ENOTTY;
    EXPECT_EQ(record.Write(), row.ok);
    EXPECT_EQ(errno, row.ok ? ENOTTY : ENOSPC);
    EXPECT_TRUE(fault.Fired());
  }
}

TEST(SField, PutsTheBytesOnTheDiskThenRenamesThenSyncsTheDirectory) {
  const TempDir dir;
  const std::string path = dir / "record";
  SField record = NewRecord(path);
  const RecordCalls recorded;
  ASSERT_EQ(record.Write(), 1);
  EXPECT_EQ(recorded.Calls(),
            (Files{"open", "ftruncate", "posix_fallocate", "mmap", "msync", "munmap", "close",
                   "rename " + path + ".temp " + path, "open", "fsync " + dir.Path(), "close"}));
}

TEST(SField, ARecordAtTheRootSyncsTheRoot) {
  if (::getuid() != 0) GTEST_SKIP() << "only root writes there";
  const std::string path = "/mailhearth-test-" + std::to_string(::getpid());
  const RecordCalls recorded;
  ASSERT_EQ(NewRecord(path).Write(), 1);
  EXPECT_EQ(recorded.Calls().end()[-2], "fsync /");
  ::unlink(path.c_str());
}

TEST(SField, WithoutMemoryNothingIsWrittenAndNothingLeft) {
  const TempDir dir;
  const std::string path = dir.File("record", "old");
  const int failed = FailEachAllocation([&] { return NewRecord(path); },
                                        [](SField& record) { EXPECT_EQ(record.Write(), 1); },
                                        [&](const SField& record) {
                                          EXPECT_EQ(FilesBelow(dir.Path()), Files{"record"});
                                          EXPECT_EQ(ReadText(path), "old");
                                          EXPECT_EQ(record.Get("Trace:"), (SStringList{"a", "b"}));
                                        });
  EXPECT_GT(failed, 2);
  EXPECT_EQ(FilesBelow(dir.Path()), Files{"record"});
  EXPECT_EQ(ReadText(path), kNew);
}

// The file's bytes come first: without memory for them, nothing is read. Without memory for the
// list, a part of them is in it.
TEST(SField, WithoutMemoryNothingOfAReadIsLeftOpen) {
  const TempDir dir;
  const SString path = Text(dir.File("record", kNew));
  int thrown = 0;
  for (int n = 0;; ++n) {
    SCOPED_TRACE(n);
    SField record = NewRecord("before");
    record.PutFilename(path);
    const NoDescriptorLeft check;
    int ok = 0, reason = 0;
    const Shortage shortage = FailAllocation(n, [&] {
      ok = record.Read();
      reason = errno;
    });
    if (shortage.thrown) ++thrown;
    EXPECT_EQ(ok, shortage.fired ? 0 : 1);
    if (n == 0) {
      EXPECT_EQ(reason, ENOMEM);
      EXPECT_EQ(record.Get("Trace:"), (SStringList{"a", "b"}));
    }
    EXPECT_EQ(record.Loaded(), ok);
    EXPECT_EQ(thrown, shortage.fired ? n : n - 1) << "only the list's memory throws";
    if (!shortage.fired) break;
  }
  EXPECT_GE(thrown, 2);
}

}  // namespace
