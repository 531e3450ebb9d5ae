// Searching, slicing and editing.

#include <algorithm>
#include <cstring>
#include <new>

#include "Blocks.h"
#include "SString.h"
#include "Search.h"
#include "Sizes.h"

inline namespace mailhearth {

char* SString::GetBuf() const {
  char* const copy = new (std::nothrow) char[static_cast<std::size_t>(Length()) + 1];
  if (copy != nullptr) copy[View().copy(copy, View().size())] = '\0';
  return copy;
}

int SString::Count(const SString& t) const {
  return t.Length() == 0 ? 0 : CountAll(View(), t.View());
}

int SString::Count(const char* s) const {
  const std::string_view text = _Text(s);
  return text.empty() ? 0 : CountAll(View(), text);
}

int SString::Count(char c) const { return CountAll(View(), {&c, 1}); }

int SString::CompareNoCase(const SString& t) const {
  return rep_ == t.rep_ || (Length() == t.Length() && EqualNoCase(View(), t.View()));
}

int SString::Index(const SString& t, int start) const { return _Index(t.View(), start); }
int SString::Index(const char* s, int start) const { return _Index(_Text(s), start); }

int SString::_Index(std::string_view text, int start) const {
  if (start < 0 || start >= Length() || text.empty()) return -1;
  const int found = FindFirst(View().substr(static_cast<std::size_t>(start)), text);
  return found < 0 ? -1 : found + start;
}

int SString::RIndex(const SString& t, int start) const {
  if (t.Length() > Length()) return -1;
  int from = start == 0 ? Length() - 1 : start;
  if (from < 0) from += Length();
  if (from < 0 || t.Length() == 0) return std::max(from, -1);
  const int last = std::min(from, Length() - t.Length());
  return FindLast(View().substr(0, static_cast<std::size_t>(last) + t.View().size()), t.View());
}

SString SString::Segment(int start, int count) const& {
  const Range range = _Clip(start, count);
  return SString(Data() + range.start, range.count);
}

SString SString::Segment(int start, int count) && {
  return std::as_const(*this).Segment(start, count);
}

SSubString SString::Segment(int start, int count) & { return SSubString(*this, start, count); }

int SString::Chop() {
  if (Length() < 1) return 0;
  _MakeUnique();
  const auto last = static_cast<unsigned char>(rep_->buffer[Length() - 1]);
  _SetLength(Length() - 1);
  return last;
}

SString& SString::LowerCase() {
  _MakeUnique();
  ChangeBytes(rep_->buffer, View().size(), LowerBlock);
  return *this;
}

SString& SString::UpperCase() {
  _MakeUnique();
  ChangeBytes(rep_->buffer, View().size(), UpperBlock);
  return *this;
}

SString& SString::Reverse() {
  _MakeUnique();
  std::reverse(rep_->buffer, rep_->buffer + Length());
  return *this;
}

SString::Range SString::_Clip(int start, int count) const {
  std::int64_t wanted = count;
  if (start < 0) {
    wanted += start;
    start = 0;
  }
  start = std::min(start, Length());
  const std::int64_t left = Length() - start;
  return {start, static_cast<int>(std::clamp<std::int64_t>(wanted, 0, left))};
}

void SString::_Replace(Range range, std::string_view text) {
  const std::string_view before = View().substr(0, static_cast<std::size_t>(range.start));
  const std::string_view after =
      View().substr(before.size() + static_cast<std::size_t>(range.count));
  const int length =
      CheckedLength(static_cast<std::int64_t>(before.size() + text.size() + after.size()));
  if (_HasRoom(length) && !_Holds(text)) {
    char* const place = rep_->buffer + before.size();
    std::memmove(place + text.size(), after.data(), after.size());
    text.copy(place, text.size());
    _SetLength(length);
    return;
  }
  SString made;
  made._Realloc(length);
  for (const std::string_view part : {before, text, after}) made._Append(part.data(), part.size());
  if (_Adopted()) {
    rep_->Rebuffer(length, made.View());
  } else {
    *this = std::move(made);
  }
}

SString BaseName(const SString& path, const SString& suffix) {
  const int start = path.RIndex('/') + 1;
  const bool ends = path.View().ends_with(suffix.View());
  return path.Segment(start, path.Length() - start - (ends ? suffix.Length() : 0));
}

}  // namespace mailhearth
