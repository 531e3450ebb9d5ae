#include "queue/SRequest.h"

#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "queue/Queue.h"
#include "support/Clock.h"
#include "support/CountedNew.h"
#include "support/FailEachAllocation.h"
#include "support/FailNthCall.h"
#include "support/Files.h"
#include "support/OrdinaryUser.h"
#include "support/Text.h"

namespace {

namespace fs = std::filesystem;

using Names = std::vector<std::string>;

constexpr double kLong = 30;  // seconds; no answer is that late

// Returns the id of a question of this process in the first second of 1970.
std::string FirstId() { return "19700101000000." + std::to_string(::getpid()); }

// Stops the clock in that second.
class FirstSecond {
 public:
  FirstSecond() { clockStandIn = 0; }
  ~FirstSecond() { clockStandIn.reset(); }
  FirstSecond(const FirstSecond&) = delete;
  FirstSecond& operator=(const FirstSecond&) = delete;
};

// A queue whose dispatcher is a peer of the test's.
class Exchange : public Queue {
 public:
  Exchange() { Set("DispatchSocket", std::to_string(dispatcher.Port())); }

  // Takes a notification. Returns its first line, the id; empty when none comes.
  [[nodiscard]] std::string TakeId() const {
    const std::optional<std::string> text = dispatcher.Take();
    return text ? text->substr(0, text->find('\n')) : "";
  }

  // Returns the port in the record of a question.
  [[nodiscard]] int PortOf(const std::string& id) const {
    const std::string text = ReadText(*this / "control/" + id + "-Control");
    const std::string field = "\nReturn-Path: ";
    const std::size_t at = text.find(field);
    return at == text.npos ? 0 : std::atoi(text.c_str() + at + field.size());
  }

  // Answers questions as a module does, until it is killed.
  [[nodiscard]] bool AnswerAll() const {
    for (;;) {
      const std::string id = TakeId();
      SControl record(Text(id));
      if (id.empty() || !record.Read()) continue;
      Set("ModuleName", "quota");
      SRequest request(record);
      request["Quota:"] = "100";
      static_cast<void>(request.Answer());  // the asker shows whether it came
    }
  }

