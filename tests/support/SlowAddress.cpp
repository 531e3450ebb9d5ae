#include "support/SlowAddress.h"

#include <algorithm>
#include <utility>

#include "address/SToken.h"
#include "lists/SStringList.h"
#include "strings/SString.h"
#include "support/Text.h"

inline namespace mailhearth {

namespace {

constexpr std::string_view kBlanks = " \t";
constexpr int kListEnds = TokEnd | TokCrlf;

bool Has(std::string_view set, char c) { return set.find(c) != set.npos; }

bool IsDigit(char c) { return Has("0123456789", c); }

bool IsLetterOrDigit(char c) {
  return IsDigit(c) || Has("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ", c);
}

// A control character in either half of the bytes, or DEL.
bool IsControl(unsigned char c) { return (c & 0x7F) < 32 || c == 127; }

int SpecialType(unsigned char c) {
  switch (c) {
    case '<':
      return TokLess;
    case '>':
      return TokGreater;
    case '@':
      return TokAt;
    case '%':
      return TokPercent;
    case '.':
      return TokDot;
    case ',':
      return TokComma;
    case ';':
      return TokSemicolon;
    case ':':
      return TokColon;
    default:
      return 0;
  }
}

std::vector<std::string> SplitAt(const std::string& text, char separator) {
  std::vector<std::string> pieces{""};
  for (const char c : text) {
    if (c == separator) {
      pieces.emplace_back();
    } else {
      pieces.back() += c;
    }
  }
  return pieces;
}

std::string JoinWith(const std::vector<std::string>& pieces, const std::string& separator) {
  std::string joined;
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    if (i > 0) joined += separator;
    joined += pieces[i];
  }
  return joined;
}

void DropTrailingDot(std::string& text) {
  if (!text.empty() && text.back() == '.') text.pop_back();
}

}  // namespace

// Address values.

bool SlowAddress::IsBad() const {
  if (bad) return true;
  if (!local.empty()) return domain.empty() && !route.empty();
  return !route.empty() || !domain.empty();
}

std::string SlowAddress::Envelope() const {
  if (IsBad()) return "";
  if (route.empty() && local.empty() && domain.empty()) return "<>";
  std::string text = "<";
  if (!route.empty()) text += '@' + JoinWith(route, ",@") + ':';
  text += local;
  if (!domain.empty()) text += '@' + domain;
  return text + '>';
}

std::string SlowAddress::Header() const {
  if (end) return "";
  std::string text = Envelope();
  if (text.empty() || text == "<>") return text;
  if (!phrase.empty()) return phrase + ' ' + text;
  if (route.empty()) text = text.substr(1, text.size() - 2);
  if (!comment.empty()) text += ' ' + comment;
  return text;
}

// The scanners.

void SlowAddressParser::Reset() {
  position_ = previous_ = 0;
  inGroup_ = false;
}

// The byte there, 0 past the end, which no case of the scanners takes for one of its own.
unsigned char SlowAddressParser::_Byte(std::size_t at) const {
  return at < input_.size() ? static_cast<unsigned char>(input_[at]) : '\0';
}

bool SlowAddressParser::_IsSpecial(unsigned char c) const {
  if (c == '%') return form_ != SlowForm::kList;
  return SpecialType(c) != 0;
}

SlowToken SlowAddressParser::_Took(std::size_t began, std::size_t end, int type,
                                   const std::string& text) {
  previous_ = began;
  position_ = std::min(end, input_.size());
  return {type, text};
}

SlowToken SlowAddressParser::NextToken() {
  SlowToken token = form_ == SlowForm::kList ? _NextListToken() : _NextPathToken();
  lastType_ = token.type;
  return token;
}

