#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "formats/cup/read_cup.h"
#include "formats/cup/write_cup.h"

namespace skyhaul {
namespace {

TEST(WriteCup, WritesTheUsualLines) {
  const FileWaypoint waypoints[] = {
      {.lat = 1 << 29, .lon = -(1 << 29), .altitude_m = 12.34, .name = "A01"},
      {.lat = -1,
       .lon = 1193046,  // 0.0999999 degrees: rounds to 6 whole minutes
       .altitude_m = -0.96,
       .name = "LJBL",
       .description = "The \"field\",\r\nold",
       .comment = "a \"remark\"",
       .type = kWaypointAirfield},
  };
  EXPECT_EQ(WriteCup(waypoints),
            "name,code,country,lat,lon,elev,style,rwdir,rwlen,freq,desc\r\n"
            "\"A01\",\"A01\",,4500.000N,04500.000W,12.3m,1,,,,\"\"\r\n"
            "\"The \"\"field\"\",  old\",\"LJBL\",,0000.000S,00006.000E,-1.0m,5,,,,"
            "\"a \"\"remark\"\"\"\r\n");
}

TEST(WriteCup, ComesBackWithinItsResolution) {
  constexpr int32_t kMin = std::numeric_limits<int32_t>::min();
  constexpr int32_t kMax = std::numeric_limits<int32_t>::max();
  const std::vector<FileWaypoint> waypoints = {
      {.lat = 551549341, .lon = 88654321, .altitude_m = 1234.56, .name = "A01"},
      {.lat = -(1 << 30),
       .lon = kMin,
       .altitude_m = -430,
       .name = "Süd, \"Pol\"",
       .description = "-- Ж"},
      {.lat = 1 << 30, .lon = kMax, .name = "same", .comment = "remark", .type = kWaypointAirfield},
      {.lat = -77, .lon = -99, .name = "12", .description = "4500.000N,00700.000E"},
  };
  WaypointFile file;
  std::string message;
  ASSERT_EQ(ReadCup(WriteCup(waypoints), file, message), 4) << message;
  for (size_t i = 0; i < waypoints.size(); ++i) {
    constexpr double kHalfMilliminute = 99.5;  // in semicircles
    EXPECT_NEAR(file.waypoints[i].lat, waypoints[i].lat, kHalfMilliminute);
    EXPECT_NEAR(file.waypoints[i].lon, waypoints[i].lon, kHalfMilliminute);
    EXPECT_NEAR(file.waypoints[i].altitude_m, waypoints[i].altitude_m, 0.0501);
    EXPECT_EQ(file.waypoints[i].name, waypoints[i].name);
    EXPECT_EQ(file.waypoints[i].description, waypoints[i].description);
    EXPECT_EQ(file.waypoints[i].comment, waypoints[i].comment);
    EXPECT_EQ(file.waypoints[i].type, waypoints[i].type);
  }
}

}  // namespace
}  // namespace skyhaul
