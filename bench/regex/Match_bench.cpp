// Compiling and matching the patterns of a mail server, beside the C library, RE2 and PCRE2.
//
//   match_*      whether a header line matches
//   groups_*     the bounds of its match and of the groups
//   miss_*       a line that does not match
//   find_*       a long text in which only the very end matches
//   compile_*    compile and free; what a library puts off until a search is not in it
//   text_call_*  a match by the text of the pattern: ours finds it compiled from the last
//                call, the peers compile and free it; "compiled" is no peer but our match
//                without that

#include <random>
#include <string>

#include "Libraries.h"

namespace {

struct Row {
  Pattern pattern;
  const char* line;  // one that matches
  bool misses;       // whether it is tried on kMiss, too
};

constexpr Row kLines[] = {
    {{"before_angle", "^.+<", "^.+<", 0, false},
     "From: \"Joe Q. Public (Postmaster)\" <joe.public@mail.example.org>",
     false},
    {{"angles", "<.*>", "<.*>", 0, false},
     "Message-Id: <20261121055109.GA12345@mail.example.org> (added by relay)",
     false},
    {{"trailing", "[\\s>]+$", "[ \f\n\r\t\v>]+$", 0, false},
     "References: <17.4711@a.example.org> <18.4712@b.example.org>> \t\r\n",
     true},
    {{"address", "^(.*)@([^@]*)$", "^(.*)@([^@]*)$", 2, false},
     "firstname.lastname+folder@department.mail.example.org",
     true},
    {{"pair", "(\\w+)=(\\w+)", "([A-Za-z_0-9]+)=([A-Za-z_0-9]+)", 2, false},
     "Content-Type: text/plain; charset=iso8859; format=flowed",
     true},
    {{"slashes", "//+", "//+", 0, false},
     "/var/spool/mailhearth/deferred///7/70A1B2C3D4E5F//control",
     false},
};

// Words, blanks, angles and "=", but nothing that the patterns tried on it match. Without an
// "@", PCRE2 looks for that byte first and knows at once.
constexpr std::string_view kMiss =
    "Received: from mx1.example.net (mx1.example.net <192.0.2.1>) by mail.example.org with ESMTP "
    "id <70A1B2C3D4E5F> for <joe.public at example.org>; Sat, 21 Nov 2026 05:51:09 +0000 "
    "(TLS = 1.3, verified ok)";
static_assert(kMiss.size() == 200);

struct LongRow {
  Pattern pattern;
  const char* end;
};

constexpr LongRow kTexts[] = {
    {{"alternatives", "foo|bar|baz", "foo|bar|baz", 0, false}, "baz"},
    {{"nocase", "postmaster", "postmaster", 0, true}, "PostMaster"},
};
constexpr std::size_t kLong = 1 << 20;

// Lines of mail whose words begin as the patterns do, and go on otherwise.
std::string Mail(std::size_t size) {
  constexpr const char* kWords[] = {
      "Received:", "from",   "fred@example.net", "postal",  "for",    "basic",
      "baker",     "Posted", "folder:",          "Subject", "please", "POSTMARK",
      "fox",       "Best",   "message",          "before",  "the"};
  std::mt19937 random(1);
  std::string text;
  std::size_t line = 0;
  while (text.size() < size) {
    text += kWords[random() % std::size(kWords)];
    const bool full = text.size() - line > 66;
    text += full ? '\n' : ' ';
    if (full) line = text.size();
  }
  text.resize(size);
  return text;
}

bool Same(const regmatch_t& a, const regmatch_t& b) {
  return a.rm_so == b.rm_so && a.rm_eo == b.rm_eo;
}

// Whether a library gives our answer, bounds and groups.
template <class Library>
bool Agrees(const Pattern& pattern, const std::string& text) {
  const auto count = static_cast<std::size_t>(pattern.groups) + 1;
  Groups ours, theirs;
  const bool found =
      Ours(pattern, Wanted::kBounds).Find(TextFor<Ours>(text), 0, std::span(ours).first(count));
  const auto same = TextFor<Library>(text);
  if (Library(pattern, Wanted::kAnswer).Matches(same) != found ||
      Library(pattern, Wanted::kBounds).Find(same, 0, std::span(theirs).first(count)) != found) {
    return false;
  }
  for (std::size_t k = 0; found && k < count; ++k) {
    if (!Same(ours[k], theirs[k])) return false;
  }
  return true;
}

template <class Library>
void RunMatch(benchmark::State& state, const Pattern& pattern, const std::string& line,
              bool expected) {
  const Library library(pattern, Wanted::kAnswer);
  auto text = TextFor<Library>(line);
  if (!Agrees<Library>(pattern, line)) state.SkipWithError("wrong answer");
  for (auto _ : state) {
    benchmark::DoNotOptimize(text);
    bool found = library.Matches(text);
    benchmark::DoNotOptimize(found);
    if (found != expected) state.SkipWithError("wrong answer");
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(line.size()));
}

template <class Library>
void RunGroups(benchmark::State& state, const Pattern& pattern, const std::string& line) {
  const Library library(pattern, Wanted::kBounds);
  auto text = TextFor<Library>(line);
  if (!Agrees<Library>(pattern, line)) state.SkipWithError("wrong answer");
  Groups groups;
  const std::span wanted = std::span(groups).first(static_cast<std::size_t>(pattern.groups) + 1);
  for (auto _ : state) {
    benchmark::DoNotOptimize(text);
    if (!library.Find(text, 0, wanted)) state.SkipWithError("wrong answer");
    benchmark::DoNotOptimize(groups);
  }
}

template <class Library>
void RunCompile(benchmark::State& state, const Pattern& pattern) {
  for (auto _ : state) {
    Library library(pattern, Wanted::kBounds);
    benchmark::DoNotOptimize(library);
  }
}

// A match by the text of the pattern.
template <class Library>
bool TextCall(const Pattern& pattern, const typename Library::Text& text) {
  return Library(pattern, Wanted::kAnswer).Matches(text);
}
template <>
bool TextCall<Ours>(const Pattern& pattern, const SString& text) {
  return text.HasMatch(pattern.perl);
}

template <class Library>
void RunTextCall(benchmark::State& state, const Pattern& pattern, const std::string& line) {
  auto text = TextFor<Library>(line);
  for (auto _ : state) {
    benchmark::DoNotOptimize(text);
    bool found = TextCall<Library>(pattern, text);
    benchmark::DoNotOptimize(found);
    if (!found) state.SkipWithError("wrong answer");
  }
}

template <class Library>
void RegisterMatches() {
  for (const auto& [pattern, line, misses] : kLines) {
    const std::string name = pattern.name, text = line;
    Register("match_" + name, Library::kName, text.size(),
             [=](auto& state) { RunMatch<Library>(state, pattern, text, true); });
    Register("groups_" + name, Library::kName, text.size(),
             [=](auto& state) { RunGroups<Library>(state, pattern, text); });
    if (!misses) continue;
    Register("miss_" + name, Library::kName, kMiss.size(),
             [=](auto& state) { RunMatch<Library>(state, pattern, std::string(kMiss), false); });
  }
  for (const auto& [pattern, end] : kTexts) {
    Register(std::string("find_") + pattern.name, Library::kName, kLong,
             [=](auto& state) { RunMatch<Library>(state, pattern, Mail(kLong) + end, true); });
  }
}

template <class Library>
void RegisterCompilations() {
  const auto one = [](const Pattern& pattern) {
    Register(std::string("compile_") + pattern.name, Library::kName,
             std::string_view(pattern.perl).size(),
             [=](auto& state) { RunCompile<Library>(state, pattern); });
  };
  for (const Row& row : kLines) one(row.pattern);
  for (const LongRow& row : kTexts) one(row.pattern);

  for (const auto& [pattern, line, misses] : kLines) {
    const std::string text = line;
    Register(std::string("text_call_") + pattern.name, Library::kName, text.size(),
             [=](auto& state) { RunTextCall<Library>(state, pattern, text); });
  }
}

[[maybe_unused]] const bool kRegistered = [] {
  RegisterMatches<Ours>();
  RegisterMatches<CLibrary>();
  RegisterMatches<Re2>();
  RegisterMatches<Pcre2<true>>();

  RegisterCompilations<Ours>();
  RegisterCompilations<CLibrary>();
  RegisterCompilations<Re2>();
  RegisterCompilations<Pcre2<true>>();
  RegisterCompilations<Pcre2<false>>();
  for (const auto& [pattern, line, misses] : kLines) {
    const std::string text = line;
    Register(std::string("text_call_") + pattern.name, "compiled", text.size(),
             [=](auto& state) { RunMatch<Ours>(state, pattern, text, true); });
  }
  return true;
}();

}  // namespace
