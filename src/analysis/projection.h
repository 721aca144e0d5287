#pragma once

#include <cstdint>
#include <span>

#include "core/track_point.h"

namespace skyhaul {

// A plane about the middle of a track: the transverse Mercator projection with scale 1 on the
// track's middle meridian (core/geodesy/transverse_mercator.h).
//
// The plane is not the ellipsoid: a distance of 500 km from west to east is up to 129 m (0.026 %)
// too long, one from north to south is right to 0.1 m.
//
// A track that crosses the 180th meridian or a pole has no seam. Positions more than 10 000 km from
// the middle along either axis, which no flight reaches, are held at that distance.
struct PlaneProjection {
  double origin_y_m = 0;    // of the middle latitude, from the equator
  uint32_t middle_lon = 0;  // semicircles, any turn
};

struct PlanePoint {
  double x_m = 0;  // east of the middle meridian
  double y_m = 0;  // north of the middle latitude
};

inline constexpr double kPlaneReach_m = 1e7;

// The projection for a track: the middle latitude is the mean of its smallest and greatest, the
// middle meridian the mean of the westernmost and easternmost as seen from the first point. Points
// may be empty.
PlaneProjection ProjectionFor(std::span<const TrackPoint> points);

// A position in semicircles on the plane, both coordinates within kPlaneReach_m.
PlanePoint ToPlane(const PlaneProjection& projection, int32_t lat, int32_t lon);

}  // namespace skyhaul
