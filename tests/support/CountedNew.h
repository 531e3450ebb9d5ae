// The program's `operator new`, counted, and made to fail on demand.

#ifndef MAILHEARTH_TESTS_SUPPORT_COUNTEDNEW_H
#define MAILHEARTH_TESTS_SUPPORT_COUNTEDNEW_H

#include <cstddef>

// Counts the allocations made while it lives, and the bytes asked for.
class AllocationCount {
 public:
  AllocationCount();
  [[nodiscard]] int Made() const;
  [[nodiscard]] std::size_t Bytes() const;

 private:
  int before_;
  std::size_t bytesBefore_;
};

// While it lives, the allocation after the next `n` ones fails with std::bad_alloc.
class FailNthAllocation {
 public:
  explicit FailNthAllocation(int n);
  ~FailNthAllocation();
  FailNthAllocation(const FailNthAllocation&) = delete;
  FailNthAllocation& operator=(const FailNthAllocation&) = delete;

  [[nodiscard]] bool Fired() const;
};

#endif  // MAILHEARTH_TESTS_SUPPORT_COUNTEDNEW_H
