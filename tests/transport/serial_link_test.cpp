#include "transport/serial_link.h"

#include <gtest/gtest.h>

#include "tests/support/job_bench.h"
#include "transport/trace.h"

namespace skyhaul {
namespace {

constexpr SerialSettings kSettings = {.baud = 57600, .xon_xoff = true};

struct SerialLinkTest : testing::Test, ScriptedBench {
  SerialLink& link = job.link;
};

TEST_F(SerialLinkTest, TriesOnceASecondAndLetsThePortSettle) {
  bench.failing_opens = 2;
  link.attempts = 5;
  bench.open_warning = "shared";
  const uint64_t start_ns = bench.now_ns;
  ASSERT_EQ(OpenPort(link, kSettings), 0);
  EXPECT_EQ(Elapsed_ms(bench, start_ns), 2200U);
  EXPECT_EQ(recorder.progress,
            (std::vector<std::string>{"Connecting to GPS (5)", "Connecting to GPS (4)"}));
  EXPECT_EQ(recorder.statuses, (std::vector<std::string>{"no port1", "shared"}));
  EXPECT_EQ(bench.settings.baud, 57600U);
  EXPECT_TRUE(bench.settings.xon_xoff);
  ClosePort(link);
  ClosePort(link);
  EXPECT_EQ(bench.open_port, "");
}

TEST_F(SerialLinkTest, SaysWhyItCouldNotOpen) {
  const std::tuple<uint32_t, SetupStep, uint64_t, std::string> cases[] = {
      {3, SetupStep::kNone, 3000,
       "Could not open serial port (sure it's the right one ?)\nport1 cannot be opened"},
      {0, SetupStep::kNone, 0, "Could not open serial port (sure it's the right one ?)"},
      {3, SetupStep::kSetState, 100, "Error while initialising port"},
  };
  for (const auto& [attempts, setup, elapsed_ms, reason] : cases) {
    recorder = {};
    bench.open_problems.clear();
    if (setup == SetupStep::kNone) bench.open_problems["port1"] = PortProblem::kBusy;
    bench.setup_failure = setup;
    link.attempts = attempts;
    const uint64_t start_ns = bench.now_ns;
    EXPECT_EQ(OpenPort(link, kSettings), -1);
    EXPECT_EQ(Elapsed_ms(bench, start_ns), elapsed_ms);
    EXPECT_EQ(recorder.messages, std::vector{"Connecting to GPS on port1: " + reason});
    EXPECT_EQ(bench.open_port, "") << "the port must not stay open";
    EXPECT_EQ(link.handle, kNoSerialHandle);
  }
}

TEST_F(SerialLinkTest, AbortEndsConnectingWithinOneAttempt) {
  bench.open_problems["port1"] = PortProblem::kMissing;
  bench.fault = Abort(30);
  const uint64_t start_ns = bench.now_ns;
  EXPECT_EQ(OpenPort(link, kSettings), -1);
  EXPECT_LE(Elapsed_ms(bench, start_ns), 2000U);
  EXPECT_TRUE(Has(recorder.statuses, "Transfer aborted"));
  EXPECT_TRUE(recorder.messages.empty());
}

TEST_F(SerialLinkTest, ReconfiguringSaysWhichStepFailed) {
  ASSERT_EQ(OpenPort(link, kSettings), 0);
  const std::pair<SetupStep, const char*> cases[] = {
      {SetupStep::kGetState, "Initialising COM port: Error getting COM port state"},
      {SetupStep::kPurge, "Initialising COM port: Error purging COM port buffers"},
  };
  for (const auto& [step, message] : cases) {
    bench.setup_failure = step;
    EXPECT_EQ(ReconfigurePort(link, 9600), -1);
    EXPECT_EQ(recorder.messages.back(), message);
  }
  bench.setup_failure = SetupStep::kNone;
  const uint64_t start_ns = bench.now_ns;
  EXPECT_EQ(ReconfigurePort(link, 9600), 0);
  EXPECT_EQ(Elapsed_ms(bench, start_ns), 200U);
  EXPECT_EQ(bench.settings.baud, 9600U);
  EXPECT_FALSE(bench.settings.xon_xoff);
  link.xon_xoff = true;
  EXPECT_EQ(ReconfigurePort(link, 9600), 0);
  EXPECT_TRUE(bench.settings.xon_xoff);
}

TEST_F(SerialLinkTest, ReadingKeepsWhatComesAfterTheAnswerAndTracesEverything) {
  script.answers["$A"] = {"one\x13\n\x11two\n"};
  ASSERT_EQ(OpenPort(link, kSettings), 0);
  ClearTrace();
  ASSERT_EQ(WriteText(link, "$A\n"), 0);
  for (const char* expected : {"one", "two"}) {
    std::string line;
    const auto feed = [&](uint8_t byte) {
      if (byte == '\n') return Feed::kDone;
      line += static_cast<char>(byte);
      return Feed::kMore;
    };
    ASSERT_EQ(ReadWithDeadline(link, {}, feed), 0);
    EXPECT_EQ(line, expected);
  }
  EXPECT_EQ(TraceContents(), "$A\none\x13\n\x11two\n");
  const uint8_t bytes[] = {0x0a, 0xff};
  ASSERT_EQ(WriteBytes(link, bytes, 2), 0);
  EXPECT_EQ(bench.written.substr(3), "\x0a\xff");
  EXPECT_EQ(TraceContents(), "$A\none\x13\n\x11two\n 0A FF\n");
}

TEST_F(SerialLinkTest, ReadingKnowsTimeOutPortErrorAndAbortApart) {
  ASSERT_EQ(OpenPort(link, kSettings), 0);
  // Bytes come after 1, 2 and 3 s.
  const auto read = [&](const ReadTerms& terms, int expected) {
    bench.now_ns += 5'000'000'000;
    for (uint64_t s = 1; s <= 3; ++s) Send(instrument.wire, "x", bench.now_ns + s * 1'000'000'000);
    const uint64_t start_ns = bench.now_ns;
    EXPECT_EQ(ReadWithDeadline(link, terms, [](uint8_t) { return Feed::kMore; }), expected);
    return static_cast<double>(Elapsed_ms(bench, start_ns));
  };
  EXPECT_NEAR(read({.timeout_ms = 2000}, kTimedOut), 2025, 30);
  EXPECT_NEAR(read({.timeout_ms = 1500, .since_last_byte = true}, kTimedOut), 4525, 30);
  bench.fault = Abort(bench.waits + 3);
  EXPECT_LE(read({.timeout_ms = 60000}, kAborted), 250);
  EXPECT_TRUE(Has(recorder.statuses, "Transfer aborted"));
  job.operation.aborted = false;
  bench.unplugged = true;
  EXPECT_EQ(read({.timeout_ms = 60000}, kPortFailed), 0)
      << "an unplugged adapter is an error at once";
}

TEST_F(SerialLinkTest, RestThrowsAwayWhatAnEarlierTransferStillSends) {
  ASSERT_EQ(OpenPort(link, kSettings), 0);
  const std::tuple<uint32_t, int, uint64_t, std::string> cases[] = {
      {0, 0, 500, ""},
      {450, 0, 550, ""},
      {3000, 0, 3100, "Waiting for the instrument to finish an earlier transfer"},
      {100'000, kNotAtRest, 90'000, "Waiting for the instrument to finish an earlier transfer"},
  };
  for (const auto& [sending_ms, result, rested_ms, status] : cases) {
    recorder = {};
    // A byte every 90 ms is never silence.
    for (uint64_t ms = 0; ms <= sending_ms; ms += 90) {
      Send(instrument.wire, "x", bench.now_ns + ms * 1'000'000);
    }
    const uint64_t start_ns = bench.now_ns;
    EXPECT_EQ(BringToRest(link, 500), result);
    EXPECT_NEAR(static_cast<double>(Elapsed_ms(bench, start_ns)), static_cast<double>(rested_ms),
                120);
    EXPECT_EQ(recorder.statuses, status.empty() ? std::vector<std::string>{} : std::vector{status});
    EXPECT_EQ(recorder.messages.size(), result == 0 ? 0U : 1U);
  }
  bench.fault = Abort(bench.waits + 3);
  EXPECT_EQ(BringToRest(link, 500), kAborted);
}

TEST_F(SerialLinkTest, RestFreesOutputWhoseXonWasLost) {
  ASSERT_EQ(OpenPort(link, kSettings), 0);
  Send(instrument.wire, "\x13", bench.now_ns);
  Pause(link, 100);
  EXPECT_EQ(WriteText(link, "$A\n"), -1);
  EXPECT_EQ(BringToRest(link, 100), 0);
  EXPECT_EQ(WriteText(link, "$A\n"), 0);
}

TEST_F(SerialLinkTest, TimeSpentOnFeedingIsNotTheInstrumentsSilence) {
  // A terminal that is stopped, or a client that hangs, holds the program up while bytes wait.
  script.answers["$A"] = {std::string(300, 'x') + "\n"};
  ASSERT_EQ(OpenPort(link, kSettings), 0);
  ASSERT_EQ(WriteText(link, "$A\n"), 0);
  size_t fed = 0;
  const auto feed = [&](uint8_t byte) {
    if (++fed == 10) bench.now_ns += 60'000'000'000;
    return byte == '\n' ? Feed::kDone : Feed::kMore;
  };
  EXPECT_EQ(ReadWithDeadline(link, {.timeout_ms = 2000, .since_last_byte = true}, feed), 0);
  EXPECT_EQ(fed, 301U);
}

}  // namespace
}  // namespace skyhaul
