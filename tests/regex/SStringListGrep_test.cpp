#include "regex/GrepError.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "lists/SStringList.h"
#include "regex/SPerlRegex.h"
#include "support/CountedNew.h"
#include "support/ErrorText.h"
#include "support/Growth.h"
#include "support/OrdinaryUser.h"
#include "support/SStringListPeek.h"
#include "support/SStringPeek.h"
#include "support/TempDir.h"

namespace {

using namespace std::string_view_literals;
using Strings = std::vector<std::string>;

std::string Report(int code, const std::string& test) {
  constexpr const char* kReasons[] = {"", "Grep called without a valid test field.\n",
                                      "Unknown test type for Grep function\n",
                                      "Incomplete expression in Grep function call\n"};
  return kReasons[code] + ("The test field for Grep was '" + test + "'\n");
}

TEST(GrepError, WritesTheReasonAndTheTest) {
  for (int code = 1; code <= 3; ++code) {
    EXPECT_EQ(ErrorText([&] { GrepError(code, "a\nb"); }), Report(code, "a\nb"));
  }
  for (const int code : {-1, 0, 4, 2147483647}) {
    EXPECT_EQ(ErrorText([&] { GrepError(code, SString("a\0b", 3)); }),
              Report(0, std::string("a\0b", 3)));
  }
  EXPECT_EQ(ErrorText([] { GrepError(1, SString()); }), Report(1, ""));
}

TEST(GrepByExpression, SelectsWhatMatchesOrWhatDoesNot) {
  const SStringList list = {"apple", "bar", "", SString(), "grape"};
  const SRegex re("ap");
  EXPECT_EQ(Texts(list.Grep(re)), (Strings{"apple", "grape"}));
  EXPECT_EQ(Texts(list.Grep(re, 1)), (Strings{"apple", "grape"}));
  EXPECT_EQ(Texts(list.Grep(re, -3)), (Strings{"apple", "grape"}));
  EXPECT_EQ(Texts(list.Grep(re, 0)), (Strings{"bar", "", "(undefined)"}));
  EXPECT_TRUE(list.Grep(SRegex("x")).Defined()) << "none, but no failure";
  EXPECT_EQ(list.Grep(SRegex("x")).Count(), 0);
  EXPECT_EQ(Texts(list.Grep(SRegex("^$"))), (Strings{"", "(undefined)"}));
}

TEST(GrepByExpression, FailsWithoutAListOrAnExpression) {
  const SRegex re("a"), none, wrong("a(");
  EXPECT_FALSE(SStringList().Grep(re).Defined());
  EXPECT_FALSE(SStringList().Grep(re, 0).Defined());
  EXPECT_FALSE(SStringList("a").Grep(none).Defined());
  EXPECT_FALSE(SStringList("a").Grep(wrong, 0).Defined());
  SStringList empty;
  empty.Reset();
  EXPECT_TRUE(empty.Grep(re).Defined());
}

TEST(GrepByExpression, ElementsShareTheirBytes) {
  const SStringList list = {"a"};
  EXPECT_TRUE(SStringPeek::Shares(list.Grep(SRegex("a")).Get(0), list.Get(0)));
}

struct Row {
  std::string test;
  Strings accepted;
  Strings rejected;
  std::string messages = "";
};

const Strings kAll = {"a", "#b", "A/", "ab"};

const Row kRows[] = {
    {"/a/", {"a", "ab"}, {"#b", "A/"}},
    {"m/a/", {"a", "ab"}, {"#b", "A/"}},
    {"/a", {"a", "ab"}, {"#b", "A/"}},
    {"/a/i", {"a", "A/", "ab"}, {"#b"}},
    {"/a/gi", {"a", "A/", "ab"}, {"#b"}},
    {"/a/g", {"a", "ab"}, {"#b", "A/"}},
    {"!/^#/", {"a", "A/", "ab"}, {"#b"}},
    {"!!/^#/", {"#b"}, {"a", "A/", "ab"}},
    {" \t!\t ! !/a/", {"#b", "A/"}, {"a", "ab"}},
    {"m|a|", {"a", "ab"}, {"#b", "A/"}},
    {"m a ", {"a", "ab"}, {"#b", "A/"}},
    {"m!^#!", {"#b"}, {"a", "A/", "ab"}},
    {"mxaxi", {"a", "A/", "ab"}, {"#b"}},
    {std::string("m\0a\0", 4), {"a", "ab"}, {"#b", "A/"}},
    {"/\\//", {"A/"}, {"a", "#b", "ab"}},
    {"m#\\##", {"#b"}, {"a", "A/", "ab"}},
    {"/A\\/", {"A/"}, {"a", "#b", "ab"}},
    {"m|a\\|b|", {}, kAll},
    {"mda\\dbd", {}, kAll},
    {"mba\\bb", {"ab"}, {"a", "#b", "A/"}},
    {"/^\\w$/", {"a"}, {"#b", "A/", "ab"}},
    {"/x/", {}, kAll},
    {"!/x/", kAll, {}},
    {"/a\\", {"a", "ab"}, {"#b", "A/"}, "3"},
    {"", {}, {}, "1"},
    {" \t", {}, {}, "1"},
    {"!", {}, {}, "1"},
    {"q", {}, {}, "21"},
    {"abc", {}, {}, "2221"},
    {"x/a/", {"a", "ab"}, {"#b", "A/"}, "2"},
    {std::string("\0/a/", 4), {"a", "ab"}, {"#b", "A/"}, "2"},
    {"\n/a/", {"a", "ab"}, {"#b", "A/"}, "2"},
    {"-", {}, {}, "21"},
    {"-1", {}, {}, "221"},
    {"-/a/", {"a", "ab"}, {"#b", "A/"}, "2"},
};

std::string Reports(const Row& row) {
  std::string all;
  for (const char code : row.messages) all += Report(code - '0', row.test);
  return all;
}

TEST(GrepByTest, Matches) {
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.test);
    SStringList list = {"a", "#b", "A/", "ab"}, rejected = {"before"}, accepted;
    const SString test{std::string_view(row.test)};
    EXPECT_EQ(ErrorText([&] { accepted = list.Grep(test, &rejected); }), Reports(row));
    EXPECT_EQ(Texts(accepted), row.accepted);
    EXPECT_EQ(Texts(rejected), row.rejected);
    EXPECT_TRUE(accepted.Defined());
    EXPECT_TRUE(rejected.Defined());
    EXPECT_EQ(Texts(list), kAll);
    EXPECT_EQ(ErrorText([&] { EXPECT_EQ(list.Grep(test, nullptr), accepted); }), Reports(row));
    EXPECT_EQ(ErrorText([&] { EXPECT_EQ(list.Grep(test), accepted); }), Reports(row));
  }
}

