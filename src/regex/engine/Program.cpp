#include "Program.h"

#include <regex.h>

#include <algorithm>
#include <bit>
#include <cstring>
#include <numeric>
#include <utility>

inline namespace mailhearth {

namespace engine {

namespace {

constexpr bool IsWordByte(std::size_t c) {
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || c == '_' || (c >= 'a' && c <= 'z');
}

const ByteSet& WordBytes() {
  static const ByteSet kWords = [] {
    ByteSet set;
    for (std::size_t c = 0; c < set.size(); ++c) set[c] = IsWordByte(c);
    return set;
  }();
  return kWords;
}

// Returns the bytes that differ from the byte below them in `set`.
ByteSet Borders(const ByteSet& set) { return set ^ (set << 1); }

// Returns the members of a set, in order.
std::vector<std::size_t> Members(const ByteSet& set) {
  constexpr std::size_t kWord = 64;
  std::vector<std::size_t> members;
  for (std::size_t start = 0; start < set.size(); start += kWord) {
    std::uint64_t word = (set >> start & ByteSet(~std::uint64_t{0})).to_ullong();
    for (; word != 0; word &= word - 1) {
      members.push_back(start + static_cast<std::size_t>(std::countr_zero(word)));
    }
  }
  return members;
}

// Ranges of bytes, of one kind at first, that sets tell apart.
class Ranges {
 public:
  // Each member of `borders`, and 0, begins a range.
  explicit Ranges(ByteSet borders) : firsts_(Members(borders.set(0))), kinds_(firsts_.size()) {}

  [[nodiscard]] std::size_t Count() const { return firsts_.size(); }
  [[nodiscard]] std::size_t First(std::size_t i) const { return i < Count() ? firsts_[i] : 256; }
  [[nodiscard]] std::uint32_t Kind(std::size_t i) const { return kinds_[i]; }
  [[nodiscard]] std::uint32_t Kinds() const { return count_; }

  // Gives the ranges within `set` another kind than those of their kind outside. Needs: no
  // range is partly within.
  void Separate(const ByteSet& set);

 private:
  std::vector<std::size_t> firsts_;
  std::vector<std::uint32_t> kinds_;  // of each range
  std::uint32_t count_ = 1;           // of kinds
};

void Ranges::Separate(const ByteSet& set) {
  std::array<bool, 256> outside{};        // which kinds have a range outside
  std::array<std::uint32_t, 256> inside;  // the kind of those within, if it is a new one
  std::fill_n(outside.begin(), count_, false);
  std::fill_n(inside.begin(), count_, 0);
  for (std::size_t i = 0; i < Count(); ++i) outside[kinds_[i]] |= !set[firsts_[i]];
  for (std::size_t i = 0; i < Count(); ++i) {
    std::uint32_t& kind = kinds_[i];
    if (!set[firsts_[i]] || !outside[kind]) continue;
    if (inside[kind] == 0) inside[kind] = count_++;
    kind = inside[kind];
  }
}

}  // namespace

// Writes the code of a tree. A node is entered once for each time its code is written; the
// nodes that are being written are a stack of frames, so the depth of a pattern does not
// matter.
class Program::Writer {
 public:
  Writer(Tree& tree, std::vector<Instruction>& code) : tree_(tree), code_(code) {}

  int Write();

 private:
  // Nodes entered at most: bounds can have many nodes without code written many times.
  static constexpr std::size_t kMaxEntered = 32 * kMaxInstructions;

  struct Frame {
    std::uint32_t node;
    std::uint32_t child;  // that is being written, kNone before the first
    Place start;          // of the node's code
    Place split = kNone;  // whose target is still open
    Place jumps = kNone;  // last of the jumps to the end, chained by their arguments
    std::uint32_t turns = 0;
    Place turnStart = 0;
  };

  [[nodiscard]] Place _Here() const { return static_cast<Place>(code_.size()); }
  void _Emit(Operation operation, std::uint32_t argument) {
    code_.push_back({operation, argument});
  }

  void _Enter(std::uint32_t index);
  bool _Resume(Frame& frame);
  bool _NextOfConcatenation(Frame& frame, Node& node);
  bool _NextOfAlternation(Frame& frame, Node& node);
  bool _NextOfGroup(Frame& frame, Node& node);
  bool _NextOfRepetition(Frame& frame, Node& node);
  bool _WantsTurn(const Frame& frame, const Node& node) const;
  void _EndTurns(Frame& frame, Node& node);
  void _EndLeaf(Node& node, std::uint32_t width, std::uint32_t size) {
    node.width = width;
    node.size = size;
  }

  Tree& tree_;
  std::vector<Instruction>& code_;
  std::vector<Frame> frames_;
  std::size_t entered_ = 0;
};

int Program::Writer::Write() {
  _Enter(tree_.root);
  while (!frames_.empty()) {
    if (code_.size() > kMaxInstructions || entered_ > kMaxEntered) return REG_ESPACE;
    Frame& frame = frames_.back();
    if (_Resume(frame)) {
      _Enter(frame.child);
    } else {
      tree_.nodes[frame.node].size = _Here() - frame.start;
      frames_.pop_back();
    }
  }
  return code_.size() > kMaxInstructions ? REG_ESPACE : 0;
}

// Writes the code of a leaf, or puts a node with children on the stack.
void Program::Writer::_Enter(std::uint32_t index) {
  Node& node = tree_.nodes[index];
  ++entered_;
  switch (node.kind) {
    case NodeKind::kEmpty:
      return _EndLeaf(node, 0, 0);
    case NodeKind::kByte:
      _Emit(Operation::kByte, node.value);
      return _EndLeaf(node, 1, 1);
    case NodeKind::kSet:
      _Emit(Operation::kSet, node.value);
      return _EndLeaf(node, 1, 1);
    case NodeKind::kAssertion:
      _Emit(Operation::kAssert, node.value);
      return _EndLeaf(node, 0, 1);
    default:
      frames_.push_back({.node = index, .child = kNone, .start = _Here()});
  }
}

// Goes on with a node: returns whether `frame.child` is to be written next.
bool Program::Writer::_Resume(Frame& frame) {
  Node& node = tree_.nodes[frame.node];
  if (frame.child != kNone) node.reports |= tree_.nodes[frame.child].reports;
  switch (node.kind) {
    case NodeKind::kConcatenation:
      return _NextOfConcatenation(frame, node);
    case NodeKind::kAlternation:
      return _NextOfAlternation(frame, node);
    case NodeKind::kGroup:
      return _NextOfGroup(frame, node);
    default:
      return _NextOfRepetition(frame, node);
  }
}

bool Program::Writer::_NextOfConcatenation(Frame& frame, Node& node) {
  if (frame.child == kNone) {
    frame.child = node.child;
    node.width = 0;
    return true;
  }
  node.width = SumOfWidths(node.width, tree_.nodes[frame.child].width);
  frame.child = tree_.nodes[frame.child].sibling;
  return frame.child != kNone;
}

// All branches but the last: split to the next one, code, jump to the end.
bool Program::Writer::_NextOfAlternation(Frame& frame, Node& node) {
  if (frame.child == kNone) {
    frame.child = node.child;
  } else {
    const Node& done = tree_.nodes[frame.child];
    node.width = frame.child == node.child || node.width == done.width ? done.width : kNone;
    frame.child = done.sibling;
    if (frame.child == kNone) {
      while (frame.jumps != kNone)
        frame.jumps = std::exchange(code_[frame.jumps].argument, _Here());
      return false;
    }
    _Emit(Operation::kJump, frame.jumps);
    frame.jumps = _Here() - 1;
    code_[frame.split].argument = _Here();
  }
  if (tree_.nodes[frame.child].sibling != kNone) {
    frame.split = _Here();
    _Emit(Operation::kSplit, kNone);
  }
  return true;
}

bool Program::Writer::_NextOfGroup(Frame& frame, Node& node) {
  if (frame.child == kNone) {
    frame.child = node.child;
    return true;
  }
  node.width = tree_.nodes[frame.child].width;
  node.reports |= node.value <= kMaxReportedGroup;
  return false;
}

// The turns that must be, one after the other. Then as many as may be, each with a split to
// the end before it; or, without limit, one that jumps back to its split, or a split back
// to the last turn that must be. Groups.cpp counts on this form.
bool Program::Writer::_NextOfRepetition(Frame& frame, Node& node) {
  if (!_WantsTurn(frame, node)) {
    _EndTurns(frame, node);
    return false;
  }
  if (frame.turns >= node.min) {
    _Emit(Operation::kSplit, frame.split);
    frame.split = _Here() - 1;
  }
  frame.turnStart = _Here();
  frame.child = node.child;
  ++frame.turns;
  return true;
}

bool Program::Writer::_WantsTurn(const Frame& frame, const Node& node) const {
  // Code that is empty is as good once as many times; else empty groups in nested bounds
  // would take for ever to write nothing.
  if (frame.turns > 0 && tree_.nodes[node.child].size == 0) return false;
  const std::uint32_t most =
      node.max == kUnbounded ? std::max<std::uint32_t>(node.min, 1) : node.max;
  return frame.turns < most;
}

void Program::Writer::_EndTurns(Frame& frame, Node& node) {
  if (node.max == kUnbounded) {
    if (node.min == 0) {
      _Emit(Operation::kJump, frame.turnStart - 1);
    } else {
      _Emit(Operation::kSplit, frame.turnStart);
    }
  }
  while (frame.split != kNone) frame.split = std::exchange(code_[frame.split].argument, _Here());
  const std::uint32_t width = frame.turns == 0 ? 0 : tree_.nodes[node.child].width;
  if (width == 0) {
    node.width = 0;
  } else if (node.min == node.max && width != kNone) {
    node.width = width * node.max;
  } else {
    node.width = kNone;
  }
}

int Program::Make(Tree& tree) {
  code_.reserve(std::min(tree.nodes.size() * 2, kMaxInstructions));
  const int status = Writer(tree, code_).Write();
  if (status != 0) return status;
  sets_ = tree.sets;
  _MakeClasses();
  return 0;
}

// A class is made of the ranges of bytes, between the borders of all sets, that the same
// sets hold.
void Program::_MakeClasses() {
  bool asserts = false;
  ByteSet singles;
  for (const Instruction& each : code_) {
    if (each.operation == Operation::kByte) singles.set(each.argument);
    if (each.operation == Operation::kAssert) {
      asserts = true;
      seesEnd_ |= each.argument == static_cast<std::uint32_t>(Assertion::kTextEnd);
      seesWords_ |= each.argument >= static_cast<std::uint32_t>(Assertion::kWordStart);
    }
  }
  ByteSet borders = singles | singles << 1;
  for (const ByteSet& set : sets_) borders |= Borders(set);
  if (seesWords_) borders |= Borders(WordBytes());

  Ranges ranges(borders);
  for (const ByteSet& set : sets_) ranges.Separate(set);
  if (seesWords_) ranges.Separate(WordBytes());
  for (const std::size_t byte : Members(singles)) ranges.Separate(ByteSet().set(byte));

  classes_ = ranges.Kinds();
  for (std::size_t i = 0; i < ranges.Count(); ++i) {
    const std::size_t first = ranges.First(i);
    const auto kind = static_cast<std::uint8_t>(ranges.Kind(i));
    std::memset(classOf_.data() + first, kind, ranges.First(i + 1) - first);
    sampleOf_[kind] = static_cast<std::uint8_t>(first);
    neighbourOf_[kind] = seesWords_ && IsWordByte(first) ? Neighbour::kWord : Neighbour::kOther;
  }
  neighbourOf_[classes_] = asserts ? Neighbour::kEdge : Neighbour::kOther;
}

bool Program::Holds(std::uint32_t which, Neighbour left, Neighbour right) {
  switch (static_cast<Assertion>(which)) {
    case Assertion::kTextStart:
      return left == Neighbour::kEdge;
    case Assertion::kTextEnd:
      return right == Neighbour::kEdge;
    case Assertion::kWordStart:
      return left != Neighbour::kWord && right == Neighbour::kWord;
    default:
      return left == Neighbour::kWord && right != Neighbour::kWord;
  }
}

std::span<const Place> Program::Jumps(Place place) {
  if (jumpsStart_.empty()) _MakeJumps();
  return {jumps_.data() + jumpsStart_[place], jumpsStart_[place + 1] - jumpsStart_[place]};
}

void Program::_MakeJumps() {
  const auto jumps = [](const Instruction& each) {
    return each.operation == Operation::kSplit || each.operation == Operation::kJump;
  };
  // While it is filled, the entry behind that of a place tells where its next jump goes.
  std::vector<std::uint32_t> starts(code_.size() + 3, 0);
  for (const Instruction& each : code_) {
    if (jumps(each)) ++starts[each.argument + 2];
  }
  std::partial_sum(starts.begin(), starts.end(), starts.begin());
  jumps_.resize(starts.back());
  for (Place place = 0; place < End(); ++place) {
    if (jumps(code_[place])) jumps_[starts[code_[place].argument + 1]++] = place;
  }
  jumpsStart_ = std::move(starts);
}

}  // namespace engine

}  // namespace mailhearth
