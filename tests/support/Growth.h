// Whether work grows no faster than its input.

#ifndef MAILHEARTH_TESTS_SUPPORT_GROWTH_H
#define MAILHEARTH_TESTS_SUPPORT_GROWTH_H

#include <algorithm>
#include <ctime>

#include "support/CountedNew.h"

// Returns the processor time that the cheapest of some calls of `work` takes, in clock ticks.
template <class Work>
double TicksOf(Work work) {
  double best = 1e18;
  for (int i = 0; i < 3; ++i) {
    const std::clock_t before = std::clock();
    work();
    best = std::min(best, static_cast<double>(std::clock() - before));
  }
  return best;
}

// Returns whether work(4 n) takes about four times as long as work(n), not sixteen times.
// Measures again before it says no: other programs are running too.
template <class Work>
bool GrowsLinearly(int n, Work work) {
  const EveryBlockNew everyBlockNew;  // or small work would be cheaper by what is kept for it
  for (int attempt = 0; attempt < 10; ++attempt) {
    const double once = TicksOf([&] { work(n); });
    const double fourTimes = TicksOf([&] { work(4 * n); });
    if (fourTimes < 10 * once) return true;
  }
  return false;
}

#endif  // MAILHEARTH_TESTS_SUPPORT_GROWTH_H
