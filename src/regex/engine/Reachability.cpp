// A range that fits into a block is read at once. Otherwise parts are kept on a stack: when the
// boundary asked for lies after the current block, the next part is popped, divided until a part
// is no longer than a block, and read into the block.

#include "Reachability.h"

#include <algorithm>
#include <utility>

#include "Cursor.h"

inline namespace mailhearth {

namespace engine {

namespace {

constexpr std::size_t kLongestBlock = 4096;
constexpr std::size_t kShortestBlock = 16;
constexpr std::size_t kFanOut = 64;

// The memory that a state with all the places of `fragment` takes, with its row, in bytes.
std::size_t LargestState(const Program& program, Fragment fragment) {
  return (fragment.end - fragment.start + program.EdgeClass()) * sizeof(Place) + sizeof(State);
}

}  // namespace

void Reachability::Begin(std::string_view text, std::size_t start, std::size_t end,
                         Fragment fragment) {
  text_ = text;
  last_ = end;
  parts_.clear();
  if (reverse_.Full()) reverse_.Clear();
  const ByteKind previous = program_.KindOf(program_.ClassAfter(text, end));
  const StateId atEnd = reverse_.Start(fragment, previous, false);
  const std::size_t largest = LargestState(program_, fragment);
  const std::size_t length = end - start;
  if (length <= kShortestBlock || (length <= kLongestBlock && length * largest <= kCacheBudget)) {
    return _ReadBlock(start, end, atEnd);
  }
  blockLength_ = std::clamp(kCacheBudget / largest, kShortestBlock, kLongestBlock);
  fanOut_ = std::clamp<std::size_t>(kCacheBudget / largest, 2, kFanOut);
  parts_.push_back({start, end, reverse_[atEnd].ToState()});
  blockEnd_ = start;
}

// Loads the block that has the boundary `at`.
void Reachability::_Load(std::size_t at) {
  for (;;) {
    const Part part = std::move(parts_.back());
    parts_.pop_back();
    if (at >= part.end && part.end != last_) continue;
    if (reverse_.Full()) reverse_.Clear();
    if (part.end - part.start <= blockLength_) {
      return _ReadBlock(part.start, part.end, reverse_.Add(part.atEnd));
    }
    _Divide(part);
  }
}

// Reads a part backward and pushes the parts that it is divided into.
void Reachability::_Divide(const Part& part) {
  const std::size_t length = std::max((part.end - part.start) / fanOut_, blockLength_);
  Cursor cursor(reverse_, reverse_.Add(part.atEnd));
  std::size_t end = part.end;
  for (; end - part.start > length; end -= length) {
    parts_.push_back({end - length, end, cursor.ToState()});
    for (std::size_t at = end; at > end - length; --at)
      cursor.Step(program_.ClassBefore(text_, at));
  }
  parts_.push_back({part.start, end, cursor.ToState()});
}

// Reads a part backward and stores the state of each boundary.
void Reachability::_ReadBlock(std::size_t start, std::size_t end, StateId atEnd) {
  block_.resize(end - start + 1);
  block_.back() = atEnd;
  StateId state = atEnd;
  for (std::size_t at = end - start; at-- > 0;) {
    const std::uint32_t byteClass = program_.ClassAfter(text_, start + at);
    std::uint32_t step = reverse_.Table()[state + byteClass];
    if (step == Automaton::kUnknown) step = reverse_.Step(state, byteClass);
    state = Automaton::StateOf(step);
    block_[at] = state;
  }
  blockStart_ = start;
  blockEnd_ = end == last_ ? last_ + 1 : end;
}

}  // namespace engine

}  // namespace mailhearth
