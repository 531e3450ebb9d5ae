// Subset construction, a step at a time: the places of a state are closed over splits, jumps and
// assertions, and those that consume the byte give the places of the next state. Going forward,
// this is done candidate by candidate. Going in reverse, the closure follows the instructions
// that lead to a place. States in which a search idles are skipped through by ByteSearch or
// ShiftSearch, which are set up from the transitions of the state.

#include "Automaton.h"

#include <algorithm>

inline namespace mailhearth {

namespace engine {

namespace {

std::uint32_t HashOf(const State& state) {
  // FNV-1a over whole places.
  std::uint64_t hash =
      0xCBF29CE484222325 ^ state.fragment.start ^ (std::uint64_t{state.fragment.end} << 32);
  hash ^= (static_cast<std::uint64_t>(state.previous) << 1 | std::uint64_t{state.searching}) << 24;
  for (const Place place : state.places) hash = (hash ^ place) * 0x100000001B3;
  return static_cast<std::uint32_t>((hash ^ (hash >> 32)) * 0x9E3779B1);
}

}  // namespace

StateTable::View StateTable::operator[](std::uint32_t number) const {
  const Entry& entry = entries_[number];
  return {
      {places_.data() + entry.start, entry.count}, entry.fragment, entry.previous, entry.searching};
}

bool StateTable::_Equal(const Entry& entry, const State& state, std::uint32_t hash) const {
  return entry.hash == hash && entry.count == state.places.size() &&
         entry.fragment == state.fragment && entry.previous == state.previous &&
         entry.searching == state.searching &&
         std::equal(state.places.begin(), state.places.end(), places_.begin() + entry.start);
}

std::uint32_t StateTable::Add(const State& state) {
  if (slots_.size() <= 2 * entries_.size()) _Grow();
  const std::uint32_t hash = HashOf(state);
  const std::size_t mask = slots_.size() - 1;
  std::size_t slot = hash & mask;
  for (; slots_[slot] != 0; slot = (slot + 1) & mask) {
    if (_Equal(entries_[slots_[slot] - 1], state, hash)) return slots_[slot] - 1;
  }
  const auto start = static_cast<std::uint32_t>(places_.size());
  places_.insert(places_.end(), state.places.begin(), state.places.end());
  entries_.push_back({start, static_cast<std::uint32_t>(state.places.size()), state.fragment, hash,
                      state.previous, state.searching});
  slots_[slot] = Count();
  return Count() - 1;
}

void StateTable::_Grow() {
  slots_.assign(std::max<std::size_t>(16, slots_.size() * 2), 0);
  for (std::uint32_t number = 0; number < Count(); ++number) {
    std::size_t slot = entries_[number].hash & (slots_.size() - 1);
    while (slots_[slot] != 0) slot = (slot + 1) & (slots_.size() - 1);
    slots_[slot] = number + 1;
  }
}

void StateTable::Clear() {
  places_.clear();
  entries_.clear();
  std::fill(slots_.begin(), slots_.end(), 0);
}

std::size_t StateTable::Size() const {
  return places_.size() * sizeof(Place) + entries_.size() * sizeof(Entry) +
         slots_.size() * sizeof(std::uint32_t);
}

// Pops a place that was not reached before. Returns whether there was one.
bool Closure::_Pop(Place& place) {
  while (!stack_.empty()) {
    place = stack_.back();
    stack_.pop_back();
    if (reached_.Insert(place)) return true;
  }
  return false;
}

bool Closure::Forward(Place from, Fragment fragment, std::vector<Place>& consuming) {
  bool complete = false;
  stack_.assign(1, from);
  for (Place place = 0; _Pop(place);) {
    if (place == fragment.end) {
      complete = true;
      continue;
    }
    const Instruction& instruction = program_[place];
    switch (instruction.operation) {
      case Operation::kByte:
      case Operation::kSet:
        consuming.push_back(place);
        break;
      case Operation::kAssert:
        if (Program::Holds(instruction.argument, left_, right_)) stack_.push_back(place + 1);
        break;
      case Operation::kSplit:
        stack_.push_back(instruction.argument);
        stack_.push_back(place + 1);
        break;
      case Operation::kJump:
        stack_.push_back(instruction.argument);
        break;
    }
  }
  return complete;
}

bool Closure::Reverse(Place from, Fragment fragment, std::vector<Place>& consuming) {
  bool complete = false;
  stack_.assign(1, from);
  for (Place place = 0; _Pop(place);) {
    complete |= place == fragment.start;
    for (const Place jump : program_.JumpsTo(place)) {
      if (jump >= fragment.start && jump < fragment.end) stack_.push_back(jump);
    }
    if (place == fragment.start) continue;
    const Instruction& before = program_[place - 1];
    switch (before.operation) {
      case Operation::kByte:
      case Operation::kSet:
        consuming.push_back(place - 1);
        break;
      case Operation::kAssert:
        if (Program::Holds(before.argument, left_, right_)) stack_.push_back(place - 1);
        break;
      case Operation::kSplit:
        stack_.push_back(place - 1);
        break;
      case Operation::kJump:
        break;
    }
  }
  return complete;
}

Automaton::Automaton(Program& program, Direction direction)
    : program_(program),
      direction_(direction),
      stride_(program.EdgeClass() + 2),
      closure_(program) {
  Clear();
  anchored_ = !_CanBeginLater();
}

// Whether the closure of the start gets past the assertions at a boundary inside the text.
bool Automaton::_CanBeginLater() {
  const Fragment whole{0, program_.End()};
  consuming_.clear();
  for (const ByteKind previous : {ByteKind::kOther, ByteKind::kWord}) {
    for (const ByteKind ahead : {ByteKind::kEdge, ByteKind::kOther, ByteKind::kWord}) {
      bool complete = false;
      if (direction_ == Direction::kForward) {
        closure_.Begin(previous, ahead);
        complete = closure_.Forward(whole.start, whole, consuming_);
      } else {
        closure_.Begin(ahead, previous);
        complete = closure_.Reverse(whole.end, whole, consuming_);
      }
      if (complete || !consuming_.empty()) return true;
    }
  }
  return false;
}

void Automaton::Clear() {
  ++generation_;
  states_.Clear();
  table_.clear();
  loops_.clear();
  starts_.fill(kUnknown);
  states_.Add(State());  // kDead
  table_.resize(stride_, kUnknown);
}

bool Automaton::Full() const {
  return states_.Size() + table_.size() * sizeof(table_[0]) > kCacheBudget;
}

Automaton::StateId Automaton::Start(Fragment fragment, ByteKind previous, bool searching) {
  StateId& start = starts_[static_cast<std::size_t>(previous)];
  if (searching && start != kUnknown) return start;
  next_.places.clear();
  next_.fragment = fragment;
  next_.previous = previous;
  next_.searching = searching;
  if (!searching) {
    next_.places.push_back(direction_ == Direction::kForward ? fragment.start : fragment.end);
    return Add(next_);
  }
  return start = anchored_ && previous != ByteKind::kEdge ? kDead : Add(next_);
}

std::size_t Automaton::SkipLoop(StateId& state, std::string_view text, std::size_t at) {
  // A shorter text is not worth building a table for.
  constexpr std::size_t kLong = 256;
  std::uint32_t loopNumber = table_[state + program_.EdgeClass() + 1];
  if (loopNumber == kUnknown) loopNumber = _FindLoop(state);
  if (loopNumber == kNoLoop) return at;
  Loop& loop = loops_[loopNumber];
  if (!loop.returns || text.size() - at < kLong) return loop.leaving.Find(text, at);
  if (!loop.hot) loop.hot = std::make_unique<HotStates>(_FindHotStates(state));
  unsigned number = 0;
  at = loop.hot->dfa.Skip(text, at, number);
  state = loop.hot->states[number];
  return at;
}

std::uint32_t Automaton::_FindLoop(StateId state) {
  const FewBytes leaving = _BytesLeaving(state);
  std::uint32_t number = kNoLoop;
  if (!leaving.Overflowed()) {
    number = static_cast<std::uint32_t>(loops_.size());
    const StateTable::View view = (*this)[state];
    const bool isIdle = view.searching && view.places.empty();
    const FewBytes second = _SecondBytes(state, leaving);
    const bool returns = isIdle && leaving.Count() > 1 && !second.Overflowed();
    loops_.push_back({{leaving, second}, returns, nullptr});
  }
  return table_[state + program_.EdgeClass() + 1] = number;
}

// Collects the first states that plain steps lead to from `state`, breadth first.
Automaton::HotStates Automaton::_FindHotStates(StateId state) {
  HotStates hot;
  std::vector<StateId>& states = hot.states;
  states.push_back(state);
  for (unsigned from = 0; from < states.size(); ++from) {
    for (std::uint32_t c = 0; c < 256; ++c) {
      const std::uint32_t step = Step(states[from], program_.Classes()[c]);
      if (!Plain(step)) continue;
      const auto to =
          static_cast<unsigned>(std::find(states.begin(), states.end(), step) - states.begin());
      if (to == ShiftSearch::kStates) continue;
      if (to == states.size()) states.push_back(step);
      hot.dfa.SetStep(from, static_cast<unsigned char>(c), to);
    }
  }
  return hot;
}

// Returns the bytes on which the DFA leaves `state`; overflowed if they are many, or if it
// would take long to tell.
FewBytes Automaton::_BytesLeaving(StateId state) {
  FewBytes leaving;
  const bool few = program_.EdgeClass() <= kMostClasses && program_.End() <= kMostPlaces;
  for (std::uint32_t c = 0; c < 256 && !leaving.Overflowed(); ++c) {
    const bool stays = few && Step(state, program_.Classes()[c]) == state;
    if (!stays) leaving.Add(static_cast<char>(c));
  }
  return leaving;
}

// Returns the bytes that matter after one of `leaving`: those on which the DFA does not go
// straight back to `state`, and those that are leaving themselves. After any other byte, having
// left `state` makes no difference. A search with candidates is the exception: it may enter the
// same state with later candidates in place of the earlier ones, so there every byte matters.
FewBytes Automaton::_SecondBytes(StateId state, const FewBytes& leaving) {
  const StateTable::View view = (*this)[state];
  const bool hasCandidates = view.searching && !view.places.empty();
  FewBytes second;
  for (const char first : leaving) {
    const std::uint32_t left = Step(state, program_.ClassOf(first));
    for (std::uint32_t c = 0; c < 256 && !second.Overflowed(); ++c) {
      const std::uint32_t byteClass = program_.Classes()[c];
      const bool returns = !hasCandidates && Plain(left) && Step(left, byteClass) == state;
      if (!returns || Step(state, byteClass) != state) second.Add(static_cast<char>(c));
    }
  }
  return second;
}

Automaton::StateId Automaton::Add(const State& state) {
  if (state.Dead()) return kDead;
  const StateId id = states_.Add(state) * stride_;
  // A stored state has no row yet if an earlier call ran out of memory here.
  if (table_.size() <= id) table_.resize(id + stride_, kUnknown);
  return id;
}

std::uint32_t Automaton::Step(StateId state, std::uint32_t byteClass) {
  const std::uint32_t known = table_[state + byteClass];
  if (known != kUnknown) return known;
  const std::uint32_t flags = Step((*this)[state], byteClass, next_);
  const std::uint32_t step = Add(next_) | flags;
  table_[state + byteClass] = step;
  return step;
}

std::uint32_t Automaton::Step(const StateTable::View& from, std::uint32_t byteClass, State& to) {
  const ByteKind ahead = program_.KindOf(byteClass);
  to.places.clear();
  to.fragment = from.fragment;
  to.previous = ahead;
  to.searching = false;
  if (direction_ == Direction::kForward) {
    closure_.Begin(from.previous, ahead);
    return _StepForward(from, byteClass, to);
  }
  closure_.Begin(ahead, from.previous);
  return _StepReverse(from, byteClass, to);
}

// Steps candidate by candidate, the earliest first, up to one that has matched: by the leftmost
// rule, later candidates lose to it. A place reached twice stays with the earlier candidate, as
// the closure adds each place once.
std::uint32_t Automaton::_StepForward(const StateTable::View& from, std::uint32_t byteClass,
                                      State& to) {
  const std::span<const Place> places = from.places;
  bool matched = false;
  bool firstMatched = false;
  bool firstGoesOn = false;
  for (std::size_t i = 0; i < places.size() && !matched; ++i) {
    const bool first = i == 0;
    consuming_.clear();
    for (; i < places.size() && places[i] != State::kMark; ++i) {
      matched |= closure_.Forward(places[i], from.fragment, consuming_);
    }
    _Take(byteClass, 1, to);
    if (first) firstMatched = matched;
    if (first) firstGoesOn = !to.places.empty();
  }
  if (from.searching && !matched) {
    consuming_.clear();
    matched = closure_.Forward(from.fragment.start, from.fragment, consuming_);
    _Take(byteClass, 1, to);
    to.searching = !matched && !anchored_;
  }
  if (matched) return firstMatched || places.empty() ? kMatched : kMatched | kBeganLater;
  return places.empty() || firstGoesOn || to.places.empty() ? 0 : kBeganLater;
}

std::uint32_t Automaton::_StepReverse(const StateTable::View& from, std::uint32_t byteClass,
                                      State& to) {
  bool matched = false;
  consuming_.clear();
  for (const Place place : from.places)
    matched |= closure_.Reverse(place, from.fragment, consuming_);
  _Take(byteClass, 0, to);
  return matched ? kMatched : 0;
}

// Adds to `to` a candidate with the places that the byte leads to. `offset` is the distance from
// an instruction in consuming_ to its successor in reading direction.
void Automaton::_Take(std::uint32_t byteClass, Place offset, State& to) {
  if (byteClass == program_.EdgeClass()) return;
  const std::size_t before = to.places.size();
  for (const Place place : consuming_) {
    if (!program_.Matches(place, byteClass)) continue;
    if (before > 0 && before == to.places.size()) to.places.push_back(State::kMark);
    to.places.push_back(place + offset);
  }
  const std::size_t start = before > 0 && to.places.size() > before ? before + 1 : before;
  std::sort(to.places.begin() + static_cast<std::ptrdiff_t>(start), to.places.end());
}

}  // namespace engine

}  // namespace mailhearth
