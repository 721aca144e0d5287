#include "analysis/flight_times.h"

#include <gtest/gtest.h>

#include "core/units.h"

namespace skyhaul {
namespace {

constexpr double kDegreesPerMetre = 1 / 111194.93;  // of latitude on the mean sphere

struct Leg {
  uint32_t duration_s;
  double speed_m_s;
};

std::vector<TrackPoint> Track(const std::vector<Leg>& legs, uint32_t interval_s) {
  std::vector<TrackPoint> points;
  double north_m = 0;
  uint32_t time = 1000;
  for (const Leg& leg : legs) {
    for (uint32_t s = 0; s < leg.duration_s; s += interval_s, time += interval_s) {
      const double lat_deg = 47 + north_m * kDegreesPerMetre;
      points.push_back({.time = time, .lat = DegreesToSemicircles(lat_deg)});
      north_m += leg.speed_m_s * interval_s;
    }
  }
  return points;
}

TEST(FlightTimes, TakeOffAndLandingByGroundSpeed) {
  const struct {
    const char* what;
    std::vector<Leg> legs;
    uint32_t interval_s;
    bool flown;
    uint32_t take_off, landing;
  } cases[] = {
      {"ends below 4 m/s", {{300, 0}, {600, 10}, {300, 5}, {200, 2}}, 1, true, 1300, 2200},
      {"starts in the air", {{600, 10}, {60, 0}}, 1, true, 1000, 1600},
      {"rare fixes", {{300, 0}, {600, 10}, {300, 0}}, 30, true, 1300, 1900},
      {"a jump of one fix is no flight", {{100, 0}, {1, 40}, {100, 0}}, 1, false, 1000, 1200},
      {"one fix", {{1, 0}}, 1, false, 1000, 1000},
  };
  for (const auto& c : cases) {
    const std::vector<TrackPoint> points = Track(c.legs, c.interval_s);
    const FlightTimes times = FindFlightTimes(points);
    EXPECT_EQ(times.flown, c.flown) << c.what;
    EXPECT_NEAR(points[times.take_off].time, c.take_off, 10 + c.interval_s) << c.what;
    EXPECT_NEAR(points[times.landing].time, c.landing, 10 + c.interval_s) << c.what;
  }
}

TEST(FlightTimes, DistancesCrossTheDateLineTheShortWay) {
  EXPECT_NEAR(NearDistance_m({.lon = INT32_MAX}, {.lon = INT32_MIN}), 0.0093, 0.0001);
}

}  // namespace
}  // namespace skyhaul
