// Our expressions and their peers with one face, so that each benchmark is written once:
//
//   Text             what the library searches, made from a std::string outside the clock
//   Library(p, w)    compiles the pattern for what is wanted of it; the destructor frees it
//   Matches(text)    whether there is a match, and nothing else
//   Find(text, from, groups)
//                    sets the bounds of the match and of as many groups as there is room for
//
// A pattern is compiled for the one or the other: the C library has a form that cannot tell
// bounds and is faster. Our answer always finds the bounds of the match as well.
//
// The peers are set up to give our answers: over bytes, "." matching a line feed, "$" at the
// end only, RE2 with the longest match. PCRE2, whose first match is not always the longest,
// is here with patterns where it is.

#ifndef MAILHEARTH_BENCH_REGEX_LIBRARIES_H
#define MAILHEARTH_BENCH_REGEX_LIBRARIES_H

#define PCRE2_CODE_UNIT_WIDTH 8

#include <benchmark/benchmark.h>
#include <pcre2.h>
#include <re2/re2.h>
#include <regex.h>

#include <array>
#include <span>
#include <string>
#include <string_view>

#include "regex/SPerlRegex.h"
#include "strings/SString.h"

struct Pattern {
  const char* name;
  const char* perl;
  const char* posix;  // the same for the C library, which has no \w and \s
  int groups;         // in parentheses
  bool ignoreCase;
};

enum class Wanted { kAnswer, kBounds };

constexpr std::size_t kMostGroups = 3;  // the match and two in parentheses
using Groups = std::array<regmatch_t, kMostGroups>;

class Ours {
 public:
  using Text = SString;
  static constexpr const char* kName = "mailhearth";

  Ours(const Pattern& p, Wanted) : re_(p.perl, p.ignoreCase ? "i" : "") {}

  bool Matches(const SString& text) const { return re_.HasMatch(text, 0); }
  bool Find(const SString& text, int from, std::span<regmatch_t> groups) const {
    if (!re_.HasMatch(text, from)) return false;
    int k = 0;
    for (regmatch_t& group : groups) group = re_.MatchInfo(k++);
    return true;
  }
  const SRegex& Regex() const { return re_; }

 private:
  SPerlRegex re_;
};

class CLibrary {
 public:
  using Text = std::string;
  static constexpr const char* kName = "regexec";

  CLibrary(const Pattern& p, Wanted wanted) {
    ok_ = regcomp(&re_, p.posix,
                  REG_EXTENDED | (p.ignoreCase ? REG_ICASE : 0) |
                      (wanted == Wanted::kAnswer ? REG_NOSUB : 0)) == 0;
  }
  CLibrary(const CLibrary&) = delete;
  CLibrary& operator=(const CLibrary&) = delete;
  ~CLibrary() {
    if (ok_) regfree(&re_);
  }

  bool Matches(const std::string& text) const {
    regmatch_t bounds = Range(text, 0);  // it need not look for the end
    return ok_ && regexec(&re_, text.c_str(), 0, &bounds, REG_STARTEND) == 0;
  }
  bool Find(const std::string& text, int from, std::span<regmatch_t> groups) const {
    groups[0] = Range(text, from);
    return ok_ && regexec(&re_, text.c_str(), groups.size(), groups.data(),
                          REG_STARTEND | (from > 0 ? REG_NOTBOL : 0)) == 0;
  }

 private:
  static regmatch_t Range(const std::string& text, int from) {
    return {from, static_cast<regoff_t>(text.size())};
  }

  regex_t re_;
  bool ok_;
};

class Re2 {
 public:
  using Text = std::string;
  static constexpr const char* kName = "RE2";

  Re2(const Pattern& p, Wanted) : re_(p.perl, Options(p)) {}

  bool Matches(const std::string& text) const {
    return re_.Match(text, 0, text.size(), RE2::UNANCHORED, nullptr, 0);
  }
  bool Find(const std::string& text, int from, std::span<regmatch_t> groups) const {
    std::array<re2::StringPiece, kMostGroups> found;
    if (!re_.Match(text, static_cast<std::size_t>(from), text.size(), RE2::UNANCHORED, found.data(),
                   static_cast<int>(groups.size()))) {
      return false;
    }
    for (std::size_t k = 0; k < groups.size(); ++k) {
      const char* const begin = found[k].data();
      const auto at = static_cast<regoff_t>(begin - text.data());
      groups[k] = begin == nullptr ? regmatch_t{-1, -1}
                                   : regmatch_t{at, at + static_cast<regoff_t>(found[k].size())};
    }
    return true;
  }

 private:
  static RE2::Options Options(const Pattern& p) {
    RE2::Options options(RE2::Latin1);
    options.set_longest_match(true);
    options.set_dot_nl(true);
    options.set_log_errors(false);
    options.set_case_sensitive(!p.ignoreCase);
    return options;
  }

  RE2 re_;
};

// With compilation to machine code, and without it where expressions are used once.
template <bool jit>
class Pcre2 {
 public:
  using Text = std::string;
  static constexpr const char* kName = jit ? "PCRE2" : "PCRE2-plain";

  Pcre2(const Pattern& p, Wanted wanted) {
    int error = 0;
    PCRE2_SIZE at = 0;
    re_ = pcre2_compile(reinterpret_cast<PCRE2_SPTR>(p.perl), PCRE2_ZERO_TERMINATED,
                        PCRE2_DOTALL | PCRE2_DOLLAR_ENDONLY | (p.ignoreCase ? PCRE2_CASELESS : 0U),
                        &error, &at, nullptr);
    ok_ = re_ != nullptr && (!jit || pcre2_jit_compile(re_, PCRE2_JIT_COMPLETE) == 0);
    const int pairs = wanted == Wanted::kAnswer ? 1 : 1 + p.groups;
    match_ = pcre2_match_data_create(static_cast<std::uint32_t>(pairs), nullptr);
  }
  Pcre2(const Pcre2&) = delete;
  Pcre2& operator=(const Pcre2&) = delete;
  ~Pcre2() {
    pcre2_match_data_free(match_);
    pcre2_code_free(re_);
  }

  bool Matches(const std::string& text) const { return Search(text, 0); }
  bool Find(const std::string& text, int from, std::span<regmatch_t> groups) const {
    if (!Search(text, static_cast<std::size_t>(from))) return false;
    const PCRE2_SIZE* const bounds = pcre2_get_ovector_pointer(match_);
    for (std::size_t k = 0; k < groups.size(); ++k) {  // PCRE2_UNSET becomes -1
      groups[k] = {static_cast<regoff_t>(bounds[2 * k]), static_cast<regoff_t>(bounds[2 * k + 1])};
    }
    return true;
  }

 private:
  bool Search(const std::string& text, std::size_t from) const {
    const auto* const subject = reinterpret_cast<PCRE2_SPTR>(text.data());
    constexpr auto search = jit ? pcre2_jit_match : pcre2_match;
    return ok_ && search(re_, subject, text.size(), from, 0, match_, nullptr) >= 0;
  }

  pcre2_code* re_;
  pcre2_match_data* match_;
  bool ok_;
};

// A text as a library takes it.
template <class Library>
typename Library::Text TextFor(const std::string& text) {
  return typename Library::Text(std::string_view(text));
}

// Names are operation/what/size.
template <class Function>
void Register(const std::string& operation, const char* what, std::size_t size, Function function) {
  const std::string name = operation + '/' + what + '/' + std::to_string(size);
  benchmark::RegisterBenchmark(name.c_str(), function);
}

#endif  // MAILHEARTH_BENCH_REGEX_LIBRARIES_H
