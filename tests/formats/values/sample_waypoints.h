#pragma once

#include <cstdint>
#include <vector>

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

}  // namespace skyhaul
