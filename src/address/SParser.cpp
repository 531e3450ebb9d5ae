// One walk over the bytes of a token serves both scanners. What they do with a byte is in
// their tables; where comments, line ends and errors lead is here.

#include "SParser.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "../strings/Characters.h"
#include "Literals.h"
#include "ScanRules.h"

inline namespace mailhearth {

// The way through one token. What it gathers is a range of the input, and is copied only
// where bytes are left out.
class SParser::Walk {
 public:
  Walk(SParser& parser, const ScanRules& rules)
      : parser_(parser),
        rules_(rules),
        input_(parser.input_.View()),
        at_(static_cast<std::size_t>(parser.position_)),
        start_(at_),
        from_(at_) {}

  SToken Token();

 private:
  [[nodiscard]] ScanStep _StepAt(std::size_t at) const {
    const auto state = static_cast<std::size_t>(parser_.state_);
    return rules_.steps[state + static_cast<unsigned char>(input_[at])];
  }

  // Returns the first position behind `at` whose byte is not simply gathered.
  [[nodiscard]] std::size_t _BehindRun(std::size_t at) const {
    const auto* const steps = &rules_.steps[static_cast<std::size_t>(parser_.state_)];
    do {
      ++at;
    } while (at < input_.size() &&
             steps[static_cast<unsigned char>(input_[at])] == ScanStep::kAppend);
    return at;
  }

  // Whether an atom has begun. Asked outside of everything only.
  [[nodiscard]] bool _InAtom() const { return at_ > start_; }

  void _Open(State state) {
    parser_.state_ = state;
    ++at_;
  }

  // Lets the token begin behind the next `n` bytes.
  void _PassOver(std::size_t n) { start_ = from_ = at_ += n; }

  // Leaves the next `n` bytes out of the token.
  void _Drop(std::size_t n) {
    gathered_ += input_.substr(from_, at_ - from_);
    from_ = at_ += n;
  }

  // Returns what was gathered as a token. Once.
  SToken _Gathered(int type);

  // The token is taken, and the next is looked for at `next`.
  void _MoveTo(std::size_t next);

  // Ends the token, of `type`; the next is looked for at `next`.
  SToken _End(int type, std::size_t next);

  SToken _Single();

  // Ends a quoted string, a comment, a literal.
  SToken _Close();
  SToken _CloseChecked();

  SToken _EndOfInput();

  // At a carriage return: whether a line feed follows, how many blanks behind that, whether
  // nothing behind it.
  [[nodiscard]] bool _AtLineEnd() const { return input_.substr(at_).starts_with("\r\n"); }
  [[nodiscard]] std::size_t _BlanksAhead() const;
  [[nodiscard]] bool _AtLastLineEnd() const { return at_ + kLineEnd == input_.size(); }

  // At a carriage return: whether the token goes on behind it; the way there; the token else.
  [[nodiscard]] bool _GoesOn() const;
  void _PassLineEnd();
  SToken _EndAtLineEnd();

  // Stops at an error that shows at `position`: with what was gathered, or with nothing.
  SToken _Refuse(AddressFlaw flaw, std::size_t position);
  SToken _RefuseAll(AddressFlaw flaw, std::size_t position);

  static constexpr std::size_t kLineEnd = 2;  // bytes

  SParser& parser_;
  const ScanRules& rules_;
  const std::string_view input_;
  std::size_t at_;         // the next byte
  std::size_t start_;      // where the token begins
  std::size_t from_;       // where the bytes begin that are not in `gathered_`
  std::string gathered_;   // the bytes before those left out last
  std::size_t depth_ = 0;  // comments that are open
};

SToken SParser::Walk::_Gathered(int type) {
  if (from_ == start_) {
    return {parser_.input_, static_cast<int>(start_), static_cast<int>(at_ - start_), type};
  }
  gathered_ += input_.substr(from_, at_ - from_);
  return {SString(gathered_), type};
}

void SParser::Walk::_MoveTo(std::size_t next) {
  parser_.state_ = kOutside;
  parser_.previous_ = static_cast<int>(start_);
  parser_.position_ = static_cast<int>(next);
}

SToken SParser::Walk::_End(int type, std::size_t next) {
  SToken token = _Gathered(type);  // may throw, and nothing has changed
  _MoveTo(next);
  return token;
}

SToken SParser::Walk::_Single() {
  const int type = rules_.singles[static_cast<unsigned char>(input_[at_++])];
  if (type == TokError) parser_.fault_ = {AddressFlaw::kByte, static_cast<int>(start_)};
  return _End(type, at_);
}

SToken SParser::Walk::_Close() {
  constexpr int kTypes[] = {TokAtom, TokQuoted, TokComment, TokLiteral};
  ++at_;
  return _End(kTypes[parser_.state_ / kInQuoted], at_);
}

SToken SParser::Walk::_CloseChecked() {
  ++at_;
  SToken token = _Gathered(TokLiteral);
  if (!IsValidLiteral(token.Text())) return _RefuseAll(AddressFlaw::kLiteral, start_);
  _MoveTo(at_);
  return token;
}

SToken SParser::Walk::_EndOfInput() {
  constexpr AddressFlaw kOpen[] = {AddressFlaw::kNone, AddressFlaw::kOpenQuotes,
                                   AddressFlaw::kOpenComment, AddressFlaw::kOpenLiteral};
  if (parser_.state_ != kOutside) return _RefuseAll(kOpen[parser_.state_ / kInQuoted], start_);
  return _InAtom() ? _End(TokAtom, at_) : _Gathered(TokEnd);
}

std::size_t SParser::Walk::_BlanksAhead() const {
  const std::size_t first = at_ + kLineEnd;
  return std::min(input_.find_first_not_of(kBlanks, first), input_.size()) - first;
}

bool SParser::Walk::_GoesOn() const {
  if (!_AtLineEnd()) return false;
  if (parser_.state_ != kOutside) return _BlanksAhead() > 0;
  return !_InAtom() && (_BlanksAhead() > 0 || _AtLastLineEnd());
}

void SParser::Walk::_PassLineEnd() {
  const std::size_t n = kLineEnd + _BlanksAhead();
  if (parser_.state_ == kOutside) {
    _PassOver(n);
  } else {
    _Drop(n);
    gathered_ += ' ';
  }
}

SToken SParser::Walk::_EndAtLineEnd() {
  if (parser_.state_ != kOutside || !_AtLineEnd()) return _Refuse(AddressFlaw::kLineEnd, at_);
  if (!_InAtom()) return _End(TokCrlf, at_ + kLineEnd);
  // Known and kept: the next token is looked for as many bytes behind the carriage return as
  // there are blanks, so a single blank leads to the line feed, which is an error there.
  return _End(TokAtom, _AtLastLineEnd() ? input_.size() : at_ + _BlanksAhead());
}

SToken SParser::Walk::_Refuse(AddressFlaw flaw, std::size_t position) {
  parser_.fault_ = {flaw, static_cast<int>(position)};
  return _Gathered(TokError);
}

SToken SParser::Walk::_RefuseAll(AddressFlaw flaw, std::size_t position) {
  parser_.fault_ = {flaw, static_cast<int>(position)};
  return {parser_.input_, 0, 0, TokError};
}

SToken SParser::Walk::Token() {
  while (at_ < input_.size()) {
    const ScanStep step = _StepAt(at_);
    if (EndsAtom(step) && _InAtom()) return _End(TokAtom, at_ + (step == ScanStep::kBlank));
    switch (step) {
      case ScanStep::kBlank:
        _PassOver(1);
        break;
      case ScanStep::kSingle:
        return _Single();
      case ScanStep::kOpenQuoted:
        _Open(kInQuoted);
        break;
      case ScanStep::kOpenComment:
        _Open(kInComment);
        break;
      case ScanStep::kOpenLiteral:
        _Open(kInLiteral);
        break;
      case ScanStep::kAppend:
        at_ = _BehindRun(at_);
        break;
      case ScanStep::kEscape:
        at_ = std::min(at_ + 2, input_.size());
        break;
      case ScanStep::kDrop:
        _Drop(1);
        break;
      case ScanStep::kNest:
        ++depth_, ++at_;
        break;
      case ScanStep::kUnnest:
        if (depth_ == 0) return _Close();
        --depth_, ++at_;
        break;
      case ScanStep::kClose:
        return _Close();
      case ScanStep::kCloseChecked:
        return _CloseChecked();
      case ScanStep::kLineEnd:
        if (!_GoesOn()) return _EndAtLineEnd();
        _PassLineEnd();
        break;
      case ScanStep::kRefuse:
        return _Refuse(AddressFlaw::kByte, at_);
      case ScanStep::kRefuseLiteral:
        return _Refuse(AddressFlaw::kLiteral, at_);
      case ScanStep::kRefuseNested:
        return _Refuse(AddressFlaw::kLiteral, at_++);
      case ScanStep::kRefuseLine:
        return _RefuseAll(AddressFlaw::kLineEnd, at_);
    }
  }
  return _EndOfInput();
}

SParser::SParser() = default;

SParser::SParser(const SString& text) : input_(text) {}

SParser::~SParser() = default;

void SParser::Reset() {
  position_ = previous_ = 0;
  state_ = kOutside;
}

void SParser::Init(const SString& text) {
  Reset();
  input_ = text;
}

SToken SParser::_Scan(const ScanRules& rules) {
  state_ = kOutside;
  return Walk(*this, rules).Token();
}

}  // namespace mailhearth
