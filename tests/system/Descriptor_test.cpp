#include "system/Descriptor.h"

#include <fcntl.h>
#include <gtest/gtest.h>

#include <cerrno>

#include "support/FailNthCall.h"
#include "support/TempDir.h"

namespace {

TEST(Descriptor, ClosesOnceUnlessItIsReleased) {
  const int open = OpenDescriptors();
  int released = -1;
  {
    const Descriptor none(-1);
    EXPECT_FALSE(none.IsOpen());
    Descriptor closed(::open("/dev/null", O_RDONLY | O_CLOEXEC));
    Descriptor kept(::open("/dev/null", O_RDONLY | O_CLOEXEC));
    EXPECT_TRUE(closed.IsOpen());
    closed.Close();
    EXPECT_FALSE(closed.IsOpen());
    released = kept.Release();
    EXPECT_FALSE(kept.IsOpen());
    EXPECT_EQ(OpenDescriptors(), open + 1);
  }
  EXPECT_EQ(OpenDescriptors(), open + 1);
  EXPECT_EQ(::close(released), 0);
}

TEST(Descriptor, KeepsErrnoWhereClosingFails) {
  const FailNthCall fault("close", 1, EIO);
  errno = EXDEV;
  { const Descriptor file(::open("/dev/null", O_RDONLY | O_CLOEXEC)); }
  EXPECT_EQ(errno, EXDEV);
  EXPECT_TRUE(fault.Fired());
}

}  // namespace
