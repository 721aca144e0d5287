#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <utility>

#include "core/units.h"
#include "formats/igc/decode_line.h"
#include "formats/igc/read_igc.h"
#include "tests/support/real_flights.h"
#include "tests/support/scratch_folder.h"

namespace skyhaul::igc {
namespace {

std::vector<TrackPoint> DecodeLines(std::string_view text) {
  Decoder decoder;
  while (!text.empty()) {
    const size_t line_end = std::min(text.find('\n'), text.size());
    const std::string_view line = text.substr(0, line_end);
    const int result = DecodeLine(decoder, line.substr(0, line.find('\r')));
    // Files may have a short A record, which is none for an instrument.
    EXPECT_TRUE(result >= 0 || line.starts_with('A')) << line;
    text.remove_prefix(std::min(line_end + 1, text.size()));
  }
  return decoder.points;
}

bool SameMilliminutes(const TrackPoint& left, const TrackPoint& right) {
  return SemicirclesToMilliminutes(left.lat) == SemicirclesToMilliminutes(right.lat) &&
         SemicirclesToMilliminutes(left.lon) == SemicirclesToMilliminutes(right.lon);
}

// Every fix of the file reader is one of the decoder's, in the same order; all that the reader
// leaves out are those that repeat a second.
void ExpectAllDecoded(const std::vector<TrackPoint>& read, const std::vector<TrackPoint>& decoded) {
  auto found = decoded.begin();
  for (const TrackPoint& point : read) {
    while (found != decoded.end() && found->time != point.time) ++found;
    ASSERT_NE(found, decoded.end()) << point.time;
    EXPECT_EQ(found->pressure_alt, point.pressure_alt);
    EXPECT_EQ(found->gps_alt_dm, point.gps_alt_dm);
    EXPECT_LE(std::abs(found->lat - point.lat), 1);
    EXPECT_LE(std::abs(found->lon - point.lon), 1);
    EXPECT_TRUE(SameMilliminutes(*found, point)) << point.time;
  }
  uint32_t last_time = 0;
  const auto seconds = std::ranges::count_if(decoded, [&](const TrackPoint& point) {
    return std::exchange(last_time, point.time) != point.time;
  });
  EXPECT_EQ(read.size(), static_cast<size_t>(seconds));
}

TEST(RealIgcFlights, BothReadersAgree) {
  const std::vector<std::filesystem::path> files = RealFlights();
  if (files.empty()) GTEST_SKIP() << "no flights: set SKYHAUL_FLIGHTS to a folder of .igc files";
  int accepted = 0;
  for (const std::filesystem::path& file : files) {
    SCOPED_TRACE(file.filename().string());
    const std::string text = ReadText(file.string());
    std::vector<TrackPoint> points;
    std::string message;
    if (Read(text, points, message) < 0) {
      std::cout << file.filename().string() << ": " << message << '\n';
      continue;
    }
    ++accepted;
    ExpectAllDecoded(points, DecodeLines(text));
  }
  std::cout << accepted << " of " << files.size() << " flights read\n";
  EXPECT_GT(accepted, 0);
}

}  // namespace
}  // namespace skyhaul::igc
