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
// East first: a bearing counts from north, clockwise.
double Bearing(Plane a, Plane b) {
  return std::atan2(b.east - a.east, b.north - a.north);
}
Plane Offset(double bearing, double metres) {
  return {.east = std::sin(bearing) * metres, .north = std::cos(bearing) * metres};
}
double TurnBetween(double from, double to) {
  // The shorter way round, to the right positive.
  return std::remainder(to - from, 2 * kPi);
}

double GroundAlt(const Day& day, Plane position) {
  // The slope goes down evenly from the launch on all sides; farther out the valley is flat.
  const double slope_left = std::max(1 - Distance({}, position) / kSlope_m, 0.0);
  return day.valley_alt_m + day.hill_m * slope_left;
}

double HeightAboveGround(const Day& day, const Flyer& flyer) {
  return flyer.alt_m - GroundAlt(day, flyer.position);
}

double Sink(double airspeed) {
  // A parabola is near enough to a paraglider's polar between trim and full speed.
  return kLeastSink + kSinkGrowth * (airspeed - kTrimSpeed) * (airspeed - kTrimSpeed);
}

// Moves by one second of flight.
void Move(const Day& day, Flyer& flyer, double rise_mps) {
  const Plane through_air = Offset(flyer.heading, flyer.airspeed);
  // The wind is named by where it comes from, so the air moves the other way.
  const Plane drift = Offset(day.wind_from, -day.wind_mps);
  flyer.position.east += through_air.east + drift.east;
  flyer.position.north += through_air.north + drift.north;
  flyer.alt_m += rise_mps;
}

void TurnTowards(Flyer& flyer, double heading, double rate) {
  // A wing needs time to bank, so that tracks have round corners.
  flyer.heading += std::clamp(TurnBetween(flyer.heading, heading), -rate, rate);
}

void ChangeSpeed(Flyer& flyer, double airspeed) {
  flyer.airspeed += std::clamp(airspeed - flyer.airspeed, -kSpeedChange, kSpeedChange);
}

// The heading that makes good a bearing in the day's wind.
double HeadingFor(const Day& day, const Flyer& flyer, double bearing) {
  // The wind triangle. At 0.9 the wind is nearly as fast as the wing, and no heading makes the
  // bearing good.
  const double across = day.wind_mps * std::sin(day.wind_from - bearing);
  return bearing + std::asin(std::clamp(across / std::max(flyer.airspeed, 1.0), -0.9, 0.9));
}

// The altitude from which the launch, at the landing field's side, is reached without another
// climb.
double FinalGlideAlt(const Day& day, const Flyer& flyer) {
  const Plane launch = day.corners[0];
  const double from = day.wind_from - Bearing(flyer.position, launch);
  // A usual speed on a glide rather than the present one, so that the answer does not waver with
  // it.
  const double ground_speed = kTrimSpeed + 1.5 - day.wind_mps * std::cos(from);
  const double seconds = Distance(flyer.position, launch) / ground_speed;
  // 1.5 m/s is the sink at that speed, with some sinking air.
  return GroundAlt(day, launch) + kArrivalReserve_m + seconds * 1.5;
}

void EnterThermal(const Day& day, Flyer& flyer) {
  flyer.phase = Phase::kCircling;
  flyer.climb_mps = Uniform(flyer.random, 1.5, 3.5);
  flyer.radius_m = Uniform(flyer.random, 40, 60);
  flyer.turn = Uniform(flyer.random, -1, 1) < 0 ? -1 : 1;
  // Nobody climbs to the very base of the clouds each time.
  flyer.leave_alt_m = day.ceiling_alt_m - Uniform(flyer.random, 0, 300);
  if (flyer.leg == 3) {
    // On the way home nothing is gained by climbing above the final glide.
    flyer.leave_alt_m = std::min(flyer.leave_alt_m, FinalGlideAlt(day, flyer) + kArrivalReserve_m);
  }
  // A thermal that would be left at once is worth no turn.
  flyer.leave_alt_m = std::max(flyer.leave_alt_m, flyer.alt_m + kArrivalReserve_m);
}

void Glide(const Day& day, Flyer& flyer) {
  // Leg 3 leads to corner 0, the launch.
  const Plane target = day.corners[flyer.leg % 3];
  // Speed follows the pilot's mood over half a minute, the air's rise changes twice as fast.
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
  // Near the ceiling there is nothing left to climb.
  const bool worth_it = flyer.alt_m < day.ceiling_alt_m - 400;
  const bool low = HeightAboveGround(day, flyer) < kLowSave_m;
  if (!home_in_reach && (low || (flyer.glide_left_m < 0 && worth_it))) EnterThermal(day, flyer);
}

