// What tests see of a list beyond its public face.

#ifndef MAILHEARTH_TESTS_SUPPORT_SSTRINGLISTPEEK_H
#define MAILHEARTH_TESTS_SUPPORT_SSTRINGLISTPEEK_H

#include <string>
#include <vector>

#include "lists/SStringList.h"

inline namespace mailhearth {

class SStringListPeek {
 public:
  static const SStringListRep& Rep(const SStringList& list) { return *list.rep_; }
  static bool Shares(const SStringList& a, const SStringList& b) { return a.rep_ == b.rep_; }
};

// Returns "" if the list keeps what its representation promises, else what is wrong.
inline const char* Flaw(const SStringList& list) {
  const SStringListRep& rep = SStringListPeek::Rep(list);
  if (rep.links < 1) return "no link";
  if (rep.flags != 0 && rep.flags != 1) return "stray flags";
  if ((rep.root == nullptr) != (rep.count == 0)) return "root and count disagree";
  const SStringItem* item = rep.root;
  for (int n = rep.count; n > 0; --n, item = item->next) {
    if (item->next->prev != item || item->prev->next != item) return "neighbours disagree";
  }
  return item == rep.root ? "" : "the ring does not close after `count` nodes";
}

inline SStringList DefinedEmpty() {
  SStringList list;
  list.Reset();
  return list;
}

// The elements as text, an undefined one as "(undefined)".
inline std::vector<std::string> Texts(const SStringList& list) {
  std::vector<std::string> texts;
  for (const SString& s : list) texts.emplace_back(s.Defined() ? s.View() : "(undefined)");
  return texts;
}

}  // namespace mailhearth

#endif  // MAILHEARTH_TESTS_SUPPORT_SSTRINGLISTPEEK_H
