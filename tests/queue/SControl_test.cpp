#include "queue/SControl.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "queue/Queue.h"
#include "support/FailEachAllocation.h"
#include "support/FailNthCall.h"
#include "support/Files.h"
#include "support/OrdinaryUser.h"
#include "support/Text.h"

namespace {

namespace fs = std::filesystem;

using Names = std::vector<std::string>;

const Names kMessage = {"control/id-Control", "messages/id-Body", "messages/id-Header"};

// Makes the three files of the message "id".
void PutMessage(const Queue& queue, const std::string& control = "Function: Deliver\n") {
  queue.Put("control/id-Control", control);
  queue.Put("messages/id-Header", "header");
  queue.Put("messages/id-Body", "body");
}

TEST(SControl, NamesTheFilesOfAMessage) {
  const Queue queue;
  const SControl record("id");
  EXPECT_EQ(record.GetFilename(), "id");
  EXPECT_EQ(record.GetControlFilename(), Text(queue / "control/id-Control"));
  EXPECT_EQ(record.GetHeaderFilename(), Text(queue / "messages/id-Header"));
  EXPECT_EQ(record.GetBodyFilename(), Text(queue / "messages/id-Body"));
  EXPECT_EQ(record.Loaded(), 0);
  EXPECT_EQ(record.CaseSensitive(), 1u);
  EXPECT_EQ(record.Crlf(), 0u);
}

TEST(SControl, TellsPathsFromIds) {
  const Queue queue;
  const std::string in = (queue / "control") + "/";
  struct Row {
    const char* name;
    std::string path;
    const char* id;
  };
  const Row rows[] = {{"id", in + "id-Control", "id"},
                      {"/some/where/id-Control", "/some/where/id-Control", "id"},
                      {"/some/where/id", "/some/where/id", "id"},
                      {"a/id-Control", "a/id-Control", "id"},
                      {"a/-Control", "a/-Control", ""},
                      {"a/", "a/", ""},
                      {"/", "/", ""},
                      {"id-Control", in + "id-Control-Control", "id-Control"},
                      {"..", in + "..-Control", ".."},
                      {"", in + "-Control", ""}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    SControl record(row.name);
    EXPECT_EQ(record.GetControlFilename(), Text(row.path));
    EXPECT_EQ(record.GetFilename(), row.id);
    record.PutFilename("x");
    record.PutFilename(row.name);
    EXPECT_EQ(record.GetControlFilename(), Text(row.path));
  }
  EXPECT_EQ(SControl().GetControlFilename(), "");
  EXPECT_EQ(SControl().GetFilename(), "");
}

TEST(SControl, IsReadAndWrittenByItsId) {
  const Queue queue;
  const NoDescriptorLeft check;
  PutMessage(queue);
  SControl record;
  EXPECT_EQ(record.Read("missing"), 0);
  EXPECT_EQ(errno, ENOENT);
  EXPECT_EQ(record.Read("id"), 1);
  EXPECT_EQ(record.Get("Function:"), SStringList("Deliver"));
  EXPECT_EQ(record.Write(), 1);
  EXPECT_EQ(ReadText(queue / "control/id-Control"), "Function: Deliver\nTrace: router\n");
  EXPECT_EQ(record.Write("other"), 1);
  EXPECT_EQ(ReadText(queue / "control/other-Control"),
            "Function: Deliver\nTrace: router\nTrace: router\n");
  SField& field = record;
  EXPECT_EQ(field.Write("third"), 1);
  EXPECT_EQ(field.Read("third"), 1);
  EXPECT_EQ(field.GetFilename(), "third");
  EXPECT_EQ(record.GetTraceCount(), 3);
}

TEST(SControl, KeepsItsTraceLast) {
  const Queue queue;
  SControl record("id");
  EXPECT_EQ(record.GetTraceCount(), 0);
  record["Trace:"] = {"local", "router", "Router", "router "};
  record["Function:"] = "Deliver";
  record.AddTrace();
  EXPECT_EQ(record.Keys(), (SStringList{"Function:", "Trace:"}));
  EXPECT_EQ(record.Get("Trace:"), (SStringList{"local", "router", "Router", "router ", "router"}));
  EXPECT_EQ(record.GetTraceCount(), 2);
  EXPECT_EQ(record.Get("Trace:").Count(), 5) << "counting takes nothing away";
}

TEST(SControl, KeepsTheTraceOfAFailedWrite) {
  const Queue queue;
  SControl record("missing/id");
  EXPECT_EQ(record.Write(), 0);
  EXPECT_EQ(record.GetTraceCount(), 1);
  EXPECT_EQ(SControl().Write(), 0);
}

TEST(SControl, TakesItsDirectoriesFromTheEnvironmentOfItsTime) {
  const Queue queue;
  const SControl record("id");
  queue.Set("Mailhearth", "/elsewhere");
  EXPECT_EQ(record.GetHeaderFilename(), Text(queue / "messages/id-Header"));
  EXPECT_EQ(SControl("id").GetHeaderFilename(), "/elsewhere/messages/id-Header");
  ::unsetenv("Mailhearth");
  EXPECT_EQ(SControl("id").GetControlFilename(), "/control/id-Control");
}

TEST(SControl, TakesAModule) {
  const Queue queue;
  PutMessage(queue);
  fs::create_directory(queue / "c");
  SControl record("id");
  SModule module("local", Text(queue / "c/"), Text(queue / "d/"));
  record.SetModule(&module);
  EXPECT_EQ(record.GetControlFilename(), Text(queue / "control/id-Control")) << "not moved";
  record.PutFilename("id");
  ASSERT_EQ(record.Write(), 1);
  EXPECT_EQ(ReadText(queue / "c/id-Control"), "Trace: local\n");
  EXPECT_EQ(record.GetTraceCount(), 1);
  ASSERT_EQ(record.Defer(), 1);
  EXPECT_TRUE(fs::exists(queue / "d/local/id-Control"));
}

TEST(SControl, AnAssignmentTakesTheModuleToo) {
  const Queue queue;
  const SModule module("local", "/c/", Text(queue / "d/"));
  SControl record("id");
  record.SetModule(&module);
  record["A:"] = "1";
  SControl other;
  other = record;
  EXPECT_EQ(other.GetControlFilename(), Text(queue / "control/id-Control"));
  PutMessage(queue);
  EXPECT_EQ(other.Defer(), 1);
  EXPECT_TRUE(fs::exists(queue / "d/local/id-Control"));
  other.PutFilename("x");
  EXPECT_EQ(other.GetControlFilename(), "/c/x-Control");
  EXPECT_EQ(other.Get("A:"), SStringList("1"));
  other.AddTrace();
  EXPECT_EQ(other.Get("Trace:"), SStringList("local"));
  SControl copy(other);
  copy.AddTrace();
  EXPECT_EQ(copy.GetTraceCount(), 2);
  EXPECT_EQ(other.GetTraceCount(), 1);
}

TEST(SControl, AnAssignmentKeepsTheDirectoryOfMessages) {
  const Queue queue;
  const SControl record("id");
  queue.Set("Mailhearth", "/elsewhere");
  SControl other;
  other = record;
  EXPECT_EQ(other.GetControlFilename(), Text(queue / "control/id-Control"));
  EXPECT_EQ(other.GetHeaderFilename(), "/elsewhere/messages/id-Header");
}

// A record with a say of its own in what its id and its file are, which counts the calls of
// its own Read and Write.
class Renamed : public SControl {
 public:
  Renamed() : SNamedStringList(1, 0) {}
  using SControl::Read;
  using SControl::Write;
  [[nodiscard]] SString GetFilename() const override { return "to-" + SControl::GetFilename(); }
  void PutFilename(const SString& name) override { SControl::PutFilename(name + "-from"); }
  int Read() override { return ++reads; }
  int Write() override { return ++writes; }
  int reads = 10, writes = 20;
};

TEST(SControl, GoesByTheIdOfTheDerivedClass) {
  const Queue queue;
  const Peer dispatcher;
  queue.Set("DispatchSocket", std::to_string(dispatcher.Port()));
  Renamed record;
  EXPECT_EQ(record.Read("b"), 11);
  EXPECT_EQ(record.GetControlFilename(), Text(queue / "control/b-from-Control"));
  EXPECT_EQ(record.Write("a"), 21);
  EXPECT_EQ(record.GetControlFilename(), Text(queue / "control/a-from-Control"));
  EXPECT_EQ(record.GetHeaderFilename(), Text(queue / "messages/to-a-from-Header"));
  EXPECT_EQ(record.GetBodyFilename(), Text(queue / "messages/to-a-from-Body"));
  EXPECT_EQ(record.Notify(), 1);
  EXPECT_EQ(dispatcher.Take(), "to-a-from\nsecret\n\n\n");
  queue.Put("control/a-from-Control", "");
  queue.Put("messages/to-a-from-Header", "");
  queue.Put("messages/to-a-from-Body", "");
  EXPECT_EQ(record.Defer(), 1);
  EXPECT_EQ(record.RemoveMessage(), 1);
  EXPECT_EQ(queue.Files(), Names{"deferred/router/to-a-from-Control"});
}

TEST(Defer, MovesTheControlFile) {
  struct Row {
    const char* host;
    const char* to;
  };
  constexpr Row kRows[] = {{"", "deferred/router/id-Control"},
                           {"example.org", "deferred/router/example.org/id-Control"},
                           {"a/b", "deferred/router/a/b/id-Control"},
                           {"..", "deferred/id-Control"}};
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.host);
    const Queue queue;
    const NoDescriptorLeft check;
    const mode_t before = ::umask(0);
    PutMessage(queue);
    SControl record("id");
    record["Host-To:"] = {row.host, "second"};
    EXPECT_EQ(record.Defer(), 1);
    EXPECT_EQ(queue.Files(), (Names{row.to, "messages/id-Body", "messages/id-Header"}));
    EXPECT_EQ(record.GetControlFilename(), Text(queue / "control/id-Control"));
    struct stat status = {};
    ASSERT_EQ(::stat((queue / row.to).substr(0, (queue / row.to).rfind('/')).c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0770u);
    ::umask(before);
    EXPECT_EQ(record.Defer(), 0) << "it is not there any more";
    EXPECT_EQ(errno, ENOENT);
  }
}

