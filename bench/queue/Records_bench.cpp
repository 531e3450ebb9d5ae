// A record replaced and read, beside the same system calls made plainly on a text that is
// there already. "write/fdatasync" writes and syncs as programs usually do, "write/unsynced"
// leaves all to the system: what it called written may be lost.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>

#include "Bare.h"
#include "queue/SControl.h"
#include "queue/SField.h"
#include "system/FileOperations.h"

namespace {

// A record whose text form has about so many bytes.
SField Record(const QueueDir& dir, std::int64_t size) {
  SField record(1, 0);
  record.PutFilename(SString((dir.Path() + "/record").c_str()));
  record["Function:"] = "Deliver";
  record["Priority:"] = "3";
  for (std::int64_t n = 30; n < size; n += 45) {
    record["To:"].Push(SString("someone.or.other@mail.example.org") +
                       SString(static_cast<long>(n)));
  }
  return record;
}

std::string TextOf(const SField& record) {
  SString text;
  text << record;
  return std::string(text.View());
}

void Write(benchmark::State& state) {
  const QueueDir dir;
  SField record = Record(dir, state.range(0));
  for (auto _ : state) {
    if (!record.Write()) state.SkipWithError("not written");
  }
  std::string text;
  if (!BareRead(dir.Path() + "/record", text) || text != TextOf(record)) {
    state.SkipWithError("wrong answer");
  }
}

template <Sync sync>
void BareWrite(benchmark::State& state) {
  const QueueDir dir;
  const std::string text = TextOf(Record(dir, state.range(0)));
  for (auto _ : state) {
    if (!BareReplace(dir.Path(), text, sync)) state.SkipWithError("not written");
  }
}

BENCHMARK(Write)->Name("write/mailhearth")->Arg(300)->Arg(30000)->UseRealTime();
BENCHMARK(BareWrite<Sync::kMapping>)->Name("write/bare")->Arg(300)->Arg(30000)->UseRealTime();
BENCHMARK(BareWrite<Sync::kFile>)->Name("write/fdatasync")->Arg(300)->Arg(30000)->UseRealTime();
BENCHMARK(BareWrite<Sync::kNone>)->Name("write/unsynced")->Arg(300)->Arg(30000)->UseRealTime();

// Reading a record, and the file alone.
void Read(benchmark::State& state) {
  const QueueDir dir;
  SField record = Record(dir, state.range(0));
  const SStringList before = record.Get("To:");
  if (!record.Write()) state.SkipWithError("not written");
  for (auto _ : state) {
    if (!record.Read()) state.SkipWithError("not read");
  }
  if (record.Get("To:") != before) state.SkipWithError("wrong answer");
}

void ReadAndParse(benchmark::State& state) {
  const QueueDir dir;
  SField record = Record(dir, state.range(0));
  if (!record.Write()) state.SkipWithError("not written");
  std::string text;
  for (auto _ : state) {
    if (!BareRead(dir.Path() + "/record", text)) state.SkipWithError("not read");
    SString(text) >> record;
  }
}

void ReadFile(benchmark::State& state) {
  const QueueDir dir;
  SField record = Record(dir, state.range(0));
  if (!record.Write()) state.SkipWithError("not written");
  const SString path = record.GetFilename();
  const std::string expected = TextOf(record);
  for (auto _ : state) {
    if (MapFileRead(path) != expected) state.SkipWithError("wrong answer");
  }
}

void ReadFileBare(benchmark::State& state) {
  const QueueDir dir;
  SField record = Record(dir, state.range(0));
  if (!record.Write()) state.SkipWithError("not written");
  const std::string path = dir.Path() + "/record", expected = TextOf(record);
  for (auto _ : state) {
    std::string text;
    if (!BareRead(path, text) || text != expected) state.SkipWithError("wrong answer");
  }
}

BENCHMARK(Read)->Name("read/mailhearth")->Arg(300)->Arg(30000)->UseRealTime();
BENCHMARK(ReadAndParse)->Name("read/bare+parse")->Arg(300)->Arg(30000)->UseRealTime();
BENCHMARK(ReadFile)->Name("read_file/mailhearth")->Arg(300)->Arg(30000)->UseRealTime();
BENCHMARK(ReadFileBare)->Name("read_file/bare")->Arg(300)->Arg(30000)->UseRealTime();

// Deferring a message; both rows move it back by a plain rename.
void Defer(benchmark::State& state) {
  const QueueDir dir;
  SControl record("id");
  if (!record.Write() || !record.Defer()) state.SkipWithError("not deferred");
  const std::string from = dir.Path() + "/deferred/bench/id-Control";
  const std::string to = dir.Path() + "/control/id-Control";
  for (auto _ : state) {
    if (std::rename(from.c_str(), to.c_str()) != 0) state.SkipWithError("not there");
    if (!record.Defer()) state.SkipWithError("not deferred");
  }
}

void DeferBare(benchmark::State& state) {
  const QueueDir dir;
  SControl record("id");
  if (!record.Write() || !record.Defer()) state.SkipWithError("not deferred");
  const std::string directory = dir.Path() + "/deferred/bench/";
  const std::string from = directory + "id-Control";
  const std::string to = dir.Path() + "/control/id-Control";
  for (auto _ : state) {
    if (std::rename(from.c_str(), to.c_str()) != 0) state.SkipWithError("not there");
    if (!BareIsDirectory(directory) || std::rename(to.c_str(), from.c_str()) != 0) {
      state.SkipWithError("not deferred");
    }
  }
}

BENCHMARK(Defer)->Name("defer/mailhearth")->Arg(0)->UseRealTime();
BENCHMARK(DeferBare)->Name("defer/bare")->Arg(0)->UseRealTime();

}  // namespace
