#include <gtest/gtest.h>

#include <new>

#include "strings/SString.h"
#include "support/CountedNew.h"
#include "support/FailEachAllocation.h"
#include "support/SStringPeek.h"

namespace {

template <class Work>
int AllocationsOf(Work work) {
  const AllocationCount count;
  work();
  return count.Made();
}

TEST(SStringAllocation, AStringIsOneBlock) {
  EXPECT_EQ(AllocationsOf([] { const SString s; }), 1);
  EXPECT_EQ(AllocationsOf([] { const SString s("abc"); }), 1);
  EXPECT_EQ(AllocationsOf([] { const SString s('x', 100'000); }), 1);
  EXPECT_EQ(AllocationsOf([] { const SString s(0.1); }), 1);
}

TEST(SStringAllocation, AStringOfAFewBytesGrowsWhereItIs) {
  SString undefined, empty("");
  EXPECT_EQ(AllocationsOf([&] { undefined += "0123456789abcde"; }), 0);
  EXPECT_EQ(AllocationsOf([&] { empty += "0123456789abcde"; }), 0);
  EXPECT_EQ(AllocationsOf([&] { undefined += 'f'; }), 1);
  EXPECT_EQ(AllocationsOf([&] { empty = "0123456789abcdef"; }), 1);
}

TEST(SStringAllocation, UndefiningGivesTheMemoryBack) {
  SString s('x', 100'000);
  const SStringRep* const before = &SStringPeek::Rep(s);
  SStringPeek::Undef(s);
  EXPECT_NE(&SStringPeek::Rep(s), before) << "the block with the bytes is gone";
  SString adopted(new SStringRep{new char[8]{"abc"}, 3, 0, 8});
  EXPECT_EQ(AllocationsOf([&] { SStringPeek::Undef(adopted); }), 0);
}

TEST(SStringAllocation, AChainOfSumsGoesOnInOneBuffer) {
  const SString a("0123456789"), b("b");
  EXPECT_LE(AllocationsOf([&] { static_cast<void>(a + "c" + 'd' + b + "e" + 'f'); }), 1);
}

TEST(SStringAllocation, ACopyCostsNone) {
  const SString s("abc");
  SString other("x");
  EXPECT_EQ(AllocationsOf([&] {
              const SString copy(s);
              other = copy;
            }),
            0);
}

TEST(SStringAllocation, AppendingNothingCostsNone) {
  SString s("abc"), shared("abc"), undefined;
  const SString copy(shared), empty(""), nothing;
  EXPECT_EQ(AllocationsOf([&] {
              for (SString* const each : {&s, &shared, &undefined}) {
                *each += "";
                *each += empty;
                *each += nothing;
              }
            }),
            0);
}

TEST(SStringAllocation, AnEditWithinTheRoomCostsNone) {
  SString s('x', 100);
  EXPECT_EQ(AllocationsOf([&] {
              s += "abc";
              s += 'd';
              s = "efg";
              s = 'h';
              s += s;
            }),
            0);
}

TEST(SStringAllocation, ADetachCostsOne) {
  SString s("abc");
  const SString copy(s);
  EXPECT_EQ(AllocationsOf([&] { s += 'd'; }), 1);
  EXPECT_EQ(AllocationsOf([&] { static_cast<void>(s + "e"); }), 1);
}

TEST(SStringAllocation, AReadOnlyLoopOverASharedStringDetachesNothing) {
  const SString s("abcdef");
  SString copy(s);
  int sum = 0;
  EXPECT_EQ(AllocationsOf([&] {
              for (int i = 0; i < copy.Length(); ++i) sum += copy[i];
              sum += copy == s;
              sum += copy < "abc";
              sum += copy == 'a';
            }),
            0);
  EXPECT_TRUE(SStringPeek::Shares(s, copy));
  EXPECT_EQ(sum, 'a' + 'b' + 'c' + 'd' + 'e' + 'f' + 1);
}

struct Row {
  const char* name;
  void (*edit)(SString& s);
};

constexpr Row kEdits[] = {
    {"= text", [](SString& s) { s = "a text that needs more room than there is"; }},
    {"= byte", [](SString& s) { s = 'x'; }},
    {"= number", [](SString& s) { s = 0.1; }},
    {"+= string", [](SString& s) { s += SString("a text that needs more room"); }},
    {"+= text", [](SString& s) { s += "a text that needs more room than there is"; }},
    {"+= itself", [](SString& s) { s += s; }},
    {"+= byte", [](SString& s) { s += 'x'; }},
    {"undefine", [](SString& s) { SStringPeek::Undef(s); }},
};

// Makes each allocation of an edit fail in turn: the string is as it was before.
void CheckEveryFailure(const Row& row, SString (*make)(), bool shared) {
  for (int n = 0;; ++n) {
    SString s = make();
    const SString sharer = shared ? s : SString();
    const SString before(s.Data(), s.Length());
    const SStringRep* const rep = &SStringPeek::Rep(s);
    if (!FailAllocation(n, [&] { row.edit(s); }).fired) return;
    EXPECT_TRUE(s == before);
    EXPECT_EQ(&SStringPeek::Rep(s), rep);
    EXPECT_EQ(rep->links, shared ? 2 : 1);
    EXPECT_STREQ(Flaw(s), "");
  }
}

TEST(SStringAllocation, AnEditThatFindsNoMemoryLeavesTheStringAsItWas) {
  for (const Row& row : kEdits) {
    SCOPED_TRACE(row.name);
    for (const bool shared : {false, true}) {
      CheckEveryFailure(
          row, [] { return SString("1234567"); }, shared);
      CheckEveryFailure(
          row, [] { return SString(); }, shared);
      CheckEveryFailure(
          row,
          [] {
            return SString(new SStringRep{new char[8]{"abc"}, 3, 0, 8});
          },
          shared);
    }
  }
}

TEST(SStringAllocation, AConstructorThatFindsNoMemoryThrows) {
  const auto failing = [](auto make) {
    const FailNthAllocation fault(0);
    EXPECT_THROW(make(), std::bad_alloc);
    EXPECT_TRUE(fault.Fired());
  };
  failing([] { SString(); });
  failing([] { SString("abc"); });
  failing([] { SString("abc", 2); });
  failing([] { SString('x', 3); });
  failing([] { SString(1.5); });
}

}  // namespace
