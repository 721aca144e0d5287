#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "core/track_point.h"

namespace skyhaul {

// What is to be flown. The same plan always gives the same flight.
struct FlightPlan {
  uint32_t seed = 1;
  uint32_t start_time = 0;       // of the first fix; see core/time_scale.h
  double launch_lat_deg = 46.7;  // -85..85
  double launch_lon_deg = 7.9;   // -180..180
  int32_t launch_alt_m = 1600;   // above mean sea level
  double triangle_km = 40;       // perimeter, at least 1
  uint32_t interval_s = 1;       // between fixes, at least 1
  uint32_t max_fixes = 0;        // the recording stops after these, in the air or not; 0: no limit
};

struct GeneratedCorner {
  double lat_deg = 0;
  double lon_deg = 0;
};

struct GeneratedFlight {
  std::vector<TrackPoint> points;
  std::array<GeneratedCorner, 3> corners;  // of the triangle, in the order flown; 0 is the launch
  double valley_alt_m = 0;                 // the lowest ground, above mean sea level
};

// A paraglider's flight: waiting on the launch, a closed triangle with sides of at least 28 % of
// its perimeter flown from thermal to thermal in a steady wind, an approach, and waiting on the
// landing field less than 1 km from the launch. GPS altitude is above the ellipsoid and pressure
// altitude in the standard atmosphere, so that the two differ by an offset, by a share of the
// height and by a slow drift. Each corner is passed within 100 m. No flight is longer than 48
// hours.
GeneratedFlight GenerateFlight(const FlightPlan& plan);

// A flight of exactly so many fixes (max_fixes is ignored). The triangle is made as large or as
// small as that takes; what is left over after the landing is spent on the ground. A number too
// small for any whole flight cuts it off.
GeneratedFlight GenerateFlightOfLength(FlightPlan plan, size_t fixes);

}  // namespace skyhaul
