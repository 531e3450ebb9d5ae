// SStringList is an ordered list of strings. Like SString it is a handle: copying shares
// at the cost of a counter, and the first edit through a handle that is not alone copies
// the list first (the strings in it go on sharing their bytes).
//
// A list is undefined (no value, the sign of a failed operation) or defined, possibly
// empty. The two compare equal where both have no elements.
//
// Positions count from 0. Operations on an index out of range do nothing, or give an
// undefined string or list, as each says. A list given to its own edit, or a string of
// its own, is taken as it was before the edit.
//
//   SStringList path = {"usr", "lib"};
//   path.Push("mailhearth");
//   for (const SString& part : path) Consume(part);   // reads only, detaches nothing
//   SString joined = path.Join("/");                   // usr/lib/mailhearth
//
// References to elements end with the element; elements stay where they are while others
// come and go, but sorting and reversing exchange their values.
//
// An edit that finds no memory throws std::bad_alloc and has added nothing; one that removes
// as well may have done so.
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

// What the handles of one list share.
struct MAILHEARTH_EXPORT SStringListRep {
  // So many links are not counted any more, and the list is never freed; see SStringRep.
  static constexpr int kPinned = SStringRep::kPinned;

  SStringItem* root = nullptr;  // the first element, the last being its `prev`; null if none
  int count = 0;                // elements
  int links = 1;                // handles that share this representation
  int flags = 1;                // bit 0: the list is defined; no other is used
};

class SRegex;

class MAILHEARTH_EXPORT SStringList {
 public:
  // Walks over the elements, which it only reads. Ends with an edit of the list.
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

  // A text among the braces that make a list: a string, or what makes one and is no number.
  // So {"abc", 2} is a string, the first two bytes of a text, as everywhere.
  struct Element {
    SString text;

    template <class Text>
    requires(std::constructible_from<SString, const Text&> && !std::is_arithmetic_v<Text>)
        Element(const Text& t)
        : text(t) {}

    // For SFixedString, which a string shares only where it is no constant.
    template <class Text>
    requires(std::constructible_from<SString, Text&> &&
             !std::constructible_from<SString, const Text&>) Element(Text& t)
        : text(t) {}
  };

  // As the standard names them.
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

  // A defined list of these elements; of the strings up to the null pointer that ends `v`.
  // A null `v` gives an undefined list.
  SStringList(std::initializer_list<Element> elements);
  SStringList(const char** v);

  ~SStringList();

  SStringList& operator=(const SStringList& o) noexcept;
  SStringList& operator=(SStringList&& o) noexcept;

  // Makes of this list what the constructor would.
  SStringList& operator=(const SString& s);
  SStringList& operator=(const char* s);
  SStringList& operator=(const char** v);

  // Whether the list has a value at all, be it no elements.
  [[nodiscard]] bool Defined() const { return (rep_->flags & kDefined) != 0; }

  // Number of elements.
  [[nodiscard]] int Count() const { return rep_->count; }

  // From the first element to the last; the list is not detached.
  [[nodiscard]] Iterator begin() const { return {rep_->root, rep_->count}; }
  [[nodiscard]] Iterator end() const { return {rep_->root, 0}; }

  // Returns the element at `i` for editing; a negative `i` counts from the end. Past the
  // end the list grows by undefined strings up to there. Before the beginning the answer
  // is a new undefined string that belongs to nobody and is never freed. The list is made
  // unique even if the element is only read: read through Get, or a constant list.
  // Walks from the nearer end.
  SString& operator[](int i);
  SString operator[](int i) const { return Get(i); }

  // The same for other integers; past the range of int, its end.
  template <std::integral Integer>
  SString& operator[](Integer i) {
    return (*this)[_Narrow(i)];
  }
  template <std::integral Integer>
  SString operator[](Integer i) const {
    return Get(_Narrow(i));
  }

  // Returns a copy of the element at `i`, counted from the end when negative; an undefined
  // string when there is none.
  [[nodiscard]] SString Get(int i) const;

  // Whether the same elements stand in the same order, equal as strings.
  [[nodiscard]] bool operator==(const SStringList& o) const;

  // Returns the texts as an array that a null pointer ends; null for an undefined list or
  // when memory is short. NULs inside an element stay. The caller frees the first entry,
  // which holds all texts, and then the array, each with `delete[]`.
  operator char**() const;

  // A copy that shares nothing: not the list, not the bytes of its strings.
  [[nodiscard]] SStringList Clone() const;

  // The position of the first equal element, -1 when there is none; whether there is one.
  [[nodiscard]] int Index(const SString& s) const;
  [[nodiscard]] int Index(const char* s) const;
  [[nodiscard]] bool Contains(const SString& s) const { return Index(s) >= 0; }
  [[nodiscard]] bool Contains(const char* s) const { return Index(s) >= 0; }

  // The elements from `from` to `to`, both included; an undefined list unless
  // 0 <= from <= to < Count().
  [[nodiscard]] SStringList Slice(int from, int to) const;

  // The elements one after the other, `sep` between them. Without elements an empty string,
  // defined if the list is.
  [[nodiscard]] SString Join(const SString& sep) const;
  [[nodiscard]] SString Join() const { return Join(""); }

  // Chops every element. Returns what was cut off the last one, 0 for an empty list.
  int Chop();

