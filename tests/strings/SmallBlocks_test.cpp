#include "strings/SmallBlocks.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "lists/SStringList.h"
#include "strings/SString.h"
#include "support/CountedNew.h"

namespace {

// Whether blocks are kept at all: under the address sanitizer they are not.
bool Keeps() {
  SmallBlocks::Give(SmallBlocks::Take(0), 0);
  return SmallBlocks::BytesKept() > 0;
}

TEST(SmallBlocks, EachSizeIsOfTheSmallestClassThatHoldsIt) {
  EXPECT_EQ(SmallBlocks::ClassOf(0), 0U);
  for (std::size_t i = 0; i < SmallBlocks::kSizes.size(); ++i) {
    EXPECT_EQ(SmallBlocks::ClassOf(SmallBlocks::kSizes[i]), i);
    if (i > 0) {
      EXPECT_EQ(SmallBlocks::ClassOf(SmallBlocks::kSizes[i - 1] + 1), i);
    }
  }
}

TEST(SmallBlocks, ABlockIsAllItsBytesLong) {
  for (std::size_t i = 0; i < SmallBlocks::kSizes.size(); ++i) {
    for (int round = 0; round < 2; ++round) {
      void* const block = SmallBlocks::Take(i);
      std::memset(block, 0xA5, SmallBlocks::kSizes[i]);
      SmallBlocks::Give(block, i);
    }
  }
}

TEST(SmallBlocks, WhatIsGivenBackIsTakenAgain) {
  if (!Keeps()) GTEST_SKIP() << "nothing is kept under the address sanitizer";
  SmallBlocks::Limit(SmallBlocks::kMostKept);
  const int before = LiveAllocations();
  for (int round = 0; round < 1000; ++round) {
    const SString s("some text");
    SStringList list = {"a", "b"};
    list.Push(s + "more");
  }
  EXPECT_LE(LiveAllocations() - before, 20);
  EXPECT_GT(SmallBlocks::BytesKept(), 0U);
}

TEST(SmallBlocks, NoMoreIsKeptThanMayBe) {
  SmallBlocks::Limit(SmallBlocks::kMostKept);
  const int before = LiveAllocations();
  {
    std::vector<SString> strings;
    for (int n = 0; n < 100'000; ++n) strings.emplace_back('x', n % 2000);
  }
  EXPECT_LE(SmallBlocks::BytesKept(), SmallBlocks::kMostKept);
  EXPECT_LE(LiveAllocations() - before, static_cast<int>(SmallBlocks::kMostKept / 24));
  SmallBlocks::Limit(0);
  EXPECT_EQ(SmallBlocks::BytesKept(), 0U);
  EXPECT_LE(LiveAllocations(), before);
  { const SString s("text"); }
  EXPECT_EQ(SmallBlocks::BytesKept(), 0U);
  SmallBlocks::Limit(SmallBlocks::kMostKept);
}

TEST(SmallBlocks, NewMemoryIsAskedOfTheGlobalOperator) {
  const EveryBlockNew everyBlockNew;
  const AllocationCount count;
  { const SString s("text"); }
  { const SStringList list; }
  EXPECT_EQ(count.Made(), 2);
  const FailNthAllocation fault(0);
  EXPECT_THROW(SString("text"), std::bad_alloc);
}

// Strings whose memory another thread may have taken; enough of them to go beyond what is kept.
std::vector<SString> MakeStrings(int seed) {
  std::vector<SString> made;
  for (int n = 0; n < 8000; ++n) made.emplace_back(static_cast<char>('a' + seed), n % 50);
  return made;
}

TEST(SmallBlocks, AThreadMayGiveBackWhatAnotherHasTaken) {
  std::vector<SString> strings = MakeStrings(0);
  for (int round = 1; round < 20; ++round) {
    std::thread([&, round] {
      std::vector<SString> old = std::exchange(strings, MakeStrings(round));
      old.resize(old.size() / 2);
      for (SString& s : old) s += "edited";
    }).join();
    for (const SString& s : strings) {
      ASSERT_EQ(s.Count(static_cast<char>('a' + round)), s.Length());
    }
  }
}

TEST(SmallBlocks, ThreadsTakeAndGiveBackAtOnce) {
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([i] {
      for (int round = 0; round < 20; ++round) {
        std::vector<SString> strings = MakeStrings(i);
        SString moved = std::move(strings[20]);  // what is left is shared by all threads
        SStringList list;
        for (const SString& s : strings) list.Push(s);
        SStringList taken = std::move(list);
        taken.Reverse();
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
}

TEST(SmallBlocks, AThreadThatEndsKeepsNothing) {
  std::thread([] { MakeStrings(0); }).join();  // what the first thread costs
  const int before = LiveAllocations();
  for (int i = 0; i < 3; ++i) std::thread([] { MakeStrings(0); }).join();
  EXPECT_EQ(LiveAllocations(), before);
}

// A string that is destroyed after the clean-up of its thread, by another thread-local object.
TEST(SmallBlocks, StringsMayBeDestroyedAtTheVeryEndOfAThread) {
  struct Late {
    SString text;
    SStringList list;
    ~Late() {
      text += " of some length that is not small any more at all";
      list.Push(text);
    }
  };
  const int before = LiveAllocations();
  std::thread([] {
    static thread_local Late late;
    late.text = "text";
    { const SString given("back"); }
  }).join();
  EXPECT_EQ(LiveAllocations(), before);
}

}  // namespace
