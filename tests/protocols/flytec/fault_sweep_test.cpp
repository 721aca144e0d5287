// A whole conversation, identification, list and download, once per byte, write and wait with a
// fault there: it ends in bounded time, says a message, and delivers nothing but what the bytes
// that arrived say. That the old track log is kept is for the batch run's sweep to show.

#include <gtest/gtest.h>

#include <algorithm>

#include "formats/igc/decode_line.h"
#include "protocols/flytec/track_list.h"
#include "protocols/flytec/track_log.h"
#include "tests/protocols/flytec/sweep_bench.h"

namespace skyhaul::flytec {
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

struct Conversation : SweepBench {
  explicit Conversation(const Fault& fault = {}) {
    simulator.flights = {flytec_simulator::FlightFromIgc(kFlight)};
    Run(TrackLogJob, fault);
  }
};

bool WholeFlight(const Conversation& run) {
  return run.result == 3 && run.job.data.flights.size() == 1 &&
         run.job.data.flights[0].instrument_igc.text == kFlight;
}

// Every run must hold this.
void ExpectSane(const Conversation& run) {
  EXPECT_LE(run.elapsed_ms, kLongestRun_ms);
  if (run.result >= 0) {
    ASSERT_EQ(run.job.data.flights.size(), 1U);
  } else if (run.result != kNoTrackList) {  // for a bent device name, which the one who asked says
    EXPECT_TRUE(!run.recorder.messages.empty() || Has(run.recorder.statuses, "Transfer aborted"));
  }
}

TEST(FaultSweep, WithoutAFaultTheWholeFlightArrives) {
  const Conversation run;
  EXPECT_TRUE(WholeFlight(run));
  EXPECT_TRUE(run.recorder.messages.empty());
}

TEST(FaultSweep, WhatIsLostOnTheWayToTheInstrumentNeverBendsAFlight) {
  const size_t sent = Conversation().bench.sent;
  ASSERT_GT(sent, 40U);
  for (const Fault& fault :
       FaultsAt({FaultKind::kDrop, FaultKind::kFlip, FaultKind::kRepeat}, sent, true)) {
    SCOPED_TRACE(Describe(fault));
    const Conversation run(fault);
    ExpectSane(run);
    EXPECT_TRUE(run.result < 0 || WholeFlight(run));
  }
}

// The instrument's IGC lines carry no checksum, so a bent byte inside a fix cannot be seen.
// Whatever is delivered must be exactly what the lines that arrived say, neither less nor more.
void ExpectDecodedFromText(const Conversation& run) {
  if (run.result < 0) return;
  const Flight& track = run.job.data.flights[0];
  IgcDecoder decoder;
  std::string_view rest = track.instrument_igc.text;
  for (size_t end = rest.find('\n'); end != rest.npos; end = rest.find('\n')) {
    std::string line(rest.substr(0, end));
    line.erase(std::remove(line.begin(), line.end(), '\r'), line.end());
    EXPECT_GE(DecodeInstrumentIgcLine(decoder, line), 0);
    rest.remove_prefix(end + 1);
  }
  EXPECT_EQ(track.points, decoder.points);
}

TEST(FaultSweep, WhatIsBentOnTheWayFromTheInstrumentIsToldOrDecodedAsItCame) {
  const size_t received = Conversation().bench.received;
  ASSERT_GT(received, 200U);
  for (Fault fault : FaultsAt(
           {FaultKind::kDrop, FaultKind::kFlip, FaultKind::kRepeat, FaultKind::kDelay}, received)) {
    for (const int mask : {0x01, 0x10, 0x80}) {
      if (mask != 0x01 && fault.kind != FaultKind::kFlip) continue;
      fault.flip_mask = static_cast<uint8_t>(mask);
      SCOPED_TRACE(Describe(fault));
      const Conversation run(fault);
      ExpectSane(run);
      ExpectDecodedFromText(run);
      // A byte that is only late changes nothing once it has arrived.
      EXPECT_TRUE(fault.kind != FaultKind::kDelay || run.result < 0 || WholeFlight(run));
    }
  }
}

TEST(FaultSweep, UnpluggingIsToldAtOnce) {
  const Conversation whole;
  for (const Fault& fault : FaultsAtBytes({FaultKind::kUnplug}, whole.bench)) {
    SCOPED_TRACE(Describe(fault));
    const Conversation run(fault);
    EXPECT_LT(run.result, 0);
    EXPECT_EQ(run.recorder.messages.size(), 1U);
    EXPECT_LE(run.elapsed_ms, whole.elapsed_ms);
    EXPECT_TRUE(run.job.data.flights.empty());
  }
}

TEST(FaultSweep, EachFailedWriteIsTold) {
  const size_t writes = Conversation().bench.writes;
  ASSERT_EQ(writes, 3U);
  for (const Fault& fault : FaultsAt({FaultKind::kFailWrite}, writes)) {
    const Conversation run(fault);
    EXPECT_LT(run.result, 0);
    EXPECT_EQ(run.recorder.messages.size(), 1U);
  }
}

TEST(FaultSweep, AnAbortAtAnyWaitEndsTheJobAtOnce) {
  const size_t waits = Conversation().bench.waits;
  for (const Fault& fault : FaultsAt({FaultKind::kAbort}, waits)) {
    SCOPED_TRACE(Describe(fault));
    const Conversation run(fault);
    EXPECT_LE(run.bench.waits, fault.at + 2);
    const bool last_read = WholeFlight(run) && fault.at + 1 == waits;
    EXPECT_TRUE(run.result < 0 || last_read);
    EXPECT_TRUE(last_read || Has(run.recorder.statuses, "Transfer aborted"));
    EXPECT_TRUE(run.recorder.messages.empty());
  }
}

}  // namespace
}  // namespace skyhaul::flytec
