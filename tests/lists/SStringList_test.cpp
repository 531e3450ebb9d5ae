#include "lists/SStringList.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <functional>
#include <limits>
#include <memory>
#include <new>
#include <random>
#include <ranges>
#include <string>
#include <vector>

#include "strings/SFixedString.h"
#include "strings/SSubString.h"
#include "support/CheckText.h"
#include "support/CountedNew.h"
#include "support/FailEachAllocation.h"
#include "support/SStringListPeek.h"

// A string that an index before the beginning makes is never freed, on purpose.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions() {
  return "leak:mailhearth::SStringList::operator[]";
}

namespace {

using Expected = std::vector<std::string>;

const char* const kNull = nullptr;
const std::string kUndefined = "(undefined)";

void CheckList(const SStringList& list, const Expected& elements) {
  EXPECT_STREQ(Flaw(list), "");
  EXPECT_TRUE(list.Defined());
  EXPECT_EQ(list.Count(), static_cast<int>(elements.size()));
  EXPECT_EQ(Texts(list), elements);
}

void CheckUndefined(const SStringList& list, const Expected& elements = {}) {
  EXPECT_STREQ(Flaw(list), "");
  EXPECT_FALSE(list.Defined());
  EXPECT_EQ(Texts(list), elements);
}

int Links(const SStringList& list) { return SStringListPeek::Rep(list).links; }

// --- Nodes --------------------------------------------------------------------------------

TEST(SStringItem, IsARingOfOneAndAString) {
  const SString s("abc");
  SStringItem fromString(s), fromText("abc"), fromByte('c'), undefined;
  for (SStringItem* const item : {&fromString, &fromText, &fromByte, &undefined}) {
    EXPECT_EQ(item->next, item);
    EXPECT_EQ(item->prev, item);
    EXPECT_EQ(static_cast<void*>(item), &item->value);
  }
  EXPECT_TRUE(SStringPeek::Shares(fromString.value, s));
  CheckText(fromText.value, "abc");
  CheckText(fromByte.value, "c");
  ::CheckUndefined(undefined.value);
  const SString& asString = fromText;
  EXPECT_EQ(&asString, &fromText.value);
}

TEST(SStringItem, LeavesItsRingWhenItGoes) {
  SStringItem a("a"), c("c");
  {
    SStringItem b("b");
    a.next = c.prev = &b;
    b.prev = &a;
    b.next = &c;
    c.next = &a;
    a.prev = &c;
  }
  EXPECT_EQ(a.next, &c);
  EXPECT_EQ(c.prev, &a);
}

// --- Making lists -------------------------------------------------------------------------

TEST(SStringList, ByDefaultIsUndefinedAndEmpty) {
  const SStringList list;
  CheckUndefined(list);
  EXPECT_EQ(Links(list), 1);
  EXPECT_EQ(sizeof list, sizeof(void*));
}

TEST(SStringList, FromOneStringIsDefined) {
  CheckList(SStringList(SString("a")), {"a"});
  CheckList(SStringList("a"), {"a"});
  CheckList(SStringList(SString()), {kUndefined});
  CheckList(SStringList(kNull), {""});
}

TEST(SStringList, FromAnArrayTakesAllUpToTheNull) {
  const char* texts[] = {"a", "", "c", nullptr, "d"};
  CheckList(SStringList(texts), {"a", "", "c"});
  CheckList(SStringList(texts + 3), {});
  CheckUndefined(SStringList(static_cast<const char**>(nullptr)));
}

TEST(SStringList, FromElementsInBraces) {
  CheckList(SStringList{"a", SString("b"), SString()}, {"a", "b", kUndefined});
  CheckList({"a"}, {"a"});
  CheckUndefined(SStringList{});
}

TEST(SStringList, ACopyShares) {
  const SStringList list = {"a", "b"};
  const AllocationCount allocations;
  const SStringList copy(list);
  SStringList assigned = copy;
  assigned = list;
  EXPECT_EQ(allocations.Made(), 0);
  EXPECT_EQ(Links(list), 3);
  EXPECT_TRUE(SStringListPeek::Shares(list, copy));
}

TEST(SStringList, AssignmentTakesListsStringsAndArrays) {
  const char* texts[] = {"x", "y", nullptr};
  SStringList list = {"a", "b"};
  const SStringList copy(list);
  list = SString("c");
  CheckList(list, {"c"});
  list = "d";
  CheckList(list, {"d"});
  list = texts;
  CheckList(list, {"x", "y"});
  list = static_cast<const char**>(nullptr);
  CheckUndefined(list);
  list = kNull;
  CheckList(list, {""});
  list = {"e", "f"};
  CheckList(list, {"e", "f"});
  list = copy;
  CheckList(list, {"a", "b"});
  const SStringList& self = list;
  list = self;
  CheckList(list, {"a", "b"});
  EXPECT_EQ(Links(copy), 2);
}

TEST(SStringList, AssignmentFromAnElementOfItsOwn) {
  SStringList list = {"a", "b"};
  list = list[1];
  CheckList(list, {"b"});
  list = list[0].Data();
  CheckList(list, {"b"});
}

TEST(SStringList, AMovedFromListIsUndefinedAndOfUse) {
  SStringList list = {"a", "b"};
  SStringList taken = std::move(list);
  CheckList(taken, {"a", "b"});
  CheckUndefined(list);
  EXPECT_EQ(Links(taken), 1);
  list.Push("c");
  CheckList(list, {"c"});
  taken = std::move(list);
  CheckList(taken, {"c"});
  CheckUndefined(list);
  ::CheckUndefined(list.Pop());
  CheckUndefined(list);
  SStringList* const same = &taken;
  taken = std::move(*same);
  CheckList(taken, {"c"});
}

TEST(SStringList, InsertingAMovedFromListLeavesItAsItIs) {
  for (const int pos : {-1, 0, 2}) {
    SStringList a = {"a"}, other = {"b"};
    const SStringList taken(std::move(a)), taken2(std::move(other));
    SStringList list;
    list.Insert(a, pos);
    EXPECT_EQ(list.Count(), std::max(pos, 0));
    list.Push("x");
    CheckUndefined(a);
    CheckUndefined(other);

    SStringList replaced = {"c"};
    replaced.Splice(0, 1, a);
    EXPECT_EQ(replaced.Count(), 0);
    replaced.Splice(pos, 1, a);
    CheckUndefined(a);
    CheckUndefined(other);
  }
}

TEST(SStringList, EveryEditOfAMovedFromListIsItsOwn) {
  const std::vector<std::function<void(SStringList&)>> edits = {[](SStringList& l) { l[0] = "x"; },
                                                                [](SStringList& l) { l[-1] = "x"; },
                                                                [](SStringList& l) { l.Chop(); },
                                                                [](SStringList& l) { l.Delete(0); },
                                                                [](SStringList& l) { l.Insert("x", 0); },
                                                                [](SStringList& l) { l.Insert(SStringList("x"), 3); },
                                                                [](SStringList& l) { l.Pop(); },
                                                                [](SStringList& l) { l.Push("x"); },
                                                                [](SStringList& l) { l.Push(l); },
                                                                [](SStringList& l) { l.Insert(l, 1); },
                                                                [](SStringList& l) { l.Reset(); },
                                                                [](SStringList& l) { l.Undef(); },
                                                                [](SStringList& l) { l.Reverse(); },
                                                                [](SStringList& l) { l.Shift(); },
                                                                [](SStringList& l) { l.Sort(); },
                                                                [](SStringList& l) { l.Splice(0, 1); },
                                                                [](SStringList& l) { l.Splice(0); },
                                                                [](SStringList& l) { l.Splice(1, 2, l); },
                                                                [](SStringList& l) { l.Unique(); },
                                                                [](SStringList& l) { l.Grep("s/a/b/"); },
                                                                [](SStringList& l) { l = SString("x"); },
                                                                [](SStringList& l) { l = {"x", "y"}; }};
  for (const auto& edit : edits) {
    SStringList a = {"a"}, other = {"b"};
    const SStringList taken(std::move(a)), taken2(std::move(other));
    const SStringList sharer(a);
    edit(a);
    CheckUndefined(other);
    CheckUndefined(sharer);
  }
}

// --- Reading --------------------------------------------------------------------------------

TEST(SStringList, GetCountsFromBothEnds) {
  const SStringList list = {"a", "b", "c"};
  CheckText(list.Get(0), "a");
  CheckText(list.Get(2), "c");
  CheckText(list.Get(-1), "c");
  CheckText(list.Get(-3), "a");
  for (const int i : {3, -4, INT_MAX, INT_MIN}) ::CheckUndefined(list.Get(i));
  ::CheckUndefined(SStringList().Get(0));
  ::CheckUndefined(SStringList().Get(-1));
}

TEST(SStringList, FindsEveryElementFromEitherEnd) {
  SStringList list;
  for (int i = 0; i < 10; ++i) list.Push(SString(i));
  for (int i = 0; i < 10; ++i) {
    CheckText(list.Get(i), std::to_string(i));
    CheckText(list.Get(i - 10), std::to_string(i));
    CheckText(list[i], std::to_string(i));
  }
}

TEST(SStringList, OfAConstantListTheIndexReadsAsGet) {
  const SStringList list = {"a", "b"};
  const SStringList copy(list);
  CheckText(list[0], "a");
  CheckText(list[-1], "b");
  ::CheckUndefined(list[2]);
  EXPECT_TRUE(SStringListPeek::Shares(list, copy));
}

TEST(SStringList, IndexReturnsAnElementThatCanBeEdited) {
  SStringList list = {"a", "b", "c"};
  const SStringList copy(list);
  list[1] += "x";
  list[-1] = "y";
  CheckList(list, {"a", "bx", "y"});
  CheckList(copy, {"a", "b", "c"});
}

TEST(SStringList, IndexPastTheEndGrowsTheList) {
  SStringList list = {"a", "b", "c"};
  list[5] = "f";
  CheckList(list, {"a", "b", "c", kUndefined, kUndefined, "f"});
  SStringList undefined;
  undefined[0];
  CheckList(undefined, {kUndefined});
}

TEST(SStringList, IndexTakesAllIntegers) {
  SStringList list = {"a", "b"};
  const SStringList copy(list);
  CheckText(list[1L], "b");
  CheckText(list[std::size_t{1}], "b");
  CheckText(copy[-1LL], "b");
  ::CheckUndefined(copy[1L << 40]);
  ::CheckUndefined(copy[std::numeric_limits<long>::min()]);
}

TEST(SStringList, IndexBeforeTheBeginningIsAStringOfNobody) {
  SStringList list = {"a", "b", "c"};
  SString& one = list[-4];
  SString& other = list[INT_MIN];
  ::CheckUndefined(one);
  one = "x";
  ::CheckUndefined(other);
  EXPECT_NE(&one, &other);
  CheckList(list, {"a", "b", "c"});
}

TEST(SStringList, IndexAlwaysMakesTheListUnique) {
  SStringList list = {"a"};
  const SStringList copy(list);
  static_cast<void>(list[0]);
  EXPECT_FALSE(SStringListPeek::Shares(list, copy));
  EXPECT_TRUE(SStringPeek::Shares(list[0], copy[0])) << "the strings go on sharing";
}

TEST(SStringList, ReadingASharedListDetachesNothing) {
  const SString a("a"), b("b");
  SStringList list = {a, b};
  const SStringList copy(list);
  const AllocationCount allocations;
  int bytes = 0;
  for (const SString& s : list) bytes += s.Length();
  bytes += list.Index(b) + list.Contains(a) + Length(list) + list.Count();
  EXPECT_TRUE(list == copy);
  EXPECT_EQ(bytes, 2 + 1 + 1 + 2 + 2);
  EXPECT_EQ(allocations.Made(), 0);
  EXPECT_TRUE(SStringListPeek::Shares(list, copy));
}

TEST(SStringList, IsARangeThatCanBeWalkedBothWays) {
  static_assert(std::ranges::bidirectional_range<SStringList>);
  static_assert(std::ranges::common_range<const SStringList>);
  const SStringList list = {"a", "b", "c"};
  std::string back;
  for (auto at = list.end(); at != list.begin();) back += (--at)->View();
  EXPECT_EQ(back, "cba");
  EXPECT_EQ(std::ranges::count_if(list, [](const SString& s) { return s > "a"; }), 2);
  EXPECT_EQ(std::ranges::distance(SStringList()), 0);
  auto at = list.begin();
  EXPECT_EQ((at++)->View(), "a");
  EXPECT_EQ((at--)->View(), "b");
  EXPECT_EQ(at, list.begin());
}

TEST(SStringList, EqualityComparesElementsNotDefinedness) {
  const SStringList ab = {"a", "b"}, same = {"a", "b"}, other = {"a", "c"},
                    longer = {"a", "b", "c"};
  EXPECT_TRUE(ab == same);
  EXPECT_TRUE(ab == SStringList(ab));
  EXPECT_FALSE(ab == other);
  EXPECT_FALSE(ab == longer);
  EXPECT_TRUE(ab != other);
  EXPECT_TRUE(SStringList() == DefinedEmpty());
  EXPECT_TRUE(SStringList(SString()) == SStringList(""));
  EXPECT_FALSE(SStringList() == SStringList(""));
}

TEST(SStringList, SearchesForElements) {
  const SStringList list = {"a", "", SString("b\0", 2), "a"};
  EXPECT_EQ(list.Index("a"), 0);
  EXPECT_EQ(list.Index(SString("b\0", 2)), 2);
  EXPECT_EQ(list.Index("b"), -1);
  EXPECT_EQ(list.Index("A"), -1);
  EXPECT_EQ(list.Index(SString()), 1) << "undefined equals empty";
  EXPECT_EQ(list.Index(kNull), 1);
  EXPECT_TRUE(list.Contains("a"));
  EXPECT_FALSE(list.Contains(SString("x")));
  EXPECT_FALSE(SStringList().Contains(""));
  EXPECT_EQ(SStringList().Index("a"), -1);
}

TEST(SStringList, SliceCopiesARange) {
  const SStringList list = {"a", "b", "c", "d"};
  CheckList(list.Slice(1, 2), {"b", "c"});
  CheckList(list.Slice(0, 3), {"a", "b", "c", "d"});
  CheckList(list.Slice(3, 3), {"d"});
  struct Bad {
    int from, to;
  };
  constexpr Bad kBad[] = {{-1, 2}, {2, 1}, {0, 4}, {4, 4}, {INT_MIN, INT_MAX}, {0, -1}};
  for (const Bad& bad : kBad) CheckUndefined(list.Slice(bad.from, bad.to));
  CheckUndefined(SStringList().Slice(0, 0));
}

TEST(SStringList, JoinPutsSeparatorsBetween) {
  const SStringList list = {"a", "", "c"};
  CheckText(list.Join(", "), "a, , c");
  CheckText(list.Join(SString("\0", 1)), std::string_view("a\0\0c", 4));
  CheckText(list.Join(), "ac");
  CheckText(SStringList("a").Join(", "), "a");
  CheckText(SStringList({SString(), SString()}).Join("-"), "-");
  CheckText(DefinedEmpty().Join("-"), "");
  ::CheckUndefined(SStringList().Join("-"));
  ::CheckUndefined(SStringList().Join());
}

TEST(SStringList, JoinReservesItsStorageOnce) {
  SStringList list;
  for (int i = 0; i < 1000; ++i) list.Push("0123456789");
  const AllocationCount allocations;
  const SString joined = list.Join(", ");
  EXPECT_LE(allocations.Made(), 4);
  EXPECT_EQ(joined.Length(), 1000 * 12 - 2);
}

TEST(SStringList, ConvertsToAnArrayOfTexts) {
  const SStringList list = {"ab", "", SString("c\0d", 3), SString()};
  char** const texts = list;
  const std::unique_ptr<char*[]> array(texts);
  const std::unique_ptr<char[]> block(texts[0]);
  EXPECT_STREQ(texts[0], "ab");
  EXPECT_STREQ(texts[1], "");
  EXPECT_EQ(std::memcmp(texts[2], "c\0d", 4), 0);
  EXPECT_STREQ(texts[3], "");
  EXPECT_EQ(texts[4], nullptr);
  EXPECT_EQ(texts[1], texts[0] + 3) << "one block";
}

TEST(SStringList, ConvertsWhatHasNoElements) {
  const std::unique_ptr<char*[]> empty(static_cast<char**>(DefinedEmpty()));
  ASSERT_NE(empty, nullptr);
  EXPECT_EQ(empty[0], nullptr);
  EXPECT_EQ(static_cast<char**>(SStringList()), nullptr);
}

TEST(SStringList, ConvertsToNullWhenMemoryIsShort) {
  const SStringList list = {"a"};
  for (const int n : {0, 1}) {
    const FailNthAllocation fault(n);
    EXPECT_EQ(static_cast<char**>(list), nullptr);
    EXPECT_TRUE(fault.Fired());
  }
}

TEST(SStringList, CloneSharesNothing) {
  SFixedString nothing;
  const SStringList list = {"a", SString(), "", nothing};
  const SStringList clone = list.Clone();
  CheckList(clone, {"a", kUndefined, "", kUndefined});
  for (int i = 0; i < 3; ++i) EXPECT_FALSE(SStringPeek::Shares(list[i], clone[i]));
  const SStringList two = {"a", "b"}, twoCloned = two.Clone();
  for (int i = 0; i < 2; ++i) EXPECT_FALSE(SStringPeek::Shares(two[i], twoCloned[i]));
  CheckUndefined(SStringList().Clone());
  CheckList(DefinedEmpty().Clone(), {});
  SStringList four = {"a", "b", "c", "d"};
  CheckUndefined(four.Splice(1, 2).Clone(), {"b", "c"});
}

TEST(SStringList, ALengthPastTheLimitIsNotWrapped) {
  SFixedString large("", 1 << 30);  // whose bytes nobody reads
  const SString s = large;
  const SStringList list = {s, s, s};
  EXPECT_EQ(Length(list), INT_MAX);
  EXPECT_THROW(static_cast<void>(list.Join()), std::bad_alloc);
}

TEST(SStringList, LengthIsThatOfAllBytes) {
  EXPECT_EQ(Length(SStringList{"ab", "cde"}), 5);
  EXPECT_EQ(Length(SStringList()), 0);
  EXPECT_EQ(Length(SStringList{SString(), ""}), 0);
}

// --- Editing --------------------------------------------------------------------------------

using Edit = void (*)(SStringList&);
struct EditRow {
  const char* name;
  Edit edit;
  Expected after;  // of b, a, a
};

const EditRow kEdits[] = {
    {"push", [](SStringList& l) { l.Push("x"); }, {"b", "a", "a", "x"}},
    {"push string", [](SStringList& l) { l.Push(SString("x")); }, {"b", "a", "a", "x"}},
    {"push list",
     [](SStringList& l) {
       l.Push(SStringList{"x", "y"});
     },
     {"b", "a", "a", "x", "y"}},
    {"push itself", [](SStringList& l) { l.Push(l); }, {"b", "a", "a", "b", "a", "a"}},
    {"push own element", [](SStringList& l) { l.Push(l[0]); }, {"b", "a", "a", "b"}},
    {"push nothing", [](SStringList& l) { l.Push(SStringList()); }, {"b", "a", "a"}},
    {"pop", [](SStringList& l) { l.Pop(); }, {"b", "a"}},
    {"shift", [](SStringList& l) { l.Shift(); }, {"a", "a"}},
    {"delete", [](SStringList& l) { l.Delete(0); }, {"a", "a"}},
    {"delete last", [](SStringList& l) { l.Delete(2); }, {"b", "a"}},
    {"delete text", [](SStringList& l) { l.Delete("a"); }, {"b", "a"}},
    {"delete own element", [](SStringList& l) { l.Delete(l[1]); }, {"b", "a"}},
    {"chop", [](SStringList& l) { l.Chop(); }, {"", "", ""}},
    {"reverse", [](SStringList& l) { l.Reverse(); }, {"a", "a", "b"}},
    {"sort", [](SStringList& l) { l.Sort(); }, {"a", "a", "b"}},
    {"unique", [](SStringList& l) { l.Unique(); }, {"b", "a"}},
    {"reset", [](SStringList& l) { l.Reset(); }, {}},
    {"index", [](SStringList& l) { l[0] = "x"; }, {"x", "a", "a"}},
    {"insert", [](SStringList& l) { l.Insert("x", 1); }, {"b", "x", "a", "a"}},
    {"insert in front", [](SStringList& l) { l.Insert("x", 0); }, {"x", "b", "a", "a"}},
    {"insert at the end", [](SStringList& l) { l.Insert("x", 3); }, {"b", "a", "a", "x"}},
    {"insert itself", [](SStringList& l) { l.Insert(l, 1); }, {"b", "b", "a", "a", "a", "a"}},
    {"insert itself in front",
     [](SStringList& l) { l.Insert(l, 0); },
     {"b", "a", "a", "b", "a", "a"}},
    {"splice", [](SStringList& l) { l.Splice(0, 2); }, {"a"}},
    {"splice all", [](SStringList& l) { l.Splice(0, 3); }, {}},
    {"splice rest", [](SStringList& l) { l.Splice(1); }, {"b"}},
    {"splice in", [](SStringList& l) { l.Splice(1, 1, "x"); }, {"b", "x", "a"}},
    {"splice in itself", [](SStringList& l) { l.Splice(1, 1, l); }, {"b", "b", "a", "a", "a"}},
    {"splice all for itself", [](SStringList& l) { l.Splice(0, 3, l); }, {"b", "a", "a"}},
};

TEST(SStringList, AnEditChangesItsHandle) {
  for (const EditRow& row : kEdits) {
    SCOPED_TRACE(row.name);
    SStringList list = {"b", "a", "a"};
    row.edit(list);
    CheckList(list, row.after);
  }
}

TEST(SStringList, ASharedCopyDoesNotSeeTheEdit) {
  for (const EditRow& row : kEdits) {
    SCOPED_TRACE(row.name);
    SStringList list = {"b", "a", "a"};
    const SStringList copy(list);
    row.edit(list);
    CheckList(list, row.after);
    CheckList(copy, {"b", "a", "a"});
  }
}

TEST(SStringList, AnEditThatFindsNoMemoryLosesNothing) {
  for (const EditRow& row : kEdits) {
    SCOPED_TRACE(row.name);
    for (const bool shared : {false, true}) {
      for (int n = 0;; ++n) {
        SStringList list = {"b", "a", "a"};
        const SStringList sharer = shared ? list : SStringList();
        const bool failed = FailAllocation(n, [&] { row.edit(list); }).fired;
        EXPECT_STREQ(Flaw(list), "");
        if (shared) CheckList(sharer, {"b", "a", "a"});
        if (!failed) break;
      }
    }
  }
}

TEST(SStringList, PushAppendsAndCounts) {
  SStringList list;
  EXPECT_EQ(list.Push("a"), 1);
  EXPECT_EQ(list.Push(SString("b")), 2);
  EXPECT_EQ(list.Push(SStringList{"c", "d"}), 4);
  EXPECT_EQ(list.Push(kNull), 5);
  EXPECT_EQ(list.Push(SString()), 6);
  CheckList(list, {"a", "b", "c", "d", "", kUndefined});
}

TEST(SStringList, PushOfAnEmptyListDefinesIfThatIsDefined) {
  SStringList list;
  EXPECT_EQ(list.Push(SStringList()), 0);
  CheckUndefined(list);
  EXPECT_EQ(list.Push(DefinedEmpty()), 0);
  CheckList(list, {});
}

TEST(SStringList, PopAndShiftTakeFromTheEnds) {
  SStringList list = {"a", "b", "c"};
  CheckText(list.Pop(), "c");
  CheckText(list.Shift(), "a");
  CheckText(list.Pop(), "b");
  CheckList(list, {});
  ::CheckUndefined(list.Pop());
  ::CheckUndefined(list.Shift());
  CheckList(list, {});
  SStringList one("x"), undefined;
  CheckText(one.Shift(), "x");
  CheckList(one, {});
  ::CheckUndefined(undefined.Pop());
  ::CheckUndefined(undefined.Shift());
  CheckUndefined(undefined);
}

TEST(SStringList, ShiftAndSortOfTooFewDetachNothing) {
  SStringList empty, one("a");
  const SStringList emptyCopy(empty), oneCopy(one);
  empty.Shift();
  empty.Sort();
  empty.Reverse();
  empty.Unique();
  empty.Chop();
  one.Sort();
  one.Reverse();
  one.Unique();
  EXPECT_TRUE(SStringListPeek::Shares(empty, emptyCopy));
  EXPECT_TRUE(SStringListPeek::Shares(one, oneCopy));
  CheckUndefined(empty);
}

TEST(SStringList, DetachingAnUndefinedEmptyListDefinesIt) {
  SStringList list;
  const SStringList copy(list);
  ::CheckUndefined(list.Pop());
  CheckList(list, {});
  CheckUndefined(copy);
}

TEST(SStringList, DeleteTakesOneElement) {
  SStringList list = {"a", "b", "a"};
  EXPECT_FALSE(list.Delete(-1));
  EXPECT_FALSE(list.Delete(3));
  EXPECT_FALSE(list.Delete(INT_MIN));
  EXPECT_FALSE(list.Delete("x"));
  EXPECT_FALSE(list.Delete(SString("x")));
  CheckList(list, {"a", "b", "a"});
  EXPECT_TRUE(list.Delete(SString("a")));
  CheckList(list, {"b", "a"});
  EXPECT_TRUE(list.Delete(1));
  EXPECT_TRUE(list.Delete('b'));
  CheckList(list, {});
  EXPECT_FALSE(list.Delete(0));
}

TEST(SStringList, ChopReturnsWhatTheLastElementLost) {
  SStringList list = {"ab", "", "c\xC8"};
  EXPECT_EQ(list.Chop(), 0xC8);
  CheckList(list, {"a", "", "c"});
  SStringList last = {"a", ""};
  EXPECT_EQ(last.Chop(), 0);
  EXPECT_EQ(SStringList().Chop(), 0);
}

TEST(SStringList, ResetAndUndef) {
  SStringList list = {"a"}, shared = {"a"}, undefined;
  const SStringList copy(shared);
  list.Reset();
  CheckList(list, {});
  undefined.Reset();
  CheckList(undefined, {});
  shared.Undef();
  CheckUndefined(shared);
  CheckList(copy, {"a"});
  list.Undef();
  CheckUndefined(list);
}

TEST(SStringList, UniqueRemovesNeighboursOnly) {
  SStringList list = {"a", "a", "b", "a"}, all = {"a", "a", "a"}, undefined = {"", SString(), ""};
  list.Unique();
  CheckList(list, {"a", "b", "a"});
  all.Unique();
  CheckList(all, {"a"});
  undefined.Unique();
  CheckList(undefined, {""});
}

TEST(SStringList, InsertIgnoresPlacesOutside) {
  SStringList list = {"a", "b"};
  for (const int pos : {-1, 3, INT_MIN, INT_MAX}) list.Insert("x", pos);
  list.Insert(SStringList(), 1);
  CheckList(list, {"a", "b"});
}

TEST(SStringList, InsertIntoAnEmptyListShares) {
  const SStringList from = {"x", "y"};
  for (const int pos : {0, -5}) {
    SStringList list;
    list.Insert(from, pos);
    CheckList(list, {"x", "y"});
    EXPECT_TRUE(SStringListPeek::Shares(list, from));
  }
}

TEST(SStringList, InsertIntoAnEmptyListPastItsEndShowsInTheSourceToo) {
  SStringList from = {"x", "y"};
  const SStringList sharer(from);
  SStringList list;
  list.Insert(from, 2);
  for (const SStringList& each : {list, from, sharer}) {
    CheckList(each, {kUndefined, kUndefined, "x", "y"});
  }
  SStringList undefined, other;
  other.Insert(undefined, 1);
  CheckList(other, {kUndefined});
  CheckList(undefined, {kUndefined});
}

TEST(SStringList, SpliceTakesARunOut) {
  SStringList list = {"a", "b", "c", "d"};
  const SStringList middle = list.Splice(1, 2);
  CheckUndefined(middle, {"b", "c"});
  CheckList(list, {"a", "d"});
  EXPECT_EQ(static_cast<char**>(middle), nullptr) << "undefined, although it holds elements";
  CheckUndefined(list.Splice(0, 1), {"a"});
  CheckList(list, {"d"});
}

TEST(SStringList, SpliceOfAllReturnsADefinedList) {
  SStringList list = {"a", "b", "c", "d"};
  CheckList(list.Splice(0, 4), {"a", "b", "c", "d"});
  CheckList(list, {});
}

TEST(SStringList, SpliceMovesTheNodesThemselves) {
  SStringList list = {"a", "b", "c"};
  const SString* const b = &list[1];
  const SStringList removed = list.Splice(1, 1);
  EXPECT_EQ(&*removed.begin(), b);
}

TEST(SStringList, SpliceOutsideChangesNothing) {
  struct Bad {
    int off, len;
  };
  constexpr Bad kBad[] = {{-1, 1},
                          {0, -1},
                          {0, 0},
                          {0, 4},
                          {2, 2},
                          {3, 0},
                          {3, 1},
                          {INT_MAX, INT_MAX},
                          {INT_MIN, INT_MIN},
                          {1, INT_MAX},
                          {INT_MAX, 1}};
  SStringList list = {"a", "b", "c"};
  for (const Bad& bad : kBad) CheckUndefined(list.Splice(bad.off, bad.len));
  for (const int off : {-1, 3, INT_MIN, INT_MAX}) CheckUndefined(list.Splice(off));
  CheckList(list, {"a", "b", "c"});
  CheckUndefined(SStringList().Splice(0));
  CheckUndefined(DefinedEmpty().Splice(0, 0));
}

TEST(SStringList, SpliceInsertsAlsoWhereNothingWasRemoved) {
  SStringList list = {"a", "b"};
  CheckUndefined(list.Splice(1, 0, SStringList{"x", "y"}));
  CheckList(list, {"a", "x", "y", "b"});
  CheckUndefined(list.Splice(4, 5, "z"));
  CheckList(list, {"a", "x", "y", "b", "z"});
  CheckUndefined(list.Splice(9, 0, "z"));
  CheckList(list, {"a", "x", "y", "b", "z"});
  SStringList empty, source = {"x"};
  CheckUndefined(empty.Splice(2, 0, source));
  CheckList(empty, {kUndefined, kUndefined, "x"});
  CheckList(source, {kUndefined, kUndefined, "x"});
}

// --- Sorting --------------------------------------------------------------------------------

TEST(SStringList, SortsByBytes) {
  SStringList list = {"b", "", "ab", "a"};
  list.Sort();
  CheckList(list, {"", "a", "ab", "b"});
  SStringList bytes = {"\xC8", "a", SString("a\0", 2), "B", SString(), "aaaaaaaab", "aaaaaaaaa"};
  bytes.Sort();
  CheckList(bytes, {kUndefined, "B", "a", std::string("a\0", 2), "aaaaaaaaa", "aaaaaaaab", "\xC8"});
}

TEST(SStringList, SortsListsOfAllShapes) {
  std::mt19937 random(3);
  for (const int n : {2, 3, 10, 1000}) {
    for (const int shape : {0, 1, 2, 3}) {
      std::vector<std::string> texts;
      SStringList list;
      for (int i = 0; i < n; ++i) {
        const int number = shape == 0   ? static_cast<int>(random() % 100000)
                           : shape == 1 ? i
                           : shape == 2 ? n - i
                                        : 7;
        texts.push_back("some prefix " + std::to_string(number));
        list.Push(texts.back().c_str());
      }
      std::sort(texts.begin(), texts.end());
      list.Sort();
      CheckList(list, texts);
    }
  }
}

TEST(SStringList, SortExchangesValuesNotNodes) {
  SStringList list = {"c", "b", "a"};
  const SString* nodes[3];
  for (int i = 0; i < 3; ++i) nodes[i] = &list[i];
  list.Sort();
  list.Reverse();
  for (int i = 0; i < 3; ++i) EXPECT_EQ(&list[i], nodes[i]);
  CheckList(list, {"c", "b", "a"});
}

TEST(SStringList, TenMillionElementsNeedNoStack) {
  constexpr int kMany = 10'000'000;
  const SString s("x");
  SStringList list;
  for (int i = 0; i < kMany; ++i) list.Push(s);
  EXPECT_EQ(list.Count(), kMany);
  EXPECT_EQ(Length(list), kMany);
  EXPECT_EQ(list.Join().Length(), kMany);
  CheckText(list.Slice(kMany - 2, kMany - 1).Join(), "xx");
  list.Sort();
  list.Unique();
  CheckList(list, {"x"});
}

// --- Lists of changed elements ----------------------------------------------------------------

TEST(SStringList, BaseNameAndCaseMakeNewLists) {
  const SStringList list = {"dir/A.c", "B.c"};
  CheckList(BaseName(list, ".c"), {"A", "B"});
  CheckList(LowerCase(list), {"dir/a.c", "b.c"});
  CheckList(UpperCase(list), {"DIR/A.C", "B.C"});
  CheckList(list, {"dir/A.c", "B.c"});
  CheckList(LowerCase(DefinedEmpty()), {});
  CheckUndefined(UpperCase(SStringList()));
  CheckUndefined(BaseName(SStringList(), ""));
  SStringList four = {"a", "b", "c", "d"};
  CheckList(UpperCase(four.Splice(1, 2)), {"B", "C"});
}

}  // namespace
