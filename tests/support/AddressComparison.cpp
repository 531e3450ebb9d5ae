// Each side puts down what it reads as one text; the comparison is one of texts.

#include "support/AddressComparison.h"

#include <cstdio>
#include <optional>
#include <string>
#include <vector>

#include "address/AddressRepair.h"
#include "address/Domains.h"
#include "address/Literals.h"
#include "address/S821Parser.h"
#include "address/S822Parser.h"
#include "strings/SFixedString.h"
#include "support/ExactInput.h"
#include "support/SStringListPeek.h"
#include "support/SlowAddress.h"
#include "support/Text.h"

inline namespace mailhearth {

namespace {

// What comparisons see of a parser beyond its public face.
template <class Parser>
class Open : public Parser {
 public:
  using Parser::Parser;
  [[nodiscard]] int Position() const { return this->position_; }
};

using OpenPath = Open<S821Parser>;
using OpenList = Open<S822Parser>;
using List = std::vector<std::string>;

std::string Spelled(std::string_view text) {
  std::string spelled;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte >= 0x20 && byte < 0x7F) {
      spelled += c;
      continue;
    }
    char code[8];
    std::snprintf(code, sizeof code, "{%02x}", static_cast<unsigned>(byte));
    spelled += code;
  }
  return spelled;
}

AddressComparison Compared(const char* what, std::string_view text, const std::string& library,
                           const std::string& slow, bool good) {
  if (library == slow) return {"", good};
  return {std::string(what) + " of '" + Spelled(text) + "'\n  is       " + Spelled(library) +
              "\n  and not  " + Spelled(slow),
          good};
}

// Of two comparisons of one text.
AddressComparison Both(const AddressComparison& a, const AddressComparison& b) {
  return {a.difference + b.difference, a.good && b.good};
}

// Tokens.

SlowToken Next(SlowAddressParser& parser) { return parser.NextToken(); }

SlowToken Next(SParser& parser) {
  const SToken token = parser.NextToken();
  return {token.Type(), Bytes(token.Text())};
}

std::string Put(const SlowToken& token) { return std::to_string(token.type) + ':' + token.text; }

// All tokens up to one that stays where it is, each of them taken twice.
template <class Parser>
std::string Tokens(Parser&& parser, bool& good) {
  std::string all;
  good = true;
  for (;;) {
    const int before = parser.Position();
    const SlowToken token = Next(parser);
    const int after = parser.Position();
    all += Put(token) + " to " + std::to_string(after) + ' ';
    if (token.type == TokError) good = false;
    if (after > before) parser.UndoNext();
    if (Next(parser) != token || parser.Position() != after) all += "(not again) ";
    if (after == before) return all;
  }
}

template <class Parser>
AddressComparison CompareScanner(const char* what, std::string_view text, SlowForm form) {
  const ExactInput input(text);
  SFixedString fixed(input.Data(), input.Length());
  bool good = false;
  const std::string library = Tokens(Parser(fixed), good);
  return Compared(what, text, library, Tokens(SlowAddressParser(text, form), good), good);
}

// Addresses.

std::string Put(const List& list) {
  std::string all = "(";
  for (const std::string& element : list) all += element + ", ";
  return all + ")";
}

std::string Put(const std::optional<List>& list) { return list ? Put(*list) : "undefined"; }

std::string Put(const SStringList& list) { return list.Defined() ? Put(Texts(list)) : "undefined"; }

std::string Status(const auto& address) {
  return address.IsBad() ? "bad " : address.IsNull() ? "null " : address.IsValid() ? "valid " : "";
}

std::string PutPath(const SlowAddress& address) {
  return Status(address) + Put(address.route) + " '" + address.local + "' at '" + address.domain +
         "' as " + address.Envelope();
}

std::string PutPath(const S821Address& address) {
  return Status(address) + Put(Texts(address.Route())) + " '" + Bytes(address.LocalPart()) +
         "' at '" + Bytes(address.Domain()) + "' as " + Bytes(address.S821Address::Address());
}

std::string PutListed(const SlowAddress& address) {
  return PutPath(address) + " phrase " + address.phrase + " comment " + address.comment + " as " +
         address.Header() + (address.end ? " end" : "");
}

std::string PutListed(const S822Address& address) {
  return PutPath(address) + " phrase " + Bytes(address.Phrase()) + " comment " +
         Bytes(address.Comment()) + " as " + Bytes(address.Get()) + (address.IsEnd() ? " end" : "");
}

