#include "formats/common/track_altitude.h"

#include <algorithm>

namespace skyhaul {

AltitudeSource ChooseAltitude(std::span<const TrackPoint> points) {
  // One source for the whole track: a change from one to the other would look like a climb. A
  // single fix at sea level does not make the track one without GPS altitude, so every fix is
  // asked.
  const bool has_gps = std::any_of(points.begin(), points.end(),
                                   [](const TrackPoint& point) { return point.gps_alt_dm != 0; });
  return has_gps ? AltitudeSource::kGps : AltitudeSource::kPressure;
}

double Altitude_m(const TrackPoint& point, AltitudeSource source) {
  return source == AltitudeSource::kGps ? point.gps_alt_dm / 10.0 : point.pressure_alt;
}

}  // namespace skyhaul
