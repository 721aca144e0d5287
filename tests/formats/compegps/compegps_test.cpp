#include <gtest/gtest.h>

#include "formats/compegps/read_compegps.h"
#include "formats/compegps/write_compegps.h"
#include "tests/formats/waypoint_files.h"

namespace skyhaul::compegps {
namespace {

constexpr WaypointReader kReader = {LooksLike, Read};

TEST(CompeGps, WaypointsComeBack) {
  std::vector<FileWaypoint> waypoints = SampleWaypoints();
  // The first year after the epoch, and the years around the date that stands for no time.
  for (const uint32_t time : {86400U, 2279577600U, 3155760000U})
    waypoints.push_back({.name = "T", .time = time});
  waypoints[0].type = 0;
  ExpectComeBack(kReader, Write, waypoints, {});
}

TEST(CompeGps, WritesTheLinesThatOtherProgramsKnow) {
  const std::vector<FileWaypoint> waypoints = {
      {.lat = 550274193, .altitude_m = 7, .name = "A B", .description = "x\r\nW  forged"},
      {.lat = -550274193, .lon = -84986069, .altitude_m = -0.5, .time = kMay2024}};
  EXPECT_EQ(Write(waypoints),
            "G  WGS 84\r\nU  1\r\n"
            "W  A_B A 46.1234500352\xBAN 0.0000000000\xBA"
            "E 27-MAR-62 00:00:00 7.000000 x  W  forged\r\n"
            "W  _ A 46.1234500352\xBAS 7.1234500129\xBAW 01-MAY-24 12:34:56 -0.500000 \r\n");
}

TEST(CompeGps, ReadsEveryDegreeSign) {
  for (const std::string sign :
       {"\xBA", "\xC2\xBA", "\xB0", "\xC2\xB0", "\xBD", "\xEF\xBF\xBD", "?", ""}) {
    ExpectShown(kReader, {{std::string("G  WGS 84\r\nU  1\r\nW  T0 A 46.5")
                                   .append(sign)
                                   .append("S 7.25")
                                   .append(sign) +
                               "w 27-MAR-62 00:00:00 680.5\r\n" +
                               "w Waypoint,0,-1.0,16777215,255,1,7,,0.0\r\n",
                           "-46.5 -7.25 680.5 T0\n"}});
  }
}

TEST(CompeGps, ReadsTimesAndRefusesOtherKinds) {
  const std::string start = "G  WGS 84\nU  1\nW  A A 1N 2E ";
  const std::string shown = "1 2 3 A|d";
  const std::string other = "Format error on line 1: not a CompeGPS waypoint file";
  ExpectShown(kReader,
              {{start + "27-Mar-62 00:00:01 3 d", shown + " @2279577601\n"},
               {start + "1-May-2024 12:34:56.789 3 d", shown + " @1083501296\n"},
               {start + "31-DEC-99 00:00:00 3 d", shown + " @315532800\n"},
               {start + "01-JAN-1970 00:00:00 3 d", shown + "\n"},
               {start + "30-FEB-24 00:00:00 3 d", shown + "\n"},
               {"\xEF\xBB\xBFG  WGS 84\r\nU  1\r\n", ""},
               {"", other},
               {"G  WGS 84\nU  1\nT A 46.1N 7.1E 01-MAY-24 12:34:56 s 5\n", other},
               {"G  WGS 84\nU  0\nW  X 31T 395555 4623424 27-MAR-62 00:00:00 5 a\n",
                "Format error on line 2: UTM positions, only latitude and longitude (\"U  1\") can "
                "be read"},
               {"G  European 1979\nU  1\nW  A A 1N 2E 27-MAR-62 00:00:00 3 d\n",
                "Format error on line 1: the datum is \"European 1979\", only WGS 84 can be read"},
               {"G  WGS 84\nU  1\n\nW  A A 1 2 27-MAR-62 00:00:00 3 d\n",
                "Format error on line 4: none of the waypoints can be read"}});
}

TEST(CompeGps, SkipsBrokenLinesWithANote) {
  const std::string head = "B  UTF-8\nU  1\nW  GOOD A 46N 7E 27-MAR-62 00:00:00 5 ok\n";
  const std::pair<std::string, std::vector<const char*>> cases[] = {
      {"no position that can be read",
       {"W  X A 46 7E 27-MAR-62 00:00:00 5 a", "W  X A 46E 7N 27-MAR-62 00:00:00 5 a",
        "W  X A -46N 7E 27-MAR-62 00:00:00 5 a", "W  X A 46xN 7E 27-MAR-62 00:00:00 5 a", "W  X"}},
      {"a position that is not on the globe",
       {"W  X A 90.1N 7E 27-MAR-62 00:00:00 5 a", "W  X A 46N 180.1E 27-MAR-62 00:00:00 5 a"}},
      {"no date and time that can be read",
       {"W  X A 46N 7E 27-MRZ-62 00:00:00 5 a", "W  X A 46N 7E 27-MAR-62 0000 5 a"}},
      {"no altitude that can be read",
       {"W  X A 46N 7E 27-MAR-62 00:00:00 five a", "W  X A 46N 7E 27-MAR-62 00:00:00"}},
      {"UTM position", {"W  X 31T 395555 4623424 27-MAR-62 00:00:00 5 a"}},
  };
  for (const auto& [note, lines] : cases) {
    for (const char* line : lines) {
      ExpectShown(kReader, {{head + line, "46 7 5 GOOD|ok\nLine 4: " + note +
                                              ", skipped\nThe datum is not given, taken to "
                                              "be WGS 84\n"}});
    }
  }
}

}  // namespace
}  // namespace skyhaul::compegps
