#include <gtest/gtest.h>

#include <cmath>

#include "core/units.h"
#include "formats/formatgeo/read_formatgeo.h"
#include "formats/formatgeo/write_formatgeo.h"
#include "tests/formats/waypoint_files.h"

namespace skyhaul::formatgeo {
namespace {

constexpr double kMetresPerSemicircle = 40007863.0 / 4294967296;

constexpr WaypointReader kGeoReader = {LooksLikeGeo, ReadGeo};
// Places from lists in both forms are half a metre apart.
constexpr WaypointReader kUtmReader = {LooksLikeUtm, ReadUtm, 5};

TEST(FormatGeoRead, ReadsLinesOfAllShapesAndRefusesOtherFiles) {
  const std::string geo = "$FormatGEO\r\n";
  ExpectShown(
      kGeoReader,
      {
          {geo + "B07001    N 46 12 34.56    E 007 08 09.12  1234  Cabane du Mont",
           "46.2096 7.1358666 1234 B07001|Cabane du Mont\n"},
          {geo + "Golden G  S 37 49 03.00    W 122 28 42.00   -12  ",
           "-37.8175 -122.4783334 -12 Golden G\n"},
          {geo + "A\tN\t46\t12\t34.56\tE\t7\t8\t9.12\t0\tb  c\t", "46.2096 7.1358666 0 A|b  c\n"},
          {geo + "N N 46 12 34.56 E 007 08 09.12", "46.2096 7.1358666 0 N\n"},
          {geo + "M N 45 12.345 E 006 12.345 7.5 8", "45.20575 6.20575 7.5 M|8\n"},
          {geo + "D N 45.5 E 6.25 7 East", "45.5 6.25 7 D|East\n"},
          {geo + "R N 45 59 60.00 E 006 59 60.00 7", "46 7 7 R\n"},
          {geo + "Z\xFCrs N 45 00 00 E 006 00 00 7 \xC9t\xE9", "45 6 7 Zürs|Été\n"},
          {geo + "E 7 N 45 00 00 E 006 00 00 7 N 1 E 2 3", "45 6 7 E 7|N 1 E 2 3\n"},
          {"\n$FormatGEO\n"
           "A N 46 12 34.56 E 007 08 09.12 1 a\n"
           "\n"
           "B N 46 12 34.56 E 007 08\n"
           "C N 46 12 34.56 E 007 61 00.00 1\n"
           "D N 91 00 00.00 E 007 01 00.00 1\n"
           "E N -46 00 00.00 E 007 01 00.00 1\n"
           "F N 46 00 00.00 E 007 01 00.00 high\n"
           "G N 46 00 00.00 E 007 01 00.00 999999\n"
           "H N 46 12 34.56 E 007 08 09.12 1 h",
           "46.2096 7.1358666 1 A|a\n"
           "46.2096 7.1358666 1 H|h\n" +
               Notes({5, 6, 7, 8}, "there is no position on it; skipped") +
               Notes({9, 10}, "the altitude cannot be read; skipped")},
          {"", "Format error on line 1: not the heading $FormatGEO"},
          {"\n\nname,code\n", "Format error on line 3: not the heading $FormatGEO"},
          {"\xEF\xBB\xBF$FormatGEO\nA 32T 0400000 5120000 1\n",
           "Format error on line 2: there is no position on it"},
      });
  ExpectShown(kUtmReader, {{"$formatutm \r\n"
                            "Aconcagu 19H   0405124   6386692   6962  Aconcagua\r\n"
                            "A\t37 U 413390 6179582\r\n"
                            "Sydney O 56h   0334898   6252272      5\r\n",
                            "-32.65333 -70.01167 6962 Aconcagu|Aconcagua\n"
                            "55.75417 37.62 0 A\n"
                            "-33.85695 151.21527 5 Sydney O\n"},
                           {geo, "Format error on line 1: not the heading $FormatUTM"}});
}

FileWaypoint At(double lat_deg, double lon_deg, double altitude_m, std::string name,
                std::string description) {
  return {.lat = DegreesToSemicircles(lat_deg),
          .lon = DegreesToSemicircles(lon_deg),
          .altitude_m = altitude_m,
          .name = std::move(name),
          .description = std::move(description)};
}

TEST(FormatGeoWriteGeo, KeepsItsColumns) {
  const FileWaypoint waypoints[] = {
      At(37.8175, -122.4783333, 227.4, "Golden G", "Golden\nGate"),
      At(46.2096, -7.99999999, -3, "Süd \"4\"", "Zürich's \"best\""),  // rounds to 8 degrees
      {},
  };
  EXPECT_EQ(WriteGeo(waypoints),
            "$FormatGEO\r\n"
            "Golden_G  N 37 49 03.00    W 122 28 42.00   227  Golden Gate\r\n"
            "Sud_4     N 46 12 34.56    W 008 00 00.00    -3  Zurich's \"best\"\r\n"
            "_         N 00 00 00.00    E 000 00 00.00     0\r\n");
  EXPECT_EQ(WriteUtm({waypoints, 1}),
            "$FormatUTM\r\n"
            "Golden_G 10S   0545914   4185695    227  Golden Gate\r\n");
}

TEST(FormatGeoWriteGeo, ComesBackWithinItsResolution) {
  std::vector<FileWaypoint> waypoints = {{.lat = 5, .lon = INT32_MAX, .name = "?"}};
  for (int row = -12; row <= 12; ++row) {
    for (int column = -16; column <= 16; ++column) {
      const std::string number = std::to_string(waypoints.size());
      waypoints.push_back(At(row * 7.5, column * 11.1111, row * 75, "N" + number, number + " m"));
    }
  }
  const std::tuple<decltype(WriteGeo)&, decltype(ReadGeo)&, double> forms[] = {
      {WriteGeo, ReadGeo, 0.161},
      {WriteUtm, ReadUtm, 0.72},  // half a metre each way of a grid that is turned against north
  };
  for (const auto& [write, read, tolerance_m] : forms) {
    const WaypointFile file = ReadGood(read, write(waypoints));
    EXPECT_EQ(file.notes, std::vector<std::string>());
    ExpectSameWaypoints(file.waypoints, waypoints, {.semicircles = 0x1p32});
    for (size_t i = 0; i < file.waypoints.size(); ++i) {
      const FileWaypoint& before = waypoints[i];
      const FileWaypoint& after = file.waypoints[i];
      // Around the globe the difference wraps as the coordinate does.
      const double east = std::remainder(int64_t{after.lon} - before.lon, 0x1p32);
      const double parallel = 1.002 * std::cos(SemicirclesToRadians(before.lat));
      EXPECT_LE(std::abs(after.lat - before.lat) * kMetresPerSemicircle, tolerance_m) << i;
      EXPECT_LE(std::abs(east) * kMetresPerSemicircle * parallel, tolerance_m) << i;
    }
  }
}

}  // namespace
}  // namespace skyhaul::formatgeo
