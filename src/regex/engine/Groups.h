// Finds the groups of a match whose bounds are known.

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
#include "Viability.h"

inline namespace mailhearth {

namespace engine {

// The tree is read from the top: the stretch of text that a node matches is divided among
// its children, and those that have groups to report are looked at in turn. So the rule of
// Expression::FindGroups() is followed as it is put. A child's longest text is found in one
// reading forward that looks only at places from which the rest can still be matched, and
// therefore ends where that text ends; so the nodes of one depth together read each byte
// a fixed number of times.
class GroupFinder {
 public:
  // The tree and the program belong together; `backward` is an automaton of the program.
  GroupFinder(const Tree& tree, Program& program, Automaton& backward);

  // Expression::FindGroups().
  void Find(std::string_view text, regmatch_t match, std::span<regmatch_t> groups);

 private:
  static constexpr std::size_t kNoEnd = std::string_view::npos;

  // A node to be looked at: where its code begins, and the text that it matches.
  struct Task {
    std::uint32_t node;
    Place start;
    std::size_t from;
    std::size_t to;
  };

  // What stands behind a child of a concatenation: the width of all together, and whether
  // there are groups to report.
  struct Behind {
    std::uint32_t width = kNone;
    bool reports = false;
  };

  [[nodiscard]] const Node& _Child(const Node& node) const { return tree_.nodes[node.child]; }
  [[nodiscard]] Run _RunOf(const Task& task) const {
    return {task.start, task.start + tree_.nodes[task.node].size};
  }

  void _Divide(const Task& task);
  void _DivideAlternation(const Task& task);
  void _DivideConcatenation(const Task& task);
  void _DivideRepetition(const Task& task);
  bool _FindLastTurn(const Task& task, Span& turn);
  void _Report(std::uint32_t index, Place start, Span text);

  [[nodiscard]] bool _TakesAnything(const Node& node, std::size_t& least) const;
  [[nodiscard]] std::size_t _LastStart(Run rest, Span text);
  [[nodiscard]] std::size_t _LongestEnd(Run part, std::size_t from);
  std::uint32_t _Step(std::uint32_t state, Automaton::StateId viable);
  std::uint32_t _ComputeStep(std::uint32_t state, Automaton::StateId viable);
  void _DropStates();
  void _LookBehind();

  // A step that was computed: from a state, with what was viable.
  struct Known {
    std::uint32_t state = 0;
    Automaton::StateId viable = 0;
    std::uint32_t step = 0;
  };
  static constexpr std::size_t kKnown = 1024;

  const Tree& tree_;
  Program& program_;
  Automaton& backward_;
  Viability viability_;
  Closure closure_;
  StateTable states_;
  std::vector<Known> known_;
  std::vector<Behind> behind_;  // by node
  std::size_t drops_ = 0;       // of backward_, when `known_` was begun

  std::string_view text_;
  std::span<regmatch_t> groups_;
  std::vector<Task> tasks_;
  std::vector<Place> taking_;
  State next_;
};

}  // namespace engine

}  // namespace mailhearth

#endif  // MAILHEARTH_REGEX_ENGINE_GROUPS_H
