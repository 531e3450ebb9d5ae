// SNLists is the base class of the containers that find values by name: it holds the table of
// names and compares names. SNamedStringList and SNamedValue derive from it.
//
// Names are listed in the order in which they were first used. With `caseSensitive` 0, names
// that differ only in the case of the letters A to Z are the same, and the spelling used first
// is kept. The costs that STable.h describes for keys apply to names.

#ifndef MAILHEARTH_TABLES_SNLISTS_H
#define MAILHEARTH_TABLES_SNLISTS_H

#include "../lists/SStringList.h"
#include "../strings/Export.h"
#include "../strings/SString.h"
#include "STable.h"

inline namespace mailhearth {

class MAILHEARTH_EXPORT SNLists {
 public:
  // Empty. The table compares names by this flag for its whole lifetime.
  explicit SNLists(unsigned caseSensitive)
      : caseSensitive_(caseSensitive), table_(0, caseSensitive) {}

  virtual ~SNLists();

  // Returns the names that have a value; an undefined list when there are none.
  [[nodiscard]] virtual SStringList Keys() const = 0;

  // Removes the entry of a name, if there is one; references to its value become invalid.
  virtual void Delete(const SString& name);

  // Removes all entries.
  virtual void Reset();

  // The flag given to the constructor or, after an assignment, the flag of the object
  // assigned; names are still compared by the flag given to the constructor.
  [[nodiscard]] unsigned CaseSensitive() const { return caseSensitive_; }

 protected:
  // Copy only the flag: each derived class copies its own entries.
  SNLists(const SNLists& other) : SNLists(other.caseSensitive_) {}
  SNLists& operator=(const SNLists& other) {
    caseSensitive_ = other.caseSensitive_;
    return *this;
  }

  // Returns the entry of a name; null when there is none. `Item` is the only class of entries
  // that the derived class adds.
  template <class Item, class Name>
  [[nodiscard]] Item* _Lookup(const Name& name) const {
    return static_cast<Item*>(table_.Lookup(name));
  }

  // The same, but adds an entry when there is none; a name given as a view is copied.
  template <class Item, class Name>
  [[nodiscard]] Item& _LookupOrAdd(const Name& name) {
    if (Item* const found = _Lookup<Item>(name)) return *found;
    const SString& key = _Name(name);
    auto* const added = new Item;
    table_.Add(key, added);
    return *added;
  }

  // The entries.
  [[nodiscard]] const STable& _Table() const { return table_; }

 private:
  static const SString& _Name(const SString& name) { return name; }
  template <TextKey Text>
  static SString _Name(const Text& name) {
    return SString(KeyView(name));
  }

  unsigned caseSensitive_;
  STable table_;
};

}  // namespace mailhearth

#endif  // MAILHEARTH_TABLES_SNLISTS_H
