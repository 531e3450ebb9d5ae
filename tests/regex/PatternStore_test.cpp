#include "regex/PatternStore.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "strings/SString.h"
#include "support/CountedNew.h"
#include "support/ErrorText.h"
#include "support/FailEachAllocation.h"

namespace {

PatternStore& Store() { return PatternStore::Instance(); }

// A pattern that no other test uses.
std::string Fresh(const char* beginning) {
  static int made = 0;
  return beginning + std::to_string(++made);
}

TEST(PatternStore, AnExpressionIsCompiledOnce) {
  const std::string text = Fresh("once");
  const SRegex* first = nullptr;
  {
    const CompiledPattern pattern(text, nullptr);
    ASSERT_TRUE(pattern.Expression().OK());
    first = &pattern.Expression();
  }
  const AllocationCount count;
  for (const char* const options : {static_cast<const char*>(nullptr), "", "g"}) {
    const CompiledPattern pattern(text, options);
    EXPECT_EQ(&pattern.Expression(), first);
  }
  EXPECT_EQ(count.Made(), 0);
}

TEST(PatternStore, AMatchWithAKnownPatternAllocatesNothing) {
  const SString s("the key=val pair"), pattern("(\\w+)=(\\w+)");
  for (int i = 0; i < 3; ++i) EXPECT_TRUE(s.HasMatch("(\\w+)=(\\w+)"));
  const AllocationCount count;
  EXPECT_TRUE(s.HasMatch("(\\w+)=(\\w+)"));
  EXPECT_TRUE(s.HasMatch(pattern));
  EXPECT_EQ(count.Made(), 0);
}

TEST(PatternStore, CaseMakesTwoPatterns) {
  const std::string text = Fresh("case");
  const SRegex* first = nullptr;
  {
    const CompiledPattern pattern(text, nullptr);
    first = &pattern.Expression();
  }
  const CompiledPattern other(text, "i");
  EXPECT_NE(&other.Expression(), first);
  EXPECT_TRUE(other.Expression().HasMatch(SString(std::string_view(text)).UpperCase()));
  EXPECT_FALSE(first->HasMatch(SString(std::string_view(text)).UpperCase()));
}

TEST(PatternStore, TheWholeTextTellsPatternsApart) {
  EXPECT_TRUE(SString("xab").HasMatch("xab"));
  EXPECT_FALSE(SString("xab").HasMatch("xabc"));
  EXPECT_TRUE(SString("xab").HasMatch("xa"));
  EXPECT_FALSE(SString("xab").HasMatch(SString("xab\0", 4)));
}

TEST(PatternStore, KeepsNoPatternThatDoesNotCompile) {
  static_cast<void>(ErrorText([] {
    for (const char* const text : {"store(", "store{2,1}", ""}) {
      { const CompiledPattern pattern(text, nullptr); }
      EXPECT_EQ(Store().Find(text, false), nullptr);
    }
  }));
}

TEST(PatternStore, KeepsNoLongPattern) {
  const std::string longest(PatternStore::kLongest, 'x'), longer = longest + 'x';
  { const CompiledPattern pattern(longest, nullptr); }
  {
    const CompiledPattern pattern(longer, nullptr);
    EXPECT_TRUE(pattern.Expression().OK());
  }
  EXPECT_NE(Store().Find(longest, false), nullptr);
  EXPECT_EQ(Store().Find(longer, false), nullptr);
}

TEST(PatternStore, ForgetsTheOneNotUsedForLongest) {
  const std::string used = Fresh("used"), unused = Fresh("unused");
  { const CompiledPattern pattern(unused, nullptr); }
  { const CompiledPattern pattern(used, nullptr); }
  for (std::size_t i = 0; i < PatternStore::kPatterns - 1; ++i) {
    { const CompiledPattern pattern(Fresh("other"), nullptr); }
    { const CompiledPattern pattern(used, nullptr); }
  }
  EXPECT_EQ(Store().Count(), PatternStore::kPatterns);
  EXPECT_NE(Store().Find(used, false), nullptr);
  EXPECT_EQ(Store().Find(unused, false), nullptr);
}

TEST(PatternStore, UseAloneTellsWhichIsForgotten) {
  const std::string older = Fresh("older"), newer = Fresh("newer");
  { const CompiledPattern pattern(older, nullptr); }
  { const CompiledPattern pattern(newer, nullptr); }
  { const CompiledPattern pattern(older, nullptr); }
  for (std::size_t i = 0; i < PatternStore::kPatterns - 1; ++i) {
    const CompiledPattern pattern(Fresh("other"), nullptr);
  }
  EXPECT_NE(Store().Find(older, false), nullptr);
  EXPECT_EQ(Store().Find(newer, false), nullptr);
}

TEST(PatternStore, APatternInUseIsNotForgotten) {
  const CompiledPattern pattern("in(use)", nullptr);
  for (std::size_t i = 0; i < 2 * PatternStore::kPatterns; ++i) {
    EXPECT_FALSE(SString("x").HasMatch(Fresh("y").c_str()));
  }
  EXPECT_TRUE(pattern.Expression().HasMatch("in use? inuse"));
  EXPECT_EQ(pattern.Expression().MatchInfo(1).rm_so, 10);
}

TEST(PatternStore, APatternInUseIsNotHandedOutTwice) {
  const std::string text = Fresh("twice");
  const CompiledPattern outer(text, nullptr);
  {
    const CompiledPattern inner(text, nullptr);
    EXPECT_NE(&outer.Expression(), &inner.Expression());
    EXPECT_TRUE(inner.Expression().OK());
  }
  EXPECT_EQ(&Store().Find(text, false)->expression, &outer.Expression());
}

TEST(PatternStore, AllMayBeInUse) {
  std::vector<std::unique_ptr<CompiledPattern>> all;
  for (std::size_t i = 0; i < PatternStore::kPatterns + 3; ++i) {
    all.push_back(std::make_unique<CompiledPattern>(Fresh("all"), nullptr));
  }
  EXPECT_EQ(Store().Count(), PatternStore::kPatterns);
  for (const auto& pattern : all) EXPECT_TRUE(pattern->Expression().OK());
}

TEST(PatternStore, AFailedCompilationIsNotKept) {
  const std::string text = Fresh("fail(e)d+");
  FailEachAllocation([&] { const CompiledPattern pattern(text, nullptr); },
                     [&] { EXPECT_EQ(Store().Find(text, false), nullptr); });
  EXPECT_NE(Store().Find(text, false), nullptr);
}

}  // namespace