void Circle(const Day& day, Flyer& flyer) {
  ChangeSpeed(flyer, kTrimSpeed + 0.5);
  // Radians a second on a circle are its speed over its radius.
  const double rate = flyer.airspeed / flyer.radius_m;
  flyer.heading += flyer.turn * rate;
  Wander(flyer.random, flyer.air_mps, 0.4, 4);
  // The core is never quite in the middle of the circle.
  const double uneven = 0.3 * std::sin(flyer.heading);
  Move(day, flyer, flyer.climb_mps + uneven + std::clamp(flyer.air_mps, -0.7, 0.7));

  const double wanted = Bearing(flyer.position, day.corners[flyer.leg % 3]);
  // Leaves only when the nose points the right way, within one second of turning.
  if (flyer.alt_m > flyer.leave_alt_m && std::abs(TurnBetween(flyer.heading, wanted)) < rate) {
    flyer.phase = Phase::kGliding;
    flyer.glide_left_m = Uniform(flyer.random, 1500, 6000);
  }
}

void Approach(const Day& day, Flyer& flyer) {
  const double height = HeightAboveGround(day, flyer);
  const double away = Distance(flyer.position, day.field);
  // Low above the ground into the wind and straight, wherever the field is.
  if (height < kFinalBelow_m) {
    ChangeSpeed(flyer, kTrimSpeed - 0.5);
    TurnTowards(flyer, day.wind_from, kTurnRate);
    Move(day, flyer, -Sink(flyer.airspeed));
  } else if (away > kFieldRadius_m) {
    ChangeSpeed(flyer, kTrimSpeed + 1);
    TurnTowards(flyer, HeadingFor(day, flyer, Bearing(flyer.position, day.field)), kTurnRate);
    Move(day, flyer, -Sink(flyer.airspeed));
  } else {
    // Too high over the field: a tight spiral sinks nearly five times as fast as circling.
    const bool spiral = height > kSpiralAbove_m;
    ChangeSpeed(flyer, kTrimSpeed + (spiral ? 4 : 0.5));
    flyer.heading += flyer.turn * flyer.airspeed / (spiral ? 30 : 60);
    Move(day, flyer, spiral ? -kSpiralSink : -Sink(flyer.airspeed));
  }
  if (HeightAboveGround(day, flyer) > 0) return;
  // The step has ended below the ground, by up to one second's sink.
  flyer.alt_m = GroundAlt(day, flyer.position);
  flyer.phase = Phase::kLanded;
  flyer.wait_s = static_cast<uint32_t>(Uniform(flyer.random, 30, 90));
}

}  // namespace

double Uniform(Random& random, double low, double high) {
  // The golden ratio as a fraction of 2^64: it visits every state.
  random.state += 0x9e3779b97f4a7c15;
  uint64_t bits = random.state;
  bits = (bits ^ (bits >> 30)) * 0xbf58476d1ce4e5b9;
  bits = (bits ^ (bits >> 27)) * 0x94d049bb133111eb;
  bits ^= bits >> 31;
  // 53 bits are what a double's fraction holds, so that every value below 1 is exact.
  return low + (high - low) * static_cast<double>(bits >> 11) * 0x1p-53;
}

// One step per second of a value that wanders around 0 and forgets where it was after so many
// seconds; it stays within sigma most of the time.
void Wander(Random& random, double& value, double sigma, double memory_s) {
  // sqrt(3) because evenly spread values of -1 to 1 have the variance 1/3. The rest keeps the
  // spread at sigma in the long run.
  const double kept = std::exp(-1 / memory_s);
  value = value * kept + Uniform(random, -1, 1) * sigma * std::sqrt(3 * (1 - kept * kept));
}

Day MakeDay(double perimeter_m, double launch_alt_m, Random& random) {
  Day day;
  const double first = Uniform(random, 0.30, 0.36) * perimeter_m;
  const double second = Uniform(random, 0.30, 0.36) * perimeter_m;
  const double third = perimeter_m - first - second;
  // The law of cosines; with sides of 28 to 40 % there is always a triangle.
  const double angle =
      std::acos((first * first + third * third - second * second) / (2 * first * third));
  const double bearing = Uniform(random, -kPi, kPi);
  const double side = Uniform(random, -1, 1) < 0 ? -1 : 1;
  day.corners = {Plane{}, Offset(bearing, first), Offset(bearing + side * angle, third)};
  // Beyond the slope, which ends at 400 m, so that the field is level.
  day.field = Offset(Uniform(random, -kPi, kPi), Uniform(random, 600, 640));
  day.wind_from = Uniform(random, -kPi, kPi);
  day.wind_mps = Uniform(random, 2, 4.5);
  // A low launch has a low hill: the valley should not lie below the sea.
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
  // The wing stands over the launch: it flies as fast as the wind blows and goes nowhere.
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
      // Instruments record for some time after the landing before they close the flight.
      return flyer.wait_s-- > 0;
  }
  return true;
}

}  // namespace skyhaul::paraglider
