#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace skyhaul::paraglider {

// A paraglider's flight as plain physics, a second at a time. What instruments make of it is
// flight_generator's business.

// Splitmix64 (Steele, Lea and Flood, 2014): the standard library's distributions give different
// numbers in different libraries.
struct Random {
  uint64_t state = 0;
};

// Evenly spread over low..high.
double Uniform(Random& random, double low, double high);

// One step per second of a value that wanders around 0 and forgets where it was after so many
// seconds. It spreads by sigma and stays within a few of it.
void Wander(Random& random, double& value, double sigma, double memory_s);

struct Plane {  // metres from the launch
  double east = 0;
  double north = 0;
};

// What stays the same for a whole flight.
struct Day {
  std::array<Plane, 3> corners;
  Plane field;
  double wind_from = 0;  // radians
  double wind_mps = 0;
  double hill_m = 0;  // the launch above the valley
  double valley_alt_m = 0;
  double ceiling_alt_m = 0;
};

enum class Phase { kWaiting, kGliding, kCircling, kApproaching, kLanded };

struct Flyer {
  Random random;
  Phase phase = Phase::kWaiting;
  uint32_t wait_s = 0;  // left to stand on the ground
  Plane position;
  double alt_m = 0;  // above mean sea level
  double heading = 0;
  double airspeed = 0;
  double speed_mood = 0;
  double air_mps = 0;  // the air's own rise outside thermals
  size_t leg = 1;      // the corner flown to; 3 is the way home
  double glide_left_m = 0;
  // The thermal being climbed in.
  double climb_mps = 0;
  double radius_m = 50;
  double turn = 1;  // to the right or, -1, to the left
  double leave_alt_m = 0;
};

// A day for a flight around a triangle with sides of 28 to 40 % of its perimeter, the launch being
// its first corner.
Day MakeDay(double perimeter_m, double launch_alt_m, Random& random);

// The pilot on the launch, facing the wind.
Flyer OnTheLaunch(const Day& day, Random random);

// One second of the flight. Returns false when it is over: some time after the landing.
bool Step(const Day& day, Flyer& flyer);

}  // namespace skyhaul::paraglider
