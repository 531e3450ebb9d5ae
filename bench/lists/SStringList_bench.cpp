// SStringList beside std::vector and std::list of std::string, and QByteArrayList.

#include <benchmark/benchmark.h>

#include <QByteArrayList>
#include <algorithm>
#include <list>
#include <random>
#include <string>
#include <vector>

#include "lists/SStringList.h"

namespace {

// What the four types call the same things.
struct Ours {
  void Push(const std::string& s) { list.Push(s.c_str()); }
  std::size_t Join() const { return static_cast<std::size_t>(list.Join(", ").Length()); }
  void Sort() { list.Sort(); }
  bool Starts(const std::string& s) const { return list.Get(0) == s.c_str(); }
  SStringList list;
};

template <class Container>
struct Standard {
  void Push(const std::string& s) { list.push_back(s); }
  std::size_t Join() const {
    std::size_t size = 0;
    for (const std::string& s : list) size += s.size() + 2;
    std::string joined;
    joined.reserve(size);
    for (const std::string& s : list) {
      if (!joined.empty()) joined += ", ";
      joined += s;
    }
    benchmark::DoNotOptimize(joined);
    return joined.size();
  }
  void Sort() {
    if constexpr (requires { list.sort(); }) {
      list.sort();
    } else {
      std::sort(list.begin(), list.end());
    }
  }
  bool Starts(const std::string& s) const { return list.front() == s; }
  Container list;
};
using Vector = Standard<std::vector<std::string>>;
using List = Standard<std::list<std::string>>;

struct Qt {
  void Push(const std::string& s) { list.append(QByteArray(s.c_str())); }
  std::size_t Join() const { return static_cast<std::size_t>(list.join(", ").size()); }
  void Sort() { std::sort(list.begin(), list.end()); }
  bool Starts(const std::string& s) const { return list.first() == s.c_str(); }
  QByteArrayList list;
};

// Texts as they are in a mail server: some share their beginning, all are of middling size.
std::vector<std::string> Texts(std::int64_t n, int shape) {
  std::mt19937 random(1);
  std::vector<std::string> texts;
  for (std::int64_t i = 0; i < n; ++i) {
    const std::int64_t number = shape == 0   ? static_cast<std::int64_t>(random())
                                : shape == 1 ? 1'000'000'000 + i
                                             : 7;
    texts.push_back(std::to_string(number) + ".user@example.org");
  }
  return texts;
}

template <class Type>
Type Filled(const std::vector<std::string>& texts) {
  Type list;
  for (const std::string& text : texts) list.Push(text);
  return list;
}

template <class Type>
void Push(benchmark::State& state) {
  const std::vector<std::string> texts = Texts(state.range(0), 0);
  for (auto _ : state) {
    Type list = Filled<Type>(texts);
    benchmark::DoNotOptimize(list);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <class Type>
void Join(benchmark::State& state) {
  const std::vector<std::string> texts = Texts(state.range(0), 0);
  const Type list = Filled<Type>(texts);
  if (list.Join() != Filled<Vector>(texts).Join()) state.SkipWithError("wrong answer");
  for (auto _ : state) benchmark::DoNotOptimize(list.Join());
}

template <class Type>
void Copy(benchmark::State& state) {
  const Type list = Filled<Type>(Texts(state.range(0), 0));
  for (auto _ : state) {
    Type copy = list;
    benchmark::DoNotOptimize(copy);
  }
}

template <class Type>
void CopyThenPush(benchmark::State& state) {
  const Type list = Filled<Type>(Texts(state.range(0), 0));
  for (auto _ : state) {
    Type copy = list;
    copy.Push("x");
    benchmark::DoNotOptimize(copy);
  }
}

template <class Type, int shape>
void Sort(benchmark::State& state) {
  const std::vector<std::string> texts = Texts(state.range(0), shape);
  const std::string least = *std::min_element(texts.begin(), texts.end());
  for (auto _ : state) {
    state.PauseTiming();
    Type list = Filled<Type>(texts);
    state.ResumeTiming();
    list.Sort();
    state.PauseTiming();
    if (!list.Starts(least)) state.SkipWithError("wrong answer");
    list = Type();
    state.ResumeTiming();
  }
}

#define PEERS(name, sizes, ...)                                     \
  BENCHMARK(__VA_ARGS__(Ours))->Name(name "/mailhearth")->sizes;    \
  BENCHMARK(__VA_ARGS__(Vector))->Name(name "/std::vector")->sizes; \
  BENCHMARK(__VA_ARGS__(List))->Name(name "/std::list")->sizes;     \
  BENCHMARK(__VA_ARGS__(Qt))->Name(name "/QByteArrayList")->sizes

#define PUSH(Type) Push<Type>
#define JOIN(Type) Join<Type>
#define COPY(Type) Copy<Type>
#define COPY_THEN_PUSH(Type) CopyThenPush<Type>
#define SORT_RANDOM(Type) Sort<Type, 0>
#define SORT_SORTED(Type) Sort<Type, 1>
#define SORT_EQUAL(Type) Sort<Type, 2>

PEERS("push", Arg(10)->Arg(100000), PUSH);
PEERS("join", Arg(10)->Arg(100000), JOIN);
PEERS("copy", Arg(10)->Arg(100000), COPY);
PEERS("copy_then_push", Arg(10)->Arg(100000), COPY_THEN_PUSH);
PEERS("sort_random", Arg(100000), SORT_RANDOM);
PEERS("sort_sorted", Arg(100000), SORT_SORTED);
PEERS("sort_equal", Arg(100000), SORT_EQUAL);

}  // namespace
