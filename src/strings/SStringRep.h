// SStringRep is what the handles of one string share: its bytes, their number
// and the number of handles. Only SString, the views over strings and code that
// hands a string a representation of its own making use it.
//
// Such a representation is filled by its maker and given to SString(SStringRep*):
//
//   auto* rep = new SStringRep{new char[8]{"abc"}, 3, 0, 8};
//   SString text(rep);                   // links is 1; the string owns rep
//
// The last handle to go frees `buffer` with `delete[]` and the representation
// with `delete`. A maker who keeps it (on the stack, say) counts one link for
// himself, so that no handle is ever the last, and keeps it, and the bytes, longer than
// every handle.

#ifndef MAILHEARTH_STRINGS_SSTRINGREP_H
#define MAILHEARTH_STRINGS_SSTRINGREP_H

#include <cstddef>

#include "Export.h"

inline namespace mailhearth {

struct MAILHEARTH_EXPORT SStringRep {
  char* buffer = nullptr;  // the bytes; null when the string is undefined
  int length = 0;          // bytes in use
  int links = 0;           // handles that share this representation
  int allocated = 0;       // bytes of `buffer`; 0 when the string is undefined

  // With `allocated` above `length` a NUL stands at buffer[length]. With both
  // equal the buffer is somebody else's text and may end where it ends.
  [[nodiscard]] bool Terminated() const { return allocated > length; }

  // Returns a new representation with one link, length 0 and a buffer for `n`
  // bytes and a NUL, all of it in one block of memory. The buffer is not set.
  // Needs: 0 <= n <= kMaxLength, here and below.
  [[nodiscard]] static SStringRep* New(int n);

  // Replaces the buffer by one for `n` bytes and a NUL; the bytes in use and a
  // NUL after them are carried over. Needs: a buffer of its own or none, and
  // AllocationFor(n) above `length`.
  void Enlarge(int n);

  // Whether buffer and representation are one block, made by New.
  [[nodiscard]] bool OneBlock() const {
    return buffer == reinterpret_cast<const char*>(this) + sizeof *this;
  }

  // Returns a representation of an undefined string, with one link more, that what has
  // been moved from shares. Counted so high that it is never freed and never edited.
  [[nodiscard]] static SStringRep* MovedFrom() noexcept;

  // Frees the buffer and leaves the representation of an undefined string.
  // Needs: not OneBlock().
  void Clear();

  // Frees a representation that has no link left, and its buffer.
  static void Delete(SStringRep* rep);

  // A representation made by `new` is one byte longer than it need be, so that no
  // buffer from elsewhere can begin where the buffer of OneBlock() does.
  static void* operator new(std::size_t size) { return ::operator new(size + 1); }
  static void operator delete(void* rep) { ::operator delete(rep); }
};

}  // namespace mailhearth

#endif  // MAILHEARTH_STRINGS_SSTRINGREP_H
