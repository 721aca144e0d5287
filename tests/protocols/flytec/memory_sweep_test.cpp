// Waypoints and airspaces up and down, once per byte, write and wait with a fault there: each run
// ends in bounded time and says why, what is delivered was in the instrument's memory, and the
// memory holds what was sent whole and nothing else.

#include <gtest/gtest.h>

#include <algorithm>

#include "core/count_message.h"
#include "protocols/flytec/ctr_lines.h"
#include "protocols/flytec/ctr_list.h"
#include "protocols/flytec/ctr_upload.h"
#include "protocols/flytec/field_text.h"
#include "protocols/flytec/waypoint_list.h"
#include "protocols/flytec/waypoint_upload.h"
#include "tests/protocols/flytec/sweep_bench.h"
#include "tests/support/airspace_place.h"

namespace skyhaul::flytec {
namespace {

constexpr uint32_t kWaypoints = 3;
const std::vector<FaultKind> kByteFaults = {FaultKind::kDrop, FaultKind::kFlip, FaultKind::kRepeat};

std::vector<CtrRecord> Airspaces() {
  return {{.name = "First",
           .segments = {{.type = SegmentType::kPoint, .point = At(47.5, 11.25)},
                        {.type = SegmentType::kCircle, .point = At(-47.5, 11), .radius_m = 900}}},
          {.name = "Second",
           .remark = "With an arc",
           .number = 12,
           .segments = {{.type = SegmentType::kArcByBearings,
                         .point = At(47, -11),
                         .radius_m = 5000,
                         .start_bearing_deg = 10,
                         .end_bearing_deg = 300,
                         .direction = kCounterClockwise}}}};
}

flytec_simulator::StoredAirspace Stored(const CtrRecord& record) {
  flytec_simulator::AirspaceUpload upload;
  for (const CtrLine& line : CtrLines(record, FieldText(record.name))) {
    const std::string& text = line.sentence;
    (void)TakeUploadLine(upload, text.substr(9, text.size() - 9 - 5));
  }
  return upload.airspace;
}

// The record that is sent as this waypoint.
WaypointRecord Record(const flytec_simulator::StoredWaypoint& waypoint) {
  const std::string& text = waypoint.position;
  const auto number = [&](size_t at, size_t digits) { return std::stoi(text.substr(at, digits)); };
  WaypointRecord record;
  record.lat = MilliminutesToSemicircles(number(0, 2) * 60000 + number(2, 2) * 1000 + number(5, 3));
  record.lon =
      MilliminutesToSemicircles(number(11, 3) * 60000 + number(14, 2) * 1000 + number(17, 3));
  record.altitude = waypoint.altitude_m;
  waypoint.long_name.copy(record.description, waypoint.long_name.size());
  return record;
}

std::string SentAs(const WaypointRecord& record) {
  return WaypointSentence(record,
                          FieldText(record.description[0] != 0 ? record.description : record.name));
}

// A person who gives up after 40 seconds: the airspace list has no limit of its own.
int ReadWithPatience(void* context, SerialHandle port, uint8_t* buffer, size_t capacity) {
  Bench& bench = *static_cast<Bench*>(context);
  constexpr uint64_t kPatience_ns = 40'000'000'000;
  if (bench.now_ns > kPatience_ns) bench.abort(bench.abort_context);
  Bench unused;
  return BenchPlatform(unused).serial.read(context, port, buffer, capacity);
}

struct Conversation : SweepBench {
  explicit Conversation(JobProcedure procedure, const Fault& fault = {}) {
    const bool reads = procedure == ReadWaypointsJob || procedure == ReadCtrJob;
    for (uint32_t n = 0; n < kWaypoints; ++n)
      aboard.push_back(flytec_simulator::GenerateWaypoint(n));
    if (reads) {
      simulator.waypoints = aboard;
      for (const CtrRecord& record : Airspaces()) simulator.airspaces.push_back(Stored(record));
    } else {
      for (const flytec_simulator::StoredWaypoint& waypoint : aboard)
        job.data.waypoints.push_back(Record(waypoint));
      job.data.airspaces = Airspaces();
    }
    platform.serial.read = ReadWithPatience;
    Run(procedure, fault);
  }

