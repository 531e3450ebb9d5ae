// MD5 is one long chain of dependent additions and rotations, so its speed is the length
// of that chain. In the second round the two halves of the selection have no bit in
// common: adding them one after the other takes one of them off the chain.

#include "Digests.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>
#include <string_view>

#include "../strings/Sizes.h"
#include "Environment.h"

inline namespace mailhearth {

namespace {

constexpr std::size_t kBlock = 64;

std::uint32_t LoadLittle(const unsigned char* from) {
  std::uint32_t word;
  std::memcpy(&word, from, sizeof word);
  if constexpr (std::endian::native == std::endian::big) word = __builtin_bswap32(word);
  return word;
}

void StoreLittle(unsigned char* to, std::uint64_t number, int bytes) {
  for (int i = 0; i < bytes; ++i) to[i] = static_cast<unsigned char>(number >> (8 * i));
}

// One step of each round of RFC 1321, section 3.4: a, the word of the block, the amount of
// the rotation, and the constant.
using Word = std::uint32_t;

inline void F(Word& a, Word b, Word c, Word d, Word x, int s, Word t) {
  a = std::rotl(a + x + t + (d ^ (b & (c ^ d))), s) + b;
}
inline void G(Word& a, Word b, Word c, Word d, Word x, int s, Word t) {
  a = std::rotl((a + x + t + (c & ~d)) + (b & d), s) + b;
}
inline void H(Word& a, Word b, Word c, Word d, Word x, int s, Word t) {
  a = std::rotl(a + x + t + (b ^ (c ^ d)), s) + b;
}
inline void I(Word& a, Word b, Word c, Word d, Word x, int s, Word t) {
  a = std::rotl(a + x + t + (c ^ (b | ~d)), s) + b;
}

// Takes whole blocks into the state.
void Transform(Word state[4], const unsigned char* data, std::size_t blocks) {
  Word a = state[0], b = state[1], c = state[2], d = state[3];
  for (; blocks > 0; --blocks, data += kBlock) {
    const Word before[] = {a, b, c, d};
    Word x[16];
    for (std::size_t i = 0; i < 16; ++i) x[i] = LoadLittle(data + 4 * i);
    F(a, b, c, d, x[0], 7, 0xd76aa478);
    F(d, a, b, c, x[1], 12, 0xe8c7b756);
    F(c, d, a, b, x[2], 17, 0x242070db);
    F(b, c, d, a, x[3], 22, 0xc1bdceee);
    F(a, b, c, d, x[4], 7, 0xf57c0faf);
    F(d, a, b, c, x[5], 12, 0x4787c62a);
    F(c, d, a, b, x[6], 17, 0xa8304613);
    F(b, c, d, a, x[7], 22, 0xfd469501);
    F(a, b, c, d, x[8], 7, 0x698098d8);
    F(d, a, b, c, x[9], 12, 0x8b44f7af);
    F(c, d, a, b, x[10], 17, 0xffff5bb1);
    F(b, c, d, a, x[11], 22, 0x895cd7be);
    F(a, b, c, d, x[12], 7, 0x6b901122);
    F(d, a, b, c, x[13], 12, 0xfd987193);
    F(c, d, a, b, x[14], 17, 0xa679438e);
    F(b, c, d, a, x[15], 22, 0x49b40821);

    G(a, b, c, d, x[1], 5, 0xf61e2562);
    G(d, a, b, c, x[6], 9, 0xc040b340);
    G(c, d, a, b, x[11], 14, 0x265e5a51);
    G(b, c, d, a, x[0], 20, 0xe9b6c7aa);
    G(a, b, c, d, x[5], 5, 0xd62f105d);
    G(d, a, b, c, x[10], 9, 0x02441453);
    G(c, d, a, b, x[15], 14, 0xd8a1e681);
    G(b, c, d, a, x[4], 20, 0xe7d3fbc8);
    G(a, b, c, d, x[9], 5, 0x21e1cde6);
    G(d, a, b, c, x[14], 9, 0xc33707d6);
    G(c, d, a, b, x[3], 14, 0xf4d50d87);
    G(b, c, d, a, x[8], 20, 0x455a14ed);
    G(a, b, c, d, x[13], 5, 0xa9e3e905);
    G(d, a, b, c, x[2], 9, 0xfcefa3f8);
    G(c, d, a, b, x[7], 14, 0x676f02d9);
    G(b, c, d, a, x[12], 20, 0x8d2a4c8a);

    H(a, b, c, d, x[5], 4, 0xfffa3942);
    H(d, a, b, c, x[8], 11, 0x8771f681);
    H(c, d, a, b, x[11], 16, 0x6d9d6122);
    H(b, c, d, a, x[14], 23, 0xfde5380c);
    H(a, b, c, d, x[1], 4, 0xa4beea44);
    H(d, a, b, c, x[4], 11, 0x4bdecfa9);
    H(c, d, a, b, x[7], 16, 0xf6bb4b60);
    H(b, c, d, a, x[10], 23, 0xbebfbc70);
    H(a, b, c, d, x[13], 4, 0x289b7ec6);
    H(d, a, b, c, x[0], 11, 0xeaa127fa);
    H(c, d, a, b, x[3], 16, 0xd4ef3085);
    H(b, c, d, a, x[6], 23, 0x04881d05);
    H(a, b, c, d, x[9], 4, 0xd9d4d039);
    H(d, a, b, c, x[12], 11, 0xe6db99e5);
    H(c, d, a, b, x[15], 16, 0x1fa27cf8);
    H(b, c, d, a, x[2], 23, 0xc4ac5665);

    I(a, b, c, d, x[0], 6, 0xf4292244);
    I(d, a, b, c, x[7], 10, 0x432aff97);
    I(c, d, a, b, x[14], 15, 0xab9423a7);
    I(b, c, d, a, x[5], 21, 0xfc93a039);
    I(a, b, c, d, x[12], 6, 0x655b59c3);
    I(d, a, b, c, x[3], 10, 0x8f0ccc92);
    I(c, d, a, b, x[10], 15, 0xffeff47d);
    I(b, c, d, a, x[1], 21, 0x85845dd1);
    I(a, b, c, d, x[8], 6, 0x6fa87e4f);
    I(d, a, b, c, x[15], 10, 0xfe2ce6e0);
    I(c, d, a, b, x[6], 15, 0xa3014314);
    I(b, c, d, a, x[13], 21, 0x4e0811a1);
    I(a, b, c, d, x[4], 6, 0xf7537e82);
    I(d, a, b, c, x[11], 10, 0xbd3af235);
    I(c, d, a, b, x[2], 15, 0x2ad7d2bb);
    I(b, c, d, a, x[9], 21, 0xeb86d391);

    a += before[0];
    b += before[1];
    c += before[2];
    d += before[3];
  }
  state[0] = a;
  state[1] = b;
  state[2] = c;
  state[3] = d;
}

// Without a branch and without a table, so that loops over it become vectors.
constexpr char HexDigit(unsigned char value) {
  constexpr unsigned char kLetters = 'a' - '9' - 1;
  return static_cast<char>('0' + value + (value > 9 ? kLetters : 0));
}

static_assert(HexDigit(0) == '0' && HexDigit(9) == '9' && HexDigit(10) == 'a' &&
              HexDigit(15) == 'f');

// Hex() for bytes of any kind.
SString HexText(std::string_view bytes) {
  const int length = CheckedLength(2 * static_cast<std::int64_t>(bytes.size()));
  SStringRep* const rep = SStringRep::New(length);
  char* to = rep->buffer;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const auto byte = static_cast<unsigned char>(bytes[i]);
    to[2 * i] = HexDigit(byte >> 4);
    to[2 * i + 1] = HexDigit(byte & 15);
  }
  to[length] = '\0';
  rep->length = length;
  rep->links = 0;  // the string counts its own
  return SString(rep);
}

// Returns the number of mailbox buckets.
unsigned BucketCount() {
  constexpr unsigned kDefault = 500;
  constexpr double kMost = std::numeric_limits<int>::max();
  const double number = GetEnv("MailboxBucketCount");
  if (!(number >= 1)) return kDefault;  // nor is "nan" a number of buckets
  return static_cast<unsigned>(std::min(number, kMost));
}

}  // namespace

