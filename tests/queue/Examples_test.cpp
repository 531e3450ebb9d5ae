// The programs of examples/queue, as processes.

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include "queue/Queue.h"
#include "queue/SRequest.h"
#include "support/Files.h"
#include "support/Process.h"
#include "support/Text.h"

namespace {

using Names = std::vector<std::string>;

const std::string kPrograms = EXAMPLES_DIR;

TEST(Examples, OneCommandAsksAndPrintsTheAnswer) {
  const std::string run = std::string(EXAMPLES_SOURCE_DIR) + "/run";
  for (const auto& [text, answer] : {std::pair("Postmaster 2", "POSTMASTER 2"), {"", ""}}) {
    const Outcome outcome = RunCommand({{run, text}, {"EXAMPLES=" + kPrograms}, [] {}});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, std::string(answer) + "\n");
    EXPECT_EQ(outcome.error, "");
  }
}

// A queue with the dispatcher of the examples.
class Dispatched : public Queue {
 public:
  Dispatched() : dispatcher_([this] { return Become(); }) {
    ::close(pipe_.in);
    std::string port(16, '\0');
    port.resize(static_cast<std::size_t>(
        std::max<ssize_t>(0, ::read(pipe_.out, port.data(), port.size()))));
    ::close(pipe_.out);
    Set("DispatchSocket", port.substr(0, port.find('\n')));
  }

 private:
  struct Pipe {
    Pipe() {
      int ends[2];
      if (::pipe(ends) != 0) std::abort();
      out = ends[0];
      in = ends[1];
    }
    int out, in;
  };

  // Puts the dispatcher in the place of this process.
  bool Become() const {
    Set("DispatchSocket", "0");
    ::dup2(pipe_.in, STDOUT_FILENO);
    const std::string program = kPrograms + "/dispatcher", modules = kPrograms + "/modules";
    ::execl(program.c_str(), program.c_str(), modules.c_str(), nullptr);
    return false;
  }

  Pipe pipe_;  // made before the process
  Child dispatcher_;
};

SRequest Question(const char* text) {
  SControl record;
  record["Text:"] = text;
  return SRequest(record);
}

TEST(Examples, TheModuleAnswersWhatTheDispatcherHandsIt) {
  const Dispatched queue;
  for (const char* const text : {"joe", "a b  c", ""}) {
    SRequest request = Question(text);
    ASSERT_EQ(request.Ask("capitals", 30), 1);
    EXPECT_EQ(request.Get("Answer:"), SStringList(Text(text).UpperCase()));
    EXPECT_EQ(request.Get("Trace:"), (SStringList{"router", "capitals"}));
    EXPECT_EQ(queue.Files(), Names{});
  }
}

TEST(Examples, TheDispatcherStartsOnlyModulesAndOnlyForTheKey) {
  const Dispatched queue;
  for (const char* const function : {"missing", "..", "../capitals", "../ask", ""}) {
    SCOPED_TRACE(function);
    EXPECT_EQ(Question("joe").Ask(function, 0.1), 0);
    EXPECT_EQ(errno, ETIMEDOUT);
  }
  queue.Set("DispatchKey", "another");
  EXPECT_EQ(Question("joe").Ask("capitals", 0.1), 0);
  queue.Set("DispatchKey", "secret");
  const Peer peer;
  const int port = std::atoi(::getenv("DispatchSocket"));
  for (const std::string& bytes :
       {std::string(), std::string("\n\n\n\n"), std::string(65'507, '\n'),
        std::string("x\nsecret\ncapitals"), std::string(60'000, 'x')}) {
    peer.Send(port, bytes);
    // After each: two large ones at once may leave the socket no room for another.
    EXPECT_EQ(Question("joe").Ask("capitals", 30), 1) << "it still runs";
  }
}

}  // namespace
