#include "formats/waypoints/waypoint_list.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/formats/waypoint_files.h"

namespace skyhaul {
namespace {

TEST(UnfitWaypoints, TakesTextThatFillsItsRoom) {
  WaypointRecord record = {.altitude = 3, .time = 4, .type = kWaypointAirfield};
  std::ranges::fill(record.name, 'N');
  record.description[0] = '\xFC';
  EXPECT_EQ(Shown({.waypoints = UnfitWaypoints({&record, 1}), .notes = {}}),
            "0 0 3 NNNNNNN|ü @4 type 1\n");
}

}  // namespace
}  // namespace skyhaul