TEST(Defer, PutsASubDirectoryInFrontAsItStands) {
  const Queue queue;
  PutMessage(queue);
  EXPECT_EQ(SControl("id").Defer("host"), 1);
  EXPECT_TRUE(fs::is_directory(queue / "deferred/router/host"));
  EXPECT_TRUE(fs::exists(queue / "deferred/router/hostid-Control"));
  PutMessage(queue);
  EXPECT_EQ(SControl("id").Defer("host/"), 1);
  EXPECT_TRUE(fs::exists(queue / "deferred/router/host/id-Control"));
  PutMessage(queue);
  EXPECT_EQ(SControl("id").Defer(SString()), 1);
  EXPECT_TRUE(fs::exists(queue / "deferred/router/id-Control"));
}

TEST(Defer, ADeferredRecordIsReadByItsPath) {
  const Queue queue;
  PutMessage(queue);
  ASSERT_EQ(SControl("id").Defer(), 1);
  SControl record(Text(queue / "deferred/router/id-Control"));
  EXPECT_EQ(record.Read(), 1);
  EXPECT_EQ(record.GetFilename(), "id");
  EXPECT_EQ(record.GetBodyFilename(), Text(queue / "messages/id-Body"));
}

TEST(Defer, LeavesTheFileWhereItWasWhenACallFails) {
  for (int n = 1;; ++n) {
    SCOPED_TRACE(n);
    const Queue queue;
    PutMessage(queue);
    SControl record("id");
    record["Host-To:"] = "example.org";
    const NoDescriptorLeft check;
    FailNthCall fault("", n, EACCES);
    const int ok = record.Defer();
    const int error = errno;
    if (!ok) {
      EXPECT_EQ(error, EACCES);
      EXPECT_EQ(queue.Files(), kMessage);
    } else {
      EXPECT_TRUE(fs::exists(queue / "deferred/router/example.org/id-Control"));
    }
    if (fault.Fired()) continue;
    EXPECT_EQ(ok, 1);
    EXPECT_GT(n, 4);
    break;
  }
}

