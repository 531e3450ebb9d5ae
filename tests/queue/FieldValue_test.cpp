#include "queue/FieldValue.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "address/AddressRepair.h"
#include "address/S821Parser.h"
#include "address/S822Parser.h"
#include "strings/SFixedString.h"
#include "support/ExactInput.h"
#include "support/Files.h"
#include "support/Text.h"
#include "tables/SNamedStringList.h"

namespace {

// Whether a value reads back, alone in its record and before others.
bool ReadsBack(const SString& value, unsigned crlf) {
  SNamedStringList record(1, crlf);
  record["A:"] = {value, "x"};
  record["B:"] = value;
  SString text;
  text << record;
  SNamedStringList again(1, crlf);
  text >> again;
  return again.Keys() == record.Keys() && again.Get("A:") == record.Get("A:") &&
         again.Get("B:") == record.Get("B:");
}

TEST(IsFieldValue, TellsWhichValuesReadBack) {
  constexpr char kBytes[] = {'a', ' ', '\t', '\r', '\n', '\0', ':'};
  int safe = 0, all = 0;
  for (unsigned n = 0; n < 7 * 7 * 7 * 7 * 7; ++n) {
    std::string bytes;  // every text of up to five of these bytes
    for (unsigned rest = n; rest > 0; rest /= 7) bytes += kBytes[rest % 7];
    const SString value = Text(bytes);
    for (const unsigned crlf : {0U, 1U}) {
      ++all;
      if (IsFieldValue(value, crlf)) ++safe;
      ASSERT_EQ(IsFieldValue(value, crlf), ReadsBack(value, crlf)) << testing::PrintToString(bytes);
    }
  }
  EXPECT_GT(safe, 1000);
  EXPECT_LT(safe, all - 1000);
}

TEST(IsFieldValue, ReadsNothingBehindAView) {
  for (const char* const text : {"a\n", "a\r\n", "\n", "a"}) {
    const ExactInput input(text);
    SFixedString view(input.Data(), input.Length());
    const bool ends = input.View().ends_with('\n');
    EXPECT_EQ(IsFieldValue(view), !ends);
    EXPECT_EQ(IsFieldValue(view, 1), std::string_view(text) != "a\r\n");
  }
}

TEST(IsFieldValue, OfAnUndefinedOrEmptyValueIsTrue) {
  EXPECT_TRUE(IsFieldValue(SString()));
  EXPECT_TRUE(IsFieldValue(""));
  EXPECT_TRUE(IsFieldValue("a\n b\n\tc"));
  EXPECT_FALSE(IsFieldValue("a\nFunction: b"));
  EXPECT_FALSE(IsFieldValue("a\n"));
  EXPECT_TRUE(IsFieldValue("a\nb", 1));
}

// What the page on security tells of addresses.
TEST(IsFieldValue, IsToBeAskedOfAGoodAddress) {
  struct Row {
    const char* name;
    std::string text;
    bool path, listed;  // whether it is valid
    bool safe;
  };
  const Row rows[] = {
      {"behind a backslash", "\"a\\\nFunction: Relay\"@example.org", true, true, false},
      {"in quotes", "\"a\nFunction: Relay\"@example.org", false, true, false},
      {"in a phrase", "\"J\nFunction: Relay\" <a@b>", false, true, false},
      {"in a comment", "a@b (J\nFunction: Relay)", false, true, false},
      {"in a literal", "<a@[\nFunction: Relay]>", false, true, false},
      {"carriage return", "<a\\\rb@c>", true, false, true},
      {"NUL", std::string("\"a\0b\"@c", 7), true, true, true},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    const S821Address path = S821Parser(Text(row.text)).ExtractAddress();
    const S822Address listed = S822Parser(Text(row.text)).NextAddress();
    EXPECT_EQ(path.IsValid(), row.path);
    EXPECT_EQ(listed.IsValid(), row.listed);
    const SString form = row.path ? path.Get() : listed.Get();
    EXPECT_TRUE(form.HasMatch("[\n\r]") || form.Index(SString('\0')) >= 0);
    EXPECT_EQ(IsFieldValue(form), row.safe);
  }
  EXPECT_FALSE(IsFieldValue(FixBogusAddress("a\\\nFunction: Relay@example.org")));
}

}  // namespace
