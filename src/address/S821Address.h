// S821Address is a mail address as in the envelope of a message (RFC 821): a source route, a
// local part and a domain. It is a value, made by a parser or from a text.
//
//   const S821Address joe("Joe <joe@example.org>");
//   if (joe.IsValid()) std::cout << joe.Get() << ' ' << joe.Domain() << '\n';
//                                               // <joe@example.org> example.org
//
// An address is bad, null or valid. A bad address could not be read; it keeps the parts that
// were read. Known and kept: it keeps none if S821Parser met a label or token in the domain
// that does not belong there. The null address "<>" is the sender of messages that nobody
// answers; the default constructor makes it. A valid address has a local part, and a domain
// unless it is local to the host, as "postmaster" is.
//
// Round trips: the text of an address that a parser made reads back equal in route, local
// part and domain, with these exceptions.
//
//   - A bad address has no text. An undefined text reads as the null address, and is bad to a
//     strict parser.
//   - A local part that begins with a quoted string and ends, at the end of the text parsed,
//     in a single backslash, like "a b"\ with those quotes, does not read back: in the text of
//     the address a ">" follows the backslash, which escapes it.
//   - A strict parser refuses a local part with dots that were escaped or quoted, as in \.a,
//     a\. and "a..b": the plainest form loses the backslash or the quotes. A lenient parser,
//     as in this class, reads it back equal.
//
// Parts that the program sets are written as they are, so they may read back as another
// address: a local part with a blank or a ">" needs quotes.
//
// The local part of a valid address may contain any byte, in quotes or after a backslash, even
// line feed, carriage return and NUL. Check an address with IsFieldValue (queue/FieldValue.h)
// before you store it in a record, and check it for these bytes before you put it into a command
// or a header.

#ifndef MAILHEARTH_ADDRESS_S821ADDRESS_H
#define MAILHEARTH_ADDRESS_S821ADDRESS_H

#include "../lists/SStringList.h"
#include "../strings/Export.h"
#include "../strings/SString.h"

inline namespace mailhearth {

class MAILHEARTH_EXPORT S821Address {
 public:
  // Returns the address as text, as Address() does.
  [[nodiscard]] virtual SString Get() const;

  // Reads another address from a text, as the constructor does. When memory runs out, nothing
  // changes.
  virtual void Set(const SString& text);

  virtual ~S821Address();

  // Returns the address in envelope form: "<@host,@host:local@domain>"; "<>" for the null
  // address; an undefined string for a bad one.
  [[nodiscard]] virtual SString Address() const;

  // The null address.
  S821Address();

  // Reads an address as a lenient S821Parser does, and drops the text around it.
  S821Address(const SString& text);

  S821Address(const S821Address&) = default;
  S821Address(S821Address&&) = default;
  S821Address& operator=(const S821Address&) = default;
  S821Address& operator=(S821Address&&) = default;

  // Returns the address that the constructor reads.
  [[nodiscard]] static S821Address _Parse(const SString& text);

  // The parts: a copy of each, or the part itself for editing. Hosts of the route have no
  // at-signs, the domain has no final dot, and the local part is quoted only if necessary.
  [[nodiscard]] SStringList Route() const { return route_; }
  [[nodiscard]] SString Domain() const { return domain_; }
  [[nodiscard]] SString LocalPart() const { return localPart_; }
  [[nodiscard]] SStringList& Route() { return route_; }
  [[nodiscard]] SString& Domain() { return domain_; }
  [[nodiscard]] SString& LocalPart() { return localPart_; }

  // Exactly one of these holds. An address is also bad if it has a domain or a route without a
  // local part, or a route and a local part without a domain.
  [[nodiscard]] bool IsBad() const;
  [[nodiscard]] bool IsNull() const { return !IsBad() && localPart_.Length() == 0; }
  [[nodiscard]] bool IsValid() const { return !IsBad() && localPart_.Length() > 0; }

 protected:
  // Returns the undefined string that all parts without text share: it takes no memory.
  [[nodiscard]] static const SString& _NoText();

 private:
  friend class S821Parser;  // the parsers mark addresses as bad
  friend class S822Parser;

  int bad_ = 0;  // whether reading it failed
  SStringList route_;
  SString localPart_ = _NoText();
  SString domain_ = _NoText();
};

}  // namespace mailhearth

#endif  // MAILHEARTH_ADDRESS_S821ADDRESS_H