SlowToken SlowAddressParser::_NextPathToken() {
  enum { kOutside, kQuoted, kLiteral } state = kOutside;
  std::string text;
  std::size_t began = position_;
  std::size_t i = position_;
  while (i < input_.size()) {
    const unsigned char c = _Byte(i);
    if (text.empty()) began = i;
    if (state == kQuoted) {
      if (c == '\r' || c == '\n') return {TokError, ""};
      text += input_.substr(i, c == '\\' ? 2 : 1);
      i += c == '\\' ? 2 : 1;
      if (c == '"') return _Took(began, i, TokQuoted, text);
    } else if (state == kLiteral) {
      if (c != ' ' && c != ']' && c != '.' && !IsDigit(input_[i])) return {TokError, text};
      if (c != ' ') text += input_[i];
      ++i;
      if (c == ']' && !SlowIsValidLiteral(text)) return {TokError, ""};
      if (c == ']') return _Took(began, i, TokLiteral, text);
    } else if (c == ' ') {
      ++i;
      if (!text.empty()) return _Took(began, i, TokAtom, text);
    } else if (c == '\\') {
      text += input_.substr(i, 2);
      i += 2;
    } else if (c == '"' || c == '[') {
      if (!text.empty()) return _Took(began, i, TokAtom, text);
      state = c == '"' ? kQuoted : kLiteral;
      text += input_[i++];
    } else if (_IsSpecial(c)) {
      if (!text.empty()) return _Took(began, i, TokAtom, text);
      return _Took(began, i + 1, SpecialType(c), {input_[i]});
    } else if (Has("()]", input_[i]) || (IsControl(c) && c != '\t')) {
      if (!text.empty()) return _Took(began, i, TokAtom, text);
      return _Took(began, i + 1, TokBad, {input_[i]});
    } else {
      text += input_[i++];
    }
  }
  if (state != kOutside) return {TokError, ""};
  if (text.empty()) return {TokEnd, ""};
  return _Took(began, i, TokAtom, text);
}

SlowToken SlowAddressParser::_NextListToken() {
  enum { kOutside, kQuoted, kComment, kLiteral } state = kOutside;
  std::string text;
  int depth = 0;  // of comments
  std::size_t began = position_;
  std::size_t i = position_;
  while (i < input_.size()) {
    const unsigned char c = _Byte(i);
    if (text.empty()) began = i;
    if (c == '\r') {
      if (_Byte(i + 1) != '\n') return {TokError, text};
      const std::size_t next = std::min(input_.find_first_not_of(kBlanks, i + 2), input_.size());
      const std::size_t blanks = next - (i + 2);
      if (blanks == 0) {
        if (state != kOutside) return {TokError, text};
        const bool isLast = next == input_.size();
        if (!isLast && !text.empty()) return _Took(began, i, TokAtom, text);
        if (!isLast) return _Took(began, next, TokCrlf, "");
      } else if (state != kOutside) {
        text += ' ';
      } else if (!text.empty()) {
        return _Took(began, i + blanks, TokAtom, text);
      }
      i = next;
    } else if (state != kOutside) {
      text += input_.substr(i, c == '\\' ? 2 : 1);
      i += c == '\\' ? 2 : 1;
      if (state == kQuoted && c == '"') return _Took(began, i, TokQuoted, text);
      if (state == kLiteral && c == '[') return {TokError, text};
      if (state == kLiteral && c == ']') return _Took(began, i, TokLiteral, text);
      if (state == kComment && c == '(') ++depth;
      if (state == kComment && c == ')' && --depth == 0) {
        return _Took(began, i, TokComment, text);
      }
    } else if (Has(kBlanks, input_[i])) {
      ++i;
      if (!text.empty()) return _Took(began, i, TokAtom, text);
    } else if (Has("\\)]", input_[i])) {
      return {TokError, text};
    } else if (c == '"' || c == '(' || c == '[') {
      if (!text.empty()) return _Took(began, i, TokAtom, text);
      state = c == '"' ? kQuoted : c == '(' ? kComment : kLiteral;
      depth = c == '(' ? 1 : 0;
      text += input_[i++];
    } else if (_IsSpecial(c)) {
      if (!text.empty()) return _Took(began, i, TokAtom, text);
      return _Took(began, i + 1, SpecialType(c), {input_[i]});
    } else if (IsControl(c)) {
      if (!text.empty()) return _Took(began, i, TokAtom, text);
      return _Took(began, i + 1, TokError, {input_[i]});
    } else {
      text += input_[i++];
    }
  }
  if (state != kOutside) return {TokError, ""};
  if (text.empty()) return {TokEnd, ""};
  return _Took(began, i, TokAtom, text);
}

