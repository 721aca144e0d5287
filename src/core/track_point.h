#pragma once

#include <cstdint>

namespace skyhaul {

// One fix of a track log. Eight 32-bit fields, packed, so that arrays of it are copied whole.
struct TrackPoint {
  uint32_t segment_start = 0;  // 1 on the first fix of a track or of a new segment, else 0
  uint32_t time = 0;           // seconds since 1989-12-31 00:00:00 UTC; see core/time_scale.h
  uint32_t milliseconds = 0;   // fraction of the second, 0 when the source has none
  int32_t lat = 0;             // semicircles, north positive; see core/units.h
  int32_t lon = 0;             // semicircles, east positive
  int32_t gps_alt_dm = 0;      // GPS altitude in tenths of a metre
  int32_t pressure_alt = 0;    // pressure altitude in metres
  float extra = 0;             // per-fix extra value, written to IGC as the ENL extension

  friend bool operator==(const TrackPoint&, const TrackPoint&) = default;
};
static_assert(sizeof(TrackPoint) == 32);

}  // namespace skyhaul
