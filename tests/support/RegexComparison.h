// One pattern given to the engine and to the slow matcher, which ought to agree.
//
//   RegexComparison pair("(a|b)*", false);
//   ASSERT_EQ(pair.Verdict(), "");
//   pair.SetText(text);
//   if (pair.Compiles()) EXPECT_EQ(pair.Difference(0), "");

#ifndef MAILHEARTH_TESTS_SUPPORT_REGEXCOMPARISON_H
#define MAILHEARTH_TESTS_SUPPORT_REGEXCOMPARISON_H

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "regex/engine/Expression.h"
#include "support/SlowRegex.h"

inline namespace mailhearth {

class RegexComparison {
 public:
  // Needs: no more than SlowRegex::kMaxPattern bytes of `pattern`, which outlive this.
  RegexComparison(std::string_view pattern, bool ignoreCase);

  // Returns "" or how the two differ in whether the pattern compiles.
  [[nodiscard]] std::string Verdict() const;

  // Whether both compiled the pattern.
  [[nodiscard]] bool Compiles() const { return fast_ != nullptr && slow_.Compiles(); }

  // Whether the engine refused the pattern because of its size.
  [[nodiscard]] bool TooLarge() const { return status_ == REG_ESPACE; }

  // Sets the text to search, which outlives this or the next text. Needs: Compiles().
  void SetText(std::string_view text);

  // Searches the text from `start` in both ways.
  // Returns "" or how match or groups differ. Needs: a text.
  [[nodiscard]] std::string Difference(int start);

  // Whether that search found anything.
  [[nodiscard]] bool Matched() const { return matched_; }

 private:
  std::string_view pattern_, text_;
  SlowRegex slow_;
  int status_ = 0;
  std::unique_ptr<engine::Expression> fast_;
  std::vector<regmatch_t> groups_;
  bool matched_ = false;
};

}  // namespace mailhearth

#endif  // MAILHEARTH_TESTS_SUPPORT_REGEXCOMPARISON_H
