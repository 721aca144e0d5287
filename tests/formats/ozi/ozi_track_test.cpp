#include "formats/ozi/ozi_track.h"

#include <gtest/gtest.h>

#include "tests/formats/sample_waypoints.h"

namespace skyhaul::ozi {
namespace {

const std::string kHeader =
    "OziExplorer Track Point File Version 2.1\r\nWGS 84\r\nAltitude is in Feet\r\nReserved 3\r\n";

TEST(OziTrack, WritesEveryFix) {
  constexpr int32_t kLat = 550274193;  // 46.12345
  constexpr int32_t kLon = 84986069;   // 7.12345
  const std::vector<TrackPoint> points = {{1, kMay2024, 0, kLat, -kLon, 10000, 7},
                                          {0, kMay2024 + 1, 500, -kLat, kLon, -3048},
                                          {1, kMay2024 + 45304, 0, 0, 0, -2368}};
  EXPECT_EQ(WriteTrack(points, "A, B"),
            kHeader +
                "0,2,255,A\xD1 B,0,0,2,8421376\r\n3\r\n"
                "46.1234500,-7.1234500,1,3280.8,45413.5242593,01-May-24,12:34:56\r\n"
                "-46.1234500,7.1234500,0,-1000.0,45413.5242767,01-May-24,12:34:57\r\n"
                "0.0000000,0.0000000,1,-776.9,45414.0486112,02-May-24,01:10:00\r\n");
}

TEST(OziTrack, TakesPressureAltitudeWhereThereIsNoOther) {
  const std::vector<TrackPoint> points = {{.segment_start = 1, .time = 1, .pressure_alt = 3048}};
  EXPECT_NE(WriteTrack(points, "").find(",1,10000.0,"), std::string::npos);
}

TEST(OziTrack, WithoutFixesIsTheHeader) {
  EXPECT_EQ(WriteTrack({}, "none"), kHeader + "0,2,255,none,0,0,2,8421376\r\n0\r\n");
}

}  // namespace
}  // namespace skyhaul::ozi
