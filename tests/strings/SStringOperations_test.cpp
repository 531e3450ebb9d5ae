#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <memory>
#include <new>
#include <random>
#include <string>

#include "strings/SString.h"
#include "support/CheckText.h"
#include "support/CountedNew.h"

namespace {

using namespace std::string_view_literals;

const char* const kNull = nullptr;

// --- Copying out --------------------------------------------------------------------

TEST(GetBuf, CopiesTheBytesAndANul) {
  for (const SString& s : {SString("abc"), SString("a\0b", 3), SString(""), SString()}) {
    const std::unique_ptr<char[]> copy(s.GetBuf());
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(std::string_view(copy.get(), s.View().size()), s.View());
    EXPECT_EQ(copy[static_cast<std::size_t>(s.Length())], '\0');
  }
}

TEST(GetBuf, IsNullWhenMemoryIsShort) {
  const SString s("abc");
  const FailNthAllocation fault(0);
  EXPECT_EQ(s.GetBuf(), nullptr);
  EXPECT_TRUE(fault.Fired());
}

// --- Counting -----------------------------------------------------------------------

TEST(Count, CountsAllPositionsOverlapsToo) {
  EXPECT_EQ(SString("aaa").Count("aa"), 2);
  EXPECT_EQ(SString("aaaa").Count(SString("aa")), 3);
  EXPECT_EQ(SString("abcabc").Count("abc"), 2);
  EXPECT_EQ(SString("abcabc").Count("abcd"), 0);
  EXPECT_EQ(SString("ab").Count("abc"), 0);
  EXPECT_EQ(SString("abc").Count("abc"), 1);
  EXPECT_EQ(SString("a\0a\0a", 5).Count(SString("a\0a", 3)), 2);
}

TEST(Count, TheEmptyTextOccursNowhere) {
  EXPECT_EQ(SString("aaa").Count(""), 0);
  EXPECT_EQ(SString("aaa").Count(SString()), 0);
  EXPECT_EQ(SString("aaa").Count(kNull), 0);
  EXPECT_EQ(SString().Count("a"), 0);
  EXPECT_EQ(SString().Count(""), 0);
}

TEST(Count, CountsBytes) {
  EXPECT_EQ(SString("abcabc").Count('a'), 2);
  EXPECT_EQ(SString("abcabc").Count('x'), 0);
  EXPECT_EQ(SString("a\0b\0", 4).Count('\0'), 2);
  EXPECT_EQ(SString("\xC8").Count('\xC8'), 1);
  EXPECT_EQ(SString().Count('\0'), 0);
}

// --- Equality without case ------------------------------------------------------------

TEST(CompareNoCase, IsAnEquality) {
  struct Row {
    const char* name;
    SString a, b;
    int equal;
  };
  const Row rows[] = {
      {"case", "ABC", "abc", 1},
      {"other length", "abc", "abcd", 0},
      {"other byte", "abc", "abd", 0},
      {"empty", "", SString(), 1},
      {"undefined", SString(), SString(), 1},
      {"beside the letters", "@[`{", "`{@[", 0},
      {"8-bit letters have no case", "\xC4", "\xE4", 0},
      {"8-bit equal", "\xC4", "\xC4", 1},
      {"NUL inside", SString("a\0B", 3), SString("A\0b", 3), 1},
      {"NUL and blank", SString("\0", 1), " ", 0},
      {"long", SString('A', 100), SString('a', 100), 1},
      {"long, last differs", SString('A', 100) + 'b', SString('a', 100) + 'c', 0},
      {"long, first differs", 'b' + SString('A', 100), 'c' + SString('a', 100), 0},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(row.a.CompareNoCase(row.b), row.equal);
    EXPECT_EQ(row.b.CompareNoCase(row.a), row.equal);
  }
  const SString s("abc");
  EXPECT_EQ(s.CompareNoCase(SString(s)), 1);
}

// --- Searching ------------------------------------------------------------------------

TEST(Index, FindsTheFirstFromStartOn) {
  struct Row {
    const char* text;
    const char* needle;
    int start, at;
  };
  constexpr Row kRows[] = {
      {"abcabc", "abc", 0, 0},   {"abcabc", "abc", 1, 3},
      {"abcabc", "abc", 3, 3},   {"abcabc", "abc", 4, -1},
      {"abcabc", "abc", -1, -1}, {"abcabc", "abc", INT_MIN, -1},
      {"abcabc", "abc", 6, -1},  {"abcabc", "abc", INT_MAX, -1},
      {"abcabc", "", 0, -1},     {"abcabc", nullptr, 0, -1},
      {"abc", "abcd", 0, -1},    {"", "a", 0, -1},
      {"", "", 0, -1},           {"abcabc", "c", 5, 5},
      {"aab", "ab", 0, 1},
  };
  for (const Row& row : kRows) {
    SCOPED_TRACE(testing::Message() << row.text << " from " << row.start);
    EXPECT_EQ(SString(row.text).Index(row.needle, row.start), row.at);
    EXPECT_EQ(SString(row.text).Index(SString(row.needle), row.start), row.at);
  }
  EXPECT_EQ(SString().Index(SString(), 0), -1);
  EXPECT_EQ(SString("a\0b\0b", 5).Index(SString("\0b", 2)), 1);
}

TEST(Index, FindsBytes) {
  const SString s("xax");
  EXPECT_EQ(s.Index('x', 0), 0);
  EXPECT_EQ(s.Index('x', 1), 2);
  EXPECT_EQ(s.Index('x', 2), 2);
  EXPECT_EQ(s.Index('x', 3), -1);
  EXPECT_EQ(s.Index('x', INT_MAX), -1);
  EXPECT_EQ(s.Index('x', -1), -1);
  EXPECT_EQ(s.Index('\0', 0), -1) << "the NUL behind the last byte is no byte of the string";
  EXPECT_EQ(SString("\xC8").Index('\xC8'), 0);
  EXPECT_EQ(SString().Index('a'), -1);
}

TEST(RIndex, OfTextSearchesDownFromStart) {
  struct Row {
    const char* text;
    const char* needle;
    int start, at;
  };
  constexpr Row kRows[] = {
      {"abcabc", "abc", 0, 3},
      {"abcabc", "abc", 2, 0},
      {"abcabc", "abc", 3, 3},
      {"abcabc", "abc", 100, 3},
      {"abcabc", "abc", INT_MAX, 3},
      {"abcabc", "a", -3, 3},
      {"abcabc", "a", -4, 0},
      {"abcabc", "a", -6, 0},
      {"abcabc", "a", -7, -1},
      {"abcabc", "a", INT_MIN, -1},
      {"abcabc", "c", -6, -1},
      {"abcabc", "x", 0, -1},
      {"abc", "abcd", 0, -1},
      {"abcabc", "", 0, 5},
      {"abcabc", "", 2, 2},
      {"abcabc", "", 100, 100},
      {"abcabc", "", -2, 4},
      {"abcabc", "", -7, -1},
      {"abcabc", nullptr, 0, 5},
      {"", "", 0, -1},
      {"", "", 3, 3},
      {"", "a", 0, -1},
      {"a", "a", 0, 0},
      {"aXb", "b", 1, -1},
  };
  for (const Row& row : kRows) {
    SCOPED_TRACE(testing::Message() << row.text << " from " << row.start);
    EXPECT_EQ(SString(row.text).RIndex(row.needle, row.start), row.at);
    EXPECT_EQ(SString(row.text).RIndex(SString(row.needle), row.start), row.at);
  }
  EXPECT_EQ(SString().RIndex(SString(), 0), -1);
  EXPECT_EQ(SString("a\0b\0b", 5).RIndex(SString("\0b", 2)), 3);
}

TEST(RIndex, OfAByteSearchesBelowStart) {
  const SString s("abcabc");
  struct Row {
    char c;
    int start, at;
  };
  constexpr Row kRows[] = {{'c', 0, 5}, {'c', 5, 2},       {'c', 6, 5},  {'c', 2, -1},
                           {'c', 3, 2}, {'c', 100, 5},     {'c', -1, 5}, {'c', INT_MIN, 5},
                           {'a', 1, 0}, {'c', INT_MAX, 5}, {'x', 0, -1}, {'\0', 0, -1}};
  for (const Row& row : kRows) EXPECT_EQ(s.RIndex(row.c, row.start), row.at) << row.start;
  EXPECT_EQ(SString().RIndex('a', 0), -1);
}

// Obvious versions of the three searches.
int SlowFirst(const std::string& text, const std::string& needle) {
  for (std::size_t i = 0; i + needle.size() <= text.size(); ++i) {
    if (text.compare(i, needle.size(), needle) == 0) return static_cast<int>(i);
  }
  return -1;
}
int SlowLast(const std::string& text, const std::string& needle) {
  int last = -1;
  for (std::size_t i = 0; i + needle.size() <= text.size(); ++i) {
    if (text.compare(i, needle.size(), needle) == 0) last = static_cast<int>(i);
  }
  return last;
}
int SlowCount(const std::string& text, const std::string& needle) {
  int count = 0;
  for (std::size_t i = 0; i + needle.size() <= text.size(); ++i) {
    count += text.compare(i, needle.size(), needle) == 0;
  }
  return count;
}

TEST(Searching, AgreesWithTheObviousWayOnRandomTexts) {
  std::mt19937 random(7);
  const auto word = [&](std::size_t length, unsigned letters) {
    std::string made;
    while (made.size() < length) made += static_cast<char>('a' + random() % letters);
    return made;
  };
  const auto as = [](const std::string& s) { return SString(std::string_view(s)); };
  for (int i = 0; i < 20'000; ++i) {
    const auto letters = static_cast<unsigned>(1 + random() % 3);
    const std::string text = word(random() % 60, letters);
    const std::string needle = word(1 + random() % 6, letters);
    ASSERT_EQ(as(text).Index(as(needle)), SlowFirst(text, needle)) << text << " " << needle;
    ASSERT_EQ(as(text).RIndex(as(needle)), SlowLast(text, needle)) << text << " " << needle;
    ASSERT_EQ(as(text).Count(as(needle)), SlowCount(text, needle)) << text << " " << needle;
  }
}

// Texts that come close to the needle at every position, long enough for the searches to
// change their method.
TEST(Searching, AgreesWithTheObviousWayOnHostileTexts) {
  const auto run = [](char c, std::size_t n) { return std::string(n, c); };
  const std::string texts[] = {run('a', 20'000), run('a', 10'000) + "b" + run('a', 10'000),
                               "b" + run('a', 20'000), run('a', 20'000) + "b"};
  const std::string needles[] = {run('a', 500), run('a', 500) + "b", "b" + run('a', 500),
                                 run('a', 250) + "b" + run('a', 250),
                                 run('a', 250) + "c" + run('a', 250)};
  for (const std::string& text : texts) {
    for (const std::string& needle : needles) {
      const SString s{std::string_view(text)}, t{std::string_view(needle)};
      EXPECT_EQ(s.Index(t), SlowFirst(text, needle));
      EXPECT_EQ(s.RIndex(t), SlowLast(text, needle));
      EXPECT_EQ(s.Count(t), SlowCount(text, needle));
    }
  }
}

// At each length the change of method may come at another place.
TEST(Searching, FindsWhatStandsWhereTheMethodChanges) {
  for (int n = 0; n < 1500; ++n) {
    ASSERT_EQ((SString('a', n) + "ab").Index("ab"), n);
    ASSERT_EQ((SString("aab") + SString('a', n)).RIndex("aab"), 0);
    ASSERT_EQ((SString('a', n) + "bab").Count("ab"), n > 0 ? 2 : 1);
  }
}

// Half of the text as the needle: a search that were not linear would not end.
TEST(Searching, EndsOnLongHostileTexts) {
  constexpr int kHalf = 1 << 21;
  const SString text('a', 2 * kHalf), half('a', kHalf - 1), b("b");
  EXPECT_EQ(text.Index(half + b), -1);
  EXPECT_EQ(text.Index(b + half), -1);
  EXPECT_EQ(text.RIndex(half + b), -1);
  EXPECT_EQ(text.RIndex(b + half), -1);
  EXPECT_EQ(text.Count(half), kHalf + 2);
  EXPECT_EQ(text.Count(half + b), 0);
}

// --- Slicing ------------------------------------------------------------------------

TEST(Segment, CopiesWhatLiesWithin) {
  struct Row {
    int start, count;
    const char* segment;
  };
  constexpr Row kRows[] = {
      {-2, 5, "abc"},
      {4, 10, "ef"},
      {6, 1, ""},
      {0, 0, ""},
      {0, 6, "abcdef"},
      {0, INT_MAX, "abcdef"},
      {2, 2, "cd"},
      {-2, 2, ""},
      {-2, 1, ""},
      {1, -1, ""},
      {INT_MAX, INT_MAX, ""},
      {INT_MIN, INT_MAX, ""},
      {INT_MIN, INT_MIN, ""},
      {INT_MIN + 6, INT_MAX, "abcde"},
      {5, INT_MIN, ""},
  };
  const SString s("abcdef");
  for (const Row& row : kRows) {
    SCOPED_TRACE(testing::Message() << row.start << ", " << row.count);
    CheckText(s.Segment(row.start, row.count), row.segment);
  }
  CheckText(std::as_const(s).Segment(0, 6), "abcdef");
  EXPECT_FALSE(SStringPeek::Shares(s, s.Segment(0, 6))) << "it is a new string";
  const SString undefined;
  CheckText(undefined.Segment(0, 1), "");
}

TEST(Segment, AssignedToItsOwnStringWorks) {
  SString s("abcdef");
  s = s.Segment(2, 3);
  CheckText(s, "cde");
}

TEST(HasPrefix, ComparesTheBeginning) {
  const SString s("abc");
  EXPECT_EQ(s.HasPrefix(SString("ab")), 1);
  EXPECT_EQ(s.HasPrefix("abc"), 1);
  EXPECT_EQ(s.HasPrefix("abcd"), 0);
  EXPECT_EQ(s.HasPrefix("b"), 0);
  EXPECT_EQ(s.HasPrefix("AB"), 0);
  EXPECT_EQ(s.HasPrefix(""), 1);
  EXPECT_EQ(s.HasPrefix(SString()), 1);
  EXPECT_EQ(SString().HasPrefix(""), 1);
  EXPECT_EQ(SString().HasPrefix("a"), 0);
  EXPECT_EQ(SString("a\0b", 3).HasPrefix(SString("a\0", 2)), 1);
}

// --- Editing ------------------------------------------------------------------------

TEST(Chop, RemovesAndReturnsTheLastByte) {
  SString s("ab");
  EXPECT_EQ(s.Chop(), 'b');
  CheckText(s, "a");
  EXPECT_EQ(s.Chop(), 'a');
  CheckText(s, "");
  EXPECT_EQ(s.Chop(), 0);
  CheckText(s, "");
  SString high("\xC8");
  EXPECT_EQ(high.Chop(), 0xC8);
}

TEST(Chop, ChangesNothingWhereThereIsNothing) {
  SString undefined, empty("");
  const SString copy(empty);
  EXPECT_EQ(undefined.Chop(), 0);
  EXPECT_EQ(empty.Chop(), 0);
  CheckUndefined(undefined);
  EXPECT_TRUE(SStringPeek::Shares(empty, copy));
}

TEST(Case, ChangesOnlyTheLettersAToZ) {
  std::string all, lower, upper;
  for (int c = 0; c < 256; ++c) {
    all += static_cast<char>(c);
    lower += static_cast<char>(c >= 'A' && c <= 'Z' ? c + 32 : c);
    upper += static_cast<char>(c >= 'a' && c <= 'z' ? c - 32 : c);
  }
  CheckText(SString(std::string_view(all)).LowerCase(), lower);
  CheckText(SString(std::string_view(all)).UpperCase(), upper);
}

TEST(Reverse, TurnsTheBytesRound) {
  CheckText(SString("abc").Reverse(), "cba");
  CheckText(SString("abcd").Reverse(), "dcba");
  CheckText(SString("a").Reverse(), "a");
  CheckText(SString("a\0b", 3).Reverse(), "b\0a"sv);
}

TEST(Editing, InPlaceDefinesAnUndefinedString) {
  SString lower, upper, reversed;
  CheckText(lower.LowerCase(), "");
  CheckText(upper.UpperCase(), "");
  CheckText(reversed.Reverse(), "");
}

TEST(Editing, InPlaceIsNotSeenBySharers) {
  SString lower("Ab"), upper("Ab"), reversed("Ab"), chopped("Ab");
  const SString copies[] = {lower, upper, reversed, chopped};
  EXPECT_EQ(&lower.LowerCase(), &lower);
  upper.UpperCase();
  reversed.Reverse();
  chopped.Chop();
  CheckText(lower, "ab");
  CheckText(upper, "AB");
  CheckText(reversed, "bA");
  CheckText(chopped, "A");
  for (const SString& copy : copies) CheckText(copy, "Ab");
}

// --- Free functions -------------------------------------------------------------------

TEST(Plus, TakesTextAndBytesOnItsLeft) {
  const SString t("t");
  CheckText("s" + t, "st");
  CheckText('s' + t, "st");
  CheckText('\0' + t, "\0t"sv);
  CheckText(kNull + t, "t");
  CheckText("" + SString(), "");
  CheckText(t, "t");
}

TEST(BaseName, IsWhatFollowsTheLastSlashWithoutTheSuffix) {
  struct Row {
    const char* path;
    const char* suffix;
    const char* name;
  };
  constexpr Row kRows[] = {
      {"dir/file.c", ".c", "file"},
      {"file", "", "file"},
      {"dir/", "", ""},
      {"a/b/c", "", "c"},
      {"/file", "", "file"},
      {"file.c", ".h", "file.c"},
      {"file.c", "file.c", ""},
      {"dir/x", "ir/x", ""},
      {"dir/x", "/x", ""},
      {"x", "longer", "x"},
      {"", "", ""},
      {"", "x", ""},
      {"/", "/", ""},
      {"dir/file.C", ".c", "file.C"},
  };
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.path);
    CheckText(BaseName(row.path, row.suffix), row.name);
  }
  CheckText(BaseName(SString(), SString()), "");
}

TEST(MakeSString, IsTheTextOfTheNumber) {
  CheckText(MakeSString(-42), "-42");
  CheckText(MakeSString(1L << 40), "1099511627776");
  CheckText(MakeSString(0.1f), "0.1000000014901161");
  CheckText(MakeSString(0.1), "0.1");
}

}  // namespace
