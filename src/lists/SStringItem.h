// SStringItem is a node of an SStringList: a string and links to its neighbours in a ring. A
// node converts to a string. Lists make and destroy their nodes; other code rarely needs to.

#ifndef MAILHEARTH_LISTS_SSTRINGITEM_H
#define MAILHEARTH_LISTS_SSTRINGITEM_H

#include <utility>

#include "../strings/Export.h"
#include "../strings/SString.h"

inline namespace mailhearth {

struct MAILHEARTH_EXPORT SStringItem {
  SString value;             // first, so that a node is found where its string is
  SStringItem* next = this;  // the next node in the ring
  SStringItem* prev = this;  // the previous node

  // Each makes a ring of one.
  SStringItem() = default;
  SStringItem(const SString& s) : value(s) {}
  SStringItem(SString&& s) noexcept : value(std::move(s)) {}
  SStringItem(const char* s) : value(s) {}
  SStringItem(char c) : value(c, 1) {}

  // Takes the node out of its ring. The count of the list does not change.
  ~SStringItem() {
    prev->next = next;
    next->prev = prev;
  }

  SStringItem(const SStringItem&) = delete;
  SStringItem& operator=(const SStringItem&) = delete;

  // The string.
  operator SString&() { return value; }
  operator const SString&() const { return value; }

  // Dumps the node to the standard error stream: at level 0 its escaped bytes; at level 1
  // also the addresses of the node and its neighbours; above that everything that
  // SString::Debug shows.
  void Debug(int level) const;
};

}  // namespace mailhearth

#endif  // MAILHEARTH_LISTS_SSTRINGITEM_H