TEST(Defer, FailsWhereAFileIsInTheWay) {
  const Queue queue;
  PutMessage(queue);
  queue.Put("deferred", "");
  EXPECT_EQ(SControl("id").Defer(), 0);
  EXPECT_EQ(errno, ENOTDIR);
}

TEST(RemoveMessage, RemovesWhatItMay) {
  struct Row {
    const char* name;
    bool read;
    Names there;
    int ok;
    Names left;
  };
  const Row rows[] = {
      {"read", true, kMessage, 1, {}},
      {"not read", false, kMessage, 1, {"control/id-Control"}},
      {"not read, all gone", false, {"control/id-Control"}, 1, {"control/id-Control"}},
      {"read, header and body gone", true, {"control/id-Control"}, 1, {}},
      {"only the body", true, {"control/id-Control", "messages/id-Body"}, 0, {}},
      {"only the header", true, {"control/id-Control", "messages/id-Header"}, 0, {}},
      {"no control", true, {"messages/id-Body", "messages/id-Header"}, 0, {}},
      {"read, all gone", true, {}, 0, {}}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    const Queue queue;
    PutMessage(queue);
    SControl record("id");
    if (row.read) {
      ASSERT_EQ(record.Read(), 1);
    }
    for (const std::string& file : kMessage) {
      if (std::count(row.there.begin(), row.there.end(), file) == 0) fs::remove(queue / file);
    }
    EXPECT_EQ(record.RemoveMessage(), row.ok);
    if (!row.ok) {
      EXPECT_EQ(errno, ENOENT);
    }
    EXPECT_EQ(queue.Files(), row.left);
  }
}

