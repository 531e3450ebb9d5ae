#include <gtest/gtest.h>

#include <iomanip>
#include <iostream>
#include <sstream>

#include "strings/SString.h"
#include "support/ErrorText.h"
#include "support/SStringPeek.h"

namespace {

using namespace std::string_view_literals;

TEST(SStringWrite, WritesAllBytesAndNothingElse) {
  std::ostringstream out;
  EXPECT_EQ(SString("a\0b\n", 4).Write(out), 1);
  EXPECT_EQ(out.str(), "a\0b\n"sv);
}

TEST(SStringWrite, WritesNothingOfAnEmptyString) {
  std::ostringstream out;
  EXPECT_EQ(SString("").Write(out), 1);
  EXPECT_EQ(SString().Write(out), 1);
  EXPECT_EQ(out.str(), "");
}

TEST(SStringWrite, IgnoresTheStreamsFormatting) {
  std::ostringstream out;
  out.width(10);
  out.fill('*');
  EXPECT_EQ(SString("ab").Write(out), 1);
  EXPECT_EQ(out.str(), "ab");
  out << SString("cd");
  EXPECT_EQ(out.str(), "abcd");
  EXPECT_EQ(out.width(), 10);
}

TEST(SStringWrite, WritesNothingToAStreamThatHasFailed) {
  for (const std::ios_base::iostate state : {std::ios_base::failbit, std::ios_base::badbit}) {
    std::ostringstream out;
    out.setstate(state);
    EXPECT_EQ(SString("ab").Write(out), 0);
    EXPECT_EQ(SString("").Write(out), 0);
    EXPECT_EQ(out.rdstate(), state) << "the stream is left as it is";
    out.clear();
    EXPECT_EQ(out.str(), "");
  }
}

// A buffer that takes only so many bytes.
class NarrowBuffer : public std::streambuf {
 public:
  explicit NarrowBuffer(int room) : room_(room) {}
  std::string taken;

 private:
  int overflow(int c) override {
    if (room_-- <= 0) return traits_type::eof();
    taken += static_cast<char>(c);
    return c;
  }
  int room_;
};

TEST(SStringWrite, TellsWhenTheStreamFailsUnderway) {
  NarrowBuffer buffer(2);
  std::ostream out(&buffer);
  EXPECT_EQ(SString("ab").Write(out), 1);
  EXPECT_EQ(SString("c").Write(out), 0);
  EXPECT_EQ(buffer.taken, "ab");
  EXPECT_EQ(SString("").Write(out), 0) << "it has failed before";
}

TEST(SStringWrite, IsNotGoodOnAStreamAtItsEnd) {
  std::stringstream both;
  both.setstate(std::ios_base::eofbit);
  EXPECT_EQ(SString("ab").Write(both), 0);
}

std::string DebugText(const SString& s, int verbose) {
  return ErrorText([&] { s.Debug(verbose); });
}

TEST(SStringDebug, WritesOnlyTheBytesWhenNotVerbose) {
  EXPECT_EQ(DebugText("plain text", 0), "plain text");
  EXPECT_EQ(DebugText("", 0), "");
  EXPECT_EQ(DebugText(SString(), 0), "");
}

TEST(SStringDebug, EscapesWhatIsNotPrintable) {
  EXPECT_EQ(DebugText("\t\n\v\f\r\\", 0), R"(\t\n\v\f\r\\)");
  EXPECT_EQ(DebugText(SString("\0\1\7\b\x1B\x1F", 6), 0), R"(\0\1\7\8\27\31)");
  EXPECT_EQ(DebugText(" !\"'09AZaz[]~", 0), " !\"'09AZaz[]~");
  EXPECT_EQ(DebugText("\x7F\x80\xC8\xFF", 0), R"(\127\128\200\255)");
}

TEST(SStringDebug, DumpsADefinedString) {
  const SString s("a\n\xC8"), copy(s);
  const std::string expected = "SStringRep stored at: " + Address(&SStringPeek::Rep(s)) +
                               "\nBuffer located at:    " + Address(s.Data()) +
                               "\nBuffer contents:     'a\\n\\200'"
                               "\nSString length:       3"
                               "\nBytes allocated:      8"
                               "\nNumber of links:      2\n\n";
  EXPECT_EQ(DebugText(s, 1), expected);
  EXPECT_EQ(DebugText(s, -1), expected);
  EXPECT_EQ(DebugText(s, 2), expected);
}

TEST(SStringDebug, DumpsAnEmptyStringAsDefined) {
  const std::string dump = DebugText("", 1);
  EXPECT_NE(dump.find("Buffer contents:     ''\nSString length:       0\n"), dump.npos);
}

TEST(SStringDebug, DumpsAnUndefinedString) {
  const SString s;
  EXPECT_EQ(DebugText(s, 1), "SStringRep stored at: " + Address(&SStringPeek::Rep(s)) +
                                 "\nNumber of links:      1"
                                 "\nSString is undefined\n\n");
}

TEST(SStringDebug, DoesNotTakeTheStreamsNumberFormat) {
  std::cerr << std::hex << std::showbase << std::setw(500);
  const std::string dump = DebugText(SString('x', 100), 1);
  std::cerr << std::dec << std::noshowbase << std::setw(0);
  EXPECT_EQ(dump.front(), 'S');
  EXPECT_NE(dump.find("SString length:       100\n"), dump.npos);
}

}  // namespace
