// Real flights through the real program: instrument, terminal, file, reader.

#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <vector>

#include "app/command_line/command_line_block.h"
#include "core/units.h"
#include "formats/igc/read_igc.h"
#include "protocols/flytec/track_receiver.h"
#include "tests/end_to_end/program.h"

namespace skyhaul {
namespace {

struct Flight {
  std::string path;
  std::string text;
  std::vector<TrackPoint> decoded;
};

// Flights that the driver takes: all of their lines can be decoded.
std::vector<Flight> AcceptedFlights(const std::string& folder) {
  std::vector<Flight> flights;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.path().extension() != ".igc") continue;
    TrackReceiver receiver;
    const std::string text = ReadText(entry.path().string());
    TrackFault fault = TrackFault::kNone;
    for (size_t i = 0; i < text.size() && fault == TrackFault::kNone; ++i) {
      fault = FeedTrackByte(receiver, static_cast<uint8_t>(text[i]));
    }
    if (fault != TrackFault::kNone || receiver.decoder.points.empty()) continue;
    flights.push_back({entry.path().string(), text, std::move(receiver.decoder.points)});
  }
  return flights;
}

std::string Position(const TrackPoint& point) {
  return std::to_string(point.time) + " " + std::to_string(SemicirclesToMilliminutes(point.lat)) +
         " " + std::to_string(SemicirclesToMilliminutes(point.lon)) + " " +
         std::to_string(point.gps_alt_dm) + " " + std::to_string(point.pressure_alt);
}

// The reader drops fixes that repeat a second; all others must be what the instrument delivered.
// Returns false when the reader refuses the file, which it may where the driver does not.
bool HasSameFixes(const Flight& flight, const std::string& saved) {
  std::vector<TrackPoint> points;
  std::string message;
  if (igc::Read(saved, points, message) < 0) return false;
  std::vector<std::string> read;
  for (const TrackPoint& point : points) read.push_back(Position(point));
  std::vector<std::string> delivered;
  uint32_t last_time = 0;
  for (const TrackPoint& point : flight.decoded) {
    if (point.time != last_time) delivered.push_back(Position(point));
    last_time = point.time;
  }
  EXPECT_TRUE(read == delivered) << flight.path << " is read as another flight";
  return true;
}

class RealFlights : public testing::TestWithParam<size_t> {};

// The flights are shared out to several runs, so that these can go on side by side.
constexpr size_t kRuns = 4;

TEST_P(RealFlights, SurviveInstrumentAndFileToTheByte) {
  const char* folder = std::getenv("SKYHAUL_FLIGHTS");
  if (folder == nullptr || !std::filesystem::is_directory(folder)) {
    GTEST_SKIP() << "no real flights: SKYHAUL_FLIGHTS names no folder";
  }
  const std::vector<Flight> all = AcceptedFlights(folder);

  std::multimap<std::string, const Flight*> expected;
  std::vector<std::string> options = {"--baud", "0"};
  for (size_t i = GetParam(); i < all.size() && expected.size() < kMaxTracks; i += kRuns) {
    expected.emplace(all[i].text, &all[i]);
    options.insert(options.end(), {"--flight", all[i].path});
  }
  if (expected.empty()) GTEST_SKIP() << "no flight left for this run";
  Instrument instrument;
  StartInstrument(instrument, options);
  ScratchFolder saved;
  Program program;
  ASSERT_EQ(RunToEnd(program, {SKYHAUL_PROGRAM, "/GPS=IQCOMPEO", "/COM=" + instrument.port,
                               "/IGC_LOG=" + saved.File(""),
                               "/TRACK=1-" + std::to_string(expected.size()), "/EXIT"}),
            0)
      << program.Err();

  EXPECT_EQ(saved.Names().size(), expected.size());
  int refused = 0;
  for (const std::string& name : saved.Names()) {
    const std::string text = ReadText(saved.File(name));
    const auto found = expected.find(text);
    ASSERT_NE(found, expected.end()) << name << " is none of the flights";
    refused += HasSameFixes(*found->second, text) ? 0 : 1;
    expected.erase(found);
  }
  RecordProperty("read_by_the_driver_only", refused);
}

INSTANTIATE_TEST_SUITE_P(Shared, RealFlights, testing::Range(size_t{0}, kRuns));

}  // namespace
}  // namespace skyhaul
