// The check itself, on small made-up trees: what it finds fault with, and what it lets pass.

#include "tree/TreeCheck.h"

#include <gtest/gtest.h>

namespace {

const char* const kPage =
    "# Rules\n\n"
    "| folder | holds | may include |\n"
    "| --- | --- | --- |\n"
    "| `src/low` | the lowest | nothing |\n"
    "| `src/mid` | one with a folder | low, mid/inner |\n"
    "| `src/mid/inner` | that folder | nothing |\n"
    "| `src/top` | the highest | low, mid |\n\n"
    "| cycle | why it stays |\n"
    "| --- | --- |\n"
    "| `low/B`, `low/C` | one returns the other |\n\n"
    "| command | what it shows |\n"
    "| --- | --- |\n"
    "| `make`, or not | something else |\n";

// A tree without a flaw: what it has and `changes` has as well is as there.
Tree With(const Tree& changes) {
  Tree tree = {
      {"mailhearth.h",
       "#include \"low/A.h\"\n#include \"low/B.h\"  // and more\n"
       "#include \"low/C.h\"\n#include \"mid/A.h\"\n"},
      {"low/A.h", "// What A is.\n"},
      {"low/A.cpp", "#include \"A.h\"\n#include <vector>\n"},
      {"low/B.h", "// B.\n#include \"A.h\"\n"},
      {"low/B.cpp", "#include \"B.h\"\n#include \"C.h\"\n"},
      {"low/C.h", "// C.\n#include \"B.h\"\n"},
      {"mid/A.h", "// Another A.\n#include \"../low/A.h\"\n"},
      {"mid/A.cpp", "#include \"A.h\"\n#include \"inner/E.h\"\n"},
      {"mid/inner/E.h", "// Not installed. E.\n#include <string>\n"},
      {"top/T.cpp", "#include \"../low/A.h\"\n#include \"../mid/A.h\"\n"},
  };
  for (const auto& [path, text] : changes) tree[path] = text;
  return tree;
}

struct Row {
  const char* what;
  Tree changes;
  Flaws flaws;
};

template <class Check>
void CheckRows(const std::vector<Row>& rows, Check check) {
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(check(With(row.changes)), row.flaws);
  }
}

TEST(TreeCheck, ReadsTheRulesFromAPage) {
  const TreeRules rules = ReadTreeRules(kPage);
  using Names = std::set<std::string>;
  EXPECT_EQ(
      rules.folders,
      (std::map<std::string, Names>{
          {"low", {}}, {"mid", {"low", "mid/inner"}}, {"mid/inner", {}}, {"top", {"low", "mid"}}}));
  EXPECT_EQ(rules.cycles, (std::set<Names>{{"low/B", "low/C"}}));
  EXPECT_TRUE(ReadTreeRules("").folders.empty());
  EXPECT_TRUE(ReadTreeRules("").cycles.empty());
}

TEST(TreeCheck, FindsWhatFoldersMayNotInclude) {
  CheckRows(
      {
          {"as it is", {}, {}},
          {"the wrong way",
           {{"low/A.cpp", "#include \"../top/T.h\"\n"}, {"top/T.h", ""}},
           {"low/A.cpp may not include top/T.h"}},
          {"from a header",
           {{"low/A.h", "#include \"../mid/A.h\"\n"}},
           {"low/A.h may not include mid/A.h"}},
          {"an inner folder includes its own",
           {{"mid/inner/E.h", "#include \"../A.h\"\n"}},
           {"mid/inner/E.h may not include mid/A.h"}},
          {"an inner folder is for the folder around it",
           {{"top/U.cpp", "#include \"../mid/inner/E.h\"\n"}},
           {"top/U.cpp may not include mid/inner/E.h"}},
          {"a permission is not used",
           {{"top/T.cpp", "#include \"../mid/A.h\"\n"}},
           {"nothing in top includes low"}},
          {"an inner folder is not used",
           {{"mid/A.cpp", "#include \"A.h\"\n"}},
           {"nothing in mid includes mid/inner"}},
          {"a folder of no row",
           {{"new/N.cpp", "#include \"../low/A.h\"\n"}},
           {"new/N.cpp is in no folder of the table"}},
          {"what is not there",
           {{"top/U.cpp", "#include \"../low/None.h\"\n"}},
           {"top/U.cpp includes low/None.h, which is not there"}},
          {"the standard library", {{"low/A.cpp", "#include <top/T.h>\n"}}, {}},
          {"a comment", {{"low/A.cpp", "// #include \"../top/T.cpp\"\n"}}, {}},
      },
      [](const Tree& tree) { return FolderFlaws(tree, ReadTreeRules(kPage)); });
}

