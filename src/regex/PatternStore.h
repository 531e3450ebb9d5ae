// Not installed. Expressions for patterns that are given as text: the last few that compiled are
// kept, so a pattern in a loop costs one compilation. Nobody notices but by the time it takes, and
// by the memory: that of kPatterns expressions at the most.

#ifndef MAILHEARTH_REGEX_PATTERNSTORE_H
#define MAILHEARTH_REGEX_PATTERNSTORE_H

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "../strings/SString.h"
#include "SPerlRegex.h"

inline namespace mailhearth {

// A kept expression.
struct StoredPattern {
  StoredPattern(std::string_view pattern, bool blind)
      : text(pattern), ignoreCase(blind), expression(SString(pattern), blind ? "i" : nullptr) {}

  std::string text;
  bool ignoreCase;
  SPerlRegex expression;
  bool inUse = false;
};

// What a pattern in the Perl-like dialect compiles to, for the time of one operation. While
// it lives, nobody else gets the same expression: a search writes to it.
//
//   const CompiledPattern pattern("a+b", options);
//   if (pattern.Expression().OK()) ...
class CompiledPattern {
 public:
  // A pattern that cannot be translated, or does not compile, is reported at every call.
  CompiledPattern(std::string_view text, const char* options);
  ~CompiledPattern();
  CompiledPattern(const CompiledPattern&) = delete;
  CompiledPattern& operator=(const CompiledPattern&) = delete;

  [[nodiscard]] const SRegex& Expression() const { return pattern_->expression; }

 private:
  std::unique_ptr<StoredPattern> own_;  // one that is not kept
  StoredPattern* pattern_;              // never null
};

class PatternStore {
 public:
  // Patterns kept, and bytes of the longest. Each keeps what its searches have built, which is
  // a few kilobytes for most and at most a few megabytes.
  static constexpr std::size_t kPatterns = 32;
  static constexpr std::size_t kLongest = 1024;

  // The program's store. It is never destroyed, so that programs may use patterns to their
  // very end.
  static PatternStore& Instance();

  // Returns the pattern, and counts it as the one used last; null if it is not there.
  StoredPattern* Find(std::string_view text, bool ignoreCase);

  // Keeps a pattern, in place of the one that has not been used for longest, if need be.
  // Does not if it did not compile, is too long, or all others are in use.
  // Returns whether it took `pattern`.
  bool Keep(std::unique_ptr<StoredPattern>& pattern);

  [[nodiscard]] std::size_t Count() const { return patterns_.size(); }

 private:
  PatternStore() { patterns_.reserve(kPatterns); }

  std::vector<std::unique_ptr<StoredPattern>> patterns_;  // the one used last comes first
};

}  // namespace mailhearth

#endif  // MAILHEARTH_REGEX_PATTERNSTORE_H
