#include "SFixedString.h"

#include <unistd.h>

inline namespace mailhearth {

static_assert(sizeof(SFixedString) == sizeof(SStringRep));

namespace {

constexpr int kStillShared = 110;  // exit status

}  // namespace

SFixedString::~SFixedString() {
  if (links != kAtRest) ::_exit(kStillShared);
}

void SFixedString::SetBuffer(const char* buf, int len) {
  const bool none = buf == nullptr || len < 0;
  // Only read: with no room to spare and more than one link, an edit copies first.
  buffer = const_cast<char*>(buf == nullptr ? "" : buf);
  length = allocated = none ? 0 : len;
}

}  // namespace mailhearth
