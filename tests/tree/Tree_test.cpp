// Holds the architecture against the sources: the tables of CONTRIBUTING.md, the list of the
// public headers, the lists of the build.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "support/Files.h"
#include "tree/TreeCheck.h"

namespace {

namespace fs = std::filesystem;

const fs::path kProject = SOURCE_DIR;

// All sources below a folder, as paths from it.
std::vector<fs::path> Sources(const fs::path& root) {
  std::vector<fs::path> found;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root)) {
    const fs::path extension = entry.path().extension();
    if (extension == ".h" || extension == ".cpp") {
      found.push_back(entry.path().lexically_relative(root));
    }
  }
  return found;
}

Tree ReadTree() {
  Tree tree;
  for (const fs::path& source : Sources(kProject / "src")) {
    tree[source.string()] = ReadText(kProject / "src" / source);
  }
  return tree;
}

TreeRules Rules() { return ReadTreeRules(ReadText(kProject / "CONTRIBUTING.md")); }

TEST(Tree, EveryFolderIncludesWhatItStandsOnAndNothingElse) {
  EXPECT_GT(Rules().folders.size(), 5U) << "the table is not recognised";
  EXPECT_EQ(FolderFlaws(ReadTree(), Rules()), Flaws());
}

TEST(Tree, NothingIncludesItselfByWayOfOthersButWhatIsNamed) {
  EXPECT_EQ(CycleFlaws(ReadTree(), Rules()), Flaws());
}

TEST(Tree, TheUmbrellaListsThePublicHeaders) { EXPECT_EQ(HeaderFlaws(ReadTree()), Flaws()); }

// Returns the text of the build list and the scripts of a folder of tests.
std::string BuildTextOf(const fs::path& folder) {
  std::ostringstream text;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
    if (entry.path().extension() == ".txt" || entry.path().extension() == ".sh") {
      text << std::ifstream(entry.path()).rdbuf();
    }
  }
  return text.str();
}

TEST(Tree, EveryTestIsInTheBuild) {
  const fs::path tests = kProject / "tests";
  for (const fs::path& source : Sources(tests)) {
    if (source.extension() != ".cpp") continue;
    const bool support = *source.begin() == "support";  // listed one folder above
    const std::string text = BuildTextOf(support ? tests : tests / source.parent_path());
    EXPECT_NE(text.find(source.filename().string()), text.npos) << source;
  }
}

}  // namespace
