#include "queue/ErrorRecords.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <optional>
#include <string>
#include <vector>

#include "queue/Queue.h"
#include "support/Clock.h"
#include "support/ErrorText.h"
#include "support/FailEachAllocation.h"
#include "support/FailNthCall.h"
#include "support/Files.h"
#include "support/Pieces.h"
#include "support/Process.h"
#include "support/Text.h"

namespace {

namespace fs = std::filesystem;

using Names = std::vector<std::string>;

// The lines of a record that tell an error of the system, in the language of the program.
std::string SystemLines(int error) {
  return "Error-Number: " + std::to_string(error) + "\nError-Systext: " + std::strerror(error) +
         '\n';
}

// Runs this test's work in a process of its own, where each sequence begins with 1.
template <class Work>
void InNewProcess(Work work) {
  constexpr char kHere[] = "MAILHEARTH_TEST_ALONE";
  if (std::getenv(kHere) != nullptr) {
    work();
    return;
  }
  const testing::TestInfo& test = *testing::UnitTest::GetInstance()->current_test_info();
  const std::string name = std::string(test.test_suite_name()) + "." + test.name();
  const Outcome outcome = RunCommand(
      {{"/proc/self/exe", "--gtest_filter=" + name}, {std::string(kHere) + "=1"}, [] {}});
  EXPECT_EQ(outcome.status, 0) << outcome.out;
}

// A queue whose clock stands in the first second of 1970.
class Errors : public Queue {
 public:
  Errors() {
    clockStandIn = 0;
    Set("DispatchSocket", std::to_string(dispatcher.Port()));
  }
  ~Errors() { clockStandIn.reset(); }
  Errors(const Errors&) = delete;
  Errors& operator=(const Errors&) = delete;

  [[nodiscard]] static std::string Id(int n) {
    return "19700101000000." + std::to_string(::getpid()) + "." + std::to_string(n);
  }
  [[nodiscard]] static std::string File(int n) { return "control/" + Id(n) + "-Control"; }

