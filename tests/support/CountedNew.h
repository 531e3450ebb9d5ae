// The program's `operator new`, counted, and made to fail on demand.

#ifndef MAILHEARTH_TESTS_SUPPORT_COUNTEDNEW_H
#define MAILHEARTH_TESTS_SUPPORT_COUNTEDNEW_H

#include <cstddef>

// While it lives, the library keeps no blocks of memory for later, so that each thing it makes
// costs an allocation.
class EveryBlockNew {
 public:
  EveryBlockNew();
  ~EveryBlockNew();
  EveryBlockNew(const EveryBlockNew&) = delete;
  EveryBlockNew& operator=(const EveryBlockNew&) = delete;
};

// Counts the allocations made while it lives, and the bytes asked for.
class AllocationCount {
 public:
  AllocationCount();
  [[nodiscard]] int Made() const;
  [[nodiscard]] std::size_t Bytes() const;

 private:
  EveryBlockNew everyBlockNew_;
  int before_;
  std::size_t bytesBefore_;
};

// Returns how many blocks of the program's, in all threads, have not been freed yet.
[[nodiscard]] int LiveAllocations();

// While it lives, the allocation after the next `n` ones calls the installed new-handler, for as
// long as there is one, and then fails with std::bad_alloc.
class FailNthAllocation {
 public:
  explicit FailNthAllocation(int n);
  ~FailNthAllocation();
  FailNthAllocation(const FailNthAllocation&) = delete;
  FailNthAllocation& operator=(const FailNthAllocation&) = delete;

  [[nodiscard]] bool Fired() const;

 private:
  EveryBlockNew everyBlockNew_;
};

#endif  // MAILHEARTH_TESTS_SUPPORT_COUNTEDNEW_H
