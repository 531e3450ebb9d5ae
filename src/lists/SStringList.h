// SStringList is an ordered list of strings. Like SString it is a copy-on-write handle:
// copying a handle costs a counter, and the first edit through a handle that is not alone
// copies the list (its strings go on sharing their bytes).
//
// A list is undefined (no value: the result of a failed operation) or defined, possibly
// empty. An undefined list equals every list without elements.
//
// Positions count from 0. An operation on an index out of range does nothing, or returns an
// undefined string or list, as its comment says. If an edit is given its own list or one of
// its strings, the argument counts as it was before the edit.
//
//   SStringList path = {"usr", "lib"};
//   path.Push("mailhearth");
//   for (const SString& part : path) Consume(part);   // reads only, detaches nothing
//   SString joined = path.Join("/");                   // usr/lib/mailhearth
//
// A reference to an element is valid as long as the element: adding and removing others does
// not move it. Sorting and reversing exchange the values of elements.
//
// An edit that finds no memory throws std::bad_alloc and adds nothing; an edit that also
// removes elements may have removed them.
//
// Not for use between threads.

#ifndef MAILHEARTH_LISTS_SSTRINGLIST_H
#define MAILHEARTH_LISTS_SSTRINGLIST_H

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iosfwd>
#include <iterator>
#include <limits>
#include <memory>
#include <string_view>
#include <utility>

#include "../strings/Export.h"
#include "../strings/SString.h"
#include "SStringItem.h"

