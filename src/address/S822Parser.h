// S822Parser reads the value of an address header (RFC 822): a list of addresses with display
// names, angle brackets, comments, source routes and groups, folded into lines as may be.
//
//   S822Parser parser("friends: John Smith <john@example.org>, joe@example.org (Joe);");
//   for (S822Address a = parser.NextListed(); !a.IsEnd(); a = parser.NextListed()) {
//     if (a.IsBad()) Report(Describe(parser.Fault().flaw), parser.Fault().position);
//     else Consume(a);
//   }
//
// The list ends with its text, or with a line end that no blank follows, also where that stands
// in a bad address; the text after it is never looked at.
//
// Known and kept:
//   - The words of a local part are joined with dots: "john smith@example.org" has the local
//     part john.smith.
//   - Of comments, only the last is kept, and only if no word follows it. One within angle
//     brackets is passed over.
//   - A domain within angle brackets need only consist of labels, so <joe@10.0.0.1> is taken
//     and joe@10.0.0.1 is bad.
//   - Behind a local part that ">" ends, only that one is taken; behind a domain all of them.
//   - Where a line is folded with a single blank right behind an atom, the line feed is taken
//     for an error.
//
// Nothing recurses, whatever is nested in what, and every call takes time linear in what it
// reads.

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

  // Goes back to the beginning of the list, outside of any group.
  void Reset() override;

  // Specials are < > @ . , ; and :. Blanks and tabs separate. Quoted strings, domain literals,
  // comments, which nest; a backslash outside of these, or a closing bracket, is a TokError,
  // and so is a control character, which is the only one that is moved past. A line end that
  // blanks follow is a blank, one that none follow a TokCrlf unless it ends the text.
  SToken NextToken() override;

  // A parser of `text`.
  explicit S822Parser(const SString& text);

  // Reads another list.
  void Set(const SString& text) { Init(text); }

  // Reads the address that comes next. One that is bad leaves the parser where the error was
  // found, before it if that is the line end that ends the list. At the end of the list the answer
  // IsEnd(), now and at every further call.
  [[nodiscard]] S822Address NextAddress();

  // The same, but behind a bad address it goes on: behind the next comma that is neither in
  // quotes, a comment, a literal or angle brackets, or at the end of the list. What is opened
  // there and not closed reaches to the end, but for an angle bracket, which counts as closed
  // by the next comma. Every call moves on, so a loop ends, and all calls together take time
  // linear in the text.
  [[nodiscard]] S822Address NextListed();

  // Returns all addresses from the beginning of the list to its end, or to the first bad one,
  // in the form of the envelope. An undefined list when the first is bad; a defined and empty
  // one when there are none.
  [[nodiscard]] SStringList Addresses();
  [[nodiscard]] SStringList Get() { return Addresses(); }

  // A step of parsers: reads an address and leaves its local part as it stands.
  [[nodiscard]] S822Address _ParseNextAddress();

 private:
  struct Reading;  // an address on its way

  // Passes over what stands between addresses.
  void _SkipSeparators(Reading& reading);

  // The productions of the grammar: each begins with the token read last, and returns whether
  // the address is complete. Else it is bad, and the flaw is noted.
  [[nodiscard]] bool _ReadAddress(Reading& reading);
  [[nodiscard]] bool _ReadBehindWords(Reading& reading, bool literal);
  [[nodiscard]] bool _ReadBareDomain(Reading& reading);
  [[nodiscard]] bool _ReadAngle(Reading& reading);
  [[nodiscard]] bool _ReadAngleDomain(Reading& reading);

  // Reads words. Returns whether there is a literal among them.
  bool _ReadWords(Reading& reading);

  // Returns whether a token ends an address without angle brackets, and perhaps the group
  // with it; else that is noted as `flaw`.
  [[nodiscard]] bool _EndsBareAddress(const SToken& token, AddressFlaw flaw);

  // Passes over what is left of a bad address.
  void _SkipBadAddress();

  int inGroup_ = 0;  // whether a group's colon has been read, and not yet its semicolon
  int start_ = 0;    // where the address read last begins
};

}  // namespace mailhearth

#endif  // MAILHEARTH_ADDRESS_S822PARSER_H
