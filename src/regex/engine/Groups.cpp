// How a node's text is divided:
//
//   alternation     the first branch that matches all of it takes it
//   concatenation   each child takes the longest text from which the rest still matches
//   repetition      likewise for each iteration; only the last one is divided further
//
// "Still matches" is asked of the live places, which one reverse run over the node's text gives.
// Then a forward run through the child's code, restricted to live places, dies where the longest
// text ends: a lazy DFA whose transitions depend on a state and on a set of live places instead
// of a byte. Fixed widths spare both runs.

#include "Groups.h"

#include <algorithm>

#include "Cursor.h"

inline namespace mailhearth {

namespace engine {

namespace {

constexpr std::uint32_t kDeadState = 0;

// Returns where the code of an iteration begins, in a repetition whose code begins at `start`.
// Program.cpp lays it out.
Place StartOfIteration(const Node& repetition, std::uint32_t size, Place start,
                       std::uint32_t iteration) {
  const std::uint32_t min = repetition.min;
  if (iteration < min) return start + iteration * size;
  if (repetition.max != kUnbounded) return start + min * size + (iteration - min) * (size + 1) + 1;
  return min == 0 ? start + 1 : start + (min - 1) * size;
}

}  // namespace

GroupFinder::GroupFinder(const Tree& tree, Program& program, Automaton& reverse)
    : tree_(tree),
      program_(program),
      reverse_(reverse),
      reachability_(program, reverse),
      closure_(program),
      cache_(kCachedSteps) {
  _ClearCache();
  _CollectFollowing();
}

void GroupFinder::_CollectFollowing() {
  following_.resize(tree_.nodes.size());
  std::vector<std::uint32_t> children;
  for (const Node& node : tree_.nodes) {
    if (node.kind != NodeKind::kConcatenation) continue;
    for (std::uint32_t child = node.child; child != kNone; child = tree_.nodes[child].sibling) {
      children.push_back(child);
    }
    Following following = {0, false};
    for (; !children.empty(); children.pop_back()) {
      const Node& child = tree_.nodes[children.back()];
      following_[children.back()] = following;
      following = {SumOfWidths(child.width, following.width), child.reports || following.reports};
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

// Reports the text of a node if it is a group, and makes a task of what is inside it.
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
  const Fragment fragment = _FragmentOf(task);
  reachability_.Begin(text_, task.from, task.to, fragment);
  const StateTable::View live = reverse_[reachability_.At(task.from)];
  closure_.Begin(program_.KindOf(program_.ClassBefore(text_, task.from)), live.previous);
  consuming_.clear();
  for (const Place place : live.places) closure_.Reverse(place, fragment, consuming_);

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

// An end that follows from widths costs nothing. If the first child whose end does not matches
// anything, as ".*" does, the last boundary from which the rest matches is its end.
void GroupFinder::_DivideConcatenation(const Task& task) {
  enum { kNothing, kRest, kAll } examined = kNothing;  // what a reverse run has gone over
  const Fragment fragment = _FragmentOf(task);
  Place start = task.start;
  std::size_t from = task.from;
  for (std::uint32_t child = tree_.nodes[task.node].child; child != kNone;) {
    const Node& node = tree_.nodes[child];
    const Following& following = following_[child];
    const Fragment code{start, start + node.size};
    std::size_t end = 0;
    if (node.width != kNone) {
      end = from + node.width;
    } else if (following.width != kNone) {
      end = task.to - following.width;
    } else if (std::size_t least = 0; examined == kNothing && _TakesAnything(node, least)) {
      examined = kRest;
      end = _LastStart({code.end, fragment.end}, {from + least, task.to});
    } else {
      if (examined != kAll) reachability_.Begin(text_, from, task.to, fragment);
      examined = kAll;
      end = _LongestEnd(code, from);
    }
    if (end == kNoEnd) return;
    _Report(child, start, {from, end});
    if (!following.reports) return;
    from = end;
    start = code.end;
    child = node.sibling;
  }
}

// Whether a node is like ".*" or ".+": it matches every text of `least` bytes or more.
bool GroupFinder::_TakesAnything(const Node& node, std::size_t& least) const {
  const Node* inner = &node;
  while (inner->kind == NodeKind::kGroup) inner = &_Child(*inner);
  if (inner->kind != NodeKind::kRepetition || inner->max != kUnbounded) return false;
  least = inner->min;
  const Node& operand = _Child(*inner);
  return operand.kind == NodeKind::kSet && tree_.sets[operand.value].all();
}

// Returns the last boundary within `text` from which `rest` matches up to the end of `text`.
std::size_t GroupFinder::_LastStart(Fragment rest, Span text) {
  if (reverse_.Full()) reverse_.Clear();
  Cursor cursor(reverse_,
                reverse_.Start(rest, program_.KindOf(program_.ClassAfter(text_, text.to)), false));
  for (std::size_t at = text.to; !cursor.Dead(); --at) {
    at = cursor.TakePlainStepsBack(text_, text.from, at);
    const std::uint32_t step = cursor.Step(program_.ClassBefore(text_, at));
    if ((step & Automaton::kMatched) != 0) return at;
    if (at == text.from) break;
  }
  return kNoEnd;
}

void GroupFinder::_DivideRepetition(const Task& task) {
  const Node& node = tree_.nodes[task.node];
  Span iteration{};
  if (!_FindLastIteration(task, iteration)) return;
  const Place start = StartOfIteration(node, _Child(node).size, task.start, 0);
  _Report(node.child, start, iteration);
}

// Returns whether there is an iteration.
bool GroupFinder::_FindLastIteration(const Task& task, Span& iteration) {
  const Node& node = tree_.nodes[task.node];
  const Node& child = _Child(node);
  if (node.max == 0) return false;
  if (child.size == 0) {
    iteration = {task.from, task.to};
    return true;
  }
  if (child.width != kNone && child.width > 0) {
    iteration = {task.to - child.width, task.to};
    return task.from < task.to;
  }
  reachability_.Begin(text_, task.from, task.to, _FragmentOf(task));
  iteration.to = task.from;
  std::uint32_t iterations = 0;
  // An optional iteration is taken if there is text left, or if it is the first one of a
  // repetition that matches nothing.
  while (iteration.to < task.to || iterations < node.min || iterations == 0) {
    if (node.max != kUnbounded && iterations == node.max) break;
    const Place start = StartOfIteration(node, child.size, task.start, iterations);
    const std::size_t end = _LongestEnd({start, start + child.size}, iteration.to);
    if (end == kNoEnd) break;
    iteration = {iteration.to, end};
    ++iterations;
  }
  return iterations > 0;
}

// Returns the end of the longest text from `from` on that `part` matches so that the rest of the
// fragment in reachability_ can match what remains. Needs: there is such a text, or an empty one
// without which the rest matches.
//
// The run lives as long as the part can consume more and the whole still match. So the last
// boundary at which the part is complete is one from which the rest can match.
std::size_t GroupFinder::_LongestEnd(Fragment part, std::size_t from) {
  next_.places.assign(1, part.start);
  next_.fragment = part;
  next_.previous = program_.KindOf(program_.ClassBefore(text_, from));
  std::uint32_t state = states_.Add(next_);
  std::size_t longest = kNoEnd;
  for (std::size_t at = from; state != kDeadState; ++at) {
    const std::uint32_t step = _Step(state, reachability_.At(at));
    if ((step & Automaton::kMatched) != 0) longest = at;
    state = Automaton::StateOf(step);
  }
  return longest;
}

std::uint32_t GroupFinder::_Step(std::uint32_t state, Automaton::StateId live) {
  if (generation_ != reverse_.Generation()) {
    std::fill(cache_.begin(), cache_.end(), CachedStep());
    generation_ = reverse_.Generation();
  }
  CachedStep& cached = cache_[(state * 31 + live) % kCachedSteps];
  if (cached.state != state || cached.live != live) {
    const std::uint32_t step = _ComputeStep(state, live);
    if (states_.Size() <= kCacheBudget) {
      cached = {state, live, step};
      return step;
    }
    // next_ is the state that the step leads to.
    _ClearCache();
    return (next_.Dead() ? kDeadState : states_.Add(next_)) | (step & Automaton::kMatched);
  }
  return cached.step;
}

// Returns the state after the byte that the live places consume, with kMatched if the part is
// complete before that byte.
std::uint32_t GroupFinder::_ComputeStep(std::uint32_t number, Automaton::StateId liveId) {
  const StateTable::View state = states_[number];
  const StateTable::View live = reverse_[liveId];
  closure_.Begin(state.previous, live.previous);
  consuming_.clear();
  bool complete = false;
  for (const Place place : state.places)
    complete |= closure_.Forward(place, state.fragment, consuming_);

  std::sort(consuming_.begin(), consuming_.end());
  next_.places.clear();
  next_.fragment = state.fragment;
  next_.previous = live.previous;
  for (const Place place : consuming_) {
    if (std::binary_search(live.places.begin(), live.places.end(), place)) {
      next_.places.push_back(place + 1);
    }
  }
  return (next_.Dead() ? kDeadState : states_.Add(next_)) | (complete ? Automaton::kMatched : 0);
}

void GroupFinder::_ClearCache() {
  states_.Clear();
  states_.Add(State());  // kDeadState
  std::fill(cache_.begin(), cache_.end(), CachedStep());
}

}  // namespace engine

}  // namespace mailhearth
