// SString is the string of this library: a copy-on-write handle on shared bytes. Copying a
// handle costs a counter. The first edit through a handle that is not alone copies the
// bytes, so no other handle notices.
//
// The bytes may include NUL. One more NUL always follows the last byte, unless the string
// views bytes that somebody else owns; Terminated() serves for both. A string holds at most
// 2^31 - 2 bytes. An operation that would exceed this limit runs the new-handler and throws
// std::bad_alloc, as does one that finds no memory.
//
// A string is undefined (made by the default constructor) or defined, possibly
// empty. The two compare equal, and only code that must tell "no file" from "empty
// file" asks which it is. A null `const char*` reads as the empty string.
//
// A pointer or view into a string ends with the next edit of its handle. The
// argument of an edit may be the string itself or a part of it. An edit that
// throws leaves the string as it was.
//
// Not for use between threads: the counter is a plain integer.
//
//   SString to("postmaster"), copy = to;
//   copy += "@example.org";              // `to` is still "postmaster"
//   if (copy[-1] == 'g' && to < copy) std::cout << copy.View() << '\n';

#ifndef MAILHEARTH_STRINGS_SSTRING_H
#define MAILHEARTH_STRINGS_SSTRING_H

#include <string.h>  // memrchr: not in <cstring>

#include <compare>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <iosfwd>
#include <string_view>
#include <type_traits>
#include <utility>

#include "Export.h"
#include "SStringRep.h"

