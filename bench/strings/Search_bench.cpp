// Searching, comparing, changing case, slicing and reading lines, beside std::string,
// QByteArray, Abseil and the C library.

#include <absl/strings/ascii.h>
#include <absl/strings/match.h>
#include <benchmark/benchmark.h>
#include <string.h>   // memmem, memrchr: not in <cstring>
#include <strings.h>  // strncasecmp

#include <QByteArray>
#include <cstring>
#include <sstream>
#include <string>

#include "strings/SString.h"

namespace {

// A text of many lines in which the needle stands only at the end or the beginning.
std::string Haystack(std::int64_t size) {
  constexpr std::string_view kLine =
      "Received: from mail.example.org by mx.example.net; id 12345\n";
  std::string text;
  while (static_cast<std::int64_t>(text.size()) < size) text += kLine;
  text.resize(static_cast<std::size_t>(size));
  return text;
}

constexpr const char* kNeedle = "needle in";

// One type's text, needle and answers, so that each benchmark is written once.
struct Ours {
  explicit Ours(const std::string& text) : s(std::string_view(text)) {}
  int First(const char* t) const { return s.Index(t, 0); }
  int Last(const char* t) const { return s.RIndex(t, 0); }
  int First(char c) const { return s.Index(c, 0); }
  int Last(char c) const { return s.RIndex(c, 0); }
  int Count(const char* t) const { return s.Count(t); }
  int Same(const Ours& o) const { return s.CompareNoCase(o.s); }
  int Lower() { return s.LowerCase()[0]; }
  int Middle(int from, int n) const { return s.Segment(from, n).Length(); }
  SString s;
};

struct Standard {
  explicit Standard(const std::string& text) : s(text) {}
  int First(const char* t) const { return static_cast<int>(s.find(t)); }
  int Last(const char* t) const { return static_cast<int>(s.rfind(t)); }
  int First(char c) const { return static_cast<int>(s.find(c)); }
  int Last(char c) const { return static_cast<int>(s.rfind(c)); }
  int Count(const char* t) const {
    int count = 0;
    for (std::size_t at = 0; (at = s.find(t, at)) != s.npos; ++at) ++count;
    return count;
  }
  int Same(const Standard& o) const { return absl::EqualsIgnoreCase(s, o.s); }
  int Lower() {
    absl::AsciiStrToLower(&s);
    return s[0];
  }
  int Middle(int from, int n) const {
    return static_cast<int>(
        s.substr(static_cast<std::size_t>(from), static_cast<std::size_t>(n)).size());
  }
  std::string s;
};

struct Qt {
  explicit Qt(const std::string& text) : s(QByteArray::fromStdString(text)) {}
  int First(const char* t) const { return s.indexOf(t); }
  int Last(const char* t) const { return s.lastIndexOf(t); }
  int First(char c) const { return s.indexOf(c); }
  int Last(char c) const { return s.lastIndexOf(c); }
  int Count(const char* t) const { return s.count(t); }
  int Same(const Qt& o) const { return s.compare(o.s, ::Qt::CaseInsensitive) == 0; }
  int Lower() {
    s = std::move(s).toLower();
    return s[0];
  }
  int Middle(int from, int n) const { return s.mid(from, n).size(); }
  QByteArray s;
};

// The C library's functions, called on the bytes.
struct C {
  explicit C(const std::string& text) : s(text) {}
  int First(const char* t) const { return At(::memmem(s.data(), s.size(), t, std::strlen(t))); }
  int First(char c) const { return At(std::memchr(s.data(), c, s.size())); }
  int Last(char c) const { return At(::memrchr(s.data(), c, s.size())); }
  int Same(const C& o) const {
    return s.size() == o.s.size() && ::strncasecmp(s.data(), o.s.data(), s.size()) == 0;
  }
  int Lower() {
    absl::AsciiStrToLower(&s);
    return s[0];
  }
  int At(const void* found) const {
    return found == nullptr ? -1 : static_cast<int>(static_cast<const char*>(found) - s.data());
  }
  std::string s;
};

template <class Type, class Work>
void Run(benchmark::State& state, const std::string& text, int expected, Work work) {
  Type s(text);
  if (work(s) != expected) state.SkipWithError("wrong answer");
  for (auto _ : state) {
    benchmark::DoNotOptimize(s);
    int answer = work(s);
    benchmark::DoNotOptimize(answer);
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

template <class Type>
void Find(benchmark::State& state) {
  const std::string text = Haystack(state.range(0)) + kNeedle;
  Run<Type>(state, text, static_cast<int>(state.range(0)),
            [](Type& s) { return s.First(kNeedle); });
}

template <class Type>
void FindBack(benchmark::State& state) {
  const std::string text = kNeedle + Haystack(state.range(0));
  Run<Type>(state, text, 0, [](Type& s) { return s.Last(kNeedle); });
}

template <class Type>
void FindByte(benchmark::State& state) {
  Run<Type>(state, Haystack(state.range(0)) + '!', static_cast<int>(state.range(0)),
            [](Type& s) { return s.First('!'); });
}

template <class Type>
void FindByteBack(benchmark::State& state) {
  Run<Type>(state, '!' + Haystack(state.range(0)), 0, [](Type& s) { return s.Last('!'); });
}

std::string HostileNeedle() { return std::string(50, 'a') + "b" + std::string(50, 'a'); }

template <class Type>
void FindHostile(benchmark::State& state) {
  const std::string text(static_cast<std::size_t>(state.range(0)), 'a'), needle = HostileNeedle();
  Run<Type>(state, text, -1, [&](Type& s) { return s.First(needle.c_str()); });
}

template <class Type>
void FindBackHostile(benchmark::State& state) {
  const std::string text(static_cast<std::size_t>(state.range(0)), 'a'), needle = HostileNeedle();
  Run<Type>(state, text, -1, [&](Type& s) { return s.Last(needle.c_str()); });
}

template <class Type>
void Count(benchmark::State& state) {
  const std::string text = Haystack(state.range(0));
  Run<Type>(state, text, Standard(text).Count("example"),
            [](Type& s) { return s.Count("example"); });
}

template <class Type>
void EqualNoCase(benchmark::State& state) {
  const std::string text = Haystack(state.range(0));
  Type other(text);
  static_cast<void>(other.Lower());
  Run<Type>(state, text, 1, [&](Type& s) { return s.Same(other); });
}

template <class Type>
void Lower(benchmark::State& state) {
  Run<Type>(state, Haystack(state.range(0)), 'r', [](Type& s) { return s.Lower(); });
}

template <class Type>
void Segment(benchmark::State& state) {
  const int size = static_cast<int>(state.range(0));
  Run<Type>(state, Haystack(2 * size), size, [=](Type& s) { return s.Middle(size / 2, size); });
}

void ReadLineOurs(benchmark::State& state) {
  const std::string text = Haystack(state.range(0));
  for (auto _ : state) {
    std::istringstream in(text);
    std::int64_t read = 0;
    for (SString line; line.ReadLine(in);) read += line.Length();
    if (read != state.range(0)) state.SkipWithError("wrong answer");
  }
  state.SetBytesProcessed(state.iterations() * state.range(0));
}

void ReadLineStandard(benchmark::State& state) {
  const std::string text = Haystack(state.range(0));
  for (auto _ : state) {
    std::istringstream in(text);
    std::int64_t read = 0;
    for (std::string line; std::getline(in, line);) {
      read += static_cast<std::int64_t>(line.size()) + !in.eof();
    }
    if (read != state.range(0)) state.SkipWithError("wrong answer");
  }
  state.SetBytesProcessed(state.iterations() * state.range(0));
}

// std::string has Abseil's functions where it has none of its own.
#define PEERS(function, name, sizes)                               \
  BENCHMARK(function<Ours>)->Name(name "/mailhearth")->sizes;      \
  BENCHMARK(function<Standard>)->Name(name "/std::string")->sizes; \
  BENCHMARK(function<Qt>)->Name(name "/QByteArray")->sizes

#define PEERS_AND_C(function, name, sizes) \
  PEERS(function, name, sizes);            \
  BENCHMARK(function<C>)->Name(name "/C")->sizes

PEERS_AND_C(Find, "find", Arg(64)->Arg(4096)->Arg(1 << 20));
PEERS_AND_C(FindHostile, "find_hostile", Arg(1 << 20));
PEERS_AND_C(FindByte, "find_byte", Arg(64)->Arg(4096));
PEERS_AND_C(FindByteBack, "find_byte_back", Arg(64)->Arg(4096));
PEERS(FindBack, "find_back", Arg(64)->Arg(4096)->Arg(1 << 20));
PEERS(FindBackHostile, "find_back_hostile", Arg(1 << 20));
PEERS(Count, "count", Arg(4096)->Arg(1 << 20));
PEERS_AND_C(EqualNoCase, "equal_nocase", Arg(7)->Arg(30)->Arg(1000));
PEERS(Lower, "lower", Arg(7)->Arg(20)->Arg(4096));
PEERS(Segment, "segment", Arg(10)->Arg(100)->Arg(4096));
BENCHMARK(ReadLineOurs)->Name("read_line/mailhearth")->Arg(1 << 20);
BENCHMARK(ReadLineStandard)->Name("read_line/std::getline")->Arg(1 << 20);

}  // namespace
