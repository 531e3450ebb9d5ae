// STable is a hash table of entries by string keys. It remembers the order in which keys were
// first added. The named containers (SNLists.h) are built on it; an entry carries its value
// in a class derived from STableItem.
//
// The table owns its entries. Each is made with `new`, given to one table, and destroyed
// through its virtual destructor when it is replaced or removed, or when the table is reset
// or destroyed. An entry does not move while it exists.
//
//   struct Port : STableItem { int number = 0; };
//   STable ports(0, 0);                                   // no regard to case
//   const SString smtp("smtp");                           // first: it may find no memory
//   auto* const port = new Port;
//   port->number = 25;
//   ports.Add(smtp, port);                                // the table owns it now
//   if (STableItem* found = ports.Lookup("SMTP")) Use(static_cast<Port*>(found)->number);
//
// The time of a look-up, an addition or a removal is proportional to the key's length; two
// entries are visited on average. Whoever chooses the keys can spoil the average: the hash is
// simple, and keys with equal hashes share a chain, on which each operation compares the bytes
// of all keys added before. A thousand such keys cost as much as twenty thousand others,
// thirty thousand take seconds, and each doubling takes four times as long. So limit the
// number of keys that are accepted from outside.
//
// The hash of a key starts at 0 and becomes 33 times itself plus the byte, modulo 2^32, for
// each byte, with A to Z in lower case; the bucket is the hash modulo Size(). It folds case
// even if the table does not, so one function serves both kinds. Each entry stores it, so a
// walk along a chain reads only keys with the same hash, and a table that grows reads none.
// Known and kept: entries show their hashes and chains, programs may rely on both, and so a
// hash that withstands chosen keys cannot replace this one.
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

// Texts that serve as keys without conversion to a string: views, std::string, literals. A
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

// An entry. The table sets all fields; other code may read them.
struct MAILHEARTH_EXPORT STableItem {
  STableItem* chainNext = nullptr;  // the next entry in the chain of the bucket, or null
  STableItem* listNext = this;      // neighbours in the order of keys: a ring in which the
  STableItem* listPrev = this;      // table's sentinel stands between last and first entry
  SString key;                      // the key as last added
  std::uint32_t hash = 0;           // the hash of the key

  STableItem();
  STableItem(const STableItem&) = delete;
  STableItem& operator=(const STableItem&) = delete;
  virtual ~STableItem();
};

class MAILHEARTH_EXPORT STable {
 public:
  // Iterates over the entries in the order in which their keys were first added. It stays
  // valid while other entries are added or replaced, until its own entry is destroyed.
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

  // The standard's name for it.
  using const_iterator = Iterator;

  // An empty table of `size` buckets, of 7 when `size` is not positive. With `caseSensitive`
  // 0, keys that differ only in the case of the letters A to Z are the same.
  STable(int size, unsigned int caseSensitive);

  STable(const STable&) = delete;
  STable& operator=(const STable&) = delete;
  virtual ~STable();

  // Destroys all entries. The number of buckets stays.
  void Reset();

  // Returns the entry of the key, which the table owns; null when there is none.
  [[nodiscard]] STableItem* Lookup(const SString& key) const { return _Lookup(key.View()); }
  template <TextKey Text>
  [[nodiscard]] STableItem* Lookup(const Text& key) const {
    return _Lookup(KeyView(key));
  }

  // Stores `item` under `key`. If an entry has the key, `item` replaces it, in the order of
  // keys too, and the old entry is destroyed; else `item` comes last. The entry keeps this
  // `key`, even if it differs in case from the old one, and shares its bytes: store a copy of a
  // view, SString(key.View()).
  //
  // The table owns `item` from the call on, even if the call finds no memory and throws.
  // Needs: an item made with `new` that is in no table.
  void Add(const SString& key, STableItem* item);

  // Destroys the entry of the key.
  // Returns whether there was one: 1 or 0.
  int Remove(const SString& key);

  // Returns the keys in the order in which they were first added; an undefined list when
  // there are none.
  [[nodiscard]] SStringList Keys() const;

  // Number of buckets, number of entries.
  [[nodiscard]] int Size() const { return size_; }
  [[nodiscard]] int Count() const { return count_; }

  // Iterate from the first entry to the last.
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

  // Returns the link that points to the entry of a key; when there is none, the link that
  // ends the bucket's chain.
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
