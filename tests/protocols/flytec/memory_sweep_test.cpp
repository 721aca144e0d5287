// Waypoints and airspaces up and down, once per byte, write and wait with a fault there: each run
// ends in bounded time and says why, what is delivered was in the instrument's memory, and the
// memory holds what was sent whole and nothing else.

#include <gtest/gtest.h>

#include <algorithm>

#include "core/count_message.h"
#include "core/units.h"
#include "instruments/flytec/flytec_simulator.h"
#include "protocols/flytec/ctr_lines.h"
#include "protocols/flytec/ctr_list.h"
#include "protocols/flytec/ctr_upload.h"
#include "protocols/flytec/field_text.h"
#include "protocols/flytec/waypoint_list.h"
#include "protocols/flytec/waypoint_upload.h"
#include "tests/protocols/flytec/flytec_bench.h"

namespace skyhaul {
namespace {

// No single fault may cost more than asking for the product data 15 times over.
constexpr uint64_t kLongestRun_ms = 45000;
constexpr uint32_t kWaypoints = 3;

AirspacePosition At(double lat_deg, double lon_deg) {
  return {RadiansToSemicircles(lat_deg / kDegreesPerRadian),
          RadiansToSemicircles(lon_deg / kDegreesPerRadian)};
}

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

FlytecAirspace Stored(const CtrRecord& record) {
  FlytecAirspaceUpload upload;
  for (const CtrLine& line : CtrLines(record, FieldText(record.name))) {
    const std::string& text = line.sentence;
    (void)TakeUploadLine(upload, text.substr(9, text.size() - 9 - 5));
  }
  return upload.airspace;
}

// A person who gives up after 40 seconds: the airspace list has no limit of its own.
int ReadWithPatience(void* context, SerialHandle port, uint8_t* buffer, size_t capacity) {
  Bench& bench = *static_cast<Bench*>(context);
  constexpr uint64_t kPatience_ns = 40'000'000'000;
  if (bench.now_ns > kPatience_ns) bench.abort(bench.abort_context);
  Bench unused;
  return BenchPlatform(unused).serial.read(context, port, buffer, capacity);
}

struct Conversation {
  Conversation(JobProcedure procedure, const Fault& fault) {
    const bool reads = procedure == FlytecReadWaypointsJob || procedure == FlytecReadCtrJob;
    for (uint32_t n = 0; n < kWaypoints; ++n) aboard.push_back(GenerateFlytecWaypoint(n));
    if (reads) {
      simulator.waypoints = aboard;
      for (const CtrRecord& record : Airspaces()) simulator.airspaces.push_back(Stored(record));
    } else {
      for (const FlytecWaypoint& waypoint : aboard) job.data.waypoints.push_back(Record(waypoint));
      job.data.airspaces = Airspaces();
    }
    instrument = MakeFlytecInstrument(simulator, 57600);
    bench.instrument = &instrument;
    bench.fault = fault;
    bench.abort = [](void* context) { static_cast<Operation*>(context)->aborted = true; };
    bench.abort_context = &job.operation;
    platform = BenchPlatform(bench);
    platform.serial.read = ReadWithPatience;
    shell = MakeShell(recorder);
    job.operation.shell = &shell;
    job.link.platform = &platform;
    job.link.operation = &job.operation;
    job.link.port_name = bench.instrument_port;
    const uint64_t start_ns = bench.now_ns;
    result = procedure(job);
    elapsed_ms = Elapsed_ms(bench, start_ns);
  }
  Conversation(const Conversation&) = delete;
  Conversation& operator=(const Conversation&) = delete;

  // The record that is sent as this waypoint.
  static WaypointRecord Record(const FlytecWaypoint& waypoint) {
    const std::string& text = waypoint.position;
    WaypointRecord record;
    const auto number = [&](size_t at, size_t digits) {
      return std::stoi(text.substr(at, digits));
    };
    record.lat =
        MilliminutesToSemicircles(number(0, 2) * 60000 + number(2, 2) * 1000 + number(5, 3));
    record.lon =
        MilliminutesToSemicircles(number(11, 3) * 60000 + number(14, 2) * 1000 + number(17, 3));
    record.altitude = waypoint.altitude_m;
    waypoint.long_name.copy(record.description, waypoint.long_name.size());
    return record;
  }

