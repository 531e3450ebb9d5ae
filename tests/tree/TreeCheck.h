// Holds the sources of a tree against the rules that a page gives for them. What is wrong is
// told in texts, one for each flaw, so that made-up trees can be held against them as well.

#ifndef MAILHEARTH_TESTS_TREE_TREECHECK_H
#define MAILHEARTH_TESTS_TREE_TREECHECK_H

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

using Flaws = std::vector<std::string>;

// The texts of sources, by their paths from src/.
using Tree = std::map<std::string, std::string>;

struct TreeRules {
  // Each folder, and those that its files may include beside their own.
  std::map<std::string, std::set<std::string>> folders;

  // Components that include each other, each set in one row.
  std::set<std::set<std::string>> cycles;
};

// Reads the rules from two tables of a page:
//
//   | `src/lists` | what it holds | strings |             a folder; "nothing" for none
//   | `lists/A`, `lists/B` | why they include each other |
TreeRules ReadTreeRules(std::string_view page);

// Files in no folder of the table or that include what is not there; includes that the table
// does not permit, and permissions that no include uses. Of a folder within another one only
// that one may include headers.
Flaws FolderFlaws(const Tree& tree, const TreeRules& rules);

// Components (a source with its header) that include each other and are not in the table; rows
// of the table that are no such cycle.
Flaws CycleFlaws(const Tree& tree, const TreeRules& rules);

// Headers that are neither in the umbrella `mailhearth.h` nor say in their first line that they
// are not installed, or both; those in the umbrella that are not there, come twice, or include
// one that is not in it.
Flaws HeaderFlaws(const Tree& tree);

#endif  // MAILHEARTH_TESTS_TREE_TREECHECK_H
