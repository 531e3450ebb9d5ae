// Finds the bounds of a match: forward for its end, then, where need be, back from there for
// its start.

#ifndef MAILHEARTH_REGEX_ENGINE_MATCHER_H
#define MAILHEARTH_REGEX_ENGINE_MATCHER_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "Automaton.h"
#include "Reading.h"

inline namespace mailhearth {

namespace engine {

// A stretch of text.
struct Span {
  std::size_t from;
  std::size_t to;
};

class Matcher {
 public:
  // The tree is that of the program and not needed afterwards.
  Matcher(const Tree& tree, Program& program);

  // Sets `match` to the leftmost longest match in `text` from `start` on. Returns whether there
  // is one. Needs: start <= text.size().
  [[nodiscard]] bool Find(std::string_view text, std::size_t start, Span& match);

  // The automaton that reads backward.
  [[nodiscard]] Automaton& Backward();

 private:
  static constexpr std::size_t kNowhere = std::string_view::npos;

  // Where the match began that is the first in the state of a search.
  struct Begun {
    Automaton::StateId idle = Automaton::kUnknown;  // the state in which none has begun
    std::size_t at = kNowhere;                      // if that was seen
  };

  bool _FindEnd(std::string_view text, std::size_t start, Span& match);
  std::size_t _TakePlainSteps(Reading& reading, std::string_view text, std::size_t at,
                              Begun& begun);
  [[nodiscard]] std::size_t _FindStart(std::string_view text, std::size_t start, std::size_t end);

  Program& program_;
  const std::uint32_t width_;                        // of every match, or kNone
  const std::optional<unsigned char> requiredByte_;  // that every match has
  bool endAnchored_ = false;  // matches end at the end of the text only, and begin anywhere
  Automaton forward_;
  std::optional<Automaton> backward_;  // made at first use
};

}  // namespace engine

}  // namespace mailhearth

#endif  // MAILHEARTH_REGEX_ENGINE_MATCHER_H
