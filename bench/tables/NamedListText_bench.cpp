// Reading and writing a record of twenty fields in the text form of SNamedStringList, beside
// a reader and a writer by hand on std::string: a vector of the fields in their order, and a
// hash table that finds the place of a name.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "tables/SNamedStringList.h"

namespace {

constexpr std::string_view kText =
    "Function: Deliver\n"
    "Message-Id: <20261121055109.GA12345@mail.example.org>\n"
    "Priority: normal\n"
    "Size: 48213\n"
    "Submitted: Sat, 21 Nov 2026 05:51:09 +0000\n"
    "Expires: Thu, 26 Nov 2026 05:51:09 +0000\n"
    "Attempts: 3\n"
    "Host-From: mx1.example.net\n"
    "Address-From: 192.0.2.1\n"
    "Protocol: ESMTP\n"
    "Sender: joe.public@example.net\n"
    "Recipient: postmaster@example.org\n"
    "Recipient: firstname.lastname+folder@department.mail.example.org\n"
    "Recipient: jane@example.org\n"
    "Host-To: mail.example.org\n"
    "Return-Options: headers\n"
    "Envelope-Id: QQ314159\n"
    "Body-Type: 8BITMIME\n"
    "Trace: router 1\n"
    "Trace: local 2\n"
    "Subject: Minutes of the meeting of the committee for the extension of the\n"
    "\tharbour, second part,\n"
    " with the annexes\n"
    "Last-Error: 451 4.7.1 Greylisting in action, please come back later\n"
    "Module: smtp\n";

struct Hash : std::hash<std::string_view> {
  using is_transparent = void;
};

// A record as it is written by hand for this text form.
class Record {
 public:
  using Values = std::vector<std::string>;
  using Field = std::pair<std::string, Values>;

  Values& operator[](std::string_view name) {
    const auto found = places_.find(name);
    if (found != places_.end()) return fields_[found->second].second;
    places_.emplace(name, fields_.size());
    return fields_.emplace_back(name, Values()).second;
  }
  [[nodiscard]] const std::vector<Field>& Fields() const { return fields_; }

 private:
  std::vector<Field> fields_;
  std::unordered_map<std::string, std::size_t, Hash, std::equal_to<>> places_;
};

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

Record Read(std::string_view text) {
  Record record;
  std::string_view name;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t first = std::min(text.find('\n', at), text.size());
    std::size_t end = first;  // of the lines that go on with this one
    while (end + 1 < text.size() && IsBlank(text[end + 1])) {
      end = std::min(text.find('\n', end + 1), text.size());
    }
    const std::size_t blank = text.substr(at, first - at).find(' ');
    if (blank != text.npos) {
      if (blank > 0) name = text.substr(at, blank);
      at += blank + 1;
    }
    record[name].emplace_back(text.substr(at, end - at));
    at = end + 1;
  }
  return record;
}

std::string Write(const Record& record) {
  std::size_t size = 0;
  for (const auto& [name, values] : record.Fields()) {
    for (const std::string& value : values) size += name.size() + value.size() + 2;
  }
  std::string text;
  text.reserve(size);
  for (const auto& [name, values] : record.Fields()) {
    for (const std::string& value : values) {
      text += name;
      text += ' ';
      text += value;
      text += '\n';
    }
  }
  return text;
}

SNamedStringList ReadOurs(const SString& text) {
  SNamedStringList list(1, 0);
  text >> list;
  return list;
}

bool Same(const SNamedStringList& ours, const Record& theirs) {
  const SStringList names = ours.Keys();
  const auto sameValues = [](const SStringList& values, const Record::Values& others) {
    return std::equal(values.begin(), values.end(), others.begin(), others.end());
  };
  return std::equal(names.begin(), names.end(), theirs.Fields().begin(), theirs.Fields().end(),
                    [&](const SString& name, const Record::Field& field) {
                      return name == field.first && sameValues(ours.Get(name), field.second);
                    });
}

// Wrong answers of either side spoil the run.
void Check(benchmark::State& state) {
  const SNamedStringList ours = ReadOurs(SString(kText));
  const Record theirs = Read(kText);
  SString text;
  text << ours;
  if (ours.Keys().Count() != 20 || !Same(ours, theirs) || text != kText || Write(theirs) != kText) {
    state.SkipWithError("wrong answer");
  }
}

void ReadRecord(benchmark::State& state) {
  const SString text(kText);
  Check(state);
  for (auto _ : state) {
    SNamedStringList list(1, 0);
    text >> list;
    benchmark::DoNotOptimize(list);
  }
}

void ReadRecordByHand(benchmark::State& state) {
  const std::string text(kText);
  Check(state);
  for (auto _ : state) {
    Record record = Read(text);
    benchmark::DoNotOptimize(record);
  }
}

void WriteRecord(benchmark::State& state) {
  const SNamedStringList list = ReadOurs(SString(kText));
  Check(state);
  for (auto _ : state) {
    SString text;
    text << list;
    benchmark::DoNotOptimize(text);
  }
}

void WriteRecordByHand(benchmark::State& state) {
  const Record record = Read(kText);
  Check(state);
  for (auto _ : state) {
    std::string text = Write(record);
    benchmark::DoNotOptimize(text);
  }
}

BENCHMARK(ReadRecord)->Name("read_record/mailhearth")->Arg(20);
BENCHMARK(ReadRecordByHand)->Name("read_record/by_hand")->Arg(20);
BENCHMARK(WriteRecord)->Name("write_record/mailhearth")->Arg(20);
BENCHMARK(WriteRecordByHand)->Name("write_record/by_hand")->Arg(20);

}  // namespace
