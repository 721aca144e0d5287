#include "device/find_instrument.h"

#include <gtest/gtest.h>

#include "tests/support/job_bench.h"

namespace skyhaul {
namespace {

constexpr int kUnusable = -5;

int Ask(Job& job) {
  if (WriteText(job.link, "$WHO\n") != 0) return kPortFailed;
  int answer = 0;
  const auto feed = [&](uint8_t byte) {
    answer = byte;
    return Feed::kDone;
  };
  const int result = ReadWithDeadline(job.link, {.timeout_ms = 2000}, feed);
  if (result != 0) return result;
  return answer == '!' ? kUnusable : 0;
}

struct FindInstrumentTest : testing::Test, ScriptedBench {
  FindInstrumentTest() {
    bench.instrument_port = "c";
    job.link.automatic = true;
    job.link.candidates = {"a", "b", "c"};
    bench.open_problems["a"] = PortProblem::kBusy;
  }

  int Find() { return FindInstrument(job, {.baud = 57600, .xon_xoff = true}, Ask); }
};

TEST_F(FindInstrumentTest, TriesEveryPortAndKeepsTheOneThatAnswers) {
  script.answers["$WHO"] = {"me"};
  EXPECT_EQ(Find(), 0);
  EXPECT_EQ(job.link.port_name, "c");
  EXPECT_EQ(bench.open_port, "c");
  EXPECT_EQ(bench.opens, 3U);
}

TEST_F(FindInstrumentTest, EndsAtAnInstrumentThatCannotBeUsed) {
  script.answers["$WHO"] = {"!"};
  EXPECT_EQ(Find(), -1);
  EXPECT_EQ(bench.opens, 3U);
  EXPECT_EQ(bench.open_port, "");
}

TEST_F(FindInstrumentTest, GivesUpAfterItsRounds) {
  job.link.attempts = 4;
  EXPECT_EQ(Find(), -1);
  EXPECT_EQ(bench.opens, 6U);
  EXPECT_EQ(recorder.messages,
            std::vector<std::string>{"Connecting to GPS on a, b, c: No valid response from GPS\n"
                                     "a cannot be opened"});
  EXPECT_EQ(recorder.statuses[0], "a cannot be opened");
  EXPECT_EQ(recorder.progress,
            (std::vector<std::string>{"Connecting to GPS (4)", "Connecting to GPS (2)"}));
}

TEST_F(FindInstrumentTest, SaysWhyWhenNoPortOpens) {
  bench.open_problems["b"] = PortProblem::kBusy;
  bench.open_problems["c"] = PortProblem::kBusy;
  job.link.attempts = 2;
  EXPECT_EQ(Find(), -1);
  EXPECT_EQ(
      recorder.messages,
      std::vector<std::string>{
          "Connecting to GPS on a, b, c: Could not open serial port (sure "
          "it's the right one ?)\na cannot be opened\nb cannot be opened\nc cannot be opened"});
}

TEST_F(FindInstrumentTest, AnAbortAtAnyWaitEndsIt) {
  for (size_t at = 0; at < 60; ++at) {
    job.operation.aborted = false;
    recorder = {};
    bench.waits = 0;
    bench.fault = Abort(at);
    const uint64_t start_ns = bench.now_ns;
    EXPECT_EQ(Find(), -1);
    EXPECT_TRUE(Has(recorder.statuses, "Transfer aborted"));
    EXPECT_LE(Elapsed_ms(bench, start_ns), (at + 2) * 50);
    EXPECT_EQ(bench.open_port, "");
  }
}

}  // namespace
}  // namespace skyhaul
