// Compiles the tree to an NFA, each node to the code that Thompson's construction gives it, with
// bounds written out. Then computes the byte classes by partition refinement: the bytes are one
// class at first, which each set and each byte of the program splits. The DFAs need a transition
// per class instead of per byte.

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

// Returns the bytes at which a range of members or of non-members of `set` begins.
ByteSet Borders(const ByteSet& set) { return set ^ (set << 1); }

// Returns the members of a set in ascending order.
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

// A partition of the bytes into classes, refined set by set. It works on ranges of bytes that
// no set divides, not on single bytes.
class Partition {
 public:
  // Begins with one class. Each member of `borders`, and 0, begins a range.
  explicit Partition(ByteSet borders)
      : firsts_(Members(borders.set(0))), classOf_(firsts_.size()) {}

  [[nodiscard]] std::size_t Ranges() const { return firsts_.size(); }
  [[nodiscard]] std::size_t First(std::size_t i) const { return i < Ranges() ? firsts_[i] : 256; }
  [[nodiscard]] std::uint32_t ClassOf(std::size_t i) const { return classOf_[i]; }
  [[nodiscard]] std::uint32_t Classes() const { return classes_; }

  // Splits every class that `set` divides. Needs: no range lies partly in `set`.
  void Refine(const ByteSet& set);

 private:
  std::vector<std::size_t> firsts_;
  std::vector<std::uint32_t> classOf_;  // by range
  std::uint32_t classes_ = 1;
};

void Partition::Refine(const ByteSet& set) {
  std::array<bool, 256> outside{};         // which classes have a range outside the set
  std::array<std::uint32_t, 256> splitTo;  // the new class of the ranges inside, 0 for none yet
  std::fill_n(outside.begin(), classes_, false);
  std::fill_n(splitTo.begin(), classes_, 0);
  for (std::size_t i = 0; i < Ranges(); ++i) outside[classOf_[i]] |= !set[firsts_[i]];
  for (std::size_t i = 0; i < Ranges(); ++i) {
    std::uint32_t& rangeClass = classOf_[i];
    if (!set[firsts_[i]] || !outside[rangeClass]) continue;
    if (splitTo[rangeClass] == 0) splitTo[rangeClass] = classes_++;
    rangeClass = splitTo[rangeClass];
  }
}

}  // namespace

// Writes the code of a tree, in a traversal with an explicit stack, so that the depth of a
// pattern does not matter. The operand of a repetition is entered for each copy of its code.
class Program::Writer {
 public:
  Writer(Tree& tree, std::vector<Instruction>& code) : tree_(tree), code_(code) {}

  int Write();

 private:
  // The maximal number of nodes entered: bounds on empty nodes enter many and write nothing.
  static constexpr std::size_t kMaxEntered = 32 * kMaxInstructions;

  // A node whose code is being written.
  struct Frame {
    std::uint32_t node;
    std::uint32_t child;  // the child being written, kNone before the first
    Place start;          // of the node's code
    Place split = kNone;  // the last split to be patched; they are chained by their arguments
    Place jumps = kNone;  // the last jump to the end to be patched, chained likewise
    std::uint32_t iterations = 0;
    Place iterationStart = 0;
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
  bool _WantsIteration(const Frame& frame, const Node& node) const;
  void _EndIterations(Frame& frame, Node& node);
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

// Writes the code of a leaf, or pushes a node with children.
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

// Continues with a node: sets `frame.child` to the next child and returns true, or returns false
// after the last one.
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

// Each branch but the last is a split to the next one, its code, and a jump to the end.
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

// The required iterations are written one after the other. Then follow the optional ones, each
// after a split to the end. Without an upper limit there is instead one iteration that jumps
// back to its split, or a split back to the last required iteration. Groups.cpp relies on
// this layout.
bool Program::Writer::_NextOfRepetition(Frame& frame, Node& node) {
  if (!_WantsIteration(frame, node)) {
    _EndIterations(frame, node);
    return false;
  }
  if (frame.iterations >= node.min) {
    _Emit(Operation::kSplit, frame.split);
    frame.split = _Here() - 1;
  }
  frame.iterationStart = _Here();
  frame.child = node.child;
  ++frame.iterations;
  return true;
}

bool Program::Writer::_WantsIteration(const Frame& frame, const Node& node) const {
  // One copy of empty code serves for all: else empty groups in nested bounds would take
  // forever to write nothing.
  if (frame.iterations > 0 && tree_.nodes[node.child].size == 0) return false;
  const std::uint32_t most =
      node.max == kUnbounded ? std::max<std::uint32_t>(node.min, 1) : node.max;
  return frame.iterations < most;
}

void Program::Writer::_EndIterations(Frame& frame, Node& node) {
  if (node.max == kUnbounded) {
    if (node.min == 0) {
      _Emit(Operation::kJump, frame.iterationStart - 1);
    } else {
      _Emit(Operation::kSplit, frame.iterationStart);
    }
  }
  while (frame.split != kNone) frame.split = std::exchange(code_[frame.split].argument, _Here());
  const std::uint32_t width = frame.iterations == 0 ? 0 : tree_.nodes[node.child].width;
  if (width == 0) {
    node.width = 0;
  } else if (node.min == node.max && width != kNone) {
    node.width = width * node.max;
  } else {
    node.width = kNone;
  }
}

int Program::Compile(Tree& tree) {
  code_.reserve(std::min(tree.nodes.size() * 2, kMaxInstructions));
  const int status = Writer(tree, code_).Write();
  if (status != 0) return status;
  sets_ = tree.sets;
  _MakeClasses();
  return 0;
}

// The edge class gets its number last. Words split classes only if the program looks for them.
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

  Partition partition(borders);
  for (const ByteSet& set : sets_) partition.Refine(set);
  if (seesWords_) partition.Refine(WordBytes());
  for (const std::size_t byte : Members(singles)) partition.Refine(ByteSet().set(byte));

  classes_ = partition.Classes();
  for (std::size_t i = 0; i < partition.Ranges(); ++i) {
    const std::size_t first = partition.First(i);
    const auto byteClass = static_cast<std::uint8_t>(partition.ClassOf(i));
    std::memset(classOf_.data() + first, byteClass, partition.First(i + 1) - first);
    representative_[byteClass] = static_cast<std::uint8_t>(first);
    kindOf_[byteClass] = seesWords_ && IsWordByte(first) ? ByteKind::kWord : ByteKind::kOther;
  }
  kindOf_[classes_] = asserts ? ByteKind::kEdge : ByteKind::kOther;
}

bool Program::Holds(std::uint32_t which, ByteKind left, ByteKind right) {
  switch (static_cast<Assertion>(which)) {
    case Assertion::kTextStart:
      return left == ByteKind::kEdge;
    case Assertion::kTextEnd:
      return right == ByteKind::kEdge;
    case Assertion::kWordStart:
      return left != ByteKind::kWord && right == ByteKind::kWord;
    default:
      return left == ByteKind::kWord && right != ByteKind::kWord;
  }
}

std::span<const Place> Program::JumpsTo(Place place) {
  if (jumpsStart_.empty()) _MakeJumps();
  return {jumps_.data() + jumpsStart_[place], jumpsStart_[place + 1] - jumpsStart_[place]};
}

void Program::_MakeJumps() {
  const auto jumps = [](const Instruction& each) {
    return each.operation == Operation::kSplit || each.operation == Operation::kJump;
  };
  // A counting sort. While jumps_ is filled, starts[place + 1] is where the next jump to `place`
  // is to be stored; afterwards it is the end of the jumps to `place`.
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
