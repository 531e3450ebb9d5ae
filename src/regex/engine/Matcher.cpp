#include "Matcher.h"

inline namespace mailhearth {

namespace engine {

namespace {

// Whether a node does not match without its one child.
bool NeedsItsChild(const Node& node) {
  return node.kind == NodeKind::kGroup || (node.kind == NodeKind::kRepetition && node.min > 0);
}

// Returns a part without which `node` does not match, null when none is found: of a
// concatenation the last byte, else the first child that needs its own one.
const Node* RequiredPart(const Tree& tree, const Node& node) {
  if (NeedsItsChild(node)) return &tree.nodes[node.child];
  if (node.kind != NodeKind::kConcatenation) return nullptr;
  const Node* byte = nullptr;
  const Node* parent = nullptr;
  for (std::uint32_t index = node.child; index != kNone; index = tree.nodes[index].sibling) {
    const Node& child = tree.nodes[index];
    if (child.kind == NodeKind::kByte) byte = &child;
    if (parent == nullptr && NeedsItsChild(child)) parent = &child;
  }
  return byte != nullptr ? byte : parent;
}

std::optional<unsigned char> RequiredByte(const Tree& tree) {
  const Node* node = &tree.nodes[tree.root];
  while (node != nullptr && node->kind != NodeKind::kByte) node = RequiredPart(tree, *node);
  if (node == nullptr) return std::nullopt;
  return static_cast<unsigned char>(node->value);
}

// Returns whether `text` has the byte from `start` on, unless it is too long to look: searches
// one behind the other in a long text would look through all of it each time.
bool MayHave(std::string_view text, std::size_t start, unsigned char byte) {
  constexpr std::size_t kShort = 1024;
  const std::size_t length = text.size() - start;
  return length > kShort || text.find(static_cast<char>(byte), start) != text.npos;
}

}  // namespace

Matcher::Matcher(const Tree& tree, Program& program)
    : program_(program),
      width_(tree.nodes[tree.root].width),
      requiredByte_(RequiredByte(tree)),
      forward_(program, Direction::kForward) {
  endAnchored_ = program.SeesEnd() && !forward_.Anchored() && Backward().Anchored();
}

bool Matcher::Find(std::string_view text, std::size_t start, Span& match) {
  if (requiredByte_ && !MayHave(text, start, *requiredByte_)) return false;
  if (endAnchored_) {
    match = {_FindStart(text, start, text.size()), text.size()};
    return match.from != kNowhere;
  }
  if (!_FindEnd(text, start, match)) return false;
  if (width_ != kNone) {
    match.from = match.to - width_;
  } else if (forward_.Anchored()) {
    match.from = 0;
  } else if (match.from == kNowhere) {
    match.from = _FindStart(text, start, match.to);
  }
  return true;
}

// Sets match.to, and match.from where that has been seen, else to kNowhere. It is seen if the
// search was idle, with no match begun, before the one that is first in its state; word
// boundaries make more than one idle state, so it is not seen with them.
bool Matcher::_FindEnd(std::string_view text, std::size_t start, Span& match) {
  if (forward_.Full()) forward_.Clear();
  const Run whole{0, program_.End()};
  const Neighbour behind = program_.NeighbourOf(program_.ClassBefore(text, start));
  Reading reading(forward_, forward_.Start(whole, behind, true));
  Begun begun;
  if (!program_.SeesWords()) begun = {forward_.Start(whole, Neighbour::kOther, true), start};
  bool found = false;
  for (std::size_t at = start; !reading.Dead(); ++at) {
    if (reading.Kept()) at = _TakePlainSteps(reading, text, at, begun);
    const std::size_t drops = forward_.Drops();
    const std::uint32_t step = reading.Step(program_.ClassBehind(text, at));
    if ((step & Automaton::kLost) != 0) begun.at = kNowhere;
    if ((step & Automaton::kMatched) != 0) {
      match = {begun.at, at};
      found = true;
    }
    if (drops != forward_.Drops()) begun = Begun();
    if (at == text.size()) break;
  }
  return found;
}

// Takes steps that are known and tell nothing. Returns the boundary where they end.
std::size_t Matcher::_TakePlainSteps(Reading& reading, std::string_view text, std::size_t at,
                                     Begun& begun) {
  // A state is looked at for a loop when it was stayed in for so many steps.
  constexpr int kSteps = 4;
  const std::uint8_t* const classes = program_.Classes().data();
  const std::uint32_t* table = forward_.Table();
  const std::size_t from = at;
  Automaton::StateId state = reading.State();
  int stays = 0;
  for (; at < text.size(); ++at) {
    const std::uint32_t step = table[state + classes[static_cast<unsigned char>(text[at])]];
    if (!Automaton::Plain(step)) break;
    if (step != state) {
      if (state == begun.idle) begun.at = at;
      state = step;
      stays = 0;
    } else if (++stays == kSteps) {
      const Automaton::StateId before = state;
      at = forward_.SkipLoop(state, text, at + 1) - 1;
      if (state != before) begun.at = kNowhere;
      table = forward_.Table();
      stays = 0;
    }
  }
  if (state == begun.idle) begun.at = at;
  reading.MoveTo(state, at - from);
  return at;
}

Automaton& Matcher::Backward() {
  if (!backward_) backward_.emplace(program_, Direction::kBackward);
  return *backward_;
}

// Returns the least boundary from `start` on from which there is a match that ends at `end`, or
// kNowhere.
std::size_t Matcher::_FindStart(std::string_view text, std::size_t start, std::size_t end) {
  Automaton& backward = Backward();
  if (backward.Full()) backward.Clear();
  const std::uint32_t behind = program_.ClassBehind(text, end);
  Reading reading(backward,
                  backward.Start({0, program_.End()}, program_.NeighbourOf(behind), false));
  std::size_t found = kNowhere;
  for (std::size_t at = end; !reading.Dead(); --at) {
    at = reading.TakePlainStepsBack(text, start, at);
    const std::uint32_t step = reading.Step(program_.ClassBefore(text, at));
    if ((step & Automaton::kMatched) != 0) found = at;
    if (at == start) break;
  }
  return found;
}

}  // namespace engine

}  // namespace mailhearth
