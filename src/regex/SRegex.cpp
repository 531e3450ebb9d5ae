#include "SRegex.h"

#include <algorithm>
#include <array>
#include <ostream>
#include <span>
#include <utility>

#include "../strings/StandardError.h"
#include "Covered.h"
#include "PatternOptions.h"
#include "engine/Expression.h"

inline namespace mailhearth {

namespace {

constexpr regmatch_t kNone = {-1, -1};

// Returns a match where it stands in a text that begins `shift` bytes earlier.
regmatch_t Shifted(const regmatch_t& match, regoff_t shift) {
  return match.rm_so < 0 ? kNone : regmatch_t{match.rm_so + shift, match.rm_eo + shift};
}

}  // namespace

struct SRegex::Matches {
  // The longest match whose groups are left to be found when somebody asks for them.
  static constexpr std::size_t kLongestKept = 254;

  Positions positions;

  // While the groups of the last match are still to be found: the match, its bytes and the one
  // on each side of them, where there is one. A match has the same groups in every text that
  // looks the same up to there.
  bool pending = false;
  regmatch_t match = kNone;
  std::size_t keptFrom = 0;
  std::size_t keptSize = 0;
  std::array<char, kLongestKept + 2> kept;

  Matches() { positions.fill(kNone); }

  // Keeps what the groups of a match depend on. Returns whether there is room for it.
  bool Keep(std::string_view text, const regmatch_t& last) {
    const auto from = static_cast<std::size_t>(last.rm_so),
               to = static_cast<std::size_t>(last.rm_eo);
    if (to - from > kLongestKept) return false;
    keptFrom = from - (from > 0 ? 1 : 0);
    keptSize = text.substr(keptFrom, to + 1 - keptFrom).copy(kept.data(), kept.size());
    match = last;
    pending = true;
    return true;
  }
};

SRegex::SRegex() = default;
SRegex::SRegex(const SString& pattern, const char* options) { _Init(pattern, options); }
SRegex::SRegex(SRegex&) : SRegex() {}
// A constant object is not assigned: NOLINTNEXTLINE(misc-unconventional-assign-operator)
SRegex& SRegex::operator=(SRegex&) { return *this; }
SRegex::~SRegex() = default;

int SRegex::Set(const SString& pattern, const char* options) {
  _Free();
  _Init(pattern, options);
  return status_;
}

void SRegex::Debug() const {
  std::ostream& out = StandardError();
  if (status_ == 0) {
    out.write("SRegex is OK\n", 13);
  } else if (status_ == kNeverCompiled) {
    out.write("SRegex was never compiled\n", 26);
  } else {
    SString text("SRegex didn't compile because of the following reason:\n");
    text += engine::ErrorText(status_);
    (text += '\n').Write(out);
  }
}

bool SRegex::HasMatch(const SString& s, int start) const {
  if (!OK()) return false;
  regmatch_t match;
  const bool found = _Find(s.View(), start, match);
  _Record(s.View(), start, found ? &match : nullptr);
  return found;
}

SStringList SRegex::Match(const SString& s, int start) const {
  if (!HasMatch(s, start)) return {};
  _FindPending();
  return _List(s.View(), matches_->positions);
}

regmatch_t SRegex::MatchInfo(int k) const {
  if (!OK() || k < 0 || k >= kRecorded || k > compiled_->GroupCount()) return kNone;
  if (k > 0) _FindPending();
  return matches_->positions[static_cast<std::size_t>(k)];
}

int SRegex::MatchPos() const { return OK() ? matches_->positions[0].rm_so : kNone.rm_so; }

int SRegex::MatchLen() const {
  if (!OK()) return 0;
  // A failed search may have begun as far below 0 as an int goes.
  const regmatch_t& whole = matches_->positions[0];
  const std::int64_t length = std::int64_t{whole.rm_eo} - whole.rm_so;
  return static_cast<int>(std::min<std::int64_t>(length, std::numeric_limits<int>::max()));
}

void SRegex::_Init(const SString& pattern, const char* options) {
  auto matches = std::make_unique<Matches>();
  compiled_ = engine::Expression::Compile(pattern.View(), HasOption(options, kIgnoreCase), status_);
  if (compiled_ != nullptr) matches_ = std::move(matches);
}

void SRegex::_Free() {
  compiled_.reset();
  matches_.reset();
  status_ = kNeverCompiled;
}

bool SRegex::_Find(std::string_view text, int start, regmatch_t& match) const {
  return OK() && compiled_->Find(text, start, match);
}

void SRegex::_Record(std::string_view text, int start, const regmatch_t* match) const {
  Matches& last = *matches_;
  if (match == nullptr) {
    last.positions[0] = {start, static_cast<regoff_t>(text.size())};
  } else if (compiled_->GroupCount() == 0 || last.Keep(text, *match)) {
    last.positions[0] = *match;
  } else {
    last.positions = _FindGroups(text, *match);
    last.pending = false;
  }
}

void SRegex::_FindPending() const {
  Matches& last = *matches_;
  if (!last.pending) return;
  const auto shift = static_cast<regoff_t>(last.keptFrom);
  Positions found = _FindGroups({last.kept.data(), last.keptSize}, Shifted(last.match, -shift));
  for (regmatch_t& group : found) group = Shifted(group, shift);
  found[0] = last.positions[0];  // of a later search that failed, perhaps
  last.positions = found;
  last.pending = false;
}

SRegex::Positions SRegex::_FindGroups(std::string_view text, const regmatch_t& match) const {
  Positions found;
  found.fill(kNone);
  found[0] = match;
  if (const int groups = compiled_->GroupCount(); groups > 0) {
    const int entries = std::min(groups + 1, kRecorded);
    compiled_->FindGroups(text, match, std::span(found).first(static_cast<std::size_t>(entries)));
  }
  return found;
}

SStringList SRegex::_List(std::string_view text, const Positions& positions) const {
  SStringList list;
  for (int k = 0; k <= compiled_->GroupCount(); ++k) {
    const regmatch_t match = k < kRecorded ? positions[static_cast<std::size_t>(k)] : kNone;
    list.Push(SString(Covered(text, match)));
  }
  return list;
}

}  // namespace mailhearth
