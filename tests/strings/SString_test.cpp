#include "strings/SString.h"

#include <gtest/gtest.h>

#include <bit>
#include <cfloat>
#include <climits>
#include <clocale>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <sstream>
#include <string>
#include <type_traits>

#include "strings/SFixedString.h"
#include "strings/SSubString.h"
#include "strings/Sizes.h"
#include "support/CFormat.h"
#include "support/CheckText.h"
#include "support/SStringPeek.h"

namespace {

using namespace std::string_view_literals;

int Allocated(const SString& s) { return SStringPeek::Rep(s).allocated; }
int Links(const SString& s) { return SStringPeek::Rep(s).links; }

const char* const kNull = nullptr;

// --- Construction ---------------------------------------------------------------

TEST(SString, IsAHandleOfOnePointer) {
  EXPECT_EQ(sizeof(SString), sizeof(void*));
  EXPECT_TRUE(std::is_nothrow_copy_constructible_v<SString>);
  EXPECT_TRUE(std::is_nothrow_copy_assignable_v<SString>);
}

TEST(SString, ByDefaultIsUndefinedAndAlone) {
  const SString s;
  CheckUndefined(s);
  EXPECT_EQ(Links(s), 1);
  EXPECT_EQ(Allocated(s), 0);
}

TEST(SString, FromTextCopiesUpToTheNul) {
  char text[] = "ab\0cd";
  const SString s(text);
  text[0] = 'x';
  CheckText(s, "ab");
  CheckText(SString(""), "");
}

TEST(SString, FromNullIsDefinedAndEmpty) {
  for (const SString& s : {SString(kNull), SString(nullptr)}) {
    CheckText(s, "");
    EXPECT_EQ(Allocated(s), 8);
  }
}

TEST(SString, FromBytesTakesNulsAndLooksForNone) {
  CheckText(SString("a\0b", 3), "a\0b"sv);
  CheckText(SString("abc", 2), "ab");
  CheckText(SString("abc", 0), "");
  CheckText(SString("abc", -1), "");
  CheckText(SString("abc", INT_MIN), "");
  const char noNul[] = {'a', 'b'};
  CheckText(SString(noNul, 2), "ab");
}

TEST(SString, FromNullAndALengthIsSoManyNuls) {
  CheckText(SString(kNull, 3), "\0\0\0"sv);
  CheckText(SString(kNull, 0), "");
  CheckText(SString(kNull, -5), "");
}

TEST(SString, FromAByteRepeatsIt) {
  CheckText(SString('x', 3), "xxx");
  CheckText(SString('\0', 2), "\0\0"sv);
  CheckText(SString('\xC8', 1), "\xC8");
  CheckText(SString('x', 0), "");
  CheckText(SString('x', -1), "");
  CheckText(SString('x', INT_MIN), "");
  CheckText(SString('x'), "x");
}

TEST(SString, FromALongFillIsTheByteThroughout) {
  CheckText(SString('x', 100'000), std::string(100'000, 'x'));
}

TEST(SString, FromIntegersIsDecimal) {
  CheckText(SString(0), "0");
  CheckText(SString(-7), "-7");
  CheckText(SString(INT_MIN), "-2147483648");
  CheckText(SString(INT_MAX), "2147483647");
  CheckText(SString(0L), "0");
  CheckText(SString(LONG_MIN), "-9223372036854775808");
  CheckText(SString(LONG_MAX), "9223372036854775807");
}

TEST(SString, FromFloatingPointHasSixteenDigits) {
  CheckText(SString(0.1), "0.1");
  CheckText(SString(1.0 / 3), "0.3333333333333333");
  CheckText(SString(0.0), "0");
  CheckText(SString(-0.0), "-0");
  CheckText(SString(100.0), "100");
  CheckText(SString(1e16), "1e+16");
  CheckText(SString(1e15), "1000000000000000");
  CheckText(SString(0.0001), "0.0001");
  CheckText(SString(0.00001), "1e-05");
  CheckText(SString(DBL_MAX), "1.797693134862316e+308");
  CheckText(SString(-1.234567890123456e-308), "-1.234567890123456e-308");
  CheckText(SString(std::numeric_limits<double>::infinity()), "inf");
  CheckText(SString(-std::numeric_limits<double>::infinity()), "-inf");
  CheckText(SString(std::numeric_limits<double>::quiet_NaN()), "nan");
}

TEST(SString, FromAFloatWidensItFirst) {
  CheckText(SString(0.1f), "0.1000000014901161");
  CheckText(SString(0.5f), "0.5");
}

TEST(SString, RoomFollowsTheSizeRule) {
  EXPECT_EQ(Allocated(SString("")), 8);
  EXPECT_EQ(Allocated(SString('x', 7)), 8);
  EXPECT_EQ(Allocated(SString('x', 8)), 16);
  EXPECT_EQ(Allocated(SString('x', 15)), 16);
  EXPECT_EQ(Allocated(SString('x', 16)), 32);
  EXPECT_EQ(Allocated(SString('x', 100)), 128);
  EXPECT_EQ(Allocated(SString(kNull, 1000)), 1024);
  EXPECT_EQ(Allocated(SString(12345678)), 16);
}

// --- Sharing --------------------------------------------------------------------

TEST(SString, ACopySharesAndCounts) {
  const SString s("abc");
  {
    const SString copy(s);
    EXPECT_TRUE(SStringPeek::Shares(s, copy));
    EXPECT_EQ(Links(s), 2);
  }
  EXPECT_EQ(Links(s), 1);
}

TEST(SString, ACopyOfAnUndefinedStringIsUndefined) {
  const SString s, copy(s);
  CheckUndefined(copy);
  EXPECT_TRUE(SStringPeek::Shares(s, copy));
}

struct EditRow {
  const char* name;
  void (*edit)(SString& s);
  std::string_view after;  // of "abc"
};

const EditRow kEdits[] = {
    {"= text", [](SString& s) { s = "xy"; }, "xy"},
    {"= null", [](SString& s) { s = kNull; }, ""},
    {"= byte", [](SString& s) { s = 'x'; }, "x"},
    {"= own part", [](SString& s) { s = s.Data() + s.Length() / 2; }, "bc"},
    {"= own whole", [](SString& s) { s = s.Data(); }, "abc"},
    {"= own end", [](SString& s) { s = s.Data() + s.Length(); }, ""},
    {"= string", [](SString& s) { s = SString("xy"); }, "xy"},
    {"= int", [](SString& s) { s = 42; }, "42"},
    {"= long", [](SString& s) { s = -42L; }, "-42"},
    {"= float", [](SString& s) { s = 1.5f; }, "1.5"},
    {"= double", [](SString& s) { s = 0.1; }, "0.1"},
    {"+= string", [](SString& s) { s += SString("xy"); }, "abcxy"},
    {"+= text", [](SString& s) { s += "xy"; }, "abcxy"},
    {"+= long text", [](SString& s) { s += "0123456789"; }, "abc0123456789"},
    {"+= byte", [](SString& s) { s += 'x'; }, "abcx"},
    {"+= NUL", [](SString& s) { s += '\0'; }, "abc\0"sv},
    {"+= itself", [](SString& s) { s += s; }, "abcabc"},
    {"+= own part", [](SString& s) { s += s.Data() + s.Length() / 2; }, "abcbc"},
    {"+= a byte of its own", [](SString& s) { s += s[0]; }, "abca"},
    {"+= itself, thrice", [](SString& s) { ((s += s) += s) += s; }, "abcabcabcabcabcabcabcabc"},
};

TEST(SString, AnEditChangesItsHandle) {
  for (const EditRow& row : kEdits) {
    SCOPED_TRACE(row.name);
    SString s("abc");
    row.edit(s);
    CheckText(s, row.after);
    EXPECT_EQ(Links(s), 1);
  }
}

TEST(SString, ASharedCopyDoesNotSeeTheEdit) {
  for (const EditRow& row : kEdits) {
    SCOPED_TRACE(row.name);
    SString s("abc");
    const SString copy(s);
    row.edit(s);
    CheckText(s, row.after);
    CheckText(copy, "abc");
    EXPECT_EQ(Links(copy), row.after == "abc" && SStringPeek::Shares(s, copy) ? 2 : 1);
  }
}

TEST(SString, AnEditOfAnAdoptedRepresentationWorksOnIt) {
  for (const EditRow& row : kEdits) {
    SCOPED_TRACE(row.name);
    SString s(new SStringRep{new char[4]{"abc"}, 3, 0, 4});
    row.edit(s);
    CheckText(s, row.after);
  }
}

// But for an assignment that shares, an edit changes the buffer only.
TEST(SString, AnEditKeepsAnAdoptedRepresentation) {
  const auto edits = {
      EditRow{"= text", [](SString& s) { s = "a text that takes room"; }, "a text that takes room"},
      EditRow{"= byte", [](SString& s) { s = 'x'; }, "x"},
      EditRow{"= own part", [](SString& s) { s = s.Data() + s.Length() / 2; }, "bc"},
      EditRow{"+= text", [](SString& s) { s += "0123456789"; }, "abc0123456789"},
      EditRow{"+= itself", [](SString& s) { (s += s) += s; }, "abcabcabcabc"},
      EditRow{"segment", [](SString& s) { s.Segment(1, 1) = "0123456789"; }, "a0123456789c"},
      EditRow{"short segment", [](SString& s) { s.Segment(1, 2) = "x"; }, "ax"},
      EditRow{"own segment", [](SString& s) { s.Segment(1, 1) = s; }, "aabcc"},
      EditRow{"line",
              [](SString& s) {
                std::istringstream in("0123456789\n");
                s.ReadLine(in);
              },
              "0123456789\n"},
      EditRow{"upper", [](SString& s) { s.UpperCase(); }, "ABC"},
      EditRow{"reverse", [](SString& s) { s.Reverse(); }, "cba"},
      EditRow{"chop", [](SString& s) { s.Chop(); }, "ab"},
      EditRow{"realloc", [](SString& s) { SStringPeek::Realloc(s, 100); }, "abc"}};
  for (const EditRow& row : edits) {
    SCOPED_TRACE(row.name);
    for (const std::size_t room : {4U, 64U}) {
      char* const buffer = new char[room];
      std::memcpy(buffer, "abc", 4);
      auto* const rep = new SStringRep{buffer, 3, 0, static_cast<int>(room)};
      SString s(rep);
      row.edit(s);
      EXPECT_EQ(&SStringPeek::Rep(s), rep);
      CheckText(s, row.after);
    }
  }
}

TEST(SString, AnEditKeepsAnUndefinedAdoptedRepresentation) {
  const auto edits = {EditRow{"= text", [](SString& s) { s = "text"; }, "text"},
                      EditRow{"= nothing", [](SString& s) { s = ""; }, ""},
                      EditRow{"+= text", [](SString& s) { s += "text"; }, "text"},
                      EditRow{"+= byte", [](SString& s) { s += 'x'; }, "x"},
                      EditRow{"lower", [](SString& s) { s.LowerCase(); }, ""},
                      EditRow{"reverse", [](SString& s) { s.Reverse(); }, ""}};
  for (const EditRow& row : edits) {
    SCOPED_TRACE(row.name);
    auto* const rep = new SStringRep;
    SString s(rep);
    row.edit(s);
    EXPECT_EQ(&SStringPeek::Rep(s), rep);
    CheckText(s, row.after);
  }
}

TEST(SString, ARepresentationThatLooksLikeTheLibrarysIsNot) {
  struct Block {
    SStringRep rep;
    char text[8];
  };
  const auto block = std::make_unique<Block>(Block{{nullptr, 3, 1, 8}, "abc"});
  block->rep.buffer = block->text;
  {
    const SString s(&block->rep);
    EXPECT_FALSE(SStringPeek::Shares(Lasting(s), s));
    CheckText(Lasting(s), "abc");
    const SString sum = s + "";
    EXPECT_FALSE(SStringPeek::Shares(sum, s));
  }
  EXPECT_EQ(block->rep.links, 1);
}

TEST(SString, RepresentationsAreMadeByEveryFormOfNew) {
  alignas(SStringRep) std::byte place[sizeof(SStringRep)];
  auto* const placed = new (place) SStringRep{new char[4]{"abc"}, 3, 1, 4};
  CheckText(SString(placed), "abc");
  delete[] placed->buffer;
  CheckText(SString(new (std::nothrow) SStringRep{new char[4]{"abc"}, 3, 0, 4}), "abc");
  alignas(SFixedString) std::byte room[sizeof(SFixedString)];
  auto* const fixed = new (room) SFixedString("abc", 3);
  EXPECT_EQ(SString(*fixed), "abc");
  fixed->~SFixedString();
  delete new (std::nothrow) SFixedString("abc", 3);
  SFixedString view("abc", 3);
  SStringRep* const rep = &view;  // it is one
  EXPECT_EQ(rep->length + rep->links + rep->allocated, 8);
  EXPECT_EQ(SString(rep), "abc");
}

TEST(SString, ALinkCounterThatIsFullStaysSo) {
  auto* const rep = new SStringRep{new char[4]{"abc"}, 3, SStringRep::kPinned - 1, 4};
  {
    const SString last(rep);
    EXPECT_EQ(rep->links, SStringRep::kPinned);
    SString more(last), edited(last);
    edited += 'd';
    more = edited;
    EXPECT_EQ(rep->links, SStringRep::kPinned);
    CheckText(last, "abc");
  }
  EXPECT_EQ(rep->links, SStringRep::kPinned) << "and is never freed";
  delete[] rep->buffer;
  delete rep;
}

TEST(SString, MovingAndMoreHandlesDoNotWriteToWhatMovedFromStringsShare) {
  SString a("a"), b("b");
  const SString taken(std::move(a)), taken2(std::move(b));
  const SString copy(a);
  a += 'x';
  SStringPeek::Undef(b);
  b.LowerCase();
  CheckText(a, "x");
  CheckText(b, "");
  CheckUndefined(copy);
  EXPECT_EQ(Links(copy), SStringRep::kPinned);
}

TEST(SString, AnEditLeavesTheTextOfAnotherOwnerAlone) {
  for (const EditRow& row : kEdits) {
    SCOPED_TRACE(row.name);
    char text[] = "abc";
    SStringRep mine{text, 3, 1, 3};  // its maker holds one link
    {
      SString s(&mine);
      EXPECT_EQ(mine.links, 2);
      row.edit(s);
      CheckText(s, row.after);
    }
    EXPECT_STREQ(text, "abc");
    EXPECT_EQ(mine.links, 1);
  }
}

// A view is a part of a longer text, and the text appended may be another part of it, which
// begins in the view and goes on after it.
TEST(SString, AppendsTextThatBeginsInAViewAndGoesOnAfterIt) {
  char text[] = "abcdef";
  SFixedString view(text, 3);
  const auto appended = [&](auto part) {
    SString s(view);
    s += part;
    return std::string(s.View());
  };
  EXPECT_EQ(appended(text + 2), "abccdef");
  EXPECT_EQ(appended(std::string_view(text + 1, 4)), "abcbcde");
  EXPECT_EQ(appended(std::string_view(text + 1, 2)), "abcbc") << "all of it in the view";
  EXPECT_EQ(appended(text + 3), "abcdef") << "after the view";
  EXPECT_STREQ(text, "abcdef");
}

TEST(SString, AppendsItsOwnTextWithTheNul) {
  for (const int length : {3, 7, 15, 100}) {
    SString s('x', length), shared(s);
    const std::string_view withNul(s.Data(), static_cast<std::size_t>(length) + 1);
    const std::string expected = std::string(s.View()) + std::string(withNul);
    shared += withNul;
    EXPECT_EQ(shared.View(), expected);
    shared = SString();  // `s` is alone again
    s += withNul;
    EXPECT_EQ(s.View(), expected);
  }
}

TEST(SString, AnEditOfAnUndefinedStringTreatsItAsEmpty) {
  for (const EditRow& row : kEdits) {
    SCOPED_TRACE(row.name);
    SString s, empty(""), alone;
    const SString copy(s);
    row.edit(s);
    row.edit(empty);
    row.edit(alone);
    EXPECT_EQ(s.View(), empty.View());
    EXPECT_EQ(alone.View(), empty.View());
    EXPECT_STREQ(Flaw(s), "");
    EXPECT_STREQ(Flaw(alone), "");
    CheckUndefined(copy);
  }
}

TEST(SString, AnAdoptedRepresentationIsTheStringUntilItIsGivenUp) {
  auto* const rep = new SStringRep{new char[8]{"abc"}, 3, 0, 8};
  SString s(rep);
  EXPECT_EQ(rep->links, 1);
  EXPECT_EQ(&SStringPeek::Rep(s), rep);
  s += "0123456789";
  EXPECT_EQ(&SStringPeek::Rep(s), rep) << "growth replaces the buffer, not the representation";
  EXPECT_EQ(rep->length, 13);
  EXPECT_EQ(rep->allocated, 16);
  EXPECT_STREQ(rep->buffer, "abc0123456789");
}

TEST(SString, AnAdoptedRepresentationWithoutABufferIsUndefined) {
  SString s(new SStringRep);
  CheckUndefined(s);
  s += 'x';
  CheckText(s, "x");
}

// --- Assignment -----------------------------------------------------------------

TEST(SString, AssigningAStringSharesIt) {
  SString a("a"), b("b");
  const SString& result = a = b;
  EXPECT_EQ(&result, &a);
  EXPECT_TRUE(SStringPeek::Shares(a, b));
  EXPECT_EQ(Links(b), 2);
}

TEST(SString, AssigningItselfOrASharerChangesNothing) {
  SString s("abc");
  const SString copy(s);
  const SString& self = s;
  s = self;
  s = copy;
  CheckText(s, "abc");
  EXPECT_TRUE(SStringPeek::Shares(s, copy));
  EXPECT_EQ(Links(s), 2);
}

TEST(SString, AssigningAnUndefinedStringUndefines) {
  SString s("abc");
  s = SString();
  CheckUndefined(s);
}

TEST(SString, AssigningNullMakesDefinedAndEmpty) {
  SString s;
  s = kNull;
  CheckText(s, "");
}

TEST(SString, AssigningTextKeepsTheRoomThereIs) {
  SString s('x', 100);
  s = "abc";
  CheckText(s, "abc");
  EXPECT_EQ(Allocated(s), 128);
  const SString copy(s);
  s = "abcd";  // a detached buffer is as large as the new text needs
  EXPECT_EQ(Allocated(s), 8);
  s = "0123456789";
  EXPECT_EQ(Allocated(s), 16);
}

TEST(SString, AssigningANumberSharesATemporary) {
  SString s('x', 100);
  s = 5;
  CheckText(s, "5");
  EXPECT_EQ(Allocated(s), 8);
  s = '5';
  CheckText(s, "5");
}

// --- Appending ------------------------------------------------------------------

TEST(SString, AppendingNothingLeavesAnUndefinedStringUndefined) {
  SString s;
  s += "";
  s += kNull;
  s += SString();
  s += SString("");
  s += s;
  CheckUndefined(s);
  CheckUndefined(s + "");
  CheckUndefined(SString() + SString(""));
}

TEST(SString, AppendingTheNulByteDefines) {
  SString s;
  s += '\0';
  CheckText(s, "\0"sv);
}

TEST(SString, AppendingNothingDetachesNothing) {
  SString s("abc");
  const SString copy(s);
  s += "";
  s += SString();
  EXPECT_TRUE(SStringPeek::Shares(s, copy));
}

TEST(SString, AppendingDoublesTheRoom) {
  SString s;
  int changes = 0;
  for (int length = 1, room = 0; length <= 100'000; ++length) {
    s += 'x';
    ASSERT_EQ(s.Length(), length);
    if (Allocated(s) != room) ++changes;
    room = Allocated(s);
    ASSERT_EQ(room, AllocationFor(length));
  }
  EXPECT_EQ(changes, 15);  // 8, 16, ... 131072
}

TEST(SString, AppendingAfterAShorterAssignmentKeepsTheRoom) {
  SString s('x', 100);
  s = "";
  for (int i = 0; i < 127; ++i) s += 'y';
  EXPECT_EQ(Allocated(s), 128);
  s += 'y';
  EXPECT_EQ(Allocated(s), 256);
  CheckText(s, std::string(128, 'y'));
}

TEST(SString, AddingLeavesTheOperandsAlone) {
  const SString a("ab"), b("cd");
  CheckText(a + b, "abcd");
  CheckText(a + "cd", "abcd");
  CheckText(a + 'c', "abc");
  CheckText(a + '\0', "ab\0"sv);
  CheckText(a + a, "abab");
  CheckText(a + kNull, "ab");
  CheckText(a, "ab");
  CheckText(b, "cd");
  CheckText(SString("a\0b", 3) + SString("c\0", 2), "a\0bc\0"sv);
}

// --- Reading as a number ----------------------------------------------------------

TEST(SString, ReadsAsTheNumberItBeginsWith) {
  struct Row {
    const char* text;
    double value;
  };
  constexpr Row kRows[] = {
      {"0", 0},
      {"42", 42},
      {"-1.5", -1.5},
      {"  \t\n7", 7},
      {"+3", 3},
      {"12abc", 12},
      {"abc", 0},
      {"", 0},
      {".5", 0.5},
      {"5.", 5},
      {"1e3x", 1000},
      {"1e", 1},
      {"0x10", 16},
      {"-", 0},
      {"- 1", 0},
      {"1,5", 1},
      {"1e999", HUGE_VAL},
      {"-1e999", -HUGE_VAL},
      {"1e-999", 0},
      {"inf", HUGE_VAL},
  };
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.text);
    const SString s(row.text);
    const double value = s;
    const float narrow = s;
    EXPECT_EQ(value, row.value);
    EXPECT_EQ(narrow, static_cast<float>(row.value));
  }
  EXPECT_TRUE(std::isnan(static_cast<double>(SString("nan"))));
}

