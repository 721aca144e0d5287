#include "tests/analysis/track_shapes.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <random>

#include "core/units.h"

namespace skyhaul {

namespace {

using Place = std::complex<double>;  // east and north in shares of the size

struct Random {
  std::mt19937 bits;
  double Unit() { return static_cast<double>(bits()) / 2147483648.0 - 1; }
};

Place OnTriangle(double part) {
  const Place corners[] = {{0, 0}, {1.6, 0.3}, {0.5, 1.5}, {0, 0}};
  const double along = 3 * part;
  const int side = std::min(2, static_cast<int>(along));
  const Place circling = std::polar(0.01, along * 400);
  return corners[side] + (corners[side + 1] - corners[side]) * (along - side) + circling;
}

std::vector<Place> Walk(size_t count, bool home, Random& random) {
  std::vector<Place> places;
  Place place = 0;
  double heading = 0;
  for (size_t i = 0; i < count; ++i) {
    places.push_back(place);
    heading += 0.4 * random.Unit();
    place += std::polar(8.0 / static_cast<double>(count), heading);
  }
  for (size_t i = 0; home && i < count; ++i) {
    places[i] -= place * (static_cast<double>(i) / static_cast<double>(count));
  }
  return places;
}

Place At(TrackShape shape, double part, Random& random) {
  const double turn = 2 * kPi * part;
  switch (shape) {
    case TrackShape::kTriangle:
      return OnTriangle(part);
    case TrackShape::kCircles:
      return std::polar(1.0, 37.3 * turn);
    case TrackShape::kOutAndReturn:
      return {1 - std::abs(2 * part - 1), 0.001 * random.Unit()};
    case TrackShape::kRidge:
      return {std::cos(19.7 * turn), 0.03 * random.Unit()};
    case TrackShape::kSpiral:
      return std::polar(part, 9.2 * turn);
    case TrackShape::kScattered:
      return {random.Unit(), random.Unit()};
    case TrackShape::kLine:
      return {part, 2 * part};
    case TrackShape::kFewPlaces:
      return std::polar(1.0, 2 * kPi / 5 * std::floor(2.5 * (random.Unit() + 1)));
    default:
      return 0;
  }
}

std::vector<Place> PlacesOf(const ShapePlan& plan) {
  Random random = {std::mt19937(plan.seed)};
  const bool home = plan.shape == TrackShape::kBackToStart;
  if (home || plan.shape == TrackShape::kRandomWalk) return Walk(plan.points, home, random);
  const auto count = static_cast<double>(plan.points);
  std::vector<Place> places;
  for (size_t i = 0; i < plan.points; ++i) {
    places.push_back(At(plan.shape, static_cast<double>(i) / count, random));
  }
  return places;
}

}  // namespace

std::vector<TrackPoint> MakeTrack(const ShapePlan& plan) {
  constexpr double kRadius_m = 6371000;
  const TrackRegion& region = plan.region;
  const double degrees = region.size_m / kRadius_m * kDegreesPerRadian;
  std::vector<TrackPoint> points;
  for (const Place& place : PlacesOf(plan)) {
    const double east_deg = place.real() * degrees / std::cos(region.lat_deg / kDegreesPerRadian);
    points.push_back({.time = static_cast<uint32_t>(points.size()),
                      .lat = DegreesToSemicircles(
                          std::clamp(region.lat_deg + place.imag() * degrees, -90., 90.)),
                      .lon = DegreesToSemicircles(std::remainder(region.lon_deg + east_deg, 360))});
  }
  return points;
}

}  // namespace skyhaul
