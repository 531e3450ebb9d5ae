#include "SNamedValue.h"

inline namespace mailhearth {

namespace {

constexpr int kNone = -1;

}  // namespace

SNamedValueItem::~SNamedValueItem() = default;

SNamedValue::SNamedValue(const SNamedValue& other) : SNLists(other) { _CopyEntries(other); }

SNamedValue& SNamedValue::operator=(const SNamedValue& other) {
  if (&other == this) return *this;
  Reset();
  SNLists::operator=(other);
  _CopyEntries(other);
  return *this;
}

SNamedValue::~SNamedValue() = default;

SStringList SNamedValue::Keys() const {
  SStringList keys;
  for (const STableItem& item : _Table()) {
    if (static_cast<const SNamedValueItem&>(item).value != kNone) keys.Push(item.key);
  }
  return keys;
}

int SNamedValue::_Get(std::string_view name) const {
  const auto* const item = _Lookup<SNamedValueItem>(name);
  return item == nullptr ? kNone : item->value;
}

void SNamedValue::_CopyEntries(const SNamedValue& other) {
  const SStringList names = other.Keys();
  for (const SString& name : names) (*this)[name] = other.Get(name);
}

}  // namespace mailhearth
