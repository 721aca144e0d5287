#include "formats/cup/read_cup.h"
#include "formats/cup/write_cup.h"
#include "tests/formats/read_text.h"
#include "tests/formats/values/sample_waypoints.h"

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
  const std::vector<FileWaypoint> waypoints = {
      {.lat = 551549341, .lon = 88654321, .altitude_m = 1234.56, .name = "A01"},
      {.lat = -(1 << 30),
       .lon = INT32_MIN,
       .altitude_m = -430,
       .name = "Süd, \"Pol\"",
       .description = "-- Ж"},
      {.lat = 1 << 30,
       .lon = INT32_MAX,
       .name = "same",
       .comment = "remark",
       .type = kWaypointAirfield},
      {.lat = -77, .lon = -99, .name = "12", .description = "4500.000N,00700.000E"},
  };
  constexpr double kHalfMilliminute = 99.5;  // in semicircles
  ExpectSameWaypoints(ReadGood(ReadCup, WriteCup(waypoints)).waypoints, waypoints,
                      {.altitude_m = 0.0501, .semicircles = kHalfMilliminute});
}

}  // namespace
}  // namespace skyhaul
