// SStringRep is the representation that the handles of one string share: the bytes, their
// number and the number of handles. Only SString, the views over strings and code that
// makes representations of its own use it.
//
// The maker of a representation fills it and passes it to SString(SStringRep*):
//
//   auto* rep = new SStringRep{new char[8]{"abc"}, 3, 0, 8};
//   SString text(rep);                   // links is 1; the string owns rep
//
// The last handle frees `buffer` with `delete[]` and the representation with `delete`. A
// maker that owns the representation itself (on the stack, say) counts one link of its own,
// so that no handle is ever the last. Representation and bytes must then outlive every handle.

#ifndef MAILHEARTH_STRINGS_SSTRINGREP_H
#define MAILHEARTH_STRINGS_SSTRINGREP_H

#include <limits>
#include <string_view>

#include "Export.h"

inline namespace mailhearth {

struct MAILHEARTH_EXPORT SStringRep {
  // Who frees the representation, and how.
  enum Origin : int {
    kAdopted,  // made elsewhere: the buffer is freed by `delete[]`, the rest by `delete`
    kLibrary,  // made by the library; the buffer is in the same block of memory, or absent
  };

  // A representation with this many links is pinned: its links are no longer counted, and it
  // is never edited in place and never freed. A counter that reaches this value stays there,
  // so it never wraps.
  static constexpr int kPinned = std::numeric_limits<int>::max();

  char* buffer = nullptr;    // the bytes; null when the string is undefined
  int length = 0;            // bytes in use
  int links = 0;             // handles that share this representation
  int allocated = 0;         // bytes of `buffer`; 0 when the string is undefined
  Origin origin = kAdopted;  // makers elsewhere leave this default

  // Returns whether a NUL follows the bytes. If `allocated` is above `length`, buffer[length]
  // is NUL. If they are equal, the buffer is somebody else's text, and the byte after it may
  // not be read.
  [[nodiscard]] bool Terminated() const { return allocated > length; }

  // Counts one more handle.
  void Link() noexcept {
    if (links != kPinned) ++links;
  }

  // Counts one handle less; the last frees the representation.
  void Unlink() noexcept {
    if (links != kPinned && --links == 0) Delete(this);
  }

  // Returns the pinned representation of undefined strings, which takes no memory. Moved-from
  // strings share it, as do the keys of table entries before they are added. It lies in
  // read-only memory.
  [[nodiscard]] static SStringRep* Undefined() noexcept;

  // Returns a new representation with one link, length 0 and a buffer for `n`
  // bytes and a NUL, all of it in one block of memory. The buffer is not set.
  // Needs: 0 <= n <= kMaxLength, here and below.
  [[nodiscard]] static SStringRep* New(int n);

  // Returns a new representation of an undefined string, with one link.
  [[nodiscard]] static SStringRep* NewUndefined();

  // Grows the buffer in place to hold `n` bytes and a NUL, if the block of memory is large
  // enough; the bytes in use stay. Returns whether it is.
  // Needs: the buffer is smaller; a representation with no other handle.
  [[nodiscard]] bool Widen(int n);

  // Replaces the buffer by one for `n` bytes and a NUL that begins with `bytes`, which may
  // be bytes of the old buffer.
  // Needs: an adopted representation with no other handle, and no more than `n` bytes.
  void Rebuffer(int n, std::string_view bytes);

  // Frees the buffer and leaves the representation of an undefined string.
  // Needs: an adopted representation with no other handle.
  void Clear();

 private:
  // Frees a representation without links, and its buffer.
  static void Delete(SStringRep* rep) noexcept;
};

}  // namespace mailhearth

#endif  // MAILHEARTH_STRINGS_SSTRINGREP_H