  std::vector<flytec_simulator::StoredWaypoint> aboard;
};

// --- What every run must hold --------------------------------------------------------------------

void ExpectDeliveredWasAboard(const Conversation& run) {
  for (const WaypointRecord& waypoint : run.job.data.waypoints) {
    const auto is_it = [&](const flytec_simulator::StoredWaypoint& known) {
      return SentAs(Record(known)) == SentAs(waypoint);
    };
    EXPECT_TRUE(std::any_of(run.aboard.begin(), run.aboard.end(), is_it));
  }
  if (run.result < 0) return;
  for (const CtrRecord& record : run.job.data.airspaces) {
    const auto& memory = run.simulator.airspaces;
    EXPECT_EQ(std::count(memory.begin(), memory.end(), Stored(record)), 1);
  }
}

void ExpectSane(const Conversation& run) {
  EXPECT_LE(run.elapsed_ms, kLongestRun_ms);
  EXPECT_TRUE(run.result >= 0 || !run.recorder.messages.empty() ||
              Has(run.recorder.statuses, "Transfer aborted") ||
              run.recorder.statuses.back().ends_with("waypoints sent"));
  for (const flytec_simulator::StoredWaypoint& waypoint : run.simulator.waypoints) {
    EXPECT_EQ(std::count(run.aboard.begin(), run.aboard.end(), waypoint), 1);
  }
  const std::vector<CtrRecord> sent = Airspaces();
  for (const flytec_simulator::StoredAirspace& airspace : run.simulator.airspaces) {
    const auto is_it = [&](const CtrRecord& record) { return Stored(record) == airspace; };
    EXPECT_TRUE(std::any_of(sent.begin(), sent.end(), is_it));
  }
}

// --- The sweeps ----------------------------------------------------------------------------------

TEST(MemorySweep, WithoutAFaultEverythingArrives) {
  const std::pair<JobProcedure, int> cases[] = {
      {WriteWaypointsJob, 3}, {ReadWaypointsJob, 3}, {WriteCtrJob, 2}, {ReadCtrJob, 2}};
  for (const auto& [procedure, result] : cases) {
    const Conversation run(procedure);
    EXPECT_EQ(run.result, result);
    EXPECT_GT(std::max(run.bench.sent, run.bench.received), 40U);
    ExpectSane(run);
  }
  ExpectDeliveredWasAboard(Conversation(ReadWaypointsJob));
  ExpectDeliveredWasAboard(Conversation(ReadCtrJob));
  const Conversation waypoints(WriteWaypointsJob);
  EXPECT_EQ(waypoints.simulator.waypoints, waypoints.aboard);
  EXPECT_EQ(Conversation(WriteCtrJob).simulator.airspaces.size(), 2U);
}

TEST(MemorySweep, WhatIsBentOnTheWayBackIsNotDelivered) {
  for (const JobProcedure procedure : {ReadWaypointsJob, ReadCtrJob}) {
    for (const Fault& fault : FaultsAt(kByteFaults, Conversation(procedure).bench.received)) {
      SCOPED_TRACE(Describe(fault));
      const Conversation run(procedure, fault);
      ExpectSane(run);
      ExpectDeliveredWasAboard(run);
      EXPECT_TRUE(run.result >= 0 ||
                  (run.job.data.waypoints.empty() && run.job.data.airspaces.empty()));
      EXPECT_TRUE(run.result == 2 || run.result < 0 || procedure == ReadWaypointsJob)
          << "a list of airspaces is whole or refused";
    }
  }
}

TEST(MemorySweep, WhatIsBentOnTheWayToTheInstrumentIsNotKept) {
  for (const JobProcedure procedure : {WriteWaypointsJob, WriteCtrJob}) {
    for (const Fault& fault : FaultsAt(kByteFaults, Conversation(procedure).bench.sent, true)) {
      SCOPED_TRACE(Describe(fault));
      const Conversation run(procedure, fault);
      ExpectSane(run);
      // One byte costs no more than the one waypoint it was part of.
      const int kept = static_cast<int>(run.simulator.waypoints.size());
      EXPECT_TRUE(run.result != static_cast<int>(kWaypoints) || kept >= run.result - 1);
    }
  }
}

// An airspace counts as taken only when the instrument has it.
TEST(MemorySweep, AnAcknowledgedAirspaceIsInTheMemory) {
  for (const Fault& fault : FaultsAtBytes(kByteFaults, Conversation(WriteCtrJob).bench)) {
    SCOPED_TRACE(Describe(fault));
    const Conversation run(WriteCtrJob, fault);
    const size_t kept = run.simulator.airspaces.size();
    const bool first = Has(run.recorder.progress, "CTR 1/2 taken: First");
    const bool second = Has(run.recorder.progress, "CTR 2/2 taken: Second");
    const size_t taken = size_t{first} + size_t{second};
    EXPECT_LE(taken, kept);
    EXPECT_LE(kept, taken + 1) << "the one whose acknowledgement was lost";
    EXPECT_EQ(run.result >= 0, taken == 2);
  }
}

// Where nothing was lost on the wire, what is told is what has arrived.
TEST(MemorySweep, AnUploadOfWaypointsThatBreaksOffSaysHowManyArrived) {
  const Conversation whole(WriteWaypointsJob);
  std::vector<Fault> faults = FaultsAt({FaultKind::kFailWrite}, whole.bench.writes);
  for (size_t at = 0; at < whole.bench.waits; ++at) faults.push_back(Abort(at));
  for (const Fault& fault : faults) {
    SCOPED_TRACE(Describe(fault));
    const Conversation run(WriteWaypointsJob, fault);
    ExpectSane(run);
    const size_t kept = run.simulator.waypoints.size();
    const bool began = Has(run.recorder.statuses, "Product data read") &&
                       run.recorder.statuses.back().ends_with("waypoints sent");
    EXPECT_TRUE(began || kept == 0);
    if (!began) continue;
    EXPECT_EQ(run.recorder.statuses.back(),
              FormatCountMessage("% waypoints sent", static_cast<uint32_t>(kept)));
    EXPECT_EQ(run.result >= 0, kept == kWaypoints);
  }
}

TEST(MemorySweep, AnUploadOfAirspacesThatBreaksOffLeavesWholeOnes) {
  const Conversation whole(WriteCtrJob);
  for (const FaultKind kind : {FaultKind::kFailWrite, FaultKind::kAbort}) {
    const size_t places = kind == FaultKind::kAbort ? whole.bench.waits : whole.bench.writes;
    for (const Fault& fault : FaultsAt({kind}, places)) {
      SCOPED_TRACE(Describe(fault));
      const Conversation run(WriteCtrJob, fault);
      ExpectSane(run);
      const bool after_the_last = run.result == 2 && fault.at + 8 > places;
      EXPECT_TRUE(run.result < 0 || after_the_last);
      EXPECT_LE(run.simulator.airspaces.size(), 2U);
      if (kind == FaultKind::kFailWrite || run.result >= 0) continue;
      EXPECT_LE(run.bench.waits, fault.at + 2);
      EXPECT_TRUE(run.recorder.messages.empty());
    }
  }
}

TEST(MemorySweep, AReadThatIsAbortedDeliversNothing) {
  for (const JobProcedure procedure : {ReadWaypointsJob, ReadCtrJob}) {
    const Conversation whole(procedure);
    for (const Fault& fault : FaultsAt({FaultKind::kAbort}, whole.bench.waits)) {
      SCOPED_TRACE(Describe(fault));
      const Conversation run(procedure, fault);
      const bool in_the_last_wait = run.result == whole.result && fault.at + 1 == whole.bench.waits;
      EXPECT_TRUE(run.result < 0 || in_the_last_wait);
      EXPECT_TRUE(in_the_last_wait ||
                  (run.job.data.waypoints.empty() && run.job.data.airspaces.empty()));
      EXPECT_TRUE(run.recorder.messages.empty());
    }
  }
}

TEST(MemorySweep, UnpluggingIsTold) {
  for (const JobProcedure procedure :
       {ReadWaypointsJob, ReadCtrJob, WriteWaypointsJob, WriteCtrJob}) {
    const Conversation whole(procedure);
    for (const Fault& fault : FaultsAtBytes({FaultKind::kUnplug}, whole.bench)) {
      SCOPED_TRACE(Describe(fault));
      const Conversation run(procedure, fault);
      ExpectSane(run);
      // Nobody reads while waypoints are sent, nor the XON after the last acknowledgement.
      const bool last = !fault.towards_instrument && fault.at + 1 == whole.bench.received;
      const bool unnoticed = run.result == whole.result && (last || procedure == WriteWaypointsJob);
      EXPECT_TRUE(run.result < 0 || unnoticed);
      EXPECT_LE(run.elapsed_ms, whole.elapsed_ms + 100);
    }
  }
}

}  // namespace
}  // namespace skyhaul::flytec
