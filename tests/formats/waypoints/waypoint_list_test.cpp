#include "formats/waypoints/waypoint_list.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace skyhaul {
namespace {

TEST(UnfitWaypoints, TakesTextThatFillsItsRoom) {
  WaypointRecord record = {.altitude = 3, .time = 4, .type = kWaypointAirfield};
  std::ranges::fill(record.name, 'N');
  record.description[0] = '\xFC';
  const FileWaypoint waypoint = UnfitWaypoints({&record, 1}).at(0);
  EXPECT_EQ(waypoint.name + waypoint.description, "NNNNNNNü");
  EXPECT_EQ(waypoint.altitude_m, 3);
  EXPECT_EQ(waypoint.time, 4U);
  EXPECT_EQ(waypoint.type, kWaypointAirfield);
}

}  // namespace
}  // namespace skyhaul
