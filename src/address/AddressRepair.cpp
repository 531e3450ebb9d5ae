// The steps are those of a series of substitutions by pattern, each written out: of
// "[\\s<]+" at the beginning, a search for the first byte that is none of them is left. The
// tests hold each text against the patterns.

#include "AddressRepair.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "../strings/Characters.h"
#include "Domains.h"
#include "S821Address.h"

inline namespace mailhearth {

namespace {

// Reads a text as an address. Returns whether it is one, which is then in `repaired`.
bool Check(const std::string& text, SString& repaired) {
  constexpr int kShortest = 3;  // bytes of an address; the null address has one less
  repaired = S821Address(SString(std::string_view(text))).Get();
  return repaired.Length() >= kShortest;
}

// What stands in the last angle brackets: where "<.*>" is found, "^.+<" and then ">.+$" are
// taken off; so is a "<" that comes first, which would only go a step later.
std::string_view InBrackets(std::string_view text) {
  const std::size_t last = text.rfind('>');
  if (last == text.npos || text.find('<') > last) return text;
  text.remove_prefix(text.rfind('<') + 1);
  const std::size_t close = text.find('>');
  return close + 1 < text.size() ? text.substr(0, close) : text;
}

// Without "^[\\s<]+" and "[\\s>]+$".
std::string_view Trimmed(std::string_view text) {
  while (!text.empty() && (text.front() == '<' || IsWhiteSpace(text.front()))) {
    text.remove_prefix(1);
  }
  while (!text.empty() && (text.back() == '>' || IsWhiteSpace(text.back()))) text.remove_suffix(1);
  return text;
}

// The parts between "\\s*(@\\s*)+"; of more than two, the first three. A separator at the end
// leaves no empty part behind it.
std::vector<std::string_view> SplitAtSigns(std::string_view text) {
  constexpr std::size_t kMost = 3;
  std::vector<std::string_view> parts;
  for (std::size_t at = 0; at < text.size() && parts.size() < kMost;) {
    const std::size_t sign = std::min(text.find('@', at), text.size());
    std::size_t end = sign;
    while (sign < text.size() && end > at && IsWhiteSpace(text[end - 1])) --end;
    parts.push_back(text.substr(at, end - at));
    at = sign;
    while (at < text.size() && (text[at] == '@' || IsWhiteSpace(text[at]))) ++at;
  }
  return parts;
}

// A domain with single dots for "[\\s.,]+", and none around it.
std::string Dotted(std::string_view domain) {
  std::string dotted;
  bool separated = false;
  for (const char c : domain) {
    if (c == '.' || c == ',' || IsWhiteSpace(c)) {
      separated = !dotted.empty();
      continue;
    }
    if (separated) dotted += '.';
    separated = false;
    dotted += c;
  }
  return dotted;
}

// Makes a domain of a text. Returns whether it can.
bool RepairDomain(std::string& domain) {
  domain = Dotted(domain);
  if (IsValidDomain(SString(std::string_view(domain)))) return true;
  domain.insert(domain.begin(), '[');
  domain += ']';
  return IsValidDomain(SString(std::string_view(domain)));
}

// Puts an address together.
std::string Path(std::string_view local, std::string_view quote, std::string_view domain) {
  std::string path("<");
  (path += quote) += local;
  (path += quote) += '@';
  return (path += domain) += '>';
}

}  // namespace

// NOLINTNEXTLINE(performance-unnecessary-value-param): callers may count on the value
SString FixBogusAddress(SString bogus) {
  SString repaired;
  std::string text(Trimmed(InBrackets(bogus.View())));
  const std::size_t first = text.find('@'), last = text.rfind('@');
  if (first != last && first > 0) {
    text.insert(last, 1, '"');
    text.insert(text.begin(), '"');
    if (Check(text, repaired)) return repaired;
  }
  // Nothing is done about a source route before the address: the at-sign that it begins with
  // leaves an empty part, and so too many of them.
  const std::vector<std::string_view> parts = SplitAtSigns(text);
  if (parts.size() == 1 && Check(text, repaired)) return repaired;
  if (parts.size() == 2) {
    std::string domain(parts[1]);
    if (RepairDomain(domain) && (Check(Path(parts[0], "", domain), repaired) ||
                                 Check(Path(parts[0], "\"", domain), repaired))) {
      return repaired;
    }
  }
  return "<>";
}

}  // namespace mailhearth
