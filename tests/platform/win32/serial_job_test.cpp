#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <chrono>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "device/job_runner.h"
#include "formats/igc/write_igc.h"
#include "instruments/flight_generator.h"
#include "instruments/flytec/flytec_simulator.h"
#include "protocols/families.h"
#include "tests/platform/win32/cable.h"
#include "tests/support/recording_shell.h"

namespace skyhaul {
namespace {

constexpr uint32_t kLong_ms = 60000;
constexpr uint32_t kFixes = 150;

uint64_t Now_ns() {
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  return static_cast<uint64_t>(std::chrono::duration_cast<std::chrono::nanoseconds>(now).count());
}

std::string FlightText() {
  const GeneratedFlight flight = GenerateFlight({.start_time = 1'200'000'000, .max_fixes = kFixes});
  std::string text;
  igc::Write(flight.points, {.pilot = "ANNA MUSTER"},
             {.sign = true, .may_be_signed = true, .serial = "000", .free_text = "6030"}, text);
  return text;
}

// A simulated instrument at the other end of the cable, on a thread of its own.
struct InstrumentAtPort {
  explicit InstrumentAtPort(uint32_t number) : end(number), worker([this] { Run(); }) {}
  ~InstrumentAtPort() {
    stop = true;
    worker.join();
  }
  InstrumentAtPort(const InstrumentAtPort&) = delete;
  InstrumentAtPort& operator=(const InstrumentAtPort&) = delete;

  void Run() {
    flytec_simulator::Simulator simulator;
    simulator.flights = {flytec_simulator::FlightFromIgc(FlightText())};
    SimulatedInstrument instrument = flytec_simulator::MakeInstrument(simulator, 57600);
    std::string byte;
    while (!stop && end.Read(byte, 1) >= 0) {
      if (!byte.empty()) {
        instrument.receive(instrument.state, instrument.wire, static_cast<uint8_t>(byte[0]),
                           Now_ns());
      }
      std::array<uint8_t, 256> answer;
      const size_t count = TakeArrived(instrument.wire, Now_ns(), answer.data(), answer.size());
      if (count == 0) continue;
      if (end.Write({reinterpret_cast<char*>(answer.data()), count}) != 0) return;
      sent += count;
    }
  }

  CableEnd end;
  std::atomic<bool> stop = false;
  std::atomic<size_t> sent = 0;  // bytes
  std::thread worker;            // the last member: it uses the others
};

struct Outcome {
  int result = 0;
  std::string device_name;
  std::vector<Flight> flights;
};

void Take(void* context, Job& job) {
  auto& outcome = *static_cast<Outcome*>(context);
  outcome.result = job.result;
  outcome.device_name = job.device_name;
  outcome.flights = std::move(job.data.flights);
}

class SerialJob : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!HasCables()) GTEST_SKIP() << "this machine has no cable between two of its ports";
    shell = MakeShell(recorder);
  }

  int StartDownload(uint32_t port) {
    JobRequest request;
    request.platform = &NativePlatform();
    request.shell = &shell;
    request.access_type = kReadTrackLog;
    request.protocol_type = kFlytec;
    request.port = {.automatic = false, .configured = Serial().name_of(nullptr, port)};
    request.attempts = 1;
    request.completion = Take;
    request.completion_context = &outcome;
    return StartJob(AllJobs(), std::move(request));
  }

  RecordingShell recorder;
  Shell shell;
  Outcome outcome;
};

TEST_F(SerialJob, DownloadsAFlightByEitherFormOfName) {
  for (const auto& [instrument_port, program_port] : {std::pair{10U, 9U}, std::pair{9U, 10U}}) {
    const InstrumentAtPort instrument(instrument_port);
    outcome = {};
    ASSERT_EQ(StartDownload(program_port), 0);
    ASSERT_TRUE(WaitForJobEnd(kLong_ms));
    EXPECT_GE(outcome.result, 0);
    EXPECT_TRUE(recorder.messages.empty()) << recorder.messages.front();
    EXPECT_EQ(outcome.device_name, "6030");
    ASSERT_EQ(outcome.flights.size(), 1U);
    EXPECT_TRUE(outcome.flights[0].instrument_igc.text == FlightText())
        << "the flight arrived changed";
    EXPECT_EQ(outcome.flights[0].points.size(), kFixes);
  }
}

TEST_F(SerialJob, SaysThatAnotherProgramHasThePort) {
  const struct {
    uint32_t port;
    const char* message;
  } cases[] = {
      {9,
       "Connecting to GPS on COM9: Could not open serial port (sure it's the right one ?)\n"
       "Another program is using COM9"},
      {10,
       "Connecting to GPS on \\\\.\\COM10: Could not open serial port (sure it's the right one ?)\n"
       "Another program is using COM10"},
  };
  for (const auto& c : cases) {
    recorder = {};
    const CableEnd holder(c.port);
    ASSERT_EQ(StartDownload(c.port), 0);
    ASSERT_TRUE(WaitForJobEnd(kLong_ms));
    EXPECT_EQ(outcome.result, -1);
    EXPECT_EQ(recorder.messages, std::vector<std::string>{c.message});
    EXPECT_EQ(recorder.progress, std::vector<std::string>{"Connecting to GPS (1)"});
  }
}

TEST_F(SerialJob, EndsWithAMessageWhenTheCableIsPulledOut) {
  const InstrumentAtPort instrument(kLooseCablePorts[0]);
  ASSERT_EQ(StartDownload(kLooseCablePorts[1]), 0);
  const size_t half = FlightText().size() / 2;
  for (int i = 0; i < 3000 && instrument.sent < half; ++i) {
    NativePlatform().clock.wait(nullptr, 10);
  }
  ASSERT_GE(instrument.sent, half);
  PullLooseCable();
  ASSERT_TRUE(WaitForJobEnd(kLong_ms));
  EXPECT_EQ(outcome.result, -1);
  EXPECT_TRUE(Has(recorder.messages, "Read GPS track log: E203 COM port read error"))
      << ::testing::PrintToString(recorder.messages);
  EXPECT_TRUE(outcome.flights.empty());
}

}  // namespace
}  // namespace skyhaul
