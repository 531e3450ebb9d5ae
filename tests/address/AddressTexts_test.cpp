// Texts of addresses read again, and addresses put together to lists, groups and routes.

#include <gtest/gtest.h>

#include <cstddef>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "address/Domains.h"
#include "address/S821Parser.h"
#include "address/S822Parser.h"
#include "support/AddressParts.h"
#include "support/EveryText.h"

namespace {

// Two dozens of the bytes that mean something.
constexpr std::string_view kLocalPartBytes = "a1 .@<>\"\\%()";
constexpr std::string_view kListBytes = "a1 .@<>[]:,;";

constexpr std::size_t kLongest = 5;

bool SameParts(const S821Address& a, const S821Address& b) {
  return a.IsBad() == b.IsBad() && PartsOf(a) == PartsOf(b);
}

// How many good addresses there were, and how many did not read back equal.
struct Counts {
  int good = 0, others = 0;
  bool operator==(const Counts&) const = default;
};

std::ostream& operator<<(std::ostream& os, const Counts& counts) {
  return os << counts.good << " good, " << counts.others << " others";
}

// The exceptions that the headers name.

bool HasOddDots(const S821Address& address) {
  const SString local = address.LocalPart();
  return local[0] == '.' || local[-1] == '.' || local.Index("..") >= 0;
}

bool HasNoDomain(const S821Address& address) {
  return address.Domain().Length() > 0 && !IsValidDomain(address.Domain());
}

bool HasQuotesWithin(const S821Address& address) {
  return address.LocalPart().Index('"', 1) >= 0 && address.LocalPart()[0] != '"';
}

bool HasMoreQuotes(const S821Address& address) {
  return HasQuotesWithin(address) || address.LocalPart().HasMatch("\"[^\"]*\".*\"");
}

bool HasLiteral(const S821Address& address) { return address.LocalPart().Index('[') >= 0; }

TEST(AddressTexts, OfAnEnvelopeReadBackEqual) {
  const auto count = [](std::string_view bytes, unsigned lenient, unsigned again) {
    Counts counts;
    ForEveryText(bytes, kLongest, [&](const std::string& made) {
      const SString text{std::string_view(made)};
      const S821Address address = S821Parser(text, lenient).ExtractAddress();
      if (address.IsBad()) return;
      ++counts.good;
      if (SameParts(S821Parser(address.Get(), again).ExtractAddress(), address)) return;
      ++counts.others;
      ASSERT_TRUE(EndsInABackslash(address) || (again == 0 && HasOddDots(address))) << text.View();
    });
    return counts;
  };
  EXPECT_EQ(count(kLocalPartBytes, 1, 1), (Counts{86427, 258}));
  EXPECT_EQ(count(kLocalPartBytes, 0, 1), (Counts{44966, 18}));
  EXPECT_EQ(count(kLocalPartBytes, 0, 0), (Counts{44966, 743}));
  EXPECT_EQ(count(kListBytes, 1, 1), (Counts{49148, 0}));
  EXPECT_EQ(count(kListBytes, 0, 1), (Counts{28182, 0}));
  EXPECT_EQ(count(kListBytes, 0, 0), (Counts{28182, 0}));
}

TEST(AddressTexts, OfAHeaderReadBackEqual) {
  const auto count = [](std::string_view bytes) {
    Counts counts;
    ForEveryText(bytes, kLongest, [&](const std::string& made) {
      const SString text{std::string_view(made)};
      const S822Address address = S822Parser(text).NextAddress();
      if (address.IsEnd() || address.IsBad()) return;
      ++counts.good;
      S822Parser again(address.Get());
      const S822Address same = again.NextAddress();
      if (!same.IsEnd() && SameParts(same, address)) {
        ASSERT_TRUE(again.NextAddress().IsEnd()) << text.View();
        return;
      }
      ++counts.others;
      const bool bare = address.Phrase().Length() == 0 && address.Route().Count() == 0;
      ASSERT_TRUE((bare && (address.LocalPart()[0] == '[' || HasNoDomain(address))) ||
                  HasQuotesBehindPerCent(address))
          << text.View();
    });
    return counts;
  };
  EXPECT_EQ(count(kLocalPartBytes), (Counts{22765, 2}));
  EXPECT_EQ(count(kListBytes), (Counts{32805, 338}));
}

TEST(AddressTexts, OfAHeadersEnvelopesReadBackEqual) {
  const auto count = [](std::string_view bytes) {
    Counts counts;
    ForEveryText(bytes, kLongest, [&](const std::string& made) {
      const SString text{std::string_view(made)};
      const S822Address address = S822Parser(text).NextAddress();
      if (address.IsEnd() || address.IsBad()) return;
      ++counts.good;
      if (SameParts(S821Address(address.S821Address::Address()), address)) return;
      ++counts.others;
      ASSERT_TRUE(HasMoreQuotes(address) || HasLiteral(address) || HasNoDomain(address))
          << text.View();
    });
    return counts;
  };
  EXPECT_EQ(count(kLocalPartBytes), (Counts{22765, 1493}));
  EXPECT_EQ(count(kListBytes), (Counts{32805, 1562}));
}

// --- Addresses put together ---------------------------------------------------------------

struct Piece {
  std::string text, envelope;
};

// Text that stands between tokens and means nothing.
std::string Gap(std::mt19937& random) {
  constexpr const char* kGaps[] = {"", " ", "\t", "  ", "\r\n  ", " \r\n ", "(x)", " (y (z)) "};
  return kGaps[random() % std::size(kGaps)];
}

// A path between brackets, with a route now and then.
Piece MakePath(std::mt19937& random) {
  constexpr const char* kLocals[] = {"joe",  "a.b",   "\"x y\"",   "\"<,;:@\\\"\"", "a%b",
                                     "\xE4", "j-o_e", "\"a b\".c", "!#$%&'*+-/="};
  constexpr const char* kHosts[] = {"hub", "mail.example.org", "[10.0.0.1]", "a-1.b_2.c", "x.#1"};
  const auto host = [&] { return std::string(kHosts[random() % std::size(kHosts)]); };
  std::string route, spacedRoute;
  for (auto n = random() % 4; n > 1; --n) {
    const std::string next = host();
    route += (route.empty() ? "@" : ",@") + next;
    spacedRoute += (spacedRoute.empty() ? "@" : ",  @") + next;
  }
  if (!route.empty()) {
    route += ':';
    spacedRoute += ':';
    spacedRoute += Gap(random);
  }
  const std::string path =
      std::string(kLocals[random() % std::size(kLocals)]).append("@").append(host());
  return {spacedRoute + path, route + path};
}

Piece MakeAddress(std::mt19937& random) {
  constexpr const char* kNames[] = {"Joe", "Joe X. Smith", "\"Smith, Joe\"", "\xC4\xD6 x", "a.b"};
  Piece path = MakePath(random);
  const std::string envelope = '<' + path.envelope + '>';
  std::string text = path.text;
  if (text[0] == '@' || random() % 2 != 0) text = '<' + text + '>';
  if (text[0] == '<' && random() % 2 != 0) {
    text.insert(0, std::string(kNames[random() % std::size(kNames)]).append(" "));
  }
  // Right behind an atom, a fold needs two blanks.
  text += random() % 2 != 0 ? " (Comment)" : "";
  return {text, envelope};
}

TEST(AddressTexts, MakeListsAndGroups) {
  std::mt19937 random(23);
  for (int round = 0; round < 20'000; ++round) {
    std::string text;
    std::vector<std::string> expected;
    const auto add = [&](const Piece& piece) {
      text += Gap(random) + piece.text + ' ' + Gap(random);
      expected.push_back(piece.envelope);
    };
    for (auto n = random() % 6; n > 0; --n) {
      if (random() % 3 == 0) {
        text += Gap(random) + "a group" + (random() % 2 != 0 ? " (of some)" : "") + " :";
        for (auto members = random() % 3; members > 0; --members) {
          add(MakeAddress(random));
          if (members > 1) text += ',';
        }
        text += ';';
      } else {
        add(MakeAddress(random));
      }
      text += ',';
    }
    const SString header{std::string_view(text)};
    ASSERT_EQ(Texts(S822Parser(header).Addresses()), expected) << text;
    S822Parser listed(header);
    for (const std::string& envelope : expected) {
      ASSERT_EQ(listed.NextListed().S821Address::Address(), std::string_view(envelope)) << text;
    }
    ASSERT_TRUE(listed.NextListed().IsEnd()) << text;
    for (const std::string& envelope : expected) {
      ASSERT_EQ(S821Address(SString(std::string_view(envelope))).Get(), std::string_view(envelope));
    }
  }
}

}  // namespace
