#pragma once

#include <cstdint>
#include <span>

#include "core/track_point.h"

namespace skyhaul {

// A transverse Mercator projection of the WGS-84 ellipsoid (eccentricity squared 0.00669437999) to
// a plane about the middle of a track, with scale 1 on its middle meridian.
//
// The series is that of L. Krueger in the third flattening n, with the latitude first brought to
// the conformal sphere in closed form (R. E. Deakin, M. N. Hunter and C. F. F. Karney, "The
// Gauss-Krueger projection", 2010), taken to n^3. Plane distances are rounded to whole metres, so
// what counts is that the series does not move a rounding by itself. Over a flight of 500 km in any
// direction, its middle between 80 degrees south and north, positions are wrong by up to 31 mm with
// n^2 as the last power and by up to 0.07 mm with n^3 (held against
// GeographicLib::TransverseMercatorExact). The plane itself is not the ellipsoid: a distance of
// 500 km from west to east is up to 129 m (0.026 %) too long, one from north to south is right to
// 0.1 m.
//
// A track that crosses the 180th meridian or a pole has no seam. Positions more than 10 000 km from
// the middle along either axis, which no flight reaches, are held at that distance.
struct PlaneProjection {
  double radius_m = 0;      // of the sphere with meridians of the same length
  double alpha[3] = {};     // the series
  double eccentricity = 0;  // of the ellipsoid
  double origin_y_m = 0;    // of the middle latitude
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

PlanePoint ToPlane(const PlaneProjection& projection, int32_t lat, int32_t lon);

}  // namespace skyhaul
