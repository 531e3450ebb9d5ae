// SIndexString finds a string by an integer, of any size and sign, for the few entries of a
// sparse array. They lie in the order in which they were added, and are searched from the
// first on: every operation takes time for as many as there are.
//
//   SIndexString parts;
//   parts[1200] = "chunk";
//   SString none = parts.Get(7);                 // empty, and nothing is added
//   int* indexes = nullptr;
//   int n = parts.Keys(&indexes);                // 1; indexes[0] is 1200
//   delete[] indexes;
//
// Copyable and movable. A copy has entries of its own, whose strings share their bytes until
// one of the two is edited; it takes no more room than it uses.

#ifndef MAILHEARTH_TABLES_SINDEXSTRING_H
#define MAILHEARTH_TABLES_SINDEXSTRING_H

#include <vector>

#include "../strings/Export.h"
#include "../strings/SString.h"

inline namespace mailhearth {

class MAILHEARTH_EXPORT SIndexString {
 public:
  static constexpr int AllocIncrem = 5;  // entries by which the room grows when it is used up

  // Returns the string at `index` for editing; a defined empty one is added where there is
  // none. References end when one is added or deleted.
  SString& operator[](const int& index);

  // Returns the string at `index`, a defined empty one where there is none. Adds nothing.
  [[nodiscard]] SString Get(const int& index) const;

  // Returns the number of strings that are not empty. Unless `out` is null, *out becomes a new
  // array with a place for every entry, which begins with the indexes of those strings in the
  // order in which they were added; the other places are not set. The caller frees it with
  // `delete[]`.
  int Keys(int** out = nullptr) const;

  // Removes the entry at `index`, if there is one. The room stays.
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
