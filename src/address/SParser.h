// SParser is what the scanners of mail addresses have in common: the text, the position in
// it, one token that can be taken back. S821Parser and S822Parser each supply a NextToken;
// the grammars call that one and nothing else to read, so a class derived from them that
// overrides it changes what they see.
//
// A parser can be used again: Init() puts another text in. It shares the text with the string
// given. Positions count bytes from 0.

#ifndef MAILHEARTH_ADDRESS_SPARSER_H
#define MAILHEARTH_ADDRESS_SPARSER_H

#include "../strings/Export.h"
#include "../strings/SString.h"
#include "SAddressFault.h"
#include "ScanState.h"
#include "SToken.h"

inline namespace mailhearth {

struct ScanRules;

class MAILHEARTH_EXPORT SParser {
 public:
  virtual ~SParser();

  // Goes back to the beginning of the text.
  virtual void Reset();

  // Returns the next token and moves behind it. Neither a TokEnd nor a TokError moves: the
  // next call gives the same again. Takes time linear in what it reads, and constant stack.
  virtual SToken NextToken() = 0;

  // Nothing to scan.
  SParser();
  explicit SParser(const SString& text);

  // Goes back to the beginning, of another text.
  void Init(const SString& text);

  // Moves back before the last token, which then comes once more; a second call does nothing
  // more. Only after tokens that moved: after a TokEnd or a TokError it takes back the token
  // before that.
  void UndoNext() { position_ = previous_; }

 protected:
  // What a scanner is within.
  using State = ScanState::Value;
  using enum ScanState::Value;

  // NextToken by the rules of a table. A TokError is told in `fault_` as well.
  SToken _Scan(const ScanRules& rules);

  SString input_;         // the text
  int position_ = 0;      // where the next token is looked for
  int previous_ = 0;      // where the last token that moved began
  int state_ = kOutside;  // what the last call of _Scan ended in; it begins outside
  SAddressFault fault_;   // what is wrong with the address that is being read

 private:
  class Walk;
};

}  // namespace mailhearth

#endif  // MAILHEARTH_ADDRESS_SPARSER_H
