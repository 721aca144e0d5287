#include "device/job_runner.h"

#include <gtest/gtest.h>

#include <array>
#include <thread>

#include "tests/support/job_bench.h"
#include "transport/trace.h"

namespace skyhaul {
namespace {

int WaitForAbort(Job& job) {
  while (!job.operation.aborted) std::this_thread::yield();
  return StopRequested(job.operation) ? -1 : 0;
}

struct Outcome {
  int result = 0;
  int calls = 0;

  bool operator==(const Outcome&) const = default;
};

void Take(void* context, Job& job) {
  auto& outcome = *static_cast<Outcome*>(context);
  outcome.result = job.result;
  ++outcome.calls;
}

// The protocol types of these tests.
enum : uint32_t { kQuick, kWaiting, kQuiet, kProtocols };

using Texts = std::vector<std::string>;

struct JobRunnerTest : testing::Test, JobBench {
  JobRunnerTest() {
    // A job has what its request gave it.
    table[kQuick].procedures[kReadWaypoints] = [](Job& running) { return running.parameter; };
    table[kQuick].procedures[kReadTrackLog] = [](Job&) { return -1; };
    table[kWaiting].procedures[kEraseWaypoints] = WaitForAbort;
    table[kQuiet].procedures[kReadCtrList] = [](Job& running) {
      running.operation.quiet = true;
      ShowStatus(running.operation, "heard by nobody");
      return 1;
    };
  }

  int Start(uint32_t access_type, uint32_t protocol_type) {
    return StartJob(table, {.platform = &platform,
                            .shell = &shell,
                            .access_type = access_type,
                            .protocol_type = protocol_type,
                            .parameter = 3,
                            .completion = Take,
                            .completion_context = &outcome});
  }

  bool Run(uint32_t access_type, uint32_t protocol_type) {
    const bool started = Start(access_type, protocol_type) == 0;
    WaitForJobEnd();
    return started;
  }

  Outcome outcome;
  std::array<ProtocolJobs, kProtocols> table = {};
};

TEST_F(JobRunnerTest, RefusesInTheGivenOrder) {
  EXPECT_EQ(Start(11, 3) + Start(10, 3) + Start(kReadProductData, kQuiet), -3);
  EXPECT_EQ(recorder.messages,
            (Texts{"GPS access: Bad access type", "GPS access: Bad protocol type",
                   "GPS access: Unsupported access function"}));
  EXPECT_FALSE(outcome.calls > 0 || JobRunning());
}

TEST_F(JobRunnerTest, RunsCompletesAndForgets) {
  TraceText("of the job before");
  ASSERT_TRUE(Run(kReadWaypoints, kQuick));
  EXPECT_EQ(outcome, (Outcome{.result = 3, .calls = 1}));
  EXPECT_FALSE(LastJobFailed() || JobRunning());
  EXPECT_EQ(TraceContents(), "");

  ASSERT_TRUE(Run(kReadTrackLog, kQuick));
  EXPECT_EQ(outcome, (Outcome{.result = -1, .calls = 2}));
  EXPECT_TRUE(LastJobFailed());
  EXPECT_EQ(Start(11, 0), -1);
  EXPECT_FALSE(LastJobFailed()) << "every start forgets it";
}

TEST_F(JobRunnerTest, OneAtATimeAndAbort) {
  ASSERT_EQ(Start(kEraseWaypoints, kWaiting), 0);
  EXPECT_TRUE(JobRunning());
  TraceText("of the running job");
  EXPECT_EQ(Start(kReadWaypoints, kQuick), -1);
  EXPECT_EQ(recorder.messages.back(), "GPS access: Port/USB is being used");
  EXPECT_EQ(TraceContents(), "of the running job");
  const uint64_t before_ns = bench.now_ns;
  PauseForRunningJob(platform);
  EXPECT_EQ(Elapsed_ms(bench, before_ns), 2000U);

  EXPECT_EQ(AbortJob(&shell), 0);
  WaitForJobEnd();
  EXPECT_EQ(outcome.calls, 1);
  EXPECT_EQ(recorder.statuses, (Texts{"Aborting transfer", "Transfer aborted"}));

  recorder.messages = {};
  EXPECT_EQ(AbortJob(&shell), -1);
  EXPECT_EQ(AbortJob(nullptr), -1);
  EXPECT_EQ(recorder.messages, Texts{"Abort GPS access: Port not in use"});
  PauseForRunningJob(platform);
  EXPECT_EQ(Elapsed_ms(bench, before_ns), 2000U);
}

TEST_F(JobRunnerTest, AQuietJobStaysCurrentUntilItIsReleased) {
  ASSERT_TRUE(Run(kReadCtrList, kQuiet));
  EXPECT_FALSE(recorder.statuses.size() > 0 || JobRunning());
  EXPECT_EQ(Start(kReadWaypoints, kQuick), -1);
  EXPECT_EQ(recorder.messages, Texts{"GPS access: Port/USB is being used"});
  ReleaseQuietJob();
  EXPECT_TRUE(Run(kReadWaypoints, kQuick));
}

TEST_F(JobRunnerTest, ASystemWithoutThreadsIsReportedAndLeavesNothingBehind) {
  bench.no_threads = true;
  EXPECT_EQ(Start(kReadWaypoints, kQuick), -1);
  EXPECT_EQ(recorder.messages, Texts{"API32 call: Could not create GPS access thread"});
  bench.no_threads = false;
  EXPECT_TRUE(Run(kReadWaypoints, kQuick));
  EXPECT_EQ(outcome.calls, 1);
}

}  // namespace
}  // namespace skyhaul
