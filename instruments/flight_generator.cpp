#include "instruments/flight_generator.h"

#include <algorithm>
#include <cmath>

#include "core/units.h"
#include "instruments/paraglider.h"

namespace skyhaul {

namespace {

using paraglider::Day;
using paraglider::Flyer;
using paraglider::Plane;
using paraglider::Random;
using paraglider::Uniform;
using paraglider::Wander;

constexpr double kMetresPerDegree = 111195;  // of a great circle on a sphere of 6371 km radius
constexpr uint32_t kLongestFlight_s = 48 * 3600;

// What the instrument measures wrongly, and what the atmosphere and the ellipsoid add.
struct Sensors {
  double geoid_m = 0;
  double pressure_offset_m = 0;  // of the day's sea level pressure
  double pressure_scale = 1;     // warm air is thinner than the standard's
  double east_m = 0;
  double north_m = 0;
  double gps_m = 0;
  double pressure_m = 0;
  double weather_m = 0;
};

Sensors MakeSensors(Random& random) {
  return {.geoid_m = Uniform(random, 20, 50),
          .pressure_offset_m = Uniform(random, -110, 60),
          .pressure_scale = Uniform(random, 0.955, 0.995)};
}

void Mismeasure(Random& random, Sensors& sensors) {
  Wander(random, sensors.east_m, 1.5, 200);
  Wander(random, sensors.north_m, 1.5, 200);
  Wander(random, sensors.gps_m, 3, 150);
  Wander(random, sensors.pressure_m, 0.3, 2);
  Wander(random, sensors.weather_m, 8, 3600);
}

GeneratedCorner OnEarth(const FlightPlan& plan, Plane position) {
  const double lon_metres = kMetresPerDegree * std::cos(plan.launch_lat_deg / kDegreesPerRadian);
  return {.lat_deg = plan.launch_lat_deg + position.north / kMetresPerDegree,
          .lon_deg = std::remainder(plan.launch_lon_deg + position.east / lon_metres, 360)};
}

TrackPoint Fix(const FlightPlan& plan, const Flyer& flyer, const Sensors& sensors) {
  const GeneratedCorner place =
      OnEarth(plan, {flyer.position.east + sensors.east_m, flyer.position.north + sensors.north_m});
  const double gps_alt_m = flyer.alt_m + sensors.geoid_m + sensors.gps_m;
  const double pressure_alt_m = flyer.alt_m * sensors.pressure_scale + sensors.pressure_offset_m +
                                sensors.weather_m + sensors.pressure_m;
  return {.lat = RadiansToSemicircles(place.lat_deg / kDegreesPerRadian),
          .lon = RadiansToSemicircles(place.lon_deg / kDegreesPerRadian),
          .gps_alt_dm = RoundHalfAwayFromZero(gps_alt_m * 10),
          .pressure_alt = RoundHalfAwayFromZero(pressure_alt_m)};
}

}  // namespace

GeneratedFlight GenerateFlight(const FlightPlan& plan) {
  Random random{.state = plan.seed};
  const Day day =
      paraglider::MakeDay(std::max(plan.triangle_km, 1.0) * 1000, plan.launch_alt_m, random);
  GeneratedFlight flight;
  flight.valley_alt_m = day.valley_alt_m;
  for (size_t i = 0; i < day.corners.size(); ++i) {
    flight.corners[i] = OnEarth(plan, day.corners[i]);
  }
  Sensors sensors = MakeSensors(random);
  Flyer flyer = paraglider::OnTheLaunch(day, random);
  const uint32_t interval_s = std::max(plan.interval_s, 1U);
  for (uint32_t second = 0; second < kLongestFlight_s && Step(day, flyer); ++second) {
    Mismeasure(flyer.random, sensors);
    if (second % interval_s != 0) continue;
    TrackPoint point = Fix(plan, flyer, sensors);
    point.segment_start = flight.points.empty() ? 1 : 0;
    point.time = plan.start_time + second;
    flight.points.push_back(point);
    if (flight.points.size() == plan.max_fixes) break;
  }
  return flight;
}

GeneratedFlight GenerateFlightOfLength(FlightPlan plan, size_t fixes) {
  plan.max_fixes = 0;
  GeneratedFlight flight = GenerateFlight(plan);
  constexpr int kAttempts = 12;
  for (int i = 0; i < kAttempts; ++i) {
    const double share = static_cast<double>(fixes) / static_cast<double>(flight.points.size());
    if (share >= 1 && share < 1.05) break;
    plan.triangle_km = std::max(plan.triangle_km * share * 0.98, 1.0);
    flight = GenerateFlight(plan);
  }
  while (flight.points.size() < fixes) {
    TrackPoint standing = flight.points.back();
    standing.time += std::max(plan.interval_s, 1U);
    flight.points.push_back(standing);
  }
  flight.points.resize(fixes);
  return flight;
}

}  // namespace skyhaul
