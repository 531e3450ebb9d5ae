#include "SNamedStringList.h"

#include <string_view>
#include <unordered_set>

inline namespace mailhearth {

namespace {

// Whether a list has an element, which is asked many times: a short list is searched, a long
// one only once.
class Membership {
 public:
  // Needs: `list` outlives this and is not edited.
  explicit Membership(const SStringList& list) : list_(list) {
    if (list.Count() <= kFew) return;
    for (const SString& element : list) elements_.insert(element.View());
  }

  [[nodiscard]] bool Has(const SString& s) const {
    return list_.Count() <= kFew ? list_.Contains(s) : elements_.contains(s.View());
  }

 private:
  static constexpr int kFew = 8;

  const SStringList& list_;
  std::unordered_set<std::string_view> elements_;
};

// Returns the elements of `list` that `others` has not.
SStringList Without(const SStringList& list, const SStringList& others) {
  const Membership known(others);
  SStringList left;
  for (const SString& element : list) {
    if (!known.Has(element)) left.Push(element);
  }
  return left;
}

}  // namespace

SNamedStringListItem::~SNamedStringListItem() = default;

SNamedStringList::SNamedStringList(const SNamedStringList& other)
    : SNLists(other), crlf_(other.crlf_) {
  _CopyEntries(other);
}

SNamedStringList& SNamedStringList::operator=(const SNamedStringList& other) {
  if (&other == this) return *this;
  Reset();
  SNLists::operator=(other);
  crlf_ = other.crlf_;
  _CopyEntries(other);
  return *this;
}

SNamedStringList::~SNamedStringList() = default;

SStringList SNamedStringList::Keys() const {
  SStringList keys;
  for (const STableItem& item : _Table()) {
    if (static_cast<const SNamedStringListItem&>(item).list.Defined()) keys.Push(item.key);
  }
  return keys;
}

SStringList SNamedStringList::Get(const SString& name) const {
  const SStringList* const found = Find(name);
  return found == nullptr ? SStringList() : *found;
}

SNamedStringList& SNamedStringList::operator+=(const SNamedStringList& other) {
  const SStringList theirs = other.Keys(), ours = Keys();
  const Membership known(ours);
  for (const SString& name : theirs) {
    const SStringList values = other.Get(name);
    if (known.Has(name)) {
      const SStringList added = Without(values, Get(name));
      (*this)[name].Push(added);  // alone on the list again, so nothing is copied
    } else {
      (*this)[name] = values;
    }
  }
  return *this;
}

void SNamedStringList::_CopyEntries(const SNamedStringList& other) {
  const SStringList names = other.Keys();
  for (const SString& name : names) (*this)[name] = other.Get(name);
}

}  // namespace mailhearth
