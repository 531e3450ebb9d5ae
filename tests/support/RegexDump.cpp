#include "support/RegexDump.h"

#include <algorithm>
#include <iterator>
#include <sstream>
#include <vector>

#include "regex/engine/Reachability.h"

inline namespace mailhearth {

using engine::Automaton;
using engine::ByteKind;
using engine::ByteSet;
using engine::Node;
using engine::NodeKind;
using engine::Operation;
using engine::Place;
using engine::State;

namespace {

bool IsWord(std::size_t byte) {
  return (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') || byte == '_' ||
         (byte >= 'a' && byte <= 'z');
}

std::string InHexadecimal(std::size_t byte) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  return {'\\', 'x', kDigits[byte / 16], kDigits[byte % 16]};
}

bool Prints(std::size_t byte) { return byte >= ' ' && byte <= '~'; }

std::string TextOf(std::size_t byte) {
  if (!Prints(byte)) return InHexadecimal(byte);
  const char c = static_cast<char>(byte);
  return IsWord(byte) ? std::string{c} : std::string{'\'', c, '\''};
}

std::string MemberText(std::size_t byte) {
  if (!Prints(byte)) return InHexadecimal(byte);
  const char c = static_cast<char>(byte);
  const bool isOrdinary = std::string_view("[]^-\\").find(c) == std::string_view::npos;
  return isOrdinary ? std::string{c} : std::string{'\\', c};
}

// The members in ranges.
std::string MembersOf(const ByteSet& set) {
  std::string text;
  for (std::size_t first = 0; first < set.size(); ++first) {
    if (!set[first]) continue;
    std::size_t last = first;
    while (last + 1 < set.size() && set[last + 1]) ++last;
    text += MemberText(first);
    if (last > first + 1) text += '-';
    if (last > first) text += MemberText(last);
    first = last;
  }
  return text;
}

std::string TextOf(const ByteSet& set) {
  if (set.all()) return ".";
  const bool isNegated = set.count() > set.size() / 2;
  std::string text = isNegated ? "[^" : "[";
  text += MembersOf(isNegated ? ~set : set);
  return text += ']';
}

std::string AssertionText(std::uint32_t which) {
  constexpr const char* kTexts[] = {"^", "$", "word-start", "word-end"};
  return kTexts[which];
}

void DumpNode(const engine::Tree& tree, std::uint32_t index, std::ostream& out) {
  const Node& node = tree.nodes[index];
  switch (node.kind) {
    case NodeKind::kEmpty:
      out << "empty";
      return;
    case NodeKind::kByte:
      out << TextOf(node.value);
      return;
    case NodeKind::kSet:
      out << TextOf(tree.sets[node.value]);
      return;
    case NodeKind::kAssertion:
      out << AssertionText(node.value);
      return;
    case NodeKind::kConcatenation:
      out << "cat";
      break;
    case NodeKind::kAlternation:
      out << "alt";
      break;
    case NodeKind::kRepetition:
      out << "repeat{" << int{node.min} << ',';
      if (node.max != engine::kUnbounded) out << node.max;
      out << '}';
      break;
    case NodeKind::kGroup:
      out << "group" << node.value;
      break;
  }
  const char* before = "(";
  for (std::uint32_t child = node.child; child != engine::kNone;
       child = tree.nodes[child].sibling) {
    out << before;
    DumpNode(tree, child, out);
    before = ", ";
  }
  out << ')';
}

ByteSet MembersOfClass(const engine::Program& program, std::uint32_t byteClass) {
  ByteSet members;
  for (std::size_t byte = 0; byte < members.size(); ++byte) {
    members[byte] = program.Classes()[byte] == byteClass;
  }
  return members;
}

std::string ClassText(const engine::Program& program, std::uint32_t byteClass) {
  if (byteClass == program.EdgeClass()) return "edge";
  const ByteSet members = MembersOfClass(program, byteClass);
  if (members.count() != 1) return TextOf(members);
  std::size_t byte = 0;
  while (!members[byte]) ++byte;
  return TextOf(byte);
}

// The states in the order in which steps lead to them; visits each step once.
template <class Step>
std::vector<Automaton::StateId> Visited(const engine::Program& program, Automaton::StateId start,
                                        Step step) {
  std::vector<Automaton::StateId> states;
  if (start != Automaton::kDead) states.push_back(start);
  for (std::size_t i = 0; i < states.size(); ++i) {
    for (std::uint32_t c = 0; c <= program.EdgeClass(); ++c) {
      const std::uint32_t next = step(states[i], c);
      if (next == Automaton::kUnknown) continue;
      const Automaton::StateId to = Automaton::StateOf(next);
      if (to == Automaton::kDead) continue;
      if (std::find(states.begin(), states.end(), to) == states.end()) states.push_back(to);
    }
  }
  return states;
}

}  // namespace

RegexParts::RegexParts(std::string_view pattern, bool ignoreCase)
    : status(engine::Parse(pattern, ignoreCase, tree)) {
  if (status == 0) status = program.Compile(tree);
}

std::string DumpTree(const engine::Tree& tree) {
  std::ostringstream text;
  DumpNode(tree, tree.root, text);
  return text.str();
}

std::string DumpProgram(const engine::Program& program, const engine::Tree& tree) {
  std::ostringstream text;
  for (Place place = 0; place < program.End(); ++place) {
    const engine::Instruction& instruction = program[place];
    text << (place == 0 ? "" : "; ") << place << ' ';
    switch (instruction.operation) {
      case Operation::kByte:
        text << "byte " << TextOf(instruction.argument);
        break;
      case Operation::kSet:
        text << "set " << TextOf(tree.sets[instruction.argument]);
        break;
      case Operation::kAssert:
        text << "assert " << AssertionText(instruction.argument);
        break;
      case Operation::kSplit:
        text << "split " << instruction.argument;
        break;
      case Operation::kJump:
        text << "jump " << instruction.argument;
        break;
    }
  }
  return text.str();
}

std::string DumpClasses(const engine::Program& program) {
  std::ostringstream text;
  for (std::uint32_t c = 0; c < program.EdgeClass(); ++c) {
    text << (c == 0 ? "" : " ") << ClassText(program, c);
  }
  return text.str();
}

std::string DumpState(const engine::StateTable::View& state) {
  if (state.places.empty() && !state.searching) return "dead";
  std::ostringstream text;
  if (state.previous == ByteKind::kEdge) text << "edge ";
  if (state.previous == ByteKind::kWord) text << "word ";
  text << '{';
  const char* before = "";
  for (const Place place : state.places) {
    if (place == State::kMark) {
      before = "|";
    } else {
      text << before << place;
      before = " ";
    }
  }
  if (state.searching) text << (state.places.empty() ? "*" : "|*");
  text << '}';
  return text.str();
}

std::string DumpStates(const engine::Program& program, const Automaton& automaton,
                       Automaton::StateId start) {
  const std::vector<Automaton::StateId> states =
      Visited(program, start, [&](Automaton::StateId state, std::uint32_t byteClass) {
        return automaton.Table()[state + byteClass];
      });
  std::ostringstream text;
  for (std::size_t i = 0; i < states.size(); ++i) {
    text << i << ' ' << DumpState(automaton[states[i]]);
    const char* before = ": ";
    for (std::uint32_t c = 0; c <= program.EdgeClass(); ++c) {
      const std::uint32_t step = automaton.Table()[states[i] + c];
      if (step == Automaton::kUnknown) continue;
      text << before << ClassText(program, c) << " -> ";
      before = ", ";
      const auto to = std::find(states.begin(), states.end(), Automaton::StateOf(step));
      if (to == states.end()) {
        text << "dead";
      } else {
        text << std::distance(states.begin(), to);
      }
      if ((step & Automaton::kMatched) != 0) text << " matched";
      if ((step & Automaton::kBeganLater) != 0) text << " began later";
    }
    text << '\n';
  }
  return text.str();
}

void ComputeStates(const engine::Program& program, Automaton& automaton, Automaton::StateId start) {
  static_cast<void>(Visited(program, start, [&](Automaton::StateId state, std::uint32_t byteClass) {
    return automaton.Step(state, byteClass);
  }));
}

std::string DumpLivePlaces(engine::Program& program, std::string_view text) {
  Automaton reverse(program, engine::Direction::kReverse);
  engine::Reachability reachability(program, reverse);
  reachability.Begin(text, 0, text.size(), {0, program.End()});
  std::ostringstream out;
  for (std::size_t at = 0; at <= text.size(); ++at) {
    out << (at == 0 ? "" : "; ") << at << ' ' << DumpState(reverse[reachability.At(at)]);
  }
  return out.str();
}

}  // namespace mailhearth