  Peer dispatcher;
};

SRequest Question() {
  SControl record;
  record["Mailbox:"] = "joe";
  return SRequest(record);
}

TEST(SRequest, TakesOverIdFieldsAndWhetherItWasRead) {
  const Queue queue;
  queue.Put("elsewhere-Control", "A: 1\nTrace: x\nA: 2\n");
  SControl record(Text(queue / "elsewhere-Control"));
  ASSERT_EQ(record.Read(), 1);
  const SModule module("other", "/c/", "/d/");
  record.SetModule(&module);
  record["Undefined:"];
  SRequest request(record);
  EXPECT_EQ(request.GetControlFilename(), Text(queue / "control/elsewhere-Control"));
  EXPECT_EQ(request.Keys(), (SStringList{"A:", "Trace:"}));
  EXPECT_EQ(request.Get("A:"), (SStringList{"1", "2"}));
  EXPECT_EQ(request.Loaded(), 1);
  request.AddTrace();
  EXPECT_EQ(request.Get("Trace:"), (SStringList{"x", "router"}));
  EXPECT_EQ(SRequest(SControl()).Loaded(), 0);
  EXPECT_EQ(SRequest(SControl()).GetControlFilename(), Text(queue / "control/-Control"));
  SRequest copy(request);
  copy["A:"] = "3";
  EXPECT_EQ(request.Get("A:").Count(), 2);
}

TEST(Ask, WritesNotifiesAndReadsTheAnswer) {
  const Exchange exchange;
  const FirstSecond clock;
  const std::string id = FirstId(), file = "control/" + id + "-Control";
  Child peer([&] {
    const bool told = exchange.dispatcher.Take() == id + "\nsecret\nQuota\nRequest\n3";
    const int port = exchange.PortOf(id);
    const std::string expected =
        "Mailbox: joe\nFunction: Quota\nControl-Type: Request\n"
        "Priority: 3\nReturn-Path: " +
        std::to_string(port) + "\nTrace: router\n";
    const bool asked = ReadText(exchange / file) == expected;
    const bool alone = exchange.Files() == Names{file};
    exchange.Put(file, "Quota: 100\n");
    exchange.dispatcher.Send(port, "0");
    return told && asked && alone;
  });
  {
    const NoDescriptorLeft check;
    SRequest request = Question();
    const RecordCalls recorded;
    EXPECT_EQ(request.Ask("Quota", kLong), 1);
    const Names& calls = recorded.Calls();
    const auto received = std::find(calls.begin(), calls.end(), "recv");
    ASSERT_GE(calls.end() - received, 3);
    EXPECT_EQ(Names(received, received + 3), (Names{"recv", "close", "open"}));
    EXPECT_EQ(request.Keys(), SStringList("Quota:"));
    EXPECT_EQ(request.Get("Quota:"), SStringList("100"));
    EXPECT_EQ(request.Loaded(), 1);
    EXPECT_EQ(request.GetFilename(), Text(id));
  }
  EXPECT_TRUE(peer.Succeeds());
  EXPECT_EQ(exchange.Files(), Names{});
}

TEST(Ask, GetsWhatAnswerGives) {
  const Exchange exchange;
  const Child peer([&] { return exchange.AnswerAll(); });
  for (int i = 0; i < 20; ++i) {
    SRequest request = Question();
    EXPECT_EQ(request.Ask("Quota", kLong), 1);
    EXPECT_EQ(request.Get("Quota:"), SStringList("100"));
    EXPECT_EQ(request.Get("Mailbox:"), SStringList("joe"));
    EXPECT_EQ(request.Get("Trace:"), (SStringList{"router", "quota"}));
    EXPECT_EQ(exchange.Files(), Names{});
  }
}

TEST(Ask, KeepsAPriority) {
  const Exchange exchange;
  for (const char* const priority : {"1", ""}) {
    SRequest request = Question();
    request["Priority:"] = {priority, "9"};
    EXPECT_EQ(request.Ask("Quota", 0), 0);
    EXPECT_EQ(request.Get("Priority:"), (SStringList{priority, "9"}));
  }
  SRequest request = Question();
  request["Priority:"].Reset();
  request["Function:"] = {"a", "b"};
  request["Control-Type:"] = {"c", "d"};
  request["Return-Path:"] = {"e", "f"};
  EXPECT_EQ(request.Ask(request["Function:"][1], 0), 0);
  EXPECT_EQ(request.Get("Priority:"), SStringList("3"));
  EXPECT_EQ(request.Get("Function:"), SStringList("b"));
  EXPECT_EQ(request.Get("Control-Type:"), SStringList("Request"));
  EXPECT_EQ(request.Get("Return-Path:").Count(), 1);
}

// Asks a peer that sends these datagrams, and checks the result and that nothing is left.
void CheckAnswers(const std::vector<std::string>& datagrams, int ok, int error) {
  const Exchange exchange;
  Child peer([&] {
    const std::string id = exchange.TakeId();
    const int port = exchange.PortOf(id);
    for (const std::string& datagram : datagrams) exchange.dispatcher.Send(port, datagram);
    return port > 0;
  });
  {
    const NoDescriptorLeft check;
    SRequest request = Question();
    errno = 0;
    EXPECT_EQ(request.Ask("Quota", kLong), ok);
    EXPECT_EQ(errno, error);
  }
  EXPECT_TRUE(peer.Succeeds());
  EXPECT_EQ(exchange.Files(), Names{});
}

TEST(Ask, AnAnswerIsOneByte) {
  for (const std::size_t length : {0U, 2U, 5U, 6U, 65'000U}) {
    SCOPED_TRACE(length);
    CheckAnswers({std::string(length, '0'), "0"}, 0, EBADMSG);
  }
  CheckAnswers({"0"}, 1, 0);
  CheckAnswers({"x"}, 1, 0);
  CheckAnswers({std::string(1, '\0')}, 1, 0);
  CheckAnswers({"0", "0", "00"}, 1, 0);
}

TEST(Ask, WithoutAnAnswerEndsInTime) {
  constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();
  struct Row {
    double limit;
    int error;
  };
  constexpr Row kRows[] = {{0, ETIMEDOUT}, {0.05, ETIMEDOUT}, {-0.5, EINVAL},
                           {-1, EINVAL},   {-1e300, EINVAL},  {kNotANumber, EINVAL}};
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.limit);
    const Exchange exchange;
    const NoDescriptorLeft check;
    SRequest request = Question();
    EXPECT_EQ(request.Ask("Quota", row.limit), 0);
    EXPECT_EQ(errno, row.error);
    EXPECT_NE(exchange.dispatcher.Take(0), std::nullopt) << "the dispatcher was told";
    EXPECT_EQ(exchange.Files(), Names{});
  }
}