// Reads past all tokens of these types, to the first other one.
SlowToken SlowAddressParser::_NextSkipping(int types) {
  SlowToken token = NextToken();
  while ((token.type & types) != 0) token = NextToken();
  return token;
}

// Puts a token back, unless it is one that took nothing.
void SlowAddressParser::_UndoUnlessLast(const SlowToken& token) {
  if ((token.type & (TokError | TokEnd)) == 0) UndoNext();
}

// Small tests on texts.

bool SlowIsValidLiteral(const std::string& text) {
  if (text.size() < 2 || text.front() != '[' || text.back() != ']') return false;
  const std::vector<std::string> parts = SplitAt(text.substr(1, text.size() - 2), '.');
  if (parts.size() != 4) return false;
  for (const std::string& part : parts) {
    if (part.empty() || !std::ranges::all_of(part, IsDigit)) return false;
    int value = 0;
    for (const char digit : part) value = std::min(value * 10 + (digit - '0'), 1000);
    if (value > 255) return false;
  }
  return true;
}

bool SlowIsValidElement(const std::string& label) {
  if (label.empty()) return false;
  if (!IsLetterOrDigit(label[0]) && !Has("#~?", label[0])) return false;
  return std::ranges::all_of(label, [](char c) { return IsLetterOrDigit(c) || Has("-_#~?", c); });
}

bool SlowIsValidDomain(const std::string& text) {
  return SlowAddressParser(text, SlowForm::kLenientPath).IsValidDomain();
}

int SlowTokenType(const std::string& text) {
  if (text.empty()) return TokEnd;
  const bool isLong = text.size() > 1;
  switch (text[0]) {
    case '"':
      return isLong ? TokQuoted : TokBad;
    case '(':
      return isLong ? TokComment : TokBad;
    case '[':
      return isLong ? TokLiteral : TokBad;
    case '\\':
      return isLong ? TokAtom : TokBad;
    case ')':
    case ']':
      return TokBad;
    default:
      break;
  }
  const auto first = static_cast<unsigned char>(text[0]);
  if (SpecialType(first) != 0) return SpecialType(first);
  if (text == "\r\n") return TokCrlf;
  return first < 32 || first == 127 ? TokBad : TokAtom;
}

std::string SlowJoinTokens(const std::vector<std::string>& tokens, char separator) {
  std::string joined;
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    if (i == 0) {
      joined = tokens[0];
      continue;
    }
    const int before = SlowTokenType(tokens[i - 1]);
    const int type = SlowTokenType(tokens[i]);
    constexpr int kWord = TokAtom | TokQuoted;
    if (separator != ' ') {
      if ((before & kWord) != 0 && (type & kWord) != 0) joined += separator;
    } else if ((before & kWord) != 0 && (type & (kWord | TokLess | TokComment)) != 0) {
      const bool isDotNext = i + 1 < tokens.size() && SlowTokenType(tokens[i + 1]) == TokDot;
      if (before != TokAtom || type != TokComment || !isDotNext) joined += separator;
    }
    joined += tokens[i];
  }
  return joined;
}

std::string SlowFixLocalPart(std::string local) {
  if (local.find_first_of("\\\"") == local.npos) return local;
  for (std::size_t i = 1; i + 1 < local.size(); ++i) {
    if (local[i] == '"' && local[i - 1] != '\\') return local;
  }
  if (local.front() == '"' && local.back() == '"') {
    local = local.size() > 1 ? local.substr(1, local.size() - 2) : "";
  }
  std::string plain;
  for (std::size_t i = 0; i < local.size(); ++i) {
    if (local[i] == '\\' && i + 1 < local.size()) ++i;
    plain += local[i];
  }
  const bool needsQuotes = std::ranges::any_of(plain, [](char c) {
    return Has("] <>()@%,;:\\\"[", c) || IsControl(static_cast<unsigned char>(c));
  });
  if (!needsQuotes) return plain.empty() ? "\"\"" : plain;
  std::string quoted = "\"";
  for (const char c : plain) {
    if (Has("\r\n\"\\", c)) quoted += '\\';
    quoted += c;
  }
  return quoted + '"';
}

// Envelope paths.

