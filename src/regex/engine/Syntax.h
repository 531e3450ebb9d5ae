// Not installed. The parser: from a pattern to its syntax tree. Expression.h defines the syntax.

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

// A zero-width assertion, which must hold between two bytes.
enum class Assertion : std::uint8_t { kTextStart, kTextEnd, kWordStart, kWordEnd };

enum class NodeKind : std::uint8_t {
  kEmpty,
  kByte,           // `value` is the byte
  kSet,            // `value` is the index of a set
  kAssertion,      // `value` is the Assertion
  kConcatenation,  // of two or more children
  kAlternation,    // of two or more children, the branches
  kRepetition,     // of one child, `min` to `max` times
  kGroup,          // of one child; `value` is the number, from 1 on
};

inline constexpr std::uint32_t kNone = 0xFFFFFFFF;
inline constexpr int kMaxBound = 255;
inline constexpr std::uint16_t kUnbounded = kMaxBound + 1;

// Groups with higher numbers match but are not reported.
inline constexpr std::uint32_t kMaxReportedGroup = 9;

struct Node {
  NodeKind kind = NodeKind::kEmpty;
  std::uint8_t min = 0;
  bool reports = false;  // whether it contains a group that is reported
  std::uint16_t max = 0;
  std::uint32_t value = 0;
  std::uint32_t child = kNone;    // the first child
  std::uint32_t sibling = kNone;  // the next child of the same parent

  // Set by Program::Compile():
  std::uint32_t size = 0;   // instructions
  std::uint32_t width = 0;  // of its matches, in bytes, if all have the same, else kNone
};

// Returns the sum of two widths. It cannot overflow: each byte of a width is an instruction.
inline std::uint32_t SumOfWidths(std::uint32_t a, std::uint32_t b) {
  return a == kNone || b == kNone ? kNone : a + b;
}

// A syntax tree; its nodes refer to each other by index.
struct Tree {
  std::vector<Node> nodes;
  std::vector<ByteSet> sets;
  std::uint32_t root = kNone;
  int groups = 0;
};

// The maximal number of nodes, and of groups open at once.
inline constexpr std::size_t kMaxNodes = std::size_t{1} << 17;

// Parses `pattern` into `tree`. Returns 0 or a code of <regex.h>. Takes time and memory
// proportional to the length of the pattern, and constant stack.
int Parse(std::string_view pattern, bool ignoreCase, Tree& tree);

}  // namespace engine

}  // namespace mailhearth

#endif  // MAILHEARTH_REGEX_ENGINE_SYNTAX_H
