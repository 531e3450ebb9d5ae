#include "tables/STable.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <iterator>
#include <map>
#include <memory>
#include <new>
#include <random>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "strings/SFixedString.h"
#include "support/CheckText.h"
#include "support/CountedNew.h"
#include "support/ExactInput.h"
#include "support/FailEachAllocation.h"
#include "support/Growth.h"
#include "support/SStringListPeek.h"
#include "support/STablePeek.h"
#include "support/Text.h"

namespace {

using Names = std::vector<std::string>;

constexpr unsigned kNoCase = 0;
constexpr unsigned kCase = 1;

static_assert(std::has_virtual_destructor_v<STable>);
static_assert(std::has_virtual_destructor_v<STableItem>);

// An entry with a number, which says when it goes.
struct Numbered : STableItem {
  explicit Numbered(int n = 0, Names* log = nullptr) : number(n), gone(log) {}
  ~Numbered() override {
    if (gone != nullptr) gone->emplace_back(key.View());
  }

  int number;
  Names* gone;
};

void AddNumber(STable& table, const std::string& key, int n, Names* gone = nullptr) {
  table.Add(Text(key), new Numbered(n, gone));
}

// The number stored under a key; -1 when there is none.
int NumberOf(const STable& table, const std::string& key) {
  const auto* const found = static_cast<const Numbered*>(table.Lookup(Text(key)));
  EXPECT_EQ(found, table.Lookup(key)) << "a view finds another entry";
  return found == nullptr ? -1 : found->number;
}

void FillUpTo(STable& table, int count) {
  for (int i = table.Count(); i < count; ++i) AddNumber(table, std::to_string(i), i);
}

// --- Hash ---------------------------------------------------------------------------------

TEST(STable, TheHashIsThatOfTheLowerCaseBytes) {
  EXPECT_EQ(STablePeek::Hash(""), 0u);
  EXPECT_EQ(STablePeek::Hash("a"), 97u);
  EXPECT_EQ(STablePeek::Hash("A"), 97u);
  EXPECT_EQ(STablePeek::Hash("ab"), 97u * 33 + 98);
  EXPECT_EQ(STablePeek::Hash("aB"), STablePeek::Hash("Ab"));
  EXPECT_EQ(STablePeek::Hash(std::string_view("\0", 1)), 0u);
  EXPECT_EQ(STablePeek::Hash(std::string_view("a\0", 2)), 97u * 33);
  EXPECT_EQ(STablePeek::Hash("[@`{"), ((91u * 33 + 64) * 33 + 96) * 33 + 123);
}

TEST(STable, TheHashReadsBytesUnsignedAndWraps) {
  EXPECT_EQ(STablePeek::Hash("\xFF"), 255u);
  EXPECT_EQ(STablePeek::Hash("\xC4"), 0xC4u);
  EXPECT_EQ(STablePeek::Hash(std::string(7, '\xFF')), 0x12AC9859u);
}

TEST(STable, TheHashIsTheSameByteByByte) {
  std::mt19937 random(1);
  for (std::size_t size = 0; size < 50; ++size) {
    for (int round = 0; round < 100; ++round) {
      std::string key(size, '\0');
      std::uint32_t expected = 0;
      for (char& c : key) {
        const auto byte = static_cast<unsigned char>(random());
        const bool upper = byte >= 'A' && byte <= 'Z';
        expected = expected * 33 + byte + (upper ? 'a' - 'A' : 0u);
        c = static_cast<char>(byte);
      }
      EXPECT_EQ(STablePeek::Hash(ExactInput(key).View()), expected) << size;
    }
  }
}

// --- Entries ------------------------------------------------------------------------------

TEST(STable, AnEntryHasAnUndefinedKeyOfItsOwnUntilItIsAdded) {
  Numbered one(1), two(2);
  EXPECT_FALSE(one.key.Defined());
  one.key += "x";
  CheckText(one.key, "x");
  EXPECT_FALSE(two.key.Defined());
}

// --- Buckets ------------------------------------------------------------------------------

TEST(STable, IsMadeWithTheBucketsAskedFor) {
  EXPECT_EQ(STable(0, kCase).Size(), 7);
  EXPECT_EQ(STable(1, kCase).Size(), 1);
  EXPECT_EQ(STable(100, kCase).Size(), 100);
  EXPECT_EQ(STable(-1, kCase).Size(), 7);
}

TEST(STable, GrowsBeforeTheEntryThatFindsMoreThanTwoForABucket) {
  STable table(0, kCase);
  FillUpTo(table, 15);
  EXPECT_EQ(table.Size(), 7);
  FillUpTo(table, 16);
  EXPECT_EQ(table.Size(), 17);
  FillUpTo(table, 35);
  EXPECT_EQ(table.Size(), 17);
  FillUpTo(table, 36);
  EXPECT_EQ(table.Size(), 37);
  EXPECT_STREQ(Flaw(table), "");
}

TEST(STable, GrowsAlsoBeforeAReplacement) {
  STable table(0, kCase);
  FillUpTo(table, 15);
  AddNumber(table, "3", 33);
  EXPECT_EQ(table.Size(), 17);
  EXPECT_EQ(table.Count(), 15);
  EXPECT_EQ(NumberOf(table, "3"), 33);
}

TEST(STable, GrowsAlongTheSeries) {
  STable table(0, kCase);
  for (const int size : {17, 37, 79, 163, 331, 673, 1361, 2729, 5471, 10949, 21898, 43796, 87592}) {
    STablePeek::Enlarge(table);
    EXPECT_EQ(table.Size(), size);
  }
}

TEST(STable, GrowsFromAnySizeToTheSeries) {
  struct Row {
    int from, to;
  };
  constexpr Row kRows[] = {{1, 7},   {3, 7},   {4, 17},       {8, 17},       {9, 37},
                           {18, 37}, {19, 79}, {5474, 10949}, {5475, 10950}, {6000, 12000}};
  for (const Row& row : kRows) {
    STable table(row.from, kCase);
    STablePeek::Enlarge(table);
    EXPECT_EQ(table.Size(), row.to) << row.from;
  }
}

TEST(STable, ChainsAreInTheOrderOfAddition) {
  STable table(1, kCase);
  for (const char* const key : {"b", "a", "c"}) AddNumber(table, key, 0);
  EXPECT_EQ(Chain(table, 0), (Names{"b", "a", "c"}));
}

TEST(STable, AGrowingTableReversesTheChains) {
  STable table(1, kCase);
  // 97, 104 and 111 are 6 modulo 7, 98 is 0.
  for (const char* const key : {"a", "b", "h", "o"}) AddNumber(table, key, 0);
  EXPECT_EQ(table.Size(), 7);  // the fourth found three in one bucket
  EXPECT_EQ(Chain(table, 6), (Names{"h", "a", "o"}));
  EXPECT_EQ(Chain(table, 0), (Names{"b"}));
  EXPECT_EQ(Texts(table.Keys()), (Names{"a", "b", "h", "o"}));
}

TEST(STable, AGrowingTableTakesTheBucketsFromTheFirstOn) {
  STable table(2, kCase);
  // 97 and 111 are 1 modulo 2, 104 and 118 are 0; all are 6 modulo 7.
  for (const char* const key : {"a", "h", "o", "v"}) AddNumber(table, key, 0);
  STablePeek::Enlarge(table);
  EXPECT_EQ(Chain(table, 6), (Names{"o", "a", "v", "h"}));
}

// --- Keys ---------------------------------------------------------------------------------

TEST(STable, KeysOfAnEmptyTableAreUndefined) {
  STable table(0, kNoCase);
  EXPECT_FALSE(table.Keys().Defined());
  AddNumber(table, "a", 1);
  EXPECT_TRUE(table.Keys().Defined());
  table.Reset();
  EXPECT_FALSE(table.Keys().Defined());
  EXPECT_EQ(table.Keys().Count(), 0);
}

TEST(STable, WithoutCaseALaterFormReplacesInPlace) {
  STable table(0, kNoCase);
  for (const char* const key : {"first", "host", "last"}) AddNumber(table, key, 1);
  AddNumber(table, "Host", 2);
  EXPECT_EQ(Texts(table.Keys()), (Names{"first", "Host", "last"}));
  EXPECT_EQ(NumberOf(table, "hOST"), 2);
  EXPECT_EQ(table.Count(), 3);
  EXPECT_STREQ(Flaw(table), "");
}

TEST(STable, WithCaseBothFormsAreThereInOneBucket) {
  STable table(0, kCase);
  AddNumber(table, "host", 1);
  AddNumber(table, "Host", 2);
  EXPECT_EQ(Texts(table.Keys()), (Names{"host", "Host"}));
  EXPECT_EQ(NumberOf(table, "host"), 1);
  EXPECT_EQ(NumberOf(table, "Host"), 2);
  EXPECT_EQ(NumberOf(table, "HOST"), -1);
  const auto bucket = static_cast<int>(STablePeek::Hash("host") % 7);
  EXPECT_EQ(Chain(table, bucket), (Names{"host", "Host"}));
}

TEST(STable, ReplacingKeepsThePlaceInTheChain) {
  STable table(1, kNoCase);
  for (const char* const key : {"a", "b", "c"}) AddNumber(table, key, 1);
  AddNumber(table, "B", 2);
  AddNumber(table, "A", 2);
  // The first of these additions found three in one bucket: 97, 98 and 99 are 6, 0 and 1.
  EXPECT_EQ(table.Size(), 7);
  STable small(2, kNoCase);
  for (const char* const key : {"a", "c", "e"}) AddNumber(small, key, 1);
  AddNumber(small, "C", 2);
  EXPECT_EQ(Chain(small, 1), (Names{"a", "C", "e"}));
  EXPECT_EQ(Texts(small.Keys()), (Names{"a", "C", "e"}));
}

TEST(STable, KeysMayBeEmptyUndefinedOrHaveNul) {
  STable table(0, kCase);
  table.Add(SString(), new Numbered(1));
  EXPECT_EQ(NumberOf(table, ""), 1);
  table.Add(SString(""), new Numbered(2));  // equal, so a replacement
  EXPECT_EQ(table.Count(), 1);
  const std::string nul(1, '\0');
  AddNumber(table, nul, 3);  // same hash
  AddNumber(table, nul + nul, 4);
  EXPECT_EQ(table.Count(), 3);
  EXPECT_EQ(NumberOf(table, ""), 2);
  EXPECT_EQ(NumberOf(table, nul), 3);
  EXPECT_EQ(NumberOf(table, nul + nul), 4);
  EXPECT_EQ(NumberOf(table, nul + nul + nul), -1);
}

TEST(STable, AKeyIsKeptAsItWasAdded) {
  STable table(0, kCase);
  const SString key("key");
  table.Add(key, new Numbered(1));
  EXPECT_TRUE(SStringPeek::Shares(table.begin()->key, key));
  table.Add(SString(), new Numbered(2));
  table.Add(SString("x"), new Numbered(3));
  table.Add(SString(""), new Numbered(4));  // takes the place of the undefined one
  CheckText(table.Keys().Get(1), "");
  table.Add(SString(), new Numbered(5));
  CheckUndefined(table.Keys().Get(1));
}

TEST(STable, TheHashKeptIsComparedBeforeTheText) {
  SFixedString bytes("a", 1);
  STable table(1, kCase);
  table.Add(SString(bytes), new Numbered(1));
  bytes.SetBuffer("b", 1);  // now the text is not that of the hash
  EXPECT_EQ(table.Lookup("a"), nullptr);
  EXPECT_EQ(table.Lookup("b"), nullptr);
  bytes.SetBuffer("a", 1);
  EXPECT_NE(table.Lookup("a"), nullptr);
  table.Reset();
}

TEST(STable, IsLookedUpByAnyText) {
  STable table(0, kNoCase);
  AddNumber(table, "12", 5);
  SString text("x12");
  const char* const null = nullptr;
  EXPECT_NE(table.Lookup("12"), nullptr);
  EXPECT_NE(table.Lookup(std::string("12")), nullptr);
  EXPECT_NE(table.Lookup(std::string_view("123").substr(0, 2)), nullptr);
  EXPECT_NE(table.Lookup(12), nullptr);
  EXPECT_NE(table.Lookup(text.Segment(1, 2)), nullptr);
  EXPECT_EQ(table.Lookup('1'), nullptr);
  EXPECT_EQ(table.Lookup(0), nullptr);
  EXPECT_EQ(table.Lookup(null), nullptr);
  EXPECT_EQ(table.Lookup(nullptr), nullptr);
  const AllocationCount allocations;
  EXPECT_NE(table.Lookup("12"), nullptr);
  EXPECT_EQ(allocations.Made(), 0);
}

// --- Entries ------------------------------------------------------------------------------

TEST(STable, DestroysEntriesWhenTheyAreReplacedRemovedAndReset) {
  Names gone;
  {
    STable table(0, kNoCase);
    for (const char* const key : {"a", "b", "c", "d"}) AddNumber(table, key, 1, &gone);
    AddNumber(table, "B", 2, &gone);
    EXPECT_EQ(gone, (Names{"b"}));
    EXPECT_EQ(table.Remove("C"), 1);
    EXPECT_EQ(gone, (Names{"b", "c"}));
    EXPECT_EQ(table.Remove("C"), 0);
    EXPECT_STREQ(Flaw(table), "");
    gone.clear();
    table.Reset();  // bucket by bucket: 98, 100 and 97 are 0, 2 and 6
    EXPECT_EQ(gone, (Names{"B", "d", "a"}));
    EXPECT_EQ(table.Count(), 0);
    EXPECT_STREQ(Flaw(table), "");
    gone.clear();
    AddNumber(table, "e", 1, &gone);
  }
  EXPECT_EQ(gone, (Names{"e"}));
}

TEST(STable, RemovesFromEveryPlaceOfAChain) {
  for (const char* const key : {"a", "c", "e", "g"}) {
    STable table(2, kCase);
    for (const char* const added : {"a", "c", "e", "g"}) AddNumber(table, added, 1);
    EXPECT_EQ(table.Remove(key), 1);
    EXPECT_EQ(table.Remove("x"), 0);
    EXPECT_STREQ(Flaw(table), "");
    EXPECT_EQ(table.Count(), 3);
    EXPECT_FALSE(table.Keys().Contains(key));
  }
}

TEST(STable, AKeyMayBelongToTheEntryThatGoes) {
  STable table(0, kNoCase);
  AddNumber(table, "a key too long to lie in a small buffer", 1);
  const STableItem* const old = &*table.begin();
  table.Add(old->key, new Numbered(2));
  EXPECT_EQ(NumberOf(table, "A key too long to lie in a small buffer"), 2);
  EXPECT_EQ(table.Remove(table.begin()->key), 1);
  EXPECT_EQ(table.Count(), 0);
}

TEST(STable, AKeyMayBelongToTheEntryThatComes) {
  STable table(0, kNoCase);
  AddNumber(table, "A", 1);
  auto item = std::make_unique<Numbered>(2);
  item->key = "a";
  Numbered* const added = item.release();
  table.Add(added->key, added);
  EXPECT_EQ(NumberOf(table, "A"), 2);
  EXPECT_EQ(Texts(table.Keys()), Names{"a"});
}

static_assert(std::forward_iterator<STable::Iterator>);

TEST(STable, IsWalkedInTheOrderOfKeysWhateverIsAdded) {
  STable table(0, kNoCase);
  for (const char* const key : {"c", "a", "b"}) AddNumber(table, key, 1);
  STable::Iterator at = table.begin();
  EXPECT_EQ((at++)->key, "c");
  AddNumber(table, "C", 2);
  FillUpTo(table, 100);
  EXPECT_EQ(at->key, "a");
  EXPECT_EQ((++at)->key, "b");
  EXPECT_EQ(std::distance(table.begin(), table.end()), 100);
  EXPECT_EQ(table.begin()->key, "C");
  STable empty(0, kNoCase);
  EXPECT_EQ(empty.begin(), empty.end());
}

TEST(STable, ResetKeepsTheBuckets) {
  STable table(0, kCase);
  FillUpTo(table, 100);
  const int size = table.Size();
  table.Reset();
  EXPECT_EQ(table.Size(), size);
  FillUpTo(table, 10);
  EXPECT_EQ(table.Size(), size);
  EXPECT_STREQ(Flaw(table), "");
}

// --- Without memory -----------------------------------------------------------------------

TEST(STable, AnAdditionWithoutMemoryChangesNothingAndDestroysTheEntry) {
  struct State {
    Names gone;
    STable table{0, kCase};
    Numbered* item = nullptr;
  };
  const SString key("new");
  FailEachAllocation(
      [] {
        auto state = std::make_unique<State>();
        FillUpTo(state->table, 15);
        state->item = new Numbered(1, &state->gone);
        return state;
      },
      [&](const auto& state) { state->table.Add(key, state->item); },
      [](const auto& state) {
        EXPECT_EQ(state->gone.size(), 1u);
        EXPECT_EQ(state->table.Count(), 15);
        EXPECT_EQ(state->table.Size(), 7);
        EXPECT_EQ(NumberOf(state->table, "14"), 14);
        EXPECT_STREQ(Flaw(state->table), "");
      });
}

TEST(STable, AnAdditionNeedsMemoryOnlyToGrow) {
  STable table(0, kCase);
  const SString key("a"), other("b");
  auto* const first = new Numbered(1);
  auto* const second = new Numbered(2);
  auto* const third = new Numbered(3);
  const AllocationCount allocations;
  table.Add(key, first);
  table.Add(key, second);
  table.Add(other, third);
  EXPECT_EQ(table.Remove(key), 1);
  table.Reset();
  EXPECT_EQ(allocations.Made(), 0);
}

TEST(STable, IsNotMadeWithoutMemory) {
  FailEachAllocation([] { return 0; }, [](int) { STable(0, kCase); }, [](int) {});
}

TEST(STable, KeysWithoutMemoryLeaveTheTableAsItIs) {
  STable table(0, kCase);
  FillUpTo(table, 3);
  FailEachAllocation([] { return SStringList{"before"}; },
                     [&](SStringList& keys) { keys = table.Keys(); },
                     [&](const SStringList& keys) {
                       EXPECT_EQ(Texts(keys), Names{"before"});
                       EXPECT_STREQ(Flaw(table), "");
                       EXPECT_EQ(Texts(table.Keys()), (Names{"0", "1", "2"}));
                     });
}

// --- All of it ----------------------------------------------------------------------------

// A table and a model of it, played random operations.
class Model {
 public:
  Model(unsigned seed, unsigned caseSensitive)
      : random_(seed), caseSensitive_(caseSensitive), table_(0, caseSensitive) {}

