#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "core/units.h"
#include "formats/compegps/read_compegps.h"
#include "formats/compegps/write_compegps.h"
#include "tests/formats/values/sample_waypoints.h"

namespace skyhaul {
namespace {

using testing::HasSubstr;

WaypointFile ReadGood(const std::string& text) {
  WaypointFile file;
  std::string message = "left over";
  const int count = ReadCompeGps(text, file, message);
  EXPECT_EQ(count, static_cast<int>(file.waypoints.size()));
  EXPECT_EQ(message, "");
  return file;
}

TEST(CompeGps, WaypointsComeBack) {
  const std::vector<FileWaypoint> written = SampleWaypoints();
  const std::string text = WriteCompeGps(written);
  EXPECT_TRUE(LooksLikeCompeGps(text));
  const WaypointFile file = ReadGood(text);
  EXPECT_TRUE(file.notes.empty());
  ASSERT_EQ(file.waypoints.size(), written.size());
  for (size_t i = 0; i < written.size(); ++i) {
    const FileWaypoint& read = file.waypoints[i];
    EXPECT_EQ(read.lat, written[i].lat) << i;
    EXPECT_EQ(read.lon, written[i].lon) << i;
    EXPECT_EQ(read.altitude_m, written[i].altitude_m) << i;
    EXPECT_EQ(read.name, written[i].name);
    EXPECT_EQ(read.description, written[i].description);
    EXPECT_EQ(read.time, written[i].time) << i;
  }
}

TEST(CompeGps, WritesTheLinesThatOtherProgramsKnow) {
  const std::string text = WriteCompeGps({{{.lat = 550274193,
                                            .lon = -84986069,
                                            .altitude_m = 7,
                                            .name = "A B",
                                            .description = "x\r\nW  forged"},
                                           {.time = kMay2024}}});
  EXPECT_EQ(text,
            "G  WGS 84\r\nU  1\r\n"
            "W  A_B A 46.1234500352\xBAN 7.1234500129\xBAW 27-MAR-62 00:00:00 7.000000 x  W  "
            "forged\r\n"
            "W  _ A 0.0000000000\xBAN 0.0000000000\xBA"
            "E 01-MAY-24 12:34:56 0.000000 \r\n");
}

TEST(CompeGps, ReadsEveryDegreeSign) {
  for (const char* sign :
       {"\xBA", "\xC2\xBA", "\xB0", "\xC2\xB0", "\xBD", "\xEF\xBF\xBD", "?", ""}) {
    std::string text = "G  WGS 84\r\nU  1\r\nW  T0";
    text.append(sign).append(" A 46.5").append(sign).append("S 7.25").append(sign);
    text += "w 27-MAR-62 00:00:00 680.5\r\nw Waypoint,0,-1.0,16777215,255,1,7,,0.0\r\n";
    const WaypointFile file = ReadGood(text);
    ASSERT_EQ(file.waypoints.size(), 1U) << sign;
    EXPECT_NEAR(SemicirclesToDegrees(file.waypoints[0].lat), -46.5, 1e-7);
    EXPECT_NEAR(SemicirclesToDegrees(file.waypoints[0].lon), -7.25, 1e-7);
    EXPECT_EQ(file.waypoints[0].altitude_m, 680.5);
    EXPECT_EQ(file.waypoints[0].description, "");
  }
}

TEST(CompeGps, NoMomentIsTakenForTheDateThatStandsForNone) {
  for (const uint32_t time : {1U, 86400U, 2279577600U, 3155760000U}) {
    const WaypointFile file = ReadGood(WriteCompeGps({{{.time = time}}}));
    ASSERT_EQ(file.waypoints.size(), 1U);
    EXPECT_EQ(file.waypoints[0].time, time);
  }
}

TEST(CompeGps, ReadsTimes) {
  const struct {
    const char* text;
    uint32_t time;
  } cases[] = {
      {"27-MAR-62 00:00:00", 0},         {"27-Mar-62 00:00:01", 2279577601},
      {"01-MAY-24 12:34:56", kMay2024},  {"1-May-2024 12:34:56.789", kMay2024},
      {"31-DEC-99 00:00:00", 315532800}, {"01-JAN-1970 00:00:00", 0},
      {"30-FEB-24 00:00:00", 0},
  };
  for (const auto& item : cases) {
    const WaypointFile file =
        ReadGood("G  WGS 84\nU  1\nW  A A 1N 2E " + std::string(item.text) + " 3 d\n");
    ASSERT_EQ(file.waypoints.size(), 1U) << item.text;
    EXPECT_EQ(file.waypoints[0].time, item.time) << item.text;
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
    const WaypointFile file = ReadGood(head + line);
    EXPECT_EQ(file.waypoints.size(), 1U) << line;
    ASSERT_EQ(file.notes.size(), 2U) << line;
    EXPECT_THAT(file.notes[0], HasSubstr("Line 4: ")) << line;
    EXPECT_EQ(file.notes[1], "The datum is not given, taken to be WGS 84");
  }
}

TEST(CompeGps, RefusesOtherKinds) {
  const struct {
    const char* text;
    const char* message;
  } cases[] = {
      {"", "line 1: not a CompeGPS waypoint file"},
      {"OziExplorer Waypoint File Version 1.1\r\nWGS 84\r\n", "line 1: not a CompeGPS"},
      {"G  WGS 84\nU  1\nT A 46.1N 7.1E 01-MAY-24 12:34:56 s 5\n", "line 1: not a CompeGPS"},
      {"G  WGS 84\nU  0\nW  X 31T 395555 4623424 27-MAR-62 00:00:00 5 a\n", "line 2: UTM"},
      {"G  European 1979\nU  1\nW  A A 1N 2E 27-MAR-62 00:00:00 3 d\n",
       "line 1: the datum is \"European 1979\""},
      {"G  WGS 84\nU  1\n\nW  A A 1 2 27-MAR-62 00:00:00 3 d\n", "line 4: none of the waypoints"},
  };
  for (const auto& item : cases) {
    WaypointFile file = {.waypoints = {{}}, .notes = {"old"}};
    std::string message;
    EXPECT_EQ(ReadCompeGps(item.text, file, message), -1) << item.text;
    EXPECT_THAT(message, HasSubstr(item.message));
    EXPECT_TRUE(file.waypoints.empty() && file.notes.empty());
  }
}

}  // namespace
}  // namespace skyhaul