TEST(SString, ReadsAsZeroWhenUndefined) {
  EXPECT_EQ(static_cast<double>(SString()), 0);
  EXPECT_EQ(static_cast<float>(SString()), 0);
}

TEST(SString, ReadsANumberUpToItsFirstNul) {
  EXPECT_EQ(static_cast<double>(SString("12\0003", 4)), 12);
}

TEST(SString, NarrowsANumberPastTheRangeOfFloat) {
  EXPECT_EQ(static_cast<float>(SString("1e300")), HUGE_VALF);
  EXPECT_EQ(static_cast<float>(SString("0.1")), 0.1f);
}

TEST(SString, ReadsAFloatThroughADouble) {
  // As a float at once this would be the next one up.
  EXPECT_EQ(static_cast<float>(SString("1.000000059604644775390625000000000000000001")), 1.0f);
}

TEST(SString, ReadsANumberInAViewWithoutLookingBehindIt) {
  char text[] = {'1', '2', '3'};
  SStringRep view{text, 2, 1, 2};
  EXPECT_EQ(static_cast<double>(SString(&view)), 12);
}

TEST(SString, PrintsAndReadsNumbersTheSameInEveryLocale) {
  const std::string before = std::setlocale(LC_ALL, nullptr);
  const bool comma = std::setlocale(LC_ALL, "de_DE.UTF-8") != nullptr;
  const SString text(1234.5);
  const double value = SString("1234.5");
  std::setlocale(LC_ALL, before.c_str());
  CheckText(text, "1234.5");
  EXPECT_EQ(value, 1234.5);
  if (!comma) GTEST_SKIP() << "no locale with a decimal comma here: seen in the C locale only";
}

