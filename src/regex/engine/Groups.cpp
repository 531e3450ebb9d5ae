#include "Groups.h"

#include <algorithm>

#include "Reading.h"

inline namespace mailhearth {

namespace engine {

namespace {

constexpr std::uint32_t kDeadState = 0;

// Returns where the code of a turn of a repetition begins, which itself begins at `start`.
// Program.cpp lays it out.
Place StartOfTurn(const Node& repetition, std::uint32_t size, Place start, std::uint32_t turn) {
  const std::uint32_t min = repetition.min;
  if (turn < min) return start + turn * size;
  if (repetition.max != kUnbounded) return start + min * size + (turn - min) * (size + 1) + 1;
  return min == 0 ? start + 1 : start + (min - 1) * size;
}

}  // namespace

GroupFinder::GroupFinder(const Tree& tree, Program& program, Automaton& backward)
    : tree_(tree),
      program_(program),
      backward_(backward),
      viability_(program, backward),
      closure_(program),
      known_(kKnown) {
  _DropStates();
  _LookBehind();
}

void GroupFinder::_LookBehind() {
  behind_.resize(tree_.nodes.size());
  std::vector<std::uint32_t> children;
  for (const Node& node : tree_.nodes) {
    if (node.kind != NodeKind::kConcatenation) continue;
    for (std::uint32_t child = node.child; child != kNone; child = tree_.nodes[child].sibling) {
      children.push_back(child);
    }
    Behind behind = {0, false};
    for (; !children.empty(); children.pop_back()) {
      const Node& child = tree_.nodes[children.back()];
      behind_[children.back()] = behind;
      behind = {SumOfWidths(child.width, behind.width), child.reports || behind.reports};
    }
  }
}

void GroupFinder::Find(std::string_view text, regmatch_t match, std::span<regmatch_t> groups) {
  std::fill(groups.begin(), groups.end(), regmatch_t{-1, -1});
  if (groups.empty()) return;
  groups[0] = match;
  text_ = text;
  groups_ = groups.first(std::min<std::size_t>(groups.size(), kMaxReportedGroup + 1));
  tasks_.clear();
  _Report(tree_.root, 0,
          {static_cast<std::size_t>(match.rm_so), static_cast<std::size_t>(match.rm_eo)});
  while (!tasks_.empty()) {
    const Task task = tasks_.back();
    tasks_.pop_back();
    _Divide(task);
  }
}

// Reports the text of a node if it is a group; what is in it becomes a task.
void GroupFinder::_Report(std::uint32_t index, Place start, Span text) {
  const Node* node = &tree_.nodes[index];
  for (; node->kind == NodeKind::kGroup; node = &tree_.nodes[index]) {
    if (node->value < groups_.size()) {
      groups_[node->value] = {static_cast<regoff_t>(text.from), static_cast<regoff_t>(text.to)};
    }
    index = node->child;
  }
  if (node->reports) tasks_.push_back({index, start, text.from, text.to});
}

void GroupFinder::_Divide(const Task& task) {
  switch (tree_.nodes[task.node].kind) {
    case NodeKind::kAlternation:
      return _DivideAlternation(task);
    case NodeKind::kConcatenation:
      return _DivideConcatenation(task);
    default:
      return _DivideRepetition(task);
  }
}

// The text goes to the first branch that matches it all.
void GroupFinder::_DivideAlternation(const Task& task) {
  const Run run = _RunOf(task);
  viability_.Begin(text_, task.from, task.to, run);
  const StateTable::View viable = backward_[viability_.At(task.from)];
  closure_.Begin(program_.NeighbourOf(program_.ClassBefore(text_, task.from)), viable.behind);
  taking_.clear();
  for (const Place place : viable.places) closure_.Backward(place, run, taking_);

  Place start = task.start;
  for (std::uint32_t branch = tree_.nodes[task.node].child; branch != kNone;) {
    const Node& node = tree_.nodes[branch];
    const bool last = node.sibling == kNone;
    if (!last) ++start;  // the split
    if (closure_.Reached(start)) return _Report(branch, start, {task.from, task.to});
    start += node.size + 1;  // the jump
    branch = node.sibling;
  }
}

// Each child but the last takes the longest text. Widths tell some of the ends for nothing, and
// where all is taken first, the rest tells the end by itself.
void GroupFinder::_DivideConcatenation(const Task& task) {
  enum { kNothing, kTheRest, kAll } looked = kNothing;  // at once for this concatenation
  const Run run = _RunOf(task);
  Place start = task.start;
  std::size_t from = task.from;
  for (std::uint32_t child = tree_.nodes[task.node].child; child != kNone;) {
    const Node& node = tree_.nodes[child];
    const Behind& behind = behind_[child];
    const Run code{start, start + node.size};
    std::size_t end = 0;
    if (node.width != kNone) {
      end = from + node.width;
    } else if (behind.width != kNone) {
      end = task.to - behind.width;
    } else if (std::size_t least = 0; looked == kNothing && _TakesAnything(node, least)) {
      looked = kTheRest;
      end = _LastStart({code.end, run.end}, {from + least, task.to});
    } else {
      if (looked != kAll) viability_.Begin(text_, from, task.to, run);
      looked = kAll;
      end = _LongestEnd(code, from);
    }
    if (end == kNoEnd) return;
    _Report(child, start, {from, end});
    if (!behind.reports) return;
    from = end;
    start = code.end;
    child = node.sibling;
  }
}

// Whether a node matches every text of `least` bytes or more, as ".*" does.
bool GroupFinder::_TakesAnything(const Node& node, std::size_t& least) const {
  const Node* inner = &node;
  while (inner->kind == NodeKind::kGroup) inner = &_Child(*inner);
  if (inner->kind != NodeKind::kRepetition || inner->max != kUnbounded) return false;
  least = inner->min;
  const Node& operand = _Child(*inner);
  return operand.kind == NodeKind::kSet && tree_.sets[operand.value].all();
}

// Returns the last boundary within `text` from which `rest` matches all of it that follows.
std::size_t GroupFinder::_LastStart(Run rest, Span text) {
  if (backward_.Full()) backward_.Clear();
  Reading reading(
      backward_,
      backward_.Start(rest, program_.NeighbourOf(program_.ClassBehind(text_, text.to)), false));
  for (std::size_t at = text.to; !reading.Dead(); --at) {
    at = reading.TakePlainStepsBack(text_, text.from, at);
    const std::uint32_t step = reading.Step(program_.ClassBefore(text_, at));
    if ((step & Automaton::kMatched) != 0) return at;
    if (at == text.from) break;
  }
  return kNoEnd;
}

void GroupFinder::_DivideRepetition(const Task& task) {
  const Node& node = tree_.nodes[task.node];
  Span turn{};
  if (!_FindLastTurn(task, turn)) return;
  const Place start = StartOfTurn(node, _Child(node).size, task.start, 0);
  _Report(node.child, start, turn);
}

// Returns whether there is a turn.
bool GroupFinder::_FindLastTurn(const Task& task, Span& turn) {
  const Node& node = tree_.nodes[task.node];
  const Node& child = _Child(node);
  if (node.max == 0) return false;
  if (child.size == 0) {
    turn = {task.from, task.to};
    return true;
  }
  if (child.width != kNone && child.width > 0) {
    turn = {task.to - child.width, task.to};
    return task.from < task.to;
  }
  viability_.Begin(text_, task.from, task.to, _RunOf(task));
  turn.to = task.from;
  std::uint32_t turns = 0;
  // A turn that need not be is taken if it has text, or if it is the first one of a
  // repetition without any.
  while (turn.to < task.to || turns < node.min || turns == 0) {
    if (node.max != kUnbounded && turns == node.max) break;
    const Place start = StartOfTurn(node, child.size, task.start, turns);
    const std::size_t end = _LongestEnd({start, start + child.size}, turn.to);
    if (end == kNoEnd) break;
    turn = {turn.to, end};
    ++turns;
  }
  return turns > 0;
}

// Returns the end of the longest text from `from` on that `part` matches so that the rest of
// the run in viability_ can match what is left. Needs: there is such a text, or an empty one
// that the rest does not need.
//
// The reading goes on as long as the part can take more and the whole still match; so the
// last boundary at which the part is complete is one from which the rest can match.
std::size_t GroupFinder::_LongestEnd(Run part, std::size_t from) {
  next_.places.assign(1, part.start);
  next_.run = part;
  next_.behind = program_.NeighbourOf(program_.ClassBefore(text_, from));
  std::uint32_t state = states_.Add(next_);
  std::size_t longest = kNoEnd;
  for (std::size_t at = from; state != kDeadState; ++at) {
    const std::uint32_t step = _Step(state, viability_.At(at));
    if ((step & Automaton::kMatched) != 0) longest = at;
    state = Automaton::StateOf(step);
  }
  return longest;
}

std::uint32_t GroupFinder::_Step(std::uint32_t state, Automaton::StateId viable) {
  if (drops_ != backward_.Drops()) {
    std::fill(known_.begin(), known_.end(), Known());
    drops_ = backward_.Drops();
  }
  Known& known = known_[(state * 31 + viable) % kKnown];
  if (known.state != state || known.viable != viable) {
    const std::uint32_t step = _ComputeStep(state, viable);
    if (states_.Size() <= kCacheBudget) {
      known = {state, viable, step};
      return step;
    }
    // next_ is where the step leads.
    _DropStates();
    return (next_.Dead() ? kDeadState : states_.Add(next_)) | (step & Automaton::kMatched);
  }
  return known.step;
}

// Returns the state behind the byte that was viable, with kMatched if the part is complete before
// it.
std::uint32_t GroupFinder::_ComputeStep(std::uint32_t number, Automaton::StateId viableId) {
  const StateTable::View state = states_[number];
  const StateTable::View viable = backward_[viableId];
  closure_.Begin(state.behind, viable.behind);
  taking_.clear();
  bool complete = false;
  for (const Place place : state.places) complete |= closure_.Forward(place, state.run, taking_);

  std::sort(taking_.begin(), taking_.end());
  next_.places.clear();
  next_.run = state.run;
  next_.behind = viable.behind;
  for (const Place place : taking_) {
    if (std::binary_search(viable.places.begin(), viable.places.end(), place)) {
      next_.places.push_back(place + 1);
    }
  }
  return (next_.Dead() ? kDeadState : states_.Add(next_)) | (complete ? Automaton::kMatched : 0);
}

void GroupFinder::_DropStates() {
  states_.Clear();
  states_.Add(State());  // kDeadState
  std::fill(known_.begin(), known_.end(), Known());
}

}  // namespace engine

}  // namespace mailhearth
