// SIndexString finds strings by integers of any size and sign: it serves as a sparse array of
// few entries. Entries are kept in insertion order and searched linearly, so every operation
// takes time proportional to their number.
//
//   SIndexString parts;
//   parts[1200] = "chunk";
//   SString none = parts.Get(7);                 // empty, and nothing is added
//   int* indexes = nullptr;
//   int n = parts.Keys(&indexes);                // 1; indexes[0] is 1200
//   delete[] indexes;
//
// Copyable and movable. A copy has its own entries, whose strings share their bytes until one
// of the two is edited; it has no spare room.

#ifndef MAILHEARTH_TABLES_SINDEXSTRING_H
#define MAILHEARTH_TABLES_SINDEXSTRING_H

#include <vector>

#include "../strings/Export.h"
#include "../strings/SString.h"

inline namespace mailhearth {

class MAILHEARTH_EXPORT SIndexString {
 public:
  static constexpr int AllocIncrem = 5;  // entries by which a full array grows

  // Returns the string at `index` for editing; adds a defined empty string when there is none.
  // Adding or deleting an entry invalidates references.
  SString& operator[](const int& index);

  // Returns the string at `index`, a defined empty string when there is none. Adds nothing.
  [[nodiscard]] SString Get(const int& index) const;

  // Returns the number of strings that are not empty. Unless `out` is null, *out becomes a new
  // array as long as there are entries. It begins with the indexes of those strings in
  // insertion order; the other elements are not set. The caller frees it with `delete[]`.
  int Keys(int** out = nullptr) const;

  // Removes the entry at `index`, if there is one. The capacity stays.
  void Delete(const int& index);

 private:
  friend class SIndexStringPeek;  // the tests' eye

  struct Slot {
    int index;
    SString value;
  };

  // Returns the position of the entry at `index`, -1 when there is none.
  [[nodiscard]] int _Search(const int& index) const;

  std::vector<Slot> slots_;
};

}  // namespace mailhearth

#endif  // MAILHEARTH_TABLES_SINDEXSTRING_H
