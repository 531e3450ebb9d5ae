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

#include <limits>
#include <string_view>

#include "Export.h"

inline namespace mailhearth {

struct MAILHEARTH_EXPORT SStringRep {
  // Who frees the representation, and how.
  enum Origin : int {
    kAdopted,  // its maker handed it to a string: buffer by `delete[]`, the rest by `delete`
    kLibrary,  // the library made it, its buffer in the same block of memory or absent
  };

  // A representation with so many links is pinned: it is no longer counted, never edited in
  // place and never freed. A counter that gets there by counting stays there, so no number
  // of handles makes it wrap.
  static constexpr int kPinned = std::numeric_limits<int>::max();

  char* buffer = nullptr;    // the bytes; null when the string is undefined
  int length = 0;            // bytes in use
  int links = 0;             // handles that share this representation
  int allocated = 0;         // bytes of `buffer`; 0 when the string is undefined
  Origin origin = kAdopted;  // makers leave it as it is

  // With `allocated` above `length` a NUL stands at buffer[length]. With both
  // equal the buffer is somebody else's text and may end where it ends.
  [[nodiscard]] bool Terminated() const { return allocated > length; }

  // Counts a handle more.
  void Link() noexcept {
    if (links != kPinned) ++links;
  }

  // Counts a handle less, and frees the representation with the last.
  void Unlink() noexcept {
    if (links != kPinned && --links == 0) Delete(this);
  }

  // Returns the pinned representation of undefined strings that need no memory: those that
  // have been moved from, and the keys of table entries before they are added. It lies in
  // read-only memory.
  [[nodiscard]] static SStringRep* Undefined() noexcept;

  // Returns a new representation with one link, length 0 and a buffer for `n`
  // bytes and a NUL, all of it in one block of memory. The buffer is not set.
  // Needs: 0 <= n <= kMaxLength, here and below.
  [[nodiscard]] static SStringRep* New(int n);

  // Returns a new representation of an undefined string, with one link.
  [[nodiscard]] static SStringRep* NewUndefined();

  // Makes room for `n` bytes and a NUL, more than there is, where the block has it already; the
  // bytes in use stay. Returns whether it has. Needs: a representation that nobody else has.
  [[nodiscard]] bool Widen(int n);

  // Replaces the buffer by one for `n` bytes and a NUL that begins with `bytes`, which may
  // be bytes of the old buffer. Needs: an adopted representation that nobody else has, and no
  // more than `n` bytes.
  void Rebuffer(int n, std::string_view bytes);

  // Frees the buffer and leaves the representation of an undefined string.
  // Needs: an adopted representation that nobody else has.
  void Clear();

 private:
  // Frees a representation that has no link left, and its buffer.
  static void Delete(SStringRep* rep) noexcept;
};

}  // namespace mailhearth

#endif  // MAILHEARTH_STRINGS_SSTRINGREP_H
