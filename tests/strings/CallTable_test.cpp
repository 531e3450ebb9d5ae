// Every operation that takes text or a number, called with every type of argument that might
// convert to it: which calls compile, and what each means where overloads of several classes
// meet. A call that is refused, by being ambiguous or not there, reads "-".

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <limits>
#include <sstream>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "mailhearth.h"

namespace {

// --- The arguments --------------------------------------------------------------------------

enum Plain { kPlainOne = 1 };
enum class Scoped { kOne = 1 };

// Calls `ask` with each argument in turn: text is "b", a number 1.
template <class Ask>
void WithEachArgument(Ask ask) {
  char array[] = "b";
  char* const pointer = array;
  const char* const constant = array;
  const SString string("b");
  SString other("b");
  SStringItem item("b");
  SFixedString fixed("b", 1);
  const SStringList list("b");
  const char* texts[] = {"b", nullptr};
  ask("b"), ask(array), ask(pointer), ask(constant), ask(nullptr);
  ask('b'), ask(true), ask(static_cast<signed char>(1)), ask(static_cast<unsigned char>(1));
  ask(static_cast<short>(1)), ask(static_cast<unsigned short>(1)), ask(1), ask(1U);
  ask(1L), ask(1UL), ask(1LL), ask(1ULL), ask(1.0F), ask(1.0), ask(1.0L);
  ask(kPlainOne), ask(Scoped::kOne);
  ask(std::string("b")), ask(std::string_view("b"));
  ask(string), ask(other.Segment(0, 1)), ask(item), ask(fixed);
  ask(list), ask(static_cast<const char**>(texts));
}

// Their names, in the order of the columns below.
constexpr std::string_view kArguments =
    "literal array char* const-char* nullptr "
    "char bool schar uchar short ushort int unsigned long ulong llong ullong float double ldouble "
    "enum scoped string view SString SSubString SStringItem SFixedString SStringList const-char**";

// --- The answers ----------------------------------------------------------------------------

std::string Told(const SString& s) {
  if (!s.Defined()) return "undefined";
  return s.Length() == 0 ? "empty" : std::string(s.View());
}
std::string Told(const SStringList& list) {
  std::string told = list.Defined() ? "[" : "undefined[";
  for (const SString& element : list) told += (told.ends_with('[') ? "" : "|") + Told(element);
  return told + "]";
}
template <class Number>
requires std::is_arithmetic_v<Number> std::string Told(Number n) { return std::to_string(n); }

struct Row {
  std::string call;
  std::string answers;
};

template <class Call>
Row RowOf(const char* name, Call call) {
  Row row{name, ""};
  WithEachArgument([&](auto&& x) {
    if constexpr (requires { call(x); }) {
      row.answers += Told(call(x)) + " ";
    } else {
      row.answers += "- ";
    }
  });
  return row;
}

// A call of `x`, for every type of `x` for which it compiles.
#define CALL(expression) \
  RowOf(                 \
      #expression, [](auto&& x) requires requires { expression; } { return expression; })

// The object that each call is made on.
SString Text() { return SString("abcb"); }
SStringList List() { return {"b", "a", "c"}; }
const SStringList kList = List();

template <class T, class Change>
T Changed(T made, Change change) {
  change(made);
  return made;
}
#define CHANGE(made, expression)                                                       \
  RowOf(                                                                               \
      #expression, [](auto&& x) requires requires(decltype(made) it) { expression; } { \
        return Changed(made, [&](auto& it) { static_cast<void>(expression); });        \
      })

std::vector<std::string> Words(std::string_view text) {
  std::istringstream in{std::string(text)};
  std::vector<std::string> words;
  for (std::string word; in >> word;) words.push_back(word);
  return words;
}

// The same with "3*-" written out as "- - -".
std::vector<std::string> Repeated(std::string_view text) {
  std::vector<std::string> repeated;
  for (const std::string& word : Words(text)) {
    const std::size_t star = word.find('*');
    const int times = star == word.npos ? 1 : std::stoi(word.substr(0, star));
    repeated.insert(repeated.end(), static_cast<std::size_t>(times),
                    star == word.npos ? word : word.substr(star + 1));
  }
  return repeated;
}

struct Expected {
  Row row;
  std::string_view answers;
};

TEST(CallTable, EveryCallMeansWhatItShould) {
  const Expected table[] = {
      {CALL(SString(x)), "4*b empty b 13*1 - 1 - 6*b 2*-"},
      {CHANGE(Text(), it = x), "4*b empty b 13*1 - 1 3*- 4*b 2*-"},
      {CHANGE(Text(), it += x), "4*abcbb abcb abcbb 16*- 6*abcbb 2*-"},
      {CALL(Text() + x), "4*abcbb abcb abcbb 18*- 4*abcbb 2*-"},
      {CALL(x + Text()), "4*babcb abcb babcb 18*- babcb 5*-"},
      {CALL(Text() == x), "6*0 16*- 7*0 -"},
      {CALL(Text() < x), "4*1 0 1 16*- 6*1 2*-"},
      {CALL(Text() > x), "4*0 1 0 16*- 6*0 2*-"},
      {CALL(x < Text()), "4*0 1 0 16*- 6*0 2*-"},
      {CALL(Text()[x]), "5*- 0 15*98 9*-"},
      {CALL(Text().Segment(x, 1)), "5*- empty 15*b 9*-"},
      {CHANGE(Text(), it.Segment(0, 1) = x), "4*bbcb bcb bbcb 13*1bcb - 1bcb 3*- 4*bbcb 2*-"},
      {CALL(Text().Count(x)), "4*2 0 2 15*0 3*- 4*2 2*-"},
      {CALL(Text().Index(x)), "4*1 -1 1 15*-1 3*- 4*1 2*-"},
      {CALL(Text().RIndex(x)), "6*3 15*-1 3*- 4*3 2*-"},
      {CALL(Text().HasPrefix(x)), "4*0 1 14*0 - 0 3*- 4*0 2*-"},
      {CALL(Text().CompareNoCase(x)), "19*0 - 0 3*- 4*0 2*-"},
      {CALL(Text().HasMatch(x)), "4*1 0 1 13*0 - 0 3*- 4*1 2*-"},
      {CALL(Text().M(x)), "4*[b] undefined[] [b] 13*undefined[] - undefined[] 3*- 4*[b] 2*-"},
      {CHANGE(Text(), it.S(x, "-")), "4*a-cb -abcb a-cb 13*abcb - abcb 3*- 4*a-cb 2*-"},
      {CHANGE(Text(), it.S("c", x)), "4*abbb abb abbb 13*ab1b - ab1b 3*- 4*abbb 2*-"},
      {CALL(Text().Split(x)), "4*[a|c] [a|b|c|b] [a|c] 15*[abcb] 3*- 4*[a|c] 2*-"},
      {CALL(Text().SplitExact(x)),
       "4*[a|c|empty] [a|b|c|b] [a|c|empty] 13*[abcb] - [abcb] 3*- 4*[a|c|empty] 2*-"},
      {CALL(SRegex(x).OK()), "4*1 0 14*1 - 1 3*- 4*1 2*-"},
      {CALL(SPerlRegex(x).OK()), "4*1 0 14*1 - 1 3*- 4*1 2*-"},
      {CALL(BaseName(x, "")), "4*b empty b 13*1 - 1 3*- 4*b 2*[b]"},
      {CALL(FileFromFilename(x)), "4*b empty b 13*1 - 1 3*- 4*b 2*-"},
      {CALL(IsValidDomain(x)), "4*1 0 14*1 - 1 3*- 4*1 2*-"},
      {CALL(SStringList(x)), "4*[b] - [b] 13*[1] - [1] 3*- 6*[b]"},
      {CHANGE(List(), it = x), "4*[b] - [b] 13*[1] - [1] 3*- 6*[b]"},
      {CHANGE(List(), it.Push(x)),
       "4*[b|a|c|b] [b|a|c|empty] [b|a|c|b] 13*[b|a|c|1] - [b|a|c|1] 3*- 6*[b|a|c|b]"},
      {CHANGE(List(), it.Delete(x)), "4*[a|c] [b|a|c] [a|c] 15*[b|c] 3*- 4*[a|c] 2*-"},
      {CHANGE(List(), it.Insert(x, 0)), "4*[b|b|a|c] 20*- [b|b|a|c] 3*- 2*[b|b|a|c]"},
      {CHANGE(List(), it.Splice(0, 1, x)), "4*[b|a|c] 20*- [b|a|c] 3*- 2*[b|a|c]"},
      {CHANGE(List(), it.Splice(x, 1)), "5*- [b|a|c] 15*[b|c] 9*-"},
      {CALL(List().Index(x)), "4*0 -1 0 13*-1 - -1 3*- 4*0 2*-"},
      {CALL(List().Contains(x)), "4*1 0 1 13*0 - 0 3*- 4*1 2*-"},
      {CALL(List().Join(x)), "4*bbabc bac bbabc 13*b1a1c - b1a1c 3*- 4*bbabc 2*-"},
      {CALL(List().Get(x)), "5*- undefined 15*a 9*-"},
      {CALL(List()[x]), "5*- undefined 15*a 9*-"},
      {CALL(std::as_const(kList)[x]), "5*- undefined 15*a 9*-"},
      {CALL(List().Slice(x, 1)), "5*- undefined[] 15*[a] 9*-"},
      {CALL(SNamedStringList(1, 0).Get(x)), "19*undefined[] - undefined[] 3*- 4*undefined[] 2*-"},
      {CALL(SNamedValue(1).Get(x)), "19*-1 - -1 - 6*-1 2*-"},
      {CALL(STable(0, 1).Lookup(x) == nullptr), "19*1 - 1 - 6*1 2*-"},
  };
  const std::vector<std::string> arguments = Words(kArguments);
  for (const Expected& expected : table) {
    const std::vector<std::string> got = Words(expected.row.answers);
    const std::vector<std::string> wanted = Repeated(expected.answers);
    ASSERT_EQ(got.size(), arguments.size()) << expected.row.call;
    EXPECT_EQ(wanted.size(), arguments.size()) << expected.row.call << ": " << expected.row.answers;
    for (std::size_t i = 0; i < std::min(wanted.size(), got.size()); ++i) {
      EXPECT_EQ(got[i], wanted[i]) << expected.row.call << " of " << arguments[i];
    }
  }
}

// What braces make is a string where a string is taken, by the constructor that they fit.
TEST(CallTable, BracesMakeAString) {
  SString s("<");
  (s += {"abc", 2}) += {'x', 3};
  EXPECT_EQ(s, "<abxxx");
  s = {"abc", 2};
  EXPECT_EQ(s, "ab");
  EXPECT_EQ(SString({"abc", 2}), "ab");
  EXPECT_EQ(s.Index({"bc", 1}) + s.HasPrefix({"abc", 1}) + s.Count({"bc", 1}), 3);
  EXPECT_EQ(s.SplitExact({"bc", 1}).Count(), 2);
}

TEST(CallTable, BracesMakeAListOnlyOfTexts) {
  SStringList list = {"abc", "b"};
  EXPECT_EQ(list.Push({"abc", 2}), 3);
  EXPECT_EQ(list.Push({"abc", 0}), 4);
  EXPECT_EQ(list.Push({'x', 3}), 5);
  EXPECT_EQ(list.Push({"d", "e"}), 7);
  EXPECT_EQ(Told(list), "[abc|b|ab|empty|xxx|d|e]");
  list = {"abc", 2};
  EXPECT_EQ(Told(list), "[ab]");
  list = {"abc", SString("b"), std::string("c"), std::string_view("d"), nullptr};
  EXPECT_EQ(Told(list), "[abc|b|c|d|empty]");
  EXPECT_TRUE(list.Delete({"abc", 1}) == false && list.Index({"bc", 1}) == 1);
  list.Splice(0, 5, {"x", "y"});
  EXPECT_EQ(Told(list), "[x|y]");
}

// Past the range of int an index is past every list, not somewhere in it.
TEST(CallTable, NumbersPastTheRangeOfAnIndexAreNoIndex) {
  const auto deleted = [](auto i) { return List().Delete(i); };
  EXPECT_FALSE(deleted(1LL << 32) || deleted((1LL << 32) + 1) || deleted(-(1LL << 32) + 1));
  EXPECT_FALSE(deleted(1e300) || deleted(-1e300) || deleted(-1.0) || deleted(4294967297.0));
  EXPECT_FALSE(deleted(std::numeric_limits<double>::quiet_NaN()));
  EXPECT_FALSE(std::as_const(kList)[1LL << 32].Defined());
  EXPECT_FALSE(std::as_const(kList)[-(1LL << 32) + 1].Defined());
  EXPECT_FALSE(List().Delete(~0ULL));
  EXPECT_FALSE(List().Delete((1ULL << 63) + 1));
  EXPECT_FALSE(std::as_const(kList)[~0ULL].Defined()) << "not the last element";
}

TEST(CallTable, ComparisonsCanBeNamedAndPointedTo) {
  const SString a("a"), b("b");
  EXPECT_TRUE(a.operator<(b) && b.operator>(a) && a.operator==(a));
  EXPECT_TRUE(a.operator<("b") && b.operator>("a") && a.operator<('b') && b.operator>('a'));
  bool (SString::*less)(const SString&) const = &SString::operator<;
  bool (SString::*greater)(const char*) const = &SString::operator>;
  bool (SString::*equal)(char) const = &SString::operator==;
  EXPECT_TRUE((a.*less)(b) && (b.*greater)("a") && (a.*equal)('a'));
  EXPECT_FALSE((a.*less)(a) || (a.*greater)("a") || (a.*equal)('b'));
}

}  // namespace
