// SStringList::Grep. A test is read into a GrepTest first and applied to the elements then.

#include <ostream>
#include <string>
#include <string_view>
#include <utility>

#include "../lists/SStringList.h"
#include "../strings/Characters.h"
#include "../strings/StandardError.h"
#include "../system/FileStatus.h"
#include "GrepError.h"
#include "PatternOptions.h"
#include "PatternStore.h"
#include "Replacement.h"
#include "SRegex.h"
#include "Searches.h"

inline namespace mailhearth {

namespace {

// What GrepError knows.
enum Code { kNoTest = 1, kUnknownTest = 2, kIncomplete = 3 };

struct GrepTest {
  enum Kind { kNone, kMatch, kSubstitution, kFile };

  Kind kind = kNone;
  bool negate = false;
  char letter = '\0';  // of a file test
  std::string pattern, replacement, options;
};

// Reads a test. Everything it does not understand is reported and passed over.
class TestReader {
 public:
  explicit TestReader(const SString& field) : field_(field), rest_(field.View()) {}

  GrepTest Read();

 private:
  bool _ReadKind(GrepTest& test);
  void _ReadExpression(GrepTest& test);
  std::string _ReadUpTo(char delimiter);

  char _Take() {
    const char c = rest_.front();
    rest_.remove_prefix(1);
    return c;
  }

  const SString field_;
  std::string_view rest_;
};

GrepTest TestReader::Read() {
  GrepTest test;
  while (!_ReadKind(test)) {
    if (rest_.empty()) {
      GrepError(kNoTest, field_);
      return test;
    }
  }
  if (test.kind != GrepTest::kFile) _ReadExpression(test);
  return test;
}

// Reads on by one step; returns whether the kind is known now. A match or substitution has
// its delimiter at hand then.
bool TestReader::_ReadKind(GrepTest& test) {
  if (rest_.empty()) return false;
  if (rest_.front() == '/') {
    test.kind = GrepTest::kMatch;
    return true;
  }
  switch (_Take()) {
    case ' ':
    case '\t':
      break;
    case '!':
      test.negate = !test.negate;
      break;
    case 'm':
      test.kind = GrepTest::kMatch;
      break;
    case 's':
      test.kind = GrepTest::kSubstitution;
      break;
    case '-':
      if (!rest_.empty() && IsLetter(rest_.front())) {
        test.kind = GrepTest::kFile;
        test.letter = _Take();
        break;
      }
      [[fallthrough]];
    default:
      GrepError(kUnknownTest, field_);
  }
  return test.kind != GrepTest::kNone;
}

void TestReader::_ReadExpression(GrepTest& test) {
  if (rest_.empty()) {
    GrepError(kIncomplete, field_);
    return;
  }
  const char delimiter = _Take();
  test.pattern = _ReadUpTo(delimiter);
  if (test.kind == GrepTest::kSubstitution) test.replacement = _ReadUpTo(delimiter);
  test.options = rest_;
}

// Reads up to the next delimiter that no backslash precedes, and passes over that.
std::string TestReader::_ReadUpTo(char delimiter) {
  std::string text;
  while (!rest_.empty()) {
    const char c = _Take();
    if (c == delimiter) break;
    if (c == '\\' && rest_.empty()) {
      GrepError(kIncomplete, field_);
      break;
    }
    text += c;
    if (c == '\\') text += _Take();
  }
  return text;
}

using FilePredicate = int (*)(const SString& path);

// Returns what the letter of a file test asks; null if there is no such test.
FilePredicate PredicateOf(char letter) {
  switch (letter) {
    case 'd':
      return IsDirectory;
    case 'e':
      return FileExists;
    case 'f':
      return IsRegular;
    case 'r':
      return IsReadable;
    case 'w':
      return IsWriteable;
    case 'x':
      return IsExecutable;
    default:
      return nullptr;
  }
}

// The elements of a list, by whether they have passed.
struct Sorted {
  SStringList accepted, rejected;

  Sorted() {
    accepted.Reset();
    rejected.Reset();
  }

  void Push(const SString& element, bool passed) { (passed ? accepted : rejected).Push(element); }
};

void TestFiles(const SStringList& list, char letter, Sorted& sorted) {
  const FilePredicate predicate = PredicateOf(letter);
  if (predicate == nullptr) {
    if (list.Count() > 0) StandardError().write("Grep: invalid file test\n", 24);
    return;
  }
  for (const SString& path : list) sorted.Push(path, predicate(path) != 0);
}

// A match or substitution test, ready for the elements.
class ElementTest {
 public:
  // Both arguments must outlive it.
  ElementTest(const SRegex& re, const GrepTest& test)
      : re_(re),
        substitutes_(test.kind == GrepTest::kSubstitution),
        global_(HasOption(test.options.c_str(), kGlobal)),
        replacement_(test.replacement) {}

  // Returns whether the element passes; a substitution changes one that does.
  bool operator()(SString& element) const {
    const SString subject(element);
    Searches searches(re_, subject);
    if (!substitutes_) return searches.Find();
    SString made = ReplaceMatches(replacement_, global_, searches);
    if (searches.Any()) element = std::move(made);
    return searches.Any();
  }

 private:
  const SRegex& re_;
  const bool substitutes_, global_;
  const Replacement replacement_;
};

}  // namespace

SStringList SStringList::Grep(const SRegex& re, int keep) const {
  if (!Defined() || !re.OK()) return {};
  SStringList kept;
  kept.Reset();
  for (const SString& element : *this) {
    if (re.HasMatch(element, 0) == (keep != 0)) kept.Push(element);
  }
  return kept;
}

SStringList SStringList::Grep(const SString& test, SStringList* rejected) {
  // It may be an element of a list that is about to change.
  const SString field(test);  // NOLINT(performance-unnecessary-copy-initialization)
  if (rejected != nullptr) rejected->Undef();
  if (!Defined()) return {};
  _MakeUnique();
  const GrepTest read = TestReader(field).Read();
  Sorted sorted;
  if (read.kind == GrepTest::kFile) {
    TestFiles(*this, read.letter, sorted);
  } else if (read.kind != GrepTest::kNone) {
    const CompiledPattern pattern(read.pattern, read.options.c_str());
    if (!pattern.Expression().OK()) return {};
    const ElementTest passes(pattern.Expression(), read);
    SStringItem* item = rep_->root;
    for (int n = Count(); n > 0; --n, item = item->next) {
      const bool passed = passes(item->value);  // and has changed it, perhaps
      sorted.Push(item->value, passed);
    }
  }
  if (read.negate) std::swap(sorted.accepted, sorted.rejected);
  if (rejected != nullptr) *rejected = std::move(sorted.rejected);
  return std::move(sorted.accepted);
}

}  // namespace mailhearth