TEST(SString, EveryDoublePrintsAsTheCFormatDoes) {
  std::uint64_t bits = 1;
  for (int i = 0; i < 100'000; ++i) {
    bits = bits * 6364136223846793005u + 1442695040888963407u;
    const double value = std::bit_cast<double>(bits);
    if (std::isnan(value)) continue;  // its sign and payload are the platform's
    ASSERT_EQ(SString(value).View(), CFormat("%.16g", value));
  }
}

// --- Indexing -------------------------------------------------------------------

TEST(SString, IndexesFromBothEnds) {
  const SString s("a\0\xC8", 3);
  EXPECT_EQ(s[0], 'a');
  EXPECT_EQ(s[1], '\0');
  EXPECT_EQ(s[2], '\xC8');
  EXPECT_EQ(s[-1], '\xC8');
  EXPECT_EQ(s[-3], 'a');
}

TEST(SString, IndexesOutsideAsNul) {
  const SString s("abc");
  for (const int i : {3, 4, INT_MAX, -4, -5, INT_MIN}) EXPECT_EQ(s[i], '\0') << i;
  for (const int i : {0, 1, -1, INT_MAX, INT_MIN}) EXPECT_EQ(SString()[i], '\0') << i;
}

// --- Comparison -----------------------------------------------------------------

