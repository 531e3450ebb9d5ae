#include "ByteSearch.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>

inline namespace mailhearth {

namespace engine {

namespace {

constexpr std::size_t kBlock = 32;

// Returns the first byte of a block for which `is` says 1, not 0, or kBlock. All are asked, so
// that compilers can ask for many at once; the answers are then looked at in words.
template <class Is>
std::size_t FirstInBlock(const char* block, Is is) {
  std::array<unsigned char, kBlock> answers;
  for (std::size_t i = 0; i < kBlock; ++i) answers[i] = static_cast<unsigned char>(is(block + i));
  for (std::size_t i = 0; i < kBlock; i += sizeof(std::uint64_t)) {
    std::uint64_t word = 0;
    std::memcpy(&word, answers.data() + i, sizeof(word));
    if (word == 0) continue;
    const int bits = std::endian::native == std::endian::little ? std::countr_zero(word)
                                                                : std::countl_zero(word);
    return i + static_cast<std::size_t>(bits) / 8;
  }
  return kBlock;
}

}  // namespace

void FewBytes::Add(char byte) {
  if (Overflown() || (count_ > 0 && Has(byte) != 0)) return;
  if (count_ < bytes_.size()) {
    std::fill(bytes_.begin() + static_cast<std::ptrdiff_t>(count_), bytes_.end(), byte);
  }
  ++count_;
}

std::size_t ByteSearch::Find(std::string_view text, std::size_t at) const {
  if (first_.Count() == 0) return text.size();
  if (first_.Count() == 1) return _FindOne(text, at);
  at = _FindInBlocks(text, at);
  while (at < text.size() && !_IsPlace(text, at)) ++at;
  return at;
}

bool ByteSearch::_IsPlace(std::string_view text, std::size_t at) const {
  return first_.Has(text[at]) != 0 &&
         (second_.Overflown() || at + 1 == text.size() || second_.Has(text[at + 1]) != 0);
}

// Find() where the first set is one byte.
std::size_t ByteSearch::_FindOne(std::string_view text, std::size_t at) const {
  for (; at < text.size(); ++at) {
    const void* const found = std::memchr(text.data() + at, first_[0], text.size() - at);
    if (found == nullptr) return text.size();
    at = static_cast<std::size_t>(static_cast<const char*>(found) - text.data());
    if (_IsPlace(text, at)) return at;
  }
  return at;
}

// Returns the first place from `at` on, or where no whole block is left.
std::size_t ByteSearch::_FindInBlocks(std::string_view text, std::size_t at) const {
  const FewBytes first = first_;  // copies that no byte read can be thought to change
  const FewBytes second = second_;
  const bool pairs = !second.Overflown();
  for (; text.size() - at > kBlock; at += kBlock) {
    const char* const block = text.data() + at;
    const std::size_t found =
        pairs
            ? FirstInBlock(block, [&](const char* p) { return first.Has(p[0]) & second.Has(p[1]); })
            : FirstInBlock(block, [&](const char* p) { return first.Has(*p); });
    if (found < kBlock) return at + found;
  }
  return at;
}

}  // namespace engine

}  // namespace mailhearth
