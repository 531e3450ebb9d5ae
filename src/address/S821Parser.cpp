#include "S821Parser.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

#include "../strings/Characters.h"
#include "ScanRules.h"
#include "TokenWords.h"

inline namespace mailhearth {

namespace {

constexpr ScanRules kRules = [] {
  using enum ScanStep;
  using enum ScanState::Value;
  ScanRules rules;
  rules.SetOutside(TokBad);
  rules.SetSingle("()]", TokBad);
  rules.SetSingle("%", TokPercent);
  rules.Set(kOutside, "\t", kAppend);  // known and kept
  rules.Set(kOutside, "\\", kEscape);
  rules.Fill(kInQuoted, kAppend);
  rules.Set(kInQuoted, "\"", kClose);
  rules.Set(kInQuoted, "\\", kEscape);
  rules.Set(kInQuoted, "\r\n", kRefuseLine);
  rules.Fill(kInLiteral, kRefuseLiteral);
  rules.Set(kInLiteral, "0123456789.", kAppend);
  rules.Set(kInLiteral, " ", kDrop);
  rules.Set(kInLiteral, "]", kCloseChecked);
  return rules;
}();

// --- The local part ------------------------------------------------------------------------

// What a local part has come to: its last token.
enum LocalPart : std::uint8_t { kStart, kQuoted, kAtom, kDot, kPercent, kLiteral, kDone, kError };

constexpr std::size_t kStates = 6;
using Transitions = std::array<LocalPart, kStates>;

// What the next token makes of each state.
struct LocalPartRules {
  Transitions quoted, atom, dot, percent, literal, end, other;

  [[nodiscard]] constexpr const Transitions& For(int type) const {
    switch (type) {
      case TokQuoted:
        return quoted;
      case TokAtom:
        return atom;
      case TokDot:
        return dot;
      case TokPercent:
        return percent;
      case TokLiteral:
        return literal;
      case TokAt:
      case TokGreater:
      case TokEnd:
        return end;
      default:
        return other;
    }
  }
};

constexpr Transitions kNever = {kError, kError, kError, kError, kError, kError};
constexpr Transitions kOnlyFirst = {kQuoted, kError, kError, kError, kError, kError};

constexpr Transitions Always(LocalPart next) { return {next, next, next, next, next, next}; }

constexpr LocalPartRules kStrict = {
    // behind: start, quoted, atom, dot, percent, literal
    .quoted = kOnlyFirst,
    .atom = {kAtom, kError, kError, kAtom, kAtom, kError},
    .dot = {kError, kError, kDot, kError, kError, kError},
    .percent = {kError, kPercent, kPercent, kError, kPercent, kPercent},
    .literal = {kError, kError, kError, kError, kLiteral, kError},
    .end = {kError, kDone, kDone, kError, kError, kDone},
    .other = kNever,
};

constexpr LocalPartRules kLenient = {
    .quoted = kOnlyFirst,
    .atom = Always(kAtom),
    .dot = Always(kDot),
    .percent = Always(kPercent),
    .literal = Always(kLiteral),
    .end = Always(kDone),
    .other = kNever,
};

// Whether a double quote stands within the text, with no backslash before it.
bool HasInnerQuote(std::string_view text) {
  for (std::size_t i = 1; i + 1 < text.size(); ++i) {
    if (text[i] == '"' && text[i - 1] != '\\') return true;
  }
  return false;
}

std::string_view WithoutQuotes(std::string_view text) {
  if (!text.starts_with('"') || !text.ends_with('"')) return text;
  return text.size() < 2 ? std::string_view() : text.substr(1, text.size() - 2);
}

// Without the backslashes that stand before another byte.
SString Unescaped(std::string_view text) {
  SString plain("");
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\\' && i + 1 < text.size()) ++i;
    plain += text[i];
  }
  return plain;
}

bool NeedsQuotes(std::string_view text) {
  constexpr std::string_view kSpecials = "] <>()@%,;:\\\"[";
  return std::any_of(text.begin(), text.end(), [&](char c) {
    return IsC0OrC1Control(c) || kSpecials.find(c) != kSpecials.npos;
  });
}

SString Quoted(std::string_view text) {
  constexpr std::string_view kEscaped = "\r\n\"\\";
  SString quoted("\"");
  for (const char c : text) {
    if (kEscaped.find(c) != kEscaped.npos) quoted += '\\';
    quoted += c;
  }
  return quoted += '"';
}

// --- Labels and tokens ---------------------------------------------------------------------

bool IsLabelStart(char c) { return IsDigit(c) || IsLetter(c) || c == '#' || c == '~' || c == '?'; }

bool IsLabelByte(char c) { return IsLabelStart(c) || c == '-' || c == '_'; }

bool IsNumber(std::string_view label) { return std::all_of(label.begin(), label.end(), IsDigit); }

}  // namespace

