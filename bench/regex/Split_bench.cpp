// Splitting a long text with SString::Split, beside loops over the searches of the C library,
// RE2 and PCRE2. All use an expression that is compiled already and give the same pieces.
//
// The peers put them into an SStringList as well, so that these rows differ in the search
// and in how Split makes its list. "PEER+vector" collects in a std::vector<std::string>, as
// users of the peers do: it has room for short pieces in its elements, and no nodes. To make
// and to free the pieces is timed.

#include <algorithm>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

#include "Libraries.h"
#include "lists/SStringList.h"

namespace {

using Vector = std::vector<std::string>;

void Collect(SStringList& pieces, const char* text, int size) { pieces.Push(SString(text, size)); }
void Collect(Vector& pieces, const char* text, int size) {
  pieces.emplace_back(text, static_cast<std::size_t>(size));
}

// No empty piece behind a separator at the end; none of the separators is empty.
template <class Pieces, class Library>
Pieces Split(const Library& library, const std::string& text) {
  Pieces pieces;
  const int size = static_cast<int>(text.size());
  int at = 0;
  regmatch_t separator;
  while (at < size && library.Find(text, at, std::span(&separator, 1))) {
    Collect(pieces, text.data() + at, separator.rm_so - at);
    at = separator.rm_eo;
  }
  if (at < size) Collect(pieces, text.data() + at, size - at);
  return pieces;
}
template <class Pieces>
SStringList Split(const Ours& ours, const SString& text) {
  return text.Split(ours.Regex(), 0);
}

bool Same(const SStringList& a, const SStringList& b) { return a == b; }
bool Same(const Vector& a, const SStringList& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](const std::string& x, const SString& y) { return y == x; });
}

// Words of 1 to 20 letters between the separators, of which there may be more than one.
std::string Words(std::size_t size, std::string_view separators) {
  std::mt19937 random(1);
  std::string text;
  while (text.size() < size) {
    text.append(1 + random() % 20, static_cast<char>('a' + random() % 26));
    do {
      text += separators[random() % separators.size()];
    } while (random() % 4 == 0);
  }
  text.resize(size);
  return text;
}

struct Row {
  Pattern pattern;
  std::string_view separators;
};

constexpr Row kRows[] = {
    {{"comma", ",", ",", 0, false}, ","},
    {{"blanks", "[ \t\r\n]+", "[ \t\r\n]+", 0, false}, "    \n\t"},
};

template <class Library, class Pieces>
void RunSplit(benchmark::State& state, const Row& row, std::size_t size) {
  const std::string words = Words(size, row.separators);
  const auto text = TextFor<Library>(words);
  const Library library(row.pattern, Wanted::kBounds);
  if (!Same(Split<Pieces>(library, text),
            Split<SStringList>(Ours(row.pattern, Wanted::kBounds), TextFor<Ours>(words)))) {
    state.SkipWithError("wrong answer");
  }
  for (auto _ : state) {
    auto pieces = Split<Pieces>(library, text);
    benchmark::DoNotOptimize(pieces);
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(size));
}

template <class Library, class Pieces = SStringList>
void RegisterSplits() {
  for (const Row& row : kRows) {
    for (const std::size_t size : {1U << 20, 4U << 20}) {
      const std::string what =
          std::string(Library::kName) + (std::is_same_v<Pieces, Vector> ? "+vector" : "");
      Register(std::string("split_") + row.pattern.name, what.c_str(), size,
               [=](auto& state) { RunSplit<Library, Pieces>(state, row, size); });
    }
  }
}

[[maybe_unused]] const bool kRegistered = [] {
  RegisterSplits<Ours>();
  RegisterSplits<CLibrary>();
  RegisterSplits<Re2>();
  RegisterSplits<Pcre2<true>>();
  RegisterSplits<CLibrary, Vector>();
  RegisterSplits<Re2, Vector>();
  RegisterSplits<Pcre2<true>, Vector>();
  return true;
}();

}  // namespace
