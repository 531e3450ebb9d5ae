#include "Viability.h"

#include <algorithm>
#include <utility>

#include "Reading.h"

inline namespace mailhearth {

namespace engine {

namespace {

constexpr std::size_t kLongestBlock = 4096;
constexpr std::size_t kShortestBlock = 16;
constexpr std::size_t kFanOut = 64;

// The memory that a state may take when it has all the places of `run`.
std::size_t LargestState(const Program& program, Run run) {
  return (run.end - run.start + program.EdgeClass()) * sizeof(Place) + sizeof(State);
}

}  // namespace

void Viability::Begin(std::string_view text, std::size_t start, std::size_t end, Run run) {
  text_ = text;
  last_ = end;
  parts_.clear();
  if (backward_.Full()) backward_.Clear();
  const Neighbour behind = program_.NeighbourOf(program_.ClassBehind(text, end));
  const StateId atEnd = backward_.Start(run, behind, false);
  const std::size_t largest = LargestState(program_, run);
  const std::size_t length = end - start;
  if (length <= kShortestBlock || (length <= kLongestBlock && length * largest <= kCacheBudget)) {
    return _ReadBlock(start, end, atEnd);
  }
  blockLength_ = std::clamp(kCacheBudget / largest, kShortestBlock, kLongestBlock);
  fanOut_ = std::clamp<std::size_t>(kCacheBudget / largest, 2, kFanOut);
  parts_.push_back({start, end, backward_[atEnd].Spell()});
  blockEnd_ = start;
}

// Makes the block with the boundary `at` the one in use.
void Viability::_Load(std::size_t at) {
  for (;;) {
    const Part part = std::move(parts_.back());
    parts_.pop_back();
    if (at >= part.end && part.end != last_) continue;
    if (backward_.Full()) backward_.Clear();
    if (part.end - part.start <= blockLength_) {
      return _ReadBlock(part.start, part.end, backward_.Add(part.atEnd));
    }
    _Divide(part);
  }
}

// Reads a part backward and puts its own parts in its place.
void Viability::_Divide(const Part& part) {
  const std::size_t length = std::max((part.end - part.start) / fanOut_, blockLength_);
  Reading reading(backward_, backward_.Add(part.atEnd));
  std::size_t end = part.end;
  for (; end - part.start > length; end -= length) {
    parts_.push_back({end - length, end, reading.Spell()});
    for (std::size_t at = end; at > end - length; --at)
      reading.Step(program_.ClassBefore(text_, at));
  }
  parts_.push_back({part.start, end, reading.Spell()});
}

// Reads a part backward and keeps the state of each boundary.
void Viability::_ReadBlock(std::size_t start, std::size_t end, StateId atEnd) {
  block_.resize(end - start + 1);
  block_.back() = atEnd;
  StateId state = atEnd;
  for (std::size_t at = end - start; at-- > 0;) {
    const std::uint32_t byteClass = program_.ClassBehind(text_, start + at);
    std::uint32_t step = backward_.Table()[state + byteClass];
    if (step == Automaton::kUnknown) step = backward_.Step(state, byteClass);
    state = Automaton::StateOf(step);
    block_[at] = state;
  }
  blockStart_ = start;
  blockEnd_ = end == last_ ? last_ + 1 : end;
}

}  // namespace engine

}  // namespace mailhearth
