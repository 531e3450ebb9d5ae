#include "tree/TreeCheck.h"

#include <algorithm>
#include <filesystem>
#include <sstream>

namespace {

namespace fs = std::filesystem;

using Names = std::set<std::string>;

constexpr char kUmbrella[] = "mailhearth.h";

std::vector<std::string> SplitAt(std::string_view text, std::string_view separator) {
  std::vector<std::string> parts;
  for (std::size_t at = 0; at <= text.size();) {
    const std::size_t end = std::min(text.find(separator, at), text.size());
    parts.emplace_back(text.substr(at, end - at));
    at = end + separator.size();
  }
  return parts;
}

// The text without a code span's quotes.
std::string Plain(std::string text) {
  std::erase(text, '`');
  return text;
}

std::string FolderOf(const std::string& path) { return fs::path(path).parent_path().string(); }

// A header and the source of its name are one.
std::string ComponentOf(const std::string& path) {
  return fs::path(path).replace_extension().string();
}

bool IsHeader(const std::string& path) { return path.ends_with(".h"); }

// Returns the project's own headers that a source includes, as paths from src/.
std::vector<std::string> OwnIncludes(const std::string& path, const std::string& text) {
  constexpr std::string_view kInclude = "#include \"";
  std::vector<std::string> found;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    if (!line.starts_with(kInclude)) continue;
    const std::string name = line.substr(kInclude.size(), line.rfind('"') - kInclude.size());
    found.push_back((fs::path(path).parent_path() / name).lexically_normal().string());
  }
  return found;
}

// Calls use(path, included) for every include but those of the umbrella.
template <class Use>
void ForEachInclude(const Tree& tree, Use use) {
  for (const auto& [path, text] : tree) {
    if (path == kUmbrella) continue;
    for (const std::string& included : OwnIncludes(path, text)) use(path, included);
  }
}

// What each component includes, by one step or more.
using Reach = std::map<std::string, Names>;

Reach Reached(const Tree& tree) {
  Reach reach;
  ForEachInclude(tree, [&](const std::string& path, const std::string& included) {
    if (ComponentOf(path) != ComponentOf(included)) {
      reach[ComponentOf(path)].insert(ComponentOf(included));
    }
  });
  for (auto& [middle, beyond] : reach) {  // by ways through one component more each time
    for (auto& [from, to] : reach) {
      if (from != middle && to.contains(middle)) to.insert(beyond.begin(), beyond.end());
    }
  }
  return reach;
}

std::string Listed(const Names& names) {
  std::string text;
  for (const std::string& name : names) text += (text.empty() ? "" : ", ") + name;
  return text;
}

// Returns the cells of a row of a table; none if a line is something else.
std::vector<std::string> CellsOf(const std::string& line) {
  if (!line.starts_with("| ") || !line.ends_with(" |")) return {};
  return SplitAt(std::string_view(line).substr(2, line.size() - 4), " | ");
}

}  // namespace

TreeRules ReadTreeRules(std::string_view page) {
  constexpr std::string_view kFolder = "`src/";
  TreeRules rules;
  for (const std::string& line : SplitAt(page, "\n")) {
    const std::vector<std::string> cells = CellsOf(line);
    if (cells.size() == 3 && cells[0].starts_with(kFolder)) {
      Names& may = rules.folders[Plain(cells[0].substr(kFolder.size()))];
      if (cells[2] == "nothing") continue;
      for (const std::string& name : SplitAt(cells[2], ", ")) may.insert(name);
    } else if (cells.size() == 2 && cells[0].find("`, `") != std::string::npos) {
      const std::vector<std::string> names = SplitAt(Plain(cells[0]), ", ");
      rules.cycles.emplace(names.begin(), names.end());
    }
  }
  return rules;
}

Flaws FolderFlaws(const Tree& tree, const TreeRules& rules) {
  Flaws flaws;
  std::map<std::string, Names> used;
  for (const auto& [path, text] : tree) {
    if (path != kUmbrella && !rules.folders.contains(FolderOf(path))) {
      flaws.push_back(path + " is in no folder of the table");
    }
  }
  ForEachInclude(tree, [&](const std::string& path, const std::string& included) {
    const std::string from = FolderOf(path), to = FolderOf(included);
    if (!tree.contains(included)) {
      flaws.push_back(path + " includes " + included + ", which is not there");
      return;
    }
    if (from == to || !rules.folders.contains(from)) return;
    used[from].insert(to);
    const std::string outer = FolderOf(to);
    const bool inner = !outer.empty() && outer != from;
    if (inner || !rules.folders.at(from).contains(to)) {
      flaws.push_back(path + " may not include " + included);
    }
  });
  for (const auto& [from, may] : rules.folders) {
    for (const std::string& to : may) {
      if (!used[from].contains(to)) flaws.push_back("nothing in " + from + " includes " + to);
    }
  }
  return flaws;
}

Flaws CycleFlaws(const Tree& tree, const TreeRules& rules) {
  const Reach reach = Reached(tree);
  std::set<Names> cycles;
  for (const auto& [component, reached] : reach) {
    if (!reached.contains(component)) continue;
    Names cycle;
    for (const std::string& other : reached) {
      if (reach.contains(other) && reach.at(other).contains(component)) cycle.insert(other);
    }
    cycles.insert(cycle);
  }
  Flaws flaws;
  for (const Names& cycle : cycles) {
    if (!rules.cycles.contains(cycle)) flaws.push_back("cycle: " + Listed(cycle));
  }
  for (const Names& cycle : rules.cycles) {
    if (!cycles.contains(cycle)) flaws.push_back("no cycle: " + Listed(cycle));
  }
  return flaws;
}

Flaws HeaderFlaws(const Tree& tree) {
  Flaws flaws;
  const auto umbrella = tree.find(kUmbrella);
  const std::vector<std::string> list =
      umbrella == tree.end() ? Flaws() : OwnIncludes(kUmbrella, umbrella->second);
  const Names listed(list.begin(), list.end());
  for (const std::string& header : listed) {
    if (!tree.contains(header)) flaws.push_back(header + " is listed and not there");
    if (std::count(list.begin(), list.end(), header) > 1) flaws.push_back(header + " comes twice");
  }
  for (const auto& [path, text] : tree) {
    if (!IsHeader(path) || path == kUmbrella) continue;
    const bool internal = text.starts_with("// Not installed.");
    if (listed.contains(path) == internal) {
      flaws.push_back(path + (internal ? " is listed and not installed" : " is not listed"));
    }
    if (!listed.contains(path)) continue;
    for (const std::string& included : OwnIncludes(path, text)) {
      if (!listed.contains(included)) {
        flaws.push_back(path + " is installed without " + included);
      }
    }
  }
  return flaws;
}
