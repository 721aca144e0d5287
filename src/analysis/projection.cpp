#include "analysis/projection.h"

#include <algorithm>

#include "core/geodesy/transverse_mercator.h"
#include "core/units.h"

namespace skyhaul {

namespace {

// The comparison is false for a NaN, which the two points without a position may give (a quarter
// turn from the middle meridian on the equator): they are held at the edge too.
double HoldAtEdge(double value_m) {
  return value_m >= -kPlaneReach_m ? std::min(value_m, kPlaneReach_m) : -kPlaneReach_m;
}

// Semicircles fill 32 bits, so that unsigned subtraction takes the short way across the 180th
// meridian.
int32_t LongitudeFrom(uint32_t origin, int32_t lon) {
  return static_cast<int32_t>(static_cast<uint32_t>(lon) - origin);
}

}  // namespace

PlaneProjection ProjectionFor(std::span<const TrackPoint> points) {
  PlaneProjection projection;
  if (points.empty()) return projection;

  const auto first_lon = static_cast<uint32_t>(points[0].lon);
  int32_t south = points[0].lat;
  int32_t north = south;
  int32_t west = 0;
  int32_t east = 0;
  for (const TrackPoint& point : points) {
    south = std::min(south, point.lat);
    north = std::max(north, point.lat);
    west = std::min(west, LongitudeFrom(first_lon, point.lon));
    east = std::max(east, LongitudeFrom(first_lon, point.lon));
  }
  const double middle_lat_rad = (SemicirclesToRadians(south) + SemicirclesToRadians(north)) / 2;
  projection.middle_lon = first_lon + static_cast<uint32_t>((int64_t{west} + east) / 2);
  projection.origin_y_m = ToTransverseMercator({.lat_rad = middle_lat_rad}).north_m;
  return projection;
}

PlanePoint ToPlane(const PlaneProjection& projection, int32_t lat, int32_t lon) {
  const MercatorPosition place = ToTransverseMercator(
      {.lat_rad = SemicirclesToRadians(lat),
       .lon_rad = SemicirclesToRadians(LongitudeFrom(projection.middle_lon, lon))});
  return {.x_m = HoldAtEdge(place.east_m),
          .y_m = HoldAtEdge(place.north_m - projection.origin_y_m)};
}

}  // namespace skyhaul
