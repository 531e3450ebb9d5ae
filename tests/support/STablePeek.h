// What tests see of tables beyond their public face.

#ifndef MAILHEARTH_TESTS_SUPPORT_STABLEPEEK_H
#define MAILHEARTH_TESTS_SUPPORT_STABLEPEEK_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "tables/SIndexString.h"
#include "tables/STable.h"

inline namespace mailhearth {

class STablePeek {
 public:
  static std::uint32_t Hash(std::string_view key) { return STable::_Hash(key); }
  static void Enlarge(STable& table) { table._Enlarge(); }
  static const STableItem* Bucket(const STable& table, int i) {
    return table.buckets_[static_cast<std::size_t>(i)];
  }
  static const STableItem& Sentinel(const STable& table) { return table.sentinel_; }
};

class SIndexStringPeek {
 public:
  static int Room(const SIndexString& strings) {
    return static_cast<int>(strings.slots_.capacity());
  }
};

// The keys of a bucket's chain, from its head.
inline std::vector<std::string> Chain(const STable& table, int bucket) {
  std::vector<std::string> keys;
  const STableItem* item = STablePeek::Bucket(table, bucket);
  for (; item != nullptr; item = item->chainNext) keys.emplace_back(item->key.View());
  return keys;
}

// Returns "" if the table keeps what its fields promise, else what is wrong.
inline const char* Flaw(const STable& table) {
  int chained = 0;
  for (int i = 0; i < table.Size(); ++i) {
    const STableItem* item = STablePeek::Bucket(table, i);
    for (; item != nullptr; item = item->chainNext, ++chained) {
      if (item->hash != STablePeek::Hash(item->key.View())) return "an old hash";
      if (item->hash % static_cast<unsigned>(table.Size()) != static_cast<unsigned>(i)) {
        return "an entry in the wrong bucket";
      }
    }
  }
  if (chained != table.Count()) return "count and chains disagree";
  const STableItem* const sentinel = &STablePeek::Sentinel(table);
  const STableItem* item = sentinel;
  for (int n = table.Count(); n >= 0; --n, item = item->listNext) {
    if (item->listNext->listPrev != item || item->listPrev->listNext != item) {
      return "neighbours disagree";
    }
  }
  return item == sentinel ? "" : "the ring does not close after `count` entries";
}

}  // namespace mailhearth

#endif  // MAILHEARTH_TESTS_SUPPORT_STABLEPEEK_H
