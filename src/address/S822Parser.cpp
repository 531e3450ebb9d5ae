#include "S822Parser.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "ScanRules.h"
#include "TokenWords.h"

inline namespace mailhearth {

namespace {

constexpr ScanRules kRules = [] {
  using enum ScanStep;
  using enum ScanState::Value;
  ScanRules rules;
  rules.SetOutside(TokError);
  rules.Set(kOutside, "\t", kBlank);
  rules.Set(kOutside, "(", kOpenComment);
  rules.Set(kOutside, ")]\\", kRefuse);
  for (const ScanState::Value state : {kInQuoted, kInComment, kInLiteral}) {
    rules.Fill(state, kAppend);
    rules.Set(state, "\\", kEscape);
  }
  for (const ScanState::Value state : {kOutside, kInQuoted, kInComment, kInLiteral})
    rules.Set(state, "\r", kLineEnd);
  rules.Set(kInQuoted, "\"", kClose);
  rules.Set(kInComment, "(", kNest);
  rules.Set(kInComment, ")", kUnnest);
  rules.Set(kInLiteral, "[", kRefuseNested);
  rules.Set(kInLiteral, "]", kClose);
  return rules;
}();

constexpr int kWords = TokAtom | TokQuoted | TokDot | TokLiteral;

// Whether what a token took from the text is a line end, as that of a TokCrlf alone is.
bool IsLineEnd(std::string_view text, int from, int to) {
  const auto start = static_cast<std::size_t>(from);
  return text.substr(start, static_cast<std::size_t>(to) - start) == "\r\n";
}

// --- The way over a bad address ------------------------------------------------------------

// Whether a line ends here and no blank folds it.
bool ListEndsAt(std::string_view text, std::size_t at) {
  const std::string_view rest = text.substr(at);
  return rest.starts_with("\r\n") && !rest.starts_with("\r\n ") && !rest.starts_with("\r\n\t");
}

// Returns where the byte ends that begins here, with the one it escapes.
std::size_t BehindByte(std::string_view text, std::size_t at) {
  return std::min(at + (text[at] == '\\' ? 2 : 1), text.size());
}

// Returns where what `open` opens here has been closed; the end of the list if nowhere.
std::size_t BehindEnclosed(std::string_view text, std::size_t at, char open, char close) {
  int depth = 1;
  for (++at; depth > 0 && at < text.size() && !ListEndsAt(text, at); at = BehindByte(text, at)) {
    if (text[at] == close) {
      --depth;
    } else if (text[at] == '(' && open == '(') {
      ++depth;
    }
  }
  return at;
}

// Returns where the byte ends that begins here, or the quoted string, comment or literal.
std::size_t Behind(std::string_view text, std::size_t at) {
  switch (text[at]) {
    case '"':
      return BehindEnclosed(text, at, '"', '"');
    case '(':
      return BehindEnclosed(text, at, '(', ')');
    case '[':
      return BehindEnclosed(text, at, '[', ']');
    default:
      return BehindByte(text, at);
  }
}

}  // namespace

struct S822Parser::Reading {
  SToken token;      // the one read last
  TokenWords words;  // read, but neither local part nor domain nor phrase yet
  S822Address address;
  SToken comment;  // the last one, if it still counts
  bool commented = false;

  explicit Reading(S822Parser& parser)
      : token(parser.NextToken()), words(parser.input_), comment(token) {}

  void PushWord() {
    words.Push(token);
    commented = false;
  }

  void TakeComment() {
    comment = token;
    commented = true;
  }
};

S822Parser::S822Parser(const SString& text) : S821Parser(text, 1) {}

S822Parser::~S822Parser() = default;

void S822Parser::Reset() {
  S821Parser::Reset();
  inGroup_ = 0;
}

SToken S822Parser::NextToken() { return _Scan(kRules); }

S822Address S822Parser::NextAddress() {
  S822Address address = _ParseNextAddress();
  _FixLocalPart(address.localPart_);
  _NoteOutcome(address);
  return address;
}

S822Address S822Parser::NextListed() {
  S822Address address = NextAddress();
  if (address.IsBad()) _SkipBadAddress();
  return address;
}

SStringList S822Parser::Addresses() {
  Reset();
  SStringList list;
  for (;;) {
    const S822Address address = NextAddress();
    if (address.IsEnd()) {
      if (list.Count() == 0) list.Reset();
      return list;
    }
    if (address.IsBad()) return list;
    list.Push(address.S821Address::Address());
  }
}

// --- The grammar ---------------------------------------------------------------------------

S822Address S822Parser::_ParseNextAddress() {
  _NoteNothing();
  const int begin = position_;
  Reading reading(*this);
  reading.address.bad_ = _ReadAddress(reading) ? 0 : 1;
  if (IsLineEnd(input_.View(), std::max(begin, previous_), position_)) {
    UndoNext();  // it goes on being the end, whatever came before
  }
  if (reading.commented) reading.address.comment_ = reading.comment.Text();
  return std::move(reading.address);
}

void S822Parser::_SkipSeparators(Reading& reading) {
  while ((reading.token.Type() & (TokComma | TokSemicolon | TokComment)) != 0) {
    if (reading.token.Type() == TokSemicolon) inGroup_ = 0;
    reading.token = NextToken();
  }
  start_ = (reading.token.Type() & (TokError | TokEnd)) != 0 ? position_ : previous_;
}

bool S822Parser::_ReadAddress(Reading& reading) {
  // address = *( words ":" ) ( [ words ] angle / route angle / words [ "@" bare-domain ] )
  for (;;) {
    _SkipSeparators(reading);
    switch (reading.token.Type()) {
      case TokAtom:
      case TokQuoted:
      case TokDot:
        break;
      case TokLess:
      case TokAt:
        return _ReadAngle(reading);
      case TokCrlf:
      case TokEnd:
        reading.address.end_ = 1;
        return true;
      default:
        _Note(AddressFlaw::kStart, reading.token);
        return false;
    }
    const bool literal = _ReadWords(reading);
    if (reading.token.Type() != TokColon) return _ReadBehindWords(reading, literal);
    if (inGroup_ != 0 || literal) {
      _Note(AddressFlaw::kGroup, reading.token);
      return false;
    }
    inGroup_ = 1;
    reading.words.Clear();  // the name of the group
    reading.commented = false;
    reading.token = NextToken();
  }
}

bool S822Parser::_ReadWords(Reading& reading) {
  // words = 1*( atom / quoted-string / "." / literal / comment )
  bool literal = false;
  for (;; reading.token = NextToken()) {
    if ((reading.token.Type() & kWords) != 0) {
      literal = literal || reading.token.Type() == TokLiteral;
      reading.PushWord();
    } else if (reading.token.Type() == TokComment) {
      reading.TakeComment();
    } else {
      return literal;
    }
  }
}

bool S822Parser::_ReadBehindWords(Reading& reading, bool literal) {
  // angle / "@" bare-domain / the end of the address
  if (reading.token.Type() == TokLess && !literal) {
    reading.address.phrase_ = reading.words.TakeJoined(' ');
    reading.commented = false;
    return _ReadAngle(reading);
  }
  if (reading.token.Type() == TokAt) {
    reading.address.localPart_ = reading.words.TakeJoined('.');
    return _ReadBareDomain(reading);
  }
  if (!_EndsBareAddress(reading.token, AddressFlaw::kWords)) return false;
  reading.address.localPart_ = reading.words.TakeJoined('.');
  return true;
}

bool S822Parser::_EndsBareAddress(const SToken& token, AddressFlaw flaw) {
  switch (token.Type()) {
    case TokComma:
    case TokEnd:
    case TokCrlf:
      return true;
    case TokSemicolon:
      if (inGroup_ == 0) {
        _Note(AddressFlaw::kGroup, token);
        return false;
      }
      inGroup_ = 0;
      return true;
    default:
      _Note(flaw, token);
      return false;
  }
}

bool S822Parser::_ReadBareDomain(Reading& reading) {
  // bare-domain = 1*( atom / "." / literal / comment )
  int start = -1;
  for (reading.token = NextToken();; reading.token = NextToken()) {
    if ((reading.token.Type() & (TokAtom | TokDot | TokLiteral)) != 0) {
      if (start < 0) start = previous_;
      reading.PushWord();
    } else if (reading.token.Type() == TokComment) {
      reading.TakeComment();
    } else {
      break;
    }
  }
  if (!_EndsBareAddress(reading.token, AddressFlaw::kDomain)) return false;
  SString& domain = reading.address.domain_;
  domain = reading.words.TakeJoined(' ');
  if (domain[-1] == '.') domain.Chop();
  if (domain.Length() > 0) return _CheckDomain(domain, start);
  _Note(AddressFlaw::kEmptyDomain, reading.token);
  return false;
}

bool S822Parser::_ReadAngle(Reading& reading) {
  // angle = 1*"<" ( 1*">" / [ route ] *word ( ">" / "@" angle-domain / the end ) )
  SToken& token = reading.token;
  while (token.Type() == TokLess) token = NextToken();
  if (token.Type() == TokGreater) {
    _SkipGreater(token);
    return true;
  }
  if (token.Type() == TokAt) {
    UndoNext();
    reading.address.route_ = _ExtractRoute();
    if (!reading.address.route_.Defined()) return false;
    token = NextToken();
  }
  for (; (token.Type() & (kWords | TokComment)) != 0; token = NextToken()) {
    if (token.Type() != TokComment) reading.words.Push(token);
  }
  if ((token.Type() & (TokGreater | TokAt | TokComma | TokEnd | TokCrlf)) == 0) {
    _Note(AddressFlaw::kLocalPart, token);
    return false;
  }
  reading.address.localPart_ = reading.words.TakeJoined('.');
  if (token.Type() == TokAt) return _ReadAngleDomain(reading);
  return true;
}

bool S822Parser::_ReadAngleDomain(Reading& reading) {
  // angle-domain = host ( 1*">" / the end )
  constexpr int kEnds = TokGreater | TokComma | TokEnd | TokCrlf;
  SString& domain = reading.address.domain_;
  reading.token = NextToken();
  if (!_ReadHost(reading.token, kEnds, TokComment, AddressFlaw::kDomain, domain)) return false;
  if (domain.Length() == 0) {
    _Note(AddressFlaw::kEmptyDomain, reading.token);
    return false;
  }
  _SkipGreater(reading.token);
  return true;
}

void S822Parser::_SkipBadAddress() {
  // From the beginning of the address, so as to know what is open where the error was found;
  // to a comma no further back than the last token, and right before it, or one text might be
  // read again and again.
  const std::string_view text = input_.View();
  auto least = static_cast<std::size_t>(std::max(start_, previous_));
  const std::size_t before = text.substr(0, least).find_last_not_of(" \t\r\n");
  if (before != text.npos && text[before] == ',') least = before;
  bool inAngle = false;
  std::size_t comma = text.npos;  // where to go on; within angle brackets, if they stay open
  std::size_t at = static_cast<std::size_t>(start_);
  for (; at < text.size() && !ListEndsAt(text, at); at = Behind(text, at)) {
    const char c = text[at];
    if (c == ',' && at >= least && comma == text.npos) comma = at;
    if (comma != text.npos && (!inAngle || c == '<')) break;
    if (c == '<') inAngle = true;
    if (c == '>') {
      inAngle = false;
      comma = text.npos;
    }
    if ((c == ':' || c == ';') && !inAngle) inGroup_ = c == ':' ? 1 : 0;
  }
  position_ = previous_ = static_cast<int>(comma == text.npos ? at : comma + 1);
}

}  // namespace mailhearth