struct OrderRow {
  const char* name;
  SString a, b;
  int order;  // of a against b
};

TEST(SString, ComparesBytesUnsignedAndTheShorterFirst) {
  const OrderRow rows[] = {
      {"undefined, undefined", SString(), SString(), 0},
      {"undefined, empty", SString(), "", 0},
      {"undefined, NUL", SString(), SString('\0', 1), -1},
      {"undefined, a", SString(), "a", -1},
      {"empty, empty", "", "", 0},
      {"empty, a", "", "a", -1},
      {"empty, NUL", "", SString('\0', 1), -1},
      {"prefix", "ab", "abc", -1},
      {"equal", "abc", "abc", 0},
      {"first byte", "b", "abc", 1},
      {"last byte", "abd", "abc", 1},
      {"case", "B", "a", -1},
      {"8-bit above 7-bit", "\x80", "\x7F", 1},
      {"8-bit", "\xFF", "\xFE", 1},
      {"NUL inside", SString("a\0b", 3), SString("a\0c", 3), -1},
      {"NUL at the end", SString("a\0", 2), "a", 1},
      {"NUL below a byte", SString("a\0", 2), "a\x01", -1},
  };
  for (const OrderRow& row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(row.a == row.b, row.order == 0);
    EXPECT_EQ(row.a != row.b, row.order != 0);
    EXPECT_EQ(row.a < row.b, row.order < 0);
    EXPECT_EQ(row.a > row.b, row.order > 0);
    EXPECT_EQ(row.b == row.a, row.order == 0);
    EXPECT_EQ((row.b < row.a), row.order > 0);
    EXPECT_EQ(row.b > row.a, row.order < 0);
  }
}

