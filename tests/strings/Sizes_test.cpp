#include "strings/Sizes.h"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <new>

#include "strings/SString.h"
#include "support/SStringPeek.h"

namespace {

// Address space that reads as so many times `c`, made of one piece of memory mapped
// over and over, and a NUL; for texts that would not fit into the machine.
class LongText {
 public:
  LongText(char c, std::size_t length) : size_((length / kPiece + 2) * kPiece) {
    const int fd = ::memfd_create("piece", 0);
    EXPECT_EQ(::ftruncate(fd, kPiece), 0);
    text_ = static_cast<char*>(::mmap(nullptr, size_, PROT_READ | PROT_WRITE,
                                      MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0));
    for (std::size_t at = 0; at + kPiece < size_; at += kPiece) {
      EXPECT_NE(::mmap(text_ + at, kPiece, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_FIXED, fd, 0),
                MAP_FAILED);
    }
    std::fill_n(text_, kPiece, c);
    // The last piece of the text becomes memory of its own, to end where it should.
    const std::size_t last = length / kPiece * kPiece;
    EXPECT_NE(::mmap(text_ + last, kPiece, PROT_READ | PROT_WRITE,
                     MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED, -1, 0),
              MAP_FAILED);
    std::fill_n(text_ + last, length - last, c);
    ::close(fd);
  }
  ~LongText() { ::munmap(text_, size_); }
  LongText(const LongText&) = delete;
  LongText& operator=(const LongText&) = delete;

  [[nodiscard]] char* Get() const { return text_; }

 private:
  static constexpr std::size_t kPiece = std::size_t{1} << 24;
  std::size_t size_;
  char* text_;
};

constexpr std::size_t kPastTheLimit = std::size_t{1} << 31;

// A string that views `length` bytes kept by the test, which counts as a handle.
struct ViewRep : SStringRep {
  ViewRep(char* text, int n) : SStringRep{text, n, 1, n} {}
};

TEST(Sizes, AllocationFollowsTheRule) {
  struct Row {
    int length, allocated;
  };
  constexpr Row kRows[] = {{0, 8},
                           {1, 8},
                           {7, 8},
                           {8, 16},
                           {15, 16},
                           {16, 32},
                           {100, 128},
                           {127, 128},
                           {128, 256},
                           {1000, 1024},
                           {1023, 1024},
                           {1024, 2048},
                           {(1 << 29), 1 << 30},
                           {(1 << 30) - 1, 1 << 30},
                           {1 << 30, INT_MAX},
                           {INT_MAX - 1, INT_MAX}};
  for (const Row& row : kRows) EXPECT_EQ(AllocationFor(row.length), row.allocated) << row.length;
}

TEST(Sizes, ALengthUpToTheLimitPasses) {
  EXPECT_EQ(kMaxLength, 2147483646);
  EXPECT_EQ(CheckedLength(0), 0);
  EXPECT_EQ(CheckedLength(kMaxLength), kMaxLength);
}

TEST(Sizes, ALengthPastTheLimitIsExhaustedMemory) {
  EXPECT_THROW(static_cast<void>(CheckedLength(std::int64_t{kMaxLength} + 1)), std::bad_alloc);
  EXPECT_THROW(static_cast<void>(CheckedLength(std::int64_t{1} << 32)), std::bad_alloc);
  EXPECT_THROW(static_cast<void>(CheckedLength((std::int64_t{1} << 32) + 5)), std::bad_alloc);
}

int handlerCalls = 0;

TEST(Sizes, TheNewHandlerRunsAsForOperatorNewUntilItGivesUp) {
  handlerCalls = 0;
  std::set_new_handler([] {
    if (++handlerCalls == 3) std::set_new_handler(nullptr);
  });
  EXPECT_THROW(static_cast<void>(CheckedLength(std::int64_t{1} << 40)), std::bad_alloc);
  EXPECT_EQ(handlerCalls, 3);
  EXPECT_EQ(std::get_new_handler(), nullptr);
}

TEST(Sizes, TextPastTheLimitMakesNoStringAndLeavesAnOldOneWhole) {
  const LongText text('a', kPastTheLimit);
  EXPECT_THROW(const SString s(text.Get()), std::bad_alloc);
  SString old("old");
  EXPECT_THROW(old = text.Get(), std::bad_alloc);
  EXPECT_THROW(old += text.Get(), std::bad_alloc);
  EXPECT_EQ(old.View(), "old");
  EXPECT_FALSE(old == text.Get());
  EXPECT_FALSE(SString("a") > text.Get());
  EXPECT_TRUE(SString("a") < text.Get());
}

TEST(Sizes, AFillOfTheLargestIntIsExhaustedMemory) {
  EXPECT_THROW(SString('x', INT_MAX), std::bad_alloc);
  EXPECT_THROW(SString(static_cast<const char*>(nullptr), INT_MAX), std::bad_alloc);
}

TEST(Sizes, AppendingPastTheLimitLeavesTheStringWhole) {
  const LongText text('a', kPastTheLimit);
  ViewRep longest(text.Get(), kMaxLength), half(text.Get(), 1 << 30);
  {
    SString s(&longest);
    EXPECT_THROW(s += 'x', std::bad_alloc);
    EXPECT_THROW(s += "x", std::bad_alloc);
    EXPECT_THROW(static_cast<void>(s + s), std::bad_alloc);
    SString t(&half);
    EXPECT_THROW(t += t, std::bad_alloc);  // 2^31, which would wrap to a negative length
    EXPECT_EQ(s.Length(), kMaxLength);
    EXPECT_EQ(t.Length(), 1 << 30);
    EXPECT_EQ(longest.links, 2);
    EXPECT_EQ(s[kMaxLength - 1], 'a');
    EXPECT_EQ(s[-kMaxLength], 'a');
    EXPECT_EQ(s[kMaxLength], '\0');
  }
  EXPECT_EQ(longest.links, 1);
  EXPECT_EQ(half.links, 1);
}

}  // namespace
