// SParser is the base class of the scanners of mail addresses: it holds the text and the
// position in it, and can take back one token. S821Parser and S822Parser each define NextToken.
// The grammars read only through NextToken, so a derived class that overrides it changes the
// tokens they see.
//
// A parser can be used again: Init() gives it another text. It shares the bytes of the string
// given. Positions count bytes from 0.

#ifndef MAILHEARTH_ADDRESS_SPARSER_H
#define MAILHEARTH_ADDRESS_SPARSER_H

#include "../strings/Export.h"
#include "../strings/SString.h"
#include "SAddressFault.h"
#include "SToken.h"
#include "ScanState.h"

inline namespace mailhearth {

struct ScanRules;

class MAILHEARTH_EXPORT SParser {
 public:
  virtual ~SParser();

  // Goes back to the beginning of the text.
  virtual void Reset();

  // Returns the next token and moves past it. A TokEnd or TokError does not move the position:
  // the next call returns it again. Takes time linear in the text that it reads, and constant
  // stack.
  virtual SToken NextToken() = 0;

  // A parser of the empty text.
  SParser();
  explicit SParser(const SString& text);

  // Starts at the beginning of another text.
  void Init(const SString& text);

  // Moves back before the last token, so that NextToken returns it again; a second call has no
  // effect. Only tokens that moved the position count: after a TokEnd or a TokError, takes back
  // the token before it.
  void UndoNext() { position_ = previous_; }

 protected:
  // The states of a scanner.
  using State = ScanState::Value;
  using enum ScanState::Value;

  // NextToken by the rules of a table. `fault_` also records a TokError.
  SToken _Scan(const ScanRules& rules);

  SString input_;         // the text
  int position_ = 0;      // where the scan for the next token starts
  int previous_ = 0;      // where the last token that moved the position begins
  int state_ = kOutside;  // the state in which _Scan ended; it starts outside
  SAddressFault fault_;   // the fault of the address being read

 private:
  class Walk;
};

}  // namespace mailhearth

#endif  // MAILHEARTH_ADDRESS_SPARSER_H
