#include "tables/SIndexString.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "support/CheckText.h"
#include "support/FailEachAllocation.h"
#include "support/STablePeek.h"

namespace {

// The indexes of the strings that are not empty.
std::vector<int> Indexes(const SIndexString& strings) {
  int* out = nullptr;
  const int count = strings.Keys(&out);
  const std::unique_ptr<int[]> owned(out);
  EXPECT_NE(out, nullptr);
  EXPECT_EQ(strings.Keys(nullptr), count);
  return {out, out + count};
}

TEST(SIndexString, IsEmptyAtFirst) {
  const SIndexString strings;
  EXPECT_EQ(Indexes(strings), std::vector<int>());
  CheckText(strings.Get(0), "");
  EXPECT_EQ(SIndexStringPeek::Room(strings), 0);
}

TEST(SIndexString, FindsWhatWasStored) {
  SIndexString strings;
  for (const int index : {7, -3, INT_MAX, INT_MIN, 0}) strings[index] = SString(index);
  for (const int index : {7, -3, INT_MAX, INT_MIN, 0}) {
    EXPECT_EQ(strings.Get(index), SString(index));
  }
  EXPECT_EQ(Indexes(strings), (std::vector<int>{7, -3, INT_MAX, INT_MIN, 0}));
  CheckText(strings.Get(1), "");
  EXPECT_EQ(Indexes(strings).size(), 5u) << "Get adds nothing";
}

TEST(SIndexString, AnEmptyStringIsStoredButNotCounted) {
  SIndexString strings;
  CheckText(strings[1], "");
  strings[2] = "b";
  EXPECT_EQ(Indexes(strings), std::vector<int>{2});
  strings[1] = "a";
  strings[2] = "";
  EXPECT_EQ(Indexes(strings), std::vector<int>{1});
  strings[3] = SString('\0', 1);
  strings[2] = "c";
  EXPECT_EQ(Indexes(strings), (std::vector<int>{1, 2, 3}));
}

TEST(SIndexString, GrowsByFive) {
  SIndexString strings;
  for (int i = 1; i <= 32; ++i) {
    strings[i];
    EXPECT_EQ(SIndexStringPeek::Room(strings), (i + 4) / 5 * SIndexString::AllocIncrem);
  }
}

TEST(SIndexString, DeletesAndKeepsOrderAndRoom) {
  SIndexString strings;
  for (int i = 0; i < 6; ++i) strings[i] = "x";
  strings.Delete(2);
  strings.Delete(0);
  strings.Delete(5);
  strings.Delete(9);
  EXPECT_EQ(Indexes(strings), (std::vector<int>{1, 3, 4}));
  EXPECT_EQ(SIndexStringPeek::Room(strings), 10);
  CheckText(strings.Get(2), "");
  strings[2];
  CheckText(strings.Get(2), "");
  strings[2] = "y";
  EXPECT_EQ(Indexes(strings), (std::vector<int>{1, 3, 4, 2}));
}

TEST(SIndexString, IsCopiedAndMoved) {
  SIndexString strings;
  for (int i = 0; i < 7; ++i) strings[i] = "x";
  SIndexString copy(strings);
  copy[0] += "y";
  copy[9] = "z";
  CheckText(strings.Get(0), "x");
  CheckText(strings.Get(9), "");
  CheckText(copy.Get(0), "xy");
  const SIndexString moved = std::move(copy);
  CheckText(moved.Get(9), "z");
  strings = moved;
  CheckText(strings.Get(0), "xy");
}

TEST(SIndexString, ACopyHasRoomForWhatItHasAndGrowsByFive) {
  SIndexString strings;
  for (int i = 0; i < 7; ++i) strings[i] = "x";
  SIndexString copy(strings);
  EXPECT_EQ(SIndexStringPeek::Room(copy), 7);
  copy[7] = "y";
  EXPECT_EQ(SIndexStringPeek::Room(copy), 12);
}

TEST(SIndexString, AnUndefinedStringIsStoredButNotCounted) {
  SIndexString strings;
  strings[1] = SString();
  EXPECT_EQ(Indexes(strings), std::vector<int>());
  CheckUndefined(strings.Get(1));
}

// The first places of the array are set, and there is one for every entry.
TEST(SIndexString, KeysMakesAPlaceForEveryEntry) {
  SIndexString strings;
  for (int i = 0; i < 9; ++i) strings[i];
  strings[8] = "x";
  int* out = nullptr;
  const AllocationCount allocations;
  EXPECT_EQ(strings.Keys(&out), 1);
  EXPECT_EQ(allocations.Bytes(), 9 * sizeof(int));
  const std::unique_ptr<int[]> owned(out);
  EXPECT_EQ(out[0], 8);
}

TEST(SIndexString, RandomEditsAgreeWithAModel) {
  std::mt19937 random(3);
  const auto below = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
  SIndexString strings;
  std::vector<std::pair<int, std::string>> model;
  for (int step = 0; step < 20'000; ++step) {
    const int index = below(20) - 5;
    const auto found = std::ranges::find(model, index, &std::pair<int, std::string>::first);
    if (below(3) == 0) {
      strings.Delete(index);
      if (found != model.end()) model.erase(found);
    } else {
      const std::string text = below(4) == 0 ? "" : std::to_string(step);
      strings[index] = text.c_str();
      if (found != model.end()) {
        found->second = text;
      } else {
        model.emplace_back(index, text);
      }
    }
    std::vector<int> indexes;
    for (const auto& [key, text] : model) {
      if (!text.empty()) indexes.push_back(key);
      ASSERT_EQ(strings.Get(key).View(), text);
    }
    ASSERT_EQ(Indexes(strings), indexes);
  }
}

// --- Without memory -----------------------------------------------------------------------

TEST(SIndexString, WithoutMemoryStaysAsItIs) {
  const auto make = [] {
    SIndexString strings;
    for (int i = 0; i < 5; ++i) strings[i] = "x";  // there is no room left
    return strings;
  };
  const auto check = [](const SIndexString& strings) {
    EXPECT_EQ(Indexes(strings), (std::vector<int>{0, 1, 2, 3, 4}));
    for (int i = 0; i < 5; ++i) CheckText(strings.Get(i), "x");
  };
  FailEachAllocation(
      make, [](SIndexString& strings) { strings[5]; }, check);
  FailEachAllocation(
      make, [](SIndexString& strings) { static_cast<void>(strings.Get(5)); }, check);
  FailEachAllocation(
      make, [](SIndexString& strings) { static_cast<void>(SIndexString(strings)); }, check);
  FailEachAllocation(
      make, [](SIndexString& strings) { SIndexString() = strings; }, check);
}

TEST(SIndexString, AnAssignmentWithoutMemoryChangesNothing) {
  SIndexString from;
  for (int i = 0; i < 9; ++i) from[i] = "y";
  FailEachAllocation(
      [] {
        SIndexString strings;
        strings[3] = "x";
        return strings;
      },
      [&](SIndexString& strings) { strings = from; },
      [](const SIndexString& strings) {
        EXPECT_EQ(Indexes(strings), std::vector<int>{3});
        CheckText(strings.Get(3), "x");
      });
}

TEST(SIndexString, KeysWithoutMemoryLeaveTheCallersPointer) {
  SIndexString strings;
  strings[1] = "x";
  int before = 0;
  FailEachAllocation([&] { return &before; },
                     [&](int*& out) {
                       strings.Keys(&out);
                       delete[] out;  // not reached when it throws
                     },
                     [&](int* out) { EXPECT_EQ(out, &before); });
}

}  // namespace
