#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "core/track_point.h"

namespace skyhaul {

inline constexpr size_t kMaxReduced = 2000;

// The points that the coarse search works on: where each comes from, and its place on the plane of
// analysis/projection.h.
struct ReducedTrack {
  std::vector<uint32_t> indices;  // into the track, ascending
  std::vector<double> x_m;
  std::vector<double> y_m;
};

// Up to kMaxReduced points are all kept; of more, kMaxReduced spread evenly over the track by their
// number, the first and the last among them.
ReducedTrack ReduceTrack(std::span<const TrackPoint> points);

}  // namespace skyhaul
