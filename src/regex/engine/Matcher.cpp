// The forward DFA, unanchored, runs until it is dead; the last boundary where it matched is the end
// of the leftmost longest match, as later candidates are dropped once one has matched. The start
// is known if all matches are of one width, if the pattern is anchored, or if the search was seen
// idle, without candidates, just before the one that matched began. Otherwise the reverse DFA
// runs from the end; the last boundary where it matches is the start. A pattern that is anchored
// at the end of the text only needs the reverse run alone.

#include "Matcher.h"

inline namespace mailhearth {

namespace engine {

namespace {

// Whether every match of a node includes a match of its one child.
bool NeedsItsChild(const Node& node) {
  return node.kind == NodeKind::kGroup || (node.kind == NodeKind::kRepetition && node.min > 0);
}

// Returns a part that every match of `node` includes, null if none is found: of a concatenation
// the last byte, else the first child that needs its own child.
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

// Returns whether `text` has the byte at `start` or after it. A long text is not searched, and may
// have it: successive searches in one text would each scan all the rest of it.
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
  endAnchored_ = program.SeesEnd() && !forward_.Anchored() && Reverse().Anchored();
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

// Sets match.to, and match.from if the start was seen, else to kNowhere. The start is where the
// search left the idle state for the last time. With word boundaries there are several idle
// states, so there the start is never seen.
bool Matcher::_FindEnd(std::string_view text, std::size_t start, Span& match) {
  if (forward_.Full()) forward_.Clear();
  const Fragment whole{0, program_.End()};
  const ByteKind previous = program_.KindOf(program_.ClassBefore(text, start));
  Cursor cursor(forward_, forward_.Start(whole, previous, true));
  Candidate candidate;
  if (!program_.SeesWords()) candidate = {forward_.Start(whole, ByteKind::kOther, true), start};
  bool found = false;
  for (std::size_t at = start; !cursor.Dead(); ++at) {
    if (cursor.Cached()) at = _TakePlainSteps(cursor, text, at, candidate);
    const std::size_t generation = forward_.Generation();
    const std::uint32_t step = cursor.Step(program_.ClassAfter(text, at));
    if ((step & Automaton::kBeganLater) != 0) candidate.start = kNowhere;
    if ((step & Automaton::kMatched) != 0) {
      match = {candidate.start, at};
      found = true;
    }
    if (generation != forward_.Generation()) candidate = Candidate();
    if (at == text.size()) break;
  }
  return found;
}

// Takes plain, cached steps. Returns the offset where they end.
std::size_t Matcher::_TakePlainSteps(Cursor& cursor, std::string_view text, std::size_t at,
                                     Candidate& candidate) {
  // After so many steps from a state to itself, a faster way through the loop is tried.
  constexpr int kSteps = 4;
  const std::uint8_t* const classes = program_.Classes().data();
  const std::uint32_t* table = forward_.Table();
  const std::size_t from = at;
  Automaton::StateId state = cursor.State();
  int stays = 0;
  for (; at < text.size(); ++at) {
    const std::uint32_t step = table[state + classes[static_cast<unsigned char>(text[at])]];
    if (!Automaton::Plain(step)) break;
    if (step != state) {
      if (state == candidate.idle) candidate.start = at;
      state = step;
      stays = 0;
    } else if (++stays == kSteps) {
      const Automaton::StateId before = state;
      at = forward_.SkipLoop(state, text, at + 1) - 1;
      if (state != before) candidate.start = kNowhere;
      table = forward_.Table();
      stays = 0;
    }
  }
  if (state == candidate.idle) candidate.start = at;
  cursor.MoveTo(state, at - from);
  return at;
}

Automaton& Matcher::Reverse() {
  if (!reverse_) reverse_.emplace(program_, Direction::kReverse);
  return *reverse_;
}

// Returns the least offset, `start` or more, of a match that ends at `end`, or kNowhere.
std::size_t Matcher::_FindStart(std::string_view text, std::size_t start, std::size_t end) {
  Automaton& reverse = Reverse();
  if (reverse.Full()) reverse.Clear();
  const std::uint32_t after = program_.ClassAfter(text, end);
  Cursor cursor(reverse, reverse.Start({0, program_.End()}, program_.KindOf(after), false));
  std::size_t found = kNowhere;
  for (std::size_t at = end; !cursor.Dead(); --at) {
    at = cursor.TakePlainStepsBack(text, start, at);
    const std::uint32_t step = cursor.Step(program_.ClassBefore(text, at));
    if ((step & Automaton::kMatched) != 0) found = at;
    if (at == start) break;
  }
  return found;
}

}  // namespace engine

}  // namespace mailhearth