namespace {

enum LocalState { kStart, kAfterQuoted, kAfterAtom, kAfterDot, kAfterPercent, kAfterLiteral };
constexpr int kDone = 6, kError = 7;

int NextStrictState(int state, int type) {
  switch (type) {
    case TokQuoted:
      return state == kStart ? kAfterQuoted : kError;
    case TokAtom:
      return state == kStart || state == kAfterDot || state == kAfterPercent ? kAfterAtom : kError;
    case TokDot:
      return state == kAfterAtom ? kAfterDot : kError;
    case TokPercent:
      return state == kStart || state == kAfterDot ? kError : kAfterPercent;
    case TokLiteral:
      return state == kAfterPercent ? kAfterLiteral : kError;
    case TokAt:
    case TokGreater:
    case TokEnd:
      return state == kAfterQuoted || state == kAfterAtom || state == kAfterLiteral ? kDone
                                                                                    : kError;
    default:
      return kError;
  }
}

int NextLenientState(int state, int type) {
  switch (type) {
    case TokQuoted:
      return state == kStart ? kAfterQuoted : kError;
    case TokAtom:
      return kAfterAtom;
    case TokDot:
      return kAfterDot;
    case TokPercent:
      return kAfterPercent;
    case TokLiteral:
      return kAfterLiteral;
    case TokAt:
    case TokGreater:
    case TokEnd:
      return kDone;
    default:
      return kError;
  }
}

}  // namespace

SlowAddress SlowAddressParser::ExtractAddress() {
  SlowAddress address = _ParsePath();
  address.local = SlowFixLocalPart(address.local);
  return address;
}

SlowAddress SlowAddressParser::_ParsePath() {
  SlowAddress address, bad;
  bad.bad = true;
  SlowToken token = NextToken();
  while ((token.type & (TokLess | TokEnd)) == 0) {
    if (token.type == TokError) return bad;
    token = NextToken();
  }
  if (token.type == TokEnd) {
    Reset();
    token = NextToken();
  }
  if (token.type == TokLess) token = _NextSkipping(TokLess);
  if (token.type == TokGreater) {
    _UndoUnlessLast(_NextSkipping(TokGreater));
    return address;
  }
  if (token.type == TokAt) {
    UndoNext();
    const std::optional<List> route = ExtractRoute();
    if (!route) return bad;
    address.route = *route;
    token = NextToken();
  }
  if (!_ParseLocalPart(address, token)) {
    address.bad = true;
    return address;
  }
  if (token.type != TokAt) return address;
  if (!_ParseHost(address.domain, token, TokGreater | TokEnd, 0)) return bad;
  if (address.domain.empty()) {
    address.bad = true;
    return address;
  }
  while (token.type == TokGreater) token = NextToken();
  _UndoUnlessLast(token);
  address.bad = !SlowIsValidDomain(address.domain);
  return address;
}

// Reads on from `token`, which is then the one that ended the local part.
bool SlowAddressParser::_ParseLocalPart(SlowAddress& address, SlowToken& token) {
  int state = kStart;
  for (;; token = NextToken()) {
    state = form_ == SlowForm::kStrictPath ? NextStrictState(state, token.type)
                                           : NextLenientState(state, token.type);
    if (state == kError) return false;
    if (state == kDone) return true;
    address.local += token.text;
  }
}

// Reads labels, literals and the dots between them; `token` is then the one that ended them.
bool SlowAddressParser::_ParseHost(std::string& host, SlowToken& token, int ends, int skipped) {
  bool expectsLabel = true;
  for (token = NextToken(); (token.type & ends) == 0; token = NextToken()) {
    if ((token.type & skipped) != 0) continue;
    if (token.type == TokDot) {
      if (expectsLabel) return false;
    } else if (token.type == TokAtom) {
      if (!expectsLabel || !SlowIsValidElement(token.text)) return false;
    } else if (token.type != TokLiteral || !expectsLabel) {
      return false;
    }
    host += token.text;
    expectsLabel = token.type == TokDot;
  }
  DropTrailingDot(host);
  return true;
}

std::optional<SlowAddressParser::List> SlowAddressParser::ExtractRoute() {
  List route;
  for (;;) {
    const SlowToken at = NextToken();
    if (at.type != TokAt) {
      UndoNext();  // which also takes back a comma before an end or an error
      return std::nullopt;
    }
    std::string host;
    SlowToken token;
    if (!_ParseHost(host, token, TokComma | TokColon, TokComment) || host.empty())
      return std::nullopt;
    route.push_back(host);
    if (token.type == TokColon) return route;
  }
}

