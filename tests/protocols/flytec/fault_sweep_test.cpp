// A whole conversation, identification, list and download, once per byte, write and wait with a
// fault there: it ends in bounded time, says a message, and delivers nothing but what the bytes
// that arrived say. That the old track log is kept is for the batch run's sweep to show.

#include <gtest/gtest.h>

#include <algorithm>

#include "formats/igc/decode_line.h"
#include "instruments/bench.h"
#include "instruments/flytec/flytec_simulator.h"
#include "protocols/flytec/track_list.h"
#include "protocols/flytec/track_log.h"
#include "tests/support/recording_shell.h"

namespace skyhaul {
namespace {

const std::string kFlight =
    "AXSH000 6030\r\n"
    "HFDTE270417\r\n"
    "HFPLTPILOT: JIMI HENDRIX\r\n"
    "B1529564743564N01121571EA0062000640\r\n"
    "B1529574743600N01121600EA0062500645\r\n"
    "B1529584743636N01121629EA0063000650\r\n"
    "LXSH Skyhaul\r\n"
    "G0123456789ABCDEF\r\n";

// No single fault may cost more than asking for the product data 15 times over.
constexpr uint64_t kLongestRun_ms = 45000;

struct Conversation {
  explicit Conversation(const Fault& fault) {
    simulator.flights = {FlightFromIgc(kFlight)};
    instrument = MakeFlytecInstrument(simulator, 57600);
    bench.instrument = &instrument;
    bench.fault = fault;
    bench.abort = [](void* context) { static_cast<Operation*>(context)->aborted = true; };
    bench.abort_context = &job.operation;
    platform = BenchPlatform(bench);
    shell = MakeShell(recorder);
    job.operation.shell = &shell;
    job.link.platform = &platform;
    job.link.operation = &job.operation;
    job.link.port_name = bench.instrument_port;
    const uint64_t start_ns = bench.now_ns;
    result = FlytecTrackLogJob(job);
    elapsed_ms = Elapsed_ms(bench, start_ns);
  }
  Conversation(const Conversation&) = delete;
  Conversation& operator=(const Conversation&) = delete;

