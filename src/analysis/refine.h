#pragma once

#include <cstdint>
#include <span>

#include "analysis/coarse_vertices.h"
#include "analysis/optimise.h"
#include "core/track_point.h"

namespace skyhaul {

// Moves each vertex of a coarse result by up to 2 points of the track (coarse.points are indices
// into the track here), for the greatest score in geodesic distances; of equal scores the later
// combination counts, the first vertex changing last. Vertices ascend strictly. A distance that
// cannot be computed counts as 0.
//
// Only combinations that keep the rules of the task count (analysis/task_rules.h), for an
// out-and-return only those with a positive score. When there are none the result has no vertices;
// an out-and-return then stays where it was, whatever that scores.
TaskResult RefineTask(std::span<const TrackPoint> points, OptimiseTask task,
                      const CoarseVertices& coarse, const OptimiseSettings& settings);

}  // namespace skyhaul
