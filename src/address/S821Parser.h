// S821Parser reads a mail address as it stands in the envelope of a message (RFC 821): a path
// like <@relay.example,@hub.example:joe@example.org>, the null path <>, or the same without
// angle brackets.
//
//   S821Parser parser("<joe@example.org> SIZE=1000 BODY=8BITMIME", 0);
//   const S821Address address = parser.ExtractAddress();
//   const SStringList words = parser.Extensions();       // SIZE=1000, BODY=8BITMIME
//   if (address.IsBad()) Report(parser.Fault());
//
// A parser is strict or lenient. A strict one wants the local part to be a quoted string, or
// atoms with dots between them, and behind either perhaps hops: "%" and again atoms with dots
// or a domain literal. To a lenient one the local part is any atoms, dots, per-cent signs and
// literals, in any order and with blanks that count as nothing, also none of them; a quoted
// string may only be the first. To both, a backslash makes any byte behind it ordinary.
//
// Known and kept:
//   - What stands before the first "<" is dropped; without one the address begins at the
//     beginning of the text, also that of a second ExtractAddress.
//   - Behind a local part that ">" ends, only that one is taken; behind a domain all of them.
//   - A tab is an ordinary byte, so a domain has none and a local part may.
//
// Nothing recurses, and every call takes time linear in what it reads.

#ifndef MAILHEARTH_ADDRESS_S821PARSER_H
#define MAILHEARTH_ADDRESS_S821PARSER_H

#include <string_view>

#include "../lists/SStringList.h"
#include "../strings/Export.h"
#include "../strings/SString.h"
#include "S821Address.h"
#include "SAddressFault.h"
#include "SParser.h"
#include "SToken.h"

inline namespace mailhearth {

class MAILHEARTH_EXPORT S821Parser : public SParser {
 public:
  ~S821Parser() override;

  // Specials are < > @ % . , ; and :. Blanks alone separate. Quoted strings, domain literals
  // that are IPv4 addresses (blanks in them are left out); parentheses, other brackets and
  // control characters are a TokBad each.
  SToken NextToken() override;

  // A parser of `text`; with `lenient` 0, a strict one.
  explicit S821Parser(const SString& text, unsigned lenient = 0);

  // Reads the address that comes next and stays behind it. The address is bad when there is
  // none. Its local part is in the form that _FixLocalPart gives.
  [[nodiscard]] S821Address ExtractAddress();

  // Why the address that was read last is bad, and where in the text; no flaw if it is not.
  [[nodiscard]] const SAddressFault& Fault() const { return fault_; }

  // Returns the words between blanks from here to the end of the text: what follows a path in
  // an SMTP command. An undefined list when there is a control character among them.
  [[nodiscard]] SStringList Extensions() const;

  // Whether the whole text is a domain; see Domains.h. Goes back to the beginning first.
  [[nodiscard]] bool IsValidDomain();

  // Whether a text may stand between the dots of a domain: letters A to Z and a to z, digits,
  // "#", "~", "?" and, but not first, "-" and "_".
  [[nodiscard]] bool IsValidElement(const SString& label) const { return _IsLabel(label.View()); }

  // The steps that parsers are made of.

  // Reads an address and leaves its local part as it stands.
  [[nodiscard]] S821Address _ParseAddress();

  // Reads "@host,@host:". Returns the hosts, an undefined list when they are not that.
  [[nodiscard]] SStringList _ExtractRoute();

  // Gives a local part its plainest form: one in quotes or with backslashes loses both, and is
  // quoted again if it has a byte that needs it, or none at all. One that has more than a
  // quoted string is left alone.
  void _FixLocalPart(SString& local) const;

  // Joins texts of tokens, with `separator` where two atoms or quoted strings meet; a blank
  // also stands between one of these and "<" or a comment that no dot follows. The string is
  // undefined if the list is.
  [[nodiscard]] SString _JoinTokens(SStringList tokens, char separator) const;

  // Returns the type of a token, going by its text.
  [[nodiscard]] int _TokenType(const SString& text) const;

 protected:
  // What IsValidElement answers.
  [[nodiscard]] static bool _IsLabel(std::string_view text);

  // Notes why the address that is being read is bad: a flaw that shows at a token, or, where
  // that is an error of the scanner, what the scanner has told.
  void _Note(AddressFlaw flaw, const SToken& token);
  void _NoteNothing() { fault_ = {}; }

  // Brings what has been noted into line with the address that was read.
  void _NoteOutcome(const S821Address& address);

  // Reads the labels and literals of a host and the dots between them, from `token` on, up to
  // a token that is in the mask `ends`, which is then in `token`; those in the mask
  // `passedOver` count as nothing. Appends them to `host`, without a dot at the end.
  // Returns whether there was nothing else among them; else that is noted as `flaw`.
  [[nodiscard]] bool _ReadHost(SToken& token, int ends, int passedOver, AddressFlaw flaw,
                               SString& host);

  // Returns whether a domain is one; else that is noted at `start`, where it begins.
  [[nodiscard]] bool _CheckDomain(const SString& domain, int start);

  // Passes over each ">" from `token` on, and stays before what comes then.
  void _SkipGreater(SToken& token);

 private:
  // Reads up to the first token of a path that is not "<".
  [[nodiscard]] SToken _FirstToken();

  // Reads a local part from `token` on. Returns whether it is one, with the token behind it
  // in `token`; else the flaw is noted.
  [[nodiscard]] bool _ReadLocalPart(SToken& token, SString& local);

  // Reads what follows an at-sign.
  void _ReadDomain(S821Address& address);

  unsigned lenient_;
};

}  // namespace mailhearth

#endif  // MAILHEARTH_ADDRESS_S821PARSER_H
