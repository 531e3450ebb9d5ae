#include "tables/SNamedStringList.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "support/CheckText.h"
#include "support/CountedNew.h"
#include "support/FailEachAllocation.h"
#include "support/Growth.h"
#include "support/SStringListPeek.h"
#include "support/STablePeek.h"
#include "tables/SNLists.h"

namespace {

using Names = std::vector<std::string>;

constexpr unsigned kNoCase = 0;
constexpr unsigned kCase = 1;

// Lets the table be looked at.
struct Open : SNamedStringList {
  using SNamedStringList::operator=;
  using SNamedStringList::SNamedStringList;
  using SNLists::_Table;
};

// Returns "" if the table and all lists in it keep what they promise, else what is wrong.
std::string Flaws(const Open& lists) {
  std::string flaws = Flaw(lists._Table());
  for (const STableItem& item : lists._Table()) {
    flaws += Flaw(static_cast<const SNamedStringListItem&>(item).list);
  }
  return flaws;
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
  EXPECT_EQ(Open(kCase, 0)._Table().Size(), 7);
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

TEST(SNamedStringList, AnUndefinedListIsNoValueEvenWithElements) {
  SNamedStringList lists(kCase, 0);
  SStringList four = {"1", "2", "3", "4"};
  lists["a"] = four.Splice(1, 2);
  EXPECT_EQ(Texts(lists.Get("a")), (Names{"2", "3"}));
  EXPECT_FALSE(lists.Get("a").Defined());
  EXPECT_FALSE(lists.Keys().Defined());
  EXPECT_EQ(SNamedStringList(lists).Find("a"), nullptr);
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
  EXPECT_FALSE(lists.Keys().Get(0).Defined()) << "the form used first";
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
  EXPECT_FALSE(copy.Get("c").Defined());
}

TEST(SNamedStringList, ACopyComparesNamesAsTheOriginal) {
  SNamedStringList lists(kNoCase, 0);
  lists["Name"].Push("1");
  SNamedStringList copy(lists);
  copy["NAME"].Push("2");
  EXPECT_EQ(Texts(copy.Keys()), Names{"Name"});
  EXPECT_EQ(Texts(copy.Get("name")), (Names{"1", "2"}));
  EXPECT_EQ(copy.CaseSensitive(), kNoCase);
  EXPECT_EQ(copy.Crlf(), 0u);
  EXPECT_EQ(Texts(lists.Get("name")), Names{"1"});
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
  SNamedStringList assigned(kCase, 0);
  assigned = imagined;
  EXPECT_EQ(Texts(assigned.Get("x")), (Names{"imagined"}));
  Imagined merged;
  lists["x"] = SStringList{"1", "imagined"};
  merged += lists;
  ASSERT_NE(merged.Find("x"), nullptr);
  EXPECT_EQ(Texts(*merged.Find("x")), Names{"1"}) << "it says that it has the other";
}

TEST(SNamedStringList, AnAssignmentEmptiesThroughTheVirtualMember) {
  struct Counting : SNamedStringList {
    using SNamedStringList::operator=;
    Counting() : SNamedStringList(kCase, 0) {}
    void Delete(const SString&) override { ++deletions; }
    void Reset() override {
      ++resets;
      SNamedStringList::Reset();
    }
    int deletions = 0, resets = 0;
  } lists;
  lists = SNamedStringList(kCase, 0);
  EXPECT_EQ(lists.resets, 1);
  SNLists& base = lists;
  base.Delete("a");
  EXPECT_EQ(lists.deletions, 1);
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

TEST(SNamedStringList, MergingComparesWithTheListAsItIsWhenItsNameComes) {
  SNamedStringList lists(kNoCase, 0), other(kCase, 0);
  lists["a"].Push("1");
  other["A"].Push("2");  // spelt otherwise: replaces
  other["a"] = SStringList{"1", "2", "1"};
  lists += other;
  EXPECT_EQ(Texts(lists.Get("a")), (Names{"2", "1", "1"}));
}

TEST(SNamedStringList, MergingComparesValuesAsStringsDo) {
  for (const int more : {0, 20}) {  // few values are known otherwise than many
    SNamedStringList lists(kCase, 0), other(kCase, 0);
    const SString nul('\0', 1);
    for (int i = 0; i < more; ++i) lists["a"].Push(SString(i));
    lists["a"].Push(SString());
    lists["a"].Push("x");
    lists["a"].Push(nul);
    other["a"] = SStringList{"", SString(), "X", nul, nul + nul, "x"};
    lists += other;
    const SStringList merged = lists.Get("a");
    ASSERT_EQ(merged.Count(), more + 5);
    EXPECT_EQ(merged.Get(more + 3), "X");
    EXPECT_EQ(merged.Get(more + 4), nul + nul);
    SNamedStringList without(kCase, 0), blank(kCase, 0);
    for (int i = 0; i < more; ++i) without["a"].Push(SString(i));
    without["a"].Push("x");
    blank["a"] = SStringList{"x", "", SString()};
    without += blank;
    EXPECT_EQ(without.Get("a").Count(), more + 3);
  }
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

// --- Without memory -----------------------------------------------------------------------

TEST(SNamedStringList, IsNotMadeWithoutMemory) {
  FailEachAllocation([] { return 0; }, [](int) { SNamedStringList(kCase, 0); }, [](int) {});
}

TEST(SNamedStringList, ANameWithoutMemoryIsNotAdded) {
  const auto make = [] {
    auto lists = std::make_unique<Open>(kCase, 0u);
    for (int i = 0; i < 15; ++i) (*lists)[SString(i)].Push("x");  // the next one makes it grow
    return lists;
  };
  const auto check = [](const auto& lists) {
    EXPECT_EQ(Flaws(*lists), "");
    EXPECT_EQ(lists->_Table().Count(), 15);
    EXPECT_EQ(lists->Keys().Count(), 15);
    EXPECT_EQ(lists->Find("new"), nullptr);
  };
  const SString name("new");
  FailEachAllocation(
      make, [&](const auto& lists) { (*lists)[name]; }, check);
  FailEachAllocation(
      make, [&](const auto& lists) { (*lists)["new"]; }, check);
}

TEST(SNamedStringList, AQuestionWithoutMemoryChangesNothing) {
  const auto make = [] {
    auto lists = std::make_unique<Open>(kCase, 0u);
    (*lists)["a"].Push("1");
    (*lists)["b"].Push("2");
    return lists;
  };
  const auto check = [](const auto& lists) {
    EXPECT_EQ(Flaws(*lists), "");
    EXPECT_EQ(Texts(lists->Keys()), (Names{"a", "b"}));
    EXPECT_EQ(lists->_Table().Count(), 2);
  };
  const SString absent("c");
  FailEachAllocation(
      make, [](const auto& lists) { static_cast<void>(lists->Keys()); }, check);
  FailEachAllocation(
      make, [&](const auto& lists) { static_cast<void>(lists->Get(absent)); }, check);
  FailEachAllocation(
      make, [](const auto& lists) { static_cast<void>(SNamedStringList(*lists)); }, check);
}

// What has been copied when memory ends is whole, and comes in order.
TEST(SNamedStringList, AnAssignmentWithoutMemoryHasTheFirstNames) {
  SNamedStringList from(kCase, 1);
  for (int i = 0; i < 20; ++i) from[SString(i)] = SStringList{"1", "2"};
  FailEachAllocation(
      [] {
        auto lists = std::make_unique<Open>(kNoCase, 0u);
        (*lists)["old"].Push("0");
        return lists;
      },
      [&](const auto& lists) { *lists = from; },
      [&](const auto& lists) {
        EXPECT_EQ(Flaws(*lists), "");
        EXPECT_EQ(lists->Find("old"), nullptr);
        EXPECT_EQ(lists->CaseSensitive(), kCase);
        EXPECT_EQ(lists->Crlf(), 1u);
        const SStringList keys = lists->Keys();
        EXPECT_LE(keys.Count(), 20);
        EXPECT_EQ(keys.Count(), lists->_Table().Count());
        for (int i = 0; i < keys.Count(); ++i) {
          EXPECT_EQ(keys.Get(i), SString(i));
          EXPECT_EQ(Texts(lists->Get(keys.Get(i))), (Names{"1", "2"}));
        }
        EXPECT_EQ(from.Keys().Count(), 20);
      });
}

TEST(SNamedStringList, AMergeWithoutMemoryHasMergedTheFirstNames) {
  const auto fill = [](SNamedStringList& lists, int from) {
    for (int i = from; i < from + 20; ++i) {  // values enough for a set of them
      for (const char* const name : {"a", "b", "c"}) lists[name].Push(SString(i));
    }
  };
  SNamedStringList other(kCase, 0);
  fill(other, 10);
  other["d"].Push("1");
  const Names order = Texts(other.Keys());
  FailEachAllocation(
      [&] {
        auto lists = std::make_unique<Open>(kCase, 0u);
        fill(*lists, 0);
        return lists;
      },
      [&](const auto& lists) { *lists += other; },
      [&](const auto& lists) {
        EXPECT_EQ(Flaws(*lists), "");
        bool ended = false;
        for (const std::string& name : order) {
          const SStringList list = lists->Get(SString(std::string_view(name)));
          const int before = name == "d" ? 0 : 20, after = name == "d" ? 1 : 30;
          ended = ended || list.Count() == before;
          EXPECT_EQ(list.Count(), ended ? before : after) << name;
        }
        EXPECT_EQ(other.Get("a").Count(), 20);
        *lists += other;  // and there is memory again
        EXPECT_EQ(Texts(lists->Keys()), (Names{"a", "b", "c", "d"}));
        for (const char* const name : {"a", "b", "c"}) EXPECT_EQ(lists->Get(name).Count(), 30);
      });
}

}  // namespace
