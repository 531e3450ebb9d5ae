#include "Domains.h"

#include "S821Parser.h"

inline namespace mailhearth {

bool IsValidDomain(const SString& text) { return S821Parser(text, 1).IsValidDomain(); }

}  // namespace mailhearth
