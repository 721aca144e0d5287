#include "device/find_instrument.h"

#include <gtest/gtest.h>

#include "tests/support/job_bench.h"

namespace skyhaul {
namespace {

constexpr int kUnusable = -5;

// An instrument that answers "!" cannot be used.
int Ask(Job& job) {
  if (WriteText(job.link, "$WHO\n") != 0) return kPortFailed;
  uint8_t answer = 0;
  const auto feed = [&](uint8_t byte) {
    answer = byte;
    return Feed::kDone;
  };
  const int result = ReadWithDeadline(job.link, {.timeout_ms = 2000}, feed);
  return answer == '!' ? kUnusable : result;
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
  for (const bool usable : {true, false}) {
    bench.opens = 0;
    script.answers["$WHO"] = {usable ? "." : "!"};
    EXPECT_EQ(Find(), usable ? 0 : -1);
    EXPECT_EQ(bench.open_port, usable ? "c" : "");
    EXPECT_EQ(bench.opens, 3U);
  }
}

TEST_F(FindInstrumentTest, GivesUpAfterItsRounds) {
  job.link.attempts = 4;
  bench.open_warning = "shared";
  EXPECT_EQ(Find(), -1);
  EXPECT_EQ(bench.opens, 6U);
  EXPECT_EQ(recorder.messages.back(),
            "Connecting to GPS on a, b, c: No valid response from GPS\na cannot be opened"
            "\nb: shared\nc: shared");
  EXPECT_EQ(recorder.statuses[0], "a cannot be opened");
  using Texts = std::vector<std::string>;
  EXPECT_EQ(recorder.progress, (Texts{"Connecting to GPS (4)", "Connecting to GPS (2)"}));

  for (const char* port : {"b", "c"}) bench.open_problems[port] = PortProblem::kBusy;
  EXPECT_EQ(Find(), -1);
  EXPECT_EQ(recorder.messages.back(),
            "Connecting to GPS on a, b, c: Could not open serial port (sure it's the right one ?)"
            "\na cannot be opened\nb cannot be opened\nc cannot be opened");
}

// The rest of a transfer that an earlier run has broken off, for longer than the rounds take.
TEST_F(FindInstrumentTest, WaitsForAnInstrumentThatStillSends) {
  instrument.closed = [](void*, Wire&) {};
  script.answers["$WHO"] = {"."};
  job.link.attempts = 2;
  const auto send_for = [&](uint64_t s) {
    for (uint64_t ms = 0; ms < s * 1000; ms += 50) {
      Send(instrument.wire, "x", bench.now_ns + ms * 1'000'000);
    }
  };
  send_for(60);
  EXPECT_EQ(Find(), 0);
  send_for(200);
  EXPECT_EQ(Find(), -1);
  EXPECT_TRUE(recorder.messages.back().ends_with("c does not fall silent"));
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
