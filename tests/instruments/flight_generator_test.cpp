#include "instruments/flight_generator.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "core/units.h"

namespace skyhaul {
namespace {

constexpr double kEarthRadius_m = 6371000;
constexpr uint32_t kStartTime = 1'150'000'000;

struct Place {
  double lat = 0;  // radians
  double lon = 0;
};

Place PlaceOf(const TrackPoint& point) {
  return {SemicirclesToRadians(point.lat), SemicirclesToRadians(point.lon)};
}

Place PlaceOf(const GeneratedCorner& corner) {
  return {corner.lat_deg / kDegreesPerRadian, corner.lon_deg / kDegreesPerRadian};
}

double Distance_m(Place a, Place b) {
  const double half_lat = std::sin((b.lat - a.lat) / 2);
  const double half_lon = std::sin((b.lon - a.lon) / 2);
  return 2 * kEarthRadius_m *
         std::asin(std::sqrt(half_lat * half_lat +
                             std::cos(a.lat) * std::cos(b.lat) * half_lon * half_lon));
}

double ClosestApproach_m(const GeneratedFlight& flight, const GeneratedCorner& corner) {
  double closest_m = 1e9;
  for (const TrackPoint& point : flight.points) {
    closest_m = std::min(closest_m, Distance_m(PlaceOf(point), PlaceOf(corner)));
  }
  return closest_m;
}

// Velocity over the ground between two fixes, east and north.
std::pair<double, double> Velocity(const TrackPoint& from, const TrackPoint& to) {
  const Place a = PlaceOf(from);
  const Place b = PlaceOf(to);
  const double seconds = to.time - from.time;
  return {std::remainder(b.lon - a.lon, 2 * kPi) * std::cos(a.lat) * kEarthRadius_m / seconds,
          (b.lat - a.lat) * kEarthRadius_m / seconds};
}

struct Extremes {
  double speed = 0;
  double climb = 0;
  double sink = 0;
  double acceleration = 0;
  double lowest_m = 1e9;
  double least_offset_m = 1e9;  // of the GPS altitude from the pressure altitude
  double most_offset_m = -1e9;
  double circling_share = 0;  // of fixes that turn by more than 6 degrees a second
};

Extremes ExtremesOf(const GeneratedFlight& flight) {
  Extremes extremes;
  size_t circling = 0;
  for (size_t i = 1; i < flight.points.size(); ++i) {
    const TrackPoint& before = flight.points[i - 1];
    const TrackPoint& point = flight.points[i];
    const auto [east, north] = Velocity(before, point);
    extremes.speed = std::max(extremes.speed, std::hypot(east, north));
    const double climb = (point.gps_alt_dm - before.gps_alt_dm) / 10.0;
    extremes.climb = std::max(extremes.climb, climb);
    extremes.sink = std::min(extremes.sink, climb);
    extremes.lowest_m = std::min(extremes.lowest_m, point.gps_alt_dm / 10.0);
    const double offset_m = point.gps_alt_dm / 10.0 - point.pressure_alt;
    extremes.least_offset_m = std::min(extremes.least_offset_m, offset_m);
    extremes.most_offset_m = std::max(extremes.most_offset_m, offset_m);
    if (i < 2) continue;
    const auto [east_before, north_before] = Velocity(flight.points[i - 2], before);
    extremes.acceleration =
        std::max(extremes.acceleration, std::hypot(east - east_before, north - north_before));
    const double turn =
        std::remainder(std::atan2(east, north) - std::atan2(east_before, north_before), 2 * kPi);
    if (std::hypot(east, north) > 2 && std::abs(turn) > 0.1) ++circling;
  }
  extremes.circling_share =
      static_cast<double>(circling) / static_cast<double>(flight.points.size());
  return extremes;
}

FlightPlan PlanWithSeed(uint32_t seed) {
  return {.seed = seed, .start_time = kStartTime};
}

TEST(FlightGenerator, FliesAClosedTriangleAsAParagliderCan) {
  for (uint32_t seed = 0; seed < 30; ++seed) {
    SCOPED_TRACE(seed);
    const GeneratedFlight flight = GenerateFlight(PlanWithSeed(seed));
    double perimeter_m = 0;
    double shortest_m = 1e9;
    for (size_t i = 0; i < 3; ++i) {
      EXPECT_LT(ClosestApproach_m(flight, flight.corners[i]), 100);
      const double side_m =
          Distance_m(PlaceOf(flight.corners[i]), PlaceOf(flight.corners[(i + 1) % 3]));
      perimeter_m += side_m;
      shortest_m = std::min(shortest_m, side_m);
    }
    EXPECT_NEAR(perimeter_m, 40'000, 400);
    EXPECT_GT(shortest_m, 0.279 * perimeter_m);
    EXPECT_LT(Distance_m(PlaceOf(flight.points.front()), PlaceOf(flight.points.back())), 1000);
    EXPECT_NEAR(flight.points.back().time - kStartTime, 8550, 4050);
    const Extremes extremes = ExtremesOf(flight);
    EXPECT_NEAR(extremes.speed, 17.5, 7.5);
    EXPECT_NEAR(extremes.climb, 5, 3);
    EXPECT_GT(extremes.sink, -10);
    EXPECT_LT(extremes.acceleration, 12);  // 50 degrees of bank
    EXPECT_GT(extremes.lowest_m, flight.valley_alt_m - 50);
    EXPECT_NEAR(extremes.circling_share, 0.45, 0.3);
    EXPECT_NEAR(extremes.most_offset_m - extremes.least_offset_m, 76.5, 73.5);
    EXPECT_LT(std::max(extremes.most_offset_m, -extremes.least_offset_m), 400);
  }
}

TEST(FlightGenerator, StartsAndEndsStandingOnTheGround) {
  const GeneratedFlight flight = GenerateFlight(PlanWithSeed(7));
  const auto drift_m = [&](size_t from, size_t to) {
    return Distance_m(PlaceOf(flight.points[from]), PlaceOf(flight.points[to]));
  };
  const size_t last = flight.points.size() - 1;
  EXPECT_LT(drift_m(0, 28), 10);
  EXPECT_GT(drift_m(0, 120), 100);
  EXPECT_LT(drift_m(last - 28, last), 10);
  EXPECT_GT(drift_m(last - 150, last), 50);
}

TEST(FlightGenerator, OneSeedIsOneFlight) {
  const GeneratedFlight flight = GenerateFlight(PlanWithSeed(5));
  EXPECT_EQ(flight.points, GenerateFlight(PlanWithSeed(5)).points);
  EXPECT_NE(flight.points, GenerateFlight(PlanWithSeed(6)).points);
}

TEST(FlightGenerator, FixesComeAtTheInterval) {
  const GeneratedFlight flight =
      GenerateFlight({.seed = 2, .start_time = kStartTime, .triangle_km = 15, .interval_s = 5});
  for (size_t i = 0; i < flight.points.size(); ++i) {
    ASSERT_EQ(flight.points[i].time, kStartTime + 5 * i);
    ASSERT_EQ(flight.points[i].segment_start, i == 0 ? 1U : 0U);
  }
}

TEST(FlightGenerator, GoesAnywhere) {
  // The date line, sea level, the far north, and high up.
  const FlightPlan plans[] = {
      {.launch_lat_deg = -17, .launch_lon_deg = 179.99, .launch_alt_m = 300},
      {.launch_lat_deg = 52, .launch_lon_deg = -1e-3, .launch_alt_m = 0},
      {.launch_lat_deg = 80, .launch_lon_deg = 20, .launch_alt_m = 800},
      {.launch_lat_deg = -30, .launch_lon_deg = -70, .launch_alt_m = 4000},
  };
  for (const FlightPlan& plan : plans) {
    SCOPED_TRACE(plan.launch_lat_deg);
    const GeneratedFlight flight = GenerateFlight(plan);
    EXPECT_LT(Distance_m(PlaceOf(flight.points.front()), PlaceOf(flight.points.back())), 1000);
    EXPECT_LT(ExtremesOf(flight).speed, 25);
    EXPECT_LT(ClosestApproach_m(flight, flight.corners[1]), 100);
  }
}

TEST(FlightGenerator, MakesFlightsOfALength) {
  for (const size_t fixes : {1U, 100U, 2'000U, 10'000U, 30'000U}) {
    SCOPED_TRACE(fixes);
    const GeneratedFlight flight = GenerateFlightOfLength(PlanWithSeed(1), fixes);
    ASSERT_EQ(flight.points.size(), fixes);
    EXPECT_EQ(flight.points.back().time, kStartTime + fixes - 1);
    if (fixes < 2'000) continue;
    EXPECT_LT(Distance_m(PlaceOf(flight.points.front()), PlaceOf(flight.points.back())), 1000);
    EXPECT_LT(ClosestApproach_m(flight, flight.corners[2]), 100);
    // It is still under way when nine tenths have gone by.
    const TrackPoint& late = flight.points[fixes * 9 / 10];
    EXPECT_GT(Distance_m(PlaceOf(late), PlaceOf(flight.points.back())), 30);
  }
  FlightPlan plan = PlanWithSeed(1);
  plan.max_fixes = 500;
  EXPECT_EQ(GenerateFlight(plan).points.size(), 500U);
}

}  // namespace
}  // namespace skyhaul
