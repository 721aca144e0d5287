// Whole downloads of two flights, once per byte, write and wait with a fault there. Each run ends
// in bounded time; what has a whole flight's name is the instrument's memory to the byte;
// everything else is named incomplete, has one message, and leaves the old flight as it was.

#include "commands/download_flights.h"
#include "tests/commands/session_bench.h"

namespace skyhaul {
namespace {

// Every place takes a minute where files are slow, so there each seventh.
constexpr size_t kStep = SKYHAUL_WHOLE_SWEEP ? 1 : 7;

size_t Runs(size_t places) {
  return (places + kStep - 1) / kStep;
}

// Three fixes, so far apart that a missing one shows in the duration.
std::string Flight(const std::string& hour) {
  return "AFLY123 6030\r\nHFDTE270417\r\nB" + hour +
         "0000"
         "4743564N01121571EA0062000640\r\nB" +
         hour +
         "0200"
         "4743600N01121600EA0062500645\r\nB" +
         hour +
         "0400"
         "4743700N01121700EA0062600646\r\nG0123456789ABCDEF\r\n";
}

// The same text, or one in which a single byte was changed, lost or doubled on the way.
bool IsOneByteAway(std::string_view text, std::string_view memory) {
  size_t start = 0;
  while (start < std::min(text.size(), memory.size()) && text[start] == memory[start]) ++start;
  text.remove_prefix(start);
  memory.remove_prefix(start);
  while (!text.empty() && !memory.empty() && text.back() == memory.back()) {
    text.remove_suffix(1);
    memory.remove_suffix(1);
  }
  return text.size() <= 1 && memory.size() <= 1;
}

class DownloadSweep : public SessionBench {
 protected:
  void SetUp() override {
    SessionBench::SetUp();
    request.instrument = flytec;
    request.flights = {.how = FlightChoice::How::kNumbers, .numbers = {1, 2}};
    request.target.path = folder.File(".");
    Run({});
    ASSERT_TRUE(result.done);
    received = bench.received;
    sent = bench.sent;
    writes = bench.writes;
    waits = bench.waits;
  }

  void Run(const Fault& fault) {
    std::filesystem::remove_all(folder.path);
    std::filesystem::create_directory(folder.path);
    document = {};
    ReplaceFlight(document, {.points = {{.time = 77}}}, {}, false, "");
    simulator = {.flights = {flytec_simulator::FlightFromIgc(memory[0]),
                             flytec_simulator::FlightFromIgc(memory[1])},
                 .manners = simulator.manners};
    Reset();
    recorder.messages.clear();
    recorder.statuses.clear();
    bench.fault = fault;
    bench.abort = [](void* context) { (void)AbortJob(static_cast<const Shell*>(context)); };
    bench.abort_context = const_cast<Shell*>(&shell);
    result =
        RunToEnd<DownloadFlightsResult>([&](auto end) { DownloadFlights(session, request, end); });
  }

  // Stalls and cuts one flight's answer at each byte. Returns how many runs did not bring both.
  size_t SweepManners(const flytec_simulator::Manners& manners,
                      int64_t flytec_simulator::Manners::*at) {
    size_t not_done = 0;
    for (int64_t n = 0; n < static_cast<int64_t>(memory[0].size()); n += kStep) {
      simulator.manners = manners;
      simulator.manners.*at = n;
      SCOPED_TRACE(manners.request + " broken off at " + std::to_string(n));
      Run({});
      Check({});
      if (!result.done) ++not_done;
    }
    return not_done;
  }