  std::vector<FlytecWaypoint> aboard;
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

std::string Describe(const Fault& fault) {
  return "fault " + std::to_string(static_cast<int>(fault.kind)) +
         (fault.towards_instrument ? " to" : " from") + " the instrument at " +
         std::to_string(fault.at);
}

// --- What every run must hold --------------------------------------------------------------------

void ExpectDeliveredWasAboard(const Conversation& run, const Fault& fault) {
  for (const WaypointRecord& waypoint : run.job.data.waypoints) {
    const std::string sent = WaypointSentence(
        waypoint, FieldText(waypoint.description[0] != 0 ? waypoint.description : waypoint.name));
    const auto is_it = [&](const FlytecWaypoint& known) {
      const WaypointRecord record = Conversation::Record(known);
      return WaypointSentence(record, FieldText(record.description[0] != 0 ? record.description
                                                                           : record.name)) == sent;
    };
    EXPECT_TRUE(std::any_of(run.aboard.begin(), run.aboard.end(), is_it)) << Describe(fault);
  }
  for (const CtrRecord& record : run.job.data.airspaces) {
    const auto known = Stored(record);
    const auto& memory = run.simulator.airspaces;
    EXPECT_TRUE(run.result < 0 || std::count(memory.begin(), memory.end(), known) == 1)
        << Describe(fault);
  }
}

void ExpectMemoryWasSent(const Conversation& run, const Fault& fault) {
  for (const FlytecWaypoint& waypoint : run.simulator.waypoints) {
    EXPECT_EQ(std::count(run.aboard.begin(), run.aboard.end(), waypoint), 1) << Describe(fault);
  }
  for (const FlytecAirspace& airspace : run.simulator.airspaces) {
    const auto is_it = [&](const CtrRecord& sent) { return Stored(sent) == airspace; };
    const std::vector<CtrRecord> sent = Airspaces();
    EXPECT_TRUE(std::any_of(sent.begin(), sent.end(), is_it)) << Describe(fault);
  }
}

void ExpectSane(const Conversation& run, const Fault& fault) {
  EXPECT_LE(run.elapsed_ms, kLongestRun_ms) << Describe(fault);
  EXPECT_TRUE(run.result >= 0 || !run.recorder.messages.empty() ||
              Has(run.recorder.statuses, "Transfer aborted") ||
              run.recorder.statuses.back().ends_with("waypoints sent"))
      << Describe(fault);
  ExpectMemoryWasSent(run, fault);
}

// Calls a function for each fault of one byte in a direction.
template <typename Function>
void ForEachByteFault(JobProcedure procedure, bool towards_instrument, Function function) {
  const Conversation whole(procedure, {});
  const size_t bytes = towards_instrument ? whole.bench.sent : whole.bench.received;
  ASSERT_GT(bytes, 40U);
  for (const FaultKind kind : {FaultKind::kDrop, FaultKind::kFlip, FaultKind::kRepeat}) {
    for (size_t at = 0; at < bytes; ++at) {
      const Fault fault = {.kind = kind, .towards_instrument = towards_instrument, .at = at};
      function(Conversation(procedure, fault), fault);
    }
  }
}

// --- The sweeps ----------------------------------------------------------------------------------

TEST(MemorySweep, WithoutAFaultEverythingArrives) {
  const Conversation waypoints_up(FlytecWriteWaypointsJob, {});
  EXPECT_EQ(waypoints_up.result, 3);
  EXPECT_EQ(waypoints_up.simulator.waypoints, waypoints_up.aboard);
  const Conversation waypoints_down(FlytecReadWaypointsJob, {});
  EXPECT_EQ(waypoints_down.result, 3);
  ExpectDeliveredWasAboard(waypoints_down, {});
  const Conversation airspaces_up(FlytecWriteCtrJob, {});
  EXPECT_EQ(airspaces_up.result, 2);
  EXPECT_EQ(airspaces_up.simulator.airspaces.size(), 2U);
  ExpectMemoryWasSent(airspaces_up, {});
  const Conversation airspaces_down(FlytecReadCtrJob, {});
  EXPECT_EQ(airspaces_down.result, 2);
  ExpectDeliveredWasAboard(airspaces_down, {});
}

TEST(MemorySweep, WhatIsBentOnTheWayBackIsNotDelivered) {
  for (const JobProcedure procedure : {FlytecReadWaypointsJob, FlytecReadCtrJob}) {
    ForEachByteFault(procedure, false, [](const Conversation& run, const Fault& fault) {
      ExpectSane(run, fault);
      ExpectDeliveredWasAboard(run, fault);
      if (run.result < 0) {
        EXPECT_TRUE(run.job.data.waypoints.empty() && run.job.data.airspaces.empty());
      }
    });
  }
}

TEST(MemorySweep, ABentListOfAirspacesIsWholeOrRefused) {
  ForEachByteFault(FlytecReadCtrJob, false, [](const Conversation& run, const Fault& fault) {
    EXPECT_TRUE(run.result == 2 || run.result < 0) << Describe(fault);
  });
}

TEST(MemorySweep, WhatIsBentOnTheWayToTheInstrumentIsNotKept) {
  for (const JobProcedure procedure : {FlytecWriteWaypointsJob, FlytecWriteCtrJob}) {
    ForEachByteFault(procedure, true, [](const Conversation& run, const Fault& fault) {
      ExpectSane(run, fault);
      // One byte costs no more than the one waypoint it was part of.
      const int kept = static_cast<int>(run.simulator.waypoints.size());
      const bool waypoints_sent = run.result == static_cast<int>(kWaypoints);
      EXPECT_TRUE(!waypoints_sent || kept >= run.result - 1) << Describe(fault);
    });
  }
}

// An airspace counts as taken only when the instrument has it.
TEST(MemorySweep, AnAcknowledgedAirspaceIsInTheMemory) {
  for (const bool towards_instrument : {true, false}) {
    ForEachByteFault(FlytecWriteCtrJob, towards_instrument,
                     [](const Conversation& run, const Fault& fault) {
                       const size_t kept = run.simulator.airspaces.size();
                       const bool first = Has(run.recorder.progress, "CTR 1/2 taken: First");
                       const bool second = Has(run.recorder.progress, "CTR 2/2 taken: Second");
                       const size_t taken = size_t{first} + size_t{second};
                       EXPECT_LE(taken, kept) << Describe(fault);
                       // The one whose acknowledgement was lost.
                       EXPECT_LE(kept, taken + 1) << Describe(fault);
                       EXPECT_EQ(run.result >= 0, taken == 2) << Describe(fault);
                     });
  }
}

// Where nothing was lost on the wire, what is told is what has arrived.
TEST(MemorySweep, AnUploadOfWaypointsThatBreaksOffSaysHowManyArrived) {
  const Conversation whole(FlytecWriteWaypointsJob, {});
  const auto expect_told = [](const Fault& fault) {
    const Conversation run(FlytecWriteWaypointsJob, fault);
    ExpectSane(run, fault);
    const size_t kept = run.simulator.waypoints.size();
    const bool began = Has(run.recorder.statuses, "Product data read") &&
                       run.recorder.statuses.back().ends_with("waypoints sent");
    EXPECT_TRUE(began || kept == 0) << Describe(fault);
    if (!began) return;
    EXPECT_EQ(run.recorder.statuses.back(),
              FormatCountMessage("% waypoints sent", static_cast<uint32_t>(kept)))
        << Describe(fault);
    EXPECT_EQ(run.result >= 0, kept == kWaypoints) << Describe(fault);
  };
  for (size_t at = 0; at < whole.bench.writes; ++at) {
    expect_told({.kind = FaultKind::kFailWrite, .at = at});
  }
  for (size_t at = 0; at < whole.bench.waits; ++at) {
    expect_told({.kind = FaultKind::kAbort, .at = at});
  }
}

TEST(MemorySweep, AnUploadOfAirspacesThatBreaksOffLeavesWholeOnes) {
  const Conversation whole(FlytecWriteCtrJob, {});
  for (const FaultKind kind : {FaultKind::kFailWrite, FaultKind::kAbort}) {
    const size_t places = kind == FaultKind::kAbort ? whole.bench.waits : whole.bench.writes;
    for (size_t at = 0; at < places; ++at) {
      const Fault fault = {.kind = kind, .at = at};
      const Conversation run(FlytecWriteCtrJob, fault);
      ExpectSane(run, fault);
      const bool after_the_last = run.result == 2 && at + 8 > places;
      EXPECT_TRUE(run.result < 0 || after_the_last) << Describe(fault);
      EXPECT_LE(run.simulator.airspaces.size(), 2U) << Describe(fault);
      if (kind == FaultKind::kAbort && run.result < 0) {
        EXPECT_LE(run.bench.waits - at, 2U) << Describe(fault);
        EXPECT_TRUE(run.recorder.messages.empty()) << Describe(fault);
      }
    }
  }
}

TEST(MemorySweep, UnpluggingIsTold) {
  for (const JobProcedure procedure :
       {FlytecReadWaypointsJob, FlytecReadCtrJob, FlytecWriteWaypointsJob, FlytecWriteCtrJob}) {
    const Conversation whole(procedure, {});
    for (const bool towards_instrument : {true, false}) {
      const size_t bytes = towards_instrument ? whole.bench.sent : whole.bench.received;
      for (size_t at = 0; at < bytes; ++at) {
        const Fault fault = {
            .kind = FaultKind::kUnplug, .towards_instrument = towards_instrument, .at = at};
        const Conversation run(procedure, fault);
        ExpectSane(run, fault);
        // Nobody reads while waypoints are sent, nor the XON after the last acknowledgement.
        const bool last = !towards_instrument && at + 1 == bytes;
        const bool unnoticed =
            run.result == whole.result && (last || procedure == FlytecWriteWaypointsJob);
        EXPECT_TRUE(run.result < 0 || unnoticed) << Describe(fault);
        EXPECT_LE(run.elapsed_ms, whole.elapsed_ms + 100) << Describe(fault);
      }
    }
  }
}

}  // namespace
}  // namespace skyhaul
