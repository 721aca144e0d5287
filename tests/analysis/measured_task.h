#pragma once

#include <span>

#include "analysis/optimise.h"
#include "core/track_point.h"

namespace skyhaul {

// Written down once more, without the program's tables: how a task is measured and what it allows.
// Only the geodesic is the program's own; it has tests of its own.

double Way_m(const TrackPoint& from, const TrackPoint& to);

// Legs, distance, closing and score of a task at these fixes.
TaskResult MeasuredTask(std::span<const TrackPoint> points, OptimiseTask task,
                        std::span<const uint32_t> at);

bool IsAllowed(OptimiseTask task, const OptimiseSettings& settings, const TaskResult& result);

}  // namespace skyhaul
