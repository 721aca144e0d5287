// Whole conversations about places, once per byte, write and wait with a fault there: each run ends
// in bounded time and says why, what is delivered was in the instrument's memory, and the memory
// holds what was sent whole and nothing else. Flights have a sweep of their own, over whole
// downloads.

#include <algorithm>
#include <functional>

#include "instruments/flytec/flytec_simulator.h"
#include "protocols/flytec/ctr_lines.h"
#include "protocols/flytec/ctr_list.h"
#include "protocols/flytec/ctr_upload.h"
#include "protocols/flytec/field_text.h"
#include "protocols/flytec/waypoint_list.h"
#include "protocols/flytec/waypoint_upload.h"
#include "tests/protocols/flytec/flytec_bench.h"

namespace skyhaul::flytec {
namespace {

// No single fault may cost more than asking for the product data 15 times over.
constexpr uint64_t kLongestRun_ms = 45000;

const std::vector<FileWaypoint> kWaypoints = {
    {.lat = 1 << 29, .lon = 1 << 27, .altitude_m = 620, .name = "One"},
    {.lat = -(1 << 28), .lon = -(1 << 30), .altitude_m = -7, .name = "Two"},
    {.lat = 12345678, .lon = 87654321, .altitude_m = 12345, .name = "Seventeen letters"}};

const std::vector<flytec_simulator::StoredAirspace> kAirspaces = {
    {"First            ",
     "0000",
     "                 ",
     {"P,4730.000,N,01115.000,E", "C,4730.000,S,01100.000,E,00900"}},
    {"Second           ",
     "0012",
     "With an arc      ",
     {"X,4700.000,N,01100.000,W", "T,4703.000,N,01100.000,W,-", "Z,4700.000,N,01104.000,W,-"}}};

// What a job has read of places, as texts.
Texts PlacesRead(const JobData& data) {
  Texts texts;
  for (const WaypointRecord& record : data.waypoints) {
    // The record is packed, and only its time differs between runs.
    texts.emplace_back(reinterpret_cast<const char*>(&record), offsetof(WaypointRecord, time));
  }
  for (const CtrRecord& record : data.airspaces) {
    for (const CtrLine& line : CtrLines(record, FieldText(record.name))) {
      texts.push_back(line.sentence);
    }
  }
  return texts;
}

template <typename Element>
bool Within(const std::vector<Element>& part, const std::vector<Element>& whole) {
  return std::all_of(part.begin(), part.end(), [&](const Element& element) {
    return std::count(part.begin(), part.end(), element) == 1 &&
           std::count(whole.begin(), whole.end(), element) == 1;
  });
}

// A person who gives up after 40 seconds: the airspace list has no limit of its own.
int ReadWithPatience(void* context, SerialHandle port, uint8_t* buffer, size_t capacity) {
  Bench& bench = *static_cast<Bench*>(context);
  constexpr uint64_t kPatience_ns = 40'000'000'000;
  if (bench.now_ns > kPatience_ns) bench.abort(bench.abort_context);
  Bench unused;
  return BenchPlatform(unused).serial.read(context, port, buffer, capacity);
}

struct Transfer {
  const char* name;
  JobProcedure procedure;
  bool writes;
  int result;         // without a fault
  size_t tail_waits;  // of the last read or pause, when everything has been delivered
};

struct Conversation : JobBench {
  explicit Conversation(const Transfer& transfer, const Fault& fault = {}) {
    if (transfer.writes) {
      // What was read, for the way back.
      static const auto airspaces_read = Conversation({.procedure = ReadCtrJob}).job.data.airspaces;
      job.data = {.waypoints_to_send = kWaypoints, .airspaces = airspaces_read};
    } else {
      simulator.waypoints = {flytec_simulator::GenerateWaypoint(1),
                             flytec_simulator::GenerateWaypoint(2)};
      simulator.airspaces = kAirspaces;
    }
    Connect(flytec_simulator::MakeInstrument(simulator, 57600));
    platform.serial.read = ReadWithPatience;
    bench.fault = fault;
    const uint64_t start_ns = bench.now_ns;
    result = transfer.procedure(job);
    elapsed_ms = Elapsed_ms(bench, start_ns);
  }

