// STable finds entries by a string, and remembers the order in which their keys were first
// added. It is what the named containers (SNLists.h) stand on; an entry carries its value in
// a class derived from STableItem.
//
// The table owns its entries: each is made with `new`, given to one table, and destroyed
// through its virtual destructor when it is replaced or removed and when the table is reset
// or goes. An entry stays where it is for as long as it lives.
//
//   struct Port : STableItem { int number = 0; };
//   STable ports(0, 0);                                   // no regard to case
//   const SString smtp("smtp");                           // first, as it may find no memory
//   auto* const port = new Port;
//   port->number = 25;
//   ports.Add(smtp, port);                                // now it is the table's
//   if (STableItem* found = ports.Lookup("SMTP")) Use(static_cast<Port*>(found)->number);
//
// Look-ups, additions and removals take time for the length of the key and, on the average,
// for two entries. Whoever chooses the keys can spoil the average: the hash is simple, and
// of keys that all have the same one, each operation passes all added before it, comparing
// their bytes. A thousand such keys cost as much as twenty thousand others, thirty thousand
// take seconds, and four times as long for each doubling: limit the number of keys that are
// accepted from outside.
//
// Neither copyable nor movable, and not for use between threads.

#ifndef MAILHEARTH_TABLES_STABLE_H
#define MAILHEARTH_TABLES_STABLE_H

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <string_view>
#include <type_traits>
#include <utility>

#include "../lists/SStringList.h"
#include "../strings/Export.h"
#include "../strings/SString.h"

inline namespace mailhearth {

// What can name an entry without being made a string first: views, std::string, literals. A
// null pointer is the empty text.
template <class Text>
concept TextKey =
    std::convertible_to<const Text&, std::string_view> && !std::same_as<Text, std::nullptr_t>;

// Returns the bytes of a key.
template <TextKey Text>
[[nodiscard]] constexpr std::string_view KeyView(const Text& text) {
  if constexpr (std::is_pointer_v<Text>) {
    if (text == nullptr) return {};
  }
  return text;
}

// An entry. The table fills in all fields; others may read them.
struct MAILHEARTH_EXPORT STableItem {
  STableItem* chainNext = nullptr;  // down the chain of its bucket, which a null ends
  STableItem* listNext = this;      // in the order of keys, a ring with the table's own
  STableItem* listPrev = this;      // entry between the last and the first
  SString key;                      // as it was added last
  std::uint32_t hash = 0;           // of the key

  STableItem();
  STableItem(const STableItem&) = delete;
  STableItem& operator=(const STableItem&) = delete;
  virtual ~STableItem();
};

class MAILHEARTH_EXPORT STable {
 public:
  // Walks over the entries in the order in which their keys were first added. Adding and
  // replacing other entries does not disturb it; it ends with its own entry.
  class Iterator {
   public:
    using value_type = STableItem;
    using difference_type = std::ptrdiff_t;
    using reference = const STableItem&;
    using pointer = const STableItem*;
    using iterator_category = std::forward_iterator_tag;

    Iterator() = default;
    explicit Iterator(const STableItem* item) : item_(item) {}

    reference operator*() const { return *item_; }
    pointer operator->() const { return item_; }
    Iterator& operator++() {
      item_ = item_->listNext;
      return *this;
    }
    Iterator operator++(int) { return std::exchange(*this, Iterator(item_->listNext)); }
    bool operator==(const Iterator& other) const = default;

   private:
    const STableItem* item_ = nullptr;
  };

  // As the standard names it.
  using const_iterator = Iterator;

  // An empty table of `size` buckets, of 7 when `size` is not positive. With `caseSensitive`
  // 0, keys that differ only in the case of the letters A to Z are the same.
  STable(int size, unsigned int caseSensitive);

  STable(const STable&) = delete;
  STable& operator=(const STable&) = delete;
  virtual ~STable();

  // Destroys all entries. The number of buckets stays.
  void Reset();

  // Returns the entry of that key; null when there is none. It belongs to the table.
  [[nodiscard]] STableItem* Lookup(const SString& key) const { return _Lookup(key.View()); }
  template <TextKey Text>
  [[nodiscard]] STableItem* Lookup(const Text& key) const {
    return _Lookup(KeyView(key));
  }

  // Stores `item` under `key`. It takes the place of the entry that has the key, if there is
  // one, in the order of keys too, and that entry is destroyed; else it comes last. The key
  // kept is this one, also where it differs in case from the one before.
  //
  // The table owns `item` from the call on, even if that finds no memory and throws.
  // Needs: an item made with `new` that is in no table.
  void Add(const SString& key, STableItem* item);

  // Destroys the entry of that key.
  // Returns whether there was one: 1 or 0.
  int Remove(const SString& key);

  // Returns the keys in the order in which they were first added; an undefined list when
  // there are none.
  [[nodiscard]] SStringList Keys() const;

  // Number of buckets, and of entries.
  [[nodiscard]] int Size() const { return size_; }
  [[nodiscard]] int Count() const { return count_; }

  // From the first entry to the last.
  [[nodiscard]] Iterator begin() const { return Iterator(sentinel_.listNext); }
  [[nodiscard]] Iterator end() const { return Iterator(&sentinel_); }

 private:
  friend class STablePeek;  // the tests' eye

  static std::uint32_t _Hash(std::string_view key);
  [[nodiscard]] bool _KeyCompare(const STableItem* item, std::uint32_t hash,
                                 std::string_view key) const;
  [[nodiscard]] STableItem* _Lookup(std::string_view key) const;

  // Returns the head of the bucket of a hash.
  [[nodiscard]] STableItem*& _Bucket(std::uint32_t hash) const;

  // Returns the link that leads to the entry of a key; the one that ends the bucket's chain
  // when there is none.
  [[nodiscard]] STableItem** _FindLink(std::uint32_t hash, std::string_view key) const;

  void _Enlarge();

  std::unique_ptr<STableItem*[]> buckets_;
  int size_;
  int count_ = 0;
  STableItem sentinel_;
  unsigned int caseSensitive_;
};

}  // namespace mailhearth

#endif  // MAILHEARTH_TABLES_STABLE_H
