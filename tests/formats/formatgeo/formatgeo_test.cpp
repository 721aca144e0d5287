#include <gmock/gmock.h>

#include <cmath>

#include "core/units.h"
#include "formats/common/position.h"
#include "formats/formatgeo/read_formatgeo.h"
#include "formats/formatgeo/write_formatgeo.h"
#include "tests/formats/read_text.h"

namespace skyhaul::formatgeo {
namespace {

using testing::ElementsAre;

constexpr double kMetresPerSemicircle = 40007863.0 / 4294967296;

struct Expected {
  std::string_view line;
  double lat_deg, lon_deg, altitude_m;
  std::string_view name, description;
};

void ExpectRead(decltype(ReadGeo)& read, const std::string& heading, const Expected& expected,
                double tolerance_deg) {
  SCOPED_TRACE(expected.line);
  const WaypointFile file = ReadGood(read, heading + "\r\n" + std::string(expected.line) + "\r\n");
  ASSERT_EQ(file.waypoints.size(), 1U);
  const FileWaypoint& waypoint = file.waypoints[0];
  EXPECT_NEAR(SemicirclesToDegrees(waypoint.lat), expected.lat_deg, tolerance_deg);
  EXPECT_NEAR(SemicirclesToDegrees(waypoint.lon), expected.lon_deg, tolerance_deg);
  EXPECT_EQ(waypoint.altitude_m, expected.altitude_m);
  EXPECT_EQ(waypoint.name, expected.name);
  EXPECT_EQ(waypoint.description, expected.description);
}

TEST(FormatGeoReadGeo, ReadsLinesOfAllShapes) {
  const Expected cases[] = {
      {"B07001    N 46 12 34.56    E 007 08 09.12  1234  Cabane du Mont", 46.2096, 7.1358667, 1234,
       "B07001", "Cabane du Mont"},
      {"Golden G  S 37 49 03.00    W 122 28 42.00   -12  ", -37.8175, -122.4783333, -12, "Golden G",
       ""},
      {"A\tN\t46\t12\t34.56\tE\t7\t8\t9.12\t0\tb  c\t", 46.2096, 7.1358667, 0, "A", "b  c"},
      {"N N 46 12 34.56 E 007 08 09.12", 46.2096, 7.1358667, 0, "N", ""},
      {"  N 46 12 34.56 E 007 08 09.12 5", 46.2096, 7.1358667, 5, "", ""},
      {"M N 45 12.345 E 006 12.345 7.5 8", 45.20575, 6.20575, 7.5, "M", "8"},
      {"D N 45.5 E 6.25 7 East", 45.5, 6.25, 7, "D", "East"},
      {"R N 45 59 60.00 E 006 59 60.00 7", 46, 7, 7, "R", ""},
      {"Z\xFCrs N 45 00 00 E 006 00 00 7 \xC9t\xE9", 45, 6, 7, "Zürs", "Été"},
      {"E 7 N 45 00 00 E 006 00 00 7 N 1 E 2 3", 45, 6, 7, "E 7", "N 1 E 2 3"},
  };
  for (const Expected& expected : cases) ExpectRead(ReadGeo, "$FormatGEO", expected, 1e-7);
}

TEST(FormatGeoReadUtm, ReadsLinesOfAllShapes) {
  // Places from lists in both forms, half a metre apart.
  const Expected cases[] = {
      {"Aconcagu 19H   0405124   6386692   6962  Aconcagua", -32.6533333, -70.0116667, 6962,
       "Aconcagu", "Aconcagua"},
      {"A\t37 U 413390 6179582", 55.7541667, 37.62, 0, "A", ""},
      {"Sydney O 56h   0334898   6252272      5", -33.8569444, 151.2152667, 5, "Sydney O", ""},
  };
  for (const Expected& expected : cases) ExpectRead(ReadUtm, "$formatutm ", expected, 1e-5);
}

TEST(FormatGeoReadGeo, SkipsBrokenLinesWithANote) {
  const WaypointFile file = ReadGood(ReadGeo,
                                     "\n$FormatGEO\n"
                                     "A N 46 12 34.56 E 007 08 09.12 1 a\n"
                                     "\n"
                                     "B N 46 12 34.56 E 007 08\n"
                                     "C N 46 12 34.56 E 007 61 00.00 1\n"
                                     "D N 91 00 00.00 E 007 01 00.00 1\n"
                                     "E N -46 00 00.00 E 007 01 00.00 1\n"
                                     "F N 46 00 00.00 E 007 01 00.00 high\n"
                                     "G N 46 00 00.00 E 007 01 00.00 999999\n"
                                     "H N 46 12 34.56 E 007 08 09.12 1 h");
  EXPECT_EQ(file.waypoints.size(), 2U);
  EXPECT_THAT(file.notes, ElementsAre("Line 5: there is no position on it; skipped",
                                      "Line 6: there is no position on it; skipped",
                                      "Line 7: there is no position on it; skipped",
                                      "Line 8: there is no position on it; skipped",
                                      "Line 9: the altitude cannot be read; skipped",
                                      "Line 10: the altitude cannot be read; skipped"));
}

TEST(FormatGeoReadGeo, RefusesOtherFiles) {
  const struct {
    std::string_view text;
    bool geo, utm;
    std::string_view message;
  } cases[] = {
      {"", false, false, "Format error on line 1: not the heading $FormatGEO"},
      {"\n\nname,code\n", false, false, "Format error on line 3: not the heading $FormatGEO"},
      {"$FormatUTM\nA 32T 0400000 5120000 1\n", false, true,
       "Format error on line 1: not the heading $FormatGEO"},
      {"\xEF\xBB\xBF$FormatGEO\nA 32T 0400000 5120000 1\n", true, false,
       "Format error on line 2: there is no position on it"},
  };
  for (const auto& test : cases) {
    EXPECT_EQ(ReadBad(ReadGeo, test.text), test.message);
    EXPECT_EQ(LooksLikeGeo(test.text), test.geo) << test.text;
    EXPECT_EQ(LooksLikeUtm(test.text), test.utm) << test.text;
  }
}

FileWaypoint At(double lat_deg, double lon_deg) {
  const FilePosition position = PositionFromDegrees(lat_deg, lon_deg).value_or(FilePosition{});
  return {.lat = position.lat, .lon = position.lon};
}

TEST(FormatGeoWriteGeo, KeepsItsColumns) {
  FileWaypoint bridge = At(37.8175, -122.4783333);
  bridge.altitude_m = 227.4;
  bridge.name = "Golden G";
  bridge.description = "Golden\nGate";
  FileWaypoint pass = At(46.2096, -7.99999999);  // rounds to 8 whole degrees
  pass.altitude_m = -3;
  pass.name = "Süd \"4\"";
  pass.description = "Zürich's \"best\"";
  const FileWaypoint waypoints[] = {bridge, pass, {}};
  EXPECT_EQ(WriteGeo(waypoints),
            "$FormatGEO\r\n"
            "Golden_G  N 37 49 03.00    W 122 28 42.00   227  Golden Gate\r\n"
            "Sud_4     N 46 12 34.56    W 008 00 00.00    -3  Zurich's \"best\"\r\n"
            "_         N 00 00 00.00    E 000 00 00.00     0\r\n");
  EXPECT_EQ(WriteUtm({&bridge, 1}),
            "$FormatUTM\r\n"
            "Golden_G 10S   0545914   4185695    227  Golden Gate\r\n");
}

TEST(FormatGeoWriteGeo, ComesBackWithinItsResolution) {
  std::vector<FileWaypoint> waypoints;
  for (int row = -12; row <= 12; ++row) {
    for (int column = -16; column <= 16; ++column) {
      waypoints.push_back(At(row * 7.5, column * 11.1111));
      waypoints.back().altitude_m = row * 75;
      waypoints.back().name = "N" + std::to_string(waypoints.size());
      waypoints.back().description = std::to_string(waypoints.size()) + " m";
    }
  }
  waypoints.push_back({.lat = 5, .lon = INT32_MAX, .name = "?"});
  const struct {
    decltype(WriteGeo)& write;
    decltype(ReadGeo)& read;
    double tolerance_m;
  } forms[] = {
      {WriteGeo, ReadGeo, 0.161},
      {WriteUtm, ReadUtm, 0.72},  // half a metre each way of a grid that is turned against north
  };
  for (const auto& form : forms) {
    const WaypointFile file = ReadGood(form.read, form.write(waypoints));
    ASSERT_EQ(file.waypoints.size(), waypoints.size());
    EXPECT_THAT(file.notes, ElementsAre());
    for (size_t i = 0; i < waypoints.size(); ++i) {
      const FileWaypoint& before = waypoints[i];
      const FileWaypoint& after = file.waypoints[i];
      const double north_m = (after.lat - before.lat) * kMetresPerSemicircle;
      // Around the globe the difference wraps as the coordinate does.
      const auto east = static_cast<int32_t>(static_cast<uint32_t>(after.lon) -
                                             static_cast<uint32_t>(before.lon));
      const double east_m = east * kMetresPerSemicircle * 1.002 *
                            std::cos(SemicirclesToDegrees(before.lat) * 0.017453292519943295);
      EXPECT_LE(std::fabs(north_m), form.tolerance_m) << before.name;
      EXPECT_LE(std::fabs(east_m), form.tolerance_m) << before.name;
      EXPECT_EQ(after.altitude_m, before.altitude_m);
      EXPECT_EQ(after.name, before.name);
      EXPECT_EQ(after.description, before.description);
    }
  }
}

}  // namespace
}  // namespace skyhaul::formatgeo
