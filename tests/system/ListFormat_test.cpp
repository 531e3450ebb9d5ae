#include "system/ListFormat.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>

#include "support/CheckText.h"
#include "support/FailEachAllocation.h"

namespace {

TEST(FormatList, FillsLines) {
  CheckText(FormatList({"one", "two", "three"}, 12, 0, "\n"), "one two\nthree\n");
  CheckText(FormatList({"one", "two", "three"}, 13, 0, "\n"), "one two three\n");
  CheckText(FormatList({"one", "two", "three"}, 100, 0, ""), "one two three");
}

TEST(FormatList, CountsWhatItCountsAndNoMore) {
  CheckText(FormatList({"ab", "cd"}, 5, 0, "|"), "ab cd|");
  CheckText(FormatList({"ab", "cd"}, 4, 0, "|"), "ab|cd|");
  CheckText(FormatList({"ab", "cd"}, 9, 2, "|"), "  ab cd|");
  CheckText(FormatList({"ab", "cd"}, 8, 2, "|"), "  ab|  cd|");
}

TEST(FormatList, PutsTwoBlanksBehindASentence) {
  for (const char* const end : {".", ":", "!", "?"}) {
    const SString first = SString("Full") + end;
    CheckText(FormatList({first, "Try"}, 80, 0, "\n"), (first + "  Try\n").View());
  }
  for (const char* const end : {",", ";", ")", ""}) {
    const SString first = SString("Full") + end;
    CheckText(FormatList({first, "try"}, 80, 0, "\n"), (first + " try\n").View());
  }
  CheckText(FormatList({"a.", "b"}, 3, 0, "|"), "a.|b|");
}

TEST(FormatList, LeavesALongWordAlone) {
  CheckText(FormatList({"a", "incomprehensible", "b", "c"}, 6, 1, "\n"),
            " a\n incomprehensible\n b c\n");
  CheckText(FormatList({"a", "b"}, 0, 0, "\n"), "a\nb\n");
  CheckText(FormatList({"a", "b"}, -5, 3, "\n"), "   a\n   b\n");
}

TEST(FormatList, OfNoWordsIsUndefined) {
  SStringList empty;
  CheckUndefined(FormatList(empty, 10, 2, "\n"));
  empty.Reset();
  CheckUndefined(FormatList(empty, 10, 2, "\n"));
}

TEST(FormatList, TakesAnyWidthAndIndent) {
  CheckText(FormatList({"a", "b"}, INT_MAX, -1, "\n"), "a b\n");
  CheckText(FormatList({"a", "b"}, INT_MIN, 1, "\n"), " a\n b\n");
  CheckText(FormatList({"a", "b"}, INT_MAX, INT_MIN, "\n"), "a b\n");
}

TEST(FormatList, KeepsEmptyAndUndefinedWords) {
  CheckText(FormatList({"", "a", SString(), "b"}, 80, 0, "\n"), " a  b\n");
}

TEST(FormatList, LeavesTheCallersListAlone) {
  const SStringList words = {"one", "two"};
  static_cast<void>(FormatList(words, 80, 0, "\n"));
  EXPECT_EQ(words, (SStringList{"one", "two"}));
}

TEST(FormatList, LooksAtTheLineForTwoBlanksAndNotAtTheWord) {
  CheckText(FormatList({"a.", "", "b"}, 80, 0, "\n"), "a.   b\n");
  CheckText(FormatList({"", "b"}, 80, 0, "\n"), " b\n");
  CheckText(FormatList({SString("a\0", 2), "b"}, 80, 0, "|"), std::string_view("a\0 b|", 5));
}

TEST(FormatList, OfEmptyWordsWithoutALineEndIsUndefined) {
  CheckUndefined(FormatList({"", SString()}, 0, 0, ""));
  CheckText(FormatList({""}, 1, 0, "\n"), "\n");
}

TEST(Format, WithoutMemoryLeavesTheTextAsItWas) {
  const SString text("The queue is full. Try again.");
  SString lines;
  CheckText(Format(text, 9, 1, "\n"), " The\n queue\n is\n full.\n Try\n again.\n");
  EXPECT_GE(FailEachAllocation([&] { lines = Format(text, 16, 2, "\n"); },
                               [&] { CheckText(text, "The queue is full. Try again."); }),
            5);
  CheckText(lines, "  The queue is\n  full.  Try\n  again.\n");
}

TEST(Format, TakesTheWordsOfAText) {
  CheckText(Format("The queue is full. Try again.", 16, 2, "\n"),
            "  The queue is\n  full.  Try\n  again.\n");
  CheckText(Format(" \tone \n two ", 80, 0, "\n"), "one two\n");
  CheckUndefined(Format(SString(), 80, 0, "\n"));
  CheckUndefined(Format("", 80, 0, "\n"));
}

}  // namespace
