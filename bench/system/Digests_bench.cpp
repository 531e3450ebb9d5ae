// MD5 beside OpenSSL's, hexadecimal text beside Abseil's.

#include <absl/strings/escaping.h>
#include <benchmark/benchmark.h>
#include <openssl/evp.h>

#include <cstring>
#include <string>
#include <string_view>

#include "system/Digests.h"

namespace {

using Digest = unsigned char[16];

void Ours(const std::string& text, Digest& digest) {
  mailhearth::MD5_CTX context;
  mailhearth::MD5Init(&context);
  mailhearth::MD5Update(&context, text.data(), text.size());
  mailhearth::MD5Final(digest, &context);
}

void OpenSsl(const std::string& text, Digest& digest) {
  static EVP_MD_CTX* const context = EVP_MD_CTX_new();  // made once, as its users do
  static EVP_MD* const md5 = EVP_MD_fetch(nullptr, "MD5", nullptr);
  EVP_DigestInit_ex2(context, md5, nullptr);
  EVP_DigestUpdate(context, text.data(), text.size());
  EVP_DigestFinal_ex(context, digest, nullptr);
}

template <void (*digest)(const std::string&, Digest&)>
void Md5(benchmark::State& state) {
  const std::string text(static_cast<std::size_t>(state.range(0)), 'x');
  Digest got, expected;
  digest(text, got);
  OpenSsl(text, expected);
  if (std::memcmp(got, expected, sizeof got) != 0) state.SkipWithError("wrong answer");
  for (auto _ : state) {
    digest(text, got);
    benchmark::DoNotOptimize(got);
  }
  state.SetBytesProcessed(state.iterations() * state.range(0));
}

std::string AllBytes(std::int64_t size) {
  std::string text;
  while (static_cast<std::int64_t>(text.size()) < size) text += static_cast<char>(text.size());
  return text;
}

template <class Work>
void RunHex(benchmark::State& state, const Work& work) {
  const std::string expected = absl::BytesToHexString(AllBytes(state.range(0)));
  if (work() != std::string_view(expected)) state.SkipWithError("wrong answer");
  for (auto _ : state) {
    auto text = work();
    benchmark::DoNotOptimize(text);
  }
  state.SetBytesProcessed(state.iterations() * state.range(0));
}

void HexOurs(benchmark::State& state) {
  const SString bytes{std::string_view(AllBytes(state.range(0)))};
  RunHex(state, [&] { return Hex(bytes); });
}

void HexAbseil(benchmark::State& state) {
  const std::string bytes = AllBytes(state.range(0));
  RunHex(state, [&] { return absl::BytesToHexString(bytes); });
}

BENCHMARK(Md5<Ours>)->Name("md5/mailhearth")->Arg(64)->Arg(4096)->Arg(16 << 20);
BENCHMARK(Md5<OpenSsl>)->Name("md5/OpenSSL")->Arg(64)->Arg(4096)->Arg(16 << 20);
BENCHMARK(HexOurs)->Name("hex/mailhearth")->Arg(16)->Arg(4096);
BENCHMARK(HexAbseil)->Name("hex/Abseil")->Arg(16)->Arg(4096);

}  // namespace