TEST(RemoveMessage, RemovesFromTheControlDirectoryWhereverItWasRead) {
  const Queue queue;
  PutMessage(queue);
  queue.Put("id-Control", "");
  SControl record(Text(queue / "id-Control"));
  ASSERT_EQ(record.Read(), 1);
  EXPECT_EQ(record.RemoveMessage(), 1);
  EXPECT_EQ(queue.Files(), Names{"id-Control"});
}

TEST(RemoveMessage, KeepsTheFirstError) {
  struct Row {
    int n;
    Names left;
    int ok;
  };
  const Row rows[] = {{1, {"control/id-Control"}, 0},
                      {2, {"messages/id-Header"}, 0},
                      {3, {"messages/id-Body"}, 0},
                      {4, {}, 1}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.n);
    const Queue queue;
    PutMessage(queue);
    SControl record("id");
    ASSERT_EQ(record.Read(), 1);
    const FailNthCall fault("unlink", row.n, EROFS);
    errno = 0;
    EXPECT_EQ(record.RemoveMessage(), row.ok);
    EXPECT_EQ(errno, row.ok ? 0 : EROFS);
    EXPECT_EQ(queue.Files(), row.left);
  }
}

TEST(RemoveMessage, TellsOfTheControlFileBeforeTheOthers) {
  const Queue queue;
  PutMessage(queue);
  SControl record("id");
  ASSERT_EQ(record.Read(), 1);
  fs::remove(queue / "control/id-Control");
  fs::remove(queue / "messages/id-Header");
  fs::create_directory(queue / "messages/id-Header");
  EXPECT_EQ(record.RemoveMessage(), 0);
  EXPECT_EQ(errno, ENOENT);
  EXPECT_EQ(queue.Files(), Names{});
}

