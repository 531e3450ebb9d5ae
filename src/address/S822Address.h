// S822Address is a mail address as a header knows it (RFC 822): that of the envelope, and a
// display name, called phrase, or a comment. S822Parser makes them. One of them may stand for
// the end of a list instead.
//
//   S822Parser parser("John Smith <john@example.org>, joe@example.org (Joe)");
//   for (S822Address a = parser.NextAddress(); !a.IsEnd() && !a.IsBad(); a = parser.NextAddress())
//     std::cout << a.Get() << '\n';       // John Smith <john@example.org>
//                                          // joe@example.org (Joe)
//
// The text of an address reads back equal in route, local part and domain where the parser
// was not more generous than its text can be:
//
//   - Angle brackets let a local part begin with a literal, and a domain be what IsValidDomain
//     refuses. The text has no brackets without a phrase or a route, and is bad then.
//   - Words are joined without a dot at an atom that begins with "%", so that a quoted string
//     behind it is behind one long atom in the text, and gets a dot: a %"b" reads back as
//     a%."b".
//
// The form of the envelope reads back equal as an S821Address unless one of its literals is not
// an IPv4 address byte by byte (of [1. 1.1.1] the blank is lost), its domain is none, or a quoted
// string stands elsewhere in its local part than first or has a line end in it.
//
// Phrase, comment and literals may have any byte in them, as the local part of an S821Address.
//
// Known and kept: Set() reads an address of an envelope and leaves phrase, comment and end
// mark as they were.

#ifndef MAILHEARTH_ADDRESS_S822ADDRESS_H
#define MAILHEARTH_ADDRESS_S822ADDRESS_H

#include "../strings/Export.h"
#include "../strings/SString.h"
#include "S821Address.h"

inline namespace mailhearth {

class MAILHEARTH_EXPORT S822Address : public S821Address {
 public:
  ~S822Address() override;

  // The address as it stands in a header. With a phrase, that and the form of the envelope;
  // else the form of the envelope without its angle brackets, which only an address with a
  // route keeps, and the comment. The phrase is written as it is, without quotes. "<>" for the
  // null address, whatever else it has; an undefined string for a bad one; "" for the end of a
  // list.
  [[nodiscard]] SString Address() const override;

  // The null address.
  S822Address();

  // The address of an envelope, with neither phrase nor comment; it does not stand for the end
  // of a list.
  S822Address(const S821Address& address);
  S822Address& operator=(const S821Address& address);

  S822Address(const S822Address&) = default;
  S822Address(S822Address&&) = default;
  S822Address& operator=(const S822Address&) = default;
  S822Address& operator=(S822Address&&) = default;

  // The display name, words with single blanks between them, quotes kept; the comment, with
  // its parentheses. A copy of each, or the part itself for editing.
  [[nodiscard]] SString Phrase() const { return phrase_; }
  [[nodiscard]] SString Comment() const { return comment_; }
  [[nodiscard]] SString& Phrase() { return phrase_; }
  [[nodiscard]] SString& Comment() { return comment_; }

  // Whether this stands for the end of a list.
  [[nodiscard]] bool IsEnd() const { return end_ != 0; }

 private:
  friend class S822Parser;

  int end_ = 0;
  SString comment_ = _NoText();
  SString phrase_ = _NoText();
};

}  // namespace mailhearth

#endif  // MAILHEARTH_ADDRESS_S822ADDRESS_H