TEST(SString, EqualsItsSharers) {
  const SString s("abc"), copy(s), undefined, other(undefined);
  EXPECT_TRUE(s == copy);
  EXPECT_TRUE(undefined == other);
  EXPECT_FALSE(s < copy);
  EXPECT_FALSE(s > copy);
}

TEST(SString, ComparesWithText) {
  struct Row {
    const char* name;
    SString s;
    const char* text;
    int order;
  };
  const Row rows[] = {
      {"equal", "abc", "abc", 0},
      {"prefix", "ab", "abc", -1},
      {"longer", "abc", "ab", 1},
      {"undefined, empty", SString(), "", 0},
      {"undefined, a", SString(), "a", -1},
      {"empty, empty", "", "", 0},
      {"a, empty", "a", "", 1},
      {"NUL inside", SString("a\0", 2), "a", 1},
      {"8-bit", "\xC8", "z", 1},
      {"case", "ABC", "abc", -1},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(row.s == row.text, row.order == 0);
    EXPECT_EQ(row.s != row.text, row.order != 0);
    EXPECT_EQ(row.s < row.text, row.order < 0);
    EXPECT_EQ(row.s > row.text, row.order > 0);
  }
}

TEST(SString, ComparesWithNull) {
  EXPECT_TRUE(SString() == kNull);
  EXPECT_TRUE(SString("") == kNull);
  EXPECT_FALSE(SString("a") == kNull);
  EXPECT_FALSE(SString('\0', 1) == kNull);
  EXPECT_FALSE(SString() < kNull);
  EXPECT_FALSE(SString("a") < kNull);
  EXPECT_FALSE(SString() > kNull);
  EXPECT_FALSE(SString("") > kNull);
  EXPECT_TRUE(SString("a") > kNull);
  EXPECT_TRUE(SString('\0', 1) > kNull);
}

