// S821Address is a mail address as the envelope of a message knows it (RFC 821): a source
// route, a local part, a domain. It is a value, made by a parser or from a text.
//
//   const S821Address joe("Joe <joe@example.org>");
//   if (joe.IsValid()) std::cout << joe.Get() << ' ' << joe.Domain() << '\n';
//                                               // <joe@example.org> example.org
//
// An address is bad, null or valid. A bad one could not be read; whatever was read of it is
// still there. The null address "<>" is the sender of messages that nobody answers; one made
// by default is null. A valid one has a local part, and a domain unless it is meant to be
// found nearby, as "postmaster" is.
//
// The text of an address reads back equal in route, local part and domain, but for a local
// part that a parser made of more than a quoted string and a lone backslash at the end of its
// text, like "a b"\ with those quotes: behind the backslash the text of the address goes on. A
// strict parser refuses, besides, a local part that has lost what made its dots ordinary: mostly
// a backslash, as in \.a and a\., or the quotes, as in "a..b".
//
// The local part of a valid address may have any byte in it, in quotes or after a backslash, also
// a line feed, a carriage return and NUL. Ask IsFieldValue (queue/Checks.h) of an address before
// it is stored in a record, and look for these bytes before it goes into a command or a header.

#ifndef MAILHEARTH_ADDRESS_S821ADDRESS_H
#define MAILHEARTH_ADDRESS_S821ADDRESS_H

#include "../lists/SStringList.h"
#include "../strings/Export.h"
#include "../strings/SString.h"

inline namespace mailhearth {

class MAILHEARTH_EXPORT S821Address {
 public:
  // The address as text: that of Address().
  [[nodiscard]] virtual SString Get() const;

  // Reads another address from a text, as the constructor does. When memory runs out, nothing
  // has changed.
  virtual void Set(const SString& text);

  virtual ~S821Address();

  // The address as it stands in an envelope: "<@host,@host:local@domain>", "<>" for the null
  // address; an undefined string for a bad one.
  [[nodiscard]] virtual SString Address() const;

  // The null address.
  S821Address();

  // Reads an address as a lenient S821Parser does; what surrounds it is dropped.
  S821Address(const SString& text);

  S821Address(const S821Address&) = default;
  S821Address(S821Address&&) = default;
  S821Address& operator=(const S821Address&) = default;
  S821Address& operator=(S821Address&&) = default;

  // What the constructor reads.
  [[nodiscard]] static S821Address _Parse(const SString& text);

  // The parts: a copy of each, or the part itself for editing. The hosts of the route have no
  // at-signs, the domain no dot at its end, and the local part is quoted only if need be.
  [[nodiscard]] SStringList Route() const { return route_; }
  [[nodiscard]] SString Domain() const { return domain_; }
  [[nodiscard]] SString LocalPart() const { return localPart_; }
  [[nodiscard]] SStringList& Route() { return route_; }
  [[nodiscard]] SString& Domain() { return domain_; }
  [[nodiscard]] SString& LocalPart() { return localPart_; }

  // Exactly one of these holds. Bad is also what has a domain or a route without a local part,
  // or a route and a local part without a domain.
  [[nodiscard]] bool IsBad() const;
  [[nodiscard]] bool IsNull() const { return !IsBad() && localPart_.Length() == 0; }
  [[nodiscard]] bool IsValid() const { return !IsBad() && localPart_.Length() > 0; }

 protected:
  // An undefined string that all parts share which have no text: it costs nothing to make.
  [[nodiscard]] static const SString& _NoText();

 private:
  friend class S821Parser;  // they mark addresses as bad
  friend class S822Parser;

  int bad_ = 0;  // whether reading it failed
  SStringList route_;
  SString localPart_ = _NoText();
  SString domain_ = _NoText();
};

}  // namespace mailhearth

#endif  // MAILHEARTH_ADDRESS_S821ADDRESS_H