  // Removes the first equal element, or the one at `i` (no negative index). Returns whether
  // there was one.
  bool Delete(const SString& s);
  bool Delete(const char* s);
  bool Delete(char c) { return Delete(SString(c)); }
  bool Delete(int i);

  // The same for other numbers, without their fraction; past the range of int, its end.
  template <class Number>
  requires std::is_arithmetic_v<Number>
  bool Delete(Number i) { return Delete(_Narrow(i)); }

  // Inserts the elements of `o` before position `pos`, at the end if that is Count().
  // Nothing happens when `pos` is outside the list or `o` has no elements.
  //
  // An empty list becomes a handle on the list of `o`, whatever `pos` is. Known and kept:
  // with `pos` above 0 so many undefined strings are then put in front of that shared list,
  // so `o` and all that share it have them too, unless `o` has been moved from: it stays as it
  // is.
  //
  // The result carries no meaning.
  int Insert(const SStringList& o, int pos);

  // Removes and returns the last or the first element; an undefined string if none.
  SString Pop();
  SString Shift();

  // Appends; returns the new number of elements.
  int Push(const SString& s);
  int Push(const char* s);
  int Push(const SStringList& other);

  // Empties the list and leaves it defined, or undefined.
  void Reset();
  void Undef();

  // Turns the order round.
  void Reverse();

  // Sorts upwards, in the order of SString; equal elements in any order. Takes n log n
  // comparisons of eight bytes for each eight that elements have in common, memory for n
  // positions, and no stack to speak of.
  void Sort();

  // Removes `len` elements from `off` on and returns them. An undefined list, and no change,
  // when they are not all there or `len` is 0.
  //
  // Known and kept: the list returned is undefined although it holds elements, unless it is
  // the whole list.
  SStringList Splice(int off, int len);

  // The same for all elements from `off` on; an undefined list when there are none.
  SStringList Splice(int off);

  // The same, then inserts `repl` at `off`, also if nothing was removed: see Insert for what
  // that does to an empty list.
  SStringList Splice(int off, int len, const SStringList& repl);

  // Removes each element that equals the one before it.
  void Unique();

  // Lists are below expressions, so Grep lives with them: src/regex/SStringListGrep.cpp.

  // Returns the elements that match; with `keep` 0, those that do not. Undefined when this
  // list is or nothing is compiled.
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
  // and "!" before it turns it round; blanks and tabs may stand before it. A delimiter behind
  // a backslash ends nothing; both stay in the pattern or replacement and mean there what
  // they mean: \/ is a slash, but with the delimiter d, \d is a digit. The last delimiter may
  // be missing.
  //
  // What is wrong with a test is reported on the standard error stream. Without a test, or
  // with a file test that does not exist, no element is returned, in either list. Both lists
  // are undefined when this one is or the pattern does not compile. When memory runs out on
  // the way, what was replaced stays replaced.
  SStringList Grep(const SString& test, SStringList* rejected = nullptr);

  // Dumps the list to the standard error stream, with `level` not 0 its nodes as well.
  void Debug(int level) const;

 private:
  friend class SStringListPeek;  // the tests' eye

  static constexpr int kDefined = 1;

  // Internal steps, on which the operations above are written. None makes the list unique
  // but _MakeUnique itself: their callers do.
  void _Create();
  void _Define() { rep_->flags |= kDefined; }
  void _Undefine() { rep_->flags &= ~kDefined; }

  // Makes this handle the only one on its representation. A list that is detached is
  // defined afterwards, also if it was undefined: known and kept.
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

  // Shares the list of `o`, or has one of its own where `o` has none to share.
  void _Share(const SStringList& o);

  // Moves all elements of `other` to before position `pos`.
  void _Take(SStringList& other, int pos);

  // Puts `n` undefined strings before position `pos`.
  void _TakeUndefined(std::int64_t n, int pos);

  // Takes an element of this list out and destroys it.
  void _Remove(SStringItem* item);

  // Returns the number of bytes of all elements together.
  [[nodiscard]] std::int64_t _TotalSize() const;

  // Lets go of the representation, and of the nodes if nobody else has it.
  void _Free() noexcept;

  SStringListRep* rep_;  // never null
};

// Returns the number of bytes of all elements together: not the number of elements.
[[nodiscard]] MAILHEARTH_EXPORT int Length(const SStringList& list);

// Writes the bytes of all elements, with nothing between them. The stream's width is ignored.
MAILHEARTH_EXPORT std::ostream& operator<<(std::ostream& os, SStringList list);

// Reads lines, their ends kept, until the end of input or a line that is a line feed alone,
// which is taken from the stream and not pushed. The list is emptied first.
MAILHEARTH_EXPORT std::istream& operator>>(std::istream& is, SStringList& list);

// New lists: the base name, lower or upper case of each element. Defined if `list` is
// defined or has elements.
[[nodiscard]] MAILHEARTH_EXPORT SStringList BaseName(const SStringList& list,
                                                     const SString& suffix);
[[nodiscard]] MAILHEARTH_EXPORT SStringList LowerCase(const SStringList& list);
[[nodiscard]] MAILHEARTH_EXPORT SStringList UpperCase(const SStringList& list);

}  // namespace mailhearth

#endif  // MAILHEARTH_LISTS_SSTRINGLIST_H
