#pragma once

#include <span>

#include "analysis/optimise.h"

namespace skyhaul {

// What OptimiseTrack is held against: the same definitions written down as plain loops over every
// combination, with nothing left out and nothing clever. Only the projection and the geodesic are
// the program's own; they have tests of their own. Closed tasks of 2000 points take seconds.
OptimiseResult ReferenceOptimise(std::span<const TrackPoint> points,
                                 const OptimiseSettings& settings);

}  // namespace skyhaul
