// SNamedStringList finds lists of strings by name: it is a record of fields, each with any
// number of values. The message queue keeps its control records and requests in such lists,
// and its files hold their text form.
//
//   SNamedStringList record(0, 0);               // names ignore case, lines end in \n
//   record["Trace:"].Push("router 1");
//   record["Trace:"].Push("local 2");
//   SString text;
//   text << record;                              // Trace: router 1\nTrace: local 2\n
//   SNamedStringList again(0, 0);
//   text >> again;                               // again.Get("trace:").Count() is 2
//
// A name is present if its list is defined. A name that was only read through [] has an entry
// with an undefined list: it is not among Keys(), not copied and not written.
//
// A reference from [] stays valid until the entry is deleted; adding others does not affect
// it.
//
// A copy has the names and lists of the original and shares the lists' elements until one of
// the two is edited. Known and kept: an assignment replaces all entries and both flags, but
// names are still compared as before. If copying, merging or reading finds no memory, it
// throws std::bad_alloc and keeps the entries made so far.

#ifndef MAILHEARTH_TABLES_SNAMEDSTRINGLIST_H
#define MAILHEARTH_TABLES_SNAMEDSTRINGLIST_H

#include <string_view>

#include "../lists/SStringList.h"
#include "../strings/Export.h"
#include "../strings/SString.h"
#include "SNLists.h"
#include "STable.h"

inline namespace mailhearth {

// An entry of the table.
struct MAILHEARTH_EXPORT SNamedStringListItem : STableItem {
  SStringList list;  // the values

  ~SNamedStringListItem() override;
};

class MAILHEARTH_EXPORT SNamedStringList : public SNLists {
 public:
  // Empty. With `caseSensitive` 0, comparing names ignores case. With `crlf` not 0, the lines
  // of the text form end in "\r\n", else in "\n".
  SNamedStringList(unsigned caseSensitive, unsigned crlf) : SNLists(caseSensitive), crlf_(crlf) {}

  SNamedStringList(const SNamedStringList& other);
  SNamedStringList& operator=(const SNamedStringList& other);
  ~SNamedStringList() override;

  // Returns the names whose lists are defined, in the order in which they were first used; an
  // undefined list when there are none.
  [[nodiscard]] SStringList Keys() const override;

  // Returns the list of the name for editing; adds an undefined list when there is none.
  SStringList& operator[](const SString& name) {
    return _LookupOrAdd<SNamedStringListItem>(name).list;
  }
  template <TextKey Text>
  SStringList& operator[](const Text& name) {
    return _LookupOrAdd<SNamedStringListItem>(name).list;
  }

  // Returns the list of the name, an undefined list when there is none. Adds nothing.
  [[nodiscard]] virtual SStringList Get(const SString& name) const;

  // Returns a pointer to the list of the name, null when there is none, without making a
  // string of a view. The pointer is valid as long as the entry.
  template <TextKey Text>
  [[nodiscard]] const SStringList* Find(const Text& name) const {
    const auto* const item = _Lookup<SNamedStringListItem>(name);
    return item == nullptr ? nullptr : &item->list;
  }
  [[nodiscard]] const SStringList* Find(const SString& name) const { return Find(name.View()); }

  // Merges `other`: appends to the list of each name the values of `other` that it does not
  // have; a new value that `other` has twice is appended twice. If Keys() does not have the
  // name in exactly this spelling, the list of `other` replaces that of the name. Takes linear
  // time.
  SNamedStringList& operator+=(const SNamedStringList& other);

  // The line end of the text form: not 0 for "\r\n", 0 for "\n".
  [[nodiscard]] unsigned Crlf() const { return crlf_; }

 private:
  void _CopyEntries(const SNamedStringList& other);

  unsigned crlf_;
};

// The text form. Each value is a line: the name, a blank, the value. A line that begins with
// a blank or a tab continues the value before it, with the line end between; values of
// several lines are written and read this way. Nothing is escaped, so a list reads back equal
// if
//
//   - no name is empty, has a blank or begins with a tab; names have no line end of the
//     list's own kind, and values have one only before a blank or a tab;
//   - no list is defined and empty: it is written as one empty value;
//   - both lists have the same `crlf`: a list that expects "\n" keeps the "\r" of a line that
//     ends in "\r\n";
//   - both lists compare names alike, or no two names differ only in case.

// Appends the text form of `list` to `text`; when memory runs out, appends nothing.
MAILHEARTH_EXPORT SString& operator<<(SString& text, const SNamedStringList& list);

// Empties `list`, then reads `text` into it. No text is refused: a line without a blank, even
// an empty line, is a value of the name before it; with no name before it, as on the first
// line, of the empty name. A first line that begins with a blank is also a value of the empty
// name, without the blank. The last line needs no line end.
//
// Takes time linear in the text, unless its names were chosen to collide (STable.h).
MAILHEARTH_EXPORT const SString& operator>>(const SString& text, SNamedStringList& list);

}  // namespace mailhearth

#endif  // MAILHEARTH_TABLES_SNAMEDSTRINGLIST_H
