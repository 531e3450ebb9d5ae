// What tests see of a string beyond its public face, and the step that only other
// classes of the library take.

#ifndef MAILHEARTH_TESTS_SUPPORT_SSTRINGPEEK_H
#define MAILHEARTH_TESTS_SUPPORT_SSTRINGPEEK_H

#include "strings/SString.h"

inline namespace mailhearth {

class SStringPeek {
 public:
  static const SStringRep& Rep(const SString& s) { return *s.rep_; }
  static bool Shares(const SString& a, const SString& b) { return a.rep_ == b.rep_; }
  static void Undef(SString& s) { s._Undef(); }
  static char* Malloc(SString& s, int n) { return s._Malloc(n); }
  static char* Realloc(SString& s, int n) { return s._Realloc(n); }
};

// Returns "" if the string keeps what its representation promises, else what is wrong.
const char* Flaw(const SString& s);

}  // namespace mailhearth

#endif  // MAILHEARTH_TESTS_SUPPORT_SSTRINGPEEK_H
