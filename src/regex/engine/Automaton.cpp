#include "Automaton.h"

#include <algorithm>

inline namespace mailhearth {

namespace engine {

namespace {

std::uint32_t HashOf(const State& state) {
  // FNV-1a over whole places.
  std::uint64_t hash = 0xCBF29CE484222325 ^ state.run.start ^ (std::uint64_t{state.run.end} << 32);
  hash ^= (static_cast<std::uint64_t>(state.behind) << 1 | std::uint64_t{state.searching}) << 24;
  for (const Place place : state.places) hash = (hash ^ place) * 0x100000001B3;
  return static_cast<std::uint32_t>((hash ^ (hash >> 32)) * 0x9E3779B1);
}

}  // namespace

StateTable::View StateTable::operator[](std::uint32_t number) const {
  const Kept& kept = kept_[number];
  return {{places_.data() + kept.start, kept.count}, kept.run, kept.behind, kept.searching};
}

bool StateTable::_Equal(const Kept& kept, const State& state, std::uint32_t hash) const {
  return kept.hash == hash && kept.count == state.places.size() && kept.run == state.run &&
         kept.behind == state.behind && kept.searching == state.searching &&
         std::equal(state.places.begin(), state.places.end(), places_.begin() + kept.start);
}

std::uint32_t StateTable::Add(const State& state) {
  if (slots_.size() <= 2 * kept_.size()) _Grow();
  const std::uint32_t hash = HashOf(state);
  const std::size_t mask = slots_.size() - 1;
  std::size_t slot = hash & mask;
  for (; slots_[slot] != 0; slot = (slot + 1) & mask) {
    if (_Equal(kept_[slots_[slot] - 1], state, hash)) return slots_[slot] - 1;
  }
  const auto start = static_cast<std::uint32_t>(places_.size());
  places_.insert(places_.end(), state.places.begin(), state.places.end());
  kept_.push_back({start, static_cast<std::uint32_t>(state.places.size()), state.run, hash,
                   state.behind, state.searching});
  slots_[slot] = Count();
  return Count() - 1;
}

void StateTable::_Grow() {
  slots_.assign(std::max<std::size_t>(16, slots_.size() * 2), 0);
  for (std::uint32_t number = 0; number < Count(); ++number) {
    std::size_t slot = kept_[number].hash & (slots_.size() - 1);
    while (slots_[slot] != 0) slot = (slot + 1) & (slots_.size() - 1);
    slots_[slot] = number + 1;
  }
}

void StateTable::Clear() {
  places_.clear();
  kept_.clear();
  std::fill(slots_.begin(), slots_.end(), 0);
}

std::size_t StateTable::Size() const {
  return places_.size() * sizeof(Place) + kept_.size() * sizeof(Kept) +
         slots_.size() * sizeof(std::uint32_t);
}

// Takes an open place that was not reached before. Returns whether there was one.
bool Closure::_TakeOpen(Place& place) {
  while (!open_.empty()) {
    place = open_.back();
    open_.pop_back();
    if (reached_.Insert(place)) return true;
  }
  return false;
}

bool Closure::Forward(Place from, Run run, std::vector<Place>& taking) {
  bool complete = false;
  open_.assign(1, from);
  for (Place place = 0; _TakeOpen(place);) {
    if (place == run.end) {
      complete = true;
      continue;
    }
    const Instruction& instruction = program_[place];
    switch (instruction.operation) {
      case Operation::kByte:
      case Operation::kSet:
        taking.push_back(place);
        break;
      case Operation::kAssert:
        if (Program::Holds(instruction.argument, left_, right_)) open_.push_back(place + 1);
        break;
      case Operation::kSplit:
        open_.push_back(instruction.argument);
        open_.push_back(place + 1);
        break;
      case Operation::kJump:
        open_.push_back(instruction.argument);
        break;
    }
  }
  return complete;
}

bool Closure::Backward(Place from, Run run, std::vector<Place>& taking) {
  bool complete = false;
  open_.assign(1, from);
  for (Place place = 0; _TakeOpen(place);) {
    complete |= place == run.start;
    for (const Place jump : program_.Jumps(place)) {
      if (jump >= run.start && jump < run.end) open_.push_back(jump);
    }
    if (place == run.start) continue;
    const Instruction& before = program_[place - 1];
    switch (before.operation) {
      case Operation::kByte:
      case Operation::kSet:
        taking.push_back(place - 1);
        break;
      case Operation::kAssert:
        if (Program::Holds(before.argument, left_, right_)) open_.push_back(place - 1);
        break;
      case Operation::kSplit:
        open_.push_back(place - 1);
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

// Whether a run of the program gets anywhere from a place that is not at the edge.
bool Automaton::_CanBeginLater() {
  const Run whole{0, program_.End()};
  taking_.clear();
  for (const Neighbour behind : {Neighbour::kOther, Neighbour::kWord}) {
    for (const Neighbour ahead : {Neighbour::kEdge, Neighbour::kOther, Neighbour::kWord}) {
      bool complete = false;
      if (direction_ == Direction::kForward) {
        closure_.Begin(behind, ahead);
        complete = closure_.Forward(whole.start, whole, taking_);
      } else {
        closure_.Begin(ahead, behind);
        complete = closure_.Backward(whole.end, whole, taking_);
      }
      if (complete || !taking_.empty()) return true;
    }
  }
  return false;
}

void Automaton::Clear() {
  ++drops_;
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

Automaton::StateId Automaton::Start(Run run, Neighbour behind, bool searching) {
  StateId& start = starts_[static_cast<std::size_t>(behind)];
  if (searching && start != kUnknown) return start;
  next_.places.clear();
  next_.run = run;
  next_.behind = behind;
  next_.searching = searching;
  if (!searching) {
    next_.places.push_back(direction_ == Direction::kForward ? run.start : run.end);
    return Add(next_);
  }
  return start = anchored_ && behind != Neighbour::kEdge ? kDead : Add(next_);
}

std::size_t Automaton::SkipLoop(StateId& state, std::string_view text, std::size_t at) {
  // What is worth its table.
  constexpr std::size_t kLong = 256;
  std::uint32_t number = table_[state + program_.EdgeClass() + 1];
  if (number == kUnknown) number = _FindLoop(state);
  if (number == kNoLoop) return at;
  Loop& loop = loops_[number];
  if (!loop.returns || text.size() - at < kLong) return loop.leaving.Find(text, at);
  if (!loop.around) loop.around = std::make_unique<Neighbourhood>(_FindNeighbourhood(state));
  unsigned place = 0;
  at = loop.around->steps.Skip(text, at, place);
  state = loop.around->states[place];
  return at;
}

std::uint32_t Automaton::_FindLoop(StateId state) {
  const FewBytes leaving = _BytesLeaving(state);
  std::uint32_t number = kNoLoop;
  if (!leaving.Overflown()) {
    number = static_cast<std::uint32_t>(loops_.size());
    const StateTable::View view = (*this)[state];
    const bool isIdle = view.searching && view.places.empty();
    const FewBytes behind = _BytesBehind(state, leaving);
    const bool returns = isIdle && leaving.Count() > 1 && !behind.Overflown();
    loops_.push_back({{leaving, behind}, returns, nullptr});
  }
  return table_[state + program_.EdgeClass() + 1] = number;
}

// Returns the first states that plain steps lead to from `state`, and these steps.
Automaton::Neighbourhood Automaton::_FindNeighbourhood(StateId state) {
  Neighbourhood around;
  std::vector<StateId>& states = around.states;
  states.push_back(state);
  for (unsigned from = 0; from < states.size(); ++from) {
    for (std::uint32_t c = 0; c < 256; ++c) {
      const std::uint32_t step = Step(states[from], program_.Classes()[c]);
      if (!Plain(step)) continue;
      const auto to =
          static_cast<unsigned>(std::find(states.begin(), states.end(), step) - states.begin());
      if (to == ShiftSearch::kStates) continue;
      if (to == states.size()) states.push_back(step);
      around.steps.SetStep(from, static_cast<unsigned char>(c), to);
    }
  }
  return around;
}

// Returns the bytes that do not lead from `state` back to it.
FewBytes Automaton::_BytesLeaving(StateId state) {
  FewBytes leaving;
  const bool few = program_.EdgeClass() <= kMostClasses && program_.End() <= kMostPlaces;
  for (std::uint32_t c = 0; c < 256 && !leaving.Overflown(); ++c) {
    const bool stays = few && Step(state, program_.Classes()[c]) == state;
    if (!stays) leaving.Add(static_cast<char>(c));
  }
  return leaving;
}

// Returns the bytes that, behind one of `leaving`, do not lead back to `state`. Behind any
// other byte it makes no difference that `state` was left; unless it is by another match, begun
// in the meantime, that a search is in the same state again.
FewBytes Automaton::_BytesBehind(StateId state, const FewBytes& leaving) {
  const StateTable::View view = (*this)[state];
  const bool mayBeAnother = view.searching && !view.places.empty();
  FewBytes behind;
  for (const char first : leaving) {
    const std::uint32_t left = Step(state, program_.ClassOf(first));
    for (std::uint32_t c = 0; c < 256 && !behind.Overflown(); ++c) {
      const std::uint32_t byteClass = program_.Classes()[c];
      const bool returns = !mayBeAnother && Plain(left) && Step(left, byteClass) == state;
      if (!returns || Step(state, byteClass) != state) behind.Add(static_cast<char>(c));
    }
  }
  return behind;
}

Automaton::StateId Automaton::Add(const State& state) {
  if (state.Dead()) return kDead;
  const StateId id = states_.Add(state) * stride_;
  // A state may be there without a row, if there was no memory for that before.
  if (table_.size() <= id) table_.resize(id + stride_, kUnknown);
  return id;
}

std::uint32_t Automaton::Step(StateId state, std::uint32_t byteClass) {
  const std::uint32_t known = table_[state + byteClass];
  if (known != kUnknown) return known;
  const std::uint32_t told = Step((*this)[state], byteClass, next_);
  const std::uint32_t step = Add(next_) | told;
  table_[state + byteClass] = step;
  return step;
}

std::uint32_t Automaton::Step(const StateTable::View& from, std::uint32_t byteClass, State& to) {
  const Neighbour ahead = program_.NeighbourOf(byteClass);
  to.places.clear();
  to.run = from.run;
  to.behind = ahead;
  to.searching = false;
  if (direction_ == Direction::kForward) {
    closure_.Begin(from.behind, ahead);
    return _StepForward(from, byteClass, to);
  }
  closure_.Begin(ahead, from.behind);
  return _StepBackward(from, byteClass, to);
}

// Group by group, until one has matched: what began later than a match is not wanted.
std::uint32_t Automaton::_StepForward(const StateTable::View& from, std::uint32_t byteClass,
                                      State& to) {
  const std::span<const Place> places = from.places;
  bool matched = false;
  bool firstMatched = false;
  bool firstGoesOn = false;
  for (std::size_t i = 0; i < places.size() && !matched; ++i) {
    const bool first = i == 0;
    taking_.clear();
    for (; i < places.size() && places[i] != State::kGroupEnd; ++i) {
      matched |= closure_.Forward(places[i], from.run, taking_);
    }
    _Take(byteClass, 1, to);
    if (first) firstMatched = matched;
    if (first) firstGoesOn = !to.places.empty();
  }
  if (from.searching && !matched) {
    taking_.clear();
    matched = closure_.Forward(from.run.start, from.run, taking_);
    _Take(byteClass, 1, to);
    to.searching = !matched && !anchored_;
  }
  if (matched) return firstMatched || places.empty() ? kMatched : kMatched | kLost;
  return places.empty() || firstGoesOn || to.places.empty() ? 0 : kLost;
}

std::uint32_t Automaton::_StepBackward(const StateTable::View& from, std::uint32_t byteClass,
                                       State& to) {
  bool matched = false;
  taking_.clear();
  for (const Place place : from.places) matched |= closure_.Backward(place, from.run, taking_);
  _Take(byteClass, 0, to);
  return matched ? kMatched : 0;
}

// Adds to `to` a group of those places in taking_ that match the byte, `offset` behind them.
void Automaton::_Take(std::uint32_t byteClass, Place offset, State& to) {
  if (byteClass == program_.EdgeClass()) return;
  const std::size_t before = to.places.size();
  for (const Place place : taking_) {
    if (!program_.Matches(place, byteClass)) continue;
    if (before > 0 && before == to.places.size()) to.places.push_back(State::kGroupEnd);
    to.places.push_back(place + offset);
  }
  const std::size_t start = before > 0 && to.places.size() > before ? before + 1 : before;
  std::sort(to.places.begin() + static_cast<std::ptrdiff_t>(start), to.places.end());
}

}  // namespace engine

}  // namespace mailhearth
