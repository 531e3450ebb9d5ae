#include "SToken.h"

#include <utility>

inline namespace mailhearth {

SToken::~SToken() = default;

int SToken::Type() const { return type_; }

SToken& SToken::operator=(const SToken& other) {
  return *this = SToken(other.source_, other.start_, other.length_, other.Type());
}

// NOLINTNEXTLINE(performance-noexcept-move-constructor): Type() may be another's
SToken& SToken::operator=(SToken&& other) {
  type_ = other.Type();
  start_ = other.start_;
  length_ = other.length_;
  source_ = std::move(other.source_);
  return *this;
}

SString SToken::Text() const { return length_ == kAll ? source_ : SString(View()); }

std::string_view SToken::View() const {
  if (length_ == kAll) return source_.View();
  return {source_.Data() + start_, static_cast<std::size_t>(length_)};
}

}  // namespace mailhearth