TEST(RemoveMessage, EveryCallMayFail) {
  for (int n = 1;; ++n) {
    SCOPED_TRACE(n);
    const Queue queue;
    PutMessage(queue);
    SControl record("id");
    ASSERT_EQ(record.Read(), 1);
    const NoDescriptorLeft check;
    const FailNthCall fault("", n, EIO);
    const int ok = record.RemoveMessage();
    EXPECT_EQ(ok, queue.Files().empty() ? 1 : 0);
    if (!fault.Fired()) break;
  }
}

TEST(LinkMessage, LinksHeaderAndBody) {
  const Queue queue;
  const NoDescriptorLeft check;
  PutMessage(queue);
  EXPECT_EQ(SControl("id").LinkMessage("new"), 1);
  EXPECT_EQ(queue.Files(), (Names{"control/id-Control", "messages/id-Body", "messages/id-Header",
                                  "messages/new-Body", "messages/new-Header"}));
  EXPECT_TRUE(fs::equivalent(queue / "messages/id-Body", queue / "messages/new-Body"));
  EXPECT_TRUE(fs::equivalent(queue / "messages/id-Header", queue / "messages/new-Header"));
  EXPECT_EQ(SControl("id").LinkMessage("new"), 0);
  EXPECT_EQ(errno, EEXIST);
  EXPECT_EQ(SControl("missing").LinkMessage("x"), 0);
  EXPECT_EQ(errno, ENOENT);
}

TEST(LinkMessage, MakesBothLinksOrNone) {
  {
    const Queue queue;
    PutMessage(queue);
    queue.Put("messages/new-Body", "somebody else's");
    EXPECT_EQ(SControl("id").LinkMessage("new"), 0);
    EXPECT_EQ(errno, EEXIST);
    EXPECT_FALSE(fs::exists(queue / "messages/new-Header"));
    EXPECT_EQ(ReadText(queue / "messages/new-Body"), "somebody else's");
  }
  for (int n = 1;; ++n) {
    SCOPED_TRACE(n);
    const Queue queue;
    PutMessage(queue);
    const NoDescriptorLeft check;
    const FailNthCall fault("", n, EMLINK);
    const int ok = SControl("id").LinkMessage("new");
    if (ok) {
      EXPECT_EQ(queue.Files().size(), 5u);
    } else {
      EXPECT_EQ(errno, EMLINK);
      EXPECT_EQ(queue.Files(), kMessage);
    }
    if (!fault.Fired()) {
      EXPECT_EQ(ok, 1);
      break;
    }
  }
}