TEST(TreeCheck, HoldsAnInnerFolderAgainstItsFolderWhateverTheTableSays) {
  TreeRules rules = ReadTreeRules(kPage);
  rules.folders["top"].insert("mid/inner");
  const Tree tree = With({{"top/U.cpp", "#include \"../mid/inner/E.h\"\n"}});
  EXPECT_EQ(FolderFlaws(tree, rules), (Flaws{"top/U.cpp may not include mid/inner/E.h"}));
}

TEST(TreeCheck, FindsCycles) {
  CheckRows(
      {
          {"as it is", {}, {}},
          {"of two headers",
           {{"top/T.h", "#include \"U.h\"\n"}, {"top/U.h", "#include \"T.h\"\n"}},
           {"cycle: top/T, top/U"}},
          {"by way of a source",
           {{"low/A.cpp", "#include \"D.h\"\n"}, {"low/D.h", "#include \"A.h\"\n"}},
           {"cycle: low/A, low/D"}},
          {"of three",
           {{"top/T.cpp", "#include \"U.h\"\n"},
            {"top/U.cpp", "#include \"V.h\"\n"},
            {"top/U.h", ""},
            {"top/V.h", "#include \"T.h\"\n"}},
           {"cycle: top/T, top/U, top/V"}},
          {"a named one that grows",
           {{"low/A.h", "#include \"C.h\"\n"}},
           {"cycle: low/A, low/B, low/C", "no cycle: low/B, low/C"}},
          {"a named one that is none any more", {{"low/C.h", ""}}, {"no cycle: low/B, low/C"}},
          {"a source and its header", {{"low/A.cpp", "#include \"A.h\"\n"}}, {}},
          {"two ways to one place",
           {{"top/U.h", "#include \"../low/A.h\"\n#include \"../low/B.h\"\n"}},
           {}},
      },
      [](const Tree& tree) { return CycleFlaws(tree, ReadTreeRules(kPage)); });
}

TEST(TreeCheck, FindsHeadersThatAreNotListed) {
  CheckRows(
      {
          {"as it is", {}, {}},
          {"one that is not listed", {{"top/T.h", "// T.\n"}}, {"top/T.h is not listed"}},
          {"one that says so too late",
           {{"top/T.h", "// T.\n// Not installed.\n"}},
           {"top/T.h is not listed"}},
          {"one that says so", {{"top/T.h", "// Not installed. T.\n"}}, {}},
          {"one that says so and is listed",
           {{"low/A.h", "// Not installed. A.\n"}},
           {"low/A.h is listed and not installed"}},
          {"one that needs another",
           {{"low/A.h", "// A.\n#include \"D.h\"\n"}, {"low/D.h", "// Not installed. D.\n"}},
           {"low/A.h is installed without low/D.h"}},
          {"a source may need it",
           {{"low/A.cpp", "#include \"D.h\"\n"}, {"low/D.h", "// Not installed. D.\n"}},
           {}},
          {"a list of what is not there and of one twice",
           {{"mailhearth.h",
             "#include \"low/A.h\"\n#include \"low/B.h\"\n#include \"low/A.h\"\n"
             "#include \"low/C.h\"\n#include \"low/D.h\"\n#include \"mid/A.h\"\n"}},
           {"low/A.h comes twice", "low/D.h is listed and not there"}},
      },
      HeaderFlaws);
}

TEST(TreeCheck, FindsEveryHeaderWhereThereIsNoList) {
  EXPECT_EQ(HeaderFlaws({{"low/A.h", "// A.\n"}, {"low/A.cpp", ""}}),
            Flaws{"low/A.h is not listed"});
}

}  // namespace
