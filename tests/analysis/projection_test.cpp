#include "analysis/projection.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "core/units.h"
#include "tests/core/geodesy/exact_geodesic.h"

namespace skyhaul {
namespace {

constexpr double kHalf_m = 250000;  // of a 500 km flight

TrackPoint PointAt(double lat_deg, double lon_deg) {
  return {.lat = DegreesToSemicircles(lat_deg),
          .lon = DegreesToSemicircles(std::remainder(lon_deg, 360))};
}

TrackPoint PointFrom(double lat_deg, double lon_deg, double bearing_deg, double distance_m) {
  const auto [lat, lon] = ExactDirect(lat_deg, lon_deg, bearing_deg, distance_m);
  return PointAt(lat, lon);
}

double PlaneDistance_m(const PlaneProjection& projection, const TrackPoint& from,
                       const TrackPoint& to) {
  const PlanePoint a = ToPlane(projection, from.lat, from.lon);
  const PlanePoint b = ToPlane(projection, to.lat, to.lon);
  return std::hypot(a.x_m - b.x_m, a.y_m - b.y_m);
}

TEST(Projection, PlaneIsNearTheEllipsoidOver500Km) {
  double worst_across_m = 0;
  double worst_along_m = 0;
  for (int lat_deg = -60; lat_deg <= 60; lat_deg += 10) {
    const auto excess_m = [lat_deg](double bearing_deg) {
      const TrackPoint flight[] = {PointFrom(lat_deg, 8, bearing_deg, kHalf_m),
                                   PointFrom(lat_deg, 8, bearing_deg + 180, kHalf_m)};
      const PlaneProjection projection = ProjectionFor(flight);
      return std::abs(PlaneDistance_m(projection, flight[0], flight[1]) -
                      ExactApart_m(flight[0], flight[1]));
    };
    worst_across_m = std::max(worst_across_m, excess_m(90));
    worst_along_m = std::max(worst_along_m, excess_m(0));
  }
  EXPECT_LT(worst_across_m, 129);
  EXPECT_LT(worst_along_m, 0.1);
}

TEST(Projection, HasNoSeam) {
  const std::tuple<const char*, TrackPoint, TrackPoint> cases[] = {
      {"180th meridian", PointAt(10, 179.9), PointAt(10, -179.9)},
      {"north pole", PointAt(89.9, 0), PointAt(89.9, 179)},
      {"south pole", PointAt(-89.95, -120), PointAt(-89.9, 60)},
  };
  for (const auto& [name, from, to] : cases) {
    const TrackPoint flight[] = {from, to};
    EXPECT_NEAR(PlaneDistance_m(ProjectionFor(flight), from, to), ExactApart_m(from, to), 0.3)
        << name;
  }
}

TEST(Projection, HoldsFarPositions) {
  const TrackPoint globe[] = {PointAt(0, 0),  PointAt(0, 90),  PointAt(0, -90),
                              PointAt(90, 0), PointAt(-90, 0), PointAt(0, 179.9)};
  const PlaneProjection projection = ProjectionFor(globe);
  for (int lat = -90; lat <= 90; lat += 6) {
    for (int lon = -180; lon <= 180; lon += 6) {
      const TrackPoint point = PointAt(lat, lon);
      const PlanePoint place = ToPlane(projection, point.lat, point.lon);
      EXPECT_LE(std::abs(place.x_m), kPlaneReach_m) << lat << " " << lon;
      EXPECT_LE(std::abs(place.y_m), kPlaneReach_m) << lat << " " << lon;
    }
  }
  EXPECT_EQ(ProjectionFor({}).middle_lon, 0);
}

}  // namespace
}  // namespace skyhaul
