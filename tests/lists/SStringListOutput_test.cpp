#include <gtest/gtest.h>

#include <iomanip>
#include <iostream>
#include <sstream>

#include "lists/SStringList.h"
#include "support/ErrorText.h"
#include "support/SStringListPeek.h"

namespace {

TEST(SStringListStreams, WriteTheElementsWithNothingBetween) {
  std::ostringstream out;
  out << SStringList{"a", SString("\0b", 2), SString(), "c\n"} << SStringList();
  EXPECT_EQ(out.str(), std::string("a\0bc\n", 5));
}

TEST(SStringListStreams, ReadUpToTheFirstEmptyLine) {
  std::istringstream in("one\n two\n\nthree\n");
  SStringList list = {"before"};
  EXPECT_EQ(&(in >> list), &in);
  EXPECT_EQ(Texts(list), (std::vector<std::string>{"one\n", " two\n"}));
  in >> list;
  EXPECT_EQ(Texts(list), (std::vector<std::string>{"three\n"})) << "the empty line was taken";
  in >> list;
  EXPECT_TRUE(list.Defined());
  EXPECT_EQ(list.Count(), 0);
}

TEST(SStringListStreams, ReadALineOfACarriageReturnAsALine) {
  std::istringstream in("a\n\r\nb\n");
  SStringList list;
  in >> list;
  EXPECT_EQ(Texts(list), (std::vector<std::string>{"a\n", "\r\n", "b\n"}));
}

TEST(SStringListStreams, ReadALastLineWithoutEnd) {
  std::istringstream in("one\ntwo");
  SStringList list;
  in >> list;
  EXPECT_EQ(Texts(list), (std::vector<std::string>{"one\n", "two"}));
  EXPECT_TRUE(in.eof());
}

TEST(SStringListStreams, ReadNothingFromAStreamThatHasFailed) {
  std::istringstream in("one\n");
  in.setstate(std::ios_base::failbit);
  SStringList list = {"before"};
  in >> list;
  EXPECT_EQ(list.Count(), 0);
}

TEST(SStringListDebug, DumpsTheRepresentation) {
  const SStringList list = {"a"}, copy(list), undefined;
  const std::string head = "Number of Links: 2\nNumber of Items: 1\nRoot node:       " +
                           Address(SStringListPeek::Rep(list).root) + "\nFlags:           1\n";
  std::cerr << std::hex << std::showbase << std::setw(300);
  EXPECT_EQ(ErrorText([&] { list.Debug(0); }), head) << "whatever the stream's format is";
  std::cerr << std::dec << std::noshowbase << std::setw(0);
  const std::string node = Address(SStringListPeek::Rep(list).root);
  EXPECT_EQ(ErrorText([&] { list.Debug(1); }),
            head + "Prev: " + node + " This: " + node + " Next: " + node + " 'a'\n\n");
  EXPECT_EQ(ErrorText([&] { list.Debug(2); }).substr(0, head.size() + 6), head + "Prev: ");
  EXPECT_EQ(ErrorText([&] { undefined.Debug(0); }), "Undefined\n");
  EXPECT_EQ(ErrorText([&] { undefined.Debug(1); }), "Undefined\n");
}

TEST(SStringItemDebug, DumpsTheNode) {
  const SStringItem item("a\n");
  const std::string places =
      "Prev: " + Address(&item) + " This: " + Address(&item) + " Next: " + Address(&item);
  EXPECT_EQ(ErrorText([&] { item.Debug(0); }), "a\\n");
  EXPECT_EQ(ErrorText([&] { item.Debug(1); }), places + " 'a\\n'\n");
  EXPECT_EQ(ErrorText([&] { item.Debug(2); }),
            places + "\n" + ErrorText([&] { item.value.Debug(2); }));
}

}  // namespace
