// S822Address is a mail address as in a header (RFC 822): the address of the envelope, with a
// display name, called phrase, or a comment. S822Parser makes these addresses. An S822Address
// may also stand for the end of a list.
//
//   S822Parser parser("John Smith <john@example.org>, joe@example.org (Joe)");
//   for (S822Address a = parser.NextAddress(); !a.IsEnd() && !a.IsBad(); a = parser.NextAddress())
//     std::cout << a.Get() << '\n';       // John Smith <john@example.org>
//                                          // joe@example.org (Joe)
//
// Round trips: the text of an address that S822Parser made reads back equal in route, local
// part, domain, phrase and comment, with these exceptions.
//
//   - A bad address has no text, and the text of the end of a list reads as the end of a list.
//   - Within angle brackets the parser accepts a local part that begins with a literal, and a
//     domain that IsValidDomain refuses. Without phrase and route the text has no angle
//     brackets, and such an address reads back as a bad one.
//   - Words are joined without a dot or blank at an atom that begins with "%". A word after it
//     then follows one longer atom, from which the text read again separates it: a %"b" reads
//     back as a%."b". Two atoms after it may become one: the phrase of % a a <b> is "%a a", and
//     reads back as "%aa".
//
// The envelope form reads back equal as an S821Address unless one of its literals is not exactly
// an IPv4 address (the blank in [1. 1.1.1] is lost), IsValidDomain refuses its domain, or its
// local part has a quoted string that does not come first or contains a line end.
//
// Parts that the program sets are written as they are, a phrase without quotes, and may read
// back as another address: "J. <X>" is no phrase in a text, and a comment after a route is lost.
//
// Phrase, comment and literals may contain any byte, as may the local part of an S821Address.
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

  // Returns the address in header form. An address with a phrase gives the phrase, without
  // added quotes, and the envelope form. Any other gives the envelope form, with angle
  // brackets only if it has a route, and the comment. The null address gives "<>", whatever
  // phrase or comment it has; a bad one an undefined string; the end of a list "".
  [[nodiscard]] SString Address() const override;

  // The null address.
  S822Address();

  // The address of an envelope, without phrase and comment, and not the end of a list.
  S822Address(const S821Address& address);
  S822Address& operator=(const S821Address& address);

  S822Address(const S822Address&) = default;
  S822Address(S822Address&&) = default;
  S822Address& operator=(const S822Address&) = default;
  S822Address& operator=(S822Address&&) = default;

  // The display name: words separated by single blanks, with their quotes. The comment, with
  // its parentheses. A copy of each, or the part itself for editing.
  [[nodiscard]] SString Phrase() const { return phrase_; }
  [[nodiscard]] SString Comment() const { return comment_; }
  [[nodiscard]] SString& Phrase() { return phrase_; }
  [[nodiscard]] SString& Comment() { return comment_; }

  // Whether this object stands for the end of a list.
  [[nodiscard]] bool IsEnd() const { return end_ != 0; }

 private:
  friend class S822Parser;

  int end_ = 0;
  SString comment_ = _NoText();
  SString phrase_ = _NoText();
};

}  // namespace mailhearth

#endif  // MAILHEARTH_ADDRESS_S822ADDRESS_H
