// Runs something again and again, each time with another of its allocations failing.

#ifndef MAILHEARTH_TESTS_SUPPORT_FAILEACHALLOCATION_H
#define MAILHEARTH_TESTS_SUPPORT_FAILEACHALLOCATION_H

#include <gtest/gtest.h>

#include <new>

#include "support/CountedNew.h"

// Calls `edit` on what `make` returns, made anew each time: first with its first allocation
// failing, then with its second, until none is left to fail. After each failure, `check` looks
// at what the edit has left behind. What leaks meanwhile, the leak sanitizer reports.
template <class Make, class Edit, class Check>
void FailEachAllocation(Make make, Edit edit, Check check) {
  for (int n = 0;; ++n) {
    auto made = make();
    bool threw = false, fired = false;
    {
      const FailNthAllocation fault(n);
      try {
        edit(made);
      } catch (const std::bad_alloc&) {
        threw = true;
      }
      fired = fault.Fired();
    }
    ASSERT_EQ(threw, fired) << "allocation " << n;
    if (!fired) {
      EXPECT_GT(n, 0) << "nothing is allocated";
      return;
    }
    SCOPED_TRACE(n);
    check(made);
  }
}

#endif  // MAILHEARTH_TESTS_SUPPORT_FAILEACHALLOCATION_H