// The path at the beginning and the one behind it, what follows, and the whole as a domain.
template <class Parser>
std::string Paths(Parser&& parser, bool& good) {
  std::string all;
  for (int n = 0; n < 2; ++n) {
    const auto address = parser.ExtractAddress();
    good = n == 0 ? address.IsValid() : good;
    all += PutPath(address) + " to " + std::to_string(parser.Position()) + " before " +
           Put(parser.Extensions()) + "\n           ";
  }
  return all + (parser.IsValidDomain() ? "domain" : "no domain");
}

// Every address up to the end, or to a bad one where the parser stays; then all at once.
template <class Parser>
std::string Listed(Parser&& parser) {
  std::string all;
  for (;;) {
    const int before = parser.Position();
    const auto address = parser.NextAddress();
    all += PutListed(address) + " to " + std::to_string(parser.Position()) + "\n           ";
    if (parser.Position() == before) break;
  }
  return all + Put(parser.Addresses());
}

template <class Parser, class... Flag>
AddressComparison ComparePathAs(const char* what, SlowForm form, std::string_view text,
                                Flag... flag) {
  const ExactInput input(text);
  SFixedString fixed(input.Data(), input.Length());
  bool good = false;
  const std::string library = Paths(Parser(fixed, flag...), good);
  return Compared(what, text, library, Paths(SlowAddressParser(text, form), good), good);
}

// The pieces of a text between vertical bars.
List Pieces(std::string_view text) {
  List pieces{""};
  for (const char c : text) {
    if (c == '|') {
      pieces.emplace_back();
    } else {
      pieces.back() += c;
    }
  }
  return pieces;
}

}  // namespace

AddressComparison CompareTokens(std::string_view text) {
  return Both(CompareScanner<OpenPath>("the scan (821)", text, SlowForm::kLenientPath),
              CompareScanner<OpenList>("the scan (822)", text, SlowForm::kList));
}

AddressComparison ComparePath(std::string_view text) {
  const AddressComparison paths =
      Both(ComparePathAs<OpenPath>("the strict path", SlowForm::kStrictPath, text, 0U),
           ComparePathAs<OpenPath>("the lenient path", SlowForm::kLenientPath, text, 1U));
  return Both(paths, ComparePathAs<OpenList>("the path (822)", SlowForm::kList, text));
}

AddressComparison CompareList(std::string_view text) {
  const ExactInput input(text);
  SFixedString fixed(input.Data(), input.Length());
  SlowAddressParser slow(text, SlowForm::kList);
  const std::string expected = Listed(slow);
  const auto all = slow.Addresses();
  return Compared("the list", text, Listed(OpenList(fixed)), expected,
                  all.has_value() && !all->empty());
}

AddressComparison CompareWhole(std::string_view text) {
  const ExactInput input(text);
  SFixedString fixed(input.Data(), input.Length());
  const std::string plain(text);
  const OpenPath parser("", 1);
  SString local(fixed);
  parser._FixLocalPart(local);
  const auto put = [](bool domain, bool label, bool literal, int type,
                      const std::string& fixedPart) {
    return std::string(domain ? "domain " : "") + (label ? "label " : "") +
           (literal ? "literal " : "") + std::to_string(type) + ' ' + fixedPart;
  };
  const bool domain = SlowIsValidDomain(plain);
  return Compared("the whole", text,
                  put(IsValidDomain(fixed), parser.IsValidElement(fixed), IsValidLiteral(fixed),
                      parser._TokenType(fixed), Bytes(local)),
                  put(domain, SlowIsValidElement(plain), SlowIsValidLiteral(plain),
                      SlowTokenType(plain), SlowFixLocalPart(plain)),
                  domain);
}

AddressComparison CompareJoined(std::string_view text) {
  const List pieces = Pieces(text);
  const OpenPath parser("", 1);
  SStringList tokens;
  for (const std::string& piece : pieces) tokens.Push(SString(std::string_view(piece)));
  const auto joined = [&](char separator) { return Bytes(parser._JoinTokens(tokens, separator)); };
  const std::string spaced = SlowJoinTokens(pieces, ' ');
  return Compared("the joined", text, joined(' ') + '\n' + joined('.'),
                  spaced + '\n' + SlowJoinTokens(pieces, '.'), spaced.find(' ') != spaced.npos);
}

AddressComparison CompareRepair(std::string_view text) {
  const ExactInput input(text);
  SFixedString fixed(input.Data(), input.Length());
  const std::string repaired = SlowFixBogusAddress(std::string(text));
  return Compared("the repair", text, Bytes(FixBogusAddress(fixed)), repaired, repaired != "<>");
}

}  // namespace mailhearth