std::optional<SlowAddressParser::List> SlowAddressParser::Extensions() const {
  const std::string rest = input_.substr(position_);
  List words;
  for (const char c : rest) {
    if (IsControl(static_cast<unsigned char>(c))) return std::nullopt;
  }
  for (const std::string& word : SplitAt(rest, ' ')) {
    if (!word.empty()) words.push_back(word);
  }
  return words;
}

bool SlowAddressParser::IsValidDomain() {
  Reset();
  SlowToken token = NextToken();
  if (token.type == TokLiteral) return NextToken().type == TokEnd;
  for (int labels = 1;; ++labels) {
    if (token.type != TokAtom || !SlowIsValidElement(token.text)) return false;
    const std::string last = token.text;
    token = NextToken();
    if (token.type == TokEnd) return labels == 1 || !std::ranges::all_of(last, IsDigit);
    if (token.type != TokDot) return false;
    token = NextToken();
  }
}

// Lists in a header.

SlowAddress SlowAddressParser::NextAddress() {
  SlowAddress address = _ParseNext();
  address.local = SlowFixLocalPart(address.local);
  if (lastType_ == TokCrlf) UndoNext();  // the list ends there, good or bad
  return address;
}

SlowAddress SlowAddressParser::_ParseNext() {
  for (;;) {
    SlowAddress address;
    SlowToken token = NextToken();
    for (; (token.type & (TokComma | TokComment | TokSemicolon)) != 0; token = NextToken()) {
      if (token.type == TokSemicolon) inGroup_ = false;
    }
    if ((token.type & kListEnds) != 0) {
      address.end = true;
      return address;
    }
    if ((token.type & (TokLess | TokAt)) != 0) {
      _ParseAngle(address, token);
      return address;
    }
    if ((token.type & (TokAtom | TokQuoted | TokDot)) == 0) {
      address.bad = true;
      return address;
    }
    if (_ParseWords(address, token)) return address;
  }
}

// Reads what begins with the word `token`.
// Returns false where that is a group's name, and reading starts anew.
bool SlowAddressParser::_ParseWords(SlowAddress& address, SlowToken token) {
  List words;
  bool hasLiteral = false;
  for (;; token = NextToken()) {
    switch (token.type) {
      case TokLiteral:
        hasLiteral = true;
        [[fallthrough]];
      case TokAtom:
      case TokQuoted:
      case TokDot:
        words.push_back(token.text);
        address.comment.clear();
        break;
      case TokComment:
        address.comment = token.text;
        break;
      case TokLess:
        if (hasLiteral) {
          address.bad = true;
          return true;
        }
        address.phrase = SlowJoinTokens(words, ' ');
        address.comment.clear();
        _ParseAngle(address, token);
        return true;
      case TokAt:
        address.local = SlowJoinTokens(words, '.');
        _ParseBareDomain(address);
        return true;
      case TokColon:
        if (inGroup_ || hasLiteral) {
          address.bad = true;
          return true;
        }
        inGroup_ = true;
        return false;
      default:
        address.bad = !_EndsBareAddress(token);
        if (!address.bad) address.local = SlowJoinTokens(words, '.');
        return true;
    }
  }
}

// Whether `token` ends an address without brackets; if it is a semicolon, it ends the group.
bool SlowAddressParser::_EndsBareAddress(const SlowToken& token) {
  if (token.type == TokSemicolon) return std::exchange(inGroup_, false);
  return (token.type & (TokComma | kListEnds)) != 0;
}

void SlowAddressParser::_ParseBareDomain(SlowAddress& address) {
  List words;
  SlowToken token = NextToken();
  for (; (token.type & (TokAtom | TokDot | TokLiteral | TokComment)) != 0; token = NextToken()) {
    if (token.type == TokComment) {
      address.comment = token.text;
    } else {
      words.push_back(token.text);
      address.comment.clear();
    }
  }
  address.bad = !_EndsBareAddress(token);
  if (address.bad) return;
  address.domain = SlowJoinTokens(words, ' ');
  DropTrailingDot(address.domain);
  address.bad = !SlowIsValidDomain(address.domain);
}

