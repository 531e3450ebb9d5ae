#include "tables/SNamedValue.h"

#include <gtest/gtest.h>

#include <climits>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "support/FailEachAllocation.h"
#include "support/SStringListPeek.h"
#include "support/STablePeek.h"

namespace {

using Names = std::vector<std::string>;

constexpr unsigned kNoCase = 0;
constexpr unsigned kCase = 1;

// Lets the table be looked at.
struct Open : SNamedValue {
  using SNLists::_Table;
  using SNamedValue::operator=;
  using SNamedValue::SNamedValue;
};

TEST(SNamedValue, ANewNameBeginsWithZero) {
  SNamedValue values(kCase);
  EXPECT_FALSE(values.Keys().Defined());
  EXPECT_EQ(values["a"], 0);
  EXPECT_EQ(Texts(values.Keys()), (Names{"a"}));
  ++values["a"];
  values[SString("b")] = INT_MIN;
  EXPECT_EQ(values.Get("a"), 1);
  EXPECT_EQ(values.Get(SString("b")), INT_MIN);
}

TEST(SNamedValue, GetNeverAdds) {
  const SNamedValue values(kCase);
  EXPECT_EQ(values.Get("a"), -1);
  EXPECT_EQ(values.Get(SString()), -1);
  EXPECT_FALSE(values.Keys().Defined());
}

TEST(SNamedValue, MinusOneIsNone) {
  SNamedValue values(kNoCase);
  values["a"] = 1;
  values["b"] = -1;
  values["c"] = -2;
  EXPECT_EQ(Texts(values.Keys()), (Names{"a", "c"}));
  EXPECT_EQ(values.Get("b"), -1);
  SNamedValue copy(values);
  EXPECT_EQ(Texts(copy.Keys()), (Names{"a", "c"}));
  EXPECT_EQ(copy.Get("c"), -2);
  EXPECT_EQ(copy["b"], 0) << "had come along";
  EXPECT_EQ(values["b"], -1);
  values["b"] = 3;
  EXPECT_EQ(Texts(values.Keys()), (Names{"a", "b", "c"})) << "in its old place";
}

TEST(SNamedValue, ComparesNamesAsItWasBuilt) {
  SNamedValue exact(kCase), values(kNoCase);
  exact["a"] = 1;
  exact["A"] = 2;
  values["old"] = 3;
  values = exact;
  EXPECT_EQ(values.CaseSensitive(), kCase);
  EXPECT_EQ(Texts(values.Keys()), (Names{"a"}));
  EXPECT_EQ(values.Get("a"), 2);
  EXPECT_EQ(values.Get("old"), -1);
  const SNamedValue& same = values;
  values = same;
  EXPECT_EQ(values.Get("A"), 2);
  EXPECT_EQ(SNamedValue(values).Get("A"), -1);
}

TEST(SNamedValue, NamesMayBeAnyText) {
  SNamedValue values(kNoCase);
  const std::string nul(2, '\0');
  values[nul] = 1;
  values[std::string_view(nul).substr(1)] = 2;
  values[SString()] = 3;
  values[0] = 4;
  EXPECT_EQ(values.Get(nul), 1);
  EXPECT_EQ(values.Get(SString('\0', 1)), 2);
  EXPECT_EQ(values.Get(""), 3);
  EXPECT_EQ(values.Get("0"), 4);
}

TEST(SNamedValue, DeletesAndResets) {
  SNamedValue values(kNoCase);
  values["a"] = 1;
  values["b"] = 2;
  values.Delete("A");
  values.Delete("x");
  EXPECT_EQ(Texts(values.Keys()), (Names{"b"}));
  values.Reset();
  EXPECT_FALSE(values.Keys().Defined());
  EXPECT_EQ(values.Get("b"), -1);
}

TEST(SNamedValue, WithoutCaseTheFirstFormIsKept) {
  SNamedValue values(kNoCase);
  values["Name"] = 1;
  values["NAME"] += 2;
  EXPECT_EQ(Texts(values.Keys()), Names{"Name"});
  SNamedValue copy(values);
  copy["name"] += 4;
  EXPECT_EQ(Texts(copy.Keys()), Names{"Name"});
  EXPECT_EQ(copy.Get("name"), 7);
  EXPECT_EQ(copy.CaseSensitive(), kNoCase);
  EXPECT_EQ(values.Get("name"), 3);
}

TEST(SNamedValue, AReferenceStaysWhileOthersComeAndACopyHasAllValues) {
  SNamedValue values(kCase);
  int& value = values["a"];
  for (int i = 0; i < 1000; ++i) values[SString(i)] = INT_MAX - i;
  value = 5;
  EXPECT_EQ(values.Get("a"), 5);
  const SNamedValue copy(values);
  EXPECT_EQ(copy.Keys().Count(), 1001);
  for (int i = 0; i < 1000; ++i) ASSERT_EQ(copy.Get(SString(i)), INT_MAX - i);
}

TEST(SNamedValue, IsCopiedAndEmptiedThroughItsVirtualMembers) {
  struct Own : SNamedValue {
    using SNamedValue::operator=;
    Own() : SNamedValue(kCase) {}
    [[nodiscard]] SStringList Keys() const override { return {"b"}; }
    void Reset() override {
      ++resets;
      SNamedValue::Reset();
    }
    int resets = 0;
  } own;
  own["a"] = 1;
  own["b"] = 2;
  EXPECT_EQ(Texts(SNamedValue(own).Keys()), Names{"b"});
  own = SNamedValue(kCase);
  EXPECT_EQ(own.resets, 1);
  EXPECT_EQ(own.Get("a"), -1);
}

// --- Without memory -----------------------------------------------------------------------

TEST(SNamedValue, IsNotMadeWithoutMemory) {
  FailEachAllocation([] { return 0; }, [](int) { static_cast<void>(SNamedValue(kCase)); },
                     [](int) {});
}

TEST(SNamedValue, WithoutMemoryStaysAsItIs) {
  const auto make = [] {
    auto values = std::make_unique<Open>(kCase);
    for (int i = 0; i < 15; ++i) (*values)[SString(i)] = i;  // the next one makes it grow
    return values;
  };
  const auto check = [](const auto& values) {
    EXPECT_STREQ(Flaw(values->_Table()), "");
    EXPECT_EQ(values->Keys().Count(), 15);
    EXPECT_EQ(values->_Table().Count(), 15);
    EXPECT_EQ(values->Get("14"), 14);
  };
  const SString name("new");
  FailEachAllocation(
      make, [&](const auto& values) { (*values)[name]; }, check);
  FailEachAllocation(
      make, [&](const auto& values) { (*values)["new"]; }, check);
  FailEachAllocation(
      make, [](const auto& values) { static_cast<void>(values->Keys()); }, check);
  FailEachAllocation(
      make, [](const auto& values) { static_cast<void>(SNamedValue(*values)); }, check);
}

// What has been copied when memory ends comes in order.
TEST(SNamedValue, AnAssignmentWithoutMemoryHasTheFirstNames) {
  SNamedValue from(kCase);
  for (int i = 0; i < 20; ++i) from[SString(i)] = i;
  FailEachAllocation(
      [] {
        auto values = std::make_unique<Open>(kNoCase);
        (*values)["old"] = 1;
        return values;
      },
      [&](const auto& values) { *values = from; },
      [](const auto& values) {
        EXPECT_STREQ(Flaw(values->_Table()), "");
        EXPECT_EQ(values->CaseSensitive(), kCase);
        EXPECT_EQ(values->Get("old"), -1);
        const SStringList keys = values->Keys();
        EXPECT_LE(keys.Count(), 20);
        EXPECT_EQ(keys.Count(), values->_Table().Count());
        for (int i = 0; i < keys.Count(); ++i) {
          EXPECT_EQ(keys.Get(i), SString(i));
          EXPECT_EQ(values->Get(keys.Get(i)), i);
        }
      });
}

// --- A container of somebody else's ------------------------------------------------------------

class OwnNames : public SNLists {
 public:
  explicit OwnNames(unsigned caseSensitive) : SNLists(caseSensitive) {}
  void Add(const SString& name) { static_cast<void>(_LookupOrAdd<STableItem>(name)); }
  [[nodiscard]] SStringList Keys() const override { return _Table().Keys(); }
};

TEST(SNLists, ACopyHasTheFlagAndNoEntries) {
  OwnNames with(1), without(0);
  with.Add("a");
  without.Add("b");
  const OwnNames copy(with);
  EXPECT_EQ(copy.CaseSensitive(), 1U);
  EXPECT_FALSE(copy.Keys().Defined());
  without = with;
  EXPECT_EQ(without.CaseSensitive(), 1U);
  without.Add("B");
  EXPECT_EQ(without.Keys().Count(), 1) << "names go on being compared as they were";
}

}  // namespace