inline namespace mailhearth {

class SRegex;
class SStringList;
class SSubString;

// Text of other libraries: std::string, std::string_view and the like. Functions that take it are
// templates, so that braces and null pointers go where they always went.
template <class Text>
concept OtherText = std::convertible_to<const Text&, std::string_view> &&
    !std::convertible_to<const Text&, const char*>;

class MAILHEARTH_EXPORT SString {
 public:
  // An undefined string. Costs one allocation, as does every string that is not made
  // from another SString.
  SString();

  // A handle on the bytes of `other`; nothing is copied.
  SString(const SString& other) noexcept : rep_(other.rep_) { rep_->Link(); }

  // Moves from `other`, leaving it undefined.
  SString(SString&& other) noexcept : rep_(std::exchange(other.rep_, SStringRep::Undefined())) {}

  // A handle on a representation made elsewhere; its `links` count this handle too.
  // Needs: `rep` is not null. SStringRep.h tells who frees it.
  SString(SStringRep* rep) noexcept : rep_(rep) { rep_->Link(); }

  // A copy of the NUL-terminated text `s`; of a null `s`, defined and empty.
  SString(const char* s);
  SString(std::nullptr_t) : SString(static_cast<const char*>(nullptr)) {}

  // `n` bytes copied from `s`, NULs included; of a null `s`, `n` NUL bytes.
  // A negative `n` counts as 0.
  SString(const char* s, int n);

  // A copy of the bytes of `text`.
  template <OtherText Text>
  explicit SString(const Text& text) : rep_(_CopyOf(text)) {}

  // `n` times the byte `c`. A negative `n` counts as 0.
  SString(char c, int n = 1);

  // The decimal text of a number: "%d", "%ld" and, for both kinds of floating
  // point, "%.16g" of the value as a double, in the C locale whatever the locale is.
  SString(int value) : rep_(_TextOf(std::int64_t{value})) {}
  SString(long value) : rep_(_TextOf(std::int64_t{value})) {}
  SString(float value) : SString(static_cast<double>(value)) {}
  SString(double value);

  // The same for other integers.
  template <std::integral Integer>
  SString(Integer value) : rep_(_TextOf(_Widened(value))) {}

  ~SString() { _Free(); }

  // Assigning a string shares its bytes; assigning a number makes a new string. Assigning
  // text or a byte copies the bytes, into the existing buffer if this handle is the only
  // one on it.
  SString& operator=(const SString& other) noexcept;
  SString& operator=(SString&& other) noexcept;
  SString& operator=(const char* s);
  SString& operator=(char c);
  SString& operator=(int value) { return *this = SString(value); }
  SString& operator=(long value) { return *this = SString(value); }
  SString& operator=(float value) { return *this = SString(value); }
  SString& operator=(double value) { return *this = SString(value); }
  template <std::integral Integer>
  SString& operator=(Integer value) {
    return *this = SString(value);
  }

  // Number of bytes.
  [[nodiscard]] int Length() const { return rep_->length; }

  // Whether the string is defined, even if it is empty.
  [[nodiscard]] bool Defined() const { return rep_->buffer != nullptr; }

  // The bytes; never null. A NUL follows the last byte unless the string is a view: pass
  // text to the C library through Terminated().
  [[nodiscard]] const char* Data() const { return Defined() ? rep_->buffer : ""; }
  [[nodiscard]] std::string_view View() const {
    return {Data(), static_cast<std::size_t>(rep_->length)};
  }

  // Returns the number that the text begins with, as strtod reads it in the C locale:
  // leading white space is skipped, and text after the number is ignored. Returns 0 when
  // the text begins with no number, and an infinity or a zero, with errno ERANGE, when the
  // number is out of the type's range. Convert to double or float only: other arithmetic
  // is ambiguous.
  operator double() const;
  operator float() const;

  // Appends. An empty operand changes nothing, so an undefined string stays undefined; a
  // byte is always appended, even NUL. Appending a byte takes amortised constant time: a
  // full buffer doubles.
  SString& operator+=(const SString& t);
  SString& operator+=(const char* s);
  SString& operator+=(char c);
  template <OtherText Text>
  SString& operator+=(const Text& t) {
    const std::string_view text = t;
    _Append(text.data(), text.size());
    return *this;
  }

  // Not for numbers, which would be appended as bytes: append SString(number), or a char.
  template <class Number>
  requires(std::is_arithmetic_v<Number> || std::is_enum_v<Number>) SString& operator+=(Number) =
      delete;

  // A new string: this one with the operand appended.
  [[nodiscard]] SString operator+(const SString& t) const& { return SString(*this) + t; }
  [[nodiscard]] SString operator+(const char* s) const& { return SString(*this) + s; }
  [[nodiscard]] SString operator+(char c) const& { return SString(*this) + c; }
  template <std::same_as<char> Char>
  [[nodiscard]] SString operator+(Char* s) const& {
    return SString(*this) + static_cast<const char*>(s);
  }

  // Overloads for temporaries: they append in place, so a chain of sums uses one buffer.
  [[nodiscard]] SString operator+(const SString& t) && { return _Plus(t.View()); }
  [[nodiscard]] SString operator+(const char* s) && { return _Plus(_Text(s)); }
  [[nodiscard]] SString operator+(char c) && { return std::move(*this += c); }
  template <std::same_as<char> Char>
  [[nodiscard]] SString operator+(Char* s) && {
    return _Plus(_Text(s));
  }

  // Returns the byte at position `i`; a negative `i` counts from the end, and -1 is the
  // last byte. Returns NUL for a position outside the string.
  [[nodiscard]] char operator[](int i) const;

  // Two strings are equal if their bytes are; an undefined string equals every empty one.
  [[nodiscard]] bool operator==(const SString& t) const;
  [[nodiscard]] bool operator==(const char* s) const { return View() == _Text(s); }
  [[nodiscard]] bool operator==(std::string_view t) const { return View() == t; }
  [[nodiscard]] bool operator==(char c) const { return Length() == 1 && *Data() == c; }

  // Lexicographic order of unsigned bytes: a proper prefix is less than the longer string.
  // A byte compares as a string of one byte. A null `s` is the empty string: no string is
  // less, and every string that is not empty is greater.
  [[nodiscard]] std::strong_ordering operator<=>(const SString& t) const {
    return View() <=> t.View();
  }
  [[nodiscard]] std::strong_ordering operator<=>(std::string_view t) const { return View() <=> t; }
  [[nodiscard]] std::strong_ordering operator<=>(const char* s) const {
    return View() <=> _Text(s);
  }
  [[nodiscard]] std::strong_ordering operator<=>(char c) const {
    return View() <=> std::string_view(&c, 1);
  }

  // The same comparisons as members, to be called by name or pointed to.
  [[nodiscard]] bool operator<(const SString& t) const { return View() < t.View(); }
  [[nodiscard]] bool operator<(const char* s) const { return View() < _Text(s); }
  [[nodiscard]] bool operator<(char c) const { return View() < std::string_view(&c, 1); }
  [[nodiscard]] bool operator>(const SString& t) const { return View() > t.View(); }
  [[nodiscard]] bool operator>(const char* s) const { return View() > _Text(s); }
  [[nodiscard]] bool operator>(char c) const { return View() > std::string_view(&c, 1); }

  // Returns a new array of Length() + 1 bytes: those of the string and a NUL. Returns null
  // when memory runs out. The caller frees the array with `delete[]`.
  [[nodiscard]] char* GetBuf() const;

  // Returns the number of positions at which the operand occurs; occurrences may overlap.
  // The empty text occurs nowhere.
  [[nodiscard]] int Count(const SString& t) const;
  [[nodiscard]] int Count(const char* s) const;
  [[nodiscard]] int Count(char c) const;

  // Returns 1 if the strings are equal when the case of the letters A to Z is ignored,
  // else 0. This is equality, not order.
  [[nodiscard]] int CompareNoCase(const SString& t) const;

  // Returns the first position from `start` on at which the operand occurs; -1 when there
  // is none, when `start` is negative or when the operand is empty.
  [[nodiscard]] int Index(const SString& t, int start = 0) const;
  [[nodiscard]] int Index(const char* s, int start = 0) const;
  [[nodiscard]] int Index(char c, int start = 0) const;

  // Returns the last position at which the text occurs, -1 when there is none. The search
  // goes backwards from `start`: 0 is the last byte, and a negative number counts from the
  // end; one that reaches before the string gives -1. An empty text gives the position at
  // which the search would begin; a text longer than the string gives -1.
  [[nodiscard]] int RIndex(const SString& t, int start = 0) const;
  [[nodiscard]] int RIndex(const char* s, int start = 0) const { return RIndex(SString(s), start); }

  // Returns the last position below `start` at which the byte occurs; -1 when there is none.
  // A `start` below 1 searches the whole string.
  [[nodiscard]] int RIndex(char c, int start = 0) const;

  // Returns the `count` bytes from `start` on as a new string, always defined. A negative
  // start counts as 0 and reduces `count` by as much; the range is cut to the string.
  //
  // Called on a variable that is not constant, returns the range itself: it can be assigned
  // to, refers to this string and must not outlive it. `SString part = s.Segment(1, 2)`
  // copies; `auto part = s.Segment(1, 2)` does not.
  [[nodiscard]] SString Segment(int start, int count) const&;
  [[nodiscard]] SString Segment(int start, int count) &&;
  [[nodiscard]] SSubString Segment(int start, int count) &;

  // Returns whether the string begins with the operand: 1 or 0.
  [[nodiscard]] int HasPrefix(const SString& p) const { return View().starts_with(p.View()); }
  [[nodiscard]] int HasPrefix(const char* p) const { return View().starts_with(_Text(p)); }

  // Replaces the string by the next line of `in`, line feed included; the last line may end
  // without one.
  // Returns 1, or 0 when nothing was left to read or the stream has failed. A last line
  // without a line feed sets only the stream's eofbit; the next attempt to read fails.
  int ReadLine(std::istream& in);

  // Removes the last byte. Returns it, from 0 to 255, or 0 when there is none.
  int Chop();

  // Change the case of the letters A to Z; reverse the order of the bytes. An undefined
  // string becomes defined and empty.
  SString& LowerCase();
  SString& UpperCase();
  SString& Reverse();

  // Patterns. Each operation takes a compiled expression, or a pattern as text in the
  // dialect of SPerlRegex.h. The library caches a few compiled patterns, so a pattern that
  // is used again is not compiled again. A pattern in error matches nothing, and every call
  // reports it on the standard error stream; the empty pattern matches nothing. The option
  // "i" ignores case; it applies only to patterns given as text, since an expression has
  // its own. Include lists/SStringList.h to use the lists that these members return.
  //
  //   if (header.HasMatch("^subject\\s*:", "i")) ...
  //   for (const SString& word : line.Split(",\\s*")) ...
  //   path.S("/+", "/", "g");

  // Strings are the layer below lists and expressions, so members that need these are defined
  // in their folders: in src/regex HasMatch and M (SStringMatch.cpp), S (SStringSubst.cpp) and
  // Split at a pattern (SStringSplit.cpp); in src/lists Split at a byte, SplitExact and
  // BreakToWords (SStringPieces.cpp).

  // Returns whether the pattern matches anywhere.
  bool HasMatch(const SRegex& re) const;
  [[nodiscard]] bool HasMatch(const SString& pattern, const char* options = nullptr) const;
  [[nodiscard]] bool HasMatch(const char* pattern, const char* options = nullptr) const;

  // Returns copies of the first match and of each of its groups, in the order of their
  // opening parentheses; an undefined list when there is no match. See SRegex::Match.
  [[nodiscard]] SStringList M(const SRegex& re) const;
  [[nodiscard]] SStringList M(const SString& pattern, const char* options = nullptr) const;
  [[nodiscard]] SStringList M(const char* pattern, const char* options = nullptr) const;

  // Replaces the first match by `replacement`; with the option "g", every match. See
  // SRegex::Subst, and AppendPasteBuffer for what $ and backslash mean in a replacement.
  // Returns the list that M() gives for the last match replaced. Without a match, returns an
  // undefined list and changes nothing.
  //
  // An empty or null pattern inserts the replacement, taken literally, at the front; with
  // "g" also after every character. The list returned then holds one empty string.
  SStringList S(const SRegex& re, const SString& replacement, const char* options = nullptr);
  SStringList S(const SString& pattern, const SString& replacement, const char* options = nullptr);
  SStringList S(const char* pattern, const SString& replacement, const char* options = nullptr);

  // Returns the fields between the matches of a separator. With `limit` above 0, at most so
  // many fields are counted, and the last one holds the rest unsplit; a negative `limit`
  // splits nothing.
  //
  // A separator at the end gives no empty field after it. A separator at the beginning, or
  // right after another, gives an empty field, which the limit does not count. If the
  // separator matches the empty text, every character is a field. Known and kept: if it
  // matches the empty text before a field and nowhere after that, as ^ does, the first byte
  // of the field is lost.
  //
  // Returns an undefined list when there are no fields or no pattern is compiled.
  [[nodiscard]] SStringList Split(const SRegex& re, int limit = 0) const;

  // The same for a separator in the dialect. An empty or null separator splits the string
  // into characters; the list is then defined if the string is.
  [[nodiscard]] SStringList Split(const SString& sep, int limit = 0) const;
  [[nodiscard]] SStringList Split(const char* sep, int limit = 0) const;

  // The same for a byte, taken literally. A blank stands for any run of blanks, tabs,
  // carriage returns and line feeds; a run at the beginning is skipped unless the string
  // consists of nothing else.
  [[nodiscard]] SStringList Split(char c, int limit = 0) const;

  // Returns the pieces between the occurrences of `sep`, taken literally. With `max` above 0,
  // there are at most so many pieces, and the last holds the rest unsplit. Empty pieces are
  // kept, even the last: the defined empty string has one. With an empty `sep` this is
  // Split(sep). An undefined string gives an undefined list.
  [[nodiscard]] SStringList SplitExact(const SString& sep, int max = 0) const;

  // Returns the words between blanks, tabs and line feeds. A word that starts with a double
  // quote extends to the next double quote, blanks included; the opening quote is kept and
  // the closing quote dropped. The list is defined if the string is.
  //
  // Known and kept: a last word of one byte is left out, even if it is the whole string,
  // unless that byte is a double quote; a quoted word without a closing quote loses the last
  // byte of the string.
  [[nodiscard]] SStringList BreakToWords() const;

  friend void swap(SString& a, SString& b) noexcept { std::swap(a.rep_, b.rep_); }

  // Writes the bytes to `os`, NULs included, without a terminator.
  // Returns 1 if the stream is still good afterwards, else 0. If the stream has failed
  // before, writes nothing and returns 0.
  int Write(std::ostream& os) const;

  // Dumps the bytes of the string to the standard error stream. Backslashes and bytes outside
  // the range from space to tilde are escaped (\t \n \v \f \r \\, or a backslash and the
  // byte's decimal value). With `verbose` not 0, also dumps the addresses of representation
  // and buffer, the length, the bytes allocated and the number of handles, a line each.
  void Debug(int verbose) const;

 private:
  friend class SRegex;
  friend class SStringList;
  friend class SStringPeek;  // the tests' eye
  friend class SSubString;
  friend MAILHEARTH_EXPORT SString Terminated(const SString& s);
  friend MAILHEARTH_EXPORT SString Lasting(const SString& s);

  // In all of these 0 <= n <= kMaxLength, and one that finds no memory throws and has
  // changed nothing.

  // Returns a representation that holds a copy of `text`, or a number's text.
  [[nodiscard]] static SStringRep* _CopyOf(std::string_view text);
  [[nodiscard]] static SStringRep* _TextOf(std::int64_t value);
  [[nodiscard]] static SStringRep* _TextOf(std::uint64_t value);

  // Points this handle at a new representation for `n` bytes, NUL at `n`; the
  // caller sets the length and has taken care of the representation left.
  // Returns the address of position `n`.
  char* _Malloc(int n);

  // Makes this handle the only one on a buffer for `n` bytes; every edit goes
  // through here or _HasRoom. The bytes in use stay, as far as they fit when they
  // were shared; NUL at `n`; the caller sets the length. Never shrinks the buffer.
  // Returns the address of position `n`.
  char* _Realloc(int n);

  // Makes this handle the only one on a new buffer for `n` bytes that begins with `bytes`,
  // which may be bytes of this string. Needs: no more than `n` bytes, and not _HasRoom(n).
  void _Rebuffer(int n, std::string_view bytes);

  // Makes this handle undefined and the only one on its representation.
  void _Undef();

  // Takes this handle off its representation, which goes with its last handle.
  void _Free() noexcept;

  // Whether this handle is alone on a buffer for `n` bytes and a NUL.
  [[nodiscard]] bool _HasRoom(int n) const { return rep_->links == 1 && rep_->allocated > n; }

  // Ends the bytes in use at `n`. Needs: _HasRoom(n).
  void _SetLength(int n);

  // Replaces the bytes by, or appends, the `n` bytes at `text`, which may be bytes
  // of this string. A length past the limit is OutOfMemory().
  void _Assign(const char* text, std::size_t n);
  void _Append(const char* text, std::size_t n);

  // Returns this temporary with `text` appended.
  [[nodiscard]] SString _Plus(std::string_view text);

  // _Append where there is no room yet.
  void _GrowAndAppend(const char* text, std::size_t n);

  // A range of bytes within the string.
  struct Range {
    int start;
    int count;
  };

  // Index for bytes of any kind.
  [[nodiscard]] int _Index(std::string_view text, int start) const;

  // Returns the position that a function of the C library has found; -1 for null.
  [[nodiscard]] int _Position(const void* found) const {
    return found == nullptr ? -1 : static_cast<int>(static_cast<const char*>(found) - Data());
  }

  // Returns what of the range lies within the string; see Segment.
  [[nodiscard]] Range _Clip(int start, int count) const;

  // Replaces a range of the string by `text`, which may be bytes of this string.
  void _Replace(Range range, std::string_view text);

  // Makes this handle the only one on its bytes, and defined.
  void _MakeUnique() {
    if (!_HasRoom(rep_->length)) _Realloc(rep_->length);
  }

  // Room for bytes and NUL; 0 when the string has no storage of its own.
  [[nodiscard]] int _Capacity() const { return rep_->allocated; }

  // Whether this handle is alone on a representation made elsewhere. Its maker may know that
  // by its address, so an edit keeps it and changes its buffer.
  [[nodiscard]] bool _Adopted() const {
    return rep_->links == 1 && rep_->origin == SStringRep::kAdopted;
  }

  // S with the empty pattern.
  SStringList _Interleave(const SString& replacement, const char* options);

  // Split at a separator in the dialect, and at an empty one.
  [[nodiscard]] SStringList _Split(std::string_view sep, int limit) const;
  [[nodiscard]] SStringList _SplitCharacters(int limit) const;

  // Whether `text` is part of this string's buffer, all of it.
  [[nodiscard]] bool _Holds(std::string_view text) const;

  template <std::integral Integer>
  static auto _Widened(Integer value) {
    using Wide = std::conditional_t<std::is_signed_v<Integer>, std::int64_t, std::uint64_t>;
    static_assert(sizeof value <= sizeof(Wide));
    return static_cast<Wide>(value);
  }

  static std::string_view _Text(const char* s) {
    return s == nullptr ? std::string_view() : std::string_view(s);
  }

  SStringRep* rep_;  // never null
};

// Returns a string with the bytes of `s` that is sure to end in a NUL: `s` itself if it
// does, a copy if `s` views bytes without one. Pass all text for the C library through this
// function; the C library sees the text up to its first NUL.
[[nodiscard]] MAILHEARTH_EXPORT SString Terminated(const SString& s);

// Returns a string with the bytes of `s` whose lifetime does not depend on foreign memory:
// `s` itself if the library made its representation, a copy if somebody else did and may
// free it. Functions that return a piece of an argument call this when the piece is all of it.
[[nodiscard]] MAILHEARTH_EXPORT SString Lasting(const SString& s);

// New strings: text or a byte, with `t` appended.
[[nodiscard]] inline SString operator+(const char* s, const SString& t) { return SString(s) += t; }
[[nodiscard]] inline SString operator+(char c, const SString& t) { return SString(c, 1) += t; }
template <std::same_as<char> Char>
[[nodiscard]] SString operator+(Char* s, const SString& t) {
  return SString(s) += t;
}

// Returns the part of `path` after its last "/", without `suffix` if the path ends with it.
// If the suffix includes that "/", nothing is left.
[[nodiscard]] MAILHEARTH_EXPORT SString BaseName(const SString& path, const SString& suffix);
[[nodiscard]] inline SString BaseName(const char* path, const SString& suffix) {
  return BaseName(SString(path), suffix);  // not a list of one path
}

// Return the text of a number, as the constructors do.
[[nodiscard]] inline SString MakeSString(int value) { return SString(value); }
[[nodiscard]] inline SString MakeSString(long value) { return SString(value); }
[[nodiscard]] inline SString MakeSString(float value) { return SString(value); }
[[nodiscard]] inline SString MakeSString(double value) { return SString(value); }

// Write the bytes alone, whatever width is set, which stays set; read a whole line, its line
// feed included.
MAILHEARTH_EXPORT std::ostream& operator<<(std::ostream& os, SString s);
MAILHEARTH_EXPORT std::istream& operator>>(std::istream& is, SString& s);

inline SString& SString::operator=(const SString& other) noexcept {
  SString shared(other);
  std::swap(rep_, shared.rep_);
  return *this;
}

inline SString& SString::operator=(SString&& other) noexcept {
  SString taken(std::move(other));
  std::swap(rep_, taken.rep_);
  return *this;
}

inline SString& SString::operator+=(const SString& t) {
  _Append(t.Data(), static_cast<std::size_t>(t.Length()));
  return *this;
}

inline SString& SString::operator+=(const char* s) {
  const std::string_view text = _Text(s);
  _Append(text.data(), text.size());
  return *this;
}

inline SString& SString::operator+=(char c) {
  _Append(&c, 1);
  return *this;
}

inline SString SString::_Plus(std::string_view text) {
  if (text.empty()) return Lasting(*this);
  _Append(text.data(), text.size());
  return std::move(*this);
}

inline char SString::operator[](int i) const {
  if (i < 0) i += rep_->length;
  return i < 0 || i >= rep_->length ? '\0' : rep_->buffer[i];
}

inline int SString::Index(char c, int start) const {
  if (start < 0 || start >= Length()) return -1;
  const std::string_view from = View().substr(static_cast<std::size_t>(start));
  return _Position(std::memchr(from.data(), c, from.size()));
}

inline int SString::RIndex(char c, int start) const {
  const int end = start < 1 || start > Length() ? Length() : start;
  return _Position(::memrchr(Data(), c, static_cast<std::size_t>(end)));
}

inline bool SString::operator==(const SString& t) const {
  if (rep_ == t.rep_) return true;
  const int length = rep_->length;
  if (length != t.rep_->length) return false;
  return length == 0 ||
         std::memcmp(rep_->buffer, t.rep_->buffer, static_cast<std::size_t>(length)) == 0;
}

inline void SString::_Append(const char* text, std::size_t n) {
  SStringRep& rep = *rep_;  // read once: for all the compiler knows, bytes written may be it
  const std::int64_t sum = rep.length + static_cast<std::int64_t>(n);
  if (rep.links == 1 && sum < rep.allocated) [[likely]] {
    char* const end = rep.buffer + rep.length;
    if (n > 0) std::memmove(end, text, n);  // they may be this string's, with its NUL
    end[n] = '\0';
    rep.length = static_cast<int>(sum);
  } else if (n > 0) {
    _GrowAndAppend(text, n);
  }
}

inline void SString::_Free() noexcept {
  rep_->Unlink();
  rep_ = nullptr;
}

inline void SString::_SetLength(int n) {
  rep_->buffer[n] = '\0';
  rep_->length = n;
}

}  // namespace mailhearth

// Equal strings have equal hashes, undefined and empty ones too.
template <>
struct std::hash<mailhearth::SString> {
  std::size_t operator()(const mailhearth::SString& s) const noexcept {
    return std::hash<std::string_view>()(s.View());
  }
};

#include "SSubString.h"  // what Segment returns

#endif  // MAILHEARTH_STRINGS_SSTRING_H