void SlowAddressParser::_ParseAngle(SlowAddress& address, SlowToken token) {
  if (token.type == TokLess) token = _NextSkipping(TokLess);
  if (token.type == TokGreater) {
    _UndoUnlessLast(_NextSkipping(TokGreater));
    return;
  }
  if (token.type == TokAt) {
    UndoNext();
    const std::optional<List> route = ExtractRoute();
    address.bad = !route;
    if (!route) return;
    address.route = *route;
    token = NextToken();
  }
  List words;
  for (; (token.type & (TokAtom | TokQuoted | TokLiteral | TokDot | TokComment)) != 0;
       token = NextToken()) {
    if (token.type != TokComment) words.push_back(token.text);
  }
  constexpr int kEnds = TokGreater | TokComma | kListEnds;
  address.bad = (token.type & (kEnds | TokAt)) == 0;
  if (address.bad) return;
  address.local = SlowJoinTokens(words, '.');
  if (token.type != TokAt) return;
  address.bad = !_ParseHost(address.domain, token, kEnds, TokComment) || address.domain.empty();
  if (address.bad) return;
  while (token.type == TokGreater) token = NextToken();
  _UndoUnlessLast(token);
}

std::optional<SlowAddressParser::List> SlowAddressParser::Addresses() {
  Reset();
  List all;
  for (;;) {
    const SlowAddress address = NextAddress();
    if (address.end) return all;
    if (address.IsBad()) break;
    all.push_back(address.Envelope());
  }
  if (all.empty()) return std::nullopt;
  return all;
}

// Repair.

namespace {

// The envelope form of `text`, empty unless it is an address.
std::string Checked(const std::string& text) {
  const std::string form =
      SlowAddressParser(text, SlowForm::kLenientPath).ExtractAddress().Envelope();
  return form.size() >= 3 ? form : "";
}

std::string RepairedDomain(const std::string& text) {
  std::vector<std::string> labels;
  for (const SString& label : Text(text).Split("[\\s.,]+")) labels.push_back(Bytes(label));
  if (!labels.empty() && labels.front().empty()) labels.erase(labels.begin());
  if (!labels.empty() && labels.back().empty()) labels.pop_back();
  const std::string domain = JoinWith(labels, ".");
  if (SlowIsValidDomain(domain)) return domain;
  const std::string literal = '[' + domain + ']';
  return SlowIsValidDomain(literal) ? literal : "";
}

}  // namespace

std::string SlowFixBogusAddress(const std::string& offered) {
  SString text = Text(offered);
  if (text.HasMatch("<.*>")) {
    text.S("^.+<", "");
    text.S(">.+$", "");
  }
  text.S("^[\\s<]+", "");
  text.S("[\\s>]+$", "");
  const std::size_t at = text.View().find('@');
  if (at != std::string_view::npos && at > 0) {
    const SStringList parts = text.M("^(.*)@([^@]*)$");
    const std::string before = Bytes(parts[1]), behind = Bytes(parts[2]);
    if (Has(before, '@')) {
      const std::string quoted = '"' + before + "\"@" + behind;
      const std::string form = Checked(quoted);
      if (!form.empty()) return form;
      text = Text(quoted);
    }
  }
  SStringList pieces = text.Split("\\s*(@\\s*)+");
  if (pieces.Count() >= 3 && pieces.Get(0).HasPrefix("@")) {  // never, as they have no at-signs
    while (pieces.Count() > 2) pieces.Shift();
    SString local = pieces.Get(0);
    local.S(".*:\\s*", "");
    pieces = SStringList({local, pieces.Get(1)});
  }
  if (pieces.Count() == 1) {
    const std::string form = Checked(Bytes(text));
    return form.empty() ? "<>" : form;
  }
  if (pieces.Count() != 2) return "<>";
  const std::string local = Bytes(pieces.Get(0)), domain = RepairedDomain(Bytes(pieces.Get(1)));
  if (domain.empty()) return "<>";
  for (const std::string& form :
       {Checked('<' + local + '@' + domain + '>'), Checked("<\"" + local + "\"@" + domain + '>')}) {
    if (!form.empty()) return form;
  }
  return "<>";
}

}  // namespace mailhearth
