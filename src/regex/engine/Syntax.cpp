// A parser with an explicit stack of the open groups, so that nesting costs no call stack. Each
// group, and the pattern itself, collects its complete branches and the pieces of the current
// branch; a repetition replaces the piece before it.

#include "Syntax.h"

#include <regex.h>

#include <algorithm>
#include <array>
#include <utility>

inline namespace mailhearth {

namespace engine {

namespace {

constexpr bool IsDigit(unsigned char c) { return c >= '0' && c <= '9'; }
constexpr bool IsLower(unsigned char c) { return c >= 'a' && c <= 'z'; }
constexpr bool IsUpper(unsigned char c) { return c >= 'A' && c <= 'Z'; }
constexpr bool IsAlpha(unsigned char c) { return IsLower(c) || IsUpper(c); }
constexpr bool IsAlnum(unsigned char c) { return IsAlpha(c) || IsDigit(c); }
constexpr bool IsGraph(unsigned char c) { return c > ' ' && c < 0x7F; }
constexpr bool IsCntrl(unsigned char c) { return c < ' ' || c == 0x7F; }

constexpr unsigned char OtherCase(unsigned char c) {
  return static_cast<unsigned char>(IsAlpha(c) ? c ^ 0x20 : c);
}

// The character classes of the C locale.
struct NamedClass {
  std::string_view name;
  bool (*has)(unsigned char c);
};

constexpr NamedClass kClasses[] = {
    {"alnum", IsAlnum},
    {"alpha", IsAlpha},
    {"blank", [](unsigned char c) { return c == ' ' || c == '\t'; }},
    {"cntrl", IsCntrl},
    {"digit", IsDigit},
    {"graph", IsGraph},
    {"lower", IsLower},
    {"print", [](unsigned char c) { return c == ' ' || IsGraph(c); }},
    {"punct", [](unsigned char c) { return IsGraph(c) && !IsAlnum(c); }},
    {"space", [](unsigned char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }},
    {"upper", IsUpper},
    {"xdigit",
     [](unsigned char c) {
       return IsDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
     }},
};

// A new set is compared with the last so many, to share an equal one.
constexpr std::size_t kSetsCompared = 32;

class Parser {
 public:
  Parser(std::string_view pattern, bool ignoreCase, Tree& tree)
      : pattern_(pattern), ignoreCase_(ignoreCase), tree_(tree) {}

  int Parse();

 private:
  // The children of a node to be created.
  struct List {
    std::uint32_t first = kNone;
    std::uint32_t last = kNone;
  };

  // An open group, or the pattern itself.
  struct Open {
    std::uint32_t group = 0;
    List branches;
    List pieces;
  };

  [[nodiscard]] bool _More() const { return at_ < pattern_.size(); }
  [[nodiscard]] unsigned char _Peek(std::size_t ahead = 0) const {
    return static_cast<unsigned char>(pattern_[at_ + ahead]);
  }
  [[nodiscard]] bool _Sees(std::string_view text) const {
    return pattern_.substr(at_, text.size()) == text;
  }
  bool _Take(std::string_view text) {
    if (!_Sees(text)) return false;
    at_ += text.size();
    return true;
  }
  [[nodiscard]] bool _SeesDigit(std::size_t ahead) const {
    return at_ + ahead < pattern_.size() && IsDigit(_Peek(ahead));
  }

  // Keeps the first error. Returns false.
  bool _Fail(int status) {
    if (status_ == 0) status_ = status;
    return false;
  }

  std::uint32_t _New(NodeKind kind, std::uint32_t value, std::uint32_t child = kNone);
  void _Append(List& list, std::uint32_t node);
  void _AddPiece(NodeKind kind, std::uint32_t value) {
    _Append(open_.back().pieces, _New(kind, value));
  }
  void _AddByte(unsigned char c);
  void _AddSet(const ByteSet& set);
  void _AddAssertion(Assertion which) {
    _AddPiece(NodeKind::kAssertion, static_cast<std::uint32_t>(which));
  }

  std::uint32_t _Gather(const List& list, NodeKind kind);
  void _EndBranch();
  std::uint32_t _EndAlternation();

  void _ParsePiece();
  void _OpenGroup();
  void _CloseGroup();
  void _ParseEscape();
  void _ParseRepetition(unsigned char c);
  bool _ParseBound(int& min, int& max);
  bool _ParseNumber(int& number);
  void _Repeat(int min, int max);

  void _ParseBracket();
  bool _ParseMembers(ByteSet& set);
  bool _ParseMember(ByteSet& set);
  bool _ParseElement(unsigned char& c, ByteSet& set, bool& single);
  bool _ParseNamed(std::string_view& name, char kind);
  bool _AddClass(std::string_view name, ByteSet& set);

  const std::string_view pattern_;
  const bool ignoreCase_;
  Tree& tree_;
  std::size_t at_ = 0;
  int status_ = 0;
  std::vector<Open> open_;
};

int Parser::Parse() {
  if (pattern_.empty()) return REG_BADPAT;
  tree_.nodes.reserve(std::min(pattern_.size() + 8, kMaxNodes));
  open_.emplace_back();
  while (_More() && status_ == 0) _ParsePiece();
  if (status_ == 0 && open_.size() > 1) _Fail(REG_EPAREN);
  if (status_ == 0) tree_.root = _EndAlternation();
  return status_;
}

// piece = atom | "(" | ")" | "|" | repetition
void Parser::_ParsePiece() {
  const unsigned char c = _Peek();
  ++at_;
  switch (c) {
    case '(':
      return _OpenGroup();
    case ')':
      return _CloseGroup();
    case '|':
      return _EndBranch();
    case '^':
      return _AddAssertion(Assertion::kTextStart);
    case '$':
      return _AddAssertion(Assertion::kTextEnd);
    case '.':
      return _AddSet(ByteSet().set());
    case '[':
      return _ParseBracket();
    case '\\':
      return _ParseEscape();
    case '*':
    case '+':
    case '?':
      return _ParseRepetition(c);
    case '{':
      if (_SeesDigit(0)) return _ParseRepetition(c);
      [[fallthrough]];
    default:
      _AddByte(c);
  }
}

std::uint32_t Parser::_New(NodeKind kind, std::uint32_t value, std::uint32_t child) {
  if (tree_.nodes.size() >= kMaxNodes) _Fail(REG_ESPACE);
  Node node;
  node.kind = kind;
  node.value = value;
  node.child = child;
  tree_.nodes.push_back(node);
  return static_cast<std::uint32_t>(tree_.nodes.size() - 1);
}

void Parser::_Append(List& list, std::uint32_t node) {
  if (list.first == kNone) {
    list.first = node;
  } else {
    tree_.nodes[list.last].sibling = node;
  }
  list.last = node;
}

void Parser::_AddByte(unsigned char c) {
  if (!ignoreCase_ || OtherCase(c) == c) return _AddPiece(NodeKind::kByte, c);
  _AddSet(ByteSet().set(c).set(OtherCase(c)));
}

void Parser::_AddSet(const ByteSet& set) {
  std::vector<ByteSet>& sets = tree_.sets;
  const std::size_t compared = std::min(sets.size(), kSetsCompared);
  auto found = std::find(sets.end() - static_cast<std::ptrdiff_t>(compared), sets.end(), set);
  if (found == sets.end()) found = sets.insert(sets.end(), set);
  _AddPiece(NodeKind::kSet, static_cast<std::uint32_t>(found - sets.begin()));
}

// Returns the node for a list: its only node, else a new parent of that kind.
std::uint32_t Parser::_Gather(const List& list, NodeKind kind) {
  if (list.first == kNone) return _New(NodeKind::kEmpty, 0);
  if (list.first == list.last) return list.first;
  return _New(kind, 0, list.first);
}

void Parser::_EndBranch() {
  Open& open = open_.back();
  _Append(open.branches, _Gather(std::exchange(open.pieces, List()), NodeKind::kConcatenation));
}

std::uint32_t Parser::_EndAlternation() {
  _EndBranch();
  return _Gather(open_.back().branches, NodeKind::kAlternation);
}

void Parser::_OpenGroup() {
  if (open_.size() > kMaxNodes) _Fail(REG_ESPACE);
  open_.emplace_back().group = static_cast<std::uint32_t>(++tree_.groups);
}

void Parser::_CloseGroup() {
  if (open_.size() == 1) {
    _Fail(REG_EPAREN);
    return;
  }
  const std::uint32_t inner = _EndAlternation();
  const std::uint32_t group = open_.back().group;
  open_.pop_back();
  _Append(open_.back().pieces, _New(NodeKind::kGroup, group, inner));
}

void Parser::_ParseEscape() {
  if (!_More()) {
    _Fail(REG_EESCAPE);
    return;
  }
  _AddByte(_Peek());
  ++at_;
}

// repetition = "*" | "+" | "?" | "{" number [ "," [ number ] ] "}"
void Parser::_ParseRepetition(unsigned char c) {
  int min = c == '+' ? 1 : 0;
  int max = c == '?' ? 1 : kUnbounded;
  if (c == '{' && !_ParseBound(min, max)) return;
  if (open_.back().pieces.last == kNone) {
    _Fail(REG_BADRPT);
    return;
  }
  _Repeat(min, max);
}

bool Parser::_ParseBound(int& min, int& max) {
  if (!_ParseNumber(min)) return false;
  max = min;
  if (_Take(",")) {
    max = kUnbounded;
    if (_SeesDigit(0) && !_ParseNumber(max)) return false;
  }
  if (!_More()) return _Fail(REG_EBRACE);
  if (!_Take("}") || min > max) return _Fail(REG_BADBR);
  return true;
}

bool Parser::_ParseNumber(int& number) {
  for (number = 0; _SeesDigit(0); ++at_) {
    number = number * 10 + (_Peek() - '0');
    if (number > kMaxBound) return _Fail(REG_BADBR);
  }
  return true;
}

// Replaces the last piece by a repetition of it.
void Parser::_Repeat(int min, int max) {
  if (min == 1 && max == 1) return;
  const std::uint32_t piece = open_.back().pieces.last;
  Node& node = tree_.nodes[piece];
  // "*", "+" and "?" on each other fold into one, with the same groups. A long row of them would
  // compile to a program that only walks through splits.
  const auto isSimple = [](int least, int most) {
    return least <= 1 && (most == 1 || most == kUnbounded);
  };
  if (node.kind == NodeKind::kRepetition && isSimple(node.min, node.max) && isSimple(min, max)) {
    node.min = static_cast<std::uint8_t>(std::min<int>(node.min, min));
    node.max = static_cast<std::uint16_t>(std::max<int>(node.max, max));
    return;
  }
  const std::uint32_t moved = _New(NodeKind::kEmpty, 0);
  Node& repetition = tree_.nodes[piece];  // _New() may have moved it
  tree_.nodes[moved] = repetition;
  repetition = Node();
  repetition.kind = NodeKind::kRepetition;
  repetition.min = static_cast<std::uint8_t>(min);
  repetition.max = static_cast<std::uint16_t>(max);
  repetition.child = moved;
}

// bracket = "[" [ "^" ] [ "]" ] members "]" | "[[:<:]]" | "[[:>:]]"
void Parser::_ParseBracket() {
  if (_Take("[:<:]]")) return _AddAssertion(Assertion::kWordStart);
  if (_Take("[:>:]]")) return _AddAssertion(Assertion::kWordEnd);
  const bool negated = _Take("^");
  ByteSet set;
  if (!_ParseMembers(set)) return;
  if (ignoreCase_) {
    for (unsigned char c = 'a'; c <= 'z'; ++c) {
      const bool has = set[c] || set[OtherCase(c)];
      set[c] = set[OtherCase(c)] = has;
    }
  }
  _AddSet(negated ? ~set : set);
}

bool Parser::_ParseMembers(ByteSet& set) {
  if (_Sees("]") && !_ParseMember(set)) return false;
  while (_More()) {
    if (_Take("]")) return true;
    if (!_ParseMember(set)) return false;
  }
  return _Fail(REG_EBRACK);
}

// member = class | element [ "-" element ]
bool Parser::_ParseMember(ByteSet& set) {
  unsigned char first = 0;
  unsigned char last = 0;
  bool single = false;
  if (!_ParseElement(first, set, single)) return false;
  const bool range = _Sees("-") && !_Sees("-]") && at_ + 1 < pattern_.size();
  if (!range) {
    if (single) set.set(first);
    return true;
  }
  if (!single) return _Fail(REG_ERANGE);
  ++at_;
  if (!_ParseElement(last, set, single)) return false;
  if (!single || first > last) return _Fail(REG_ERANGE);
  for (std::size_t c = first; c <= last; ++c) set.set(c);
  return true;
}

// element = byte | "[." byte ".]" | "[=" byte "=]" | "[:" name ":]"
// Sets `c` if the element is one byte, which can be the end of a range; `single` tells. Adds the
// members of any other element to `set`.
bool Parser::_ParseElement(unsigned char& c, ByteSet& set, bool& single) {
  std::string_view name;
  single = true;
  if (_Take("[:")) {
    single = false;
    return _ParseNamed(name, ':') && _AddClass(name, set);
  }
  const bool equivalence = _Sees("[=");
  if (equivalence || _Sees("[.")) {
    at_ += 2;
    if (!_ParseNamed(name, equivalence ? '=' : '.')) return false;
    if (name.size() != 1) return _Fail(REG_ECOLLATE);
    c = static_cast<unsigned char>(name.front());
    if (equivalence) {
      single = false;
      set.set(c);
    }
    return true;
  }
  c = _Peek();
  ++at_;
  return true;
}

// Parses a name with its closing bracket, as in "alpha:]".
bool Parser::_ParseNamed(std::string_view& name, char kind) {
  const char end[] = {kind, ']'};
  // The name has at least one byte, so that "[.].]" and "[===]" name "]" and "=".
  const std::size_t length = pattern_.find(std::string_view(end, 2), at_ + (kind == ':' ? 0 : 1));
  if (length == pattern_.npos) return _Fail(REG_EBRACK);
  name = pattern_.substr(at_, length - at_);
  at_ = length + 2;
  return true;
}

bool Parser::_AddClass(std::string_view name, ByteSet& set) {
  const auto* const found = std::find_if(std::begin(kClasses), std::end(kClasses),
                                         [&](const NamedClass& each) { return each.name == name; });
  if (found == std::end(kClasses)) return _Fail(REG_ECTYPE);
  for (std::size_t c = 0; c < set.size(); ++c) {
    if (found->has(static_cast<unsigned char>(c))) set.set(c);
  }
  return true;
}

}  // namespace

int Parse(std::string_view pattern, bool ignoreCase, Tree& tree) {
  return Parser(pattern, ignoreCase, tree).Parse();
}

}  // namespace engine

}  // namespace mailhearth