TEST(Ask, TakesLimitsOfAnyLength) {
  for (const double limit : {1e9, 1e12, 1e300, std::numeric_limits<double>::infinity()}) {
    SCOPED_TRACE(limit);
    const Exchange exchange;
    const Child peer([&] { return exchange.AnswerAll(); });
    EXPECT_EQ(Question().Ask("Quota", limit), 1);
  }
}

TEST(Ask, AnAnswerThatComesTooLateIsNotTaken) {
  const Exchange exchange;
  const FirstSecond clock;
  SRequest first = Question();
  EXPECT_EQ(first.Ask("Quota", 0), 0);
  const std::string path = (first.Get("Return-Path:")).Get(0).Data();
  exchange.dispatcher.Send(std::stoi(path), "0");
  EXPECT_EQ(Question().Ask("Quota", 0.05), 0);
  EXPECT_EQ(errno, ETIMEDOUT);
  EXPECT_EQ(exchange.Files(), Names{});
}

// Handles a signal that ends a wait, as long as it lives.
class Interruption {
 public:
  Interruption() {
    struct sigaction action = {};
    action.sa_handler = [](int) {};
    action.sa_flags = SA_RESTART;
    if (::sigaction(SIGUSR1, &action, &before_) != 0) std::abort();
  }
  ~Interruption() { ::sigaction(SIGUSR1, &before_, nullptr); }
  Interruption(const Interruption&) = delete;
  Interruption& operator=(const Interruption&) = delete;

