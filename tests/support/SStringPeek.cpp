#include "support/SStringPeek.h"

inline namespace mailhearth {

const char* Flaw(const SString& s) {
  const SStringRep& rep = SStringPeek::Rep(s);
  if (rep.links < 1) return "no link";
  if (rep.length < 0) return "negative length";
  if (s.Length() != rep.length || s.View().size() != static_cast<std::size_t>(rep.length)) {
    return "lengths differ";
  }
  if (s.Defined() != (rep.buffer != nullptr)) return "defined without a buffer, or undefined with";
  if (!s.Defined()) {
    if (rep.length != 0 || rep.allocated != 0) return "undefined, but not empty";
    return s.Data()[0] == '\0' ? "" : "undefined, but with text";
  }
  if (rep.allocated <= rep.length) return "no room for the NUL";
  return s.Data()[rep.length] == '\0' ? "" : "no NUL behind the last byte";
}

}  // namespace mailhearth
