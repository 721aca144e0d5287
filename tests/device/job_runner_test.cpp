#include "device/job_runner.h"

#include <gtest/gtest.h>

#include <array>
#include <thread>

#include "tests/support/job_bench.h"
#include "transport/trace.h"

namespace skyhaul {
namespace {

int Succeed(Job& job) {
  job.data.waypoints.push_back({.altitude = 7});
  ShowStatus(job.operation, "working");
  return 3;
}

int Fail(Job& job) {
  ShowMessage(job.operation, "broken", "Test");
  return -1;
}

int WaitForAbort(Job& job) {
  while (!job.operation.aborted) std::this_thread::yield();
  return StopRequested(job.operation) ? -1 : 0;
}

int BecomeQuiet(Job& job) {
  job.operation.quiet = true;
  ShowStatus(job.operation, "heard by nobody");
  return 1;
}

struct Outcome {
  int result = 0;
  int calls = 0;
  JobData data;
};

void Take(void* context, Job& job) {
  auto& outcome = *static_cast<Outcome*>(context);
  outcome.result = job.result;
  outcome.data = std::move(job.data);
  ++outcome.calls;
}

// The protocol types of these tests.
constexpr uint32_t kQuick = 0;
constexpr uint32_t kWaiting = 1;
constexpr uint32_t kQuiet = 2;

struct JobRunnerTest : testing::Test, JobBench {
  JobRunnerTest() {
    table[kQuick].procedures[kReadWaypoints] = Succeed;
    table[kQuick].procedures[kReadTrackLog] = Fail;
    table[kWaiting].procedures[kEraseWaypoints] = WaitForAbort;
    table[kQuiet].procedures[kReadCtrList] = BecomeQuiet;
  }

  int Start(uint32_t access_type, uint32_t protocol_type) {
    return StartJob(table, {.platform = &platform,
                            .shell = &shell,
                            .access_type = access_type,
                            .protocol_type = protocol_type,
                            .completion = Take,
                            .completion_context = &outcome});
  }

  Outcome outcome;
  std::array<ProtocolJobs, 3> table = {};
};

TEST_F(JobRunnerTest, RefusesInTheGivenOrder) {
  const std::tuple<uint32_t, uint32_t, const char*> cases[] = {
      {11, 3, "GPS access: Bad access type"},
      {10, 3, "GPS access: Bad protocol type"},
      {kReadProductData, kQuiet, "GPS access: Unsupported access function"},
  };
  for (const auto& [access_type, protocol_type, message] : cases) {
    EXPECT_EQ(Start(access_type, protocol_type), -1);
    EXPECT_EQ(recorder.messages.back(), message);
  }
  EXPECT_EQ(outcome.calls, 0);
  EXPECT_FALSE(JobRunning());
}

TEST_F(JobRunnerTest, RunsCompletesAndForgets) {
  TraceText("of the job before");
  ASSERT_EQ(Start(kReadWaypoints, kQuick), 0);
  WaitForJobEnd();
  EXPECT_EQ(outcome.calls, 1);
  EXPECT_EQ(outcome.result, 3);
  ASSERT_EQ(outcome.data.waypoints.size(), 1U);
  EXPECT_FALSE(LastJobFailed());
  EXPECT_FALSE(JobRunning());
  EXPECT_EQ(TraceContents(), "");

  ASSERT_EQ(Start(kReadTrackLog, kQuick), 0);
  WaitForJobEnd();
  EXPECT_EQ(outcome.result, -1);
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
  EXPECT_EQ(recorder.statuses, (std::vector<std::string>{"Aborting transfer", "Transfer aborted"}));

  EXPECT_EQ(AbortJob(&shell), -1);
  EXPECT_EQ(recorder.messages.back(), "Abort GPS access: Port not in use");
  EXPECT_EQ(AbortJob(nullptr), -1);
  EXPECT_EQ(recorder.messages.size(), 2U);
  PauseForRunningJob(platform);
  EXPECT_EQ(Elapsed_ms(bench, before_ns), 2000U);
}

TEST_F(JobRunnerTest, AQuietJobStaysCurrentUntilItIsReleased) {
  ASSERT_EQ(Start(kReadCtrList, kQuiet), 0);
  WaitForJobEnd();
  EXPECT_TRUE(recorder.statuses.empty());
  EXPECT_FALSE(JobRunning());
  EXPECT_EQ(Start(kReadWaypoints, kQuick), -1);
  EXPECT_EQ(recorder.messages.back(), "GPS access: Port/USB is being used");
  ReleaseQuietJob();
  EXPECT_EQ(Start(kReadWaypoints, kQuick), 0);
  WaitForJobEnd();
}

TEST_F(JobRunnerTest, WithoutAThreadThereIsAMessageAndNoJob) {
  bench.no_threads = true;
  EXPECT_EQ(Start(kReadWaypoints, kQuick), -1);
  EXPECT_EQ(recorder.messages.back(), "API32 call: Could not create GPS access thread");
  bench.no_threads = false;
  EXPECT_EQ(Start(kReadWaypoints, kQuick), 0);
  WaitForJobEnd();
  EXPECT_EQ(outcome.calls, 1);
}

}  // namespace
}  // namespace skyhaul
