// Buckets of chains. The hash has no regard to case even where the keys have, so that one
// function serves both kinds of table; it is kept with the entry, so that a chain is walked
// and a table enlarged without reading the keys.

#include "STable.h"

#include <algorithm>
#include <array>
#include <limits>

#include "../strings/Blocks.h"
#include "../strings/ByteWords.h"
#include "../strings/Characters.h"
#include "../strings/Sizes.h"

inline namespace mailhearth {

namespace {

constexpr int kDefaultSize = 7;

// Primes, each a little above twice the one before.
constexpr std::array kSizes = {7, 17, 37, 79, 163, 331, 673, 1361, 2729, 5471, 10949};

static_assert(kSizes.front() == kDefaultSize && std::ranges::is_sorted(kSizes));

// Returns the number of buckets that follows `size`: at least twice as many, a number of the
// series as far as that reaches.
int SizeAfter(int size) {
  const std::int64_t twice = std::int64_t{size} * 2;
  const auto* const found = std::ranges::lower_bound(kSizes, twice);
  if (found != kSizes.end()) return *found;
  return static_cast<int>(std::min<std::int64_t>(twice, std::numeric_limits<int>::max()));
}

constexpr std::uint32_t kFactor = 33;

constexpr std::uint32_t Power(std::size_t n) {
  std::uint32_t power = 1;
  for (; n > 0; --n) power *= kFactor;
  return power;
}

// Returns the hash of the bytes of a word. Neighbours are brought together in sums of 16 bits,
// those in sums of 32, all of them at once; none is too large for its place.
std::uint32_t HashOfWord(std::uint64_t word) {
  constexpr std::uint64_t kBytes = 0x00FF00FF00FF00FF, kPairs = 0x0000FFFF0000FFFF;
  const std::uint64_t bytes = LowerWord(word);
  const std::uint64_t pairs = (bytes & kBytes) * kFactor + ((bytes >> 8) & kBytes);
  const std::uint64_t fours = (pairs & kPairs) * Power(2) + ((pairs >> 16) & kPairs);
  return static_cast<std::uint32_t>(fours) * Power(4) + static_cast<std::uint32_t>(fours >> 32);
}

std::unique_ptr<STableItem* []> EmptyBuckets(int size) {
  return std::make_unique<STableItem*[]>(static_cast<std::size_t>(size));
}

}  // namespace

STableItem::STableItem() : key(SStringRep::Undefined()) {}

STableItem::~STableItem() = default;

STable::STable(int size, unsigned int caseSensitive)
    : size_(size > 0 ? size : kDefaultSize), caseSensitive_(caseSensitive) {
  buckets_ = EmptyBuckets(size_);
}

STable::~STable() { Reset(); }

void STable::Reset() {
  sentinel_.listNext = sentinel_.listPrev = &sentinel_;
  count_ = 0;
  for (int i = 0; i < size_; ++i) {
    STableItem* item = std::exchange(buckets_[static_cast<std::size_t>(i)], nullptr);
    while (item != nullptr) delete std::exchange(item, item->chainNext);
  }
}

void STable::Add(const SString& key, STableItem* item) {
  std::unique_ptr<STableItem> owned(item);
  if (std::int64_t{size_} * 2 < count_) _Enlarge();
  const int more = CheckedLength(std::int64_t{count_} + 1);
  item->key = key;
  item->hash = _Hash(key.View());
  STableItem** const link = _FindLink(item->hash, key.View());
  const std::unique_ptr<STableItem> old(*link);  // destroyed last: `key` may be its own
  if (old != nullptr) {
    item->chainNext = old->chainNext;
    item->listNext = old->listNext;
    item->listPrev = old->listPrev;
  } else {
    item->chainNext = nullptr;
    item->listNext = &sentinel_;
    item->listPrev = sentinel_.listPrev;
    count_ = more;
  }
  *link = item->listPrev->listNext = item->listNext->listPrev = owned.release();
}

int STable::Remove(const SString& key) {
  STableItem** const link = _FindLink(_Hash(key.View()), key.View());
  const std::unique_ptr<STableItem> old(*link);
  if (old == nullptr) return 0;
  *link = old->chainNext;
  old->listPrev->listNext = old->listNext;
  old->listNext->listPrev = old->listPrev;
  --count_;
  return 1;
}

SStringList STable::Keys() const {
  SStringList keys;
  for (const STableItem& item : *this) keys.Push(item.key);
  return keys;
}

std::uint32_t STable::_Hash(std::string_view key) {
  std::uint32_t hash = 0;
  for (; key.size() >= kWord; key.remove_prefix(kWord)) {
    hash = hash * Power(kWord) + HashOfWord(WordAt(key.data()));
  }
  for (const char c : key) hash = hash * kFactor + static_cast<unsigned char>(LowerByte(c));
  return hash;
}

bool STable::_KeyCompare(const STableItem* item, std::uint32_t hash, std::string_view key) const {
  if (item->hash != hash) return false;
  const std::string_view own = item->key.View();
  if (caseSensitive_ != 0) return own == key;
  return own.size() == key.size() && EqualNoCase(own, key);
}

STableItem* STable::_Lookup(std::string_view key) const { return *_FindLink(_Hash(key), key); }

STableItem*& STable::_Bucket(std::uint32_t hash) const {
  return buckets_[hash % static_cast<std::uint32_t>(size_)];
}

STableItem** STable::_FindLink(std::uint32_t hash, std::string_view key) const {
  STableItem** link = &_Bucket(hash);
  while (*link != nullptr && !_KeyCompare(*link, hash, key)) link = &(*link)->chainNext;
  return link;
}

void STable::_Enlarge() {
  const int oldSize = size_;
  const int newSize = SizeAfter(oldSize);
  const auto old = std::exchange(buckets_, EmptyBuckets(newSize));
  size_ = newSize;
  for (int i = 0; i < oldSize; ++i) {
    STableItem* item = old[static_cast<std::size_t>(i)];
    while (item != nullptr) {  // each to the front, so a chain comes out in reverse
      STableItem*& head = _Bucket(item->hash);
      STableItem* const next = std::exchange(item->chainNext, head);
      head = std::exchange(item, next);
    }
  }
}

}  // namespace mailhearth
