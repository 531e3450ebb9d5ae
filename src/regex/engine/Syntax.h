// The syntax of patterns: from the text of a pattern to its tree. Expression.h tells what
// is accepted.

#ifndef MAILHEARTH_REGEX_ENGINE_SYNTAX_H
#define MAILHEARTH_REGEX_ENGINE_SYNTAX_H

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

inline namespace mailhearth {

namespace engine {

using ByteSet = std::bitset<256>;

// What must hold between two bytes.
enum class Assertion : std::uint8_t { kTextStart, kTextEnd, kWordStart, kWordEnd };

enum class NodeKind : std::uint8_t {
  kEmpty,
  kByte,           // `value` is the byte
  kSet,            // `value` is the index of a set
  kAssertion,      // `value` is the Assertion
  kConcatenation,  // of two or more children
  kAlternation,    // of two or more children
  kRepetition,     // of one child, `min` to `max` times
  kGroup,          // of one child; `value` is the number, from 1 on
};

inline constexpr std::uint32_t kNone = 0xFFFFFFFF;
inline constexpr int kMaxBound = 255;
inline constexpr std::uint16_t kUnbounded = kMaxBound + 1;

// Groups with numbers above this are matched, and not reported.
inline constexpr std::uint32_t kMaxReportedGroup = 9;

struct Node {
  NodeKind kind = NodeKind::kEmpty;
  std::uint8_t min = 0;
  bool reports = false;  // whether there is a group in it that is reported
  std::uint16_t max = 0;
  std::uint32_t value = 0;
  std::uint32_t child = kNone;    // the first child
  std::uint32_t sibling = kNone;  // the next child of the same parent

  // Set when the program is made:
  std::uint32_t size = 0;   // instructions
  std::uint32_t width = 0;  // bytes that it matches if that is always the same, else kNone
};

// Returns a width made of two. None comes near the limit: each byte of it is an instruction.
inline std::uint32_t SumOfWidths(std::uint32_t a, std::uint32_t b) {
  return a == kNone || b == kNone ? kNone : a + b;
}

// A tree; its nodes refer to each other by index.
struct Tree {
  std::vector<Node> nodes;
  std::vector<ByteSet> sets;
  std::uint32_t root = kNone;
  int groups = 0;
};

// A tree has at most so many nodes, and as many groups open at once.
inline constexpr std::size_t kMaxNodes = std::size_t{1} << 17;

// Reads `pattern` into `tree`. Returns 0 or a code of <regex.h>. Takes time and memory in
// proportion to the pattern, and constant stack.
int Parse(std::string_view pattern, bool ignoreCase, Tree& tree);

}  // namespace engine

}  // namespace mailhearth

#endif  // MAILHEARTH_REGEX_ENGINE_SYNTAX_H