TEST(SString, ComparesWithAByte) {
  struct Row {
    const char* name;
    SString s;
    char c;
    bool equal, less, greater;
  };
  const Row rows[] = {
      {"the byte", "b", 'b', true, false, false},
      {"below", "a", 'b', false, true, false},
      {"above", "c", 'b', false, false, true},
      {"longer, same first", "ba", 'b', false, false, true},
      {"longer, first below", "az", 'b', false, true, false},
      {"longer, first above", "ca", 'b', false, false, true},
      {"empty", "", 'b', false, true, false},
      {"undefined", SString(), 'b', false, true, false},
      {"empty, NUL", "", '\0', false, true, false},
      {"NUL, NUL", SString('\0', 1), '\0', true, false, false},
      {"8-bit byte", "a", '\xC8', false, true, false},
      {"8-bit string", "\xC8", 'a', false, false, true},
      {"8-bit both", "\xC8x", '\xC8', false, false, true},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(row.s == row.c, row.equal);
    EXPECT_EQ(row.s < row.c, row.less);
    EXPECT_EQ(row.s > row.c, row.greater);
  }
}

// --- Text for the C library -------------------------------------------------------

TEST(Terminated, HandsOutTheStringItselfWhereANulFollows) {
  for (const SString& s : {SString("abc"), SString(""), SString(), SString("a\0b", 3)}) {
    EXPECT_TRUE(SStringPeek::Shares(s, Terminated(s)));
    EXPECT_EQ(Terminated(s).Data()[s.Length()], '\0');
  }
}

