#pragma once

#include "analysis/exact/closing.h"
#include "analysis/exact/search.h"

namespace skyhaul {

// Improve best, the result of a closed task, until no track scores more than kTolerance_m above it,
// or the search has to be given up. Return a bound: no track of the task scores more. The table is
// for limits just above the gap, so that a closing distance of exactly the gap is in it.
//
// Best first over ranges of the track for each turnpoint. The legs between them are convex in every
// turnpoint and so greatest at corners of the ranges; the closing distance is bounded by the
// nearest start and finish that the ranges leave room for. Only single turnpoints have their start
// and finish searched for. Ways whose closing distance cannot be computed (nearly antipodal start
// and finish) are passed over.

// A start and a turn are searched; the finish is the fix after the turn nearest to the start.
double SearchReturn(ExactSearch& search, ClosingTable& table, TaskResult& best);

// Three turnpoints are searched, for the flat or the FAI triangle.
double SearchTriangle(ExactSearch& search, ClosingTable& table, OptimiseTask task,
                      TaskResult& best);

}  // namespace skyhaul