S821Parser::S821Parser(const SString& text, unsigned lenient) : SParser(text), lenient_(lenient) {}

S821Parser::~S821Parser() = default;

SToken S821Parser::NextToken() { return _Scan(kRules); }

// --- Addresses -----------------------------------------------------------------------------

S821Address S821Parser::ExtractAddress() {
  S821Address address = _ParseAddress();
  _FixLocalPart(address.localPart_);
  _NoteOutcome(address);
  return address;
}

SToken S821Parser::_FirstToken() {
  // anything but "<", then "<" once or more; else the beginning of the text
  SToken token = NextToken();
  while ((token.Type() & (TokLess | TokEnd | TokError)) == 0) token = NextToken();
  if (token.Type() == TokEnd) {
    Reset();
    token = NextToken();
  }
  while (token.Type() == TokLess) token = NextToken();
  return token;
}

S821Address S821Parser::_ParseAddress() {
  // path = "<" ">" / "<" [ route ] local-part [ "@" domain ] ">"
  S821Address address;
  _NoteNothing();
  SToken token = _FirstToken();
  if (token.Type() == TokGreater) {
    _SkipGreater(token);
    return address;
  }
  address.bad_ = 1;
  if (token.Type() == TokAt) {
    UndoNext();
    address.route_ = _ExtractRoute();
    if (!address.route_.Defined()) return address;
    token = NextToken();
  }
  if (!_ReadLocalPart(token, address.localPart_)) return address;
  address.bad_ = 0;
  if (token.Type() == TokAt) _ReadDomain(address);
  return address;
}

SStringList S821Parser::_ExtractRoute() {
  // route = "@" host *( "," "@" host ) ":"
  SStringList route;
  for (;;) {
    SToken token = NextToken();
    if (token.Type() != TokAt) {
      _Note(AddressFlaw::kRoute, token);
      UndoNext();
      return {};
    }
    token = NextToken();
    SString host;
    if (!_ReadHost(token, TokComma | TokColon, TokComment, AddressFlaw::kRoute, host)) return {};
    if (host.Length() == 0) {
      _Note(AddressFlaw::kRoute, token);
      return {};
    }
    route.Push(host);
    if (token.Type() == TokColon) return route;
  }
}

bool S821Parser::_ReadLocalPart(SToken& token, SString& local) {
  // local-part = what the rules of the parser allow, up to "@", ">" or the end
  const LocalPartRules& rules = lenient_ != 0 ? kLenient : kStrict;
  LocalPart state = kStart;
  for (;; token = NextToken()) {
    state = rules.For(token.Type())[state];
    if (state == kDone) return true;
    if (state == kError) {
      _Note(AddressFlaw::kLocalPart, token);
      return false;
    }
    local += token.View();
  }
}

void S821Parser::_ReadDomain(S821Address& address) {
  // "@" domain ">", the ">" as often as it comes
  SToken token = NextToken();
  const int start = previous_;
  address.bad_ = 1;
  if (!_ReadHost(token, TokGreater | TokEnd, 0, AddressFlaw::kDomain, address.domain_)) {
    address = S821Address();  // known and kept: nothing is left of what was read
    address.bad_ = 1;
  } else if (address.domain_.Length() == 0) {
    _Note(AddressFlaw::kEmptyDomain, token);
  } else {
    _SkipGreater(token);
    address.bad_ = _CheckDomain(address.domain_, start) ? 0 : 1;
  }
}

bool S821Parser::_CheckDomain(const SString& domain, int start) {
  if (S821Parser(domain, 1).IsValidDomain()) return true;
  fault_ = {AddressFlaw::kInvalidDomain, start};
  return false;
}

