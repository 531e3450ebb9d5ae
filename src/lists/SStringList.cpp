// The elements are a ring of nodes, so the last is the first's neighbour and both ends are
// at hand. Every operation that adds elements makes all their nodes first, in a list of its
// own, and links these in when nothing can fail any more.

#include "SStringList.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <istream>
#include <limits>
#include <memory>
#include <new>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "../strings/PointerText.h"
#include "../strings/Sizes.h"
#include "../strings/SmallBlocks.h"
#include "../strings/StandardError.h"

inline namespace mailhearth {

static_assert(sizeof(SStringList) == sizeof(void*));

namespace {

// What moved-from lists share: pinned, so it is never counted, edited or freed, and in
// read-only memory.
constexpr SStringListRep kMovedFrom{nullptr, 0, SStringListRep::kPinned, 0};

SStringListRep* MovedFrom() {
  return const_cast<SStringListRep*>(&kMovedFrom);  // nothing writes to what is pinned
}

void Link(SStringItem* before, SStringItem* after) {
  before->next = after;
  after->prev = before;
}

// Nodes and heads of lists are of one size.
constexpr std::size_t kBlocks = SmallBlocks::ClassOf(sizeof(SStringItem));
static_assert(kBlocks == SmallBlocks::ClassOf(sizeof(SStringListRep)));

SStringListRep* NewRep() { return ::new (SmallBlocks::Take(kBlocks)) SStringListRep; }

// Destroys all nodes. As they all go, none is taken out of the ring first.
void DestroyItems(SStringListRep& list) {
  for (SStringItem* item = list.root; list.count > 0; --list.count) {
    SStringItem* const next = item->next;
    item->value.~SString();
    SmallBlocks::Give(item, kBlocks);
    item = next;
  }
  list.root = nullptr;
}

// A string to be sorted, by eight of its bytes from some depth on.
struct SortKey {
  std::uint64_t bytes;  // the first is the highest; NULs where the string has ended
  std::uint32_t left;   // bytes from there to its end; more than kWord counts as one more
  SString* string;

  static constexpr std::uint32_t kWord = 8;

  void Load(std::size_t depth) {
    const std::string_view rest = string->View().substr(depth);
    std::array<char, kWord> word{};
    rest.copy(word.data(), kWord);
    bytes = std::bit_cast<std::uint64_t>(word);
    if constexpr (std::endian::native == std::endian::little) bytes = __builtin_bswap64(bytes);
    left = static_cast<std::uint32_t>(std::min<std::size_t>(rest.size(), kWord + 1));
  }

  auto operator<=>(const SortKey& other) const {
    return bytes != other.bytes ? bytes <=> other.bytes : left <=> other.left;
  }
  bool operator==(const SortKey& other) const { return bytes == other.bytes && left == other.left; }
};

// A run of strings that are equal up to some depth.
struct SortRun {
  std::size_t begin, end, depth;
};

// Sorts strings by eight bytes, then those that are equal so far by the next eight: nearly
// all comparisons are of two numbers, and equal strings are read once.
// Returns whether the order has changed.
bool SortByWords(std::vector<SortKey>& keys) {
  bool changed = false;
  std::vector<SortRun> runs = {{0, keys.size(), 0}};
  while (!runs.empty()) {
    const SortRun run = runs.back();
    runs.pop_back();
    const auto first = keys.begin() + static_cast<std::ptrdiff_t>(run.begin);
    const auto last = keys.begin() + static_cast<std::ptrdiff_t>(run.end);
    for (auto key = first; key != last; ++key) key->Load(run.depth);
    if (!std::is_sorted(first, last)) {
      std::sort(first, last);
      changed = true;
    }
    for (auto from = first; from != last;) {
      const auto to = std::find_if(from, last, [&](const SortKey& key) { return key != *from; });
      if (to - from > 1 && from->left > SortKey::kWord) {
        runs.push_back({static_cast<std::size_t>(from - keys.begin()),
                        static_cast<std::size_t>(to - keys.begin()), run.depth + SortKey::kWord});
      }
      from = to;
    }
  }
  return changed;
}

// Applies `change` to a copy of each element.
template <class Change>
SStringList Changed(const SStringList& list, Change change) {
  SStringList changed;
  if (list.Defined()) changed.Reset();
  for (const SString& element : list) changed.Push(change(element));
  return changed;
}

}  // namespace

SStringList::SStringList() {
  _Create();
  _Undefine();
}

SStringList::SStringList(SStringList&& other) noexcept
    : rep_(std::exchange(other.rep_, MovedFrom())) {}

SStringList::SStringList(const SString& s) : SStringList() { _Push(s); }
SStringList::SStringList(const char* s) : SStringList() { _Push(SString(s)); }

SStringList::SStringList(std::initializer_list<Element> elements) : SStringList() {
  _Define();
  for (const Element& element : elements) _Push(element.text);
}

SStringList::SStringList(const char** v) : SStringList() {
  if (v == nullptr) return;
  _Define();
  for (; *v != nullptr; ++v) _Push(SString(*v));
}

SStringList::~SStringList() { _Free(); }

SStringList& SStringList::operator=(const SStringList& o) noexcept {
  SStringList shared(o);
  std::swap(rep_, shared.rep_);
  return *this;
}

SStringList& SStringList::operator=(SStringList&& o) noexcept {
  SStringList taken(std::move(o));
  std::swap(rep_, taken.rep_);
  return *this;
}

SStringList& SStringList::operator=(const SString& s) { return *this = SStringList(s); }
SStringList& SStringList::operator=(const char* s) { return *this = SStringList(s); }
SStringList& SStringList::operator=(const char** v) { return *this = SStringList(v); }

SString& SStringList::operator[](int i) {
  _MakeUnique();
  if (i < 0) i += rep_->count;
  if (i < 0) return *new SString;  // the caller may write to it, and nobody will know
  if (i >= rep_->count) _TakeUndefined(i - rep_->count + std::int64_t{1}, rep_->count);
  return _FindItem(i)->value;
}

SString SStringList::Get(int i) const {
  if (i < 0) i += rep_->count;
  const SStringItem* const item = _FindItem(i);
  return item == nullptr ? SString() : item->value;
}

bool SStringList::operator==(const SStringList& o) const {
  return rep_ == o.rep_ || (Count() == o.Count() && std::equal(begin(), end(), o.begin()));
}

SStringList::operator char**() const {
  if (!Defined()) return nullptr;
  const auto count = static_cast<std::size_t>(Count());
  std::unique_ptr<char*[]> texts(new (std::nothrow) char*[count + 1]);
  if (texts == nullptr) return nullptr;
  texts[count] = nullptr;
  if (count == 0) return texts.release();
  char* place = new (std::nothrow) char[static_cast<std::size_t>(_TotalSize()) + count + 1];
  if (place == nullptr) return nullptr;
  char** text = texts.get();
  for (const SString& element : *this) {
    *text++ = place;
    place += element.View().copy(place, element.View().size());
    *place++ = '\0';
  }
  return texts.release();
}

SStringList SStringList::Clone() const {
  SStringList clone;
  for (const SString& element : *this) {
    clone._Push(element._Capacity() < 1 ? SString() : SString(element.Data(), element.Length()));
  }
  clone.rep_->flags = rep_->flags;
  return clone;
}

int SStringList::Index(const SString& s) const { return _Index(s.View()); }

int SStringList::Index(const char* s) const {
  return _Index(s == nullptr ? std::string_view() : std::string_view(s));
}

int SStringList::_Index(std::string_view text) const {
  int i = 0;
  for (const SString& element : *this) {
    if (element == text) return i;
    ++i;
  }
  return -1;
}

SStringList SStringList::Slice(int from, int to) const {
  SStringList slice;
  if (from < 0 || from > to || to >= Count()) return slice;
  const SStringItem* item = _FindItem(from);
  for (int n = to - from; n >= 0; --n, item = item->next) slice._Push(item->value);
  return slice;
}

SString SStringList::Join(const SString& sep) const {
  if (Count() == 0) return Defined() ? SString("") : SString();
  SString joined("");
  joined._Realloc(CheckedLength(_TotalSize() + std::int64_t{sep.Length()} * (Count() - 1)));
  const SStringItem* item = rep_->root;
  joined += item->value;
  while ((item = item->next) != rep_->root) (joined += sep) += item->value;
  return joined;
}

int SStringList::Chop() {
  if (Count() == 0) return 0;
  _MakeUnique();
  SStringItem* item = rep_->root;
  int removed = 0;
  do {
    removed = item->value.Chop();
    item = item->next;
  } while (item != rep_->root);
  return removed;
}

bool SStringList::Delete(const SString& s) {
  const int i = Index(s);
  return i >= 0 && Delete(i);
}

bool SStringList::Delete(const char* s) {
  const int i = Index(s);
  return i >= 0 && Delete(i);
}

bool SStringList::Delete(int i) {
  _MakeUnique();
  SStringItem* const item = _FindItem(i);
  if (item == nullptr) return false;
  _Remove(item);
  return true;
}

int SStringList::Insert(const SStringList& o, int pos) {
  _MakeUnique();
  if (Count() == 0) {
    _Share(o);
    if (pos > 0) _TakeUndefined(pos, 0);
  } else if (pos >= 0 && pos <= Count()) {
    SStringList copies;
    copies._Push(o);
    _Take(copies, pos);
  }
  return Count();
}

void SStringList::_Share(const SStringList& o) {
  *this = o;
  if (rep_ == &kMovedFrom) _MakeUnique();
}

SString SStringList::Pop() {
  _MakeUnique();
  if (Count() == 0) return SString();
  SStringItem* const item = rep_->root->prev;
  SString value = item->value;
  _Remove(item);
  return value;
}

SString SStringList::Shift() {
  if (Count() == 0) return SString();
  _MakeUnique();
  rep_->root = rep_->root->next;
  return Pop();
}

int SStringList::Push(const SString& s) {
  OwnItem item = _MakeItem(s);  // first: it may be an element of this list
  _MakeUnique();
  return _Push(std::move(item));
}

int SStringList::Push(const char* s) {
  OwnItem item = _MakeItem(SString(s));
  _MakeUnique();
  return _Push(std::move(item));
}

int SStringList::Push(const SStringList& other) {
  _MakeUnique();
  return _Push(other);
}

void SStringList::Reset() {
  if (rep_->links == 1) {
    DestroyItems(*rep_);
    _Define();
  } else {
    SStringList fresh;
    fresh._Define();
    std::swap(rep_, fresh.rep_);
  }
}

void SStringList::Undef() {
  Reset();
  _Undefine();
}

void SStringList::Reverse() {
  if (Count() < 2) return;
  _MakeUnique();
  _Reverse(rep_->root, rep_->root->prev, Count());
}

void SStringList::Sort() {
  if (Count() < 2) return;
  _MakeUnique();
  _Sort(rep_->root, Count());
}

SStringList SStringList::Splice(int off, int len) {
  _MakeUnique();
  SStringList removed;
  if (off < 0 || len <= 0 || off > Count() - len) return removed;
  if (len == Count()) {
    std::swap(rep_, removed.rep_);
    _Define();
    return removed;
  }
  SStringItem* const first = _FindItem(off);
  SStringItem* const last = _FindItem(off + len - 1);
  if (off == 0) rep_->root = last->next;
  Link(first->prev, last->next);
  Link(last, first);
  rep_->count -= len;
  removed.rep_->root = first;
  removed.rep_->count = len;
  return removed;
}

SStringList SStringList::Splice(int off) {
  return off < 0 || off >= Count() ? Splice(off, 0) : Splice(off, Count() - off);
}

SStringList SStringList::Splice(int off, int len, const SStringList& repl) {
  // It may be this very list. NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
  const SStringList given(repl);
  SStringList removed = Splice(off, len);
  Insert(given, off);
  return removed;
}

void SStringList::Unique() {
  if (Count() < 2) return;
  _MakeUnique();
  SStringItem* kept = rep_->root;
  for (SStringItem* item = kept->next; item != rep_->root;) {
    SStringItem* const next = item->next;
    if (kept->value == item->value) {
      _Remove(item);
    } else {
      kept = item;
    }
    item = next;
  }
}

void SStringList::Debug(int level) const {
  std::ostream& out = StandardError();
  if (!Defined()) {
    out.write("Undefined\n", 10);
    return;
  }
  const std::string head = "Number of Links: " + std::to_string(rep_->links) +
                           "\nNumber of Items: " + std::to_string(rep_->count) +
                           "\nRoot node:       " + PointerText(rep_->root) +
                           "\nFlags:           " + std::to_string(rep_->flags) + "\n";
  out.write(head.data(), static_cast<std::streamsize>(head.size()));
  if (level == 0) return;
  const SStringItem* item = rep_->root;
  for (int n = Count(); n > 0; --n, item = item->next) {
    item->Debug(level);
    out.put('\n');
  }
}

void SStringList::_Create() { rep_ = NewRep(); }

void SStringList::DestroyItem::operator()(SStringItem* item) const noexcept {
  item->~SStringItem();
  SmallBlocks::Give(item, kBlocks);
}

SStringList::OwnItem SStringList::_MakeItem(SString value) {
  return OwnItem(::new (SmallBlocks::Take(kBlocks)) SStringItem(std::move(value)));
}

bool SStringList::_MakeUnique() {
  if (rep_ == &kMovedFrom) {
    *this = SStringList();  // shared with nobody, so as undefined as it was
  } else if (rep_->links > 1) {
    SStringList mine;
    mine._Define();
    mine._Push(*this);
    std::swap(rep_, mine.rep_);
  }
  return true;
}

SStringItem* SStringList::_FindItem(int i) {
  return const_cast<SStringItem*>(std::as_const(*this)._FindItem(i));
}

const SStringItem* SStringList::_FindItem(int i) const {
  if (i < 0 || i >= Count()) return nullptr;
  const SStringItem* item = rep_->root;
  if (i > Count() / 2) {
    for (int n = Count() - i; n > 0; --n) item = item->prev;
  } else {
    for (; i > 0; --i) item = item->next;
  }
  return item;
}

int SStringList::_Push(const SString& s) { return _Push(_MakeItem(s)); }

int SStringList::_Push(OwnItem item) {
  rep_->count = CheckedLength(std::int64_t{rep_->count} + 1);
  _Define();
  if (rep_->root == nullptr) {
    rep_->root = item.release();
  } else {
    Link(rep_->root->prev, item.get());
    Link(item.release(), rep_->root);
  }
  return rep_->count;
}

int SStringList::_Push(const SStringList& other) {
  SStringList copies;
  for (const SString& element : other) copies._Push(element);
  if (other.Defined()) _Define();
  _Take(copies, Count());
  return Count();
}

void SStringList::_Take(SStringList& other, int pos) {
  if (other.Count() == 0) return;
  const int sum = CheckedLength(std::int64_t{Count()} + other.Count());
  SStringListRep& from = *other.rep_;
  if (rep_->root == nullptr) {
    rep_->root = from.root;
  } else {
    SStringItem* const behind = pos == Count() ? rep_->root : _FindItem(pos);
    SStringItem* const last = from.root->prev;
    Link(behind->prev, from.root);
    Link(last, behind);
    if (pos == 0) rep_->root = from.root;
  }
  _Define();
  rep_->count = sum;
  from.root = nullptr;
  from.count = 0;
}

void SStringList::_TakeUndefined(std::int64_t n, int pos) {
  SStringList undefined;
  for (; n > 0; --n) undefined._Push(SString());
  _Take(undefined, pos);
}

void SStringList::_Remove(SStringItem* item) {
  if (item == rep_->root) rep_->root = item->next;
  if (--rep_->count == 0) rep_->root = nullptr;
  DestroyItem()(item);
}

void SStringList::_Reverse(SStringItem* first, SStringItem* last, int n) {
  for (n /= 2; n > 0; --n, first = first->next, last = last->prev) _SwapSStrings(first, last);
}

void SStringList::_Sort(SStringItem* first, int n) {
  std::vector<SortKey> keys;
  keys.reserve(static_cast<std::size_t>(n));
  SStringItem* item = first;
  for (int i = 0; i < n; ++i, item = item->next) keys.push_back({0, 0, &item->value});
  if (!SortByWords(keys)) return;
  std::vector<SString> sorted;
  sorted.reserve(keys.size());
  for (const SortKey& key : keys) sorted.push_back(*key.string);
  item = first;
  for (SString& string : sorted) {
    swap(item->value, string);
    item = item->next;
  }
}

std::int64_t SStringList::_TotalSize() const {
  std::int64_t total = 0;
  for (const SString& element : *this) total += element.Length();
  return total;
}

void SStringList::_Free() noexcept {
  if (rep_->links == SStringListRep::kPinned || --rep_->links > 0) return;
  DestroyItems(*rep_);
  SmallBlocks::Give(rep_, kBlocks);
}

int Length(const SStringList& list) {
  std::int64_t total = 0;
  for (const SString& element : list) total += element.Length();
  return static_cast<int>(std::min<std::int64_t>(total, std::numeric_limits<int>::max()));
}

std::ostream& operator<<(std::ostream& os, SStringList list) {
  for (const SString& element : std::as_const(list)) element.Write(os);
  return os;
}

std::istream& operator>>(std::istream& is, SStringList& list) {
  list.Reset();
  for (;;) {
    SString line;
    line.ReadLine(is);  // what was read before a failure counts, so its result does not
    if (line.Length() == 0 || line == '\n') return is;
    list.Push(line);
  }
}

SStringList BaseName(const SStringList& list, const SString& suffix) {
  return Changed(list, [&](const SString& element) { return BaseName(element, suffix); });
}

SStringList LowerCase(const SStringList& list) {
  return Changed(list, [](SString element) { return element.LowerCase(); });
}

SStringList UpperCase(const SStringList& list) {
  return Changed(list, [](SString element) { return element.UpperCase(); });
}

}  // namespace mailhearth
