// Every call that the library promises, written as users write them: this compiles,
// so no overload makes another ambiguous, and each call means what it should.

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <sstream>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "mailhearth.h"

namespace {

const SString kEmptyConstant;  // a static object of a program

TEST(Calls, MakeStrings) {
  const char* text = "abc";
  char array[] = "abc";
  SString a, b("abc"), c(text), d(array), e(text, 2), f('x', 3), g(42), h(42L), i(1.5f), j(1.5);
  SString k = "abc", l = b, m = 42, n = 1.5, o = 'x', p{"abc"}, q(nullptr), r = nullptr;
  SString s(std::string("abc")), t(std::string_view("abc")), u(static_cast<short>(7));
  const SString fromTernary = a.Defined() ? a : "abc";
  EXPECT_EQ(f, "xxx");
  EXPECT_EQ(m, "42");
  EXPECT_EQ(o, "x");
  EXPECT_EQ(u, "7");
  EXPECT_EQ(s, t);
  EXPECT_EQ(fromTernary, "abc");
  EXPECT_EQ(r, q);
  EXPECT_TRUE(mailhearth::SString("abc") == b);
  EXPECT_EQ(kEmptyConstant, "");
}

TEST(Calls, AssignToStrings) {
  SString s;
  s = "abc";
  s = 'x';
  s = 42;
  s = 42L;
  s = 1.5f;
  s = 1.5;
  s = nullptr;
  EXPECT_TRUE(s.Defined());
  s = SString("abc");
  s = s + "d";
  EXPECT_EQ(s, "abcd");
}

TEST(Calls, AddToStrings) {
  const SString s("abc");
  SString sum = "<" + s + ">" + 'x' + s + SString(1) + '\n';
  sum = '[' + sum;
  EXPECT_EQ(sum, "[<abc>xabc1\n");
  sum += s;
  sum += "text";
  sum += 'c';
  EXPECT_EQ(sum, "[<abc>xabc1\nabctextc");
}

TEST(Calls, CompareStrings) {
  const SString a("a"), b("b");
  const std::string standard("a");
  EXPECT_TRUE(a == a && a == "a" && a == 'a' && "a" == a && 'a' == a);
  EXPECT_TRUE(a != b && a != "b" && a != 'b' && "b" != a && 'b' != a);
  EXPECT_TRUE(a < b && a < "b" && a < 'b' && "a" < b && 'a' < b);
  EXPECT_TRUE(b > a && b > "a" && b > 'a' && "b" > a && 'b' > a);
  EXPECT_TRUE(a <= b && a <= "a" && "a" <= b && a <= 'a');
  EXPECT_TRUE(b >= a && b >= "b" && "b" >= a && b >= 'b');
  EXPECT_TRUE(a == standard && standard == a && a == std::string_view("a"));
  EXPECT_TRUE(a < std::string("b") && std::string_view("b") > a && a <= standard);
  EXPECT_TRUE(a != nullptr && SString() == nullptr);
  EXPECT_TRUE((a <=> b) < 0 && (a <=> "a") == 0 && (b <=> std::string_view("a")) > 0);
}

TEST(Calls, ReadStrings) {
  SString s("1.5 abc");
  const SString constant(s);
  const double number = s;
  const float narrow = s;
  EXPECT_EQ(number + static_cast<double>(s) + narrow, 4.5);
  EXPECT_EQ(s[0], '1');
  EXPECT_EQ(constant[-1], 'c');
  EXPECT_EQ(s.Index("a", 0) + s.Index('a', 0) + s.Index(SString("a"), 0) + s.Index("a"), 16);
  EXPECT_EQ(s.RIndex("a", 0) + s.RIndex('a', 0) + s.RIndex(SString("a"), 0) + s.RIndex('a'), 16);
  EXPECT_EQ(s.Count("a") + s.Count('a') + s.Count(SString("a")), 3);
  EXPECT_EQ(s.HasPrefix("1") + s.HasPrefix(SString("1")), 2);
  EXPECT_EQ(s.CompareNoCase("1.5 ABC"), 1);
  const SString part = s.Segment(0, 3), same = constant.Segment(0, 3);
  EXPECT_EQ(part, same);
  s.Segment(0, 3) = "2";
  s.Segment(0, 1) = part;
  s.Segment(0, 3) = s.Segment(4, 1);
  EXPECT_EQ(s, "a abc");
  EXPECT_TRUE(s.Segment(0, 1) == "a" && s.Segment(0, 1) == SString("a"));
  delete[] s.GetBuf();
}

TEST(Calls, StreamStrings) {
  std::stringstream stream;
  SString s("a line\n");
  stream << s << SString(1) << s.Segment(0, 1) << SString("x") + 'y' << std::endl;
  stream >> s;
  EXPECT_EQ(s, "a line\n");
  EXPECT_EQ(s.ReadLine(stream), 1);
  EXPECT_EQ(s, "1axy\n");
  EXPECT_EQ(s.Write(stream), 1);
}

TEST(Calls, MoveStrings) {
  SString s("abc"), copy(s);
  SString taken(std::move(s));
  EXPECT_FALSE(s.Defined());
  EXPECT_EQ(taken, "abc");
  s += "new";
  EXPECT_EQ(s, "new");
  taken = std::move(s);
  EXPECT_EQ(taken, "new");
  EXPECT_EQ(copy, "abc");
  s = taken;
  SString other;
  swap(s, other);
  EXPECT_EQ(other, "new");
  SString& same = other;
  other = std::move(same);
  EXPECT_EQ(other, "new");
}

TEST(Calls, KeepStringsInContainers) {
  std::map<SString, int> ordered{{"b", 2}, {"a", 1}};
  EXPECT_EQ(ordered.begin()->first, "a");
  std::unordered_map<SString, int> hashed{{"a", 1}};
  EXPECT_EQ(hashed["a"], 1);
  std::unordered_set<SString> set{SString(), ""};
  EXPECT_EQ(set.size(), 1U) << "undefined and empty are equal, so are their hashes";
  std::set<SString> sorted{"c", "a", "b"};
  std::vector<SString> strings(sorted.begin(), sorted.end());
  strings.emplace_back("d");
  strings.insert(strings.begin(), "0");
  EXPECT_EQ(strings.back(), "d");
}

TEST(Calls, UseViews) {
  const SString text("one\ntwo\nrest");
  int lines = 0;
  {
    SLineBreaker breaker(text, 1);
    for (SString line; breaker.ReadLine(line);) ++lines;
    EXPECT_EQ(breaker.GetRemainder(), "rest");
  }
  EXPECT_EQ(lines, 2);
  SFixedString fixed("abc", 3);
  const SString s = fixed;
  const SString copy(fixed);
  EXPECT_EQ(s, copy);
}

TEST(Calls, MakeAndAssignLists) {
  const char* texts[] = {"a", "b", nullptr};
  SStringList a, b(SString("a")), c("a"), d(texts), e{"a", "b"}, f = {"a", "b"}, g = "a", h(d);
  const SStringList i{SString("a"), "b", SString(1)};
  a = b;
  a = SString("a");
  a = "a";
  a = texts;
  a = {"x", "y", "z"};
  EXPECT_EQ(a.Count(), 3);
  EXPECT_TRUE(d == e && e == f && c == g && h == d && i != d);
}

TEST(Calls, UseLists) {
  SStringList list = {"a", "b"};
  const SStringList constant(list);
  const SString first = list[0], same = constant[0];
  list[0] = "x";
  list[0] += 'y';
  SString& reference = list[1];
  reference = "z";
  EXPECT_EQ(first, same);
  EXPECT_EQ(list.Push("p") + list.Push(SString("q")) + list.Push(constant), 13);
  EXPECT_TRUE(list.Contains("p") && list.Contains(SString("q")) && !list.Contains(first + "x"));
  EXPECT_EQ(list.Index("p") + list.Index(SString("q")), 5);
  EXPECT_TRUE(list.Delete("p") && list.Delete(SString("q")) && list.Delete(0));
  list.Insert(constant, 0);
  list.Insert("text", 0);
  list.Splice(0, 1, "other");
  list.Splice(0, 1, constant);
  list.Splice(1);
  EXPECT_EQ(list.Join(", ") + list.Join(SString("-")) + list.Join(), "aaa");
  std::ostringstream out;
  out << list << constant;
  EXPECT_EQ(out.str(), "aab");
  char** const texts = list;
  EXPECT_STREQ(texts[0], "a");
  delete[] texts[0];
  delete[] texts;
  EXPECT_EQ(Length(constant), 2);
  EXPECT_EQ(LowerCase(UpperCase(BaseName(constant, ""))), constant);
  EXPECT_EQ(BaseName("dir/file.c", ".c"), "file");
}

TEST(Calls, UsePatterns) {
  const SRegex re("b"), ignoring("B", "i"), none;
  SPerlRegex perl("\\w"), never;
  const SString pattern("b"), constant("abcb");
  SString s(constant);
  EXPECT_TRUE(s.HasMatch(re) && s.HasMatch(pattern) && s.HasMatch("b") && s.HasMatch('b'));
  EXPECT_TRUE(s.HasMatch(pattern, "i") && s.HasMatch("B", "i") && s.HasMatch(perl));
  EXPECT_TRUE(re.HasMatch(s) && re.HasMatch("b", 0) && re.HasMatch(s.Segment(1, 1), 0));
  EXPECT_EQ(s.M(re).Count() + s.M(pattern).Count() + s.M("b", nullptr).Count(), 3);
  EXPECT_EQ(s.S(re, "x").Count() + s.S(pattern, pattern, "g").Count() + s.S("b", 'b').Count(), 3);
  EXPECT_EQ(s.S("x", "b", "g")[0], "x");
  EXPECT_EQ(s.S("", "").Count() + s.S(re, s.Segment(1, 1)).Count(), 2);
  EXPECT_EQ(constant.Split(re), constant.Split("b"));
  EXPECT_EQ(constant.Split('b', 0), constant.Split(pattern, 0));
  EXPECT_EQ(constant.Split(perl, 1).Count() + constant.Split(nullptr, 2).Count(), 3);
  EXPECT_EQ(constant.SplitExact("b").Count() + constant.SplitExact(pattern, 2).Count(), 5);
  EXPECT_EQ(constant.BreakToWords(), SStringList(constant));
  SStringList list = {"a", "b"}, rejected;
  EXPECT_EQ(list.Grep(re), list.Grep("/b/"));
  EXPECT_EQ(list.Grep(re, 0), list.Grep(SString("!/b/"), &rejected));
  EXPECT_EQ(list.Grep("m/b/", nullptr), rejected);
  EXPECT_EQ(perl.Set("a") + perl.Set(pattern, "i") + perl.MatchPos() + perl.MatchLen(), -1);
  const regmatch_t match = re.MatchInfo(0);
  EXPECT_EQ(match.rm_eo - match.rm_so, re.MatchLen());
  SString out;
  AppendPasteBuffer(&out, "$&", list);
  EXPECT_EQ(out, "a");
  EXPECT_EQ(PerlRegexConv("\\d"), RX_BDIGIT);
  EXPECT_FALSE(none.OK() || never.OK() || !ignoring.OK());
}

TEST(Calls, UseTables) {
  STable table(0, 1);
  const STable& constantTable = table;
  const SString name("name");
  table.Add("a", new STableItem);
  table.Add(name, new STableItem);
  EXPECT_TRUE(table.Lookup("a") != nullptr && table.Lookup(name) == table.Lookup(name.View()));
  EXPECT_TRUE(constantTable.Lookup(std::string("b")) == nullptr && !table.Lookup('b'));
  int walked = 0;
  for (const STableItem& item : constantTable) walked += item.key.Length();
  EXPECT_EQ(table.Keys().Count() + table.Count() + table.Size() + walked, 16);
  EXPECT_EQ(table.Remove("a") + table.Remove(name) + table.Remove(SString()), 2);
  table.Reset();
}

TEST(Calls, UseNamedListsAndValues) {
  SNamedStringList list(1, 0);
  const SString name("To:"), text("From: c\n");
  list["To:"].Push("a");
  list[name] = SStringList("b");
  list[std::string_view("Cc:")] = "c";
  list[std::string("Cc:")][0] = "d";
  const SNamedStringList copy(list);
  EXPECT_EQ(copy.Get("To:").Join() + copy.Get(name).Join() + copy.Get('x').Join(), "bb");
  EXPECT_TRUE(copy.Find("Cc:") != nullptr && copy.Find(name) && !copy.Find(std::string("Bcc:")));
  list += copy;
  SString out("; ");
  (out << list) << copy;
  EXPECT_EQ(out, "; To: b\nCc: d\nTo: b\nCc: d\n");
  EXPECT_EQ(&(text >> list), &text);
  EXPECT_EQ(list.Keys().Join(), "From:");
  list = copy;
  list.Delete("To:");
  list.Delete(name);
  SNLists& base = list;
  base.Reset();
  EXPECT_FALSE(base.Keys().Defined());
  EXPECT_EQ(list.CaseSensitive() + list.Crlf(), 1u);

  SNamedValue values(0);
  values["a"] = 5;
  values[name]++;
  values[name.View()] += 2;
  const SNamedValue kept = values;
  EXPECT_EQ(kept.Get("A") + kept.Get(name) + kept.Get(std::string("none")), 7);
  EXPECT_EQ((values = kept).Keys().Count(), 2);

  SIndexString indexed;
  indexed[3] = "x";
  const SIndexString same = indexed;
  indexed.Delete(3);
  int* keys = nullptr;
  EXPECT_EQ(same.Keys(&keys) + same.Keys() + indexed.Keys(), 2);
  EXPECT_EQ(same.Get(keys[0]) + same.Get(-1), "x");
  delete[] keys;
}

TEST(Calls, UseFiles) {
  const SString missing("/no/such/file");
  EXPECT_EQ(RealPath(missing) + RealPath("/"), "/no/such/file/");
  EXPECT_EQ(PathFromFilename(missing) + FileFromFilename("/a/b"), "/no/suchb");
  EXPECT_FALSE(ReadDir(missing).Defined() || ReadDir("").Defined());
  EXPECT_FALSE(RemoveDir(missing) || Chdir("/no/such/file") || CreateDirectory("/", 0777));
  EXPECT_TRUE(MakeDir("/", 0777) && !MakeDir("", 0755));
  EXPECT_FALSE(RemoveFile("/no/such/file") || RemoveFileLogged(missing) || CloseFile(-1));
  EXPECT_FALSE(Rename(missing, "/no") || LinkFile("/no/such/file", missing));
  EXPECT_FALSE(CopyFile(missing, "/no/copy") || CopyFile("/no/such/file", missing, 0644));
  EXPECT_FALSE(MapFileRead(missing).Defined() || MapFileWrite("/no/such/file", "text"));
  EXPECT_EQ(LockFile(-1) + LockFile(-1, 2, 0, 0) + LockFile_fcntl(-1, 0, 0, 0), -3);
  EXPECT_EQ(LockFile(missing) + LockFile("/no/such/file", 1, 2, 3), -2);
  EXPECT_FALSE(UnlockFile(-1) || UnlockFile_fcntl(-1, 0, 0) || db_lock_fd(-1, 1));
}

TEST(Calls, FillLines) {
  const SString lineEnd("\n");
  EXPECT_EQ(FormatList({"a", "b"}, 72, 0, "|"), "a b|");
  EXPECT_EQ(FormatList(SStringList("a"), 72, 2, lineEnd), "  a\n");
  EXPECT_EQ(Format("a b", 1, 0, '|') + Format(lineEnd + "c", 72, 0, lineEnd), "a|b|c\n");
}

TEST(Calls, UseSystemFunctions) {
  EXPECT_EQ(GetEnv("MAILHEARTH_NOT_SET"), GetEnv(SString("MAILHEARTH_NOT_SET")));
  EXPECT_EQ(MD5("").Length() + MD5(SString("x")).Length() + Hex("ab").Length(), 68);
  EXPECT_GE(MailboxHash("joe"), 0);
  EXPECT_EQ(FileExists("/") + FileExists(SString("/")), 2);
  EXPECT_LT(RFC822Date().Length() + MessageIdDate().Length() + LogFileDate().Length(), 100);
  EXPECT_GT(DaysSince1970(), 20'000);
  static_cast<void>(GetCutInfo("Key") + GetCutInfo(SString("Key")));
}

}  // namespace