  // A byte that changes on the way in a flight's line cannot be seen: lines have no checksum.
  void Check(const Fault& fault) {
    const bool unseen = fault.kind == FaultKind::kDrop || fault.kind == FaultKind::kFlip ||
                        fault.kind == FaultKind::kRepeat;
    size_t whole = 0;
    size_t times[2] = {};  // that each flight of the memory is there
    for (const std::string& path : result.written) {
      if (path.find("-incomplete") != std::string::npos) continue;
      ++whole;
      const std::string text = ReadText(path);
      const auto is = [&](const std::string& flight) {
        return text == flight ||
               (unseen && !fault.towards_instrument && IsOneByteAway(text, flight));
      };
      EXPECT_TRUE(is(memory[0]) || is(memory[1])) << text;
      ++times[is(memory[0]) ? 0 : 1];
    }
    EXPECT_LE(times[0], Said("Flight 1 is incomplete") ? 0U : 1U);
    EXPECT_LE(times[1], Said("Flight 2 is incomplete") ? 0U : 1U);
    EXPECT_EQ(folder.Names().size(), result.written.size());
    EXPECT_EQ(result.done, whole == 2 && recorder.messages.empty());
    const bool aborted = Has(recorder.statuses, "Transfer aborted");
    // A list that is too short may also lack a flight that was asked for.
    EXPECT_LE(recorder.messages.size(), result.done ? 0U : 2U);
    EXPECT_EQ(recorder.messages.empty(), result.done || aborted);
    EXPECT_EQ(FlightPoints() > 1, result.done);
    // Two identifications, two lists, each flight twice, and the lateness itself.
    EXPECT_LE(Elapsed_ms(bench, 0), 40'000U);
  }

  // Returns how many of the runs did not bring both flights.
  size_t Sweep(Fault fault, size_t places) {
    size_t not_done = 0;
    for (fault.at = 0; fault.at < places; fault.at += kStep) {
      SCOPED_TRACE("fault " + std::to_string(static_cast<int>(fault.kind)) + " at " +
                   std::to_string(fault.at) + (fault.towards_instrument ? " to" : " from") +
                   " the instrument, mask " + std::to_string(fault.flip_mask) + ", late " +
                   std::to_string(fault.delay_ms));
      Run(fault);
      Check(fault);
      if (!result.done) ++not_done;
      if (HasFailure() && ++failed_runs > 5) break;
    }
    return not_done;
  }

  const Texts memory = {Flight("12"), Flight("09")};
  DownloadFlightsRequest request;
  DownloadFlightsResult result;
  size_t received = 0;
  size_t sent = 0;
  size_t writes = 0;
  size_t waits = 0;
  int failed_runs = 0;
};

TEST_F(DownloadSweep, ChangedBytes) {
  for (const FaultKind kind : {FaultKind::kDrop, FaultKind::kRepeat}) {
    Sweep({.kind = kind}, received);
    Sweep({.kind = kind, .towards_instrument = true}, sent);
  }
  for (const uint8_t mask : {uint8_t{0x01}, uint8_t{0x10}, uint8_t{0x80}}) {
    Sweep({.kind = FaultKind::kFlip, .flip_mask = mask}, received);
    Sweep({.kind = FaultKind::kFlip, .towards_instrument = true, .flip_mask = mask}, sent);
  }
}

// Later than each of the time-outs: of a list, of a flight, of an identification.
TEST_F(DownloadSweep, LateBytesLossesAndStopsAreMadeGood) {
  for (const uint32_t late_ms : {10U, 1100U, 2100U, 2600U, 4000U}) {
    EXPECT_EQ(Sweep({.kind = FaultKind::kDelay, .delay_ms = late_ms}, received), 0U);
  }
  // Later than the second request: it need not come, but what comes is what it says.
  for (const uint32_t late_ms : {5500U, 8000U}) {
    Sweep({.kind = FaultKind::kDelay, .delay_ms = late_ms}, received);
  }
  EXPECT_EQ(Sweep({.kind = FaultKind::kOverrun}, received), 0U);
  EXPECT_EQ(Sweep({.kind = FaultKind::kStop}, received), 0U);
}

TEST_F(DownloadSweep, FailedWritesPulledPlugsAndAborts) {
  EXPECT_EQ(Sweep({.kind = FaultKind::kFailWrite}, writes), Runs(writes));
  Sweep({.kind = FaultKind::kUnplug}, received);
  EXPECT_EQ(Sweep({.kind = FaultKind::kUnplug, .towards_instrument = true}, sent), Runs(sent));
  Sweep({.kind = FaultKind::kAbort}, waits);
}

TEST_F(DownloadSweep, FlightsThatBreakOff) {
  using flytec_simulator::Manners;
  for (const char* asked : {"PBRTR,00", "PBRTR,01"}) {
    for (const uint64_t stall_ns : {2'200'000'000U, 3'300'000'000U, 4'200'000'000U}) {
      const Manners slow = {.request = asked, .nth = 1, .stall_ns = stall_ns};
      EXPECT_EQ(SweepManners(slow, &Manners::stall_at), 0U);
    }
    EXPECT_EQ(SweepManners({.request = asked, .nth = 1}, &Manners::stall_at), 0U);
    EXPECT_EQ(SweepManners({.request = asked, .nth = 1}, &Manners::cut_at), 0U);
    SweepManners({.request = asked, .stall_ns = 2'200'000'000}, &Manners::stall_at);
    for (const uint64_t stall_ns : {uint64_t{5'500'000'000}, uint64_t{8'000'000'000}}) {
      SweepManners({.request = asked, .nth = 1, .stall_ns = stall_ns}, &Manners::stall_at);
    }
    EXPECT_EQ(SweepManners({.request = asked}, &Manners::stall_at), Runs(memory[0].size()));
    EXPECT_EQ(SweepManners({.request = asked}, &Manners::cut_at), Runs(memory[0].size()));
  }
}

TEST_F(DownloadSweep, TheHabitsOfInstrumentsAreMadeGoodOrNamed) {
  const struct {
    flytec_simulator::Manners manners;
    size_t files;
    const char* said;
  } cases[] = {
      {{.request = "PBRSNP", .late_ns = 2'500'000'000}, 2, "2 tracks in track list found"},
      {{.lose_xon = true}, 2, "2 tracks in track list found"},
      {{.request = "PBRTR,00", .nth = 1, .late_ns = 5'500'000'000}, 2, "requesting it once more"},
      {{.request = "PBRTL", .nth = 1, .silent = true}, 2, "requesting it once more"},
      {{.request = "PBRTL", .nth = 1, .lines = 1}, 2, "requesting it once more"},
      {{.announced_flights = 7}, 2, "7 flights announced, 2 received"},
      {{.request = "PBRTL", .silent = true}, 0, "its memory is empty, or it did not answer"},
      {{.request = "PBRTL", .lines = 1}, 0, "There is no track 2 in the list"},
      {{.request = "PBRTR,01", .silent = true}, 1, "Flight 2 is incomplete"},
  };
  for (const auto& c : cases) {
    simulator.manners = c.manners;
    Run({});
    EXPECT_EQ(result.written.size(), c.files) << c.said;
    EXPECT_TRUE(Said(c.said)) << c.said;
    EXPECT_EQ(result.done, recorder.messages.empty()) << c.said;
  }
}

// An instrument goes on sending after the program was stopped, and the next run opens its port in
// the middle of a flight.
TEST_F(DownloadSweep, TheRestOfAnAbortedTransferIsNotTakenForAnAnswer) {
  simulator.manners.keep_sending = true;
  simulator.flights[0].igc_text.insert(14, std::string(40'000, 'L'));
  instrument = flytec_simulator::MakeInstrument(simulator, 57600);
  bench.fault = {.kind = FaultKind::kAbort, .at = bench.waits + 400};
  const auto download = [&] {
    result =
        RunToEnd<DownloadFlightsResult>([&](auto end) { DownloadFlights(session, request, end); });
  };
  request.target.overwrite = true;
  download();
  EXPECT_TRUE(Said("Transfer aborted"));
  simulator.flights[0] = flytec_simulator::FlightFromIgc(memory[0]);
  download();
  EXPECT_TRUE(Said("Waiting for the instrument to finish an earlier transfer"));
  EXPECT_TRUE(result.done);
  for (const std::string& path : result.written) EXPECT_TRUE(Has(memory, ReadText(path)));
}

}  // namespace
}  // namespace skyhaul
