// A slow and obvious model of SString, played against the real one: random operations
// on a handful of handles, each compared with the model afterwards in bytes,
// definedness, room and number of sharers.

#ifndef MAILHEARTH_TESTS_SUPPORT_SSTRINGMODEL_H
#define MAILHEARTH_TESTS_SUPPORT_SSTRINGMODEL_H

#include <array>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "strings/SString.h"

inline namespace mailhearth {

// Hands out the next of a series of choices, from 0 to `below` - 1.
using Choose = std::function<int(int below)>;

class SStringModel {
 public:
  explicit SStringModel(Choose choose) : choose_(std::move(choose)) {}

  // Takes one step and compares all handles.
  // Returns "" or what differs, with the step that led there.
  std::string Step();

 private:
  struct Rep {
    bool defined = false;
    std::string bytes;
    int allocated = 0;
    bool adopted = false;  // made elsewhere
  };

  // A string and what it ought to be. The model's handles share as the real ones do,
  // so the use count of `rep` is the number of links.
  struct Pair {
    SString real;
    std::shared_ptr<Rep> model = std::make_shared<Rep>();
  };

  static std::shared_ptr<Rep> NewRep(std::string bytes);
  static void Reallocate(Pair& pair, std::size_t n);
  static void Assign(Pair& pair, std::string bytes);
  static void Append(Pair& pair, const std::string& bytes);

  std::string RandomBytes(int most);
  std::string RandomText(int most);  // without NUL
  char RandomByte();

  std::string Edit(Pair& pair);
  std::string EditInPlace(Pair& pair);
  std::string Replace(Pair& pair, const Pair& other);
  std::string Rebuild(Pair& pair);
  std::string Compare(const Pair& pair);
  [[nodiscard]] std::string Difference() const;

  Choose choose_;
  std::array<Pair, 8> pairs_;
  std::vector<Pair> aside_;  // copies that nobody edits
};

}  // namespace mailhearth

#endif  // MAILHEARTH_TESTS_SUPPORT_SSTRINGMODEL_H
