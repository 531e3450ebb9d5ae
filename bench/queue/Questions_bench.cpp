// A question asked and answered by two processes that wait for each other, beside the same
// exchange by bare calls on texts that are there already.

#include <benchmark/benchmark.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <string>

#include "Bare.h"
#include "queue/SRequest.h"

namespace {

constexpr int kSeconds = 10;

// A process that does some work until it is killed.
class Peer {
 public:
  template <class Work>
  explicit Peer(Work work) : pid_(::fork()) {
    if (pid_ < 0) std::abort();
    if (pid_ == 0) {
      for (;;) work();
    }
  }
  ~Peer() {
    ::kill(pid_, SIGKILL);
    ::waitpid(pid_, nullptr, 0);
  }
  Peer(const Peer&) = delete;
  Peer& operator=(const Peer&) = delete;

 private:
  pid_t pid_;
};

// Returns the text of a datagram; empty when none comes.
std::string Take(int fd) {
  std::array<char, 1000> buffer;
  const int length = BareReceive(fd, buffer.data(), buffer.size(), kSeconds);
  return length < 0 ? "" : std::string(buffer.data(), static_cast<std::size_t>(length));
}

void AnswerQuestion(int fd) {
  const std::string text = Take(fd);
  SControl record(SString(text.substr(0, text.find('\n')).c_str()));
  if (text.empty() || !record.Read()) return;
  SRequest request(record);
  request["Quota:"] = "1000000";
  static_cast<void>(request.Answer());  // the asker shows whether it came
}

void Ask(benchmark::State& state) {
  const QueueDir dir;
  int port = 0;
  const int fd = BareSocket(&port);
  ::setenv("DispatchSocket", std::to_string(port).c_str(), 1);
  ::setenv("DispatchKey", "secret", 1);
  {
    const Peer peer([&] { AnswerQuestion(fd); });
    for (auto _ : state) {
      SControl question;
      question["Mailbox:"] = "joe";
      SRequest request(question);
      if (!request.Ask("Quota", kSeconds) || request.Get("Quota:").Count() != 1) {
        state.SkipWithError("no answer");
      }
    }
  }
  ::close(fd);
}

constexpr char kQuestion[] =
    "Mailbox: joe\nFunction: Quota\nControl-Type: Request\nPriority: 3\n"
    "Return-Path: 40000\nTrace: bench\n";

void AskBare(benchmark::State& state) {
  const QueueDir dir;
  int port = 0;
  const int fd = BareSocket(&port);
  const std::string record = dir.Path() + "/record";
  const std::string header = dir.Path() + "/messages/header";  // which a question does not have
  const std::string body = dir.Path() + "/messages/body";
  {
    const Peer peer([&] {
      const int to = std::atoi(Take(fd).c_str());
      std::string text;
      if (!BareRead(record, text)) return;
      text += "Quota: 1000000\nTrace: bench\n";
      BareReplace(dir.Path(), text, Sync::kMapping);
      const int answer = BareSocket(nullptr);
      BareSend(answer, to, "0");
      ::close(answer);
    });
    for (auto _ : state) {
      int mine = 0;
      const int socket = BareSocket(&mine);
      bool ok = BareReplace(dir.Path(), kQuestion, Sync::kMapping);
      const int notify = BareSocket(nullptr);
      ok = ok && BareSend(notify, port, std::to_string(mine) + "\nsecret\nQuota\nRequest\n3");
      ::close(notify);
      ok = ok && Take(socket) == "0";
      ::close(socket);
      std::string text;
      ok = ok && BareRead(record, text) && text.size() > sizeof kQuestion;
      ok = BareRemove(record) && !BareRemove(header) && !BareRemove(body) && ok;
      if (!ok) state.SkipWithError("no answer");
    }
  }
  ::close(fd);
}

BENCHMARK(Ask)->Name("ask/mailhearth")->Arg(0)->UseRealTime();
BENCHMARK(AskBare)->Name("ask/bare")->Arg(0)->UseRealTime();

}  // namespace
