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
    simulator.flights = {flytec_simulator::FlightFromIgc(memory[0]),
                         flytec_simulator::FlightFromIgc(memory[1])};
    simulator.sentence.clear();
    Reset();
    recorder.messages.clear();
    recorder.statuses.clear();
    bench.fault = fault;
    bench.abort = [](void* context) { (void)AbortJob(static_cast<const Shell*>(context)); };
    bench.abort_context = const_cast<Shell*>(&shell);
    result =
        RunToEnd<DownloadFlightsResult>([&](auto end) { DownloadFlights(session, request, end); });
  }

  // A byte that changes on the way in a flight's line cannot be seen: lines have no checksum.
  void Check(const Fault& fault) {
    const bool unseen = fault.kind == FaultKind::kDrop || fault.kind == FaultKind::kFlip ||
                        fault.kind == FaultKind::kRepeat;
    size_t whole = 0;
    for (const std::string& path : result.written) {
      if (path.find("-incomplete") != std::string::npos) continue;
      ++whole;
      const std::string text = ReadText(path);
      EXPECT_TRUE(Has(memory, text) ||
                  (unseen && !fault.towards_instrument &&
                   (IsOneByteAway(text, memory[0]) || IsOneByteAway(text, memory[1]))))
          << text;
    }
    EXPECT_EQ(folder.Names().size(), result.written.size());
    EXPECT_EQ(result.done, whole == 2 && recorder.messages.empty());
    const bool aborted = Has(recorder.statuses, "Transfer aborted");
    EXPECT_EQ(recorder.messages.size(), result.done || aborted ? 0U : 1U);
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

  const Texts memory = {Flight("12"), Flight("11")};
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
  EXPECT_EQ(Sweep({.kind = FaultKind::kOverrun}, received), 0U);
  EXPECT_EQ(Sweep({.kind = FaultKind::kStop}, received), 0U);
}

TEST_F(DownloadSweep, FailedWritesPulledPlugsAndAborts) {
  EXPECT_EQ(Sweep({.kind = FaultKind::kFailWrite}, writes), Runs(writes));
  Sweep({.kind = FaultKind::kUnplug}, received);
  EXPECT_EQ(Sweep({.kind = FaultKind::kUnplug, .towards_instrument = true}, sent), Runs(sent));
  Sweep({.kind = FaultKind::kAbort}, waits);
}

}  // namespace
}  // namespace skyhaul