  // Sends the signal to this object's maker, of whom the caller is a child, as long as there
  // is such a file: the first one may come before the wait.
  void SendWhile(const std::string& file) const {
    while (fs::exists(file) && ::getppid() == maker_ && ::kill(maker_, SIGUSR1) == 0) {
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
  }

 private:
  const pid_t maker_ = ::getpid();
  struct sigaction before_ = {};
};

TEST(Ask, TheRecordOfAnAnswerThatComesTooLateStays) {
  const Interruption interruption;
  const Exchange exchange;
  const FirstSecond clock;
  const std::string file = "control/" + FirstId() + "-Control";
  Child peer([&] {
    SControl record(Text(exchange.TakeId()));
    if (!record.Read()) return false;
    interruption.SendWhile(exchange / file);  // until nobody waits any more
    return SRequest(record).Answer() == 1;
  });
  EXPECT_EQ(Question().Ask("Quota", kLong), 0);
  EXPECT_EQ(errno, EINTR);
  EXPECT_TRUE(peer.Succeeds());
  EXPECT_EQ(exchange.Files(), Names{file});
}

TEST(Ask, FailsWhereTheDispatcherCannotBeTold) {
  const Exchange exchange;
  const NoDescriptorLeft check;
  exchange.Set("DispatchKey", "");
  EXPECT_EQ(Question().Ask("Quota", kLong), 0);
  EXPECT_EQ(errno, EINVAL);
  exchange.Set("DispatchKey", "secret");
  for (const char* const port : {"70000", "0", ""}) {
    exchange.Set("DispatchSocket", port);
    EXPECT_EQ(Question().Ask("Quota", kLong), 0);
    EXPECT_EQ(errno, EINVAL);
  }
  EXPECT_EQ(exchange.Files(), Names{});
}

TEST(Ask, FailsWhereTheRecordCannotBeWritten) {
  const Exchange exchange;
  const NoDescriptorLeft check;
  fs::remove(exchange / "control");
  EXPECT_EQ(Question().Ask("Quota", kLong), 0);
  EXPECT_EQ(errno, ENOENT);
  EXPECT_EQ(exchange.dispatcher.Take(0), std::nullopt);
}

TEST(Ask, FailsInAFullControlDirectory) {
  const Exchange exchange;
  const std::string control = exchange / "control";
  if (::mount("none", control.c_str(), "tmpfs", 0, "size=4k,nr_inodes=1") != 0) {
    GTEST_SKIP() << "only root mounts a small disk";
  }
  {
    const NoDescriptorLeft check;
    EXPECT_EQ(Question().Ask("Quota", kLong), 0);
    EXPECT_EQ(errno, ENOSPC);
    EXPECT_EQ(exchange.Files(), Names{});
  }
  EXPECT_EQ(exchange.dispatcher.Take(0), std::nullopt);
  EXPECT_EQ(::umount2(control.c_str(), MNT_DETACH), 0);
}

TEST(Ask, FailsInAControlDirectoryThatIsReadOnly) {
  const Exchange exchange;
  fs::permissions(exchange / "", fs::perms(0755));
  fs::permissions(exchange / "control", fs::perms(0555));
  EXPECT_TRUE(AsOrdinaryUser(
      [](const SString&) {
        const int before = OpenDescriptors();
        const bool refused = !Question().Ask("Quota", kLong) && errno == EACCES;
        return refused && OpenDescriptors() == before;
      },
      SString()));
  EXPECT_EQ(exchange.Files(), Names{});
  EXPECT_EQ(exchange.dispatcher.Take(0), std::nullopt);
}

TEST(Ask, FailsWhereTheRecordIsGoneWhenTheAnswerComes) {
  const Exchange exchange;
  Child peer([&] {
    const std::string id = exchange.TakeId();
    const int port = exchange.PortOf(id);
    fs::remove(exchange / "control/" + id + "-Control");
    exchange.dispatcher.Send(port, "0");
    return true;
  });
  EXPECT_EQ(Question().Ask("Quota", kLong), 0);
  EXPECT_EQ(errno, ENOENT);
}

TEST(Ask, ASignalThatIsHandledEndsTheWait) {
  const Interruption interruption;
  const Exchange exchange;
  const NoDescriptorLeft check;
  Child peer([&] {
    const std::string id = exchange.TakeId();
    interruption.SendWhile(exchange / "control/" + id + "-Control");
    return !id.empty();
  });
  EXPECT_EQ(Question().Ask("Quota", kLong), 0);
  EXPECT_EQ(errno, EINTR);
  EXPECT_TRUE(peer.Succeeds());
  EXPECT_EQ(exchange.Files(), Names{});
}

TEST(Ask, ASignalThatIsIgnoredDoesNot) {
  struct sigaction action = {}, before = {};
  action.sa_handler = SIG_IGN;
  ASSERT_EQ(::sigaction(SIGUSR2, &action, &before), 0);
  const Exchange exchange;
  Child peer([&] {
    const std::string id = exchange.TakeId();
    const int port = exchange.PortOf(id);
    for (int i = 0; i < 5; ++i) {
      ::kill(::getppid(), SIGUSR2);
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    exchange.dispatcher.Send(port, "0");
    return true;
  });
  EXPECT_EQ(Question().Ask("Quota", kLong), 1);
  EXPECT_TRUE(peer.Succeeds());
  ::sigaction(SIGUSR2, &before, nullptr);
}

TEST(Ask, EveryCallMayFail) {
  struct Row {
    const char* function;
    int n;
    int ok;
  };
  constexpr Row kRows[] = {{"socket", 1, 0},    {"bind", 1, 0},  {"getsockname", 1, 0},
                           {"open", 1, 0},      {"msync", 1, 0}, {"rename", 1, 0},
                           {"open", 2, 1},      {"fsync", 1, 1}, {"socket", 2, 0},
                           {"sendto", 1, 0},    {"ppoll", 1, 0}, {"recv", 1, 0},
                           {"open", 3, 0},      {"fstat", 1, 0}, {"read", 1, 0},
                           {"ftruncate", 1, 0}, {"close", 1, 1}, {"close", 2, 1},
                           {"close", 3, 1},     {"close", 4, 1}, {"munmap", 1, 0}};
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.function);
    SCOPED_TRACE(row.n);
    // A queue of its own: an answer that nobody waited for is written back later.
    const Exchange exchange;
    const Child peer([&] { return exchange.AnswerAll(); });
    const NoDescriptorLeft check;
    SRequest request = Question();
    const FailNthCall fault(row.function, row.n, EIO);
    EXPECT_EQ(request.Ask("Quota", kLong), row.ok);
    if (!row.ok) {
      EXPECT_EQ(errno, EIO);
    }
    EXPECT_TRUE(fault.Fired());
    if (row.ok) {
      EXPECT_EQ(exchange.Files(), Names{});
    }
  }
}

TEST(Ask, AnAnswerCountsAlsoWhereItsRecordCannotBeRemoved) {
  const Exchange exchange;
  const FirstSecond clock;
  const Child peer([&] { return exchange.AnswerAll(); });
  const FailNthCall fault("unlink", 1, EIO);
  SRequest request = Question();
  EXPECT_EQ(request.Ask("Quota", kLong), 1);
  EXPECT_EQ(request.Get("Quota:"), SStringList("100"));
  EXPECT_TRUE(fault.Fired());
  EXPECT_EQ(exchange.Files(), Names{"control/" + FirstId() + "-Control"});
}

