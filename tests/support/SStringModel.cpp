#include "support/SStringModel.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "support/CFormat.h"
#include "support/SStringPeek.h"

inline namespace mailhearth {

namespace {

constexpr std::size_t kMostAside = 64;
constexpr std::size_t kLongest = 4096;  // longer ones are started anew

// The size rule, counted out.
int RoomFor(std::size_t n) {
  int room = 8;
  while (static_cast<std::size_t>(room) <= n) room *= 2;
  return room;
}

bool Less(const std::string& a, const std::string& b) {
  for (std::size_t i = 0; i < a.size() && i < b.size(); ++i) {
    const auto x = static_cast<unsigned char>(a[i]), y = static_cast<unsigned char>(b[i]);
    if (x != y) return x < y;
  }
  return a.size() < b.size();
}

}  // namespace

std::shared_ptr<SStringModel::Rep> SStringModel::NewRep(std::string bytes) {
  const int room = RoomFor(bytes.size());
  return std::make_shared<Rep>(Rep{true, std::move(bytes), room});
}

void SStringModel::Reallocate(Pair& pair, std::size_t n) {
  if (pair.model.use_count() > 1) {
    pair.model = std::make_shared<Rep>(Rep{true, pair.model->bytes, RoomFor(n)});
  } else if (static_cast<std::size_t>(pair.model->allocated) <= n) {
    pair.model->allocated = RoomFor(n);
  }
  pair.model->defined = true;
}

void SStringModel::Assign(Pair& pair, std::string bytes) {
  Reallocate(pair, bytes.size());
  pair.model->bytes = std::move(bytes);
}

void SStringModel::Append(Pair& pair, const std::string& bytes) {
  if (bytes.empty()) return;
  const std::string sum = pair.model->bytes + bytes;
  Reallocate(pair, sum.size());
  pair.model->bytes = sum;
}

char SStringModel::RandomByte() {
  constexpr std::string_view kBytes("ab@.\0\n\xC8\xFF", 8);
  return kBytes[static_cast<std::size_t>(choose_(static_cast<int>(kBytes.size())))];
}

std::string SStringModel::RandomBytes(int most) {
  std::string bytes;
  for (int n = choose_(most + 1); n > 0; --n) bytes += RandomByte();
  return bytes;
}

std::string SStringModel::RandomText(int most) {
  std::string text = RandomBytes(most);
  std::erase(text, '\0');
  return text;
}

std::string SStringModel::Rebuild(Pair& pair) {
  switch (choose_(8)) {
    case 0:
      pair = {SString(), std::make_shared<Rep>()};
      return "default";
    case 1: {
      const std::string text = RandomText(40);
      pair = {SString(text.c_str()), NewRep(text)};
      return "from text";
    }
    case 2: {
      const std::string bytes = RandomBytes(40);
      pair = {SString(bytes.data(), static_cast<int>(bytes.size())), NewRep(bytes)};
      return "from bytes";
    }
    case 3: {
      const char c = RandomByte();
      const int n = choose_(40) - 2;
      pair = {SString(c, n), NewRep(std::string(static_cast<std::size_t>(n < 0 ? 0 : n), c))};
      return "fill";
    }
    case 4: {
      const int value = choose_(1 << 30) - (1 << 29);
      pair = {SString(value), NewRep(CFormat("%d", value))};
      return "from int";
    }
    case 5: {
      const double value = (choose_(1 << 30) - (1 << 29)) / 1e5;
      pair = {SString(value), NewRep(CFormat("%.16g", value))};
      return "from double";
    }
    case 6: {
      const std::string bytes = RandomBytes(20);
      auto* const rep = new SStringRep{new char[24], static_cast<int>(bytes.size()), 0, 24};
      bytes.copy(rep->buffer, bytes.size());
      rep->buffer[bytes.size()] = '\0';
      pair = {SString(rep), NewRep(bytes)};
      pair.model->allocated = 24;
      pair.model->adopted = true;
      return "adopt";
    }
    default: {
      const double value = choose_(1 << 20) / 64.0;
      pair.real = value;
      pair.model = NewRep(CFormat("%.16g", value));
      return "assign double";
    }
  }
}

std::string SStringModel::EditInPlace(Pair& pair) {
  const auto change = [&](auto edit) {
    Reallocate(pair, pair.model->bytes.size());
    edit(pair.model->bytes);
  };
  const auto mapBytes = [](std::string& bytes, char from, char to, int by) {
    for (char& c : bytes) c = static_cast<char>(c >= from && c <= to ? c + by : c);
  };
  switch (choose_(4)) {
    case 0: {
      const bool any = !pair.model->bytes.empty();
      const int expected = any ? static_cast<unsigned char>(pair.model->bytes.back()) : 0;
      if (pair.real.Chop() != expected) return "chop gives another byte";
      if (any) change([](std::string& bytes) { bytes.pop_back(); });
      return "chop";
    }
    case 1:
      pair.real.LowerCase();
      change([&](std::string& bytes) { mapBytes(bytes, 'A', 'Z', 32); });
      return "lower case";
    case 2:
      pair.real.UpperCase();
      change([&](std::string& bytes) { mapBytes(bytes, 'a', 'z', -32); });
      return "upper case";
    default:
      pair.real.Reverse();
      change([](std::string& bytes) { std::reverse(bytes.begin(), bytes.end()); });
      return "reverse";
  }
}

std::string SStringModel::Replace(Pair& pair, const Pair& other) {
  const int length = pair.real.Length();
  const int start = choose_(length + 4) - 2, count = choose_(length + 4) - 2;
  const std::string with = other.model->bytes;
  if (!pair.model->defined) {
    pair.real.Segment(start, count) = other.real;
    pair.model = other.model;
    return "replace undefined";
  }
  const int from = std::min(std::max(start, 0), length);
  const int until = std::max(from, std::min(start + count, length));
  std::string bytes = pair.model->bytes;
  bytes.replace(static_cast<std::size_t>(from), static_cast<std::size_t>(until - from), with);
  const bool inPlace = pair.model.use_count() == 1 && (&pair != &other || with.empty()) &&
                       pair.model->allocated > static_cast<int>(bytes.size());
  pair.real.Segment(start, count) = other.real;
  if (inPlace) {
    pair.model->bytes = bytes;
  } else {
    const bool keeps = pair.model.use_count() == 1 && pair.model->adopted;
    pair.model = NewRep(bytes);
    pair.model->adopted = keeps;
  }
  return "replace";
}

std::string SStringModel::Edit(Pair& pair) {
  Pair& other = pairs_[static_cast<std::size_t>(choose_(static_cast<int>(pairs_.size())))];
  switch (choose_(15)) {
    case 0:
    case 1:
      pair.real = other.real;
      pair.model = other.model;
      return "share";
    case 2: {
      const std::string text = RandomText(40);
      pair.real = text.c_str();
      Assign(pair, text);
      return "assign text";
    }
    case 3: {
      const char* const part = other.real.Data() + choose_(other.real.Length() + 1);
      const std::string text = part;
      pair.real = part;
      Assign(pair, text);
      return "assign a part";
    }
    case 4: {
      const char c = RandomByte();
      pair.real = c;
      Assign(pair, {c});
      return "assign byte";
    }
    case 5: {
      const std::string bytes = other.model->bytes;
      pair.real += other.real;
      Append(pair, bytes);
      return "append string";
    }
    case 6: {
      const char* const part = other.real.Data() + choose_(other.real.Length() + 1);
      const std::string text = part;
      pair.real += part;
      Append(pair, text);
      return "append a part";
    }
    case 7:
    case 8:
      for (int n = choose_(20); n > 0; --n) {
        const char c = RandomByte();
        pair.real += c;
        Append(pair, {c});
      }
      return "append bytes";
    case 9: {
      Pair sum{pair.real + other.real, pair.model};
      Append(sum, other.model->bytes);
      // A sum is no handle on what somebody else made.
      if (sum.model == pair.model && sum.model->adopted) {
        const bool defined = sum.model->defined;
        sum.model = defined ? NewRep(sum.model->bytes) : std::make_shared<Rep>();
      }
      pair = sum;
      return "add";
    }
    case 10:
      SStringPeek::Undef(pair.real);
      if (pair.model.use_count() == 1) {
        *pair.model = {false, "", 0, pair.model->adopted};
      } else {
        pair.model = std::make_shared<Rep>();
      }
      return "undefine";
    case 11:
      return EditInPlace(pair);
    case 12:
      return Replace(pair, other);
    case 13: {
      SString moved = std::move(pair.real);
      pair.real = std::move(moved);
      return "move";
    }
    default:
      return Rebuild(pair);
  }
}

std::string SStringModel::Compare(const Pair& pair) {
  const Pair& other = pairs_[static_cast<std::size_t>(choose_(static_cast<int>(pairs_.size())))];
  const std::string &a = pair.model->bytes, &b = other.model->bytes;
  if ((pair.real == other.real) != (a == b)) return "==";
  if ((pair.real < other.real) != Less(a, b)) return "<";
  if ((pair.real > other.real) != Less(b, a)) return ">";
  const std::string text = b.c_str();
  if ((pair.real == text.c_str()) != (a == text)) return "== text";
  if ((pair.real < text.c_str()) != Less(a, text)) return "< text";
  if ((pair.real > text.c_str()) != Less(text, a)) return "> text";
  if (!b.empty()) {
    const std::size_t first = a.find(b), last = a.rfind(b);
    if (pair.real.Index(other.real) != (first == a.npos ? -1 : static_cast<int>(first))) {
      return "first index";
    }
    if (pair.real.RIndex(other.real) != (last == a.npos ? -1 : static_cast<int>(last))) {
      return "last index";
    }
  }
  const int i = choose_(100) - 50;
  const int at = i < 0 ? i + static_cast<int>(a.size()) : i;
  const bool inside = at >= 0 && at < static_cast<int>(a.size());
  if (pair.real[i] != (inside ? a[static_cast<std::size_t>(at)] : '\0')) return "index";
  return "";
}

std::string SStringModel::Difference() const {
  const auto differs = [](const Pair& pair) -> std::string {
    if (const char* const flaw = Flaw(pair.real); *flaw != '\0') return flaw;
    if (pair.real.Defined() != pair.model->defined) return "definedness";
    if (pair.real.View() != pair.model->bytes) return "bytes";
    const SStringRep& rep = SStringPeek::Rep(pair.real);
    if (rep.allocated != pair.model->allocated) return "room";
    return rep.links == pair.model.use_count() ? "" : "links";
  };
  for (const Pair& pair : pairs_) {
    if (std::string what = differs(pair); !what.empty()) return what;
  }
  for (const Pair& pair : aside_) {
    if (std::string what = differs(pair); !what.empty()) return what + " of a copy kept aside";
  }
  return "";
}

std::string SStringModel::Step() {
  Pair& pair = pairs_[static_cast<std::size_t>(choose_(static_cast<int>(pairs_.size())))];
  if (pair.model->bytes.size() > kLongest) pair = {SString(), std::make_shared<Rep>()};
  if (choose_(8) == 0) {
    if (aside_.size() == kMostAside) aside_.clear();
    aside_.push_back(pair);
  }
  const std::string step = Edit(pair);
  if (const std::string what = Difference(); !what.empty()) return step + ": " + what;
  return Compare(pair);
}

}  // namespace mailhearth
