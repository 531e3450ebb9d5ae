#include "SSubString.h"

#include <algorithm>

inline namespace mailhearth {

SSubString::SSubString(SString& s, int start, int count) : string_(s) {
  const SString::Range range = s._Clip(start, count);
  start_ = range.start;
  count_ = range.count;
}

SSubString::operator SString() const { return string_.Defined() ? SString(View()) : SString(); }

std::string_view SSubString::View() const {
  const SString::Range range = string_._Clip(start_, count_);
  return string_.View().substr(static_cast<std::size_t>(range.start),
                               static_cast<std::size_t>(range.count));
}

SSubString& SSubString::operator=(const SString& t) {
  if (string_.Defined()) {
    string_._Replace(string_._Clip(start_, count_), t.View());
  } else {
    string_ = t;
  }
  return *this;
}

SSubString& SSubString::operator=(const SSubString& o) { return *this = SString(o); }

}  // namespace mailhearth
