#include <gtest/gtest.h>

#include "formats/ozi/ozi_track.h"
#include "formats/ozi/read_ozi.h"
#include "formats/ozi/write_ozi.h"
#include "tests/formats/waypoint_files.h"

namespace skyhaul::ozi {
namespace {

constexpr WaypointReader kReader = {LooksLikeWaypoints, ReadWaypoints};

const std::string kHeader =
    "OziExplorer Waypoint File Version 1.1\r\nWGS 84\r\nReserved 2\r\nmagellan\r\n";

TEST(OziWaypoints, ComeBack) {
  std::vector<FileWaypoint> waypoints = SampleWaypoints();
  waypoints[0].type = 0;
  ExpectComeBack(kReader, WriteWaypoints, waypoints, {.altitude_m = 0.16});
}

TEST(OziWaypoints, AreReadAsOtherProgramsSpellThemOrRefused) {
  const std::string error = "Format error on line ";
  ExpectShown(
      kReader,
      {{kHeader +
            "1,point        , 43.978528, 15.383372,45370.34412, 2, 1, 3, 0, 65535,, 0, 0, 0, -777, "
            "6, 0,17,0,10.0,2,,,\r\n"
            "\r\n"
            "-1,Z\xFCrich,47.5,-8.25,,0,1,3,0,65535,North\xD1 of the lake\xD1,0,0,0,1000,6,0,17\n"
            "   2,short, 1.5, 2.5\n"
            "3,PE\xD1"
            "A,1,2\n"
            "\x1a",
        // 1079770532: 2024-03-19 08:15:31.968
        "43.978528 15.383372 0 point @1079770532\n"
        "47.5 -8.25 304.8 Zürich|North, of the lake,\n"
        "1.5 2.5 0 short\n"
        "1 2 0 PEÑA\n"},
       {kHeader + "1,good,46,7\n"
                  "1,letters,46a,7\n"
                  "1,far,90.01,7\n"
                  "1,few\n"
                  "1,odd,46,180,yesterday,0,1,3,0,0,,0,0,0,high\n",
        "46 7 0 good\n"
        "46 179.9999999 0 odd\n" +
            Notes({6, 7, 8}, "no position that can be read, skipped") +
            "Line 9: altitude cannot be read\n"
            "Line 9: time cannot be read\n"},
       {kHeader, ""},
       {"", error + "1: not an OziExplorer waypoint file"},
       {"OziExplorer Track Point File Version 2.1\r\nWGS 84\r\n",
        error + "1: this OziExplorer file is not of waypoints but a Track Point File Version 2.1"},
       {"OziExplorer Waypoint File Version 1.1\r\nEuropean 1950\r\nReserved 2\r\nx\r\n1,a,1,2\r\n",
        error + "2: the datum is \"European 1950\", only WGS 84 can be read"},
       {kHeader + "1,a,x,2\r\n1,b\r\n", error + "5: none of the waypoints can be read"}});
}

TEST(OziWaypoints, TextsCannotBreakTheLine) {
  const std::vector<FileWaypoint> written = {{
      .altitude_m = -777 * 0.3048,  // the number that means: not known
      .name = " A,B\r\n1,forged,1,2 ",
      .description = "España, SPAÑ, 山,x 0123456789012345678901234567890123456789",
  }};
  // -776 ft
  EXPECT_EQ(Shown(ReadGood(ReadWaypoints, WriteWaypoints(written))),
            "0 0 -236.5248 A, B  1, forged,1,2|España, SPAN, ?, x 0123456789012345678901\n");
}

TEST(OziTrack, WritesEveryFix) {
  constexpr int32_t kLat = 550274193;  // 46.12345
  constexpr int32_t kLon = 84986069;   // 7.12345
  const std::vector<TrackPoint> points = {{1, kMay2024, 0, kLat, -kLon, 10000, 7},
                                          {0, kMay2024 + 1, 500, -kLat, kLon, -3048},
                                          {1, kMay2024 + 45304, 0, 0, 0, -2368}};
  EXPECT_EQ(
      WriteTrack(points, "A, B"),
      "OziExplorer Track Point File Version 2.1\r\nWGS 84\r\nAltitude is in Feet\r\nReserved 3\r\n"
      "0,2,255,A\xD1 B,0,0,2,8421376\r\n3\r\n"
      "46.1234500,-7.1234500,1,3280.8,45413.5242593,01-May-24,12:34:56\r\n"
      "-46.1234500,7.1234500,0,-1000.0,45413.5242767,01-May-24,12:34:57\r\n"
      "0.0000000,0.0000000,1,-776.9,45414.0486112,02-May-24,01:10:00\r\n");
}

TEST(OziTrack, TakesPressureAltitudeWhereThereIsNoOther) {
  const std::vector<TrackPoint> points = {{.segment_start = 1, .time = 1, .pressure_alt = 3048}};
  EXPECT_NE(WriteTrack(points, "").find(",1,10000.0,"), std::string::npos);
}

}  // namespace
}  // namespace skyhaul::ozi
