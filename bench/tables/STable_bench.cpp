// STable beside hash tables to which a vector gives the order of insertion:
// std::unordered_map, QHash and absl::flat_hash_map.
//
//   insert   all keys into an empty table, which is destroyed again
//   hit      every key, in another order than they were inserted in
//   miss     as many keys that are not there
//   walk     over keys and values in the order of insertion
//
// Keys are looked up by an object of the table's own kind of string; "view" is no peer but our
// look-up by a std::string_view.

#include <absl/container/flat_hash_map.h>
#include <benchmark/benchmark.h>

#include <QByteArray>
#include <QHash>
#include <QVector>
#include <algorithm>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "tables/STable.h"

namespace {

constexpr int kNone = -1;

// What the tables call the same things.
struct Ours {
  using Key = SString;
  struct Entry : STableItem {
    explicit Entry(int v) : value(v) {}
    int value;
  };
  void Insert(const SString& key, int value) { table.Add(key, new Entry(value)); }
  template <class Text>
  int Find(const Text& key) const {
    const STableItem* const found = table.Lookup(key);
    return found == nullptr ? kNone : static_cast<const Entry*>(found)->value;
  }
  template <class Visit>
  void Walk(Visit visit) const {
    for (const STableItem& item : table) {
      visit(item.key.View(), static_cast<const Entry&>(item).value);
    }
  }
  STable table{0, 1};
};

// Its entries stay where they are, so the order is one of pointers.
struct Standard {
  using Key = std::string;
  using Map = std::unordered_map<std::string, int>;
  void Insert(const std::string& key, int value) {
    const auto [at, added] = map.insert_or_assign(key, value);
    if (added) order.push_back(&*at);
  }
  int Find(const std::string& key) const {
    const auto found = map.find(key);
    return found == map.end() ? kNone : found->second;
  }
  template <class Visit>
  void Walk(Visit visit) const {
    for (const Map::value_type* const entry : order) visit(entry->first, entry->second);
  }
  Map map;
  std::vector<const Map::value_type*> order;
};

// Theirs may move, so the table tells the place in a vector of them.
struct Qt {
  using Key = QByteArray;
  void Insert(const QByteArray& key, int value) {
    const int next = order.size();
    int& place = map[key];  // 0 if new
    if (place == 0) {
      place = next + 1;
      order.append({key, value});
    } else {
      order[place - 1].second = value;
    }
  }
  int Find(const QByteArray& key) const {
    const int place = map.value(key);
    return place == 0 ? kNone : order[place - 1].second;
  }
  template <class Visit>
  void Walk(Visit visit) const {
    for (const auto& [key, value] : order) {
      visit({key.constData(), static_cast<std::size_t>(key.size())}, value);
    }
  }
  QHash<QByteArray, int> map;
  QVector<std::pair<QByteArray, int>> order;
};

struct Abseil {
  using Key = std::string;
  void Insert(const std::string& key, int value) {
    const auto [at, added] = map.try_emplace(key, order.size());
    if (added) {
      order.emplace_back(key, value);
    } else {
      order[at->second].second = value;
    }
  }
  int Find(const std::string& key) const {
    const auto found = map.find(key);
    return found == map.end() ? kNone : order[found->second].second;
  }
  template <class Visit>
  void Walk(Visit visit) const {
    for (const auto& [key, value] : order) visit(key, value);
  }
  absl::flat_hash_map<std::string, std::size_t> map;
  std::vector<std::pair<std::string, int>> order;
};

// Addresses, no two the same: the position is in the middle of each.
std::vector<std::string> Texts(std::int64_t n, const std::string& domain) {
  std::mt19937 random(1);
  std::vector<std::string> texts;
  for (std::int64_t i = 0; i < n; ++i) {
    texts.push_back(std::to_string(random()) + '.' + std::to_string(i) + '@' + domain);
  }
  return texts;
}

template <class Key>
Key Make(const std::string& text) {
  return Key(std::string_view(text));
}
template <>
QByteArray Make<QByteArray>(const std::string& text) {
  return QByteArray::fromStdString(text);
}

// Objects of their own for the texts, which outlive them.
template <class Key>
std::vector<Key> Keys(const std::vector<std::string>& texts) {
  std::vector<Key> keys;
  keys.reserve(texts.size());
  for (const std::string& text : texts) keys.push_back(Make<Key>(text));
  return keys;
}

std::vector<std::string> Shuffled(std::vector<std::string> texts) {
  std::shuffle(texts.begin(), texts.end(), std::mt19937(2));
  return {texts.begin(), texts.end()};  // copies, so that they lie in this order in memory too
}

template <class Type>
void Fill(Type& table, const std::vector<typename Type::Key>& keys) {
  int value = 0;
  for (const auto& key : keys) table.Insert(key, value++);
}

// Whether the table holds the texts in their order, each with its position.
template <class Type>
bool Holds(const Type& table, const std::vector<std::string>& texts) {
  std::size_t i = 0;
  bool same = true;
  table.Walk([&](std::string_view key, int value) {
    same = same && i < texts.size() && key == texts[i] && static_cast<std::size_t>(value) == i;
    ++i;
  });
  return same && i == texts.size();
}

template <class Type>
void Insert(benchmark::State& state) {
  const std::vector<std::string> texts = Texts(state.range(0), "example.org");
  const auto keys = Keys<typename Type::Key>(texts);
  Type checked;
  Fill(checked, keys);
  Fill(checked, keys);  // what is there already is not added again
  if (!Holds(checked, texts)) state.SkipWithError("wrong answer");
  for (auto _ : state) {
    Type table;
    Fill(table, keys);
    benchmark::DoNotOptimize(table);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <class Type, class Key>
void Find(benchmark::State& state, const std::vector<std::string>& wanted, std::int64_t expected) {
  const std::vector<std::string> texts = Texts(state.range(0), "example.org");
  Type table;
  int value = 0;  // each key is made when it is inserted, as by one who reads them
  for (const std::string& text : texts) table.Insert(Make<typename Type::Key>(text), value++);
  const auto keys = Keys<Key>(wanted);
  for (auto _ : state) {
    std::int64_t sum = 0;
    for (const Key& key : keys) sum += table.Find(key);
    if (sum != expected) state.SkipWithError("wrong answer");
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <class Type, class Key = typename Type::Key>
void Hit(benchmark::State& state) {
  const std::int64_t n = state.range(0);
  Find<Type, Key>(state, Shuffled(Texts(n, "example.org")), n * (n - 1) / 2);
}

template <class Type, class Key = typename Type::Key>
void Miss(benchmark::State& state) {
  const std::int64_t n = state.range(0);
  Find<Type, Key>(state, Shuffled(Texts(n, "example.net")), n * kNone);
}

template <class Type>
void Walk(benchmark::State& state) {
  const std::vector<std::string> texts = Texts(state.range(0), "example.org");
  Type table;
  Fill(table, Keys<typename Type::Key>(texts));
  if (!Holds(table, texts)) state.SkipWithError("wrong answer");
  for (auto _ : state) {
    table.Walk([](std::string_view key, int value) {
      char last = key.back();
      benchmark::DoNotOptimize(last);
      benchmark::DoNotOptimize(value);
    });
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

#define ROW(function, name, what) BENCHMARK(function)->Name(name "/" what)->Arg(100)->Arg(100000)
#define PEERS(function, name)                          \
  ROW(function<Ours>, name, "mailhearth");             \
  ROW(function<Standard>, name, "std::unordered_map"); \
  ROW(function<Qt>, name, "QHash");                    \
  ROW(function<Abseil>, name, "absl::flat_hash_map")

PEERS(Insert, "insert");
PEERS(Hit, "hit");
BENCHMARK(Hit<Ours, std::string_view>)->Name("hit/view")->Arg(100)->Arg(100000);
PEERS(Miss, "miss");
BENCHMARK(Miss<Ours, std::string_view>)->Name("miss/view")->Arg(100)->Arg(100000);
PEERS(Walk, "walk");

}  // namespace
