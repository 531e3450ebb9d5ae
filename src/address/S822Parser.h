// S822Parser reads the value of an address header (RFC 822): a list of addresses with display
// names, angle brackets, comments, source routes and groups, possibly folded into lines.
//
//   S822Parser parser("friends: John Smith <john@example.org>, joe@example.org (Joe);");
//   for (S822Address a = parser.NextListed(); !a.IsEnd(); a = parser.NextListed()) {
//     if (a.IsBad()) Report(Describe(parser.Fault().flaw), parser.Fault().position);
//     else Consume(a);
//   }
//
// The list ends with the text, or at a line end that no blank follows, even one within a bad
// address. The parser never reads the text after the list.
//
// Known and kept:
//   - The words of a local part are joined with dots: "john smith@example.org" has the local
//     part john.smith.
//   - Only the last comment is kept, and only if no word follows it. A comment within angle
//     brackets is skipped.
//   - A domain within angle brackets need only consist of labels, so <joe@10.0.0.1> is accepted
//     and joe@10.0.0.1 is bad.
//   - Only one ">" is read after a local part that it ends; after a domain, every ">" is.
//   - If a line is folded right after an atom with a single blank, its line feed is an error.
//
// The parser does not recurse, however deep the nesting, and every call takes time linear in
// the text that it reads.

#ifndef MAILHEARTH_ADDRESS_S822PARSER_H
#define MAILHEARTH_ADDRESS_S822PARSER_H

#include "../lists/SStringList.h"
#include "../strings/Export.h"
#include "../strings/SString.h"
#include "S821Parser.h"
#include "S822Address.h"
#include "SToken.h"

inline namespace mailhearth {

class MAILHEARTH_EXPORT S822Parser : public S821Parser {
 public:
  ~S822Parser() override;

  // Goes back to the beginning of the list, outside any group.
  void Reset() override;

  // Specials are < > @ . , ; and :. Blanks and tabs separate tokens. Quoted strings, domain
  // literals and comments, which nest, are tokens. A backslash outside of these, a closing
  // bracket or a control character is a TokError; the parser moves past the control character
  // only. A line end before a blank counts as a blank; any other is a TokCrlf unless it ends
  // the text.
  SToken NextToken() override;

  // A parser of `text`.
  explicit S822Parser(const SString& text);

  // Reads another list.
  void Set(const SString& text) { Init(text); }

  // Reads the next address. After a bad address the parser stays where it found the error; if
  // the error is the line end that ends the list, before that. At the end of the list, this
  // and every further call returns an address with IsEnd().
  [[nodiscard]] S822Address NextAddress();

  // The same, but after a bad address it continues after the next comma that is not within
  // quotes, a comment, a literal or angle brackets, or else at the end of the list. Quotes, a
  // comment or a literal that are not closed extend to the end; the next comma closes an open
  // angle bracket. Every call advances, so a loop ends, and all calls together take time
  // linear in the text.
  [[nodiscard]] S822Address NextListed();

  // Returns all addresses from the beginning of the list to its end, or to the first bad one,
  // in envelope form. Returns an undefined list when the first address is bad, and a defined
  // empty one when there are none.
  [[nodiscard]] SStringList Addresses();
  [[nodiscard]] SStringList Get() { return Addresses(); }

  // A step of parsers: reads an address without changing the form of its local part.
  [[nodiscard]] S822Address _ParseNextAddress();

 private:
  struct Reading;  // the state of reading an address

  // Skips separators and comments between addresses.
  void _SkipSeparators(Reading& reading);

  // The productions of the grammar: each begins with the last token read, and returns whether
  // the address is complete. If it is not, it is bad, and its flaw is recorded.
  [[nodiscard]] bool _ReadAddress(Reading& reading);
  [[nodiscard]] bool _ReadBehindWords(Reading& reading, bool literal);
  [[nodiscard]] bool _ReadBareDomain(Reading& reading);
  [[nodiscard]] bool _ReadAngle(Reading& reading);
  [[nodiscard]] bool _ReadAngleDomain(Reading& reading);

  // Reads words. Returns whether there is a literal among them.
  bool _ReadWords(Reading& reading);

  // Returns whether a token ends an address without angle brackets, and perhaps its group as
  // well; if it does not, records `flaw`.
  [[nodiscard]] bool _EndsBareAddress(const SToken& token, AddressFlaw flaw);

  // Skips the rest of a bad address.
  void _SkipBadAddress();

  int inGroup_ = 0;  // whether the colon of a group has been read, but not its semicolon
  int start_ = 0;    // where the last address read begins
};

}  // namespace mailhearth

#endif  // MAILHEARTH_ADDRESS_S822PARSER_H
