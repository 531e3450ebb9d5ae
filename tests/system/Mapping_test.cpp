#include "system/Mapping.h"

#include <fcntl.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>

#include "support/FailNthCall.h"
#include "support/TempDir.h"

namespace {

TEST(Mapping, IsOfTheBytesOfTheFile) {
  const TempDir dir;
  const Descriptor file(::open(dir.File("file", "text").c_str(), O_RDWR | O_CLOEXEC));
  Mapping bytes(file, 4);
  ASSERT_NE(bytes.Data(), nullptr);
  EXPECT_EQ(std::memcmp(bytes.Data(), "text", 4), 0);
  EXPECT_TRUE(bytes.Unmap());
  EXPECT_EQ(bytes.Data(), nullptr);
  EXPECT_TRUE(bytes.Unmap()) << "there is none any more";
  EXPECT_EQ(Mapping(Descriptor(-1), 4).Data(), nullptr);
  EXPECT_EQ(errno, EBADF);
}

TEST(Mapping, KeepsErrnoWhereItsEndFails) {
  const TempDir dir;
  const Descriptor file(::open(dir.File("file", "text").c_str(), O_RDWR | O_CLOEXEC));
  const FailNthCall fault("munmap", 1, EINVAL);
  errno = EXDEV;
  { const Mapping bytes(file, 4); }
  EXPECT_EQ(errno, EXDEV);
  EXPECT_TRUE(fault.Fired());
}

}  // namespace
