// The text form of SNamedStringList. A value and the lines that go on with it are one piece
// of the text, so the reader finds where the piece ends and copies it once.

#include <algorithm>
#include <string_view>

#include "../strings/Characters.h"
#include "SNamedStringList.h"

inline namespace mailhearth {

namespace {

std::string_view LineEnd(const SNamedStringList& list) { return list.Crlf() != 0 ? "\r\n" : "\n"; }

// What is left of a text to read.
class Lines {
 public:
  Lines(std::string_view text, std::string_view end) : text_(text), end_(end) {}

  [[nodiscard]] bool AtEnd() const { return at_ >= text_.size(); }

  // Takes the next line, and all after it that begin with a blank or a tab. Returns them as
  // they stand, without the last line end.
  // Needs: not at the end.
  std::string_view TakeFolded() {
    const std::size_t start = at_;
    std::size_t end = _TakeLine();
    while (!AtEnd() && IsBlank(text_[at_])) end = _TakeLine();
    return text_.substr(start, end - start);
  }

  // The first line of what TakeFolded() returns.
  [[nodiscard]] std::string_view FirstOf(std::string_view folded) const {
    return folded.substr(0, folded.find(end_));
  }

 private:
  // Returns where the line ends.
  std::size_t _TakeLine() {
    const std::size_t end = std::min(text_.find(end_, at_), text_.size());
    at_ = end + end_.size();
    return end;
  }

  std::string_view text_, end_;
  std::size_t at_ = 0;
};

}  // namespace

SString& operator<<(SString& text, const SNamedStringList& list) {
  const std::string_view end = LineEnd(list);
  SString form;  // of its own: `text` may be a value of the list
  const auto append = [&](const SString& name, const SString& value) {
    form += name;
    form += ' ';
    form += value;
    form += end;
  };
  const SStringList names = list.Keys();
  for (const SString& name : names) {
    const SStringList values = list.Get(name);
    for (const SString& value : values) append(name, value);
    if (values.Count() == 0) append(name, {});
  }
  if (text.Length() > 0) return text += form;
  return form.Length() > 0 ? text = form : text;
}

const SString& operator>>(const SString& text, SNamedStringList& list) {
  const SString kept(text);  // it may be a value of the list
  list.Reset();
  Lines lines(kept.View(), LineEnd(list));
  std::string_view name;
  // The values of the name: a long one that many lines share is looked up once.
  SStringList* values = nullptr;
  while (!lines.AtEnd()) {
    std::string_view value = lines.TakeFolded();
    const std::size_t blank = lines.FirstOf(value).find(' ');
    if (blank != value.npos) {
      if (blank > 0 && value.substr(0, blank) != name) {
        name = value.substr(0, blank);
        values = nullptr;
      }
      value.remove_prefix(blank + 1);
    }
    if (values == nullptr) values = &list[name];
    values->Push(SString(value));
  }
  return text;
}

}  // namespace mailhearth
