#include "SToken.h"

inline namespace mailhearth {

SString SToken::Text() const { return length_ == kAll ? source_ : SString(View()); }

}  // namespace mailhearth
