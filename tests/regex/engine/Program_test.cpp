// From syntax trees to programs and byte classes.

#include "regex/engine/Program.h"

#include <gtest/gtest.h>
#include <regex.h>

#include <string>
#include <string_view>
#include <vector>

#include "support/RegexDump.h"

namespace {

using mailhearth::DumpClasses;
using mailhearth::DumpProgram;
using mailhearth::RegexParts;
using mailhearth::engine::Assertion;
using mailhearth::engine::ByteKind;
using mailhearth::engine::kNone;
using mailhearth::engine::Node;
using mailhearth::engine::Place;
using mailhearth::engine::Program;

struct Row {
  std::string_view pattern;
  std::string_view expected;
};

TEST(Program, IsTheConstructionOfThompson) {
  constexpr Row kRows[] = {
      {"a", "0 byte a"},
      {"ab", "0 byte a; 1 byte b"},
      {"[ab].", "0 set [ab]; 1 set ."},
      {"()", ""},
      {"(a)", "0 byte a"},
      {"a|b", "0 split 3; 1 byte a; 2 jump 4; 3 byte b"},
      {"a|b|c", "0 split 3; 1 byte a; 2 jump 7; 3 split 6; 4 byte b; 5 jump 7; 6 byte c"},
      {"a|", "0 split 3; 1 byte a; 2 jump 3"},
      {"|a", "0 split 2; 1 jump 3; 2 byte a"},
      {"a*", "0 split 3; 1 byte a; 2 jump 0"},
      {"a+", "0 byte a; 1 split 0"},
      {"a?", "0 split 2; 1 byte a"},
      {"a{0}", ""},
      {"a{2}", "0 byte a; 1 byte a"},
      {"a{2,}", "0 byte a; 1 byte a; 2 split 1"},
      {"a{2,4}", "0 byte a; 1 byte a; 2 split 6; 3 byte a; 4 split 6; 5 byte a"},
      {"a{0,2}", "0 split 4; 1 byte a; 2 split 4; 3 byte a"},
      {"(ab){2}", "0 byte a; 1 byte b; 2 byte a; 3 byte b"},
      {"(){9}", ""},
      {"(a*)+", "0 split 3; 1 byte a; 2 jump 0; 3 split 0"},
      {"(a|b)*c", "0 split 6; 1 split 4; 2 byte a; 3 jump 5; 4 byte b; 5 jump 0; 6 byte c"},
      {"^a$", "0 assert ^; 1 byte a; 2 assert $"},
      {"[[:<:]]", "0 assert word-start"},
      {"[[:>:]]", "0 assert word-end"},
  };
  for (const Row& row : kRows) {
    const RegexParts parts(row.pattern);
    ASSERT_EQ(parts.status, 0) << row.pattern;
    EXPECT_EQ(DumpProgram(parts.program, parts.tree), row.expected) << row.pattern;
  }
}

TEST(Program, IsRefusedAboveItsLimit) {
  const std::string most(Program::kMaxInstructions, 'a');
  EXPECT_EQ(RegexParts(most).status, 0);
  EXPECT_EQ(RegexParts(most + 'a').status, REG_ESPACE);
  EXPECT_EQ(RegexParts(most + "{1}").status, 0);
  EXPECT_EQ(RegexParts(most + '*').status, REG_ESPACE);
}

TEST(Program, TellsBytesApartByClass) {
  constexpr Row kRows[] = {
      {".", "."},
      {"()", "."},
      {"a", "[^a] a"},
      {"ab", "[^ab] a b"},
      {"[ab]", "[^ab] [ab]"},
      {"[ab]a", "[^ab] b a"},
      {"[a-c][c-e]", "[^a-e] [ab] c [de]"},
      {"[^a]", "a [^a]"},
      {"a|[^a]", "a [^a]"},
      {"^a$", "[^a] a"},
      {"[[:<:]]", "[^0-9A-Z_a-z] [0-9A-Z_a-z]"},
      {"[[:<:]]@", "[^0-9@-Z_a-z] [0-9A-Z_a-z] '@'"},
  };
  for (const Row& row : kRows) {
    EXPECT_EQ(DumpClasses(RegexParts(row.pattern).program), row.expected) << row.pattern;
  }
}

TEST(Program, HasAClassForEachByteIfNeedBe) {
  std::string pattern;
  for (int c = 0; c < 256; ++c) pattern += {'\\', static_cast<char>(c)};
  const RegexParts parts(pattern);
  EXPECT_EQ(parts.program.EdgeClass(), 256U);
  std::vector<bool> seen(256);
  for (const std::uint8_t byteClass : parts.program.Classes()) seen[byteClass] = true;
  EXPECT_EQ(seen, std::vector<bool>(256, true));
}

TEST(Program, TellsTheClassesBesideABoundary) {
  const RegexParts parts("ab");
  const Program& program = parts.program;
  const std::string_view text = "ab";
  EXPECT_EQ(program.ClassBefore(text, 0), program.EdgeClass());
  EXPECT_EQ(program.ClassAfter(text, 0), program.ClassOf('a'));
  EXPECT_EQ(program.ClassBefore(text, 1), program.ClassOf('a'));
  EXPECT_EQ(program.ClassAfter(text, 1), program.ClassOf('b'));
  EXPECT_EQ(program.ClassAfter(text, 2), program.EdgeClass());
}

// An assertion that the program lacks must not make its states differ.
TEST(Program, SeesOnlyTheKindsThatItsAssertionsSee) {
  struct KindRow {
    std::string_view pattern;
    ByteKind ofEdge, ofLetter;
    bool seesEnd, seesWords;
  };
  constexpr KindRow kRows[] = {
      {"a", ByteKind::kOther, ByteKind::kOther, false, false},
      {"^a", ByteKind::kEdge, ByteKind::kOther, false, false},
      {"a$", ByteKind::kEdge, ByteKind::kOther, true, false},
      {"[[:<:]]", ByteKind::kEdge, ByteKind::kWord, false, true},
      {"[[:>:]]$", ByteKind::kEdge, ByteKind::kWord, true, true},
  };
  for (const KindRow& row : kRows) {
    SCOPED_TRACE(row.pattern);
    const RegexParts parts(row.pattern);
    const Program& program = parts.program;
    EXPECT_EQ(program.KindOf(program.EdgeClass()), row.ofEdge);
    EXPECT_EQ(program.KindOf(program.ClassOf('z')), row.ofLetter);
    EXPECT_EQ(program.KindOf(program.ClassOf('-')), ByteKind::kOther);
    EXPECT_EQ(program.SeesEnd(), row.seesEnd);
    EXPECT_EQ(program.SeesWords(), row.seesWords);
  }
}

TEST(Program, HoldsAssertionsBetweenKinds) {
  constexpr ByteKind kEdge = ByteKind::kEdge, kOther = ByteKind::kOther, kWord = ByteKind::kWord;
  struct HoldsRow {
    ByteKind left, right;
    bool textStart, textEnd, wordStart, wordEnd;
  };
  constexpr HoldsRow kRows[] = {
      {kEdge, kEdge, true, true, false, false},     {kEdge, kOther, true, false, false, false},
      {kEdge, kWord, true, false, true, false},     {kOther, kEdge, false, true, false, false},
      {kOther, kOther, false, false, false, false}, {kOther, kWord, false, false, true, false},
      {kWord, kEdge, false, true, false, true},     {kWord, kOther, false, false, false, true},
      {kWord, kWord, false, false, false, false},
  };
  for (const HoldsRow& row : kRows) {
    const auto holds = [&](Assertion which) {
      return Program::Holds(static_cast<std::uint32_t>(which), row.left, row.right);
    };
    SCOPED_TRACE(static_cast<int>(row.left) * 10 + static_cast<int>(row.right));
    EXPECT_EQ(holds(Assertion::kTextStart), row.textStart);
    EXPECT_EQ(holds(Assertion::kTextEnd), row.textEnd);
    EXPECT_EQ(holds(Assertion::kWordStart), row.wordStart);
    EXPECT_EQ(holds(Assertion::kWordEnd), row.wordEnd);
  }
}

TEST(Program, ListsTheJumpsToAPlace) {
  // 0 split 6; 1 split 4; 2 byte a; 3 jump 5; 4 byte b; 5 jump 0; 6 byte c
  RegexParts parts("(a|b)*c");
  const std::vector<std::vector<Place>> expected = {{5}, {}, {}, {}, {1}, {3}, {0}, {}};
  for (Place place = 0; place <= parts.program.End(); ++place) {
    const auto jumps = parts.program.JumpsTo(place);
    EXPECT_EQ(std::vector<Place>(jumps.begin(), jumps.end()), expected[place]) << place;
  }
}

TEST(Program, MatchesBytesOfAClass) {
  const RegexParts parts("a[ab]");
  const Program& program = parts.program;
  struct MatchRow {
    Place place;
    char byte;
    bool matches;
  };
  constexpr MatchRow kRows[] = {{0, 'a', true}, {0, 'b', false}, {0, 'c', false},
                                {1, 'a', true}, {1, 'b', true},  {1, 'c', false}};
  for (const MatchRow& row : kRows) {
    EXPECT_EQ(program.Matches(row.place, program.ClassOf(row.byte)), row.matches)
        << row.place << row.byte;
  }
}

TEST(Program, SetsSizeAndWidthOfNodes) {
  struct WidthRow {
    std::string_view pattern;
    std::uint32_t size, width;
  };
  constexpr WidthRow kRows[] = {
      {"a", 1, 1},       {"abc", 3, 3},        {"a|b", 4, 1},        {"a|bc", 5, kNone},
      {"(a|b)c", 5, 2},  {"a*", 3, kNone},     {"a?", 2, kNone},     {"a{3}", 3, 3},
      {"(ab){3}", 6, 6}, {"a{2,3}", 4, kNone}, {"a{0}", 0, 0},       {"()*", 2, 0},
      {"^*", 3, 0},      {"^a$", 3, 1},        {"(a*){0}", 0, 0},    {"[ab]|.", 4, 1},
      {"(ab|cd)", 6, 2}, {"a|b|cd", 8, kNone}, {"ab|c|d", 8, kNone}, {"(a?){2}", 4, kNone},
  };
  for (const WidthRow& row : kRows) {
    SCOPED_TRACE(row.pattern);
    const RegexParts parts(row.pattern);
    const Node& root = parts.tree.nodes[parts.tree.root];
    EXPECT_EQ(root.size, row.size);
    EXPECT_EQ(root.width, row.width);
  }
}

TEST(Program, NotesWhichNodesReportGroups) {
  const auto reports = [](std::string_view pattern) {
    const RegexParts parts(pattern);
    return parts.tree.nodes[parts.tree.root].reports;
  };
  EXPECT_FALSE(reports("ab*"));
  EXPECT_TRUE(reports("a(b)*"));
  EXPECT_TRUE(reports("x|(y)"));
}

}  // namespace
