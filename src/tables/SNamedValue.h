// SNamedValue finds integers by name. The value -1 means "none": a name with this value counts
// as absent; it is not among Keys() and not copied.
//
//   SNamedValue hits(1);                         // names compare exactly
//   ++hits["example.org"];                       // a new name begins with 0
//   int none = hits.Get("example.com");          // -1, and the name is not added
//   for (const SString& name : hits.Keys()) Print(name, hits.Get(name));
//
// A reference from [] stays valid until the entry is deleted; adding others does not affect
// it. Known and kept: an assignment replaces all entries and the flag, but names are still
// compared as before. If an assignment finds no memory, it throws std::bad_alloc and keeps the
// entries copied so far.

#ifndef MAILHEARTH_TABLES_SNAMEDVALUE_H
#define MAILHEARTH_TABLES_SNAMEDVALUE_H

#include <string_view>

#include "../lists/SStringList.h"
#include "../strings/Export.h"
#include "../strings/SString.h"
#include "SNLists.h"
#include "STable.h"

inline namespace mailhearth {

// An entry of the table.
struct MAILHEARTH_EXPORT SNamedValueItem : STableItem {
  int value = 0;  // -1 for none

  ~SNamedValueItem() override;
};

class MAILHEARTH_EXPORT SNamedValue : public SNLists {
 public:
  // Empty. With `caseSensitive` 0, comparing names ignores case.
  explicit SNamedValue(unsigned caseSensitive) : SNLists(caseSensitive) {}

  SNamedValue(const SNamedValue& other);
  SNamedValue& operator=(const SNamedValue& other);
  ~SNamedValue() override;

  // Returns the names whose values are not -1, in the order in which they were first used; an
  // undefined list when there are none.
  [[nodiscard]] SStringList Keys() const override;

  // Returns the value of the name for editing; adds 0 when there is none.
  int& operator[](const SString& name) { return _LookupOrAdd<SNamedValueItem>(name).value; }
  template <TextKey Text>
  int& operator[](const Text& name) {
    return _LookupOrAdd<SNamedValueItem>(name).value;
  }

  // Returns the value of the name, -1 when there is none. Adds nothing.
  [[nodiscard]] int Get(const SString& name) const { return _Get(name.View()); }
  template <TextKey Text>
  [[nodiscard]] int Get(const Text& name) const {
    return _Get(KeyView(name));
  }

 private:
  [[nodiscard]] int _Get(std::string_view name) const;
  void _CopyEntries(const SNamedValue& other);
};

}  // namespace mailhearth

#endif  // MAILHEARTH_TABLES_SNAMEDVALUE_H
