// Random edits of a handful of lists, played on a plain model as well: a vector of texts
// behind a shared pointer for each representation.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "lists/SStringList.h"
#include "support/SStringListPeek.h"

namespace {

using Element = std::optional<std::string>;

struct Rep {
  bool defined = false;
  std::vector<Element> elements;
};

// A list and what it ought to be. Model handles share as the real ones do, so the use
// count of `model` is the number of links.
struct Pair {
  SStringList real;
  std::shared_ptr<Rep> model = std::make_shared<Rep>();
};

class Model {
 public:
  explicit Model(unsigned seed) : random_(seed) {}

  // Takes one step and compares all lists; returns "" or what differs.
  std::string Step() {
    const std::string step = Edit(Any());
    for (const Pair& pair : pairs_) {
      if (const std::string what = Difference(pair); !what.empty()) return step + ": " + what;
    }
    for (const Pair& pair : aside_) {
      if (const std::string what = Difference(pair); !what.empty())
        return step + ": aside, " + what;
    }
    return "";
  }

 private:
  int Below(int n) { return static_cast<int>(random_() % static_cast<unsigned>(n)); }
  Pair& Any() { return pairs_[static_cast<std::size_t>(Below(4))]; }

  Element RandomElement() {
    if (Below(8) == 0) return std::nullopt;
    return std::string(static_cast<std::size_t>(Below(3)), static_cast<char>('a' + Below(3)));
  }

  static SString Real(const Element& element) {
    return element ? SString(std::string_view(*element)) : SString();
  }

  // As the list detaches: what is detached is defined.
  static void Detach(Pair& pair) {
    if (pair.model.use_count() > 1) {
      pair.model = std::make_shared<Rep>(Rep{true, pair.model->elements});
    }
  }

  static void Append(Pair& pair, const std::vector<Element>& elements) {
    pair.model->elements.insert(pair.model->elements.end(), elements.begin(), elements.end());
    if (!elements.empty()) pair.model->defined = true;
  }

  static std::string Bytes(const Element& element) { return element.value_or(""); }

  std::string Edit(Pair& pair) {
    if (pair.model->elements.size() > 40) pair = Pair();
    if (Below(10) == 0) {
      if (aside_.size() > 30) aside_.clear();
      aside_.push_back(pair);
    }
    Pair& other = Any();
    const int size = static_cast<int>(pair.model->elements.size());
    const int i = Below(size + 4) - 2, n = Below(size + 3) - 1;
    const bool inside = i >= 0 && i < size;
    switch (Below(16)) {
      case 0:
        pair = other;
        return "share";
      case 1: {
        const Element element = RandomElement();
        EXPECT_EQ(pair.real.Push(Real(element)), size + 1);
        Detach(pair);
        Append(pair, {element});
        return "push";
      }
      case 2: {
        const std::vector<Element> given = other.model->elements;
        const bool defined = other.model->defined;
        pair.real.Push(other.real);
        Detach(pair);
        Append(pair, given);
        pair.model->defined = pair.model->defined || defined;
        return "push list";
      }
      case 3: {
        const SString popped = pair.real.Pop();
        Detach(pair);
        if (size == 0) return popped.Defined() ? "pop of nothing" : "pop";
        EXPECT_EQ(popped.View(), Bytes(pair.model->elements.back()));
        pair.model->elements.pop_back();
        return "pop";
      }
      case 4: {
        const SString shifted = pair.real.Shift();
        if (size == 0) return "shift of nothing";
        Detach(pair);
        EXPECT_EQ(shifted.View(), Bytes(pair.model->elements.front()));
        pair.model->elements.erase(pair.model->elements.begin());
        return "shift";
      }
      case 5:
        EXPECT_EQ(pair.real.Delete(i), inside);
        Detach(pair);
        if (inside) pair.model->elements.erase(pair.model->elements.begin() + i);
        return "delete";
      case 6: {
        if (i < 0) return "";
        const Element element = RandomElement();
        pair.real[i] = Real(element);
        Detach(pair);
        if (i >= size) {
          pair.model->elements.resize(static_cast<std::size_t>(i) + 1);
          pair.model->defined = true;
        }
        pair.model->elements[static_cast<std::size_t>(i)] = element;
        return "set";
      }
      case 7:
        return Insert(pair, other, i);
      case 8:
        return Splice(pair, i, n);
      case 9:
        pair.real.Reset();
        if (pair.model.use_count() > 1) pair.model = std::make_shared<Rep>();
        *pair.model = {true, {}};
        return "reset";
      case 10:
        pair.real.Undef();
        pair.model = std::make_shared<Rep>();
        return "undef";
      case 11:
        pair.real.Sort();
        if (size < 2) return "sort of few";
        Detach(pair);
        std::sort(pair.model->elements.begin(), pair.model->elements.end(),
                  [](const Element& a, const Element& b) { return Bytes(a) < Bytes(b); });
        return "sort";
      case 12:
        pair.real.Reverse();
        if (size < 2) return "reverse of few";
        Detach(pair);
        std::reverse(pair.model->elements.begin(), pair.model->elements.end());
        return "reverse";
      case 13: {
        pair.real.Unique();
        if (size < 2) return "unique of few";
        Detach(pair);
        auto& elements = pair.model->elements;
        elements.erase(
            std::unique(elements.begin(), elements.end(),
                        [](const Element& a, const Element& b) { return Bytes(a) == Bytes(b); }),
            elements.end());
        return "unique";
      }
      case 14: {
        pair.real.Chop();
        if (size == 0) return "chop of nothing";
        Detach(pair);
        for (Element& element : pair.model->elements) {
          if (element && !element->empty()) element->pop_back();
        }
        return "chop";
      }
      default: {
        Pair taken{std::move(pair.real), pair.model};
        pair.real = taken.real;
        return "move";
      }
    }
  }

