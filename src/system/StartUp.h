// Not installed. Work that modules of the library do before main and after it. Which modules these
// are stands in one table in StartUpModules.cpp; nothing else in the library runs code before main.
//
// Each such module holds a StartUpGuard in its source, so a program that uses the
// module has the table too, linked with the archive or the shared library. The first
// guard to be made starts all modules, the last to go stops them. Guards are made
// before the static objects of the program, whatever the order of files, unless those ask
// for an earlier place.

#ifndef MAILHEARTH_SYSTEM_STARTUP_H
#define MAILHEARTH_SYSTEM_STARTUP_H

#include <span>

inline namespace mailhearth {

// What one module does at start and at exit; null for nothing.
struct StartUpModule {
  void (*start)();
  void (*stop)();
};

// Modules behind a guard counter. Neither copyable nor for use between threads.
class StartUpTable {
 public:
  constexpr explicit StartUpTable(std::span<const StartUpModule> modules) : modules_(modules) {}
  StartUpTable(const StartUpTable&) = delete;
  StartUpTable& operator=(const StartUpTable&) = delete;

  // Counts one up; from 0, starts the modules, the last of the table first.
  void Enter();

  // Counts one down; to 0, stops the modules, the first of the table first.
  // Needs: an Enter() that has not been left yet.
  void Leave();

 private:
  std::span<const StartUpModule> modules_;
  int guards_ = 0;
};

// Holds the table of the program for as long as it lives. Declare it in a module's
// source as
//
//   [[gnu::init_priority(kStartUpPriority)]] const StartUpGuard startUp;
class StartUpGuard {
 public:
  StartUpGuard();
  ~StartUpGuard();
  StartUpGuard(const StartUpGuard&) = delete;
  StartUpGuard& operator=(const StartUpGuard&) = delete;
};

// Earlier than static objects without a priority, in whatever file they are.
inline constexpr int kStartUpPriority = 1000;

}  // namespace mailhearth

#endif  // MAILHEARTH_SYSTEM_STARTUP_H
