// Random patterns of a dialect, and random texts that they have a chance to match.

#ifndef MAILHEARTH_TESTS_SUPPORT_RANDOMREGEX_H
#define MAILHEARTH_TESTS_SUPPORT_RANDOMREGEX_H

#include <cstddef>
#include <iterator>
#include <random>
#include <string>
#include <string_view>

inline namespace mailhearth {

// A series of choices that is the same for the same seed.
class Chance {
 public:
  explicit Chance(unsigned seed) : random_(seed) {}

  // Returns a number from 0 to `n` - 1.
  int Below(int n) { return static_cast<int>(random_() % static_cast<unsigned>(n)); }

  // True in `percent` of the cases.
  bool Is(int percent) { return Below(100) < percent; }

  template <class Range>
  const auto& OneOf(const Range& range) {
    return range[static_cast<std::size_t>(Below(static_cast<int>(std::size(range))))];
  }

 private:
  std::mt19937 random_;
};

// What patterns are made of, beside bytes, brackets, groups, branches and repetitions.
struct Dialect {
  bool words;            // [[:<:]] and [[:>:]]
  bool emptyBranches;    // (|a)
  bool stacked;          // a*{2}
  bool emptyTurns;       // repetitions of what can match the empty text
  bool repeatedAnchors;  // (^a)*
  int maxBound;
  int maxRepetitions;       // within one another
  bool marksBytes = false;  // see PatternMaker::kBehindByte
};

class PatternMaker {
 public:
  // Stands behind every part that matches one byte, for a dialect that marks them.
  static constexpr char kBehindByte = '\x01';

  // Needs: both outlive this.
  PatternMaker(Chance& chance, const Dialect& dialect) : chance_(chance), dialect_(dialect) {}

  // Returns a pattern of up to about `symbols` bytes, brackets and bounds.
  std::string Make(int symbols);

 private:
  struct Part {
    std::string pattern;
    bool nullable = false;  // can match the empty text
    bool anchored = false;  // has an anchor
    int repetitions = 0;    // within one another
  };

  static void _Join(Part& whole, const Part& part);
  Part _MakeChoice(int depth);
  Part _MakeRow(int depth);
  Part _MakePiece(int depth);
  Part _MakeAtom(int depth);
  [[nodiscard]] bool _MayRepeat(const Part& part) const;
  void _Repeat(Part& part);
  std::string _MakeBound(int min);

  Chance& chance_;
  const Dialect& dialect_;
  int left_ = 0;  // symbols
  int groups_ = 0;
};

// Returns a text of up to `most` of the bytes.
std::string RandomText(Chance& chance, std::string_view bytes, int most);

}  // namespace mailhearth

#endif  // MAILHEARTH_TESTS_SUPPORT_RANDOMREGEX_H
