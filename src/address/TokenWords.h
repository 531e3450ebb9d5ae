// Not installed. The words of a local part or a display name: texts of tokens, and how they are
// joined.

#ifndef MAILHEARTH_ADDRESS_TOKENWORDS_H
#define MAILHEARTH_ADDRESS_TOKENWORDS_H

#include <string_view>
#include <vector>

#include "../strings/SString.h"
#include "SToken.h"

inline namespace mailhearth {

// Returns the type of a token, going by its text; see S821Parser::_TokenType.
[[nodiscard]] int TypeOfText(std::string_view text);

// Joins texts of tokens; see S821Parser::_JoinTokens.
[[nodiscard]] SString JoinTexts(const std::vector<std::string_view>& texts, char separator);

// Gathers the texts of tokens, of which most are parts of one input and are not copied.
class TokenWords {
 public:
  // The input must outlive this and must not be edited.
  explicit TokenWords(const SString& input) : input_(input.View()) { texts_.reserve(kAtOnce); }

  void Push(const SToken& token);

  void Clear();

  // Joins the words and forgets them.
  [[nodiscard]] SString TakeJoined(char separator);

 private:
  static constexpr std::size_t kAtOnce = 8;

  // Whether bytes are those of the input.
  [[nodiscard]] bool _InInput(std::string_view text) const;

  std::string_view input_;
  std::vector<std::string_view> texts_;
  std::vector<SString> kept_;  // those that are not in the input
};

}  // namespace mailhearth

#endif  // MAILHEARTH_ADDRESS_TOKENWORDS_H