  flytec_simulator::Simulator simulator;
  int result = 0;
  uint64_t elapsed_ms = 0;
};

// What every run must hold, held against the one without a fault.
void ExpectSound(const Transfer& transfer, const Conversation& run, const Conversation& whole,
                 const Fault& fault = {}) {
  const JobData& data = run.job.data;
  EXPECT_LE(run.elapsed_ms, kLongestRun_ms);
  EXPECT_TRUE(Within(PlacesRead(data), PlacesRead(whole.job.data)));
  EXPECT_TRUE(Within(run.simulator.waypoints, whole.simulator.waypoints));
  EXPECT_TRUE(Within(run.simulator.airspaces, kAirspaces));
  if (transfer.procedure == WriteCtrJob) {
    EXPECT_TRUE(run.result < 0 || data.sent == 2U);
    EXPECT_LE(data.sent, run.simulator.airspaces.size());
    EXPECT_LE(run.simulator.airspaces.size(), data.sent + 1U) << "one acknowledgement was lost";
  }
  if (run.result >= 0) {
    // Everything within it and as much: the same.
    EXPECT_EQ(run.simulator.waypoints.size(), whole.simulator.waypoints.size());
    EXPECT_EQ(run.simulator.airspaces.size(), whole.simulator.airspaces.size());
    // Waypoints later than all silences and rests are not missed: their list announces no number.
    EXPECT_TRUE((transfer.procedure == ReadWaypointsJob && fault.delay_ms > 3000) ||
                PlacesRead(data) == PlacesRead(whole.job.data));
    return;
  }
  EXPECT_TRUE(data.waypoints.empty());
  EXPECT_TRUE(data.airspaces.empty() || transfer.writes);
  EXPECT_TRUE(!run.recorder.messages.empty() || run.result == kNoTrackList ||
              Has(run.recorder.statuses, "Transfer aborted") ||
              run.recorder.statuses.back().ends_with("waypoints sent"));
}

// --- The sweep -----------------------------------------------------------------------------------

class Sweep : public testing::TestWithParam<Transfer> {
 protected:
  // Runs the transfer with a fault at each of so many places.
  void ForEach(
      Fault fault, size_t places,
      const std::function<void(const Fault&, const Conversation&)>& check =
          [](const Fault&, const Conversation&) {}) {
    for (fault.at = 0; fault.at < places; ++fault.at) {
      SCOPED_TRACE("fault " + std::to_string(static_cast<int>(fault.kind)) +
                   (fault.towards_instrument ? " to" : " from") + " the instrument at " +
                   std::to_string(fault.at) + " mask " + std::to_string(fault.flip_mask));
      const Conversation run(transfer, fault);
      ExpectSound(transfer, run, whole, fault);
      check(fault, run);
    }
  }

