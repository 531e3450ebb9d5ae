#include "CutInfo.h"

#include <algorithm>
#include <cerrno>
#include <new>
#include <string_view>

#include "../strings/Characters.h"
#include "../strings/SLineBreaker.h"
#include "Environment.h"
#include "EnvironmentVariables.h"
#include "FileOperations.h"

inline namespace mailhearth {

namespace {

SString ReadCutText() {
  SString text = MapFileRead(GetEnv(kProgramDirVariable) + "/.cut");
  if (!text.Defined() && errno == ENOMEM) throw std::bad_alloc();  // the next call reads it
  return text;
}

// Made by the first call, destroyed at exit.
const SString& CutText() {
  static const SString text = ReadCutText();
  return text;
}

}  // namespace

SString GetCutInfo(const SString& key) {
  // Not by Split: a pattern that finds no memory to compile would be an entry not found.
  SLineBreaker lines(CutText(), 1);
  for (SString line; lines.ReadLine(line);) {
    const std::string_view entry = line.View();
    const std::size_t end = std::min(entry.find_first_of(kWhiteSpace), entry.size());
    if (entry.empty() || entry.substr(0, end) != key.View()) continue;
    if (end + 1 >= entry.size()) return {};
    return SString(entry.substr(end + 1));
  }
  return "Undefined";
}

}  // namespace mailhearth
