// Real flights through instrument, terminal and file. How they are read is a matter of formats/igc.

#include <gtest/gtest.h>

#include <set>

#include "app/command_line/command_line_block.h"
#include "protocols/flytec/track_receiver.h"
#include "tests/end_to_end/program.h"
#include "tests/support/real_flights.h"

namespace skyhaul {
namespace {

// Whether the driver takes a flight: all of its lines can be decoded.
bool IsAccepted(const std::string& text) {
  flytec::TrackReceiver receiver;
  auto fault = flytec::TrackFault::kNone;
  for (size_t i = 0; i < text.size() && fault == flytec::TrackFault::kNone; ++i) {
    fault = flytec::FeedTrackByte(receiver, static_cast<uint8_t>(text[i]));
  }
  return fault == flytec::TrackFault::kNone && !receiver.decoder.points.empty();
}

class RealFlightsTest : public testing::TestWithParam<size_t> {};

// The flights are shared out to several runs, so that these can go on side by side.
constexpr size_t kRuns = 4;

TEST_P(RealFlightsTest, SurviveInstrumentAndFileToTheByte) {
  const std::vector<std::filesystem::path> paths = RealFlights();
  std::multiset<std::string> expected;
  std::vector<std::string> options = {"--baud", "0"};
  for (size_t i = GetParam(); i < paths.size() && expected.size() < kMaxTracks; i += kRuns) {
    const std::string text = ReadText(paths[i].string());
    if (!IsAccepted(text)) continue;
    expected.insert(text);
    options.insert(options.end(), {"--flight", paths[i].string()});
  }
  if (expected.empty()) GTEST_SKIP() << "SKYHAUL_FLIGHTS names no flights for this run";
  Instrument instrument;
  StartInstrument(instrument, options);
  ScratchFolder saved;
  Program program;
  ASSERT_EQ(RunToEnd(program, {SKYHAUL_PROGRAM, "/GPS=IQCOMPEO", "/COM=" + instrument.port,
                               "/IGC_LOG=" + saved.File(""),
                               "/TRACK=1-" + std::to_string(expected.size()), "/EXIT"}),
            0)
      << program.Err();
  std::multiset<std::string> found;
  for (const std::string& name : saved.Names()) found.insert(ReadText(saved.File(name)));
  EXPECT_TRUE(found == expected) << found.size() << " of " << expected.size() << " flights";
}

INSTANTIATE_TEST_SUITE_P(Shared, RealFlightsTest, testing::Range(size_t{0}, kRuns));

}  // namespace
}  // namespace skyhaul
