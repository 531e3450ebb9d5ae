#include "address/SToken.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <utility>

#include "support/CheckText.h"
#include "support/CountedNew.h"

namespace {

TEST(SToken, TypesAreTheBitsOfMasks) {
  const int types[] = {TokError,     TokEnd,   TokAtom,    TokQuoted, TokComment, TokLiteral,
                       TokBad,       TokLess,  TokGreater, TokAt,     TokDot,     TokComma,
                       TokSemicolon, TokColon, TokCrlf,    TokPercent};
  int bit = 1;
  for (const int type : types) {
    EXPECT_EQ(type, bit);
    bit *= 2;
  }
}

TEST(SToken, HasTheVeryTextThatItWasMadeOf) {
  const SString text("abc");
  const SToken token(text, TokAtom);
  EXPECT_EQ(token.Type(), TokAtom);
  CheckText(token.Text(), "abc");
  EXPECT_TRUE(SStringPeek::Shares(token.Text(), text));
  CheckUndefined(SToken(SString(), TokEnd).Text());
  CheckText(SToken("", TokEnd).Text(), "");
}

TEST(SToken, HasAPartOfASource) {
  const SString source("a<b\0c>", 6);
  SToken token(source, 2, 3, TokAtom);
  const AllocationCount count;
  EXPECT_EQ(token.View(), std::string_view("b\0c", 3));
  EXPECT_EQ(count.Made(), 0);
  CheckText(token.Text(), std::string_view("b\0c", 3));
  CheckText(SToken(source, 6, 0, TokEnd).Text(), "");
  CheckText(SToken(SString(), 0, 0, TokEnd).Text(), "");
}

TEST(SToken, OutlivesItsSource) {
  SString source("joe@host");
  SToken token(source, 4, 4, TokAtom);
  source = "something else";
  EXPECT_EQ(token.View(), "host");
}

TEST(SToken, CopiesAndMoves) {
  const SToken token("a@b", 2, 1, TokAtom);
  const SToken copy(token);
  EXPECT_EQ(copy.View(), "b");
  EXPECT_EQ(copy.Type(), TokAtom);
  SToken other("", TokEnd);
  other = token;
  EXPECT_EQ(other.View(), "b");
  EXPECT_EQ(other.Type(), TokAtom);
  SToken moved(std::move(other));
  EXPECT_EQ(moved.View(), "b");
  EXPECT_EQ(other.View(), "") << "nothing is left";  // NOLINT(bugprone-use-after-move)
  EXPECT_FALSE(other.Text().Defined());
  SToken last("long text", 5, 4, TokAtom);
  last = std::move(moved);
  EXPECT_EQ(last.View(), "b");
  const SToken& same = other = SToken("x", TokBad);
  other = same;
  EXPECT_EQ(other.View(), "x");
  EXPECT_EQ(other.Type(), TokBad);
}

// A token that is taken for another type.
class Disguised : public SToken {
 public:
  explicit Disguised(const SString& text) : SToken(text, TokAtom) {}
  [[nodiscard]] int Type() const override { return TokQuoted; }
};

TEST(SToken, AnAssignmentAsksTheOtherForItsType) {
  SToken token("", TokEnd);
  const Disguised disguised("abc");
  token = disguised;
  EXPECT_EQ(token.Type(), TokQuoted);
  EXPECT_EQ(token.View(), "abc");
  token = SToken("x", TokBad);
  token = Disguised("def");
  EXPECT_EQ(token.Type(), TokQuoted);
  EXPECT_EQ(token.View(), "def");
}

static_assert(std::has_virtual_destructor_v<SToken>);

}  // namespace
