#include "instruments/paraglider.h"

#include <algorithm>
#include <cmath>

#include "core/units.h"

namespace skyhaul::paraglider {

namespace {

// How the pilot flies. Speeds through the air in m/s, heights above the ground in metres.
constexpr double kTrimSpeed = 9.5;
constexpr double kLeastSink = 1.05;
constexpr double kSinkGrowth = 0.06;  // sink grows with the square of the speed above trim
constexpr double kSpeedChange = 1.5;  // per second
constexpr double kTurnRate = 0.2;     // radians per second on a glide: 13 degrees of bank
constexpr double kCornerReached_m = 80;
constexpr double kLowSave_m = 250;         // below this the next bubble is taken, whatever it is
constexpr double kArrivalReserve_m = 150;  // on a final glide
constexpr double kSpiralAbove_m = 250;     // over the landing field
constexpr double kSpiralSink = 5;
constexpr double kFinalBelow_m = 30;  // from here straight into the wind
constexpr double kFieldRadius_m = 100;
constexpr double kSlope_m = 400;  // from the launch straight down to the valley

double Distance(Plane a, Plane b) {
  return std::hypot(b.east - a.east, b.north - a.north);
}
double Bearing(Plane a, Plane b) {
  return std::atan2(b.east - a.east, b.north - a.north);
}
Plane Offset(double bearing, double metres) {
  return {.east = std::sin(bearing) * metres, .north = std::cos(bearing) * metres};
}
double TurnBetween(double from, double to) {
  return std::remainder(to - from, 2 * kPi);
}

double GroundAlt(const Day& day, Plane position) {
  const double slope_left = std::max(1 - Distance({}, position) / kSlope_m, 0.0);
  return day.valley_alt_m + day.hill_m * slope_left;
}

double HeightAboveGround(const Day& day, const Flyer& flyer) {
  return flyer.alt_m - GroundAlt(day, flyer.position);
}

double Sink(double airspeed) {
  return kLeastSink + kSinkGrowth * (airspeed - kTrimSpeed) * (airspeed - kTrimSpeed);
}

// Moves by one second of flight.
void Move(const Day& day, Flyer& flyer, double rise_mps) {
  const Plane through_air = Offset(flyer.heading, flyer.airspeed);
  const Plane drift = Offset(day.wind_from, -day.wind_mps);
  flyer.position.east += through_air.east + drift.east;
  flyer.position.north += through_air.north + drift.north;
  flyer.alt_m += rise_mps;
}

void TurnTowards(Flyer& flyer, double heading, double rate) {
  flyer.heading += std::clamp(TurnBetween(flyer.heading, heading), -rate, rate);
}

void ChangeSpeed(Flyer& flyer, double airspeed) {
  flyer.airspeed += std::clamp(airspeed - flyer.airspeed, -kSpeedChange, kSpeedChange);
}

// The heading that makes good a bearing in the day's wind.
double HeadingFor(const Day& day, const Flyer& flyer, double bearing) {
  const double across = day.wind_mps * std::sin(day.wind_from - bearing);
  return bearing + std::asin(std::clamp(across / std::max(flyer.airspeed, 1.0), -0.9, 0.9));
}

// The altitude from which the launch, at the landing field's side, is reached without another
// climb.
double FinalGlideAlt(const Day& day, const Flyer& flyer) {
  const Plane launch = day.corners[0];
  const double from = day.wind_from - Bearing(flyer.position, launch);
  const double ground_speed = kTrimSpeed + 1.5 - day.wind_mps * std::cos(from);
  const double seconds = Distance(flyer.position, launch) / ground_speed;
  return GroundAlt(day, launch) + kArrivalReserve_m + seconds * 1.5;
}

void EnterThermal(const Day& day, Flyer& flyer) {
  flyer.phase = Phase::kCircling;
  flyer.climb_mps = Uniform(flyer.random, 1.5, 3.5);
  flyer.radius_m = Uniform(flyer.random, 40, 60);
  flyer.turn = Uniform(flyer.random, -1, 1) < 0 ? -1 : 1;
  flyer.leave_alt_m = day.ceiling_alt_m - Uniform(flyer.random, 0, 300);
  if (flyer.leg == 3) {
    flyer.leave_alt_m = std::min(flyer.leave_alt_m, FinalGlideAlt(day, flyer) + kArrivalReserve_m);
  }
  flyer.leave_alt_m = std::max(flyer.leave_alt_m, flyer.alt_m + kArrivalReserve_m);
}

void Glide(const Day& day, Flyer& flyer) {
  const Plane target = day.corners[flyer.leg % 3];
  Wander(flyer.random, flyer.speed_mood, 0.8, 30);
  Wander(flyer.random, flyer.air_mps, 0.5, 15);
  ChangeSpeed(flyer, kTrimSpeed + std::clamp(1.5 + flyer.speed_mood, 0.0, 3.5));
  TurnTowards(flyer, HeadingFor(day, flyer, Bearing(flyer.position, target)), kTurnRate);
  Move(day, flyer, std::clamp(flyer.air_mps, -1.5, 1.5) - Sink(flyer.airspeed));

  flyer.glide_left_m -= flyer.airspeed;
  if (Distance(flyer.position, target) < kCornerReached_m) {
    if (flyer.leg == 3) {
      flyer.phase = Phase::kApproaching;
      return;
    }
    ++flyer.leg;
  }
  const bool home_in_reach = flyer.leg == 3 && flyer.alt_m > FinalGlideAlt(day, flyer);
  const bool worth_it = flyer.alt_m < day.ceiling_alt_m - 400;
  const bool low = HeightAboveGround(day, flyer) < kLowSave_m;
  if (!home_in_reach && (low || (flyer.glide_left_m < 0 && worth_it))) EnterThermal(day, flyer);
}

void Circle(const Day& day, Flyer& flyer) {
  ChangeSpeed(flyer, kTrimSpeed + 0.5);
  const double rate = flyer.airspeed / flyer.radius_m;
  flyer.heading += flyer.turn * rate;
  Wander(flyer.random, flyer.air_mps, 0.4, 4);
  // The core is never quite in the middle of the circle.
  const double uneven = 0.3 * std::sin(flyer.heading);
  Move(day, flyer, flyer.climb_mps + uneven + std::clamp(flyer.air_mps, -0.7, 0.7));

  const double wanted = Bearing(flyer.position, day.corners[flyer.leg % 3]);
  if (flyer.alt_m > flyer.leave_alt_m && std::abs(TurnBetween(flyer.heading, wanted)) < rate) {
    flyer.phase = Phase::kGliding;
    flyer.glide_left_m = Uniform(flyer.random, 1500, 6000);
  }
}

void Approach(const Day& day, Flyer& flyer) {
  const double height = HeightAboveGround(day, flyer);
  const double away = Distance(flyer.position, day.field);
  if (height < kFinalBelow_m) {
    ChangeSpeed(flyer, kTrimSpeed - 0.5);
    TurnTowards(flyer, day.wind_from, kTurnRate);
    Move(day, flyer, -Sink(flyer.airspeed));
  } else if (away > kFieldRadius_m) {
    ChangeSpeed(flyer, kTrimSpeed + 1);
    TurnTowards(flyer, HeadingFor(day, flyer, Bearing(flyer.position, day.field)), kTurnRate);
    Move(day, flyer, -Sink(flyer.airspeed));
  } else {
    const bool spiral = height > kSpiralAbove_m;
    ChangeSpeed(flyer, kTrimSpeed + (spiral ? 4 : 0.5));
    flyer.heading += flyer.turn * flyer.airspeed / (spiral ? 30 : 60);
    Move(day, flyer, spiral ? -kSpiralSink : -Sink(flyer.airspeed));
  }
  if (HeightAboveGround(day, flyer) > 0) return;
  flyer.alt_m = GroundAlt(day, flyer.position);
  flyer.phase = Phase::kLanded;
  flyer.wait_s = static_cast<uint32_t>(Uniform(flyer.random, 30, 90));
}

}  // namespace

double Uniform(Random& random, double low, double high) {
  random.state += 0x9e3779b97f4a7c15;
  uint64_t bits = random.state;
  bits = (bits ^ (bits >> 30)) * 0xbf58476d1ce4e5b9;
  bits = (bits ^ (bits >> 27)) * 0x94d049bb133111eb;
  bits ^= bits >> 31;
  return low + (high - low) * static_cast<double>(bits >> 11) * 0x1p-53;
}

// One step per second of a value that wanders around 0 and forgets where it was after so many
// seconds; it stays within sigma most of the time.
void Wander(Random& random, double& value, double sigma, double memory_s) {
  const double kept = std::exp(-1 / memory_s);
  value = value * kept + Uniform(random, -1, 1) * sigma * std::sqrt(3 * (1 - kept * kept));
}

Day MakeDay(double perimeter_m, double launch_alt_m, Random& random) {
  Day day;
  const double first = Uniform(random, 0.30, 0.36) * perimeter_m;
  const double second = Uniform(random, 0.30, 0.36) * perimeter_m;
  const double third = perimeter_m - first - second;
  const double angle =
      std::acos((first * first + third * third - second * second) / (2 * first * third));
  const double bearing = Uniform(random, -kPi, kPi);
  const double side = Uniform(random, -1, 1) < 0 ? -1 : 1;
  day.corners = {Plane{}, Offset(bearing, first), Offset(bearing + side * angle, third)};
  day.field = Offset(Uniform(random, -kPi, kPi), Uniform(random, 600, 640));
  day.wind_from = Uniform(random, -kPi, kPi);
  day.wind_mps = Uniform(random, 2, 4.5);
  day.hill_m = std::clamp(launch_alt_m * 0.8, 60.0, 250.0);
  day.valley_alt_m = launch_alt_m - day.hill_m;
  day.ceiling_alt_m = launch_alt_m + Uniform(random, 900, 1500);
  return day;
}

Flyer OnTheLaunch(const Day& day, Random random) {
  Flyer flyer;
  flyer.random = random;
  flyer.wait_s = static_cast<uint32_t>(Uniform(flyer.random, 30, 60));
  flyer.alt_m = day.valley_alt_m + day.hill_m;
  flyer.heading = day.wind_from;
  flyer.airspeed = day.wind_mps;
  flyer.glide_left_m = Uniform(flyer.random, 200, 500);
  return flyer;
}

bool Step(const Day& day, Flyer& flyer) {
  switch (flyer.phase) {
    case Phase::kWaiting:
      if (flyer.wait_s-- == 0) flyer.phase = Phase::kGliding;
      break;
    case Phase::kGliding:
      Glide(day, flyer);
      break;
    case Phase::kCircling:
      Circle(day, flyer);
      break;
    case Phase::kApproaching:
      Approach(day, flyer);
      break;
    case Phase::kLanded:
      return flyer.wait_s-- > 0;
  }
  return true;
}

}  // namespace skyhaul::paraglider
