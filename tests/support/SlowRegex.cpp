#include "support/SlowRegex.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <utility>

inline namespace mailhearth {

namespace {

constexpr int kMaxBound = 255;

unsigned char Byte(char c) { return static_cast<unsigned char>(c); }

// The character classes, in the C locale that every test program starts in.
struct Class {
  std::string_view name;
  int (*has)(int);
};

constexpr std::array<Class, 12> kClasses = {{{"alnum", std::isalnum},
                                             {"alpha", std::isalpha},
                                             {"blank", std::isblank},
                                             {"cntrl", std::iscntrl},
                                             {"digit", std::isdigit},
                                             {"graph", std::isgraph},
                                             {"lower", std::islower},
                                             {"print", std::isprint},
                                             {"punct", std::ispunct},
                                             {"space", std::isspace},
                                             {"upper", std::isupper},
                                             {"xdigit", std::isxdigit}}};

}  // namespace

SlowRegex::SlowRegex(std::string_view pattern, bool ignoreCase)
    : rest_(pattern), ignoreCase_(ignoreCase) {
  if (pattern.empty()) return;
  root_ = _ParseChoice(0);
  rest_ = {};
}

int SlowRegex::_Add(Node node) {
  node.slot = slots_;
  if (node.kind == Kind::kChoice) slots_ += 1;
  if (node.kind == Kind::kRow) slots_ += static_cast<int>(node.parts.size());
  if (node.kind == Kind::kTurns) slots_ += std::max(node.min, node.max) + 1;
  nodes_.push_back(std::move(node));
  return static_cast<int>(nodes_.size()) - 1;
}

int SlowRegex::_ParseChoice(int depth) {
  // choice = row *( "|" row )
  Node choice(Kind::kChoice);
  do {
    choice.parts.push_back(_ParseRow(depth));
    if (choice.parts.back() == kBad) return kBad;
  } while (_Take('|'));
  return choice.parts.size() == 1 ? choice.parts[0] : _Add(std::move(choice));
}

int SlowRegex::_ParseRow(int depth) {
  // row = *piece
  Node row(Kind::kRow);
  while (!rest_.empty() && !_At('|') && !_At(')')) {
    row.parts.push_back(_ParsePiece(depth));
    if (row.parts.back() == kBad) return kBad;
  }
  if (depth == 0 && _At(')')) return kBad;
  if (row.parts.empty()) return _Add(Node(Kind::kEmpty));
  return row.parts.size() == 1 ? row.parts[0] : _Add(std::move(row));
}

int SlowRegex::_ParsePiece(int depth) {
  // piece = atom *repetition
  if (_AtRepetition()) return kBad;
  int piece = _ParseAtom(depth);
  while (piece != kBad && _AtRepetition()) piece = _ParseRepetition(piece);
  return piece;
}

int SlowRegex::_ParseAtom(int depth) {
  // atom = "(" choice ")" / "[" ... "]" / "." / "^" / "$" / "\" byte / byte
  if (_Take('(')) return _ParseGroup(depth);
  if (_Take("[[:<:]]")) return _Add(Node(Kind::kWordBegin));
  if (_Take("[[:>:]]")) return _Add(Node(Kind::kWordEnd));
  if (_Take('[')) return _ParseBracket();
  if (_Take('^')) return _Add(Node(Kind::kBegin));
  if (_Take('$')) return _Add(Node(Kind::kEnd));
  Node one(Kind::kSet);
  if (_Take('.')) {
    one.set.set();
    return _Add(std::move(one));
  }
  if (_Take('\\') && rest_.empty()) return kBad;
  one.set.set(Byte(_Next()));
  one.set = _Fold(one.set);
  return _Add(std::move(one));
}

int SlowRegex::_ParseGroup(int depth) {
  Node group(Kind::kGroup);
  group.group = ++groupCount_;
  group.parts.push_back(_ParseChoice(depth + 1));
  if (group.parts[0] == kBad || !_Take(')')) return kBad;
  return _Add(std::move(group));
}

int SlowRegex::_ParseBracket() {
  // bracket = "[" [ "^" ] 1*element "]", where a "]" in the first place is an element
  Node bracket(Kind::kSet);
  const bool negated = _Take('^');
  do {
    if (rest_.empty() || !_ParseElement(bracket.set)) return kBad;
  } while (!_At(']') && !rest_.empty());
  if (!_Take(']')) return kBad;
  bracket.set = _Fold(bracket.set);
  if (negated) bracket.set.flip();
  return _Add(std::move(bracket));
}

bool SlowRegex::_ParseElement(std::bitset<256>& set) {
  // element = class / "[=" byte "=]" / end-point [ "-" end-point ]
  const auto atRange = [&] { return rest_.size() > 1 && rest_[0] == '-' && rest_[1] != ']'; };
  if (rest_.starts_with("[:")) return _ParseClass(set) && !atRange();
  const bool isRange = !rest_.starts_with("[=");
  const int first = isRange ? _ParseEndPoint() : _ParseNamed('=');
  int last = first;
  if (atRange()) {
    _Next();
    if (!isRange || rest_.starts_with("[:") || rest_.starts_with("[=")) return false;
    last = _ParseEndPoint();
  }
  if (first == kBad || last < first) return false;
  for (int c = first; c <= last; ++c) set.set(static_cast<std::size_t>(c));
  return true;
}

int SlowRegex::_ParseEndPoint() {
  // end-point = "[." byte ".]" / byte
  return rest_.starts_with("[.") ? _ParseNamed('.') : Byte(_Next());
}

int SlowRegex::_ParseNamed(char kind) {
  // named = "[" kind byte kind "]"
  if (rest_.size() < 5 || rest_[3] != kind || rest_[4] != ']') return kBad;
  const int c = Byte(rest_[2]);
  rest_.remove_prefix(5);
  return c;
}

bool SlowRegex::_ParseClass(std::bitset<256>& set) {
  // class = "[:" name ":]"
  for (const Class& one : kClasses) {
    if (!_Take("[:" + std::string(one.name) + ":]")) continue;
    for (int c = 0; c < 256; ++c) {
      if (one.has(c) != 0) set.set(static_cast<std::size_t>(c));
    }
    return true;
  }
  return false;
}

int SlowRegex::_ParseRepetition(int operand) {
  // repetition = "*" / "+" / "?" / "{" number [ "," [ number ] ] "}"
  Node turns(Kind::kTurns);
  turns.parts.push_back(operand);
  if (_Take('*')) {
    turns.max = kNoMax;
  } else if (_Take('+')) {
    turns.min = 1;
    turns.max = kNoMax;
  } else if (_Take('?')) {
    turns.max = 1;
  } else {
    _Next();
    turns.min = turns.max = _ParseNumber();
    if (_Take(',')) turns.max = _AtDigit() ? _ParseNumber() : kNoMax;
    if (!_Take('}')) return kBad;
    if (turns.min > kMaxBound || turns.max > kMaxBound) return kBad;
    if (turns.max != kNoMax && turns.max < turns.min) return kBad;
  }
  return _Add(std::move(turns));
}

int SlowRegex::_ParseNumber() {
  int n = 0;
  while (_AtDigit()) n = std::min(10 * n + (_Next() - '0'), kMaxBound + 1);
  return n;
}

bool SlowRegex::_AtRepetition() const {
  if (_At('*') || _At('+') || _At('?')) return true;
  return _At('{') && rest_.size() > 1 && rest_[1] >= '0' && rest_[1] <= '9';
}

bool SlowRegex::_AtDigit() const {
  return !rest_.empty() && rest_.front() >= '0' && rest_.front() <= '9';
}

bool SlowRegex::_Take(char c) {
  if (!_At(c)) return false;
  rest_.remove_prefix(1);
  return true;
}

bool SlowRegex::_Take(std::string_view word) {
  if (!rest_.starts_with(word)) return false;
  rest_.remove_prefix(word.size());
  return true;
}

char SlowRegex::_Next() {
  const char c = rest_.front();
  rest_.remove_prefix(1);
  return c;
}

std::bitset<256> SlowRegex::_Fold(std::bitset<256> set) const {
  if (!ignoreCase_) return set;
  for (std::size_t c = 'a'; c <= 'z'; ++c) {
    const std::size_t upper = c - 'a' + 'A';
    set[c] = set[upper] = set[c] || set[upper];
  }
  return set;
}

void SlowRegex::SetText(std::string_view text) {
  text_ = text;
  length_ = static_cast<int>(text.size());
  answers_.assign(static_cast<std::size_t>(slots_) * (text.size() + 1) * (text.size() + 1), -1);
}

const std::vector<regmatch_t>& SlowRegex::Find(int start) {
  groups_.clear();
  for (int from = std::max(start, 0); start >= 0 && from <= length_; ++from) {
    for (int to = length_; to >= from; --to) {
      if (!_Can(root_, from, to)) continue;
      groups_.assign(static_cast<std::size_t>(groupCount_) + 1, {-1, -1});
      groups_[0] = {from, to};
      _Read(root_, from, to);
      return groups_;
    }
  }
  return groups_;
}

bool SlowRegex::_WordAt(int at) const {
  if (at < 0 || at >= length_) return false;
  const char c = text_[static_cast<std::size_t>(at)];
  return std::isalnum(Byte(c)) != 0 || c == '_';
}

signed char& SlowRegex::_Answer(const Node& node, int state, int from, int to) {
  const int width = length_ + 1;
  return answers_[static_cast<std::size_t>(((node.slot + state) * width + from) * width + to)];
}

// Whether the part can match the text from `from` to `to`.
bool SlowRegex::_Can(int id, int from, int to) {
  const Node& node = nodes_[static_cast<std::size_t>(id)];
  const bool empty = from == to;
  switch (node.kind) {
    case Kind::kEmpty:
      return empty;
    case Kind::kSet:
      return to == from + 1 && node.set[Byte(text_[static_cast<std::size_t>(from)])];
    case Kind::kBegin:
      return empty && from == 0;
    case Kind::kEnd:
      return empty && from == length_;
    case Kind::kWordBegin:
      return empty && !_WordAt(from - 1) && _WordAt(from);
    case Kind::kWordEnd:
      return empty && _WordAt(from - 1) && !_WordAt(from);
    case Kind::kGroup:
      return _Can(node.parts[0], from, to);
    case Kind::kRow:
      return _CanRest(node, 0, from, to);
    case Kind::kTurns:
      return _CanTurns(node, 0, from, to);
    case Kind::kChoice:
      break;
  }
  signed char& answer = _Answer(node, 0, from, to);
  if (answer < 0) {
    answer = std::any_of(node.parts.begin(), node.parts.end(),
                         [&](int branch) { return _Can(branch, from, to); });
  }
  return answer > 0;
}

// Whether the pieces of the row from `piece` on can.
bool SlowRegex::_CanRest(const Node& row, int piece, int from, int to) {
  if (piece == static_cast<int>(row.parts.size())) return from == to;
  signed char& answer = _Answer(row, piece, from, to);
  if (answer < 0) {
    answer = 0;
    for (int middle = to; answer == 0 && middle >= from; --middle) {
      answer = _Can(row.parts[static_cast<std::size_t>(piece)], from, middle) &&
               _CanRest(row, piece + 1, middle, to);
    }
  }
  return answer > 0;
}

// Whether the turns that remain can, after `done` of them.
bool SlowRegex::_CanTurns(const Node& turns, int done, int from, int to) {
  if (turns.max == kNoMax) done = std::min(done, turns.min);  // from there on all are alike
  signed char& answer = _Answer(turns, done, from, to);
  if (answer < 0) answer = _CanTurnsAnew(turns, done, from, to);
  return answer > 0;
}

bool SlowRegex::_CanTurnsAnew(const Node& turns, int done, int from, int to) {
  const bool asked = done < turns.min;  // the next turn, which may then be empty
  if (!asked && from == to) return true;
  if (done == turns.max) return false;
  for (int middle = to; middle >= (asked ? from : from + 1); --middle) {
    if (_Can(turns.parts[0], from, middle) && _CanTurns(turns, done + 1, middle, to)) return true;
  }
  return false;
}

// Reads the groups of a part that can match from `from` to `to`, and does so here.
void SlowRegex::_Read(int id, int from, int to) {
  const Node& node = nodes_[static_cast<std::size_t>(id)];
  if (node.kind == Kind::kGroup) {
    groups_[static_cast<std::size_t>(node.group)] = {from, to};
    _Read(node.parts[0], from, to);
  } else if (node.kind == Kind::kChoice) {
    for (const int branch : node.parts) {
      if (_Can(branch, from, to)) return _Read(branch, from, to);
    }
  } else if (node.kind == Kind::kRow) {
    _ReadRow(node, from, to);
  } else if (node.kind == Kind::kTurns) {
    _ReadTurns(node, from, to);
  }
}

void SlowRegex::_ReadRow(const Node& row, int from, int to) {
  for (int piece = 0; piece < static_cast<int>(row.parts.size()); ++piece) {
    const int part = row.parts[static_cast<std::size_t>(piece)];
    int middle = to;
    while (!_Can(part, from, middle) || !_CanRest(row, piece + 1, middle, to)) --middle;
    _Read(part, from, middle);
    from = middle;
  }
}

void SlowRegex::_ReadTurns(const Node& turns, int from, int to) {
  const int operand = turns.parts[0];
  if (from == to && turns.min == 0) {
    if (turns.max != 0 && _Can(operand, from, to)) _Read(operand, from, to);
    return;
  }
  int last = from;  // where the last turn began
  for (int done = 0; done < turns.min || from < to; ++done) {
    last = from;
    from = to;
    while (!_Can(operand, last, from) || !_CanTurns(turns, done + 1, from, to)) --from;
  }
  _Read(operand, last, to);
}

}  // namespace mailhearth