  const Transfer& transfer = GetParam();
  const Conversation whole = Conversation(transfer);
  const size_t to_instrument = whole.bench.sent;
  const size_t from_instrument = whole.bench.received;
};

TEST_P(Sweep, WithoutAFaultEverythingArrives) {
  EXPECT_EQ(whole.result, transfer.result);
  EXPECT_TRUE(whole.recorder.messages.empty());
  ExpectSound(transfer, whole, whole);
  const JobData& data = whole.job.data;
  if (transfer.procedure == WriteCtrJob) {
    EXPECT_EQ(whole.simulator.airspaces, kAirspaces);
  } else if (transfer.writes) {
    EXPECT_EQ(whole.simulator.waypoints.size(), kWaypoints.size());
  } else {
    EXPECT_EQ(data.waypoints.size() + data.airspaces.size(), transfer.result);
  }
}

TEST_P(Sweep, ChangedBytesAreNeitherDeliveredNorKept) {
  constexpr std::pair<FaultKind, uint8_t> kFaults[] = {{FaultKind::kDrop, 0},
                                                       {FaultKind::kRepeat, 0},
                                                       {FaultKind::kFlip, 0x01},
                                                       {FaultKind::kFlip, 0x10},
                                                       {FaultKind::kFlip, 0x80}};
  for (const auto& [kind, mask] : kFaults) {
    ForEach({.kind = kind, .flip_mask = mask}, from_instrument);
    const Fault there = {.kind = kind, .towards_instrument = true, .flip_mask = mask};
    ForEach(there, to_instrument, [&](const Fault&, const Conversation& run) {
      // The waypoint that was lost is sent again.
      EXPECT_TRUE(run.result >= 0 || transfer.procedure != WriteWaypointsJob);
      if (run.result < 0) return;
      EXPECT_EQ(run.result, transfer.result);
    });
  }
}

TEST_P(Sweep, LateBytesAreNotTakenForOthers) {
  for (const uint32_t late_ms : {10U, 1500U, 2500U, 21'000U}) {
    ForEach({.kind = FaultKind::kDelay, .delay_ms = late_ms}, from_instrument);
  }
  ForEach({.kind = FaultKind::kStop}, from_instrument);
}

TEST_P(Sweep, UnpluggingAndFailedWritesAreReportedAtOnce) {
  const auto check = [&](const Fault& fault, const Conversation& run) {
    // Nobody reads the XON after the list that an upload of airspaces reads back.
    const bool last = !fault.towards_instrument && fault.at + 1 == from_instrument;
    const bool unnoticed = fault.kind == FaultKind::kUnplug && run.result == transfer.result &&
                           transfer.procedure == WriteCtrJob && last;
    EXPECT_EQ(run.recorder.messages.size(), unnoticed ? 0U : 1U);
    EXPECT_TRUE(run.result < 0 || unnoticed);
    // A line of an upload is written again for 3 s, in case an XOFF holds it up.
    EXPECT_LE(run.elapsed_ms, whole.elapsed_ms + (transfer.writes ? 3200 : 0));
  };
  ForEach({.kind = FaultKind::kUnplug}, from_instrument, check);
  ForEach({.kind = FaultKind::kUnplug, .towards_instrument = true}, to_instrument, check);
  ForEach({.kind = FaultKind::kFailWrite}, whole.bench.writes, check);
}

TEST_P(Sweep, AnAbortEndsTheJobAtOnce) {
  ForEach({.kind = FaultKind::kAbort}, whole.bench.waits,
          [&](const Fault& fault, const Conversation& run) {
            const bool done = run.result == transfer.result &&
                              fault.at + transfer.tail_waits >= whole.bench.waits;
            EXPECT_LE(run.bench.waits, fault.at + 2);
            EXPECT_TRUE(run.result < 0 || done);
            EXPECT_TRUE(run.recorder.messages.empty());
            if (transfer.procedure == WriteWaypointsJob) {
              EXPECT_EQ(run.job.data.sent, run.simulator.waypoints.size());
              EXPECT_EQ(run.job.data.sent == 3U && run.result < 0,
                        run.recorder.statuses.back() == "3 waypoints sent, not verified");
            }
          });
}

INSTANTIATE_TEST_SUITE_P(Flytec, Sweep,
                         testing::Values(Transfer{"Waypoints", ReadWaypointsJob, false, 2, 1},
                                         Transfer{"Airspaces", ReadCtrJob, false, 2, 1},
                                         Transfer{"WaypointUpload", WriteWaypointsJob, true, 3, 1},
                                         Transfer{"AirspaceUpload", WriteCtrJob, true, 2, 1}),
                         [](const auto& test) { return std::string(test.param.name); });

}  // namespace
}  // namespace skyhaul::flytec
