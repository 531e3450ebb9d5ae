#include "SNLists.h"

inline namespace mailhearth {

SNLists::~SNLists() = default;

void SNLists::Delete(const SString& name) { table_.Remove(name); }

void SNLists::Reset() { table_.Reset(); }

}  // namespace mailhearth
