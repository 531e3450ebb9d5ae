#include "system/CutInfo.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

#include "support/CheckText.h"
#include "support/FailEachAllocation.h"
#include "support/TempDir.h"

namespace {

// Checks in a process of its own, as each reads the file once.
void WithCutFile(const TempDir& dir, const std::function<void()>& check) {
  const pid_t child = ::fork();
  if (child == 0) {
    ::setenv("ProgramDir", dir.Path().c_str(), 1);
    check();
    ::_exit(testing::Test::HasFailure() ? 1 : 0);
  }
  int status = -1;
  ::waitpid(child, &status, 0);
  EXPECT_EQ(status, 0);
}

TEST(GetCutInfo, FindsTheValueOfAKey) {
  const TempDir dir;
  dir.File(".cut",
           "version 3.1 beta\n"
           "date\t2026-11-05\r\n"
           "two  blanks \n"
           "\n"
           "alone\n"
           "blank \n"
           "version 4\n"
           " indented x\n"
           "last line");
  WithCutFile(dir, [] {
    CheckText(GetCutInfo("version"), "3.1 beta");
    CheckText(GetCutInfo("date"), "2026-11-05");
    CheckText(GetCutInfo("two"), " blanks ");
    CheckUndefined(GetCutInfo("alone"));
    CheckUndefined(GetCutInfo("blank"));
    for (const char* const key : {"Version", "versio", "version ", "last", "indented", "beta"}) {
      SCOPED_TRACE(key);
      CheckText(GetCutInfo(key), "Undefined");
    }
  });
}

TEST(GetCutInfo, OfTheEmptyKeyIsTheRestBehindTheFirstBlankOfALine) {
  const TempDir dir;
  dir.File(".cut", "a 1\n\n \t two  words \n 3\n");
  WithCutFile(dir, [] {
    for (const SString& key : {SString(""), SString()}) {
      CheckText(GetCutInfo(key), "\t two  words ");
    }
  });
  const TempDir other;
  other.File(".cut", "\n \n 3\n");
  WithCutFile(other, [] { CheckUndefined(GetCutInfo("")); });
}

TEST(GetCutInfo, LooksAtNoMoreThanTheKey) {
  const TempDir dir;
  dir.File(".cut", std::string("a\0b 1\na 2\n.* 3\n", 16));
  WithCutFile(dir, [] {
    CheckText(GetCutInfo("a"), "2");
    CheckText(GetCutInfo(SString("a\0b", 3)), "1");
    CheckText(GetCutInfo(".*"), "3");
    CheckText(GetCutInfo("."), "Undefined");
  });
}

TEST(GetCutInfo, TakesAnyWhiteSpaceForTheEndOfAKey) {
  const TempDir dir;
  dir.File(".cut", "a b\nb\tc\nc\vd\nd\fe\ne\rf\nf-g\n");
  WithCutFile(dir, [] {
    for (const char* const key : {"a", "b", "c", "d", "e"}) {
      const char next[] = {static_cast<char>(*key + 1), '\0'};
      CheckText(GetCutInfo(key), next);
    }
    CheckText(GetCutInfo("f"), "Undefined");
    CheckUndefined(GetCutInfo("f-g"));
  });
}

// Each process runs out of memory once, and the first call that finds enough of it reads.
TEST(GetCutInfo, WithoutMemoryReadsAtTheNextCall) {
  const TempDir dir;
  dir.File(".cut", "version 3.1 beta\n");
  bool more = true;
  for (int n = 0; more; ++n) {
    SCOPED_TRACE(n);
    const std::string trace = dir / "fired";
    WithCutFile(dir, [&] {
      const int open = OpenDescriptors();
      const Shortage shortage =
          FailAllocation(n, [] { CheckText(GetCutInfo("version"), "3.1 beta"); });
      EXPECT_EQ(shortage.thrown, shortage.fired);
      EXPECT_EQ(OpenDescriptors(), open);
      CheckText(GetCutInfo("version"), "3.1 beta");
      if (shortage.fired) dir.File("fired", "");
    });
    more = std::filesystem::remove(trace);
    if (!more) {
      EXPECT_GE(n, 3) << "the path, the text, a line";
    }
  }
}

TEST(GetCutInfo, WithoutAFileFindsNothing) {
  const TempDir dir;
  WithCutFile(dir, [&] {
    CheckText(GetCutInfo("version"), "Undefined");
    dir.File(".cut", "version 1\n");
    CheckText(GetCutInfo("version"), "Undefined");
  });
  WithCutFile(dir, [] { CheckText(GetCutInfo("version"), "1"); });
}

TEST(GetCutInfo, ReadsTheFileOnce) {
  const TempDir dir;
  dir.File(".cut", "version 1\n");
  WithCutFile(dir, [&] {
    CheckText(GetCutInfo("version"), "1");
    dir.File(".cut", "version 2\n");
    CheckText(GetCutInfo("version"), "1");
  });
}

TEST(GetCutInfo, HandsOutStringsOfTheirOwn) {
  const TempDir dir;
  dir.File(".cut", "a 1\nb 2\n");
  WithCutFile(dir, [] {
    SString a = GetCutInfo("a");
    const SString b = GetCutInfo("b");
    a += "!";
    CheckText(a, "1!");
    CheckText(b, "2");
    CheckText(GetCutInfo("a"), "1");
  });
}

}  // namespace
