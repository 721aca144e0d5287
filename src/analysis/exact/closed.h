#pragma once

#include "analysis/exact/closing.h"
#include "analysis/exact/search.h"

namespace skyhaul {

// Both functions improve best, the result of a closed task, until no track scores more than
// kTolerance_m above it, or the search has to be given up. They return an upper bound of the score
// of any track of the task. The table's limit is just above the gap, so that a closing distance of
// exactly the gap is in it.
//
// Branch and bound, best first (A. H. Land and A. G. Doig, 1960), over ranges of the track for each
// turnpoint. Legs are convex in every turnpoint and so greatest at corners of the ranges; the
// closing distance is bounded by the nearest start and finish that the ranges leave room for. Start
// and finish are searched only when each range is a single fix. Tracks whose closing distance
// cannot be computed (nearly antipodal start and finish) are passed over.

// Start and turn are searched; the finish is the fix after the turn that is nearest to the start.
double SearchReturn(ExactSearch& search, ClosingTable& table, TaskResult& best);

// Three turnpoints are searched, for the flat or the FAI triangle.
double SearchTriangle(ExactSearch& search, ClosingTable& table, OptimiseTask task,
                      TaskResult& best);

}  // namespace skyhaul
