#include "PathComponent.h"

#include <algorithm>
#include <string_view>

#include "../strings/Characters.h"
#include "Layout.h"

inline namespace mailhearth {

bool IsPathComponent(const SString& name) {
  if (name.Length() == 0 || name.Length() > kLongestId) return false;
  if (name == "." || name == ".." || name.Index('/') >= 0) return false;
  const std::string_view bytes = name.View();
  return std::none_of(bytes.begin(), bytes.end(), IsC0Control);
}

}  // namespace mailhearth
