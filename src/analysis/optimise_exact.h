#pragma once

#include <cstdint>
#include <span>

#include "analysis/optimise.h"
#include "core/operation.h"
#include "core/track_point.h"

namespace skyhaul {

// Finds the best of each task on every fix of the track, by branch and bound over ranges of fixes,
// beginning with the results of OptimiseTrack. The vertices of a task are different fixes, each
// after the one before. Nothing is promised where fixes lie on nearly opposite sides of the earth,
// because geodesic distances cannot be computed there.
//
// Each task says whether its score is proved. If it is optimal, no track of the task scores more
// than 1 m above it; if not, none scores more than bound_m. A task without a result has bound_m
// too. Tasks are left unproved when the operation (it may be null) is aborted or the budget of time
// in milliseconds (0: none) is used up; result.stopped says so. The budget does not cover the
// coarse results and is shared out evenly to the tasks that are left. An abort during the coarse
// results leaves bounds only.
//
// The operation's shell gets the status texts of OptimiseTrack, and then a progress text with a
// percentage at the beginning of each task and every two seconds.
//
// Most flights of 30 000 fixes take some 10 to 20 ms more than OptimiseTrack. A quarter of a second
// is needed where very many tracks score alike: when the same strip is flown again and again, or on
// straight flights, where the best closed course is a small one that could lie anywhere. Made-up
// tracks without any irregularity (a line, laps on one circle) can take minutes: give them a
// budget. Memory is linear in the number of fixes.
//
// Returns 0, or -1 when the track has more than 2^26 fixes; then result is not valid.
int OptimiseTrackExact(std::span<const TrackPoint> points, const OptimiseSettings& settings,
                       uint32_t budget_ms, OptimiseResult& result, const Operation* operation);

}  // namespace skyhaul