bool S821Parser::_ReadHost(SToken& token, int ends, int passedOver, AddressFlaw flaw,
                           SString& host) {
  // host = ( label / literal ) *( "." ( label / literal ) ) [ "." ]
  bool expectsLabel = true;
  for (; (token.Type() & ends) == 0; token = NextToken()) {
    if ((token.Type() & passedOver) != 0) continue;
    const int expected = expectsLabel ? TokAtom | TokLiteral : int{TokDot};
    if ((token.Type() & expected) == 0) {
      _Note(flaw, token);
      return false;
    }
    if (token.Type() == TokAtom && !_IsLabel(token.View())) {
      _Note(AddressFlaw::kLabel, token);
      return false;
    }
    host += token.View();
    expectsLabel = token.Type() == TokDot;
  }
  if (expectsLabel) host.Chop();
  return true;
}

void S821Parser::_SkipGreater(SToken& token) {
  while (token.Type() == TokGreater) token = NextToken();
  if ((token.Type() & (TokError | TokEnd)) == 0) UndoNext();
  _NoteNothing();  // an error behind the address is not this one's
}

// --- What is wrong with them ---------------------------------------------------------------

void S821Parser::_Note(AddressFlaw flaw, const SToken& token) {
  switch (token.Type()) {
    case TokError:  // the scanner has told
      if (fault_.flaw == AddressFlaw::kNone) fault_ = {AddressFlaw::kByte, position_};
      break;
    case TokEnd:
      fault_ = {flaw, input_.Length()};
      break;
    case TokBad:
      fault_ = {AddressFlaw::kByte, previous_};
      break;
    default:
      fault_ = {flaw, previous_};
  }
}

void S821Parser::_NoteOutcome(const S821Address& address) {
  if (!address.IsBad()) {
    _NoteNothing();
  } else if (fault_.flaw == AddressFlaw::kNone) {
    fault_ = {AddressFlaw::kIncomplete, position_};
  }
}

// --- Parts of addresses --------------------------------------------------------------------

SStringList S821Parser::Extensions() const {
  const std::string_view rest = input_.View().substr(static_cast<std::size_t>(position_));
  if (std::any_of(rest.begin(), rest.end(), IsC0OrC1Control)) return {};
  SStringList words;
  words.Reset();
  for (std::size_t at = 0; (at = rest.find_first_not_of(' ', at)) != rest.npos;) {
    const std::size_t end = std::min(rest.find(' ', at), rest.size());
    words.Push(SString(rest.substr(at, end - at)));
    at = end;
  }
  return words;
}

bool S821Parser::IsValidDomain() {
  // domain = literal / label *( "." label )
  Reset();
  SToken token = NextToken();
  if (token.Type() == TokLiteral) return NextToken().Type() == TokEnd;
  for (bool only = true;; only = false) {
    if (token.Type() != TokAtom || !_IsLabel(token.View())) return false;
    const bool number = IsNumber(token.View());
    token = NextToken();
    if (token.Type() == TokEnd) return only || !number;
    if (token.Type() != TokDot) return false;
    token = NextToken();
  }
}

bool S821Parser::_IsLabel(std::string_view text) {
  return !text.empty() && IsLabelStart(text[0]) &&
         std::all_of(text.begin(), text.end(), IsLabelByte);
}

void S821Parser::_FixLocalPart(SString& local) const {
  const std::string_view text = local.View();
  const auto has = [&](char c) { return text.find(c) != text.npos; };
  if ((!has('\\') && !has('"')) || HasInnerQuote(text)) return;
  SString plain = Unescaped(WithoutQuotes(text));
  if (NeedsQuotes(plain.View())) plain = Quoted(plain.View());
  local = plain.Length() > 0 ? plain : "\"\"";
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): callers may count on the value
SString S821Parser::_JoinTokens(SStringList tokens, char separator) const {
  if (!tokens.Defined()) return {};
  if (tokens.Count() == 1) return tokens.Get(0);
  std::vector<std::string_view> texts;
  texts.reserve(static_cast<std::size_t>(tokens.Count()));
  for (const SString& token : tokens) texts.push_back(token.View());
  return JoinTexts(texts, separator);
}

int S821Parser::_TokenType(const SString& text) const { return TypeOfText(text.View()); }

}  // namespace mailhearth
