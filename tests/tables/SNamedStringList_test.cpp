#include "tables/SNamedStringList.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "support/CheckText.h"
#include "support/CountedNew.h"
#include "support/Growth.h"
#include "support/SStringListPeek.h"
#include "tables/SNLists.h"

namespace {

using Names = std::vector<std::string>;

constexpr unsigned kNoCase = 0;
constexpr unsigned kCase = 1;

SStringList DefinedEmpty() {
  SStringList list;
  list.Reset();
  return list;
}

static_assert(std::is_abstract_v<SNLists> && std::has_virtual_destructor_v<SNLists>);
static_assert(!std::is_convertible_v<unsigned, SNamedStringList>);

TEST(SNamedStringList, IsEmptyAtFirst) {
  const SNamedStringList lists(kCase, 7);
  EXPECT_FALSE(lists.Keys().Defined());
  EXPECT_FALSE(lists.Get("a").Defined());
  EXPECT_EQ(lists.Find("a"), nullptr);
  EXPECT_EQ(lists.CaseSensitive(), kCase);
  EXPECT_EQ(lists.Crlf(), 7u);
}

TEST(SNamedStringList, AddsANameWhenItIsIndexed) {
  SNamedStringList lists(kCase, 0);
  SStringList& list = lists["a"];
  EXPECT_FALSE(list.Defined());
  EXPECT_EQ(lists.Find("a"), &list);
  EXPECT_FALSE(lists.Keys().Defined()) << "not yet defined";
  list.Push("1");
  EXPECT_EQ(Texts(lists.Keys()), (Names{"a"}));
  EXPECT_EQ(Texts(lists.Get("a")), (Names{"1"}));
  list.Undef();
  EXPECT_FALSE(lists.Keys().Defined());
  list.Reset();
  EXPECT_EQ(Texts(lists.Keys()), (Names{"a"})) << "defined, though empty";
}

TEST(SNamedStringList, AReferenceStaysWhileOthersCome) {
  SNamedStringList lists(kCase, 0);
  SStringList& list = lists["a"];
  for (int i = 0; i < 1000; ++i) lists[SString(i)].Push("x");
  list.Push("1");
  EXPECT_EQ(&lists["a"], &list);
  EXPECT_EQ(lists.Keys().Get(0), "a");
}

TEST(SNamedStringList, GetNeverAddsAndItsListIsACopy) {
  SNamedStringList lists(kCase, 0);
  lists["a"].Push("1");
  SStringList copy = lists.Get("a");
  copy.Push("2");
  EXPECT_EQ(lists.Get("a").Count(), 1);
  static_cast<void>(lists.Get("b"));
  EXPECT_EQ(lists.Find("b"), nullptr);
}

TEST(SNamedStringList, WithoutCaseTheFirstFormIsKept) {
  SNamedStringList lists(kNoCase, 0);
  lists["Trace:"].Push("1");
  lists["TRACE:"].Push("2");
  EXPECT_EQ(Texts(lists.Keys()), (Names{"Trace:"}));
  EXPECT_EQ(Texts(lists.Get("trace:")), (Names{"1", "2"}));
  SNamedStringList exact(kCase, 0);
  exact["Trace:"].Push("1");
  exact["TRACE:"].Push("2");
  EXPECT_EQ(Texts(exact.Keys()), (Names{"Trace:", "TRACE:"}));
}

TEST(SNamedStringList, NamesMayBeAnyText) {
  SNamedStringList lists(kNoCase, 0);
  const std::string nul(1, '\0');
  lists[SString()].Push("undefined");
  lists[""].Push("empty");
  lists[nul].Push("nul");
  lists[12].Push("number");
  lists[std::string_view("view")].Push("view");
  EXPECT_EQ(Texts(lists.Get("")), (Names{"undefined", "empty"}));
  EXPECT_EQ(Texts(*lists.Find(nul)), (Names{"nul"}));
  EXPECT_EQ(Texts(lists.Get("12")), (Names{"number"}));
  EXPECT_EQ(Texts(*lists.Find("VIEW")), (Names{"view"}));
  const AllocationCount allocations;
  EXPECT_NE(lists.Find("view"), nullptr);
  EXPECT_EQ(lists["view"].Count(), 1);
  EXPECT_EQ(allocations.Made(), 0);
}

TEST(SNamedStringList, DeletesAndResets) {
  SNamedStringList lists(kNoCase, 1);
  for (const char* const name : {"a", "b", "c"}) lists[name].Push("1");
  SNLists& base = lists;
  base.Delete("B");
  base.Delete("x");
  EXPECT_EQ(Texts(base.Keys()), (Names{"a", "c"}));
  lists["b"].Push("2");
  EXPECT_EQ(Texts(base.Keys()), (Names{"a", "c", "b"}));
  base.Reset();
  EXPECT_FALSE(base.Keys().Defined());
  EXPECT_EQ(lists.Crlf(), 1u);
}

TEST(SNamedStringList, ACopyHasTheDefinedLists) {
  SNamedStringList lists(kCase, 1);
  lists["b"] = SStringList{"1", "2"};
  lists["unused"];
  lists["B"] = DefinedEmpty();
  const SNamedStringList copy(lists);
  lists["b"].Push("3");
  EXPECT_EQ(Texts(copy.Keys()), (Names{"b", "B"}));
  EXPECT_EQ(Texts(copy.Get("b")), (Names{"1", "2"}));
  EXPECT_TRUE(copy.Get("B").Defined());
  EXPECT_EQ(copy.Find("unused"), nullptr);
  EXPECT_EQ(copy.CaseSensitive(), kCase);
  EXPECT_EQ(copy.Crlf(), 1u);
}

TEST(SNamedStringList, AnAssignmentReplacesAllButHowNamesCompare) {
  SNamedStringList exact(kCase, 1), lists(kNoCase, 0);
  exact["a"].Push("1");
  exact["A"].Push("2");
  exact["b"].Push("3");
  lists["old"].Push("4");
  lists = exact;
  EXPECT_EQ(lists.CaseSensitive(), kCase);
  EXPECT_EQ(lists.Crlf(), 1u);
  EXPECT_EQ(Texts(lists.Keys()), (Names{"a", "b"}));
  EXPECT_EQ(Texts(lists.Get("A")), (Names{"2"})) << "the later one has replaced the first";
  EXPECT_EQ(Texts(lists.Get("B")), (Names{"3"}));
  // A copy is built by the flag that shows, so it compares exactly.
  const SNamedStringList copy(lists);
  EXPECT_FALSE(copy.Get("B").Defined());
}

TEST(SNamedStringList, AssignedToItselfStaysAsItIs) {
  SNamedStringList lists(kCase, 0);
  lists["a"].Push("1");
  lists["unused"];
  const SNamedStringList& same = lists;
  lists = same;
  EXPECT_EQ(Texts(lists.Get("a")), (Names{"1"}));
  EXPECT_NE(lists.Find("unused"), nullptr);
}

// Answers as if it had more than it has.
struct Imagined : SNamedStringList {
  Imagined() : SNamedStringList(kCase, 0) {}
  [[nodiscard]] SStringList Keys() const override { return {"x"}; }
  [[nodiscard]] SStringList Get(const SString&) const override { return {"imagined"}; }
};

TEST(SNamedStringList, IsCopiedAndMergedThroughItsVirtualMembers) {
  const Imagined imagined;
  const SNamedStringList copy(imagined);
  EXPECT_EQ(Texts(copy.Get("x")), (Names{"imagined"}));
  SNamedStringList lists(kCase, 0);
  lists += imagined;
  EXPECT_EQ(Texts(lists.Get("x")), (Names{"imagined"}));
}

// --- Merging ------------------------------------------------------------------------------

TEST(SNamedStringList, MergingAppendsWhatIsNew) {
  SNamedStringList lists(kNoCase, 0), other(kCase, 0);
  lists["both"] = SStringList{"1", "2", "1"};
  lists["mine"].Push("1");
  lists["unused"];
  other["theirs"] = SStringList{"1", "1"};
  other["both"] = SStringList{"3", "2", "3", "4"};
  other["unused"].Push("5");
  other["ignored"];
  EXPECT_EQ(&(lists += other), &lists);
  EXPECT_EQ(Texts(lists.Keys()), (Names{"both", "mine", "unused", "theirs"}));
  EXPECT_EQ(Texts(lists.Get("both")), (Names{"1", "2", "1", "3", "3", "4"}));
  EXPECT_EQ(Texts(lists.Get("theirs")), (Names{"1", "1"}));
  EXPECT_EQ(Texts(lists.Get("unused")), (Names{"5"}));
  EXPECT_EQ(other.Get("both").Count(), 4);
}

TEST(SNamedStringList, MergingANameSpeltOtherwiseReplacesItsList) {
  SNamedStringList lists(kNoCase, 0), other(kNoCase, 0);
  lists["Name"] = SStringList{"1", "2"};
  other["name"] = SStringList{"2", "3"};
  lists += other;
  EXPECT_EQ(Texts(lists.Keys()), (Names{"Name"}));
  EXPECT_EQ(Texts(lists.Get("name")), (Names{"2", "3"}));
}

TEST(SNamedStringList, MergingFindsTheKeysAsTheyWereBefore) {
  SNamedStringList lists(kNoCase, 0), other(kCase, 0);
  other["a"].Push("1");
  other["A"].Push("2");
  lists += other;
  EXPECT_EQ(Texts(lists.Get("a")), (Names{"2"}));
}

TEST(SNamedStringList, MergedWithItselfStaysAsItIs) {
  SNamedStringList lists(kNoCase, 0);
  lists["a"] = SStringList{"1", "1"};
  lists["b"] = DefinedEmpty();
  const SNamedStringList& same = lists;
  lists += same;
  EXPECT_EQ(Texts(lists.Get("a")), (Names{"1", "1"}));
  EXPECT_TRUE(lists.Get("b").Defined());
}

TEST(SNamedStringList, RandomMergesAgreeWithAModel) {
  using Record = std::map<std::string, Names>;
  std::mt19937 random(5);
  const auto below = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
  for (int round = 0; round < 3000; ++round) {
    SNamedStringList lists[2] = {{kCase, 0}, {kCase, 0}};
    Record records[2];
    for (int side = 0; side < 2; ++side) {
      for (int n = below(60); n > 0; --n) {
        const std::string name = std::to_string(below(4));
        const std::string value = std::to_string(below(15));
        lists[side][name].Push(value.c_str());
        records[side][name].push_back(value);
      }
    }
    lists[0] += lists[1];
    for (const auto& [name, values] : records[1]) {
      const Names before = records[0][name];
      for (const std::string& value : values) {
        if (std::ranges::count(before, value) == 0 || before.empty()) {
          records[0][name].push_back(value);
        }
      }
    }
    for (const auto& [name, values] : records[0]) ASSERT_EQ(Texts(*lists[0].Find(name)), values);
    ASSERT_EQ(lists[0].Keys().Count(), static_cast<int>(records[0].size()));
  }
}

TEST(SNamedStringList, MergingAndCopyingTakeLinearTime) {
  EXPECT_TRUE(GrowsLinearly(10'000, [](int n) {  // names
    SNamedStringList a(kNoCase, 0), b(kNoCase, 0);
    for (int i = 0; i < n; ++i) a[SString(i)].Push("1");
    for (int i = n / 2; i < n + n / 2; ++i) b[SString(i)].Push("2");
    a += b;
    EXPECT_EQ(SNamedStringList(a).Keys().Count(), n + n / 2);
  }));
  EXPECT_TRUE(GrowsLinearly(10'000, [](int n) {  // values
    SNamedStringList a(kNoCase, 0), b(kNoCase, 0);
    for (int i = 0; i < n; ++i) a["name"].Push(SString(i));
    for (int i = n / 2; i < n + n / 2; ++i) b["name"].Push(SString(i));
    a += b;
    EXPECT_EQ(a.Get("name").Count(), n + n / 2);
  }));
}

}  // namespace