inline namespace mailhearth {

// The representation that the handles of one list share.
struct MAILHEARTH_EXPORT SStringListRep {
  // With this many links the representation is pinned: its links are no longer counted, and
  // it is never freed. See SStringRep.
  static constexpr int kPinned = SStringRep::kPinned;

  SStringItem* root = nullptr;  // the first element, the last being its `prev`; null if none
  int count = 0;                // elements
  int links = 1;                // handles that share this representation
  int flags = 1;                // bit 0: the list is defined; other bits are unused
};

class SRegex;

class MAILHEARTH_EXPORT SStringList {
 public:
  // A read-only iterator over the elements. An edit of the list invalidates it.
  class Iterator {
   public:
    using value_type = SString;
    using difference_type = std::ptrdiff_t;
    using reference = const SString&;
    using pointer = const SString*;
    using iterator_category = std::bidirectional_iterator_tag;

    Iterator() = default;
    Iterator(const SStringItem* item, int left) : item_(item), left_(left) {}

    reference operator*() const { return item_->value; }
    pointer operator->() const { return &item_->value; }
    Iterator& operator++() {
      item_ = item_->next;
      --left_;
      return *this;
    }
    Iterator operator++(int) { return std::exchange(*this, Iterator(item_->next, left_ - 1)); }
    Iterator& operator--() {
      item_ = item_->prev;
      ++left_;
      return *this;
    }
    Iterator operator--(int) { return std::exchange(*this, Iterator(item_->prev, left_ + 1)); }
    bool operator==(const Iterator& other) const { return left_ == other.left_; }

   private:
    const SStringItem* item_ = nullptr;
    int left_ = 0;  // elements from here to the end
  };

  // A text in a braced list: a string, or anything but a number that converts to one. So
  // {"abc", 2} remains a string, the first two bytes of a text.
  struct Element {
    SString text;  // the element

    // For strings and all texts that convert to one.
    template <class Text>
    requires(std::constructible_from<SString, const Text&> && !std::is_arithmetic_v<Text>)
        Element(const Text& t)
        : text(t) {}

    // For SFixedString, whose bytes a string shares only if the object is not constant.
    template <class Text>
    requires(std::constructible_from<SString, Text&> &&
             !std::constructible_from<SString, const Text&>) Element(Text& t)
        : text(t) {}
  };

  // The standard's names for these types.
  using value_type = SString;
  using const_iterator = Iterator;
  using iterator = Iterator;

  // An undefined list.
  SStringList();

  // A handle on the list of `other`; nothing is copied.
  SStringList(const SStringList& other) noexcept : rep_(other.rep_) {
    if (rep_->links != SStringListRep::kPinned) ++rep_->links;
  }

  // Moves from `other`, leaving it undefined.
  SStringList(SStringList&& other) noexcept;

  // A defined list of one element.
  SStringList(const SString& s);
  SStringList(const char* s);

  // A defined list of these elements, or of the strings in `v`, an array that ends in a null
  // pointer. A null `v` gives an undefined list.
  SStringList(std::initializer_list<Element> elements);
  SStringList(const char** v);

  ~SStringList();

  SStringList& operator=(const SStringList& o) noexcept;
  SStringList& operator=(SStringList&& o) noexcept;

  // Assigns the list that the constructor would make.
  SStringList& operator=(const SString& s);
  SStringList& operator=(const char* s);
  SStringList& operator=(const char** v);

  // Whether the list is defined, even if it is empty.
  [[nodiscard]] bool Defined() const { return (rep_->flags & kDefined) != 0; }

  // Number of elements.
  [[nodiscard]] int Count() const { return rep_->count; }

  // Iterate from the first element to the last, without copying a shared list.
  [[nodiscard]] Iterator begin() const { return {rep_->root, rep_->count}; }
  [[nodiscard]] Iterator end() const { return {rep_->root, 0}; }

  // Returns the element at `i` for editing; a negative `i` counts from the end. If `i` is
  // past the end, the list grows by undefined strings up to position `i`. If `i` is before
  // the beginning, returns a new undefined string that belongs to no list and is never
  // freed. A shared list is copied even if the element is only read: to read, use Get or a
  // constant list. Walks from the nearer end.
  SString& operator[](int i);
  SString operator[](int i) const { return Get(i); }

  // The same for other integers, clamped to the range of int.
  template <std::integral Integer>
  SString& operator[](Integer i) {
    return (*this)[_Narrow(i)];
  }
  template <std::integral Integer>
  SString operator[](Integer i) const {
    return Get(_Narrow(i));
  }

  // Returns a copy of the element at `i`; a negative `i` counts from the end. Returns an
  // undefined string when there is no such element.
  [[nodiscard]] SString Get(int i) const;

  // Whether both lists have equal strings in the same order.
  [[nodiscard]] bool operator==(const SStringList& o) const;

  // Returns the texts as an array that ends in a null pointer. Returns null for an undefined
  // list or when memory runs out. NULs within an element stay. The caller frees the first
  // entry, which holds all texts, and then the array, each with `delete[]`.
  operator char**() const;

  // Returns a deep copy, which shares neither the list nor the bytes of its strings.
  [[nodiscard]] SStringList Clone() const;

  // Index returns the position of the first equal element, -1 when there is none; Contains
  // returns whether there is one.
  [[nodiscard]] int Index(const SString& s) const;
  [[nodiscard]] int Index(const char* s) const;
  [[nodiscard]] bool Contains(const SString& s) const { return Index(s) >= 0; }
  [[nodiscard]] bool Contains(const char* s) const { return Index(s) >= 0; }

  // Returns the elements from `from` to `to`, both included; an undefined list unless
  // 0 <= from <= to < Count().
  [[nodiscard]] SStringList Slice(int from, int to) const;

  // Returns the concatenated elements, with `sep` between them. An empty list gives an empty
  // string, defined if the list is.
  [[nodiscard]] SString Join(const SString& sep) const;
  [[nodiscard]] SString Join() const { return Join(""); }

  // Chops every element. Returns the byte removed from the last one, 0 for an empty list.
  int Chop();

  // Removes the first equal element, or the one at `i` (a negative index names none).
  // Returns whether there was such an element.
  bool Delete(const SString& s);
  bool Delete(const char* s);
  bool Delete(char c) { return Delete(SString(c)); }
  bool Delete(int i);

  // The same for other numbers, truncated to integers and clamped to the range of int.
  template <class Number>
  requires std::is_arithmetic_v<Number>
  bool Delete(Number i) { return Delete(_Narrow(i)); }

  // Inserts the elements of `o` before position `pos`, at the end if `pos` is Count(). Does
  // nothing when `pos` is outside the list or `o` has no elements.
  //
  // An empty list becomes a handle on the list of `o`, whatever `pos` is. Known and kept: if
  // `pos` is above 0, this many undefined strings are then inserted at the front of that
  // shared list, so `o` and every other handle on it have them too. Only a moved-from `o`
  // does not change.
  //
  // The result has no meaning.
  int Insert(const SStringList& o, int pos);

  // Remove and return the last or the first element; an undefined string when the list is
  // empty.
  SString Pop();
  SString Shift();

  // Append; return the new number of elements.
  int Push(const SString& s);
  int Push(const char* s);
  int Push(const SStringList& other);

  // Empty the list: Reset leaves it defined, Undef undefined.
  void Reset();
  void Undef();

  // Reverses the order.
  void Reverse();

  // Sorts in ascending order of SString; the sort is not stable. Takes n log n comparisons of
  // eight bytes for every eight bytes that elements have in common, memory for n positions,
  // and little stack.
  void Sort();

  // Removes `len` elements from `off` on and returns them. If there are fewer, or `len` is 0,
  // returns an undefined list and changes nothing.
  //
  // Known and kept: the list returned is undefined although it holds elements, unless all
  // elements were removed.
  SStringList Splice(int off, int len);

  // The same for all elements from `off` on; returns an undefined list when there are none.
  SStringList Splice(int off);

  // The same, then inserts `repl` at `off`, even if nothing was removed. Insert tells what
  // happens to an empty list.
  SStringList Splice(int off, int len, const SStringList& repl);

  // Removes each element that equals the one before it.
  void Unique();

  // Lists are a layer below expressions, so Grep is defined in src/regex/SStringListGrep.cpp.

  // Returns the elements that match; with `keep` 0, those that do not. Returns an undefined
  // list when this list is undefined or no pattern is compiled.
  [[nodiscard]] SStringList Grep(const SRegex& re, int keep = 1) const;

  // Returns the elements that pass a test, and puts the others into `rejected` unless that is
  // null. The test is one of
  //
  //   /PATTERN/OPTIONS    the element matches; also m/PATTERN/OPTIONS, with any delimiter
  //   s/PATTERN/REPLACEMENT/OPTIONS   something was replaced, as by SString::S, and it is
  //                       replaced in this list as well
  //   -d -e -f -r -w -x   the element is the path of a directory, of anything, of a regular
  //                       file, of something readable, writeable, executable
  //
  // A "!" before the test negates it; blanks and tabs may come first. A delimiter after a
  // backslash does not end its part; both characters stay in the pattern or replacement with
  // their usual meaning: \/ is a slash, but with the delimiter d, \d is a digit. The last
  // delimiter may be missing.
  //
  // An invalid test is reported on the standard error stream (see GrepError.h). With no test
  // or an unknown file test, both lists are returned without elements. Both are undefined
  // when this list is undefined or the pattern does not compile. When memory runs out before
  // the end, elements replaced so far stay replaced.
  SStringList Grep(const SString& test, SStringList* rejected = nullptr);

  // Dumps the list to the standard error stream; with `level` not 0, its nodes as well.
  void Debug(int level) const;

 private:
  friend class SStringListPeek;  // the tests' eye

  static constexpr int kDefined = 1;

  // Internal steps of the operations above. Only _MakeUnique makes the list unique; callers
  // of the others call it first.
  void _Create();
  void _Define() { rep_->flags |= kDefined; }
  void _Undefine() { rep_->flags &= ~kDefined; }

  // Makes this handle the only one on its representation. Known and kept: a list that is
  // copied for this becomes defined, even if it was undefined.
  bool _MakeUnique();

  [[nodiscard]] SStringItem* _FindItem(int i);
  [[nodiscard]] const SStringItem* _FindItem(int i) const;

  [[nodiscard]] int _Index(std::string_view text) const;

  template <std::integral Integer>
  static int _Narrow(Integer i) {
    constexpr int kLeast = std::numeric_limits<int>::min();
    constexpr int kMost = std::numeric_limits<int>::max();
    const auto number = +i;  // of a type that can be compared, if it was a character's
    if (std::cmp_less(number, kLeast)) return kLeast;
    return std::cmp_greater(number, kMost) ? kMost : static_cast<int>(number);
  }
  template <std::floating_point Real>
  static int _Narrow(Real i) {
    constexpr std::int64_t kBeyond = std::int64_t{1} << 40;
    if (i >= static_cast<Real>(kBeyond)) return _Narrow(kBeyond);
    return _Narrow(i > static_cast<Real>(-kBeyond) ? static_cast<std::int64_t>(i) : -kBeyond);
  }

  // A node that is in no list yet.
  struct DestroyItem {
    void operator()(SStringItem* item) const noexcept;
  };
  using OwnItem = std::unique_ptr<SStringItem, DestroyItem>;

  [[nodiscard]] static OwnItem _MakeItem(SString value);

  int _Push(const SString& s);
  int _Push(OwnItem item);
  int _Push(const SStringList& other);

  static void _Reverse(SStringItem* first, SStringItem* last, int n);
  static void _Sort(SStringItem* first, int n);
  static void _SwapSStrings(SStringItem* a, SStringItem* b) { swap(a->value, b->value); }

  // Shares the list of `o`, or makes a list of its own if `o` has none to share.
  void _Share(const SStringList& o);

  // Moves all elements of `other` to before position `pos`.
  void _Take(SStringList& other, int pos);

  // Puts `n` undefined strings before position `pos`.
  void _TakeUndefined(std::int64_t n, int pos);

  // Takes an element of this list out and destroys it.
  void _Remove(SStringItem* item);

  // Returns the number of bytes of all elements together.
  [[nodiscard]] std::int64_t _TotalSize() const;

  // Releases the representation; the last handle frees it and its nodes.
  void _Free() noexcept;

  SStringListRep* rep_;  // never null
};

// Returns the number of bytes in all elements together, not the number of elements.
[[nodiscard]] MAILHEARTH_EXPORT int Length(const SStringList& list);

// Writes the bytes of all elements without separators; the width of the stream is ignored.
MAILHEARTH_EXPORT std::ostream& operator<<(std::ostream& os, SStringList list);

// Empties the list, then reads lines with their line ends until the end of input or a line
// that is only a line feed; that line is read from the stream but not pushed.
MAILHEARTH_EXPORT std::istream& operator>>(std::istream& is, SStringList& list);

// Return new lists with the base name, the lower case or the upper case of each element. They
// are defined if `list` is defined or has elements.
[[nodiscard]] MAILHEARTH_EXPORT SStringList BaseName(const SStringList& list,
                                                     const SString& suffix);
[[nodiscard]] MAILHEARTH_EXPORT SStringList LowerCase(const SStringList& list);
[[nodiscard]] MAILHEARTH_EXPORT SStringList UpperCase(const SStringList& list);

}  // namespace mailhearth

#endif  // MAILHEARTH_LISTS_SSTRINGLIST_H
