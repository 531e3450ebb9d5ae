// Not installed. Bytes sixteen at a time, as vectors of the compilers' own: right on every machine,
// and fast where it has vectors.

#ifndef MAILHEARTH_STRINGS_BLOCKS_H
#define MAILHEARTH_STRINGS_BLOCKS_H

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

inline namespace mailhearth {

using Block = unsigned char __attribute__((vector_size(16)));
using SignedBlock = signed char __attribute__((vector_size(sizeof(Block))));
using Words = std::uint64_t __attribute__((vector_size(sizeof(Block))));

inline constexpr std::size_t kBlock = sizeof(Block);

// Returns the kBlock bytes from `bytes` on; `byte` in each place.
inline Block BlockAt(const char* bytes) {
  Block block;
  std::memcpy(&block, bytes, kBlock);
  return block;
}
inline Block FilledBlock(char byte) { return Block{} + static_cast<unsigned char>(byte); }

inline bool HasBits(Block block) {
  const auto words = reinterpret_cast<Words>(block);
  return (words[0] | words[1]) != 0;
}

// These return blocks with all bits of a byte set where the answer is yes.
inline Block EqualBytes(Block a, Block b) { return reinterpret_cast<Block>(a == b); }
inline Block LettersFrom(char a, Block block) {
  // Signed, which takes one comparison everywhere: the letters come to be the largest numbers.
  constexpr int kLetters = 'Z' - 'A' + 1, kMost = 0x7F;
  const Block moved = block + static_cast<unsigned char>(kMost + 1 - kLetters - a);
  return reinterpret_cast<Block>(reinterpret_cast<SignedBlock>(moved) > kMost - kLetters);
}

inline Block LowerBlock(Block block) { return block | (LettersFrom('A', block) & 0x20); }
inline Block UpperBlock(Block block) { return block & ~(LettersFrom('a', block) & 0x20); }

// Returns a block with no bit set where `a` and `b` are equal but for their case: a bit apart
// from the case, or apart where there is no letter, stays.
inline Block DifferNoCase(Block a, Block b) {
  return (a ^ b) & ~(LettersFrom('a', a | 0x20) & 0x20);
}

// Less than a block of bytes is taken by its ends: as many bytes from the first and up to the
// last as a number has, some of them in both.
template <class Number>
Block EndsAs(const char* bytes, std::size_t n) {
  Number first, last;
  std::memcpy(&first, bytes, sizeof first);
  std::memcpy(&last, bytes + n - sizeof last, sizeof last);
  return reinterpret_cast<Block>(Words{first, last});
}

template <class Number>
void PutEndsAs(Block block, char* bytes, std::size_t n) {
  const auto words = reinterpret_cast<Words>(block);
  const auto first = static_cast<Number>(words[0]), last = static_cast<Number>(words[1]);
  std::memcpy(bytes, &first, sizeof first);
  std::memcpy(bytes + n - sizeof last, &last, sizeof last);
}

// Return the ends, and put them back. Needs: n < kBlock.
inline Block BlockOfEnds(const char* bytes, std::size_t n) {
  if (n >= 8) return EndsAs<std::uint64_t>(bytes, n);
  if (n >= 4) return EndsAs<std::uint32_t>(bytes, n);
  if (n >= 2) return EndsAs<std::uint16_t>(bytes, n);
  return n == 0 ? Block{} : EndsAs<std::uint8_t>(bytes, n);
}
inline void PutEnds(Block block, char* bytes, std::size_t n) {
  if (n >= 8) return PutEndsAs<std::uint64_t>(block, bytes, n);
  if (n >= 4) return PutEndsAs<std::uint32_t>(block, bytes, n);
  if (n >= 2) return PutEndsAs<std::uint16_t>(block, bytes, n);
  if (n == 1) PutEndsAs<std::uint8_t>(block, bytes, n);
}

// Replaces each block of the bytes by what `change` makes of it; bytes beside each other must
// not matter to it.
template <class Change>
void ChangeBytes(char* bytes, std::size_t n, Change change) {
  const auto put = [](Block block, char* to) { std::memcpy(to, &block, kBlock); };
  if (n < kBlock) return PutEnds(change(BlockOfEnds(bytes, n)), bytes, n);
  const Block last = change(BlockAt(bytes + n - kBlock));
  for (std::size_t i = 0; i + kBlock < n; i += kBlock) put(change(BlockAt(bytes + i)), bytes + i);
  put(last, bytes + n - kBlock);
}

// Needs: equal sizes.
inline bool EqualNoCase(std::string_view a, std::string_view b) {
  const std::size_t size = a.size();
  if (size < kBlock) {
    return !HasBits(DifferNoCase(BlockOfEnds(a.data(), size), BlockOfEnds(b.data(), size)));
  }
  const auto differ = [&](std::size_t i) {
    return DifferNoCase(BlockAt(a.data() + i), BlockAt(b.data() + i));
  };
  std::size_t i = 0;
  for (constexpr std::size_t kTogether = 8 * kBlock; size - i > kTogether;) {
    Block any{};
    for (const std::size_t end = i + kTogether; i < end; i += kBlock) any |= differ(i);
    if (HasBits(any)) return false;
  }
  Block any = differ(size - kBlock);  // the last block, part of it once more
  for (; size - i > kBlock; i += kBlock) any |= differ(i);
  return !HasBits(any);
}

}  // namespace mailhearth

#endif  // MAILHEARTH_STRINGS_BLOCKS_H
