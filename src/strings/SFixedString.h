// SFixedString is a representation over bytes that somebody else owns: it passes text on
// without copying. Strings made from it share it; the first edit of such a string copies
// the bytes, as it does for any shared string.
//
// The bytes need not end in a NUL. They must outlive the object and every string made from
// it, until that string copies them. A string that still shares the object when the object
// is destroyed would point at freed memory: the process then exits at once, with status 110.
//
//   SFixedString line(buffer, 80);
//   Consume(line);                       // takes a const SString&; nothing is copied
//   line.SetBuffer(buffer + 80, 80);     // all strings that share it see the new bytes
//
// Neither copyable nor movable: strings hold its address.

#ifndef MAILHEARTH_STRINGS_SFIXEDSTRING_H
#define MAILHEARTH_STRINGS_SFIXEDSTRING_H

#include "Export.h"
#include "SString.h"
#include "SStringRep.h"

inline namespace mailhearth {

class MAILHEARTH_EXPORT SFixedString : public SStringRep {
 public:
  // Views the empty text.
  SFixedString() : SFixedString("", 0) {}

  // Views `len` bytes at `buf`. A null `buf` is the empty text; a negative `len` is 0.
  SFixedString(const char* buf, int len) : SStringRep{nullptr, 0, kAtRest, 0} {
    SetBuffer(buf, len);
  }

  SFixedString(const SFixedString&) = delete;
  SFixedString& operator=(const SFixedString&) = delete;
  ~SFixedString();

  // Views other bytes, in this object and in every string that shares it.
  void SetBuffer(const char* buf, int len);

  // A string that shares this object.
  operator SString() { return SString(this); }

 private:
  // One link for the object itself and one more, so that no string is ever the last or the
  // only handle, and each copies before it writes.
  static constexpr int kAtRest = 2;
};

}  // namespace mailhearth

#endif  // MAILHEARTH_STRINGS_SFIXEDSTRING_H