  void Step() {
    const std::string key = RandomKey();
    const std::string folded = Folded(key);
    const int what = Below(100);
    if (what < 55) {
      AddNumber(table_, key, ++last_);
      if (!numbers_.contains(folded)) order_.push_back(folded);
      forms_[folded] = key;
      numbers_[folded] = last_;
    } else if (what < 80) {
      EXPECT_EQ(table_.Remove(Text(key)), numbers_.contains(folded) ? 1 : 0);
      numbers_.erase(folded);
      std::erase(order_, folded);
    } else if (what < 99 || Below(20) > 0) {
      EXPECT_EQ(NumberOf(table_, key), numbers_.contains(folded) ? numbers_[folded] : -1);
    } else {
      table_.Reset();
      numbers_.clear();
      order_.clear();
    }
  }

  void Compare() {
    ASSERT_STREQ(Flaw(table_), "");
    Names keys;
    for (const std::string& folded : order_) keys.push_back(forms_[folded]);
    ASSERT_EQ(Texts(table_.Keys()), keys);
  }

 private:
  int Below(int n) { return static_cast<int>(random_() % static_cast<unsigned>(n)); }

  std::string RandomKey() {
    constexpr std::string_view kBytes("aAbB\0\xE4\xC4z", 8);
    std::string key;
    for (int n = Below(5); n > 0; --n) key += kBytes[static_cast<std::size_t>(Below(8))];
    return key;
  }