TEST(GrepByTest, AnUndefinedTestIsTheEmptyOne) {
  SStringList list = {"a"};
  EXPECT_EQ(ErrorText([&] { EXPECT_TRUE(list.Grep(SString()).Defined()); }), Report(1, ""));
}

struct FailureRow {
  const char* test;
  std::string messages;
};

TEST(GrepByTest, APatternThatDoesNotCompileGivesUndefinedLists) {
  const std::string unmatched =
      "Regular expression error -- compile aborted.  Reason:\n\tUnmatched closing parenthesis in "
      "regular expression.\n\tThe erroneous expression is 'a)'.\n";
  const FailureRow rows[] = {
      {"/a)/", unmatched},
      {"s/a)/b/", unmatched},
      {"/a{2,1}/",
       "Regular expression error -- compile aborted.  Reason:\n\tInvalid bound in braces\n\tThe "
       "erroneous expression is 'a{2,1}'.\n"},
      {"//", ""},
      {"/", ""},
      {"s//x/g", ""},
      {"m", Report(3, "m")},
      {"s", Report(3, "s")},
      {"!m", Report(3, "!m")},
      {"/\\", Report(3, "/\\")},
      {"s/\\", Report(3, "s/\\")},
  };
  for (const FailureRow& row : rows) {
    SCOPED_TRACE(row.test);
    SStringList list = {"a"}, rejected = {"before"};
    EXPECT_EQ(ErrorText([&] { EXPECT_FALSE(list.Grep(row.test, &rejected).Defined()); }),
              row.messages);
    EXPECT_FALSE(rejected.Defined());
    EXPECT_EQ(rejected.Count(), 0);
    EXPECT_EQ(Texts(list), (Strings{"a"}));
  }
}