  FlytecSimulator simulator;
  SimulatedInstrument instrument;
  Bench bench;
  Platform platform;
  RecordingShell recorder;
  Shell shell;
  Job job;
  int result = 0;
  uint64_t elapsed_ms = 0;
};

// A bent device name has no track list, which is for the one who asked to say.
bool SaidSomething(const Conversation& run) {
  if (run.result == kNoTrackList) return true;
  return !run.recorder.messages.empty() || Has(run.recorder.statuses, "Transfer aborted");
}

bool WholeFlight(const Conversation& run) {
  return run.result == 3 && run.job.data.tracks.size() == 1 &&
         run.job.data.tracks[0].igc.text == kFlight;
}

std::string Describe(const Fault& fault) {
  return "fault " + std::to_string(static_cast<int>(fault.kind)) +
         (fault.towards_instrument ? " to" : " from") + " the instrument at " +
         std::to_string(fault.at) + " mask " + std::to_string(fault.flip_mask);
}

// Every run must hold this.
void ExpectSane(const Conversation& run, const Fault& fault) {
  EXPECT_LE(run.elapsed_ms, kLongestRun_ms) << Describe(fault);
  if (run.result < 0) {
    EXPECT_TRUE(SaidSomething(run)) << Describe(fault);
  } else {
    ASSERT_EQ(run.job.data.tracks.size(), 1U) << Describe(fault);
  }
}

TEST(FaultSweep, WithoutAFaultTheWholeFlightArrives) {
  const Conversation run({});
  EXPECT_TRUE(WholeFlight(run));
  EXPECT_TRUE(run.recorder.messages.empty());
}

TEST(FaultSweep, WhatIsLostOnTheWayToTheInstrumentNeverBendsAFlight) {
  const size_t sent = Conversation({}).bench.sent;
  ASSERT_GT(sent, 40U);
  for (const FaultKind kind : {FaultKind::kDrop, FaultKind::kFlip, FaultKind::kRepeat}) {
    for (size_t at = 0; at < sent; ++at) {
      const Fault fault = {.kind = kind, .towards_instrument = true, .at = at};
      const Conversation run(fault);
      ExpectSane(run, fault);
      EXPECT_TRUE(run.result < 0 || WholeFlight(run)) << Describe(fault);
    }
  }
}

// The instrument's IGC lines carry no checksum, so a bent byte inside a fix cannot be seen.
// Whatever is delivered must be exactly what the lines that arrived say, neither less nor more.
void ExpectDecodedFromText(const Conversation& run, const Fault& fault) {
  if (run.result < 0) return;
  const DownloadedTrack& track = run.job.data.tracks[0];
  IgcDecoder decoder;
  std::string_view rest = track.igc.text;
  for (size_t end = rest.find('\n'); end != rest.npos; end = rest.find('\n')) {
    std::string line(rest.substr(0, end));
    line.erase(std::remove(line.begin(), line.end(), '\r'), line.end());
    EXPECT_GE(DecodeInstrumentIgcLine(decoder, line), 0) << Describe(fault);
    rest.remove_prefix(end + 1);
  }
  EXPECT_EQ(track.points, decoder.points) << Describe(fault);
}

TEST(FaultSweep, WhatIsBentOnTheWayFromTheInstrumentIsToldOrDecodedAsItCame) {
  const size_t received = Conversation({}).bench.received;
  ASSERT_GT(received, 200U);
  for (const FaultKind kind :
       {FaultKind::kDrop, FaultKind::kFlip, FaultKind::kRepeat, FaultKind::kDelay}) {
    for (size_t at = 0; at < received; ++at) {
      for (const int mask : {0x01, 0x10, 0x80}) {
        if (mask != 0x01 && kind != FaultKind::kFlip) continue;
        const Fault fault = {.kind = kind, .at = at, .flip_mask = static_cast<uint8_t>(mask)};
        const Conversation run(fault);
        ExpectSane(run, fault);
        ExpectDecodedFromText(run, fault);
        // A byte that is only late changes nothing once it has arrived.
        if (kind == FaultKind::kDelay && run.result >= 0) {
          EXPECT_TRUE(WholeFlight(run)) << Describe(fault);
        }
      }
    }
  }
}

TEST(FaultSweep, UnpluggingIsToldAtOnce) {
  const Conversation whole({});
  for (const bool towards_instrument : {true, false}) {
    const size_t bytes = towards_instrument ? whole.bench.sent : whole.bench.received;
    for (size_t at = 0; at < bytes; ++at) {
      const Fault fault = {
          .kind = FaultKind::kUnplug, .towards_instrument = towards_instrument, .at = at};
      const Conversation run(fault);
      EXPECT_LT(run.result, 0) << Describe(fault);
      EXPECT_EQ(run.recorder.messages.size(), 1U) << Describe(fault);
      EXPECT_LE(run.elapsed_ms, whole.elapsed_ms) << Describe(fault);
      EXPECT_TRUE(run.job.data.tracks.empty()) << Describe(fault);
    }
  }
}

TEST(FaultSweep, EachFailedWriteIsTold) {
  const size_t writes = Conversation({}).bench.writes;
  ASSERT_EQ(writes, 3U);
  for (size_t at = 0; at < writes; ++at) {
    const Conversation run({.kind = FaultKind::kFailWrite, .at = at});
    EXPECT_LT(run.result, 0);
    EXPECT_EQ(run.recorder.messages.size(), 1U);
  }
}

TEST(FaultSweep, AnAbortAtAnyWaitEndsTheJobAtOnce) {
  const Conversation whole({});
  for (size_t at = 0; at < whole.bench.waits; ++at) {
    const Fault fault = {.kind = FaultKind::kAbort, .at = at};
    const Conversation run(fault);
    EXPECT_EQ(run.bench.waits - at <= 2, true) << Describe(fault);
    const bool last_read = WholeFlight(run) && at + 1 == whole.bench.waits;
    EXPECT_TRUE(run.result < 0 || last_read) << Describe(fault);
    EXPECT_TRUE(last_read || Has(run.recorder.statuses, "Transfer aborted")) << Describe(fault);
    EXPECT_TRUE(run.recorder.messages.empty()) << Describe(fault);
  }
}

}  // namespace
}  // namespace skyhaul