  std::string Insert(Pair& pair, Pair& other, int i) {
    const std::vector<Element> given = other.model->elements;
    pair.real.Insert(other.real, i);
    Detach(pair);
    const int size = static_cast<int>(pair.model->elements.size());
    if (size == 0) {
      if (&pair != &other) pair.model = other.model;
      if (i > 0) {
        auto& elements = pair.model->elements;
        elements.insert(elements.begin(), static_cast<std::size_t>(i), Element());
        pair.model->defined = true;
      }
    } else if (i >= 0 && i <= size && !given.empty()) {
      pair.model->elements.insert(pair.model->elements.begin() + i, given.begin(), given.end());
      pair.model->defined = true;
    }
    return "insert";
  }

  std::string Splice(Pair& pair, int i, int n) {
    const SStringList removed = pair.real.Splice(i, n);
    Detach(pair);
    auto& elements = pair.model->elements;
    const int size = static_cast<int>(elements.size());
    if (i < 0 || n <= 0 || i + n > size) {
      EXPECT_FALSE(removed.Defined());
      EXPECT_EQ(removed.Count(), 0);
      return "splice outside";
    }
    const bool all = n == size;
    EXPECT_EQ(removed.Defined(), all && pair.model->defined);
    for (int k = 0; k < n; ++k) {
      EXPECT_EQ(removed.Get(k).View(), Bytes(elements[static_cast<std::size_t>(i + k)]));
    }
    elements.erase(elements.begin() + i, elements.begin() + i + n);
    if (all) pair.model->defined = true;
    return "splice";
  }

  std::string Difference(const Pair& pair) {
    if (const char* const flaw = Flaw(pair.real); *flaw != '\0') return flaw;
    if (pair.real.Defined() != pair.model->defined) return "definedness";
    if (pair.real.Count() != static_cast<int>(pair.model->elements.size())) return "count";
    std::size_t i = 0;
    for (const SString& s : pair.real) {
      if (s.View() != Bytes(pair.model->elements[i++])) return "elements";
    }
    return SStringListPeek::Rep(pair.real).links == pair.model.use_count() ? "" : "links";
  }

  std::mt19937 random_;
  std::array<Pair, 4> pairs_;
  std::vector<Pair> aside_;
};

TEST(SStringListModel, RandomEditsAgreeWithAModelAndCopiesKeptAsideStayAsTheyWere) {
  Model model(11);
  for (int step = 0; step < 150'000; ++step) ASSERT_EQ(model.Step(), "") << "step " << step;
}

}  // namespace
