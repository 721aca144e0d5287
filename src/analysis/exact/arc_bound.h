#pragma once

#include <algorithm>
#include <cmath>
#include <span>

#include "analysis/exact/place.h"
#include "core/track_point.h"

namespace skyhaul {

// Upper bound of the ground distance of two positions, given their chord. A geodesic never bends
// more than a circle with the smallest radius R of curvature that the ellipsoid has along it, so
// that it is at most as long as that circle's arc over the same chord (H. A. Schwarz's theorem on
// arcs of bounded curvature): 2 R asin(c / 2 R) = c + c^3 / 24 R^2 + ... The geodesic is never
// shorter than the chord.
//
// R is at least the meridian's radius M at the latitude of the track that is nearest to the
// equator, as the shortest way bends towards the pole. With that for R the bound exceeds the
// geodesic by at most 1.4 % of arc less chord: 1 cm over 100 km, 1.8 m over 500 km to the east. A
// way in direction a has 1 / R <= cos^2 a / M + sin^2 a / N, N being the radius across the
// meridian, and on a track that reaches no farther than H to the north a long way has |cos a| <= (H
// + s^2 tan(lat) / N) / s, as the direction turns by tan(lat) / N at most. The cubic term is then
// at most that of N and a stretch of the chord by (1 / M^2 - 1 / N^2) (H + ...)^2 / 24, which is
// better for wide tracks.
//
// Every form below is convex and rises with the chord. Without that the bound of a range would not
// be reached at its corners, and the searches would be wrong.
struct ArcBound {
  enum class Form { kSeries, kArcSine, kWide } form = Form::kSeries;
  double radius_m = 0;          // M
  double inverse_diameter = 0;  // 1 / 2 M
  double stretch = 1;           // factor of the chord
  double cubic = 0;             // factor of the chord's cube, 1/m^2
};

// Chords may be up to 12 000 km when the form is not kWide.
inline double UpperArc_m(const ArcBound& bound, double chord_m) {
  // No way on the ellipsoid is longer than 1.58 times its chord.
  if (bound.form == ArcBound::Form::kWide) return 1.6 * chord_m;
  const double x = chord_m * bound.inverse_diameter;
  if (bound.form == ArcBound::Form::kSeries) {
    // The last coefficient covers all further terms of the arc sine up to x = 0.25.
    const double x_sq = x * x;
    return chord_m * (bound.stretch + chord_m * chord_m * bound.cubic +
                      x_sq * x_sq * (3.0 / 40 + x_sq * 0.05));
  }
  // Corners of boxes can lie farther apart than any fixes; a tangent keeps the bound convex there.
  constexpr double kLast = 0.95;
  const double excess = std::max(x - kLast, 0.0);
  return 2 * bound.radius_m *
         (std::asin(std::min(x, kLast)) + excess / std::sqrt(1 - kLast * kLast));
}

// The bound for all pairs of fixes of a track; places are those of its fixes.
ArcBound ArcBoundOf(std::span<const TrackPoint> points, std::span<const Place> places);

}  // namespace skyhaul
