// Digests and identifiers: MD5, hexadecimal text, and the bucket of a mailbox.
//
// MD5 detects accidental changes. It is broken for data that an adversary may choose: do not
// use it as a proof.
//
//   SString id = MD5(body);                                 // 32 hexadecimal digits
//   SString path = root + "/" + GetMailboxSubpath("joe");   // "<root>/198/joe"

#ifndef MAILHEARTH_SYSTEM_DIGESTS_H
#define MAILHEARTH_SYSTEM_DIGESTS_H

#include <cstddef>
#include <cstdint>

#include "../strings/Export.h"
#include "../strings/SString.h"

inline namespace mailhearth {

// Returns the MD5 digest (RFC 1321) of the bytes, in 32 lower-case hexadecimal digits.
[[nodiscard]] MAILHEARTH_EXPORT SString MD5(const SString& data);

// Returns two lower-case hexadecimal digits for each byte, the high half first.
[[nodiscard]] MAILHEARTH_EXPORT SString Hex(const SString& data);

// MD5 in steps, for data that comes in pieces: MD5Init, then MD5Update for each piece, of any
// length, then MD5Final, which clears the context.
struct MD5_CTX {
  std::uint32_t state[4];     // of the blocks processed so far
  std::uint64_t length;       // bytes added so far
  unsigned char pending[64];  // the last of them, which do not fill a block yet
};

// Start a digest; add `length` bytes; end the digest and write it.
MAILHEARTH_EXPORT void MD5Init(MD5_CTX* context);
MAILHEARTH_EXPORT void MD5Update(MD5_CTX* context, const void* data, std::size_t length);
MAILHEARTH_EXPORT void MD5Final(unsigned char digest[16], MD5_CTX* context);

// Returns the bucket of a mailbox, from 0 to one less than the number of buckets. The
// environment variable MailboxBucketCount gives that number; if its value is not a number of
// at least 1, there are 500. Names that differ in case may have different buckets.
[[nodiscard]] MAILHEARTH_EXPORT int MailboxHash(const SString& name);

// Returns the bucket in decimal, a "/" and the name.
[[nodiscard]] MAILHEARTH_EXPORT SString GetMailboxSubpath(const SString& name);

}  // namespace mailhearth

#endif  // MAILHEARTH_SYSTEM_DIGESTS_H
