#pragma once

#include <span>

#include "core/track_point.h"

namespace skyhaul {

enum class AltitudeSource { kGps, kPressure };

// The altitude that formats with a single one get: the GPS's, or the pressure altitude of a track
// whose fixes have no GPS altitude at all.
AltitudeSource ChooseAltitude(std::span<const TrackPoint> points);

double Altitude_m(const TrackPoint& point, AltitudeSource source);

}  // namespace skyhaul