TEST(Notify, SendsTheseBytes) {
  const Queue queue;
  const NoDescriptorLeft check;
  const Peer dispatcher;
  queue.Set("DispatchSocket", std::to_string(dispatcher.Port()));
  SControl record("id");
  EXPECT_EQ(record.Notify(), 1);
  EXPECT_EQ(dispatcher.Take(), "id\nsecret\n\n\n");
  record["Function:"] = {"Deliver", "second"};
  record["Control-Type:"] = "Message";
  record["Priority:"] = "5";
  EXPECT_EQ(record.Notify(), 1);
  EXPECT_EQ(dispatcher.Take(), "id\nsecret\nDeliver\nMessage\n5");
  record["Function:"] = "";
  record["Priority:"].Undef();
  queue.Set("DispatchKey", "another key");
  const SControl path("/some/where/other-Control");
  EXPECT_EQ(record.Notify(), 1);
  EXPECT_EQ(dispatcher.Take(), "id\nanother key\n\nMessage\n");
  EXPECT_EQ(path.Notify(), 1);
  EXPECT_EQ(dispatcher.Take(), "other\nanother key\n\n\n");
  EXPECT_EQ(dispatcher.Take(0), std::nullopt);
  record["Function:"] =
      SString('x', 65'507 - static_cast<int>(sizeof "id\nanother key\n\nMessage\n") + 1);
  EXPECT_EQ(record.Notify(), 1);
  EXPECT_EQ(dispatcher.Take()->size(), 65'507u);
  record["Function:"][0] += 'x';
  EXPECT_EQ(record.Notify(), 0);
  EXPECT_EQ(errno, EMSGSIZE);
}

TEST(Notify, AFractionOfAPortIsCutOff) {
  const Queue queue;
  const Peer dispatcher;
  queue.Set("DispatchSocket", std::to_string(dispatcher.Port()) + ".5 and more");
  EXPECT_EQ(SControl("id").Notify(), 1);
  EXPECT_EQ(dispatcher.Take(), "id\nsecret\n\n\n");
}

TEST(Notify, WithoutAPortOrAKeySendsNothing) {
  const Queue queue;
  const NoDescriptorLeft check;
  const SControl record("id");
  const RecordCalls recorded;
  for (const char* const port :
       {"", "0", "-1", "0.9", "65537", "70000", "1e30", "nan", "x", "inf"}) {
    SCOPED_TRACE(port);
    queue.Set("DispatchSocket", port);
    errno = 0;
    EXPECT_EQ(record.Notify(), 0);
    EXPECT_EQ(errno, EINVAL);
  }
  queue.Set("DispatchSocket", "9");
  queue.Set("DispatchKey", "");
  EXPECT_EQ(record.Notify(), 0);
  EXPECT_EQ(errno, EINVAL);
  EXPECT_EQ(recorded.Calls(), Names{});
}

TEST(Notify, TriesThePortAboveTheLast) {
  const Queue queue;
  const NoDescriptorLeft check;
  queue.Set("DispatchSocket", "65536");
  const RecordCalls recorded;
  EXPECT_EQ(SControl("id").Notify(), 0);
  EXPECT_EQ(recorded.Calls(), (Names{"socket", "sendto", "close"}));
  queue.Set("DispatchSocket", "65535");
  EXPECT_EQ(SControl("id").Notify(), 1) << "whether anybody listens or not";
}

TEST(Notify, EveryCallMayFail) {
  const Queue queue;
  const Peer dispatcher;
  queue.Set("DispatchSocket", std::to_string(dispatcher.Port()));
  const SControl record("id");
  for (const char* const function : {"socket", "sendto"}) {
    const NoDescriptorLeft check;
    const FailNthCall fault(function, 1, ENOBUFS);
    EXPECT_EQ(record.Notify(), 0);
    EXPECT_EQ(errno, ENOBUFS);
    EXPECT_TRUE(fault.Fired());
  }
  const FailNthCall fault("close", 1, EIO);
  EXPECT_EQ(record.Notify(), 1);
  EXPECT_TRUE(fault.Fired());
}

// Does `work` with each allocation failing in turn, and checks that it leaves the queue as
// it was, or did all it should, and nothing open.
template <class Work>
void CheckWithoutMemory(Work work) {
  for (int n = 0;; ++n) {
    SCOPED_TRACE(n);
    const Queue queue;
    PutMessage(queue);
    SControl record("id");
    ASSERT_EQ(record.Read(), 1);
    record["Host-To:"] = "host";
    const Names before = queue.Files();
    const NoDescriptorLeft check;
    if (!FailsWithoutMemory(n, [&] { return work(record); })) {
      EXPECT_GT(n, 0);
      break;
    }
    EXPECT_EQ(queue.Files(), before);
    EXPECT_EQ(ReadText(queue / "control/id-Control"), "Function: Deliver\n");
  }
}

TEST(SControl, WithoutMemoryDoesNothing) {
  CheckWithoutMemory([](SControl& record) { return record.Write(); });
  CheckWithoutMemory([](SControl& record) { return record.Defer(); });
  CheckWithoutMemory([](SControl& record) { return record.LinkMessage("new"); });
  CheckWithoutMemory([](SControl& record) { return record.RemoveMessage(); });
  const Peer dispatcher;
  const EnvironmentKey port("DispatchSocket");
  CheckWithoutMemory([&](SControl& record) {
    static const std::string text = std::to_string(dispatcher.Port());
    ::setenv("DispatchSocket", text.c_str(), 1);
    return record.Notify();
  });
}

}  // namespace
