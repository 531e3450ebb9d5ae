#include "SToken.h"

inline namespace mailhearth {

int SToken::Type() const { return type_; }

SString SToken::Text() const { return length_ == kAll ? source_ : SString(View()); }

}  // namespace mailhearth