  std::string Folded(std::string key) const {
    for (char& c : key) {
      if (caseSensitive_ == 0 && c >= 'A' && c <= 'Z') c = static_cast<char>(c + 32);
    }
    return key;
  }

  std::mt19937 random_;
  unsigned caseSensitive_;
  STable table_;
  int last_ = 0;
  std::map<std::string, int> numbers_;
  std::map<std::string, std::string> forms_;
  Names order_;
};

TEST(STable, RandomOperationsAgreeWithAModel) {
  for (const unsigned caseSensitive : {kNoCase, kCase, 256u}) {
    Model model(7 + caseSensitive, caseSensitive);
    for (int step = 0; step < 20'000; ++step) {
      model.Step();
      if (step % 20 != 0) continue;
      SCOPED_TRACE(step);
      ASSERT_NO_FATAL_FAILURE(model.Compare());
    }
  }
}

TEST(STable, KeysWithOneHashAreToldApart) {
  constexpr int kPairs = 10;
  const auto key = [](int i) {
    std::string made;
    for (int pair = 0; pair < kPairs; ++pair) made += (i >> pair & 1) != 0 ? "a`" : "b?";
    return made;
  };
  STable table(0, kNoCase);
  for (int i = 0; i < 1 << kPairs; ++i) AddNumber(table, key(i), i);
  EXPECT_EQ(STablePeek::Hash(key(0)), STablePeek::Hash(key(1)));
  EXPECT_EQ(table.Count(), 1 << kPairs);
  for (int i = 0; i < 1 << kPairs; ++i) ASSERT_EQ(NumberOf(table, key(i)), i);
  for (int i = 0; i < 1 << kPairs; i += 2) ASSERT_EQ(table.Remove(Text(key(i))), 1);
  EXPECT_EQ(table.Count(), 1 << (kPairs - 1));
  EXPECT_STREQ(Flaw(table), "");
}

TEST(STable, ManyKeysTakeLinearTime) {
  EXPECT_TRUE(GrowsLinearly(30'000, [](int n) {
    STable table(0, kNoCase);
    FillUpTo(table, n);
    int sum = 0;
    for (int i = 0; i < n; ++i) sum += table.Lookup(std::to_string(i)) != nullptr ? 1 : 0;
    EXPECT_EQ(sum, n);
  }));
}

}  // namespace
