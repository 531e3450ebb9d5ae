#include "system/CutInfo.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <functional>
#include <string>
#include <string_view>

#include "support/CheckText.h"
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