// Whoever finds the record gone finds the port gone, too.
TEST(Ask, ClosesItsSocketBeforeItRemovesTheRecord) {
  struct Row {
    const char* name;
    const char* function;  // that fails; "" for none
    int n;
    const char* answer;
    double limit;
    const char* key = "secret";
  };
  constexpr Row kRows[] = {{"answered", "", 1, "0", kLong},
                           {"too long an answer", "", 1, "00", kLong},
                           {"too late", "", 1, nullptr, 0},
                           {"no limit", "", 1, nullptr, -1},
                           {"no key", "", 1, nullptr, kLong, ""},
                           {"no socket to notify by", "socket", 2, nullptr, kLong},
                           {"not notified", "sendto", 1, nullptr, kLong},
                           {"no waiting", "ppoll", 1, nullptr, kLong},
                           {"no receiving", "recv", 1, "0", kLong},
                           {"no record to read", "open", 3, "0", kLong}};
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.name);
    const Exchange exchange;
    exchange.Set("DispatchKey", row.key);
    const Child peer([&] {
      const std::string id = exchange.TakeId();
      if (row.answer != nullptr) exchange.dispatcher.Send(exchange.PortOf(id), row.answer);
      return true;
    });
    const NoDescriptorLeft check;
    SRequest request = Question();
    const FailNthCall fault(row.function, *row.function == '\0' ? 1000 : row.n, EIO);
    const RecordCalls recorded;
    EXPECT_EQ(request.Ask("Quota", row.limit), std::string(row.name) == "answered");
    const Names& calls = recorded.Calls();
    const auto removal = std::find(calls.begin(), calls.end(), "stat");
    EXPECT_NE(removal, calls.end());
    EXPECT_EQ(std::count(removal, calls.end(), "close"), 0);
    EXPECT_EQ(exchange.Files(), Names{});
  }
}

TEST(Ask, LeavesNoRecordWhereItFails) {
  for (const char* const function : {"sendto", "ppoll", "recv", "socket"}) {
    SCOPED_TRACE(function);
    const Exchange exchange;  // nobody answers
    const NoDescriptorLeft check;
    Child peer([&] {
      const std::string id = exchange.TakeId();
      exchange.dispatcher.Send(exchange.PortOf(id), "0");
      return true;
    });
    const FailNthCall fault(function, std::string(function) == "socket" ? 2 : 1, ENOBUFS);
    EXPECT_EQ(Question().Ask("Quota", kLong), 0);
    EXPECT_EQ(errno, ENOBUFS);
    EXPECT_EQ(exchange.Files(), Names{});
  }
}

TEST(Ask, WithoutMemoryLeavesNothingOpenAndNoRecord) {
  int left = 0, removing = 0;
  for (int n = 0;; ++n) {
    SCOPED_TRACE(n);
    const Exchange exchange;
    Child peer([&] {
      for (;;) {
        const int port = exchange.PortOf(exchange.TakeId());
        exchange.dispatcher.Send(port, "0");
      }
      return true;
    });
    const NoDescriptorLeft check;
    SRequest request = Question();
    const bool failed = FailsWithoutMemory(n, [&] { return request.Ask("Quota", kLong); });
    if (!exchange.Files().empty()) ++left;
    if (!failed) {
      const AllocationCount count;
      request.RemoveMessage();
      removing = count.Made();
      break;
    }
  }
  EXPECT_LE(left, removing) << "only where the removal itself finds no memory";
}

TEST(Answer, WritesThenSendsOneByte) {
  const Queue queue;
  const NoDescriptorLeft check;
  const Peer asker;
  queue.Put("control/id-Control",
            "Return-Path: " + std::to_string(asker.Port()) + "\nReturn-Path: 1\nTrace: router\n");
  queue.Set("ModuleName", "quota");
  SControl record("id");
  ASSERT_EQ(record.Read(), 1);
  SRequest request(record);
  request["Quota:"] = "100";
  const RecordCalls recorded;
  EXPECT_EQ(request.Answer(), 1);
  EXPECT_EQ(asker.Take(), "0");
  EXPECT_EQ(asker.Take(0), std::nullopt);
  EXPECT_EQ(ReadText(queue / "control/id-Control"),
            "Return-Path: " + std::to_string(asker.Port()) +
                "\nReturn-Path: 1\nQuota: 100\nTrace: router\nTrace: quota\n");
  const Names& calls = recorded.Calls();
  const auto sent = std::find(calls.begin(), calls.end(), "sendto");
  const auto synced = std::find(calls.begin(), calls.end(), "fsync " + (queue / "control"));
  EXPECT_LT(synced - calls.begin(), sent - calls.begin()) << "the record is in place before";
}