  Peer dispatcher;
};

TEST(ProcessError, TurnsARecordIntoTheErrorRecord) {
  const Errors queue;
  queue.Put("control/id-Control",
            "Control-Type: Message\nFunction: Deliver\nPriority: 5\nTrace: x\nTo: joe\n");
  SControl record("id");
  ASSERT_EQ(record.Read(), 1);
  const NoDescriptorLeft check;
  errno = ENOSPC;
  EXPECT_EQ(ProcessError(record, "where", "what", {"line 1", "line 2"}), 1);
  EXPECT_EQ(ReadText(queue / "control/id-Control"),
            "Control-Type: Message\nFunction: Error-Handler\nPriority: 5\nTo: joe\n"
            "Error: router:what (where)\nError-Text: line 1\nError-Text: line 2\n" +
                SystemLines(ENOSPC) + "Trace: x\nTrace: router\n");
  EXPECT_EQ(queue.dispatcher.Take(), "id\nsecret\nError-Handler\nMessage\n5");
  EXPECT_EQ(queue.Files(), Names{"control/id-Control"});
}

TEST(ProcessError, ReplacesWhatAnErrorBeforeHasLeft) {
  const Errors queue;
  SControl record("id");
  errno = ENOENT;
  ASSERT_EQ(ProcessError(record, "a", "b", {"1", "2"}), 1);
  errno = 0;
  ASSERT_EQ(ProcessError(record, "c", "d", {"3"}), 1);
  EXPECT_EQ(ReadText(queue / "control/id-Control"),
            "Function: Error-Handler\nError: router:d (c)\nError-Text: 3\n"
            "Trace: router\nTrace: router\n");
}

TEST(ProcessError, LeavesTheFieldsOfAnErrorBeforeInTheirPlaces) {
  const Errors queue;
  SControl record("id");
  errno = ENOENT;
  ASSERT_EQ(ProcessError(record, "a", "b", {"1", "2"}), 1);
  record["To:"] = "joe";
  record["Error-Number:"].Push("x");
  errno = ENOSPC;
  ASSERT_EQ(ProcessError(record, "c", "d", {"3"}), 1);
  EXPECT_EQ(ReadText(queue / "control/id-Control"),
            "Function: Error-Handler\nError: router:d (c)\nError-Text: 3\n" + SystemLines(ENOSPC) +
                "To: joe\nTrace: router\nTrace: router\n");
}

TEST(ProcessError, MayBeToldOfTheRecordsOwnTexts) {
  const Errors queue;
  SControl record("id");
  record["Function:"] = {"Deliver", "x"};
  record["Error:"] = {"before", "y"};
  errno = 0;
  ASSERT_EQ(ProcessError(record, record["Function:"][0], record["Error:"][0], record["Error:"]), 1);
  EXPECT_EQ(record.Get("Error:"), SStringList("router:before (Deliver)"));
  EXPECT_EQ(record.Get("Error-Text:"), (SStringList{"before", "y"}));
}

TEST(ProcessError, FailsWhereTheRecordCannotBeWritten) {
  const Errors queue;
  const NoDescriptorLeft check;
  SControl record("missing/id");
  errno = 0;
  EXPECT_EQ(ProcessError(record, "a", "b", {}), 0);
  EXPECT_EQ(errno, ENOENT);
  EXPECT_EQ(queue.dispatcher.Take(0), std::nullopt);
  fs::remove(queue / "control");
  EXPECT_EQ(ProcessError("a", "b", SStringList()), 0);
  EXPECT_EQ(queue.dispatcher.Take(0), std::nullopt);
}

TEST(ProcessError, MakesANewRecord) {
  InNewProcess([] {
    const Errors queue;
    const NoDescriptorLeft check;
    errno = EACCES;
    EXPECT_EQ(ProcessError("where", "what", {"line 1", "line 2"}), 1);
    EXPECT_EQ(ReadText(queue / Errors::File(1)),
              "Function: Error-Handler\nControl-Type: Error\nPriority: 1\n"
              "Error: router:what (where)\nError-Text: line 1\nError-Text: line 2\n" +
                  SystemLines(EACCES) + "Trace: router\n");
    EXPECT_EQ(queue.dispatcher.Take(), Errors::Id(1) + "\nsecret\nError-Handler\nError\n1");
    errno = 0;
    EXPECT_EQ(ProcessError("", "", SStringList()), 1);
    EXPECT_EQ(ReadText(queue / Errors::File(2)),
              "Function: Error-Handler\nControl-Type: Error\nPriority: 1\n"
              "Error: router: ()\nTrace: router\n");
  });
}

TEST(ProcessError, IsNotStoppedByADispatcherThatIsNotThere) {
  const Errors queue;
  ::unsetenv("DispatchSocket");
  EXPECT_EQ(ProcessError("a", "b", {"c"}), 1);
  EXPECT_EQ(queue.Files().size(), 1u);
}

TEST(ProcessError, CountsApartFromProcessNotifyError) {
  InNewProcess([] {
    const Errors queue;
    const SControl about("id");
    errno = 0;
    ProcessNotifyError(about, "first", "b", {"c"});
    EXPECT_EQ(queue.Files(), Names{Errors::File(1)});
    fs::remove(queue / Errors::File(1));
    ProcessError("a", "b", {"c"});
    ProcessError("a", "b", {"c"});
    EXPECT_EQ(queue.Files(), (Names{Errors::File(1), Errors::File(2)}));
    ProcessNotifyError(about, "a", "b", {"c"});
    ProcessNotifyError(about, "a", "b", {"c"});
    EXPECT_EQ(queue.Files(), (Names{Errors::File(1), Errors::File(2), Errors::File(3)}));
  });
}

TEST(ProcessError, CountsAlsoWhatCouldNotBeWritten) {
  InNewProcess([] {
    const Errors queue;
    {
      const FailNthCall fault("rename", 1, EIO);
      EXPECT_EQ(ProcessError("a", "b", {"c"}), 0);
      EXPECT_EQ(errno, EIO);
    }
    EXPECT_EQ(ProcessError("a", "b", {"c"}), 1);
    EXPECT_EQ(queue.Files(), Names{Errors::File(2)});
  });
}

TEST(ProcessNotifyError, MakesANewRecord) {
  InNewProcess([] {
    const Errors queue;
    SControl about("id");
    about["Trace:"] = {"router", "error-handler", "Error-Handler "};
    errno = ENOENT;
    EXPECT_EQ(ErrorText([&] { ProcessNotifyError(about, "where", "what", {"line"}); }), "");
    EXPECT_EQ(ReadText(queue / Errors::File(1)),
              "Function: Error-Handler\nControl-Type: Error\nPriority: 1\n"
              "Error: router:what (where)\nError-Text: line\n" +
                  SystemLines(ENOENT) + "Trace: router\n");
    EXPECT_EQ(queue.dispatcher.Take(), Errors::Id(1) + "\nsecret\nError-Handler\nError\n1");
  });
}

TEST(ProcessNotifyError, MakesNoRecordAboutAnErrorRecord) {
  const Errors queue;
  SControl about("id");
  about["Trace:"] = {"router", "Error-Handler", "x"};
  const EnvironmentKey zone("TZ");
  ::setenv(zone.Name(), "UTC0", 1);
  EXPECT_EQ(ErrorText([&] {
              ProcessNotifyError(about, "where", "what", {"a", "b ", "c"});
            }),
            "19700101000000+0000:router:ProcessNotifyError:ab c\n");
  EXPECT_EQ(ErrorText([&] { ProcessNotifyError(about, "where", "what", SStringList()); }),
            "19700101000000+0000:router:ProcessNotifyError:\n");
  EXPECT_EQ(queue.Files(), Names{});
  EXPECT_EQ(queue.dispatcher.Take(0), std::nullopt);
}

TEST(ProcessNotifyError, CountsOnlyTheRecordsItMakes) {
  InNewProcess([] {
    const Errors queue;
    SControl about("id");
    about["Trace:"] = "Error-Handler";
    EXPECT_NE(ErrorText([&] { ProcessNotifyError(about, "a", "b", {"c"}); }), "");
    about["Trace:"] = "router";
    ProcessNotifyError(about, "a", "b", {"c"});
    EXPECT_EQ(queue.Files(), Names{Errors::File(1)});
  });
}

TEST(ProcessNotifyError, PrintsTheRecordThatItCannotWrite) {
  const Errors queue;
  fs::remove(queue / "control");
  errno = ENOSPC;
  EXPECT_EQ(ErrorText([&] { ProcessNotifyError(SControl("id"), "where", "what", {"line"}); }),
            "Function: Error-Handler\nControl-Type: Error\nPriority: 1\n"
            "Error: router:what (where)\nError-Text: line\n" +
                SystemLines(ENOSPC) + "Trace: router\n\n");
  EXPECT_EQ(queue.dispatcher.Take(0), std::nullopt);
}

// Checks that `print` writes this text to the standard error stream, as a whole and at once, and
// none of it where memory runs out before.
template <class Print>
void CheckOnePiece(Print print, const std::string& text) {
  Pieces pieces;
  std::streambuf* const before = std::cerr.rdbuf(&pieces);
  std::cerr << std::nounitbuf;
  const int failed = FailEachAllocation(print, [&] { EXPECT_EQ(pieces.Text(), ""); });
  std::cerr << std::unitbuf;
  std::cerr.rdbuf(before);
  EXPECT_GE(failed, 1);
  EXPECT_EQ(pieces.Text(), text);
  EXPECT_EQ(pieces.Count(), 1);
  EXPECT_EQ(pieces.Flushes(), 1);
}

TEST(ProcessNotifyError, WritesItsLineInOnePieceOrNotAtAll) {
  const Errors queue;
  SControl about("id");
  about["Trace:"] = "Error-Handler";
  const SString context = "where", message = "what";
  const SStringList text = {"a", "b"};
  const EnvironmentKey zone("TZ");
  ::setenv(zone.Name(), "UTC0", 1);
  CheckOnePiece([&] { ProcessNotifyError(about, context, message, text); },
                "19700101000000+0000:router:ProcessNotifyError:ab\n");
}

TEST(ProcessNotifyError, PrintsARecordInOnePieceOrNotAtAll) {
  const Errors queue;
  fs::remove(queue / "control");
  const SControl about("id");
  const SString context = "where", message = "what";
  const SStringList text = {"line"};
  CheckOnePiece(
      [&] {
        errno = 0;
        ProcessNotifyError(about, context, message, text);
      },
      "Function: Error-Handler\nControl-Type: Error\nPriority: 1\n"
      "Error: router:what (where)\nError-Text: line\nTrace: router\n\n");
}

TEST(ProcessError, WithoutMemoryLeavesNothingOpenAndNoHalfRecord) {
  for (int n = 0;; ++n) {
    SCOPED_TRACE(n);
    const Errors queue;
    const NoDescriptorLeft check;
    const SStringList text = {"line"};
    const SString context = "where", message = "what";
    const auto work = [&] {
      errno = ENOSPC;
      EXPECT_EQ(ProcessError(context, message, text), 1);
    };
    const bool thrown = FailAllocation(n, work).thrown;
    for (const std::string& file : queue.Files()) {
      const std::string record = ReadText(queue / file);
      EXPECT_TRUE(record.ends_with(SystemLines(ENOSPC) + "Trace: router\n"));
      EXPECT_TRUE(file.ends_with("-Control"));
    }
    if (!thrown) break;
  }
}

}  // namespace
