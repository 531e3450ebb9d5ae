// Not installed. Finds the bounds of the leftmost longest match: its end by the forward DFA, its
// start, where that was not seen on the way, by the reverse DFA.

#ifndef MAILHEARTH_REGEX_ENGINE_MATCHER_H
#define MAILHEARTH_REGEX_ENGINE_MATCHER_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "Automaton.h"
#include "Cursor.h"

inline namespace mailhearth {

namespace engine {

// A range of text, as offsets.
struct Span {
  std::size_t from;
  std::size_t to;
};

class Matcher {
 public:
  // `tree` is that of `program`, and is not needed afterwards.
  Matcher(const Tree& tree, Program& program);

  // Sets `match` to the leftmost longest match in `text` that begins at offset `start` or later.
  // Returns whether there is one. Needs: start <= text.size().
  [[nodiscard]] bool Find(std::string_view text, std::size_t start, Span& match);

  // The reverse DFA, created at first use.
  [[nodiscard]] Automaton& Reverse();

 private:
  static constexpr std::size_t kNowhere = std::string_view::npos;

  // The earliest candidate match of a search, the first in its state.
  struct Candidate {
    Automaton::StateId idle = Automaton::kUnknown;  // the state without candidates
    std::size_t start = kNowhere;                   // where it began, if that was seen
  };

  bool _FindEnd(std::string_view text, std::size_t start, Span& match);
  std::size_t _TakePlainSteps(Cursor& cursor, std::string_view text, std::size_t at,
                              Candidate& candidate);
  [[nodiscard]] std::size_t _FindStart(std::string_view text, std::size_t start, std::size_t end);

  Program& program_;
  const std::uint32_t width_;                        // of every match, else kNone
  const std::optional<unsigned char> requiredByte_;  // in every match
  bool endAnchored_ = false;  // only at the end of the text, not at its start
  Automaton forward_;
  std::optional<Automaton> reverse_;  // created at first use
};

}  // namespace engine

}  // namespace mailhearth

#endif  // MAILHEARTH_REGEX_ENGINE_MATCHER_H
