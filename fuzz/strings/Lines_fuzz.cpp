// Breaks a text into lines in two ways and puts it together again: nothing is lost, and
// every line ends where it should.

#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>

#include "Require.h"
#include "strings/SLineBreaker.h"
#include "strings/SString.h"

namespace {

// A line with its end: nothing but the end at its end.
bool IsLine(std::string_view line) { return line.find('\n') == line.size() - 1; }

std::string_view WithoutEnd(std::string_view line) {
  line.remove_suffix(1);
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

void BreakLines(const SString& text) {
  std::string whole;
  SLineBreaker kept(text, 0), stripped(text, 1);
  {
    SString line, bare;
    while (kept.ReadLine(line) == 1) {
      Require(stripped.ReadLine(bare) == 1);
      Require(IsLine(line.View()) && bare.View() == WithoutEnd(line.View()));
      whole += line.View();
    }
    Require(stripped.ReadLine(bare) == 0);
    Require(!line.Defined() && !bare.Defined());
  }
  Require(kept.GetRemainder() == stripped.GetRemainder());
  whole += kept.GetRemainder().View();
  Require(whole == text.View());
}

void ReadLines(const SString& text) {
  std::istringstream in{std::string(text.View())};
  std::string whole;
  for (SString line; line.ReadLine(in) == 1;) {
    Require(IsLine(line.View()) || in.eof());
    whole += line.View();
  }
  Require(whole == text.View());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const SString text(reinterpret_cast<const char*>(data), static_cast<int>(size));
  BreakLines(text);
  ReadLines(text);
  return 0;
}
