// The text form of SNamedStringList.

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "strings/SFixedString.h"
#include "support/CheckText.h"
#include "support/ExactInput.h"
#include "support/FailEachAllocation.h"
#include "support/Growth.h"
#include "support/SStringListPeek.h"
#include "support/Text.h"
#include "tables/SNamedStringList.h"

namespace {

using Names = std::vector<std::string>;
using Fields = std::vector<std::pair<std::string, Names>>;

// Texts with a NUL.
std::string_view operator""_v(const char* text, std::size_t n) { return {text, n}; }
std::string operator""_s(const char* text, std::size_t n) { return {text, n}; }

constexpr unsigned kCase = 1;
constexpr unsigned kLf = 0;
constexpr unsigned kCrlf = 1;

Fields FieldsOf(const SNamedStringList& list) {
  Fields fields;
  for (const SString& name : list.Keys()) {
    fields.emplace_back(name.View(), Texts(list.Get(name)));
  }
  return fields;
}

// Reads a text that ends where a sanitizer sees the next byte.
void Read(std::string_view text, SNamedStringList& list) {
  const ExactInput input(text);
  SFixedString fixed(input.Data(), input.Length());
  const SString given = fixed;
  EXPECT_EQ(&(given >> list), &given);
}

Fields FieldsIn(std::string_view text, unsigned crlf = kLf) {
  SNamedStringList list(kCase, crlf);
  list["old"].Push("gone");
  Read(text, list);
  return FieldsOf(list);
}

std::string Written(const SNamedStringList& list) {
  SString text;
  EXPECT_EQ(&(text << list), &text);
  return std::string(text.View());
}

std::string Written(const Fields& fields, unsigned crlf = kLf) {
  SNamedStringList list(kCase, crlf);
  for (const auto& [name, values] : fields) {
    list[name].Reset();
    for (const std::string& value : values) list[name].Push(SString(std::string_view(value)));
  }
  return Written(list);
}

// --- Reading ------------------------------------------------------------------------------

struct Row {
  const char* what;
  std::string_view text;
  unsigned crlf;
  Fields fields;
};

TEST(NamedListText, IsReadLineByLine) {
  const Row rows[] = {
      {"nothing", "", kLf, {}},
      {"one value", "a: 1\n", kLf, {{"a:", {"1"}}}},
      {"no last line end", "a: 1", kLf, {{"a:", {"1"}}}},
      {"several", "a: 1\nb: 2\na: 3\n", kLf, {{"a:", {"1", "3"}}, {"b:", {"2"}}}},
      {"other case", "a: 1\nA: 2\n", kLf, {{"a:", {"1"}}, {"A:", {"2"}}}},
      {"name without colon", "a 1\n", kLf, {{"a", {"1"}}}},
      {"empty value", "a: \n", kLf, {{"a:", {""}}}},
      {"empty value at the end", "a: ", kLf, {{"a:", {""}}}},
      {"two blanks", "a:  1\n", kLf, {{"a:", {" 1"}}}},
      {"blanks in the value", "a: 1 2 \n", kLf, {{"a:", {"1 2 "}}}},
      {"tab in the name", "a\tb c\n", kLf, {{"a\tb", {"c"}}}},
      {"tab first", "\ta b\n", kLf, {{"\ta", {"b"}}}},
      {"folded", "a: 1\n 2\n\t3\nb: 4\n", kLf, {{"a:", {"1\n 2\n\t3"}}, {"b:", {"4"}}}},
      {"folded at the end", "a: 1\n 2", kLf, {{"a:", {"1\n 2"}}}},
      {"folded blank alone", "a: 1\n \nb: 2\n", kLf, {{"a:", {"1\n "}}, {"b:", {"2"}}}},
      {"folded empty value", "a: \n 2\n", kLf, {{"a:", {"\n 2"}}}},
      {"folded with other names", "a: 1\n b: 2\n", kLf, {{"a:", {"1\n b: 2"}}}},
      {"line without blank", "a: 1\nb:\nc: 3\n", kLf, {{"a:", {"1", "b:"}}, {"c:", {"3"}}}},
      {"line without blank, folded", "a: 1\nb:\n 2\n", kLf, {{"a:", {"1", "b:\n 2"}}}},
      {"first line without blank", "a\n", kLf, {{"", {"a"}}}},
      {"first lines without blank", "a\nb\nc 1", kLf, {{"", {"a", "b"}}, {"c", {"1"}}}},
      {"first without blank, folded", "a\n b c\nd e\n", kLf, {{"", {"a\n b c"}}, {"d", {"e"}}}},
      {"first line begins with blank", " a b\n", kLf, {{"", {"a b"}}}},
      {"first lines begin with blanks", " a\n b\n", kLf, {{"", {"a\n b"}}}},
      {"a blank alone", " ", kLf, {{"", {""}}}},
      {"a line end alone", "\n", kLf, {{"", {""}}}},
      {"line ends alone", "\n\n\n", kLf, {{"", {"", "", ""}}}},
      {"blank line", "a: 1\n\nb: 2\n", kLf, {{"a:", {"1", ""}}, {"b:", {"2"}}}},
      {"blank line, folded", "a: 1\n\n 2\n", kLf, {{"a:", {"1", "\n 2"}}}},
      {"blank line at the end", "a: 1\n\n", kLf, {{"a:", {"1", ""}}}},
      {"NUL", "a\0: 1\0\n\0 2"_v, kLf, {{"a\0:"_s, {"1\0"_s}}, {"\0"_s, {"2"}}}},
      {"high bytes", "\xE4: \xFF\n", kLf, {{"\xE4:", {"\xFF"}}}},
      {"\\r\\n", "a: 1\r\nb: 2\r\n", kCrlf, {{"a:", {"1"}}, {"b:", {"2"}}}},
      {"\\r\\n folded", "a: 1\r\n 2\r\n\t3", kCrlf, {{"a:", {"1\r\n 2\r\n\t3"}}}},
      {"\\r\\n read as \\n", "a: 1\r\nb: 2\r\n", kLf, {{"a:", {"1\r"}}, {"b:", {"2\r"}}}},
      {"blank line of \\r\\n read as \\n", "a: 1\r\n\r\n", kLf, {{"a:", {"1\r", "\r"}}}},
      {"\\n read as \\r\\n", "a: 1\nb: 2\n", kCrlf, {{"a:", {"1\nb: 2\n"}}}},
      {"\\r alone", "a: 1\r\r\nb: 2\r", kCrlf, {{"a:", {"1\r"}}, {"b:", {"2\r"}}}},
      {"blank line of \\r\\n", "a: 1\r\n\r\n", kCrlf, {{"a:", {"1", ""}}}},
      {"\\r\\n by any flag but 0", "a: 1\r\nb: 2\r\n", 2, {{"a:", {"1"}}, {"b:", {"2"}}}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(FieldsIn(row.text, row.crlf), row.fields);
  }
}

TEST(NamedListText, AnUndefinedTextIsAnEmptyOne) {
  SNamedStringList list(kCase, kLf);
  list["a"].Push("1");
  SString() >> list;
  EXPECT_EQ(FieldsOf(list), Fields());
  EXPECT_EQ(list.Find("a"), nullptr);
}

TEST(NamedListText, IsReadByTheListsOwnComparison) {
  SNamedStringList list(0, kLf);
  Read("Trace: 1\nTRACE: 2\nother\n", list);
  EXPECT_EQ(FieldsOf(list), (Fields{{"Trace:", {"1", "2", "other"}}}));
}

TEST(NamedListText, MayBeReadFromAValueOfTheList) {
  SNamedStringList list(kCase, kLf);
  list["a"].Push("b 1\nc 2\n");
  list["a"].Push(SString("x"));
  const SString& value = *list.Find("a")->begin();
  static_cast<void>(value >> list);
  EXPECT_EQ(FieldsOf(list), (Fields{{"b", {"1"}}, {"c", {"2"}}}));
}

TEST(NamedListText, ReadingEmptiesThroughTheVirtualMember) {
  struct Counting : SNamedStringList {
    Counting() : SNamedStringList(kCase, kLf) {}
    void Reset() override {
      ++resets;
      SNamedStringList::Reset();
    }
    int resets = 0;
  } list;
  Read("a 1\n", list);
  EXPECT_EQ(list.resets, 1);
}

// --- Writing ------------------------------------------------------------------------------

TEST(NamedListText, IsWrittenLineByLine) {
  EXPECT_EQ(Written(Fields{{"Function:", {"Deliver"}}, {"Trace:", {"router 1", "local 2"}}}),
            "Function: Deliver\nTrace: router 1\nTrace: local 2\n");
  EXPECT_EQ(Written(Fields{{"a", {"1", "2"}}, {"b", {"3"}}}, kCrlf), "a 1\r\na 2\r\nb 3\r\n");
  EXPECT_EQ(Written(Fields{{"a", {"1"}}}, 256), "a 1\r\n");
  EXPECT_EQ(Written(Fields{{"a", {}}, {"b", {""}}, {"c", {"", ""}}}), "a \nb \nc \nc \n");
  EXPECT_EQ(Written(Fields{{"", {"1\n2"}}, {"a b", {" "}}}), " 1\n2\na b  \n");
}

TEST(NamedListText, AnUndefinedValueIsWrittenAsAnEmptyOne) {
  SNamedStringList list(kCase, kLf);
  list["a"] = SStringList{"1", SString(), "2"};
  list[SString()].Push(SString());
  EXPECT_EQ(Written(list), "a 1\na \na 2\n \n");
}

TEST(NamedListText, WritingAsksTheVirtualMembers) {
  struct Imagined : SNamedStringList {
    Imagined() : SNamedStringList(kCase, kLf) {}
    [[nodiscard]] SStringList Keys() const override { return {"x", "y"}; }
    [[nodiscard]] SStringList Get(const SString& name) const override { return {name + '1', "2"}; }
  };
  EXPECT_EQ(Written(Imagined()), "x x1\nx 2\ny y1\ny 2\n");
}

TEST(NamedListText, IsAppended) {
  SNamedStringList list(kCase, kLf);
  list["unused"];
  SString text("x"), empty(""), undefined;
  text << list;
  CheckText(text, "x");
  empty << list;
  CheckText(empty, "");
  undefined << list;
  CheckUndefined(undefined);
  list["a"].Push("1");
  text << list << list;
  CheckText(text, "xa 1\na 1\n");
  empty << list;
  CheckText(empty, "a 1\n");
  undefined << list;
  CheckText(undefined, "a 1\n");
}

TEST(NamedListText, MayBeAppendedToAValueOfTheList) {
  SNamedStringList list(kCase, kLf);
  list["a"].Push("1");
  list["a"][0] << list;
  EXPECT_EQ(FieldsOf(list), (Fields{{"a", {"1a 1\n"}}}));
}

// --- Both ---------------------------------------------------------------------------------

TEST(NamedListText, ADefinedEmptyListComesBackAsOneEmptyValue) {
  EXPECT_EQ(FieldsIn(Written(Fields{{"a", {}}})), (Fields{{"a", {""}}}));
}

TEST(NamedListText, WhatIsWrittenReadsBack) {
  std::mt19937 random(9);
  const auto below = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
  const auto text = [&](std::string_view bytes, int least, int most) {
    std::string made;
    for (int n = least + below(most - least + 1); n > 0; --n) {
      made += bytes[static_cast<std::size_t>(below(static_cast<int>(bytes.size())))];
    }
    return made;
  };
  for (int round = 0; round < 5000; ++round) {
    const bool crlf = below(2) != 0;
    const std::string end = crlf ? "\r\n" : "\n";
    Fields fields;
    for (int n = below(6); n > 0; --n) {
      std::string name = std::to_string(n);
      name += text("aA:\t\0\r"_v, 0, 4);
      Names values;
      for (int v = 1 + below(4); v > 0; --v) {
        std::string value = text("ab \t\0\xE4"_v, 0, 6);
        for (int f = below(3); f > 0; --f) {
          value += end;
          value += below(2) != 0 ? ' ' : '\t';
          value += text("ab \t\0:"_v, 0, 6);
        }
        values.push_back(value);
      }
      fields.emplace_back(name, values);
    }
    ASSERT_EQ(FieldsIn(Written(fields, crlf), crlf), fields);
  }
}

// The rules of reading, followed step by step over a list of lines.
Fields SlowFieldsIn(const std::string& text, const std::string& end) {
  Names lines;
  std::size_t at = 0;
  for (std::size_t next; (next = text.find(end, at)) != text.npos; at = next + end.size()) {
    lines.push_back(text.substr(at, next - at));
  }
  lines.push_back(text.substr(at));
  if (lines.back().empty()) lines.pop_back();

  Fields fields;
  std::string name;
  for (std::size_t i = 0; i < lines.size();) {
    std::string line = lines[i++];
    const std::size_t blank = line.find(' ');
    if (blank != line.npos && blank > 0) name = line.substr(0, blank);
    if (blank != line.npos) line.erase(0, blank + 1);
    while (i < lines.size() && (lines[i].starts_with(' ') || lines[i].starts_with('\t'))) {
      line += end;
      line += lines[i++];
    }
    auto field = fields.begin();
    while (field != fields.end() && field->first != name) ++field;
    if (field == fields.end()) field = fields.insert(field, {name, {}});
    field->second.push_back(line);
  }
  return fields;
}

TEST(NamedListText, AnyTextIsReadByTheRulesAndWhatItSaysIsWrittenAndReadAgain) {
  std::mt19937 random(13);
  constexpr std::string_view kBytes("ab  \t\n\n\r\0:", 10);
  for (int round = 0; round < 30'000; ++round) {
    std::string text;
    for (auto n = random() % 24; n > 0; --n) {
      text += kBytes[random() % kBytes.size()];
      if (random() % 6 == 0) text += "\r\n";
    }
    for (const unsigned crlf : {kLf, kCrlf}) {
      const Fields fields = FieldsIn(text, crlf);
      ASSERT_EQ(fields, SlowFieldsIn(text, crlf != 0 ? "\r\n" : "\n")) << text;
      // Lines of a name that is empty or begins with a tab look like continuations.
      if (fields.empty() || (fields[0].first != "" && fields[0].first[0] != '\t')) {
        ASSERT_EQ(FieldsIn(Written(fields, crlf), crlf), fields) << text;
      }
    }
  }
}

// --- Hostile texts ------------------------------------------------------------------------

TEST(NamedListText, HugeTextsAreRead) {
  struct Huge {
    const char* what;
    std::string text;
    int names, values;
  };
  std::string names;
  for (int i = 0; i < 1'000'000; ++i) (names += std::to_string(i)) += " x\n";
  const Huge rows[] = {
      {"one line", std::string("a ").append(100'000'000, 'x'), 1, 1},
      {"one line without blank", std::string(100'000'000, 'x'), 1, 1},
      {"one name", std::string(50'000'000, 'x') + " y\nz\n", 1, 2},
      {"continuation lines", std::string("a b\n").append(Repeated(" c\n", 1'000'000)), 1, 1},
      {"blank lines", std::string(1'000'000, '\n'), 1, 1'000'000},
      {"lines without blank", Repeated("x\n", 1'000'000), 1, 1'000'000},
      {"names", names, 1'000'000, 1},
  };
  for (const Huge& row : rows) {
    SCOPED_TRACE(row.what);
    SNamedStringList list(kCase, kLf);
    Read(row.text, list);
    const SStringList keys = list.Keys();
    EXPECT_EQ(keys.Count(), row.names);
    EXPECT_EQ(list.Get(keys.Get(0)).Count(), row.values);
  }
}

TEST(NamedListText, TakesLinearTime) {
  const auto expectLinear = [](const char* what, auto makeText) {
    for (const unsigned crlf : {kLf, kCrlf}) {
      EXPECT_TRUE(GrowsLinearly(20'000,
                                [&](int n) {
                                  SNamedStringList list(kCase, crlf);
                                  const SString text(std::string_view(makeText(n)));
                                  text >> list;
                                  SString written;
                                  written << list;
                                  EXPECT_GE(written.Length(), n);
                                }))
          << what << (crlf != 0 ? ", \\r\\n" : "");
    }
  };
  expectLinear("continuation lines", [](int n) { return Repeated("a b\r\n c\r\n\td\r\n", n); });
  expectLinear("no line ends but nearly", [](int n) { return Repeated("\r\r\r\r ", n); });
  expectLinear("lines without blanks", [](int n) { return Repeated("x\r\n", n); });
  expectLinear("names", [](int n) {
    std::string text;
    for (int i = 0; i < n; ++i) (text += std::to_string(i)) += " x\r\n";
    return text;
  });
}

// A long name is read once, however many lines share it.
TEST(NamedListText, ALongNameIsReadOnceForAllLinesThatShareIt) {
  EXPECT_TRUE(GrowsLinearly(10'000, [](int n) {
    std::string text(static_cast<std::size_t>(n) * 10, 'x');
    text += " y\n";
    text += Repeated("z\n", n);
    SNamedStringList list(0, kLf);
    Read(text, list);
    EXPECT_EQ(list.Keys().Count(), 1);
  }));
}

// --- Without memory -----------------------------------------------------------------------

constexpr std::string_view kRecord =
    "a 1, of some length\nb 2\n\tfolded\nb 3\n 4\nc 5\nd 6, and yet another text\n";

TEST(NamedListText, WritingWithoutMemoryAppendsNothing) {
  SNamedStringList list(kCase, kLf);
  Read(kRecord, list);
  for (const char* const before : {"", "some text before"}) {
    FailEachAllocation([&] { return SString(before); }, [&](SString& text) { text << list; },
                       [&](const SString& text) {
                         CheckText(text, before);
                         EXPECT_EQ(Written(list), kRecord);
                       });
  }
}

// What has been read when memory ends is whole, and what the text began with.
TEST(NamedListText, ReadingWithoutMemoryHasTheFirstLines) {
  const SString text(kRecord);
  FailEachAllocation(
      [] {
        auto list = std::make_unique<SNamedStringList>(kCase, kLf);
        (*list)["old"].Push("gone");
        return list;
      },
      [&](const auto& list) { text >> *list; },
      [&](const auto& list) {
        EXPECT_EQ(list->Find("old"), nullptr);
        const std::string written = Written(*list);
        EXPECT_TRUE(kRecord.starts_with(written)) << written;
        EXPECT_LT(written.size(), kRecord.size());
        for (const SString& name : list->Keys()) EXPECT_STREQ(Flaw(*list->Find(name)), "");
        text >> *list;
        EXPECT_EQ(Written(*list), kRecord) << "read again";
      });
}

}  // namespace