TEST(Answer, NeedsARecordThatWasRead) {
  const Queue queue;
  SControl record("id");
  record["Return-Path:"] = "9";
  EXPECT_EQ(SRequest(record).Answer(), 0);
  EXPECT_EQ(errno, EINVAL);
  EXPECT_EQ(queue.Files(), Names{});
  ASSERT_EQ(record.Write(), 1);
  EXPECT_EQ(SRequest(record).Answer(), 1) << "or written";
}

TEST(Answer, SendsNothingWhereTheRecordCannotBeWritten) {
  const Queue queue;
  const NoDescriptorLeft check;
  const Peer asker;
  const std::string text = "Return-Path: " + std::to_string(asker.Port()) + '\n';
  queue.Put("control/id-Control", text);
  SControl record("id");
  ASSERT_EQ(record.Read(), 1);
  const FailNthCall fault("rename", 1, EIO);
  EXPECT_EQ(SRequest(record).Answer(), 0);
  EXPECT_EQ(errno, EIO);
  EXPECT_EQ(asker.Take(0), std::nullopt);
  EXPECT_EQ(queue.Files(), Names{"control/id-Control"});
  EXPECT_EQ(ReadText(queue / "control/id-Control"), text);
}

TEST(Answer, WithoutAPortRemovesTheMessage) {
  struct Row {
    const char* port;
    int ok;
  };
  constexpr Row kRows[] = {{nullptr, 0},   {"", 0},      {"0", 0},    {"-1", 0},       {"65536", 0},
                           {"70000", 0},   {"x", 0},     {"nan", 0},  {"0.9", 0},      {"1e30", 0},
                           {"65535.9", 1}, {"65535", 1}, {"9.9x", 1}, {"65535.999", 0}};
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.port);
    const Queue queue;
    const NoDescriptorLeft check;
    queue.Put("messages/id-Header", "");
    queue.Put("messages/id-Body", "");
    SControl record("id");
    if (row.port != nullptr) record["Return-Path:"] = row.port;
    ASSERT_EQ(record.Write(), 1);
    errno = 0;
    EXPECT_EQ(SRequest(record).Answer(), row.ok);
    EXPECT_EQ(errno, row.ok ? 0 : EINVAL);
    EXPECT_EQ(queue.Files().size(), row.ok ? 3u : 0u);
  }
}

TEST(Answer, EveryCallMayFail) {
  const Peer asker;
  for (int n = 1;; ++n) {
    SCOPED_TRACE(n);
    const Queue queue;
    SControl record("id");
    record["Return-Path:"] = SString(asker.Port());
    ASSERT_EQ(record.Write(), 1);
    SRequest request(record);
    const NoDescriptorLeft check;
    int ok = 0, error = 0;
    bool fired = false;
    {
      const FailNthCall fault("", n, EIO);
      ok = request.Answer();
      error = errno;
      fired = fault.Fired();
    }
    EXPECT_EQ(asker.Take(0).has_value(), ok == 1);
    EXPECT_EQ(queue.Files(), Names{"control/id-Control"});
    if (!ok) {
      EXPECT_EQ(error, EIO);
    }
    if (!fired) {
      EXPECT_EQ(ok, 1);
      EXPECT_GT(n, 13);
      break;
    }
  }
}

TEST(Answer, WithoutMemoryLeavesNothingOpen) {
  const Peer asker;
  for (int n = 0;; ++n) {
    SCOPED_TRACE(n);
    const Queue queue;
    SControl record("id");
    record["Return-Path:"] = SString(asker.Port());
    ASSERT_EQ(record.Write(), 1);
    SRequest request(record);
    const NoDescriptorLeft check;
    const bool thrown = FailAllocation(n, [&] { EXPECT_EQ(request.Answer(), 1); }).thrown;
    EXPECT_EQ(asker.Take(0).has_value(), !thrown);
    EXPECT_EQ(queue.Files(), Names{"control/id-Control"});
    if (!thrown) break;
  }
}

}  // namespace
