#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "core/track_point.h"

namespace skyhaul {

// Where a track is in the air.
struct FlightTimes {
  size_t take_off = 0;  // indices into the track
  size_t landing = 0;
  bool flown = false;  // false: nothing in the track moves like a flight; the two are its ends
};

// Finds take-off and landing by ground speed: take-off is the start of the first stretch of
// at least 10 s flown at more than 6 m/s on average, landing the end of the last one at more than
// 4 m/s. A pilot who runs or is driven to the launch looks like one who flies. Points must
// not be empty; fixes whose time does not advance are passed over.
FlightTimes FindFlightTimes(std::span<const TrackPoint> points);

// Distance over ground in metres between two points a few kilometres apart at most, on a sphere of
// radius 6371 km (the mean radius of the IUGG): good to 0.6 %.
double NearDistance_m(const TrackPoint& from, const TrackPoint& to);

}  // namespace skyhaul
