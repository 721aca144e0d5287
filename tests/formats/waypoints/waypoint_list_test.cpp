#include "formats/waypoints/waypoint_list.h"

#include <gtest/gtest.h>

namespace skyhaul {
namespace {

TEST(UnfitWaypoints, TakesTextThatFillsItsRoom) {
  WaypointRecord record = {.lat = 1, .lon = 2, .altitude = 3, .time = 4, .type = kWaypointAirfield};
  for (char& c : record.name) c = 'N';
  record.description[0] = '\xFC';
  const std::vector<FileWaypoint> waypoints = UnfitWaypoints({&record, 1});
  ASSERT_EQ(waypoints.size(), 1U);
  EXPECT_EQ(waypoints[0].name, "NNNNNNN");
  EXPECT_EQ(waypoints[0].description, "ü");
  EXPECT_EQ(waypoints[0].altitude_m, 3);
  EXPECT_EQ(waypoints[0].lat, 1);
  EXPECT_EQ(waypoints[0].lon, 2);
  EXPECT_EQ(waypoints[0].time, 4U);
  EXPECT_EQ(waypoints[0].type, kWaypointAirfield);
}

}  // namespace
}  // namespace skyhaul
