#include "core/geodesy/geodesic.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

#include "core/units.h"
#include "tests/core/geodesy/exact_geodesic.h"

namespace skyhaul {
namespace {

constexpr double kDegree = kPi / 180;
constexpr double kAccuracy_m = 1e-4;

struct Pair {
  double lat1, lon1, lat2, lon2;  // degrees
};

ExactCourse Exact(const Pair& pair) {
  return ExactInverse(pair.lat1, pair.lon1, pair.lat2, pair.lon2);
}

GeodesicCourse Ours(const Pair& pair) {
  return GeodesicInverse(pair.lat1 * kDegree, pair.lon1 * kDegree, pair.lat2 * kDegree,
                         pair.lon2 * kDegree);
}

double Within(double reach) {
  static std::mt19937_64 bits{1975};
  return std::uniform_real_distribution<double>(-reach, reach)(bits);
}

// Evenly over the globe.
Pair Anywhere() {
  return {std::asin(Within(1)) / kDegree, Within(180), std::asin(Within(1)) / kDegree, Within(180)};
}

Pair Near(double reach_deg) {
  const Pair at = Anywhere();
  const double lat = std::clamp(at.lat1 + Within(reach_deg), -90.0, 90.0);
  return {at.lat1, at.lon1, lat, at.lon1 + Within(reach_deg)};
}

void ExpectExact(const Pair& pair) {
  const ExactCourse exact = Exact(pair);
  const GeodesicCourse course = Ours(pair);
  if (course.distance_m < 0 && exact.distance_m > 19.9e6) return;
  SCOPED_TRACE(testing::Message() << pair.lat1 << " " << pair.lon1 << " to " << pair.lat2 << " "
                                  << pair.lon2);
  ASSERT_NEAR(course.distance_m, exact.distance_m, kAccuracy_m);
  if (exact.distance_m < 1000 || exact.distance_m > 19.8e6) return;
  ASSERT_NEAR(std::remainder(course.bearing_rad - exact.bearing_deg * kDegree, 2 * kPi), 0, 1e-9);
  ASSERT_GE(course.bearing_rad, 0);
}

TEST(GeodesicInverse, RandomPairs) {
  for (int i = 0; i < 20000; ++i) {
    ExpectExact(Anywhere());
    ExpectExact(Near(0.5));
    const Pair near = Near(1);
    ExpectExact({near.lat1, near.lon1, -near.lat2, near.lon2 + 180});  // its antipode
    if (testing::Test::HasFatalFailure()) return;
  }
}

TEST(GeodesicInverse, EdgesOfTheGlobe) {
  const Pair cases[] = {
      {0, 0, 0, 90},       // along the equator
      {0, 0, 0, 1e-6},     // 0.1 m
      {90, 0, 47, 8},      // from a pole
      {90, 0, -90, 0},     // pole to pole
      {80, 10, 80, -170},  // over a pole
      {47, 8, 47, 368},    // the same place a turn later
      {47, 8, 47, 8},
  };
  for (const Pair& pair : cases) {
    ExpectExact(pair);
    EXPECT_GE(Ours(pair).distance_m, 0) << pair.lat1 << " " << pair.lon1;
  }
  EXPECT_EQ(Ours({47, 8, 47, 8}).bearing_rad, 0);
}

TEST(GeodesicInverse, NoResultNearTheAntipode) {
  const Pair cases[] = {{0, 0, 0, 180}, {0, 0, 0, 179.7}, {47, 8, -47.001, -171.9}};
  for (const Pair& pair : cases) {
    EXPECT_LT(Ours(pair).distance_m, 0) << pair.lat1 << " to " << pair.lat2;
    EXPECT_LT(GeodesicDistance_m(pair.lat1 * kDegree, pair.lon1 * kDegree, pair.lat2 * kDegree,
                                 pair.lon2 * kDegree),
              0);
  }
  EXPECT_LT(GeodesicDistance_m(std::numeric_limits<double>::quiet_NaN(), 0, 0, 0), 0);
}

void ExpectDestination(const Pair& start, double bearing_deg, double distance_m) {
  const auto [lat, lon] = ExactDirect(start.lat1, start.lon1, bearing_deg, distance_m);
  const GeodesicPosition ours = GeodesicDestination(start.lat1 * kDegree, start.lon1 * kDegree,
                                                    bearing_deg * kDegree, distance_m);
  const double off_m =
      ExactInverse(lat, lon, ours.lat_rad / kDegree, ours.lon_rad / kDegree).distance_m;
  ASSERT_LT(off_m, kAccuracy_m) << start.lat1 << " " << start.lon1 << " " << bearing_deg << " deg "
                                << distance_m << " m";
  ASSERT_LE(std::abs(ours.lon_rad), kPi);
}

TEST(GeodesicDestination, RandomPlaces) {
  for (int i = 0; i < 20000; ++i) {
    const Pair pair = Anywhere();
    ExpectDestination(pair, pair.lon2, Exact(pair).distance_m);
    ExpectDestination(pair, pair.lon2, 50000 * (1 + pair.lat2 / 90));
    if (testing::Test::HasFatalFailure()) return;
  }
}

TEST(GeodesicDestination, EdgesOfTheGlobe) {
  for (const double lat : {90.0, 60.0, 0.0, -90.0}) {
    for (const double bearing_deg : {0, 90, 180, 270, 360, -45}) {
      for (const double distance_m : {0.0, 0.01, 50000.0, 10001965.7293, 2e7}) {
        ExpectDestination({lat, 179.99, 0, 0}, bearing_deg, distance_m);
      }
    }
  }
}

}  // namespace
}  // namespace skyhaul
