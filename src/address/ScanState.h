// The states of a scanner of mail addresses.

#ifndef MAILHEARTH_ADDRESS_SCANSTATE_H
#define MAILHEARTH_ADDRESS_SCANSTATE_H

inline namespace mailhearth {

// The states of a scanner. The sum of state and byte is an index into its table of rules.
struct ScanState {
  // Outside of everything, or within a quoted string, a comment, a domain literal.
  enum Value { kOutside = 0x000, kInQuoted = 0x100, kInComment = 0x200, kInLiteral = 0x300 };
};

}  // namespace mailhearth

#endif  // MAILHEARTH_ADDRESS_SCANSTATE_H
