#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace skyhaul {

inline constexpr int32_t kWaypointAirfield = 1;

// One waypoint, also a point of a declared route. Packed, so that arrays of it are copied whole.
struct WaypointRecord {
  int32_t lat = 0;            // semicircles, north positive; see core/units.h
  int32_t lon = 0;            // semicircles, east positive
  int32_t altitude = 0;       // metres
  char name[7] = {};          // up to 6 characters, NUL-terminated
  char description[41] = {};  // up to 40 characters, NUL-terminated
  uint32_t time = 0;          // creation time, seconds since 1989-12-31 00:00:00 UTC
  int32_t type = 0;           // kWaypointAirfield, or anything else for an ordinary point
};
static_assert(sizeof(WaypointRecord) == 68);

// A declared task. The points stand in the order of an IGC declaration: take-off, start,
// turnpoints, finish, landing.
struct DeclaredRoute {
  uint32_t declaration_time = 0;  // seconds since 1989-12-31 00:00:00 UTC
  uint32_t flight_date = 0;       // the same scale; only the date counts
  uint32_t task_number = 0;
  std::string name;  // up to 83 characters
  std::vector<WaypointRecord> points;
};

}  // namespace skyhaul
