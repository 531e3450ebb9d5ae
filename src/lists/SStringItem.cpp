#include "SStringItem.h"

#include <cstddef>
#include <ostream>

#include "../strings/StandardError.h"

inline namespace mailhearth {

static_assert(offsetof(SStringItem, value) == 0);

void SStringItem::Debug(int level) const {
  if (level == 0) {
    value.Debug(0);
    return;
  }
  std::ostream& out = StandardError();
  out << "Prev: " << static_cast<const void*>(prev) << " This: " << static_cast<const void*>(this)
      << " Next: " << static_cast<const void*>(next);
  if (level == 1) {
    out << " '";
    value.Debug(0);
    out << "'\n";
  } else {
    out << "\n";
    value.Debug(level);
  }
}

}  // namespace mailhearth
