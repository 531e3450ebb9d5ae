#include "tables/SNamedValue.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <string_view>
#include <vector>

#include "support/SStringListPeek.h"

namespace {

using Names = std::vector<std::string>;

constexpr unsigned kNoCase = 0;
constexpr unsigned kCase = 1;

TEST(SNamedValue, ANewNameBeginsWithZero) {
  SNamedValue values(kCase);
  EXPECT_FALSE(values.Keys().Defined());
  EXPECT_EQ(values["a"], 0);
  EXPECT_EQ(Texts(values.Keys()), (Names{"a"}));
  ++values["a"];
  values[SString("b")] = INT_MIN;
  EXPECT_EQ(values.Get("a"), 1);
  EXPECT_EQ(values.Get(SString("b")), INT_MIN);
}

TEST(SNamedValue, GetNeverAdds) {
  const SNamedValue values(kCase);
  EXPECT_EQ(values.Get("a"), -1);
  EXPECT_EQ(values.Get(SString()), -1);
  EXPECT_FALSE(values.Keys().Defined());
}

TEST(SNamedValue, MinusOneIsNone) {
  SNamedValue values(kNoCase);
  values["a"] = 1;
  values["b"] = -1;
  values["c"] = -2;
  EXPECT_EQ(Texts(values.Keys()), (Names{"a", "c"}));
  EXPECT_EQ(values.Get("b"), -1);
  SNamedValue copy(values);
  EXPECT_EQ(Texts(copy.Keys()), (Names{"a", "c"}));
  EXPECT_EQ(copy["b"], 0) << "had come along";
  EXPECT_EQ(values["b"], -1);
  values["b"] = 3;
  EXPECT_EQ(Texts(values.Keys()), (Names{"a", "b", "c"})) << "in its old place";
}

TEST(SNamedValue, ComparesNamesAsItWasBuilt) {
  SNamedValue exact(kCase), values(kNoCase);
  exact["a"] = 1;
  exact["A"] = 2;
  values["old"] = 3;
  values = exact;
  EXPECT_EQ(values.CaseSensitive(), kCase);
  EXPECT_EQ(Texts(values.Keys()), (Names{"a"}));
  EXPECT_EQ(values.Get("a"), 2);
  EXPECT_EQ(values.Get("old"), -1);
  const SNamedValue& same = values;
  values = same;
  EXPECT_EQ(values.Get("A"), 2);
  EXPECT_EQ(SNamedValue(values).Get("A"), -1);
}

TEST(SNamedValue, NamesMayBeAnyText) {
  SNamedValue values(kNoCase);
  const std::string nul(2, '\0');
  values[nul] = 1;
  values[std::string_view(nul).substr(1)] = 2;
  values[SString()] = 3;
  values[0] = 4;
  EXPECT_EQ(values.Get(nul), 1);
  EXPECT_EQ(values.Get(SString('\0', 1)), 2);
  EXPECT_EQ(values.Get(""), 3);
  EXPECT_EQ(values.Get("0"), 4);
}

TEST(SNamedValue, DeletesAndResets) {
  SNamedValue values(kNoCase);
  values["a"] = 1;
  values["b"] = 2;
  values.Delete("A");
  values.Delete("x");
  EXPECT_EQ(Texts(values.Keys()), (Names{"b"}));
  values.Reset();
  EXPECT_FALSE(values.Keys().Defined());
  EXPECT_EQ(values.Get("b"), -1);
}

}  // namespace
