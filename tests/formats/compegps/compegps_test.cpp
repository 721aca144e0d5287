#include <gmock/gmock.h>

#include <ctime>
#include <sstream>

#include "core/text/charset.h"
#include "core/units.h"
#include "formats/compegps/read_compegps.h"
#include "formats/compegps/write_compegps.h"
#include "tests/formats/read_text.h"
#include "tests/formats/sample_waypoints.h"

namespace skyhaul::compegps {
namespace {

using testing::HasSubstr;

TEST(CompeGps, WaypointsComeBack) {
  std::vector<FileWaypoint> waypoints = SampleWaypoints();
  // The first year after the epoch, and the years around the date that stands for no time.
  for (const uint32_t time : {86400U, 2279577600U, 3155760000U})
    waypoints.push_back({.name = "T", .time = time});
  const std::string text = Write(waypoints);
  EXPECT_TRUE(LooksLike(text));
  const WaypointFile file = ReadGood(Read, text);
  EXPECT_TRUE(file.notes.empty());
  waypoints[0].type = 0;
  ExpectSameWaypoints(file.waypoints, waypoints, {});
}

TEST(CompeGps, WritesTheLinesThatOtherProgramsKnow) {
  const std::vector<FileWaypoint> waypoints = {{.lat = 550274193,
                                                .lon = -84986069,
                                                .altitude_m = 7,
                                                .name = "A B",
                                                .description = "x\r\nW  forged"},
                                               {.time = kMay2024}};
  EXPECT_EQ(Write(waypoints),
            "G  WGS 84\r\nU  1\r\n"
            "W  A_B A 46.1234500352\xBAN 7.1234500129\xBAW 27-MAR-62 00:00:00 7.000000 x  W  "
            "forged\r\n"
            "W  _ A 0.0000000000\xBAN 0.0000000000\xBA"
            "E 01-MAY-24 12:34:56 0.000000 \r\n");
}

// A reader that knows nothing of ours: its fields are read by scanf.
TEST(CompeGps, AnotherReaderFindsTheSameWaypoints) {
  std::istringstream lines(Write(SampleWaypoints()));
  std::string line;
  std::getline(lines, line);
  std::getline(lines, line);
  for (const FileWaypoint& waypoint : SampleWaypoints()) {
    std::getline(lines, line);
    char name[20], month[4], north, east;     // NOLINT(readability-isolate-declaration)
    double lat = 0, lon = 0, altitude_m = 0;  // NOLINT(readability-isolate-declaration)
    std::tm time = {};
    ASSERT_EQ(std::sscanf(line.c_str(), "W  %19s A %lf\xBA%c %lf\xBA%c %d-%3s-%d %d:%d:%d %lf",
                          name, &lat, &north, &lon, &east, &time.tm_mday, month, &time.tm_year,
                          &time.tm_hour, &time.tm_min, &time.tm_sec, &altitude_m),
              12);
    EXPECT_EQ(ToUtf8(name), waypoint.name);
    EXPECT_NEAR(north == 'S' ? -lat : lat, waypoint.lat * 180.0 / 2147483648, 1e-9);
    EXPECT_NEAR(east == 'W' ? -lon : lon, waypoint.lon * 180.0 / 2147483648, 1e-9);
    EXPECT_EQ(altitude_m, waypoint.altitude_m);
    if (waypoint.time == 0) {
      EXPECT_EQ(std::string(month) + std::to_string(time.tm_year), "MAR62");
    } else {
      EXPECT_EQ(time.tm_hour * 3600 + time.tm_min * 60 + time.tm_sec,
                static_cast<int>(waypoint.time % 86400));
    }
  }
}

TEST(CompeGps, ReadsEveryDegreeSign) {
  for (const char* sign :
       {"\xBA", "\xC2\xBA", "\xB0", "\xC2\xB0", "\xBD", "\xEF\xBF\xBD", "?", ""}) {
    const WaypointFile file = ReadGood(
        Read,
        Joined({"G  WGS 84\r\nU  1\r\nW  T0", sign, " A 46.5", sign, "S 7.25", sign,
                "w 27-MAR-62 00:00:00 680.5\r\n", "w Waypoint,0,-1.0,16777215,255,1,7,,0.0\r\n"}));
    ASSERT_EQ(file.waypoints.size(), 1U) << sign;
    EXPECT_NEAR(SemicirclesToDegrees(file.waypoints[0].lat), -46.5, 1e-7);
    EXPECT_NEAR(SemicirclesToDegrees(file.waypoints[0].lon), -7.25, 1e-7);
    EXPECT_EQ(file.waypoints[0].altitude_m, 680.5);
    EXPECT_EQ(file.waypoints[0].description, "");
  }
}

TEST(CompeGps, ReadsTimes) {
  const std::pair<const char*, uint32_t> cases[] = {
      {"27-Mar-62 00:00:01", 2279577601}, {"1-May-2024 12:34:56.789", kMay2024},
      {"31-DEC-99 00:00:00", 315532800},  {"01-JAN-1970 00:00:00", 0},
      {"30-FEB-24 00:00:00", 0},
  };
  for (const auto& [text, time] : cases) {
    const WaypointFile file =
        ReadGood(Read, "G  WGS 84\nU  1\nW  A A 1N 2E " + std::string(text) + " 3 d\n");
    ASSERT_EQ(file.waypoints.size(), 1U) << text;
    EXPECT_EQ(file.waypoints[0].time, time) << text;
  }
}

TEST(CompeGps, SkipsBrokenLinesWithANote) {
  const std::string head = "B  UTF-8\nU  1\nW  GOOD A 46N 7E 27-MAR-62 00:00:00 5 ok\n";
  for (const char* line :
       {"W  X A 46 7E 27-MAR-62 00:00:00 5 a", "W  X A 46E 7N 27-MAR-62 00:00:00 5 a",
        "W  X A -46N 7E 27-MAR-62 00:00:00 5 a", "W  X A 46xN 7E 27-MAR-62 00:00:00 5 a",
        "W  X A 90.1N 7E 27-MAR-62 00:00:00 5 a", "W  X A 46N 180.1E 27-MAR-62 00:00:00 5 a",
        "W  X A 46N 7E 27-MRZ-62 00:00:00 5 a", "W  X A 46N 7E 27-MAR-62 0000 5 a",
        "W  X A 46N 7E 27-MAR-62 00:00:00 five a", "W  X A 46N 7E 27-MAR-62 00:00:00",
        "W  X 31T 395555 4623424 27-MAR-62 00:00:00 5 a", "W  X", "W"}) {
    const WaypointFile file = ReadGood(Read, head + line);
    EXPECT_EQ(file.waypoints.size(), 1U) << line;
    EXPECT_THAT(file.notes, testing::ElementsAre(HasSubstr("Line 4: "),
                                                 "The datum is not given, taken to be WGS 84"))
        << line;
  }
}

TEST(CompeGps, RefusesOtherKinds) {
  const std::pair<const char*, const char*> cases[] = {
      {"", "line 1: not a CompeGPS waypoint file"},
      {"OziExplorer Waypoint File Version 1.1\r\nWGS 84\r\n", "line 1: not a CompeGPS"},
      {"G  WGS 84\nU  1\nT A 46.1N 7.1E 01-MAY-24 12:34:56 s 5\n", "line 1: not a CompeGPS"},
      {"G  WGS 84\nU  0\nW  X 31T 395555 4623424 27-MAR-62 00:00:00 5 a\n", "line 2: UTM"},
      {"G  European 1979\nU  1\nW  A A 1N 2E 27-MAR-62 00:00:00 3 d\n",
       "line 1: the datum is \"European 1979\""},
      {"G  WGS 84\nU  1\n\nW  A A 1 2 27-MAR-62 00:00:00 3 d\n", "line 4: none of the waypoints"},
  };
  for (const auto& [text, message] : cases) {
    EXPECT_THAT(ReadBad(Read, text), HasSubstr(message));
  }
}

}  // namespace
}  // namespace skyhaul::compegps
