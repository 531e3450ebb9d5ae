// Reads a named list from a text that comes from anywhere: every byte of the text is in a
// name, a value or a separator, and what was read is written so that it reads the same.
//
// An input is one byte of flags (1: names compare exactly, 2: lines end in "\r\n"), the text.

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "Require.h"
#include "lists/SStringList.h"
#include "strings/SFixedString.h"
#include "support/ExactInput.h"
#include "tables/SNamedStringList.h"

namespace {

bool Same(const SNamedStringList& a, const SNamedStringList& b) {
  const SStringList names = a.Keys();
  if (!(names == b.Keys())) return false;
  for (const SString& name : names) {
    if (!(a.Get(name) == b.Get(name))) return false;
  }
  return true;
}

// Every name has values, and values and names stand in the text.
void CheckParts(const SNamedStringList& list, std::string_view text) {
  for (const SString& name : list.Keys()) {
    Require(text.find(name.View()) != text.npos);
    const SStringList* const values = list.Find(name);
    Require(values != nullptr && values->Count() > 0);
    for (const SString& value : *values) Require(text.find(value.View()) != text.npos);
  }
}

// Whether every line written can be told from a continuation.
bool ReadsBack(const SNamedStringList& list) {
  for (const SString& name : list.Keys()) {
    if (name.Length() == 0 || name[0] == '\t') return false;
  }
  return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const unsigned caseSensitive = data[0] & 1, crlf = data[0] & 2;
  const ExactInput input({reinterpret_cast<const char*>(data) + 1, size - 1});
  SFixedString text(input.Data(), input.Length());

  SNamedStringList list(caseSensitive, crlf), again(caseSensitive, crlf);
  static_cast<void>(SString(text) >> list);
  CheckParts(list, input.View());
  Require(Same(SNamedStringList(list), list));

  SString written;
  written << list;
  static_cast<void>(written >> again);
  if (ReadsBack(list)) Require(Same(list, again));

  again += list;
  for (const SString& name : list.Keys()) Require(again.Find(name) != nullptr);
  return 0;
}
