// Holds the architecture against the includes: which folder may stand on which.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace {

namespace fs = std::filesystem;

using Layers = std::set<std::string>;

// Each layer, and those it may include beside itself. src/system is two layers: its
// lower half stands on strings only and serves the folders above, its upper half uses
// these.
const std::map<std::string, Layers> kMayInclude = {
    {"strings", {}},
    {"lower system", {"strings"}},
    {"lists", {"strings", "lower system"}},
    {"regex", {"strings", "lower system", "lists"}},
    {"upper system", {"strings", "lower system", "lists", "regex"}},
    {"tables", {"strings", "lower system", "lists", "regex"}},
    {"address", {"strings", "lower system", "lists", "regex"}},
    {"queue", {"strings", "lower system", "lists", "regex", "upper system", "tables"}},
    {"command", {"strings", "lower system"}},
};

const std::set<std::string> kLowerSystem = {"Dates",      "Digests", "Environment", "ErrnoKeeper",
                                            "FileStatus", "Random",  "StartUp"};

// Returns the layer of a source, by its path from src/.
std::string LayerOf(const fs::path& path) {
  const std::string folder = path.begin()->string();
  if (folder != "system") return folder;
  return kLowerSystem.contains(path.stem().string()) ? "lower system" : "upper system";
}

bool IsSource(const fs::path& path) {
  return path.extension() == ".h" || path.extension() == ".cpp";
}

// Returns the project's own headers that a source includes, as paths from src/.
std::vector<fs::path> OwnIncludes(const fs::path& src, const fs::path& source) {
  constexpr std::string_view kInclude = "#include \"";
  std::vector<fs::path> found;
  std::ifstream lines(src / source);
  for (std::string line; std::getline(lines, line);) {
    if (!line.starts_with(kInclude)) continue;
    const std::string name = line.substr(kInclude.size(), line.rfind('"') - kInclude.size());
    found.push_back((source.parent_path() / name).lexically_normal());
  }
  return found;
}

// All sources below a folder, as paths from it.
std::vector<fs::path> Sources(const fs::path& root) {
  std::vector<fs::path> found;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root)) {
    if (IsSource(entry.path())) found.push_back(entry.path().lexically_relative(root));
  }
  std::sort(found.begin(), found.end());
  return found;
}

bool Allowed(const std::string& from, const std::string& to) {
  return from == to || kMayInclude.at(from).contains(to);
}

TEST(Tree, EveryFolderIncludesOnlyWhatItStandsOn) {
  const fs::path src = fs::path(SOURCE_DIR) / "src";
  int seen = 0;
  for (const fs::path& source : Sources(src)) {
    if (source == "mailhearth.h") continue;  // the umbrella
    ASSERT_TRUE(kMayInclude.contains(LayerOf(source))) << source << " is in no layer";
    for (const fs::path& included : OwnIncludes(src, source)) {
      ASSERT_TRUE(fs::exists(src / included)) << source << " includes " << included;
      EXPECT_TRUE(Allowed(LayerOf(source), LayerOf(included)))
          << source << " may not include " << included;
      ++seen;
    }
  }
  EXPECT_GT(seen, 10) << "the includes are not recognised";
}

TEST(Tree, TheUmbrellaIncludesEveryPublicHeader) {
  const fs::path src = fs::path(SOURCE_DIR) / "src";
  // Headers that others include for their own needs.
  const std::set<fs::path> internal = {"mailhearth.h",
                                       "address/ScanRules.h",
                                       "address/TokenWords.h",
                                       "command/Shortfall.h",
                                       "lists/Fields.h",
                                       "queue/Layout.h",
                                       "queue/LoopbackSocket.h",
                                       "system/EnvironmentVariables.h",
                                       "regex/Covered.h",
                                       "regex/PatternOptions.h",
                                       "regex/PatternStore.h",
                                       "regex/Replacement.h",
                                       "regex/Searches.h",
                                       "strings/Blocks.h",
                                       "strings/ByteWords.h",
                                       "strings/Characters.h",
                                       "strings/Export.h",
                                       "strings/PointerText.h",
                                       "strings/Search.h",
                                       "strings/Sizes.h",
                                       "strings/SmallBlocks.h",
                                       "strings/SStringRep.h",
                                       "strings/StandardError.h",
                                       "system/Descriptor.h",
                                       "system/ErrnoKeeper.h",
                                       "system/Mapping.h",
                                       "system/PathText.h",
                                       "system/StartUp.h"};
  const std::vector<fs::path> umbrella = OwnIncludes(src, "mailhearth.h");
  for (const fs::path& source : Sources(src)) {
    if (source.extension() != ".h" || internal.contains(source)) continue;
    if (source.parent_path() == "regex/engine") continue;
    EXPECT_EQ(std::count(umbrella.begin(), umbrella.end(), source), 1) << source;
  }
}

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
  const fs::path tests = fs::path(SOURCE_DIR) / "tests";
  for (const fs::path& source : Sources(tests)) {
    if (source.extension() != ".cpp") continue;
    const bool support = *source.begin() == "support";  // listed one folder above
    const std::string text = BuildTextOf(support ? tests : tests / source.parent_path());
    EXPECT_NE(text.find(source.filename().string()), text.npos) << source;
  }
}

}  // namespace
