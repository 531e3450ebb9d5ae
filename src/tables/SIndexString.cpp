#include "SIndexString.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "../strings/Sizes.h"

inline namespace mailhearth {

SString& SIndexString::operator[](const int& index) {
  const int found = _Search(index);
  if (found >= 0) return slots_[static_cast<std::size_t>(found)].value;
  CheckedLength(static_cast<std::int64_t>(slots_.size()) + 1);
  if (slots_.size() == slots_.capacity()) slots_.reserve(slots_.size() + AllocIncrem);
  return slots_.emplace_back(Slot{index, SString("")}).value;
}

SString SIndexString::Get(const int& index) const {
  const int found = _Search(index);
  return found >= 0 ? slots_[static_cast<std::size_t>(found)].value : SString("");
}

int SIndexString::Keys(int** out) const {
  int* const indexes = out == nullptr ? nullptr : new int[slots_.size()];
  int count = 0;
  for (const Slot& slot : slots_) {
    if (slot.value.Length() == 0) continue;
    if (indexes != nullptr) indexes[count] = slot.index;
    ++count;
  }
  if (out != nullptr) *out = indexes;
  return count;
}

void SIndexString::Delete(const int& index) {
  const int found = _Search(index);
  if (found >= 0) slots_.erase(slots_.begin() + found);
}

int SIndexString::_Search(const int& index) const {
  const auto found =
      std::ranges::find_if(slots_, [&](const Slot& slot) { return slot.index == index; });
  return found == slots_.end() ? -1 : static_cast<int>(found - slots_.begin());
}

}  // namespace mailhearth
