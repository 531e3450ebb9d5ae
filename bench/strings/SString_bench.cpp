// SString beside std::string and QByteArray: construct, copy, edit a copy, append.

#include <benchmark/benchmark.h>

#include <QByteArray>
#include <string>
#include <string_view>

#include "strings/SString.h"

namespace {

// What the three types call the same things.
std::string_view Bytes(const SString& s) { return s.View(); }
std::string_view Bytes(const std::string& s) { return s; }
std::string_view Bytes(const QByteArray& s) {
  return {s.constData(), static_cast<std::size_t>(s.size())};
}

// A wrong answer spoils the run.
void Check(benchmark::State& state, std::string_view got, std::string_view expected) {
  if (got != expected) state.SkipWithError("wrong answer");
}

std::string Text(benchmark::State& state) {
  return std::string(static_cast<std::size_t>(state.range(0)), 'x');
}

template <class String>
void Default(benchmark::State& state) {
  for (auto _ : state) {
    String s;
    benchmark::DoNotOptimize(s);
  }
}

template <class String>
void Construct(benchmark::State& state) {
  const std::string text = Text(state);
  Check(state, Bytes(String(text.c_str())), text);
  for (auto _ : state) {
    const char* from = text.c_str();
    benchmark::DoNotOptimize(from);
    String s(from);
    benchmark::DoNotOptimize(s);
  }
}

template <class String>
void Copy(benchmark::State& state) {
  const std::string text = Text(state);
  const String s(text.c_str());
  Check(state, Bytes(String(s)), text);
  for (auto _ : state) {
    String copy(s);
    benchmark::DoNotOptimize(copy);
  }
}

template <class String>
void CopyThenModify(benchmark::State& state) {
  const std::string text = Text(state);
  const String s(text.c_str());
  const auto modified = [&] {
    String copy(s);
    copy += 'y';
    return copy;
  };
  Check(state, Bytes(modified()), text + 'y');
  for (auto _ : state) {
    String copy = modified();
    benchmark::DoNotOptimize(copy);
  }
}

template <class String>
void AppendByte(benchmark::State& state) {
  const auto build = [&] {
    String s;
    benchmark::DoNotOptimize(s);  // it may be known elsewhere, as strings mostly are
    for (auto n = state.range(0); n > 0; --n) s += 'x';
    return s;
  };
  Check(state, Bytes(build()), Text(state));
  for (auto _ : state) {
    String s = build();
    benchmark::DoNotOptimize(s);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <class String>
void AppendText(benchmark::State& state) {
  constexpr const char* kPiece = "0123456789";
  const auto build = [&] {
    String s;
    benchmark::DoNotOptimize(s);
    for (auto n = state.range(0); n > 0; n -= 10) s += kPiece;
    return s;
  };
  std::string expected;
  for (auto n = state.range(0); n > 0; n -= 10) expected += kPiece;
  Check(state, Bytes(build()), expected);
  for (auto _ : state) {
    String s = build();
    benchmark::DoNotOptimize(s);
  }
  state.SetBytesProcessed(state.iterations() * state.range(0));
}

template <class String>
void Equal(benchmark::State& state) {
  const std::string text = Text(state);
  const String a(text.c_str()), b(text.c_str());
  for (auto _ : state) {
    bool equal = a == b;
    benchmark::DoNotOptimize(equal);
    if (!equal) state.SkipWithError("wrong answer");
  }
}

#define PEERS(function, name, sizes)                                  \
  BENCHMARK(function<SString>)->Name(name "/mailhearth")->sizes;      \
  BENCHMARK(function<std::string>)->Name(name "/std::string")->sizes; \
  BENCHMARK(function<QByteArray>)->Name(name "/QByteArray")->sizes

PEERS(Default, "default", Arg(0));
PEERS(Construct, "construct", Arg(5)->Arg(20)->Arg(100)->Arg(4096));
PEERS(Copy, "copy", Arg(5)->Arg(100)->Arg(4096));
PEERS(CopyThenModify, "copy_modify", Arg(5)->Arg(100)->Arg(4096));
PEERS(AppendByte, "append_byte", Arg(10)->Arg(100)->Arg(4096)->Arg(1 << 20));
PEERS(AppendText, "append_text", Arg(100)->Arg(4090)->Arg(1000000));
PEERS(Equal, "equal", Arg(20)->Arg(4096));

}  // namespace
