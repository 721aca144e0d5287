#include "analysis/projection.h"

#include <algorithm>
#include <cmath>

#include "core/units.h"

// The symbols are the paper's: e eccentricity, n third flattening, tau the tangent of the latitude
// and tau' that of the conformal latitude, xi and eta north and east on the unit sphere (primed:
// before the series).

namespace skyhaul {

namespace {

constexpr double kSemiMajorAxis_m = 6378137;
constexpr double kEccentricitySquared = 0.00669437999;

double ConformalTangent(double lat_rad, double e) {
  const double tau = std::tan(lat_rad);
  const double sigma = std::sinh(e * std::atanh(e * std::sin(lat_rad)));
  return tau * std::sqrt(1 + sigma * sigma) - sigma * std::sqrt(1 + tau * tau);
}

PlanePoint Project(const PlaneProjection& projection, double lat_rad, double lon_rad) {
  const double tau = ConformalTangent(lat_rad, projection.eccentricity);
  const double cos_lon = std::cos(lon_rad);
  const double xi = std::atan2(tau, cos_lon);
  const double eta = std::asinh(std::sin(lon_rad) / std::hypot(tau, cos_lon));
  PlanePoint place = {.x_m = eta, .y_m = xi};
  for (int k = 0; k < 3; ++k) {
    const double multiple = 2.0 * (k + 1);
    place.x_m += projection.alpha[k] * std::cos(multiple * xi) * std::sinh(multiple * eta);
    place.y_m += projection.alpha[k] * std::sin(multiple * xi) * std::cosh(multiple * eta);
  }
  return {.x_m = projection.radius_m * place.x_m, .y_m = projection.radius_m * place.y_m};
}

// What is not a number, which only the point of no scale gives, becomes the edge too.
double HoldAtEdge(double value_m) {
  return value_m >= -kPlaneReach_m ? std::min(value_m, kPlaneReach_m) : -kPlaneReach_m;
}

// Unsigned subtraction wraps across the 180th meridian the short way.
int32_t LongitudeFrom(uint32_t origin, int32_t lon) {
  return static_cast<int32_t>(static_cast<uint32_t>(lon) - origin);
}

}  // namespace

PlaneProjection ProjectionFor(std::span<const TrackPoint> points) {
  const double e = std::sqrt(kEccentricitySquared);
  const double flattening = 1 - std::sqrt(1 - kEccentricitySquared);
  const double n = flattening / (2 - flattening);
  PlaneProjection projection = {
      .radius_m = kSemiMajorAxis_m / (1 + n) * (1 + n * n / 4),
      .alpha = {n / 2 - n * n * 2 / 3 + n * n * n * 5 / 16, n * n * 13 / 48 - n * n * n * 3 / 5,
                n * n * n * 61 / 240},
      .eccentricity = e};
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
  projection.origin_y_m = Project(projection, middle_lat_rad, 0).y_m;
  return projection;
}

PlanePoint ToPlane(const PlaneProjection& projection, int32_t lat, int32_t lon) {
  const PlanePoint place = Project(projection, SemicirclesToRadians(lat),
                                   SemicirclesToRadians(LongitudeFrom(projection.middle_lon, lon)));
  return {.x_m = HoldAtEdge(place.x_m), .y_m = HoldAtEdge(place.y_m - projection.origin_y_m)};
}

}  // namespace skyhaul
