// Makes calls of the C library fail, in a program whose linker sends them to
// FailNthCall.cpp.

#ifndef MAILHEARTH_TESTS_SUPPORT_FAILNTHCALL_H
#define MAILHEARTH_TESTS_SUPPORT_FAILNTHCALL_H

#include <functional>
#include <string>
#include <vector>

// As long as it lives, the `n`-th call (from 1 on) of `function`, or of any function where
// that is "", fails with `error` and does nothing. One at a time.
class FailNthCall {
 public:
  FailNthCall(std::string function, int n, int error);
  ~FailNthCall();
  FailNthCall(const FailNthCall&) = delete;
  FailNthCall& operator=(const FailNthCall&) = delete;

  [[nodiscard]] bool Fired() const;
};

// As long as it lives, keeps the names of the functions called, in their order; of those that
// rename or sync, with the paths behind. One at a time.
class RecordCalls {
 public:
  RecordCalls();
  ~RecordCalls();
  RecordCalls(const RecordCalls&) = delete;
  RecordCalls& operator=(const RecordCalls&) = delete;

  [[nodiscard]] const std::vector<std::string>& Calls() const { return calls_; }

 private:
  std::vector<std::string> calls_;
};

// Calls of open without O_CLOEXEC, since the program started.
extern int openedForOthers;

// The flags of the last call of msync.
extern int syncFlags;

// Done once after the next call of fstat that succeeds.
extern std::function<void()> afterFstat;

#endif  // MAILHEARTH_TESTS_SUPPORT_FAILNTHCALL_H