TEST(Terminated, CopiesAViewOfBytesThatEndWithoutNul) {
  const auto bytes = std::make_unique<char[]>(3);  // on the heap: a step too far is seen
  std::memcpy(bytes.get(), "abc", 3);
  SStringRep view{bytes.get(), 3, 1, 3};
  const SString s(&view);
  const SString copy = Terminated(s);
  EXPECT_NE(copy.Data(), s.Data());
  CheckText(copy, "abc");
  view.length = view.allocated = 0;
  CheckText(Terminated(s), "");
}

// --- Steps that only the library's other classes take -----------------------------

TEST(SStringSteps, MallocPointsAtANewRepresentation) {
  SString s;
  const SString before(s);
  char* const end = SStringPeek::Malloc(s, 10);
  EXPECT_EQ(end, s.Data() + 10);
  EXPECT_EQ(*end, '\0');
  EXPECT_EQ(s.Length(), 0);
  EXPECT_EQ(Links(s), 1);
  EXPECT_EQ(Allocated(s), 16);
  EXPECT_EQ(Links(before), 2) << "the one left behind is the caller's affair";
  const SString released(before);
  const_cast<SStringRep&>(SStringPeek::Rep(before)).links -= 1;
}

TEST(SStringSteps, ReallocKeepsTheBytesAndTheLengthOfAnUnsharedString) {
  SString s("abc");
  const char* const buffer = s.Data();
  const char* end = SStringPeek::Realloc(s, 7);
  EXPECT_EQ(end, buffer + 7);
  EXPECT_EQ(s.Data(), buffer) << "there was room";
  CheckText(s, "abc");
  end = SStringPeek::Realloc(s, 8);
  EXPECT_EQ(end, s.Data() + 8);
  EXPECT_EQ(s.Data()[8], '\0');
  EXPECT_EQ(Allocated(s), 16);
  CheckText(s, "abc");
  SStringPeek::Realloc(s, 1);
  EXPECT_EQ(Allocated(s), 16) << "a buffer never shrinks";
  EXPECT_EQ(s.View(), "a\0c"sv) << "the length is the caller's affair";
}

