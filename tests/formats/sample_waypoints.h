#pragma once

#include <gtest/gtest.h>

#include "formats/waypoints/waypoint_list.h"

namespace skyhaul {

inline constexpr uint32_t kMay2024 = 1083501296;  // 2024-05-01 12:34:56 UTC

// Waypoints that every format must carry: each half of the globe, its edges, heights below the sea,
// accents, and a time.
inline std::vector<FileWaypoint> SampleWaypoints() {
  return {
      {.lat = 550274193,  // 46.12345 N
       .lon = 84986069,   // 7.12345 E
       .altitude_m = 2345,
       .name = "FIESCH",
       .description = "Take-off above the lift",
       .time = kMay2024,
       .type = kWaypointAirfield},
      {.lat = -389468371, .lon = -835271917, .altitude_m = 0, .name = "ACONCA", .time = 1},
      {.lat = 376543211,
       .lon = 423456789,
       .altitude_m = -430,
       .name = "Gruyères",
       .description = "Größe & <Höhe>"},
      {.lat = 1 << 30, .lon = INT32_MAX, .altitude_m = 12345, .name = "POLE"},
      {.lat = -(1 << 30), .lon = INT32_MIN, .altitude_m = 1, .name = "POLE2"},
  };
}

// How far what comes back may be from what was written.
struct Tolerance {
  double altitude_m = 0;
  double semicircles = 0;
};

inline void ExpectSameWaypoints(const std::vector<FileWaypoint>& read,
                                const std::vector<FileWaypoint>& written, Tolerance tolerance) {
  ASSERT_EQ(read.size(), written.size());
  for (size_t i = 0; i < read.size(); ++i) {
    SCOPED_TRACE(i);
    EXPECT_NEAR(read[i].lat, written[i].lat, tolerance.semicircles);
    EXPECT_NEAR(read[i].lon, written[i].lon, tolerance.semicircles);
    EXPECT_NEAR(read[i].altitude_m, written[i].altitude_m, tolerance.altitude_m);
    EXPECT_EQ(read[i].name, written[i].name);
    EXPECT_EQ(read[i].description, written[i].description);
    EXPECT_EQ(read[i].comment, written[i].comment);
    EXPECT_EQ(read[i].time, written[i].time);
    EXPECT_EQ(read[i].type, written[i].type);
  }
}

}  // namespace skyhaul
