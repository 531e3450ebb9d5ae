// One byte is left to memchr. Several are compared with blocks of 32 bytes, in loops without
// branches that compilers turn into vector instructions; the rest of the text is compared byte by
// byte.

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

// Returns the index of the first byte of a block for which `is` returns 1 instead of 0, or kBlock.
// Calls `is` for all bytes, so that compilers can vectorise the loop; then looks for the first 1
// a word at a time.
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
  if (Overflowed() || (count_ > 0 && Has(byte) != 0)) return;
  if (count_ < bytes_.size()) {
    std::fill(bytes_.begin() + static_cast<std::ptrdiff_t>(count_), bytes_.end(), byte);
  }
  ++count_;
}

std::size_t ByteSearch::Find(std::string_view text, std::size_t at) const {
  if (first_.Count() == 0) return text.size();
  if (first_.Count() == 1) return _FindOne(text, at);
  at = _FindInBlocks(text, at);
  while (at < text.size() && !_IsMatch(text, at)) ++at;
  return at;
}

bool ByteSearch::_IsMatch(std::string_view text, std::size_t at) const {
  return first_.Has(text[at]) != 0 &&
         (second_.Overflowed() || at + 1 == text.size() || second_.Has(text[at + 1]) != 0);
}

// Find() for a first set of one byte.
std::size_t ByteSearch::_FindOne(std::string_view text, std::size_t at) const {
  for (; at < text.size(); ++at) {
    const void* const found = std::memchr(text.data() + at, first_[0], text.size() - at);
    if (found == nullptr) return text.size();
    at = static_cast<std::size_t>(static_cast<const char*>(found) - text.data());
    if (_IsMatch(text, at)) return at;
  }
  return at;
}

// Returns the offset of the first match, or of the rest that is too short for a block.
std::size_t ByteSearch::_FindInBlocks(std::string_view text, std::size_t at) const {
  const FewBytes first = first_;  // copies: the compiler knows that the text does not alias them
  const FewBytes second = second_;
  const bool pairs = !second.Overflowed();
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
