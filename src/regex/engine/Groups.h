// Not installed. Finds the groups (submatches) of a match whose bounds are known, by dividing its
// text along the tree of the pattern, from the top.

#ifndef MAILHEARTH_REGEX_ENGINE_GROUPS_H
#define MAILHEARTH_REGEX_ENGINE_GROUPS_H

#include <regex.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "Automaton.h"
#include "Matcher.h"
#include "Reachability.h"

inline namespace mailhearth {

namespace engine {

// A node's text is divided among its children by the rule of Expression::FindGroups(), literally:
// from left to right, each child takes the longest text that lets the rest match. Children with
// groups to report are divided in turn. Reverse reachability tells what lets the rest match: a
// forward run through a child's code that steps to live places only dies where the child's
// longest text ends. So all nodes of one depth together read each byte a fixed number of times.
class GroupFinder {
 public:
  // `tree` is that of `program`, and `reverse` a reverse DFA of it.
  GroupFinder(const Tree& tree, Program& program, Automaton& reverse);

  // As Expression::FindGroups().
  void Find(std::string_view text, regmatch_t match, std::span<regmatch_t> groups);

 private:
  static constexpr std::size_t kNoEnd = std::string_view::npos;

  // A node to be divided: where its code begins, and the text that it matches.
  struct Task {
    std::uint32_t node;
    Place start;
    std::size_t from;
    std::size_t to;
  };

  // The siblings after a child of a concatenation: the width of all together, and whether they
  // have groups to report.
  struct Following {
    std::uint32_t width = kNone;
    bool reports = false;
  };

  [[nodiscard]] const Node& _Child(const Node& node) const { return tree_.nodes[node.child]; }
  [[nodiscard]] Fragment _FragmentOf(const Task& task) const {
    return {task.start, task.start + tree_.nodes[task.node].size};
  }

  void _Divide(const Task& task);
  void _DivideAlternation(const Task& task);
  void _DivideConcatenation(const Task& task);
  void _DivideRepetition(const Task& task);
  bool _FindLastIteration(const Task& task, Span& iteration);
  void _Report(std::uint32_t index, Place start, Span text);

  [[nodiscard]] bool _TakesAnything(const Node& node, std::size_t& least) const;
  [[nodiscard]] std::size_t _LastStart(Fragment rest, Span text);
  [[nodiscard]] std::size_t _LongestEnd(Fragment part, std::size_t from);
  std::uint32_t _Step(std::uint32_t state, Automaton::StateId live);
  std::uint32_t _ComputeStep(std::uint32_t state, Automaton::StateId live);
  void _ClearCache();
  void _CollectFollowing();

  // A computed step: from a state, with the live places of the boundary.
  struct CachedStep {
    std::uint32_t state = 0;
    Automaton::StateId live = 0;
    std::uint32_t step = 0;
  };
  static constexpr std::size_t kCachedSteps = 1024;

  const Tree& tree_;
  Program& program_;
  Automaton& reverse_;
  Reachability reachability_;
  Closure closure_;
  StateTable states_;
  std::vector<CachedStep> cache_;
  std::vector<Following> following_;  // by node
  std::size_t generation_ = 0;        // of the state ids of reverse_ in cache_

  std::string_view text_;
  std::span<regmatch_t> groups_;
  std::vector<Task> tasks_;
  std::vector<Place> consuming_;
  State next_;
};

}  // namespace engine

}  // namespace mailhearth

#endif  // MAILHEARTH_REGEX_ENGINE_GROUPS_H
