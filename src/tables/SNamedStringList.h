// SNamedStringList finds a list of strings by a name: a record of fields, each with any
// number of values. The message queue keeps its control records and requests so, and the text
// form is what its files hold.
//
//   SNamedStringList record(0, 0);               // names without regard to case, lines end in \n
//   record["Trace:"].Push("router 1");
//   record["Trace:"].Push("local 2");
//   SString text;
//   text << record;                              // Trace: router 1\nTrace: local 2\n
//   SNamedStringList again(0, 0);
//   text >> again;                               // again.Get("trace:").Count() is 2
//
// A name counts as present when its list is defined. One that has only been looked at
// through [] has an entry with an undefined list: it is not among Keys(), not copied and not
// written.
//
// A reference that [] returns stays good until the entry is deleted, whatever is added.
//
// A copy has the names and lists of the original and shares the lists' elements until one of
// the two is edited. An assignment replaces all entries and both flags, but names go on
// being compared as they were: known and kept. Where copying, merging or reading finds no
// memory, it throws std::bad_alloc and keeps what it has done so far.

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
  // Empty. With `caseSensitive` 0, names compare without regard to case. With `crlf` not 0,
  // the lines of the text form end in "\r\n", else in "\n".
  SNamedStringList(unsigned caseSensitive, unsigned crlf) : SNLists(caseSensitive), crlf_(crlf) {}

  SNamedStringList(const SNamedStringList& other);
  SNamedStringList& operator=(const SNamedStringList& other);
  ~SNamedStringList() override;

  // Returns the names whose list is defined, in the order in which they were first used,
  // and an undefined list when there are none.
  [[nodiscard]] SStringList Keys() const override;

  // Returns the list of that name for editing; an undefined one is added where there is none.
  SStringList& operator[](const SString& name) {
    return _LookupOrAdd<SNamedStringListItem>(name).list;
  }
  template <TextKey Text>
  SStringList& operator[](const Text& name) {
    return _LookupOrAdd<SNamedStringListItem>(name).list;
  }

  // Returns the list of that name, an undefined one where there is none. Adds nothing.
  [[nodiscard]] virtual SStringList Get(const SString& name) const;

  // Returns the list of that name where it is, null when there is none; it makes no string of
  // a view. The list ends with its entry.
  template <TextKey Text>
  [[nodiscard]] const SStringList* Find(const Text& name) const {
    const auto* const item = _Lookup<SNamedStringListItem>(name);
    return item == nullptr ? nullptr : &item->list;
  }
  [[nodiscard]] const SStringList* Find(const SString& name) const { return Find(name.View()); }

  // Appends to the list of each name of `other` those of its values that are not in it yet;
  // one that `other` has twice is appended twice. A name that is not among Keys(), spelt
  // exactly so, gets the list of `other` in place of what it had. Takes linear time.
  SNamedStringList& operator+=(const SNamedStringList& other);

  // Which line end the text form has: not 0 for "\r\n".
  [[nodiscard]] unsigned Crlf() const { return crlf_; }

 private:
  void _CopyEntries(const SNamedStringList& other);

  unsigned crlf_;
};

// The text form. Each value is a line: the name, a blank, the value. Lines that begin with a
// blank or a tab go on with the value before them, the line end between; they are how a value
// of several lines is written and read. Nothing is escaped, so what is written reads back
// equal where
//
//   - no name is empty, has a blank or begins with a tab, and names and values have no line
//     end of the list's own kind, but in values one that a blank or a tab follows;
//   - no list is defined and empty: it is written as one empty value;
//   - both lists have the same `crlf`: a line that ends in "\r\n", read by one that knows
//     "\n", keeps its "\r";
//   - both compare names alike, or no two names differ only in case.

// Writes `list` behind what is in `text` already, wholly or, without memory, not at all.
MAILHEARTH_EXPORT SString& operator<<(SString& text, const SNamedStringList& list);

// Empties `list`, then reads `text` into it. No text is refused: a line without a blank, an
// empty one too, is a whole value of the name before it; where there is none, as on the first
// line, the name is the empty one. A first line that begins with a blank is a value of that
// name too, without the blank. The last line may end without a line end.
//
// Takes time linear in the text, unless its names have been chosen against the table.
MAILHEARTH_EXPORT const SString& operator>>(const SString& text, SNamedStringList& list);

}  // namespace mailhearth

#endif  // MAILHEARTH_TABLES_SNAMEDSTRINGLIST_H
