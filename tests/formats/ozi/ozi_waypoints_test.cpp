#include <gmock/gmock.h>

#include "core/units.h"
#include "formats/ozi/read_ozi.h"
#include "formats/ozi/write_ozi.h"
#include "tests/formats/read_text.h"
#include "tests/formats/sample_waypoints.h"

namespace skyhaul::ozi {
namespace {

const std::string kHeader =
    "OziExplorer Waypoint File Version 1.1\r\nWGS 84\r\nReserved 2\r\nmagellan\r\n";

TEST(OziWaypoints, ComeBack) {
  std::vector<FileWaypoint> waypoints = SampleWaypoints();
  const std::string text = WriteWaypoints(waypoints);
  EXPECT_TRUE(LooksLikeWaypoints(text));
  const WaypointFile file = ReadGood(ReadWaypoints, text);
  EXPECT_TRUE(file.notes.empty());
  waypoints[0].type = 0;
  ExpectSameWaypoints(file.waypoints, waypoints, {.altitude_m = 0.16});
}

TEST(OziWaypoints, ReadsTheSpellingsOfOtherPrograms) {
  const WaypointFile file = ReadGood(
      ReadWaypoints,
      kHeader +
          "1,point        , 43.978528, 15.383372,45370.34412, 2, 1, 3, 0, 65535,, 0, 0, 0, -777, "
          "6, 0,17,0,10.0,2,,,\r\n"
          "\r\n"
          "-1,Z\xFCrich,47.5,-8.25,,0,1,3,0,65535,North\xD1 of the lake\xD1,0,0,0,1000,6,0,17\n"
          "   2,short, 1.5, 2.5\n"
          "3,PE\xD1"
          "A,1,2\n"
          "\x1a");
  ASSERT_EQ(file.waypoints.size(), 4U);
  EXPECT_EQ(file.waypoints[0].name, "point");
  EXPECT_EQ(file.waypoints[0].altitude_m, 0);
  EXPECT_NEAR(SemicirclesToDegrees(file.waypoints[0].lat), 43.978528, 1e-7);
  EXPECT_EQ(file.waypoints[0].time, 1079740800U + 29732);  // 2024-03-19 08:15:31.968
  EXPECT_EQ(file.waypoints[1].name, "Zürich");
  EXPECT_EQ(file.waypoints[1].description, "North, of the lake,");
  EXPECT_NEAR(SemicirclesToDegrees(file.waypoints[1].lon), -8.25, 1e-7);
  EXPECT_NEAR(file.waypoints[1].altitude_m, 304.8, 1e-9);
  EXPECT_EQ(file.waypoints[1].time, 0U);
  EXPECT_EQ(file.waypoints[2].name, "short");
  EXPECT_EQ(file.waypoints[3].name, "PEÑA");
  EXPECT_TRUE(file.notes.empty());
}

TEST(OziWaypoints, SkipsBrokenLinesWithANote) {
  const WaypointFile file =
      ReadGood(ReadWaypoints, kHeader +
                                  "1,good,46,7\n"
                                  "1,letters,46a,7\n"
                                  "1,far,90.01,7\n"
                                  "1,few\n"
                                  "1,odd,46,180,yesterday,0,1,3,0,0,,0,0,0,high\n");
  ASSERT_EQ(file.waypoints.size(), 2U);
  EXPECT_EQ(file.waypoints[1].lon, INT32_MAX);
  EXPECT_EQ(file.waypoints[1].time, 0U);
  EXPECT_EQ(file.waypoints[1].altitude_m, 0);
  EXPECT_THAT(file.notes, testing::ElementsAre("Line 6: no position that can be read, skipped",
                                               "Line 7: no position that can be read, skipped",
                                               "Line 8: no position that can be read, skipped",
                                               "Line 9: altitude cannot be read",
                                               "Line 9: time cannot be read"));
}

TEST(OziWaypoints, RefusesOtherKinds) {
  const std::pair<std::string, const char*> cases[] = {
      {"", "line 1: not an OziExplorer waypoint file"},
      {"G  WGS 84\r\nU  1\r\n", "line 1: not an OziExplorer waypoint file"},
      {"OziExplorer Track Point File Version 2.1\r\nWGS 84\r\n",
       "line 1: this OziExplorer file is not of waypoints but a Track Point File"},
      {"OziExplorer Waypoint File Version 1.1\r\nEuropean 1950\r\nReserved 2\r\nx\r\n1,a,1,2\r\n",
       "line 2: the datum is \"European 1950\", only WGS 84"},
      {kHeader + "1,a,x,2\r\n1,b\r\n", "line 5: none of the waypoints"},
  };
  for (const auto& [text, message] : cases) {
    EXPECT_THAT(ReadBad(ReadWaypoints, text), testing::HasSubstr(message));
  }
  EXPECT_TRUE(ReadGood(ReadWaypoints, kHeader).waypoints.empty());
}

TEST(OziWaypoints, TextsCannotBreakTheLine) {
  const std::vector<FileWaypoint> written = {{
      .altitude_m = -777 * 0.3048,  // the number that means: not known
      .name = " A,B\r\n1,forged,1,2 ",
      .description = "España, SPAÑ, 山,x 0123456789012345678901234567890123456789",
  }};
  const std::vector<FileWaypoint> read = {{
      .altitude_m = -777 * 0.3048,
      .name = "A, B  1, forged,1,2",
      .description = "España, SPAN, ?, x 0123456789012345678901",
  }};
  ExpectSameWaypoints(ReadGood(ReadWaypoints, WriteWaypoints(written)).waypoints, read,
                      {.altitude_m = 0.31});
}

}  // namespace
}  // namespace skyhaul::ozi
