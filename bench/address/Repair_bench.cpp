// Repair of addresses as people and programs write them. No peer has it; the counter
// items_per_second is the speed to look at.

#include <benchmark/benchmark.h>

#include <cstdint>
#include <iterator>
#include <vector>

#include "address/AddressRepair.h"

namespace {

struct Row {
  const char* text;
  const char* address;
};

constexpr Row kRows[] = {
    {"joe@example.org", "<joe@example.org>"},
    {"Joe Q. Public <joe@example.org>", "<joe@example.org>"},
    {"Joe <joe@example.org> (home)", "<joe@example.org>"},
    {"<<joe@example.org>>", "<joe@example.org>"},
    {" joe @ example . org ", "<joe@example.org>"},
    {"joe@example,org,", "<joe@example.org>"},
    {"joe@10.0.0.1", "<joe@[10.0.0.1]>"},
    {"a@b@example.org", "<\"a@b\"@example.org>"},
    {"joe(x)@example.org", "<\"joe(x)\"@example.org>"},
    {"postmaster", "<postmaster>"},
    {"joe@", "<>"},
    {"Undisclosed recipients: ;", "<>"},
};

void Repair(benchmark::State& state) {
  std::vector<SString> texts;
  for (const Row& row : kRows) {
    texts.emplace_back(row.text);
    if (FixBogusAddress(texts.back()) != row.address) state.SkipWithError("wrong answer");
  }
  for (auto _ : state) {
    for (const SString& text : texts) {
      SString address = FixBogusAddress(text);
      benchmark::DoNotOptimize(address);
    }
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(texts.size()));
}

BENCHMARK(Repair)->Name("repair/mailhearth")->Arg(std::size(kRows));

}  // namespace
