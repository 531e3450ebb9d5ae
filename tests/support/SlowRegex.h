// A slow and obvious matcher of POSIX extended regular expressions, to judge the engine by.
// It shares nothing with the engine but the syntax: it asks of every part of the pattern
// whether that part can match the text from i to j, for every i and j, and reads the groups
// off the answers from the top down, as they are defined and with no regard to cost.
//
// Time grows with the cube of the text and with the bounds in the pattern, and both it and
// the parser recurse: it is for patterns of some hundred bytes and texts of some dozen.
//
//   SlowRegex slow("(a|ab)(c|bcd)(d*)", false);
//   slow.SetText("abcd");
//   slow.Find(0);                        // {0,4} {0,2} {2,3} {3,4}

#ifndef MAILHEARTH_TESTS_SUPPORT_SLOWREGEX_H
#define MAILHEARTH_TESTS_SUPPORT_SLOWREGEX_H

#include <regex.h>

#include <bitset>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

inline namespace mailhearth {

class SlowRegex {
 public:
  static constexpr std::size_t kMaxPattern = 1000;  // in bytes; the parser recurses

  // Reads `pattern`, which is not needed afterwards.
  // Needs: no more than kMaxPattern bytes.
  SlowRegex(std::string_view pattern, bool ignoreCase);

  [[nodiscard]] bool Compiles() const { return root_ >= 0; }

  // Number of parenthesised groups. Needs: Compiles().
  [[nodiscard]] int GroupCount() const { return groupCount_; }

  // Sets the text that Find() searches, of which a copy is kept. Needs: Compiles().
  void SetText(std::string_view text);

  // Searches the text from `start`.
  // Returns the bounds of the match and of each group, (-1, -1) for a group that took no
  // part; nothing if there is no match. What it returns ends with the next call.
  const std::vector<regmatch_t>& Find(int start);

 private:
  enum class Kind {
    kEmpty,
    kSet,
    kBegin,
    kEnd,
    kWordBegin,
    kWordEnd,
    kGroup,
    kChoice,
    kRow,
    kTurns
  };

  // A part of the pattern. A choice has branches and a row has pieces; a group and a
  // repetition have one part.
  struct Node {
    explicit Node(Kind k) : kind(k) {}

    Kind kind;
    std::bitset<256> set;
    std::vector<int> parts;
    int group = 0;
    int min = 0;
    int max = 0;   // kNoMax where there is none
    int slot = 0;  // first of the node's slots in the table of answers
  };

  static constexpr int kNoMax = -1;
  static constexpr int kBad = -1;  // what a production returns where the pattern does not compile

  int _Add(Node node);
  int _ParseChoice(int depth);
  int _ParseRow(int depth);
  int _ParsePiece(int depth);
  int _ParseAtom(int depth);
  int _ParseGroup(int depth);
  int _ParseBracket();
  bool _ParseElement(std::bitset<256>& set);
  int _ParseEndPoint();
  bool _ParseClass(std::bitset<256>& set);
  int _ParseNamed(char kind);
  int _ParseRepetition(int operand);
  int _ParseNumber();
  [[nodiscard]] bool _AtRepetition() const;
  [[nodiscard]] bool _AtDigit() const;
  [[nodiscard]] bool _At(char c) const { return !rest_.empty() && rest_.front() == c; }
  bool _Take(char c);
  bool _Take(std::string_view word);
  char _Next();
  std::bitset<256> _Fold(std::bitset<256> set) const;

  [[nodiscard]] bool _WordAt(int at) const;
  signed char& _Answer(const Node& node, int state, int from, int to);
  bool _Can(int id, int from, int to);
  bool _CanRest(const Node& row, int piece, int from, int to);
  bool _CanTurns(const Node& turns, int done, int from, int to);
  bool _CanTurnsAnew(const Node& turns, int done, int from, int to);
  void _Read(int id, int from, int to);
  void _ReadRow(const Node& row, int from, int to);
  void _ReadTurns(const Node& turns, int from, int to);

  std::string_view rest_;  // of the pattern, while it is parsed
  bool ignoreCase_;
  std::vector<Node> nodes_;
  int root_ = kBad;
  int groupCount_ = 0;
  int slots_ = 0;

  std::string text_;
  int length_ = 0;                    // of the text
  std::vector<signed char> answers_;  // -1 not asked yet, 0 no, 1 yes
  std::vector<regmatch_t> groups_;
};

}  // namespace mailhearth

#endif  // MAILHEARTH_TESTS_SUPPORT_SLOWREGEX_H
