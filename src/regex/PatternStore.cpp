#include "PatternStore.h"

#include <algorithm>

#include "PatternOptions.h"

inline namespace mailhearth {

CompiledPattern::CompiledPattern(std::string_view text, const char* options) {
  PatternStore& store = PatternStore::Instance();
  const bool ignoreCase = HasOption(options, kIgnoreCase);
  pattern_ = store.Find(text, ignoreCase);
  // In use: somebody up the stack searches with it, a new-handler being at work, say.
  if (pattern_ == nullptr || pattern_->inUse) {
    const bool known = pattern_ != nullptr;
    own_ = std::make_unique<StoredPattern>(text, ignoreCase);
    pattern_ = own_.get();
    if (!known) store.Keep(own_);
  }
  pattern_->inUse = true;
}

CompiledPattern::~CompiledPattern() { pattern_->inUse = false; }

PatternStore& PatternStore::Instance() {
  static PatternStore& store = *new PatternStore;
  return store;
}

StoredPattern* PatternStore::Find(std::string_view text, bool ignoreCase) {
  const auto found = std::find_if(patterns_.begin(), patterns_.end(), [&](const auto& pattern) {
    return pattern->text == text && pattern->ignoreCase == ignoreCase;
  });
  if (found == patterns_.end()) return nullptr;
  std::rotate(patterns_.begin(), found, found + 1);
  return patterns_.front().get();
}

bool PatternStore::Keep(std::unique_ptr<StoredPattern>& pattern) {
  if (!pattern->expression.OK() || pattern->text.size() > kLongest) return false;
  if (patterns_.size() < kPatterns) {
    patterns_.push_back(std::move(pattern));  // there is room
    std::rotate(patterns_.begin(), patterns_.end() - 1, patterns_.end());
    return true;
  }
  const auto last = std::find_if(patterns_.rbegin(), patterns_.rend(),
                                 [](const auto& kept) { return !kept->inUse; });
  if (last == patterns_.rend()) return false;
  *last = std::move(pattern);
  std::rotate(patterns_.begin(), last.base() - 1, last.base());
  return true;
}

}  // namespace mailhearth
