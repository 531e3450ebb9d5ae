// SSubString is a range of an SString that can be read and assigned to. Segment returns it
// when it is called on a string that is not constant.
//
//   SString s("abcdef");
//   s.Segment(2, 2) = "XY";             // s is abXYef
//   const SString part = s.Segment(0, 3);
//
// The range refers to the string, which must outlive it. Its bounds are cut to the string
// when it is made, and then stay. If the string becomes shorter, only the part of the range
// that is still within the string counts.

#ifndef MAILHEARTH_STRINGS_SSUBSTRING_H
#define MAILHEARTH_STRINGS_SSUBSTRING_H

#include <string_view>

#include "Export.h"
#include "SString.h"

inline namespace mailhearth {

class MAILHEARTH_EXPORT SSubString {
 public:
  // The `count` bytes of `s` from `start` on. A negative start counts as 0 and reduces
  // `count` by as much; the range is cut to the string.
  SSubString(SString& s, int start, int count);
  SSubString(const SSubString&) = default;

  // A copy of the bytes; undefined when the string is.
  operator SString() const;

  // The bytes, until the next edit of the string.
  [[nodiscard]] std::string_view View() const;

  // Replaces the range by the bytes of `t`, which may be the string itself or share its
  // bytes. If the string is undefined, it becomes `t`.
  SSubString& operator=(const SString& t);
  SSubString& operator=(const SSubString& o);

  // All other questions can be asked of a copy: SString(range). These are frequent enough to
  // be answered without one:
  [[nodiscard]] int Length() const { return static_cast<int>(View().size()); }
  [[nodiscard]] bool operator==(const SSubString& t) const { return View() == t.View(); }
  [[nodiscard]] bool operator==(const SString& t) const { return View() == t.View(); }
  [[nodiscard]] bool operator==(const char* s) const { return SString(s) == View(); }

 private:
  SString& string_;
  int start_;
  int count_;
};

}  // namespace mailhearth

#endif  // MAILHEARTH_STRINGS_SSUBSTRING_H
