#include "analysis/exact/arc_bound.h"

#include "core/geodesy/ellipsoid.h"
#include "core/units.h"

namespace skyhaul {

namespace {

// The series holds for chords of up to 3.1e6 m, the arc sine up to the diameter of 12.7e6 m.
// Corners of boxes may lie farther apart than any two fixes, so that both limits keep a distance.
constexpr double kSeriesExtent_m = 2e6;
constexpr double kArcSineExtent_m = 12e6;

// Takes the better of the two bounds of the cubic term for the longest chords of the track.
void BoundCubic(const Extent& lat, double extent_m, double across_m, ArcBound& bound) {
  const double meridian_m = bound.radius_m;
  bound.cubic = 1 / (24 * meridian_m * meridian_m);
  // The way may bow towards the pole, but no point of it is farther than half its length from an
  // end.
  const double top_rad =
      std::max(std::abs(lat.least), std::abs(lat.most)) + extent_m / (2 * meridian_m);
  constexpr double kLastTop_rad = 1.4;  // 80 degrees; nearer to a pole directions turn too fast
  if (top_rad > kLastTop_rad) return;
  // N is at most 6.4e6 m; a geodesic is at most 0.5 % longer than a chord of kSeriesExtent_m.
  constexpr double kGreatestRadius_m = 6.4e6;
  const double way_m = 1.01 * extent_m;
  const double north_m =
      kGreatestRadius_m * (lat.most - lat.least) + way_m * way_m * std::tan(top_rad) / across_m;
  const double difference = 1 / (meridian_m * meridian_m) - 1 / (across_m * across_m);
  const double stretch = difference * north_m * north_m / 24;
  // At the longest chord the stretch must cost less than the smaller cubic term saves.
  if (stretch >= difference * extent_m * extent_m / 24) return;
  bound.stretch = 1 + stretch;
  bound.cubic = 1 / (24 * across_m * across_m);
}

}  // namespace

ArcBound ArcBoundOf(std::span<const TrackPoint> points, std::span<const Place> places) {
  Extent lat;
  for (const TrackPoint& point : points) Include(lat, SemicirclesToRadians(point.lat));
  Extent x;
  Extent y;
  Extent z;
  for (const Place& place : places) {
    Include(x, place.x_m);
    Include(y, place.y_m);
    Include(z, place.z_m);
  }
  const double extent_m = 2 * std::hypot(Half(x), Half(y), Half(z));
  // M and N grow with the latitude: the fix nearest to the equator has the least of both.
  const bool across_equator = lat.least < 0 && lat.most > 0;
  const double nearest_rad = across_equator ? 0 : std::min(std::abs(lat.least), std::abs(lat.most));
  const double sin_lat = std::sin(nearest_rad);
  const double w_sq = 1 - kEccentricitySquared * sin_lat * sin_lat;
  constexpr double kRoundedDown = 1 - 1e-9;  // a radius too small keeps the bound an upper one
  const double across_m = kRoundedDown * kSemiMajorAxis_m / std::sqrt(w_sq);
  ArcBound bound;
  bound.radius_m = across_m * (1 - kEccentricitySquared) / w_sq;
  bound.inverse_diameter = 1 / (2 * bound.radius_m);
  if (extent_m > kSeriesExtent_m) bound.form = ArcBound::Form::kArcSine;
  if (extent_m > kArcSineExtent_m) bound.form = ArcBound::Form::kWide;
  BoundCubic(lat, extent_m, across_m, bound);
  return bound;
}

}  // namespace skyhaul
