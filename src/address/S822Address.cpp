#include "S822Address.h"

#include <string_view>

inline namespace mailhearth {

S822Address::~S822Address() = default;

SString S822Address::Address() const {
  if (end_ != 0) return "";
  SString envelope = S821Address::Address();
  if (envelope.Length() == 0 || envelope == "<>") return envelope;
  if (phrase_.Length() > 0) return phrase_ + ' ' + envelope;
  const std::string_view inner = envelope.View().substr(1, envelope.View().size() - 2);
  SString text = Route().Count() > 0 ? envelope : SString(inner);
  if (comment_.Length() > 0) (text += ' ') += comment_;
  return text;
}

S822Address::S822Address() = default;

S822Address::S822Address(const S821Address& address) : S821Address(address) {}

S822Address& S822Address::operator=(const S821Address& address) {
  return *this = S822Address(address);
}

}  // namespace mailhearth
