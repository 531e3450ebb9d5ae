#include "address/S821Address.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "address/S821Parser.h"
#include "support/AddressParts.h"
#include "support/CheckText.h"
#include "support/FailEachAllocation.h"

namespace {

using Names = std::vector<std::string>;

S821Address Made(const SStringList& route, const SString& local, const SString& domain) {
  S821Address address;
  address.Route() = route;
  address.LocalPart() = local;
  address.Domain() = domain;
  return address;
}

TEST(S821Address, IsNullByDefault) {
  const S821Address address;
  EXPECT_TRUE(address.IsNull());
  EXPECT_FALSE(address.IsBad());
  EXPECT_FALSE(address.IsValid());
  CheckText(address.Address(), "<>");
  CheckText(address.Get(), "<>");
  EXPECT_EQ(PartsOf(address), AddressParts());
}

TEST(S821Address, IsBadNullOrValidByItsParts) {
  struct Row {
    const char *route, *local, *domain;
    bool bad, null, valid;
    const char* text;
  };
  const Row rows[] = {
      {"", "", "", false, true, false, "<>"},      {"", "", "d", true, false, false, nullptr},
      {"r", "", "", true, false, false, nullptr},  {"r", "", "d", true, false, false, nullptr},
      {"", "l", "", false, false, true, "<l>"},    {"", "l", "d", false, false, true, "<l@d>"},
      {"r", "l", "", true, false, false, nullptr}, {"r", "l", "d", false, false, true, "<@r:l@d>"},
  };
  for (const Row& row : rows) {
    const SString route(row.route);
    const S821Address address =
        Made(route.Length() > 0 ? SStringList(route) : SStringList(), row.local, row.domain);
    SCOPED_TRACE(PartsOf(address));
    EXPECT_EQ(address.IsBad(), row.bad);
    EXPECT_EQ(address.IsNull(), row.null);
    EXPECT_EQ(address.IsValid(), row.valid);
    if (row.text == nullptr) {
      CheckUndefined(address.Address());
    } else {
      CheckText(address.Address(), row.text);
    }
  }
}

TEST(S821Address, ABadMarkOutweighsTheParts) {
  S821Address address("joe@10.1.2.3");
  EXPECT_TRUE(address.IsBad());
  EXPECT_FALSE(address.IsValid());
  CheckText(address.Domain(), "10.1.2.3");
  CheckUndefined(address.Get());
  address.Domain() = "hub.lan";
  EXPECT_TRUE(address.IsBad());
}

TEST(S821Address, ShowsItsRoute) {
  EXPECT_EQ(Made({"r1", "r2"}, "joe", "hub.lan").Address(), "<@r1,@r2:joe@hub.lan>");
}

TEST(S821Address, IsReadLeniently) {
  const S821Address joe("Joe <joe@hub.lan>");
  EXPECT_EQ(PartsOf(joe), (AddressParts{{}, "joe", "hub.lan"}));
  EXPECT_EQ(joe.Get(), "<joe@hub.lan>");
  EXPECT_EQ(S821Address("a..b@host").Get(), "<a..b@host>");
  EXPECT_TRUE(S821Address(SString()).IsNull());
  EXPECT_EQ(S821Address::_Parse("<@r:joe@hub>").Get(), "<@r:joe@hub>");
}

// Known and kept: the form without backslashes and quotes is one that a strict parser refuses.
TEST(S821Address, ReadsBackLenientlyWhereItsDotsWereOrdinary) {
  const std::pair<const char*, const char*> rows[] = {
      {R"(\.a@host)", "<.a@host>"},      {R"(a\.@host)", "<a.@host>"},
      {R"(a.\.b@host)", "<a..b@host>"},  {R"("\.a"@host)", "<.a@host>"},
      {R"("a..b"@host)", "<a..b@host>"}, {R"(".a"@host)", "<.a@host>"}};
  for (const auto& [text, form] : rows) {
    SCOPED_TRACE(text);
    const S821Address address = S821Parser(text).ExtractAddress();
    EXPECT_EQ(address.Get(), form);
    EXPECT_EQ(S821Address(form).Get(), form);
    EXPECT_TRUE(S821Parser(form).ExtractAddress().IsBad());
  }
  EXPECT_TRUE(
      S821Parser(S821Parser(R"(a\b@host)").ExtractAddress().Get()).ExtractAddress().IsValid());
}

TEST(S821Address, TakesAnotherText) {
  S821Address address("<@r:joe@hub>");
  address.Set("jim@lan");
  EXPECT_EQ(PartsOf(address), (AddressParts{{}, "jim", "lan"}));
  address.Set("@");
  EXPECT_TRUE(address.IsBad());
  address.Set("<>");
  EXPECT_TRUE(address.IsNull());
}

TEST(S821Address, CopiesAllOfIt) {
  const S821Address bad("joe@10.1.2.3"), good("<@r:joe@hub>");
  S821Address copy(good);
  EXPECT_EQ(copy.Get(), "<@r:joe@hub>");
  copy.Route().Push("s");
  copy.LocalPart() = "jim";
  EXPECT_EQ(good.Get(), "<@r:joe@hub>") << "the parts are the copy's own";
  EXPECT_EQ(copy.Get(), "<@r,@s:jim@hub>");
  copy = bad;
  EXPECT_TRUE(copy.IsBad());
  EXPECT_EQ(PartsOf(copy), PartsOf(bad));
  copy = S821Address(good);
  EXPECT_EQ(copy.Get(), "<@r:joe@hub>");
  const S821Address& same = copy;
  copy = same;
  EXPECT_EQ(copy.Get(), "<@r:joe@hub>");
}

// Get is the text of what the object is.
class Shouted : public S821Address {
 public:
  using S821Address::S821Address;
  [[nodiscard]] SString Address() const override { return S821Address::Address().UpperCase(); }
};

TEST(S821Address, GetIsWhatAddressSays) { EXPECT_EQ(Shouted("joe@hub").Get(), "<JOE@HUB>"); }

TEST(S821Address, KeepsItsValueWhenMemoryRunsOut) {
  const SString text("<@r1,@r2:\"joe \\\"x\"@hub>");
  const int failed = FailEachAllocation(
      [] { return S821Address("jim@lan"); }, [&](S821Address& address) { address.Set(text); },
      [](const S821Address& address) { EXPECT_EQ(address.Get(), "<jim@lan>"); });
  EXPECT_GT(failed, 5);
}

static_assert(std::has_virtual_destructor_v<S821Address>);
static_assert(std::is_convertible_v<SString, S821Address>);

}  // namespace
