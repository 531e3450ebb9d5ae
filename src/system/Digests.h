// Digests and identifiers: MD5, hexadecimal text, and the bucket of a mailbox.
//
// MD5 tells apart what differs by accident. It is broken for anything that an adversary
// may choose: do not use it as a proof.
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

// MD5 in steps, for data that comes in pieces: MD5Init, MD5Update as often as there are
// pieces, of whatever length, then MD5Final, which clears the context.
struct MD5_CTX {
  std::uint32_t state[4];     // of the blocks taken so far
  std::uint64_t length;       // bytes taken so far
  unsigned char pending[64];  // of them, those that do not fill a block yet
};

// Begins; takes `length` bytes more; ends, and writes the digest.
MAILHEARTH_EXPORT void MD5Init(MD5_CTX* context);
MAILHEARTH_EXPORT void MD5Update(MD5_CTX* context, const void* data, std::size_t length);
MAILHEARTH_EXPORT void MD5Final(unsigned char digest[16], MD5_CTX* context);

// Returns the bucket of a mailbox: from 0 to one less than the number of buckets, which the
// environment variable MailboxBucketCount gives; 500 if that is not a number of at least 1.
// Names that differ in case may have different buckets.
[[nodiscard]] MAILHEARTH_EXPORT int MailboxHash(const SString& name);

// Returns the bucket in decimal, "/" and the name.
[[nodiscard]] MAILHEARTH_EXPORT SString GetMailboxSubpath(const SString& name);

}  // namespace mailhearth

#endif  // MAILHEARTH_SYSTEM_DIGESTS_H
