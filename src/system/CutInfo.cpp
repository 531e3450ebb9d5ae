#include "CutInfo.h"

#include "../lists/SStringList.h"
#include "../strings/SLineBreaker.h"
#include "Environment.h"
#include "FileOperations.h"

inline namespace mailhearth {

namespace {

// Made by the first call, destroyed at exit.
const SString& CutText() {
  static const SString text = MapFileRead(GetEnv("ProgramDir") + "/.cut");
  return text;
}

}  // namespace

SString GetCutInfo(const SString& key) {
  SLineBreaker lines(CutText(), 1);
  for (SString line; lines.ReadLine(line);) {
    SStringList pieces = line.Split("\\s", 2);
    if (pieces.Count() == 0 || pieces.Shift() != key) continue;
    return pieces.Shift();
  }
  return "Undefined";
}

}  // namespace mailhearth
