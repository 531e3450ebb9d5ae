// SNLists is what the containers that find something by a name have in common: the table of
// names, and how names compare. SNamedStringList and SNamedValue are made of it.
//
// Names come in the order in which they were first used. With `caseSensitive` 0, names that
// differ only in the case of the letters A to Z are the same, and the form used first is the
// one kept. What STable.h says of the cost of names holds here too.

#ifndef MAILHEARTH_TABLES_SNLISTS_H
#define MAILHEARTH_TABLES_SNLISTS_H

#include "../lists/SStringList.h"
#include "../strings/Export.h"
#include "../strings/SString.h"
#include "STable.h"

inline namespace mailhearth {

class MAILHEARTH_EXPORT SNLists {
 public:
  // Empty. The table compares names by this flag for as long as it lives.
  explicit SNLists(unsigned caseSensitive)
      : caseSensitive_(caseSensitive), table_(0, caseSensitive) {}

  virtual ~SNLists();

  // Returns the names that have a value; an undefined list when there are none.
  [[nodiscard]] virtual SStringList Keys() const = 0;

  // Ends the entry of a name, if there is one, and references to its value with it.
  virtual void Delete(const SString& name);

  // Removes all entries.
  virtual void Reset();

  // The flag given when this object was made or, after an assignment, that of the object
  // assigned; names go on being compared by the former.
  [[nodiscard]] unsigned CaseSensitive() const { return caseSensitive_; }

 protected:
  // Copy the flag alone: each derived class copies its entries itself.
  SNLists(const SNLists& other) : SNLists(other.caseSensitive_) {}
  SNLists& operator=(const SNLists& other) {
    caseSensitive_ = other.caseSensitive_;
    return *this;
  }

  // Returns the entry of a name, of the one class of entries that the derived class adds;
  // null when there is none.
  template <class Item, class Name>
  [[nodiscard]] Item* _Lookup(const Name& name) const {
    return static_cast<Item*>(table_.Lookup(name));
  }

  // The same, but adds an entry when there is none; its name is copied from a view.
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