SString MD5(const SString& data) {
  MD5_CTX context;
  MD5Init(&context);
  MD5Update(&context, data.Data(), data.View().size());
  unsigned char digest[16];
  MD5Final(digest, &context);
  return HexText({reinterpret_cast<const char*>(digest), sizeof digest});
}

SString Hex(const SString& data) { return HexText(data.View()); }

void MD5Init(MD5_CTX* context) {
  *context = {{0x67452301, 0xefcdab89, 0x98badcfe, 0x10325476}, 0, {}};
}

void MD5Update(MD5_CTX* context, const void* data, std::size_t length) {
  const auto* from = static_cast<const unsigned char*>(data);
  const std::size_t pending = context->length % kBlock;
  context->length += length;
  if (pending > 0) {
    const std::size_t taken = std::min(length, kBlock - pending);
    std::copy_n(from, taken, context->pending + pending);
    if (pending + taken < kBlock) return;
    Transform(context->state, context->pending, 1);
    from += taken;
    length -= taken;
  }
  Transform(context->state, from, length / kBlock);
  std::copy_n(from + length / kBlock * kBlock, length % kBlock, context->pending);
}

void MD5Final(unsigned char digest[16], MD5_CTX* context) {
  constexpr std::size_t kLengthAt = 56;  // the length in bits ends the last block
  unsigned char* const block = context->pending;
  std::size_t used = context->length % kBlock;
  block[used++] = 0x80;
  if (used > kLengthAt) {
    std::fill(block + used, block + kBlock, '\0');
    Transform(context->state, block, 1);
    used = 0;
  }
  std::fill(block + used, block + kLengthAt, '\0');
  StoreLittle(block + kLengthAt, context->length * 8, 8);
  Transform(context->state, block, 1);
  for (const Word word : context->state) {
    StoreLittle(digest, word, 4);
    digest += 4;
  }
  ::explicit_bzero(context, sizeof *context);
}

int MailboxHash(const SString& name) {
  std::uint32_t hash = 0;
  for (const char byte : name.View()) hash = hash * 33 + static_cast<unsigned char>(byte);
  return static_cast<int>(hash % BucketCount());
}

SString GetMailboxSubpath(const SString& name) { return SString(MailboxHash(name)) + "/" + name; }

}  // namespace mailhearth
