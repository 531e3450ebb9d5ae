#include "system/Environment.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "support/CheckText.h"
#include "support/CountedNew.h"
#include "support/EnvironmentKey.h"

// The environment keeps a copy of every setting for good, on purpose.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions() {
  return "leak:PutEnv";
}

namespace {

TEST(GetEnv, ReadsUnsetAsDefinedAndEmpty) {
  const EnvironmentKey key("MAILHEARTH_TEST_KEY");
  ::unsetenv(key.Name());
  CheckText(GetEnv(key.Name()), "");
  ::setenv(key.Name(), "", 1);
  CheckText(GetEnv(key.Name()), "");
  ::setenv(key.Name(), "a value", 1);
  CheckText(GetEnv(key.Name()), "a value");
  CheckText(GetEnv(SString(key.Name())), "a value");
}

TEST(GetEnv, OfNoNameIsEmpty) {
  CheckText(GetEnv(static_cast<const char*>(nullptr)), "");
  CheckText(GetEnv(""), "");
  CheckText(GetEnv(SString()), "");
}

TEST(GetEnv, TakesAKeyThatEndsWithoutNul) {
  const EnvironmentKey key("MAILHEARTH_TEST_KEY");
  ::setenv(key.Name(), "a value", 1);
  char text[] = "MAILHEARTH_TEST_KEY_AND_MORE";
  SStringRep view{text, 19, 1, 19};
  CheckText(GetEnv(SString(&view)), "a value");
}

TEST(PutEnv, SetsAValueThatOutlivesItsArguments) {
  const EnvironmentKey key("MAILHEARTH_TEST_KEY");
  {
    const SString name(key.Name()), value("1");
    PutEnv(name, value);
  }
  CheckText(GetEnv(key.Name()), "1");
  EXPECT_STREQ(::getenv(key.Name()), "1");
  PutEnv(key.Name(), "2");
  CheckText(GetEnv(key.Name()), "2");
  PutEnv(key.Name(), SString());
  CheckText(GetEnv(key.Name()), "");
  EXPECT_NE(::getenv(key.Name()), nullptr);
  PutEnv(key.Name(), "a=b");
  CheckText(GetEnv(key.Name()), "a=b");
}

TEST(PutEnv, ThatFindsNoMemorySetsNothing) {
  const EnvironmentKey key("MAILHEARTH_TEST_KEY");
  const SString name(key.Name()), value("a value");
  PutEnv(name, "before");
  for (int n = 0;; ++n) {
    const FailNthAllocation fault(n);
    PutEnv(name, value);
    if (!fault.Fired()) break;
    EXPECT_STREQ(::getenv(key.Name()), "before");
  }
  CheckText(GetEnv(name), "a value");
}

TEST(ProcessIdString, IsDecimal) { CheckText(ProcessIdString(), std::to_string(::getpid())); }

TEST(NewHandlerDeathTest, EndsTheProcessAtOnce) {
  EXPECT_EXIT(
      {
        std::atexit([] { ::_exit(1); });
        std::printf("not flushed");
        NewHandler();
      },
      testing::ExitedWithCode(106), "");
}

TEST(NewHandlerDeathTest, IsInstalledForFailedAllocations) {
  EXPECT_EXIT(
      {
        SetNewHandler();
        if (std::get_new_handler() != NewHandler) ::_exit(1);
        const SString s('x', 2147483647);
      },
      testing::ExitedWithCode(106), "");
}

TEST(ErrorNumbers, AreTheCurrentOnes) {
  errno = ENOSPC;
  EXPECT_EQ(GetErrorNo(), ENOSPC);
  EXPECT_EQ(GetSocketErrorNo(), ENOSPC);
}

TEST(ErrorTexts, AreTheSystems) {
  for (const int n : {0, ENOENT, ENOSPC, EINTR}) {
    const std::string expected = std::strerror(n);
    CheckText(GetErrorString(n), expected);
    CheckText(GetSocketErrorString(n), expected);
  }
}

TEST(ErrorTexts, OfMinusOneAreOfTheCurrentError) {
  const std::string expected = std::strerror(ENOENT);
  EXPECT_EQ(::open("/no/such/file", O_RDONLY | O_CLOEXEC), -1);
  CheckText(GetErrorString(-1), expected);
  EXPECT_EQ(errno, ENOENT);
  CheckText(GetSocketErrorString(), expected);
}

TEST(ErrorTexts, LeaveTheErrorNumberAlone) {
  errno = ENOSPC;
  EXPECT_NE(GetErrorString(99999), "");
  EXPECT_NE(GetErrorString(-2), "");
  EXPECT_EQ(errno, ENOSPC);
}

}  // namespace
