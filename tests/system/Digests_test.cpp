#include "system/Digests.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>

#include "strings/SFixedString.h"
#include "support/CheckText.h"
#include "support/EnvironmentKey.h"
#include "support/ExactInput.h"
#include "support/Process.h"
#include "support/TempDir.h"
#include "support/Text.h"

namespace {

// The test suite of RFC 1321, appendix A.5.
struct Vector {
  const char* text;
  const char* digest;
};
constexpr Vector kVectors[] = {
    {"", "d41d8cd98f00b204e9800998ecf8427e"},
    {"a", "0cc175b9c0f1b6a831c399e269772661"},
    {"abc", "900150983cd24fb0d6963f7d28e17f72"},
    {"message digest", "f96b697d7cb7938d525a2f31aaf161d0"},
    {"abcdefghijklmnopqrstuvwxyz", "c3fcd3d76192e4007dfb496cca67e13b"},
    {"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789",
     "d174ab98d277d9f5a5611c2c9f419d9f"},
    {"12345678901234567890123456789012345678901234567890123456789012345678901234567890",
     "57edf4a22be3c955ac49da2e2107b67a"},
};

std::string RandomBytes(std::mt19937& random, std::size_t n) {
  std::string bytes;
  while (bytes.size() < n) bytes += static_cast<char>(random());
  return bytes;
}

TEST(MD5, GivesTheDigestsOfTheStandard) {
  for (const Vector& vector : kVectors) CheckText(MD5(vector.text), vector.digest);
  CheckText(MD5(SString()), kVectors[0].digest);
}

TEST(MD5, AgreesWithMd5sumOnAllLengthsAroundABlock) {
  const TempDir dir;
  std::mt19937 random(5);
  Command command{{"/usr/bin/md5sum"}, {}, [] {}};
  std::string expected;
  for (std::size_t length = 0; length < 200; ++length) {
    const std::string bytes = RandomBytes(random, length);
    command.words.push_back(dir.File(std::to_string(length), bytes));
    expected += std::string(MD5(Text(bytes)).View()) + "  " + command.words.back() + "\n";
  }
  const std::string large = RandomBytes(random, 1'000'003);
  command.words.push_back(dir.File("large", large));
  expected += std::string(MD5(Text(large)).View()) + "  " + command.words.back() + "\n";
  EXPECT_EQ(RunCommand(command).out, expected);
}

TEST(MD5, InPiecesGivesTheSameDigest) {
  std::mt19937 random(6);
  for (int round = 0; round < 500; ++round) {
    const std::string bytes = RandomBytes(random, random() % 400);
    MD5_CTX context;
    MD5Init(&context);
    for (std::size_t at = 0; at < bytes.size();) {
      const std::size_t size = std::min<std::size_t>(random() % 130, bytes.size() - at);
      const ExactInput piece(std::string_view(bytes).substr(at, size));
      MD5Update(&context, reinterpret_cast<const unsigned char*>(piece.Data()), size);
      at += size;
    }
    unsigned char digest[16];
    MD5Final(digest, &context);
    EXPECT_TRUE(Hex(SString(reinterpret_cast<const char*>(digest), 16)) == MD5(Text(bytes)));
  }
}

TEST(MD5, ClearsItsContext) {
  MD5_CTX context, cleared;
  std::memset(&cleared, 0, sizeof cleared);
  unsigned char digest[16];
  MD5Init(&context);
  MD5Update(&context, "secret", 6);
  MD5Final(digest, &context);
  EXPECT_EQ(std::memcmp(&context, &cleared, sizeof context), 0);
}

TEST(MD5, CountsItsInputIn64Bits) {
  // 2^29 bytes are 2^32 bits.
  MD5_CTX context;
  MD5Init(&context);
  const std::string piece(1 << 20, 'x');
  for (int i = 0; i < 1 << 9; ++i) MD5Update(&context, piece.data(), piece.size());
  MD5Update(&context, "x", 1);
  EXPECT_EQ(context.length, (std::uint64_t{1} << 29) + 1);
  unsigned char digest[16];
  MD5Final(digest, &context);
  const Outcome sum =
      RunCommand({.words = {"/bin/sh", "-c", "head -c 536870913 /dev/zero | tr '\\0' x | md5sum"},
                  .environment = {}});
  EXPECT_EQ(Hex(SString(reinterpret_cast<const char*>(digest), 16)).View(), sum.out.substr(0, 32));
}

TEST(Hex, GivesTwoDigitsForEachByte) {
  CheckText(Hex(""), "");
  CheckText(Hex(SString()), "");
  CheckText(Hex(SString("\x00\xff", 2)), "00ff");
  CheckText(Hex("\x1a\xA1 z"), "1aa1207a");
  for (int c = 0; c < 256; ++c) {
    char expected[3];
    std::snprintf(expected, sizeof expected, "%02x", static_cast<unsigned>(c));
    CheckText(Hex(SString(static_cast<char>(c), 1)), expected);
  }
}

TEST(Hex, TakesAsManyBytesAsThereAre) {
  std::mt19937 random(7);
  for (std::size_t size = 0; size <= 300; ++size) {
    const std::string bytes = RandomBytes(random, size);
    std::string expected;
    for (const char byte : bytes) {
      const auto value = static_cast<unsigned char>(byte);
      expected += {"0123456789abcdef"[value / 16], "0123456789abcdef"[value % 16]};
    }
    const ExactInput exact(bytes);
    SFixedString view(exact.Data(), exact.Length());
    CheckText(Hex(view), expected);
  }
}

// --- Buckets --------------------------------------------------------------------------------

int SlowHash(const std::string& name, std::uint32_t buckets) {
  std::uint64_t hash = 0;
  for (const char c : name) hash = (hash * 33 + static_cast<unsigned char>(c)) % (1ULL << 32);
  return static_cast<int>(hash % buckets);
}

TEST(MailboxHash, DependsOnEveryByteAndOnTheCountOfBuckets) {
  const EnvironmentKey key("MailboxBucketCount");
  const std::string names[] = {
      "", "joe", "Joe", "\xC8\xFF", std::string("a\0b", 3), std::string(1000, 'z')};
  for (const int buckets : {1, 7, 500, 1000, 2147483647}) {
    ::setenv(key.Name(), std::to_string(buckets).c_str(), 1);
    for (const std::string& name : names) {
      EXPECT_EQ(MailboxHash(Text(name)), SlowHash(name, static_cast<std::uint32_t>(buckets)));
    }
  }
  ::setenv(key.Name(), "2147483647", 1);
  EXPECT_NE(MailboxHash("joe"), MailboxHash("Joe"));
  EXPECT_EQ(MailboxHash(SString()), 0);
}

TEST(MailboxHash, ReadsTheCountAsANumber) {
  struct Row {
    const char* name;
    const char* setting;
    std::uint32_t buckets;
  };
  constexpr Row kRows[] = {
      {"empty", "", 500},
      {"text", "many", 500},
      {"zero", "0", 500},
      {"fraction", "7.9", 7},
      {"below one", "0.9", 500},
      {"text behind", "12x", 12},
      {"blanks", "  12", 12},
      {"negative", "-5", 500},
      {"not a number", "nan", 500},
      {"exponent", "1e2", 100},
      {"past 32 bits", "1e10", 2147483647},
      {"infinite", "inf", 2147483647},
  };
  const EnvironmentKey key("MailboxBucketCount");
  const std::string name = "some mailbox";
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.name);
    ::setenv(key.Name(), row.setting, 1);
    EXPECT_EQ(MailboxHash(Text(name)), SlowHash(name, row.buckets));
  }
  ::unsetenv(key.Name());
  EXPECT_EQ(MailboxHash(Text(name)), SlowHash(name, 500));
}

TEST(GetMailboxSubpath, IsTheBucketAndTheName) {
  const EnvironmentKey key("MailboxBucketCount");
  ::unsetenv(key.Name());
  for (const char* const name : {"joe", "", "a/b"}) {
    CheckText(GetMailboxSubpath(name), std::to_string(SlowHash(name, 500)) + "/" + name);
  }
}

}  // namespace
