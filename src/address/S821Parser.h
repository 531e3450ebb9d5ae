// S821Parser reads a mail address of the envelope of a message (RFC 821): a path such as
// <@relay.example,@hub.example:joe@example.org>, the null path <>, or a path without angle
// brackets.
//
//   S821Parser parser("<joe@example.org> SIZE=1000 BODY=8BITMIME", 0);
//   const S821Address address = parser.ExtractAddress();
//   const SStringList words = parser.Extensions();       // SIZE=1000, BODY=8BITMIME
//   if (address.IsBad()) Report(parser.Fault());
//
// A parser is strict or lenient. A strict parser requires the local part to be a quoted string
// or atoms separated by dots; hops may follow, each a "%" and again atoms separated by dots or
// a domain literal. A lenient parser accepts any number of atoms, dots, per-cent signs and
// literals, even none, in any order, and ignores blanks between them; a quoted string may only
// come first. In both, a backslash makes the next byte an ordinary one.
//
// Known and kept:
//   - Text before the first "<" is dropped. Without a "<" the address begins at the beginning
//     of the text, even for a second ExtractAddress.
//   - Only one ">" is read after a local part that it ends; after a domain, every ">" is.
//   - A tab is an ordinary byte, so a local part may contain one; a domain may not.
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

  // Specials are < > @ % . , ; and :. Only blanks separate tokens. Quoted strings are tokens,
  // as are domain literals that are IPv4 addresses (blanks in them are left out). Each
  // parenthesis, other bracket or control character is a TokBad.
  SToken NextToken() override;

  // A parser of `text`; with `lenient` 0, a strict one.
  explicit S821Parser(const SString& text, unsigned lenient = 0);

  // Reads the next address and stays after it. The address is bad when there is none. Its
  // local part has the form that _FixLocalPart gives.
  [[nodiscard]] S821Address ExtractAddress();

  // Tells why the last address read is bad, and where in the text; no flaw if it is not bad.
  [[nodiscard]] const SAddressFault& Fault() const { return fault_; }

  // Returns the words from here to the end of the text, separated by blanks: the parameters
  // after a path in an SMTP command. Returns an undefined list when one contains a control
  // character.
  [[nodiscard]] SStringList Extensions() const;

  // Goes back to the beginning, and returns whether the whole text is a domain; see Domains.h.
  [[nodiscard]] bool IsValidDomain();

  // Returns whether a text is a label, as between the dots of a domain: letters A to Z and a
  // to z, digits, "#", "~", "?" and, except as the first byte, "-" and "_".
  [[nodiscard]] bool IsValidElement(const SString& label) const { return _IsLabel(label.View()); }

  // The steps of parsers.

  // Reads an address without changing the form of its local part.
  [[nodiscard]] S821Address _ParseAddress();

  // Reads "@host,@host:". Returns the hosts; an undefined list when the text is no route.
  [[nodiscard]] SStringList _ExtractRoute();

  // Gives a local part its plainest form: quotes and backslashes are removed, and the result
  // is quoted again if it is empty or has a byte that needs quotes. A local part with more than
  // a quoted string is not changed.
  void _FixLocalPart(SString& local) const;

  // Joins texts of tokens, with `separator` between two adjacent atoms or quoted strings. A
  // blank also separates one of these from "<", or from a comment that no dot follows. The
  // string is undefined if the list is.
  [[nodiscard]] SString _JoinTokens(SStringList tokens, char separator) const;

  // Returns the type of a token, determined by its text.
  [[nodiscard]] int _TokenType(const SString& text) const;

 protected:
  // Returns what IsValidElement does.
  [[nodiscard]] static bool _IsLabel(std::string_view text);

  // Records why the address being read is bad: a flaw at a token or, if the token is an error
  // of the scanner, the flaw that the scanner recorded.
  void _Note(AddressFlaw flaw, const SToken& token);
  void _NoteNothing() { fault_ = {}; }

  // Makes the recorded fault agree with the address that was read.
  void _NoteOutcome(const S821Address& address);

  // Reads the labels and literals of a host and the dots between them, from `token` on, up to
  // a token in the mask `ends`, which is then in `token`; skips tokens in the mask
  // `passedOver`. Appends them to `host`, without a final dot.
  // Returns whether there were no other tokens; otherwise records `flaw`.
  [[nodiscard]] bool _ReadHost(SToken& token, int ends, int passedOver, AddressFlaw flaw,
                               SString& host);

  // Returns whether a domain is valid; if not, records that at `start`, where it begins.
  [[nodiscard]] bool _CheckDomain(const SString& domain, int start);

  // Skips every ">" from `token` on, and stays before the next token.
  void _SkipGreater(SToken& token);

 private:
  // Reads up to the first token of a path that is not "<".
  [[nodiscard]] SToken _FirstToken();

  // Reads a local part from `token` on. Returns whether it is valid, with the token after it
  // in `token`; if it is not, records the flaw.
  [[nodiscard]] bool _ReadLocalPart(SToken& token, SString& local);

  // Reads the domain after an at-sign.
  void _ReadDomain(S821Address& address);

  unsigned lenient_;
};

}  // namespace mailhearth

#endif  // MAILHEARTH_ADDRESS_S821PARSER_H
