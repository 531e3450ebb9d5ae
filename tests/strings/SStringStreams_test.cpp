#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <sstream>
#include <stdexcept>
#include <string>

#include "strings/SString.h"
#include "support/CheckText.h"

namespace {

using namespace std::string_view_literals;

TEST(ReadLine, ReadsLinesWithTheirEndsAndTheLastWithoutOne) {
  std::istringstream in("one\ntwo");
  SString line("before");
  EXPECT_EQ(line.ReadLine(in), 1);
  CheckText(line, "one\n");
  EXPECT_TRUE(in.good());
  EXPECT_EQ(line.ReadLine(in), 1);
  CheckText(line, "two");
  EXPECT_TRUE(in.eof());
  EXPECT_FALSE(in.fail()) << "the line was read";
  EXPECT_EQ(line.ReadLine(in), 0);
  CheckText(line, "");
  EXPECT_TRUE(in.fail()) << "reading at the end marks the stream";
}

TEST(ReadLine, AtTheEndOfInputIsOnlyAtTheEnd) {
  std::istringstream in("one\n");
  SString line;
  EXPECT_EQ(line.ReadLine(in), 1);
  EXPECT_EQ(line.ReadLine(in), 0);
  CheckText(line, "");
  EXPECT_TRUE(in.eof());
  EXPECT_FALSE(in.fail());
  EXPECT_EQ(line.ReadLine(in), 0);
  EXPECT_TRUE(in.fail());
}

TEST(ReadLine, KeepsNulsAndCarriageReturnsAndReadsEmptyLines) {
  std::istringstream in(std::string("\n\r\na\0b\n", 7));
  SString line;
  EXPECT_EQ(line.ReadLine(in), 1);
  CheckText(line, "\n");
  EXPECT_EQ(line.ReadLine(in), 1);
  CheckText(line, "\r\n");
  EXPECT_EQ(line.ReadLine(in), 1);
  CheckText(line, "a\0b\n"sv);
}

TEST(ReadLine, SkipsNoWhiteSpace) {
  std::istringstream in("  \t one\n");
  SString line;
  line.ReadLine(in);
  CheckText(line, "  \t one\n");
}

TEST(ReadLine, ReadsLinesOfAnyLength) {
  for (const int length : {1022, 1023, 1024, 1025, 2048, 100'000}) {
    const std::string text(static_cast<std::size_t>(length), 'x');
    std::istringstream in(text + "\n" + text);
    SString line;
    EXPECT_EQ(line.ReadLine(in), 1);
    CheckText(line, text + "\n");
    EXPECT_EQ(line.ReadLine(in), 1);
    CheckText(line, text);
  }
}

TEST(ReadLine, ReadsNothingFromAStreamThatHasFailed) {
  for (const std::ios_base::iostate state :
       {std::ios_base::failbit, std::ios_base::badbit, std::ios_base::eofbit}) {
    std::istringstream in("one\n");
    in.setstate(state);
    SString line("before");
    EXPECT_EQ(line.ReadLine(in), 0);
    CheckText(line, "");
    EXPECT_TRUE(in.fail());
    in.clear();
    EXPECT_EQ(line.ReadLine(in), 1) << "nothing was taken";
    CheckText(line, "one\n");
  }
}

// Gives its text byte by byte, without a buffer, and throws at the end.
class BareInput : public std::streambuf {
 public:
  explicit BareInput(std::string_view text, bool breaks) : text_(text), breaks_(breaks) {}

 private:
  int underflow() override {
    if (!text_.empty()) return static_cast<unsigned char>(text_.front());
    if (breaks_) throw std::runtime_error("broken");
    return traits_type::eof();
  }
  int uflow() override {
    const int byte = underflow();
    if (!text_.empty()) text_.remove_prefix(1);
    return byte;
  }
  std::string_view text_;
  bool breaks_;
};

TEST(ReadLine, ReadsAStreamWithoutABuffer) {
  BareInput input("one\n\xFFtwo", false);
  std::istream in(&input);
  SString line;
  EXPECT_EQ(line.ReadLine(in), 1);
  CheckText(line, "one\n");
  EXPECT_EQ(line.ReadLine(in), 1);
  CheckText(line, "\xFFtwo");
  EXPECT_EQ(line.ReadLine(in), 0);
}

TEST(ReadLine, TellsWhenTheStreamBreaksUnderway) {
  BareInput input("one\ntw", true);
  std::istream in(&input);
  SString line;
  EXPECT_EQ(line.ReadLine(in), 1);
  EXPECT_EQ(line.ReadLine(in), 0);
  CheckText(line, "tw");
  EXPECT_TRUE(in.bad());
}

// Gives its text in pieces of so many bytes.
class Pieces : public std::streambuf {
 public:
  Pieces(std::string text, std::size_t piece) : text_(std::move(text)), piece_(piece) {}

 private:
  int underflow() override {
    if (next_ == text_.size()) return traits_type::eof();
    const std::size_t size = std::min(piece_, text_.size() - next_);
    setg(text_.data() + next_, text_.data() + next_, text_.data() + next_ + size);
    next_ += size;
    return traits_type::to_int_type(*gptr());
  }
  std::string text_;
  std::size_t piece_, next_ = 0;
};

TEST(ReadLine, ReadsLinesThatComeInPieces) {
  const std::string text = "one\n\ntwo and more\nlast";
  for (std::size_t piece = 1; piece <= text.size(); ++piece) {
    Pieces pieces(text, piece);
    std::istream in(&pieces);
    std::string all;
    int lines = 0;
    for (SString line; line.ReadLine(in) == 1; ++lines) all += line.View();
    EXPECT_EQ(all, text);
    EXPECT_EQ(lines, 4);
  }
}

TEST(ReadLine, IntoASharedStringLeavesTheSharersAlone) {
  std::istringstream in("one\n");
  SString line("before");
  const SString copy(line);
  line.ReadLine(in);
  CheckText(copy, "before");
}

TEST(StreamOperators, WriteBytesAndReadWholeLines) {
  std::stringstream stream;
  stream << SString("a b\n") << SString() << SString("c\0d\n", 4);
  EXPECT_EQ(stream.str(), "a b\nc\0d\n"sv);
  SString first, second;
  EXPECT_EQ(&(stream >> first >> second), &stream);
  CheckText(first, "a b\n");
  CheckText(second, "c\0d\n"sv);
}

}  // namespace
