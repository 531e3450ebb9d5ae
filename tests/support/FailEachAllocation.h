// Work that runs out of memory at each of its allocations in turn.

#ifndef MAILHEARTH_TESTS_SUPPORT_FAILEACHALLOCATION_H
#define MAILHEARTH_TESTS_SUPPORT_FAILEACHALLOCATION_H

#include <gtest/gtest.h>

#include <cerrno>
#include <new>

#include "support/CountedNew.h"
#include "support/TempDir.h"

// How work ended.
struct Shortage {
  bool fired = false;   // whether it came to the allocation that failed
  bool thrown = false;  // whether it threw std::bad_alloc
};

// Does work with its `n`-th allocation failing, counted from 0.
template <class Work>
Shortage FailAllocation(int n, Work work) {
  Shortage shortage;
  const FailNthAllocation fault(n);
  try {
    work();
  } catch (const std::bad_alloc&) {
    shortage.thrown = true;
  }
  shortage.fired = fault.Fired();
  return shortage;
}

// The same for work that answers 1, or 0 where it has failed.
// Returns whether it failed, be it by an exception or by 0 with ENOMEM, and checks that it did so
// just where the allocation failed.
template <class Work>
bool FailsWithoutMemory(int n, Work work) {
  bool failed = false;
  const Shortage shortage = FailAllocation(n, [&] {
    failed = work() == 0;
    EXPECT_TRUE(!failed || errno == ENOMEM);
  });
  failed = failed || shortage.thrown;
  EXPECT_EQ(failed, shortage.fired);
  return failed;
}

// Calls `edit` on what `make` returns, made anew each time: first with its first allocation
// failing, then with its second, until none is left to fail. Checks that each failure comes
// out as std::bad_alloc and leaves no descriptor; then `check` looks at what the edit has left
// behind. What leaks meanwhile, the leak sanitizer reports.
// Returns how many failed.
template <class Make, class Edit, class Check>
int FailEachAllocation(Make make, Edit edit, Check check) {
  for (int n = 0;; ++n) {
    SCOPED_TRACE(n);
    auto made = make();
    const int open = OpenDescriptors();
    const Shortage shortage = FailAllocation(n, [&] { edit(made); });
    EXPECT_EQ(shortage.thrown, shortage.fired);
    EXPECT_EQ(OpenDescriptors(), open);
    if (!shortage.fired) {
      EXPECT_GT(n, 0) << "nothing is allocated";
      return n;
    }
    check(made);
  }
}

// The same for work that begins anew by itself.
template <class Work, class Check>
int FailEachAllocation(Work work, Check check) {
  return FailEachAllocation([] { return 0; }, [&](int) { work(); }, [&](int) { check(); });
}

#endif  // MAILHEARTH_TESTS_SUPPORT_FAILEACHALLOCATION_H
