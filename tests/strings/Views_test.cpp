// The views over strings: SFixedString, SSubString, SLineBreaker.

#include <gtest/gtest.h>

#include <climits>
#include <cstdlib>
#include <memory>
#include <new>
#include <sstream>
#include <string>
#include <vector>

#include "strings/SFixedString.h"
#include "strings/SLineBreaker.h"
#include "strings/SString.h"
#include "strings/SSubString.h"
#include "strings/Sizes.h"
#include "support/CheckText.h"
#include "support/CountedNew.h"
#include "support/ExactInput.h"

namespace {

using namespace std::string_view_literals;

// --- SFixedString -----------------------------------------------------------------------

TEST(SFixedString, IsSharedAndNotCopied) {
  const ExactInput input("abc");
  SFixedString fixed(input.Data(), input.Length());
  const SString s = fixed, other = fixed;
  EXPECT_EQ(s.Data(), input.Data());
  EXPECT_TRUE(SStringPeek::Shares(s, other));
  EXPECT_EQ(s.View(), "abc");
  EXPECT_TRUE(s.Defined());
  EXPECT_EQ(SStringPeek::Rep(s).links, 4) << "the object, one more, and two strings";
  EXPECT_EQ(SStringPeek::Rep(s).allocated, 3);
}

TEST(SFixedString, ViewsTheEmptyText) {
  SFixedString none, null(nullptr, 5), negative("abc", -1);
  for (SFixedString* const each : {&none, &null, &negative}) {
    const SString s = *each;
    EXPECT_TRUE(s.Defined());
    EXPECT_EQ(s.View(), "");
    EXPECT_TRUE(s == "");
  }
}

TEST(SFixedString, SetBufferIsSeenByEveryStringThatShares) {
  SFixedString fixed("abc", 3);
  const SString s = fixed, copy(s);
  fixed.SetBuffer("defg", 4);
  EXPECT_EQ(s.View(), "defg");
  EXPECT_EQ(copy.View(), "defg");
  EXPECT_EQ(SStringPeek::Rep(s).allocated, 4);
}

TEST(SFixedString, IsCopiedByTheFirstEdit) {
  const char text[] = "abc";
  using Edit = void (*)(SString&);
  for (const Edit edit : {Edit([](SString& s) { s += 'x'; }), Edit([](SString& s) { s = "x"; }),
                          Edit([](SString& s) { s.Chop(); }), Edit([](SString& s) { s.Reverse(); }),
                          Edit([](SString& s) { s.UpperCase(); }),
                          Edit([](SString& s) { s.Segment(0, 1) = SString("x"); })}) {
    SFixedString fixed(text, 3);
    SString s = fixed;
    edit(s);
    EXPECT_NE(s.Data(), text);
    EXPECT_STREQ(Flaw(s), "");
    EXPECT_STREQ(text, "abc");
    const SString again = fixed;
    EXPECT_EQ(SStringPeek::Rep(again).links, 3);
  }
}

TEST(SFixedString, ComparesAndSearchesWithoutLookingBehindItsBytes) {
  const ExactInput input("ab1");
  SFixedString fixed(input.Data(), input.Length());
  const SString s = fixed;
  EXPECT_TRUE(s == "ab1");
  EXPECT_TRUE(s < "ab2");
  EXPECT_EQ(s.Index("b1"), 1);
  EXPECT_EQ(s.Index("1x"), -1);
  EXPECT_EQ(s.RIndex("1"), 2);
  EXPECT_EQ(s.Count("b"), 1);
  EXPECT_EQ(s[3], '\0');
  EXPECT_EQ(static_cast<double>(s.Segment(2, 1)), 1);
  std::ostringstream out;
  out << s;
  EXPECT_EQ(out.str(), "ab1");
}

TEST(SFixedStringDeathTest, OutlivedByAStringEndsTheProcess) {
  EXPECT_EXIT(
      {
        auto fixed = std::make_unique<SFixedString>("abc", 3);
        const SString kept = *fixed;
        fixed.reset();
        std::abort();
      },
      testing::ExitedWithCode(110), "");
}

TEST(SFixedStringDeathTest, OutlivedByACopyOfAStringEndsTheProcess) {
  EXPECT_EXIT(
      {
        SString kept;
        {
          SFixedString fixed("abc", 3);
          const SString s = fixed;
          kept = s;
        }
        std::abort();
      },
      testing::ExitedWithCode(110), "");
}

// --- SSubString -------------------------------------------------------------------------

TEST(SSubString, ReplacesItsRange) {
  struct Row {
    int start, count;
    const char* with;
    const char* whole;  // of abcdef
  };
  constexpr Row kRows[] = {
      {2, 2, "XY", "abXYef"},
      {2, 2, "", "abef"},
      {2, 2, "1234567890", "ab1234567890ef"},
      {-1, 2, "X", "Xbcdef"},
      {0, 0, "X", "Xabcdef"},
      {6, 0, "X", "abcdefX"},
      {100, 5, "X", "abcdefX"},
      {4, 100, "X", "abcdX"},
      {0, 6, "X", "X"},
      {3, -5, "X", "abcXdef"},
      {INT_MIN, INT_MAX, "X", "Xabcdef"},
      {INT_MAX, INT_MAX, "X", "abcdefX"},
  };
  for (const Row& row : kRows) {
    SCOPED_TRACE(testing::Message() << row.start << ", " << row.count);
    SString s("abcdef");
    const SString copy(s);
    s.Segment(row.start, row.count) = row.with;
    CheckText(s, row.whole);
    CheckText(copy, "abcdef");
    SString alone("abcdef");
    SSubString(alone, row.start, row.count) = SString(row.with);
    CheckText(alone, row.whole);
  }
}

TEST(SSubString, ReadsItsRange) {
  SString s("abcdef");
  CheckText(SString(s.Segment(2, 2)), "cd");
  CheckText(SString(s.Segment(-1, 2)), "a");
  CheckText(SString(s.Segment(6, 2)), "");
  EXPECT_TRUE(s.Segment(2, 2) == "cd");
  SString undefined;
  CheckUndefined(SString(undefined.Segment(0, 1)));
}

TEST(SSubString, OfAnUndefinedStringAssignsTheWhole) {
  SString s;
  s.Segment(0, 0) = "ab";
  CheckText(s, "ab");
  SString still;
  still.Segment(3, 1) = SString();
  CheckUndefined(still);
}

TEST(SSubString, TakesItsOwnStringAndPartsOfIt) {
  SString s("abc");
  s.Segment(1, 1) = s;
  CheckText(s, "aabcc");
  s.Segment(0, 2) = s.Segment(3, 2);
  CheckText(s, "ccbcc");
  s.Segment(0, 1) = SString(s);
  CheckText(s, "ccbcccbcc");
  SString t("abcdef");
  const SSubString whole = t.Segment(0, 6);
  SSubString part = t.Segment(2, 2);
  part = whole;
  CheckText(t, "ababcdefef");
}

TEST(SSubString, KeepsItsBoundsAfterAnAssignment) {
  SString s("abcdef");
  SSubString range = s.Segment(2, 2);
  range = "12345";
  CheckText(s, "ab12345ef");
  range = "X";
  CheckText(s, "abX345ef");
}

TEST(SSubString, OfAStringThatHasBecomeShorterIsWhatIsLeft) {
  SString s("abcdef");
  SSubString range = s.Segment(2, 3);
  s = "abc";
  CheckText(SString(range), "c");
  s = "a";
  CheckText(SString(range), "");
  range = "X";
  CheckText(s, "aX");
}

TEST(SSubString, RefusesAResultPastTheLimit) {
  SFixedString most("", kMaxLength);  // whose bytes nobody reads
  const SString longest = most;
  SString s("ab");
  EXPECT_THROW(s.Segment(1, 0) = longest, std::bad_alloc);
  CheckText(s, "ab");
}

TEST(SSubString, WritesInPlaceWhereThereIsRoom) {
  SString s("abcdef");
  const SString x("X");
  const AllocationCount count;
  s.Segment(0, 0) = x;
  EXPECT_EQ(count.Made(), 0);
  EXPECT_EQ(s.View(), "Xabcdef");
}

// --- SLineBreaker -------------------------------------------------------------------------

// Returns all lines of a text, and the remainder last.
std::vector<std::string> Lines(std::string_view text, unsigned strip) {
  const ExactInput input(text);
  SFixedString fixed(input.Data(), input.Length());
  const SString s = fixed;
  std::vector<std::string> lines;
  {
    SLineBreaker breaker(s, strip);
    SString line;
    while (breaker.ReadLine(line) == 1) lines.emplace_back(line.View());
    EXPECT_FALSE(line.Defined());
    lines.emplace_back(breaker.GetRemainder().View());
  }
  return lines;
}

TEST(SLineBreaker, BreaksAtLineFeedsWithOrWithoutCarriageReturn) {
  using Expected = std::vector<std::string>;
  struct Row {
    const char* name;
    std::string_view text;
    Expected kept, stripped;
  };
  const Row rows[] = {
      {"both ends", "a\r\nb\nc", {"a\r\n", "b\n", "c"}, {"a", "b", "c"}},
      {"empty", "", {""}, {""}},
      {"empty lines", "\n\r\n\n", {"\n", "\r\n", "\n", ""}, {"", "", "", ""}},
      {"lone carriage return", "a\rb\n", {"a\rb\n", ""}, {"a\rb", ""}},
      {"two carriage returns", "a\r\r\n", {"a\r\r\n", ""}, {"a\r", ""}},
      {"carriage return at the end", "a\n\r", {"a\n", "\r"}, {"a", "\r"}},
      {"line feed first", "\n\rb", {"\n", "\rb"}, {"", "\rb"}},
      {"NUL", "a\0b\nc"sv, {std::string("a\0b\n", 4), "c"}, {std::string("a\0b", 3), "c"}},
      {"ends with a line", "a\nb\n", {"a\n", "b\n", ""}, {"a", "b", ""}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(Lines(row.text, 0), row.kept);
    EXPECT_EQ(Lines(row.text, 1), row.stripped);
    EXPECT_EQ(Lines(row.text, 7), row.stripped);
  }
}

TEST(SLineBreaker, GetRemainderTakesNothing) {
  const SString text("one\ntwo");
  SLineBreaker breaker(text, 0);
  EXPECT_EQ(breaker.GetRemainder().View(), "one\ntwo");
  EXPECT_EQ(breaker.GetRemainder().View(), "one\ntwo");
  SString line;
  EXPECT_EQ(breaker.ReadLine(line), 1);
  EXPECT_EQ(line.View(), "one\n");
}

TEST(SLineBreaker, CopiesNothing) {
  const SString text("one\ntwo\n");
  SLineBreaker breaker(text, 1);
  SString line;
  {
    const AllocationCount count;
    breaker.ReadLine(line);
    EXPECT_EQ(line.Data(), text.Data());
    breaker.ReadLine(line);
    EXPECT_EQ(line.Data(), text.Data() + 4);
    EXPECT_EQ(count.Made(), 0);
  }
}

TEST(SLineBreaker, ShowsTheNextLineInAllStringsThatShare) {
  const SString text("one\ntwo\n");
  SLineBreaker breaker(text, 1);
  SString line, next;
  breaker.ReadLine(line);
  breaker.ReadLine(next);
  EXPECT_EQ(line.View(), "two");
  EXPECT_TRUE(SStringPeek::Shares(line, next));
}

TEST(SLineBreaker, OfAnUndefinedTextHasNoLine) {
  const SString undefined;
  SLineBreaker breaker(undefined, 0);
  SString line("before");
  EXPECT_EQ(breaker.ReadLine(line), 0);
  CheckUndefined(line);
  EXPECT_EQ(breaker.GetRemainder().View(), "");
}

// The text's last piece goes up to the length that `out` has on entry.
TEST(SLineBreaker, LooksAtTheLengthOfItsArgumentBeforeGivingUp) {
  struct Row {
    const char* name;
    int length;  // of the string handed in
    unsigned strip;
    int result;
    std::string_view line, rest;
  };
  const Row rows[] = {
      {"within, kept", 3, 0, 1, "abcd", "ef"},
      {"within, stripped", 3, 1, 1, "abc", "ef"},
      {"one below the end, kept", 5, 0, 1, "abcdef", ""},
      {"one below the end, stripped", 5, 1, 1, "abcde", ""},
      {"the end, kept", 6, 0, 1, "abcdef", ""},
      {"the end, stripped", 6, 1, 1, "abcdef", ""},
      {"beyond, kept", 50, 0, 1, "abcdef", ""},
      {"beyond, stripped", 50, 1, 1, "abcdef", ""},
      {"none", 0, 0, 0, "", "abcdef"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    const SString text("abcdef");
    SLineBreaker breaker(text, row.strip);
    SString line('x', row.length);
    EXPECT_EQ(breaker.ReadLine(line), row.result);
    EXPECT_EQ(line.View(), row.line);
    EXPECT_EQ(breaker.GetRemainder().View(), row.rest);
  }
}

TEST(SLineBreaker, WithNoTextLeftGivesUpWhateverItsArgument) {
  const SString text("ab\n");
  SLineBreaker breaker(text, 0);
  SString line;
  EXPECT_EQ(breaker.ReadLine(line), 1);
  SString longer('x', 100);
  EXPECT_EQ(breaker.ReadLine(longer), 0);
  CheckUndefined(longer);
  line = SString();
}

TEST(SLineBreakerDeathTest, OutlivedByALineEndsTheProcess) {
  EXPECT_EXIT(
      {
        SString line;
        {
          const SString text("one\ntwo\n");
          SLineBreaker breaker(text, 0);
          breaker.ReadLine(line);
        }
        std::abort();
      },
      testing::ExitedWithCode(110), "");
  EXPECT_EXIT(
      {
        SString rest;
        {
          const SString text("one");
          SLineBreaker breaker(text, 0);
          rest = breaker.GetRemainder();
        }
        std::abort();
      },
      testing::ExitedWithCode(110), "");
}

}  // namespace
