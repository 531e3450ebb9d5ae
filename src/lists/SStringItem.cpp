#include "SStringItem.h"

#include <cstddef>
#include <ostream>
#include <string>

#include "../strings/PointerText.h"
#include "../strings/StandardError.h"

inline namespace mailhearth {

static_assert(offsetof(SStringItem, value) == 0);

void SStringItem::Debug(int level) const {
  if (level == 0) {
    value.Debug(0);
    return;
  }
  std::ostream& out = StandardError();
  const std::string places =
      "Prev: " + PointerText(prev) + " This: " + PointerText(this) + " Next: " + PointerText(next);
  out.write(places.data(), static_cast<std::streamsize>(places.size()));
  if (level == 1) {
    out.write(" '", 2);
    value.Debug(0);
    out.write("'\n", 2);
  } else {
    out.put('\n');
    value.Debug(level);
  }
}

}  // namespace mailhearth
