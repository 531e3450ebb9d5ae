#include "TokenWords.h"

#include <array>
#include <cstdint>
#include <functional>

#include "../strings/Characters.h"

inline namespace mailhearth {

namespace {

constexpr int kWord = TokAtom | TokQuoted;
constexpr int kBehindBlank = kWord | TokLess | TokComment;

constexpr std::array<std::uint16_t, 256> kTypes = [] {
  std::array<std::uint16_t, 256> types{};
  const auto set = [&](std::size_t c, int type) { types[c] = static_cast<std::uint16_t>(type); };
  for (std::size_t c = 0; c < types.size(); ++c) {
    set(c, IsC0Control(static_cast<char>(c)) ? TokBad : TokAtom);
  }
  set('"', TokQuoted);
  set('(', TokComment);
  set('[', TokLiteral);
  set('<', TokLess);
  set('>', TokGreater);
  set('@', TokAt);
  set('%', TokPercent);
  set('.', TokDot);
  set(',', TokComma);
  set(';', TokSemicolon);
  set(':', TokColon);
  set(')', TokBad);
  set(']', TokBad);
  return types;
}();

// Whether the separator stands between a text and the next, `type` and `next` being their
// types and `third` that of the one after them.
bool Separated(int type, int next, int third, char separator) {
  if ((type & kWord) == 0) return false;
  if (separator != ' ') return (next & kWord) != 0;
  if (type == TokAtom && next == TokComment && third == TokDot) return false;
  return (next & kBehindBlank) != 0;
}

}  // namespace

int TypeOfText(std::string_view text) {
  constexpr std::string_view kNeverAlone = "\"([\\";
  if (text.empty()) return TokEnd;
  if (text == "\r\n") return TokCrlf;
  if (text.size() == 1 && kNeverAlone.find(text[0]) != kNeverAlone.npos) return TokBad;
  return kTypes[static_cast<unsigned char>(text[0])];
}

SString JoinTexts(const std::vector<std::string_view>& texts, char separator) {
  if (texts.empty()) return "";
  const auto typeAt = [&](std::size_t i) {
    return i < texts.size() ? TypeOfText(texts[i]) : TokEnd;
  };
  SString joined(texts[0]);
  int type = typeAt(0), next = typeAt(1);
  for (std::size_t i = 1; i < texts.size(); ++i) {
    const int third = typeAt(i + 1);
    if (Separated(type, next, third, separator)) joined += separator;
    joined += texts[i];
    type = next;
    next = third;
  }
  return joined;
}

void TokenWords::Push(const SToken& token) {
  if (_InInput(token.View())) {
    texts_.push_back(token.View());
  } else {
    kept_.push_back(token.Text());
    texts_.push_back(kept_.back().View());
  }
}

void TokenWords::Clear() {
  texts_.clear();
  kept_.clear();
}

SString TokenWords::TakeJoined(char separator) {
  SString joined = JoinTexts(texts_, separator);
  Clear();
  return joined;
}

bool TokenWords::_InInput(std::string_view text) const {
  const std::less<> before;  // a total order, also between unrelated pointers
  return !before(text.data(), input_.data()) &&
         !before(input_.data() + input_.size(), text.data() + text.size());
}

}  // namespace mailhearth
