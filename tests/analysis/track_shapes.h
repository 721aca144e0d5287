#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "core/track_point.h"

namespace skyhaul {

enum class TrackShape {
  kTriangle,      // closed, flown once, with circling on the way
  kCircles,       // one circle over and over
  kOutAndReturn,  // along one line and back
  kRidge,         // the same narrow strip up and down many times
  kSpiral,        // outwards
  kRandomWalk,
  kScattered,   // anywhere within the size
  kLine,        // straight, away
  kOnePlace,    // all points equal
  kFewPlaces,   // each point is one of five
  kBackToStart  // a random walk that comes home
};
inline constexpr size_t kTrackShapes = 11;

struct TrackRegion {
  double lat_deg = 46.5;
  double lon_deg = 8;
  double size_m = 50000;  // about its radius
};

struct ShapePlan {
  TrackShape shape = TrackShape::kTriangle;
  size_t points = 0;
  uint32_t seed = 1;
  TrackRegion region = {};
};

// The same plan always gives the same track. Places are rounded to whole semicircles, a few
// millimetres, so that ties are rare except where the shape repeats places.
std::vector<TrackPoint> MakeTrack(const ShapePlan& plan);

}  // namespace skyhaul
