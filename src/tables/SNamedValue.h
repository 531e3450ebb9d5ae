// SNamedValue finds an integer by a name. The value -1 stands for "none": a name that has it
// cannot be told from one that is absent, is not among Keys() and not copied.
//
//   SNamedValue hits(1);                         // names compare exactly
//   ++hits["example.org"];                       // a new name begins with 0
//   int none = hits.Get("example.com");          // -1, and the name is not added
//   for (const SString& name : hits.Keys()) Print(name, hits.Get(name));
//
// A reference that [] returns stays good until the entry is deleted, whatever is added. An
// assignment replaces all entries and the flag, but names go on being compared as they were:
// known and kept. Where it finds no memory, it throws std::bad_alloc and keeps what it has
// copied so far.

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
  // Empty. With `caseSensitive` 0, names compare without regard to case.
  explicit SNamedValue(unsigned caseSensitive) : SNLists(caseSensitive) {}

  SNamedValue(const SNamedValue& other);
  SNamedValue& operator=(const SNamedValue& other);
  ~SNamedValue() override;

  // Returns the names whose value is not -1, in the order in which they were first used,
  // and an undefined list when there are none.
  [[nodiscard]] SStringList Keys() const override;

  // Returns the value of that name for editing; 0 is added where there is none.
  int& operator[](const SString& name) { return _LookupOrAdd<SNamedValueItem>(name).value; }
  template <TextKey Text>
  int& operator[](const Text& name) {
    return _LookupOrAdd<SNamedValueItem>(name).value;
  }

  // Returns the value of that name, -1 where there is none. Adds nothing.
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
