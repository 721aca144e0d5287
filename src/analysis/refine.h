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
// The rules of the task are those of geodesics: closing at most the gap (out-and-return) or below
// it (triangles), no leg below 28 % of the perimeter (FAI triangle), kFaiRuleLeg_m between the
// turnpoints of 4 and 5 points with the FAI rule. A closed task whose score is negative is no
// result. When no combination keeps the rules the result has no vertices; only an out-and-return
// then stays where it was, as it does when no combination has a positive score.
TaskResult RefineTask(std::span<const TrackPoint> points, OptimiseTask task,
                      const CoarseVertices& coarse, const OptimiseSettings& settings);

}  // namespace skyhaul
