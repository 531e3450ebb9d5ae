// Slow and obvious readers of mail addresses, to judge the library's by: two scanners, the
// grammars of an envelope path and of a header's list, the text forms and the repair, each
// written down step by step on plain strings, a token kept as its text and its type.
//
// They share with the library the names of the token types and, in the repair alone, the
// patterns' engine. Strings grow byte by byte and lists are copied, so they are for texts of
// some hundred bytes.
//
//   SlowAddressParser slow("Joe <joe@example.org>", SlowForm::kLenientPath);
//   slow.ExtractAddress().domain;        // "example.org"

#ifndef MAILHEARTH_TESTS_SUPPORT_SLOWADDRESS_H
#define MAILHEARTH_TESTS_SUPPORT_SLOWADDRESS_H

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

inline namespace mailhearth {

struct SlowToken {
  int type;
  std::string text;

  bool operator==(const SlowToken&) const = default;
};

struct SlowAddress {
  bool bad = false, end = false;
  std::vector<std::string> route;
  std::string local, domain;
  std::string phrase, comment;  // of an address in a header

  [[nodiscard]] bool IsBad() const;
  [[nodiscard]] bool IsNull() const { return !IsBad() && local.empty(); }
  [[nodiscard]] bool IsValid() const { return !IsBad() && !local.empty(); }

  // The text forms, of an envelope's path and in a header; both empty where the address is bad.
  [[nodiscard]] std::string Envelope() const;
  [[nodiscard]] std::string Header() const;
};

enum class SlowForm { kStrictPath, kLenientPath, kList };

class SlowAddressParser {
 public:
  using List = std::vector<std::string>;

  SlowAddressParser(std::string_view text, SlowForm form) : input_(text), form_(form) {}

  void Reset();
  SlowToken NextToken();
  void UndoNext() { position_ = previous_; }
  [[nodiscard]] int Position() const { return static_cast<int>(position_); }

  // The address at the position; nothing for a list that is not defined.
  SlowAddress ExtractAddress();
  SlowAddress NextAddress();
  [[nodiscard]] std::optional<List> ExtractRoute();
  [[nodiscard]] std::optional<List> Extensions() const;
  [[nodiscard]] std::optional<List> Addresses();

  // Whether the whole text is a domain.
  [[nodiscard]] bool IsValidDomain();

 private:
  [[nodiscard]] unsigned char _Byte(std::size_t at) const;
  [[nodiscard]] bool _IsSpecial(unsigned char c) const;
  SlowToken _Took(std::size_t began, std::size_t end, int type, const std::string& text);
  SlowToken _NextPathToken();
  SlowToken _NextListToken();
  SlowToken _NextSkipping(int types);
  void _UndoUnlessLast(const SlowToken& token);

  SlowAddress _ParsePath();
  bool _ParseLocalPart(SlowAddress& address, SlowToken& token);
  bool _ParseHost(std::string& host, SlowToken& token, int ends, int skipped);

  SlowAddress _ParseNext();
  bool _ParseWords(SlowAddress& address, SlowToken token);
  bool _EndsBareAddress(const SlowToken& token);
  void _ParseBareDomain(SlowAddress& address);
  void _ParseAngle(SlowAddress& address, SlowToken token);

  std::string input_;
  SlowForm form_;
  std::size_t position_ = 0, previous_ = 0;
  bool inGroup_ = false;
  int lastType_ = 0;  // of the token read last
};

[[nodiscard]] bool SlowIsValidLiteral(const std::string& text);
[[nodiscard]] bool SlowIsValidElement(const std::string& label);
[[nodiscard]] bool SlowIsValidDomain(const std::string& text);
[[nodiscard]] int SlowTokenType(const std::string& text);
[[nodiscard]] std::string SlowJoinTokens(const std::vector<std::string>& tokens, char separator);
[[nodiscard]] std::string SlowFixLocalPart(std::string local);
[[nodiscard]] std::string SlowFixBogusAddress(const std::string& text);

}  // namespace mailhearth

#endif  // MAILHEARTH_TESTS_SUPPORT_SLOWADDRESS_H
