#pragma once

#include "analysis/exact/search.h"

namespace skyhaul {

// Improves best, the result of an open task (2 to 5 points), until no track scores more than
// kTolerance_m above it, or the search has to be given up. Returns an upper bound of the score of
// any track of the task. The track must have at least as many fixes as the task has vertices.
//
// The track is cut into ranges, which are candidates for each vertex. The sum of the bounds of legs
// is convex in every vertex, so that it is greatest when each vertex is a corner of its range, and
// walking over the corners vertex by vertex (dynamic programming) gives for each range the greatest
// sum that passes through it. Ranges and legs that cannot exceed the best result are thrown away,
// the others are halved, down to single fixes.
//
// Straight flights, where every fix on the way does nearly as well as every other, cost no more
// than others: the sum is bounded as a whole and not leg by leg.
double SearchFree(ExactSearch& search, OptimiseTask task, TaskResult& best);

}  // namespace skyhaul