TEST(GrepByTest, OfAnUndefinedListIsUndefined) {
  SStringList list, rejected = {"before"};
  EXPECT_EQ(ErrorText([&] {
              EXPECT_FALSE(list.Grep("/a/", &rejected).Defined());
              EXPECT_FALSE(list.Grep("", &rejected).Defined());
              EXPECT_FALSE(list.Grep("/a)/").Defined());
            }),
            "")
      << "the test is not read";
  EXPECT_FALSE(rejected.Defined());
  EXPECT_FALSE(list.Defined());
}

struct SubstitutionRow {
  const char* test;
  Strings accepted;
  Strings rejected;
  Strings list;
  std::string messages = "";
};

const SubstitutionRow kSubstitutions[] = {
    {"s/a/b/g", {"bb", "xb"}, {"c", ""}, {"bb", "c", "xb", ""}},
    {"s/a/b/", {"ba", "xb"}, {"c", ""}, {"ba", "c", "xb", ""}},
    {"s/A/b/gi", {"bb", "xb"}, {"c", ""}, {"bb", "c", "xb", ""}},
    {"s/A/b/", {}, {"aa", "c", "xa", ""}, {"aa", "c", "xa", ""}},
    {"s|a|b|g", {"bb", "xb"}, {"c", ""}, {"bb", "c", "xb", ""}},
    {"sxaxbxg", {"bb", "xb"}, {"c", ""}, {"bb", "c", "xb", ""}},
    {"!s/a/b/g", {"c", ""}, {"bb", "xb"}, {"bb", "c", "xb", ""}},
    {"s/(a)$/<$1>/", {"a<a>", "x<a>"}, {"c", ""}, {"a<a>", "c", "x<a>", ""}},
    {"s/^/-/", {"-aa", "-c", "-xa", "-"}, {}, {"-aa", "-c", "-xa", "-"}},
    {"s/a/\\//g", {"//", "x/"}, {"c", ""}, {"//", "c", "x/", ""}},
    {"s/a", {"a", "x"}, {"c", ""}, {"a", "c", "x", ""}},
    {"s/a/", {"a", "x"}, {"c", ""}, {"a", "c", "x", ""}},
    {"s/a/b", {"ba", "xb"}, {"c", ""}, {"ba", "c", "xb", ""}},
    {"s/a/b\\", {"ba", "xb"}, {"c", ""}, {"ba", "c", "xb", ""}, Report(3, "s/a/b\\")},
    {"s/a/$x/",
     {"$a", "x$"},
     {"c", ""},
     {"$a", "c", "x$", ""},
     "Unescaped '$' in regular expression replacement string\n"
     "Unescaped '$' in regular expression replacement string\n"},
    {"s/xa/$/",
     {"(undefined)"},
     {"aa", "c", ""},
     {"aa", "c", "(undefined)", ""},
     "Invalid replacement string in regular expression\n"},
};

TEST(GrepByTest, Substitutes) {
  for (const SubstitutionRow& row : kSubstitutions) {
    SCOPED_TRACE(row.test);
    SStringList list = {"aa", "c", "xa", ""}, rejected, accepted;
    const SStringList sharer(list);
    EXPECT_EQ(ErrorText([&] { accepted = list.Grep(row.test, &rejected); }), row.messages);
    EXPECT_EQ(Texts(accepted), row.accepted);
    EXPECT_EQ(Texts(rejected), row.rejected);
    EXPECT_EQ(Texts(list), row.list);
    EXPECT_EQ(Texts(sharer), (Strings{"aa", "c", "xa", ""}));
  }
}

TEST(GrepByTest, TheListIsMadeUnique) {
  SStringList list = {"a"};
  const SStringList sharer(list);
  static_cast<void>(list.Grep("/x/"));
  EXPECT_FALSE(SStringListPeek::Shares(list, sharer));
}

TEST(GrepByTest, TheArgumentsMayBeTheList) {
  SStringList list = {"s/a/b/g", "a"}, rejected;
  EXPECT_EQ(Texts(list.Grep(list[0], &rejected)), (Strings{"s/b/b/g", "b"}));
  SStringList own = {"a"};
  EXPECT_FALSE(own.Grep("/a/", &own).Defined()) << "it is made undefined first";
  EXPECT_FALSE(own.Defined());
  SStringList with = {"/a/"};
  SStringList words = {"a", "b"};
  EXPECT_EQ(Texts(words.Grep(with[0], &with)), (Strings{"a"}));
  EXPECT_EQ(Texts(with), (Strings{"b"}));
  SStringList shared = {"a", "b"}, other(shared);
  EXPECT_EQ(Texts(shared.Grep("/a/", &other)), (Strings{"a"}));
  EXPECT_EQ(Texts(other), (Strings{"b"}));
  EXPECT_EQ(Texts(shared), (Strings{"a", "b"}));
}

