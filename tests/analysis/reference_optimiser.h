#pragma once

#include <span>

#include "analysis/optimise.h"

namespace skyhaul {

// What the searches are held against, written down once more as plain loops, with nothing left out
// and nothing clever. Only the projection, the geodesic and the rules of the tasks are the
// program's own; they have tests of their own.

double Way_m(const TrackPoint& from, const TrackPoint& to);

// Legs, distance, closing and score of a task at these fixes.
TaskResult MeasuredTask(std::span<const TrackPoint> points, OptimiseTask task,
                        std::span<const uint32_t> at);

// OptimiseTrack over every combination. Closed tasks of 2000 points take seconds.
OptimiseResult ReferenceOptimise(std::span<const TrackPoint> points,
                                 const OptimiseSettings& settings);

}  // namespace skyhaul
