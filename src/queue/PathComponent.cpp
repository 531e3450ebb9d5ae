#include "PathComponent.h"

#include <algorithm>
#include <string_view>

#include "../strings/Characters.h"

inline namespace mailhearth {

namespace {

constexpr int kLongestFile = 255;
constexpr int kLongestName = kLongestFile - static_cast<int>(sizeof "-Control.temp" - 1);

}  // namespace

bool IsPathComponent(const SString& name) {
  if (name.Length() == 0 || name.Length() > kLongestName) return false;
  if (name == "." || name == ".." || name.Index('/') >= 0) return false;
  const std::string_view bytes = name.View();
  return std::none_of(bytes.begin(), bytes.end(), IsC0Control);
}

}  // namespace mailhearth