Strings Sorted(const SStringList& list, const TempDir& dir) {
  Strings names;
  for (const SString& path : list)
    names.push_back(std::string(path.View()).substr(dir.Path().size() + 1));
  return names;
}

TEST(GrepByTest, Files) {
  const TempDir dir;
  SStringList list;
  list.Push(dir.File("file", "text").c_str());
  list.Push((dir / "missing").c_str());
  const std::string sub = dir / "sub";
  ASSERT_EQ(std::system(("mkdir " + sub + " && chmod 755 " + sub).c_str()), 0);
  list.Push(sub.c_str());
  const auto grep = [&](const char* test) {
    SStringList rejected;
    const SStringList accepted = list.Grep(test, &rejected);
    EXPECT_EQ(accepted.Count() + rejected.Count(), 3);
    return Sorted(accepted, dir);
  };
  EXPECT_EQ(grep("-d"), (Strings{"sub"}));
  EXPECT_EQ(grep("-e"), (Strings{"file", "sub"}));
  EXPECT_EQ(grep("-f"), (Strings{"file"}));
  EXPECT_EQ(grep("-r"), (Strings{"file", "sub"}));
  EXPECT_EQ(grep("-w"), (Strings{"file", "sub"}));
  EXPECT_EQ(grep("-x"), (Strings{"sub"}));
  EXPECT_EQ(grep(" ! -e"), (Strings{"missing"}));
  EXPECT_EQ(grep("!-d"), (Strings{"file", "missing"}));
  EXPECT_EQ(grep("-d and what follows"), (Strings{"sub"})) << "is not read";
}

TEST(GrepByTest, FilesByWhatIsAllowed) {
  const TempDir dir;
  namespace fs = std::filesystem;
  fs::permissions(dir.Path(), fs::perms::all);
  const struct {
    const char* name;
    fs::perms mode;
  } kFiles[] = {
      {"r", fs::perms::others_read}, {"w", fs::perms::others_write}, {"x", fs::perms::others_exec}};
  for (const auto& [name, mode] : kFiles) {
    const std::string path = dir.File(name, "");
    if (::getuid() == 0) {
      fs::permissions(path, mode);
    } else {
      fs::permissions(path, mode == fs::perms::others_read    ? fs::perms::owner_read
                            : mode == fs::perms::others_write ? fs::perms::owner_write
                                                              : fs::perms::owner_exec);
    }
  }
  EXPECT_TRUE(AsOrdinaryUser(
      [](const SString& folder) {
        SStringList list = {folder + "/r", folder + "/w", folder + "/x"};
        for (const char* const name : {"r", "w", "x"}) {
          const SStringList found = list.Grep(SString("-") + name);
          if (found.Count() != 1 || found.Get(0) != folder + "/" + name) return false;
        }
        return true;
      },
      SString(dir.Path().c_str())));
}

TEST(GrepByTest, AnUnknownFileTest) {
  for (const char* const test : {"-q", "!-q", "-D", "-a", "-z", "-"}) {
    SStringList list = {"/", "/"}, rejected, empty;
    empty.Reset();
    const bool letter = test[std::string_view(test).size() - 1] != '-';
    EXPECT_EQ(ErrorText([&] {
                const SStringList accepted = list.Grep(test, &rejected);
                EXPECT_TRUE(accepted.Defined() && accepted.Count() == 0);
                EXPECT_TRUE(rejected.Defined() && rejected.Count() == 0);
              }),
              letter ? "Grep: invalid file test\n" : Report(2, test) + Report(1, test));
    if (!letter) continue;
    EXPECT_EQ(ErrorText([&] { EXPECT_TRUE(empty.Grep(test).Defined()); }), "") << "nothing to test";
  }
}

TEST(GrepByTest, TakesLinearTime) {
  for (const char* const test : {"/a$/", "s/a/b/g"}) {
    EXPECT_TRUE(GrowsLinearly(5'000, [&](int n) {
      SStringList list;
      for (int i = 0; i < n; ++i) list.Push("some text with a");
      EXPECT_EQ(list.Grep(test).Count(), n);
    })) << test;
  }
}

}  // namespace