TEST(SStringSteps, ReallocDetachesASharedStringAndCutsIt) {
  for (const int n : {0, 2, 5, 6, 100}) {
    SCOPED_TRACE(n);
    SString s("abcde");
    const SString copy(s);
    const char* const end = SStringPeek::Realloc(s, n);
    EXPECT_EQ(end, s.Data() + n);
    EXPECT_EQ(s.Data()[n], '\0');
    CheckText(s, "abcde"sv.substr(0, static_cast<std::size_t>(n)));
    EXPECT_EQ(Allocated(s), AllocationFor(n));
    CheckText(copy, "abcde");
    EXPECT_EQ(Links(copy), 1);
  }
}

TEST(SStringSteps, ReallocEndsTheBytesAndTheRoomWithANul) {
  for (const int n : {8, 20, 100}) {
    SString adopted(new SStringRep{new char[8]{"abcdefg"}, 7, 0, 8}), undefined;
    char* end = SStringPeek::Realloc(adopted, n);
    EXPECT_EQ(*end, '\0');
    CheckText(adopted, "abcdefg");
    end = SStringPeek::Realloc(undefined, n);
    EXPECT_EQ(*end, '\0');
    CheckText(undefined, "");
  }
}

TEST(SStringSteps, ReallocDefinesAnUndefinedString) {
  SString s;
  SStringPeek::Realloc(s, 0);
  CheckText(s, "");
  SString shared;
  const SString copy(shared);
  SStringPeek::Realloc(shared, 0);
  CheckText(shared, "");
  CheckUndefined(copy);
}

TEST(SStringSteps, UndefUndefinesOnlyThisHandle) {
  SString s("abc"), shared("abc"), undefined;
  const SString copy(shared);
  for (SString* const each : {&s, &shared, &undefined}) {
    SStringPeek::Undef(*each);
    CheckUndefined(*each);
    EXPECT_EQ(Links(*each), 1);
  }
  CheckText(copy, "abc");
  EXPECT_EQ(Links(copy), 1);
  auto* const rep = new SStringRep{new char[8]{"abc"}, 3, 0, 8};
  SString adopted(rep);
  SStringPeek::Undef(adopted);
  CheckUndefined(adopted);
  EXPECT_EQ(&SStringPeek::Rep(adopted), rep);
}

}  // namespace
