#include "S821Address.h"

#include "S821Parser.h"

inline namespace mailhearth {

SString S821Address::Get() const { return Address(); }

void S821Address::Set(const SString& text) { S821Address::operator=(_Parse(text)); }

S821Address::~S821Address() = default;

SString S821Address::Address() const {
  if (IsBad()) return {};
  SString text("<");
  const char* before = "@";
  for (const SString& host : route_) {
    text += before;
    text += host;
    before = ",@";
  }
  if (route_.Count() > 0) text += ':';
  text += localPart_;
  if (domain_.Length() > 0) (text += '@') += domain_;
  return text += '>';
}

S821Address::S821Address() = default;

S821Address::S821Address(const SString& text) : S821Address(_Parse(text)) {}

S821Address S821Address::_Parse(const SString& text) {
  return S821Parser(text, 1).ExtractAddress();
}

const SString& S821Address::_NoText() {
  static const SString& none = *new SString;  // never destroyed: addresses may be at any time
  return none;
}

bool S821Address::IsBad() const {
  const bool routed = route_.Count() > 0;
  const bool hosted = domain_.Length() > 0;
  if (bad_ != 0) return true;
  return localPart_.Length() > 0 ? routed && !hosted : routed || hosted;
}

}  // namespace mailhearth
