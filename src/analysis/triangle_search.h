#pragma once

#include <cstddef>
#include <cstdint>

#include "analysis/coarse_vertices.h"
#include "analysis/distance_table.h"
#include "core/operation.h"

namespace skyhaul {

// Coarse results: start, three turnpoints, finish. A start may be the first turnpoint, a finish the
// third.
struct CoarseTriangles {
  CoarseVertices flat;
  CoarseVertices fai;
};

// Finds turnpoints t1 < t2 < t3, with a start at or before t1 and a finish at or after t3 that are
// nearer to each other than gap_m, for the greatest perimeter less closing distance; for the FAI
// triangle 28 % of the perimeter, rounded down, exceed no leg. Of equal triangles the first in the
// order of t1, t3, t2 counts, and for it the start and finish of FindClosing.
//
// The table is used up: its lower half holds closing distances afterwards, and its upper half may
// be in another order.
//
// The order in which triangles are looked at does not matter to the result: one that equals the
// best replaces it when it comes first in that order. So whole blocks of turnpoints are passed over
// when a bound says that none of theirs is better, or equal and first.
//
// operation may be null. Returns 0, or -1 when it was aborted.
int SearchTriangles(const ReducedTrack& track, int32_t gap_m, DistanceTable& table,
                    CoarseTriangles& triangles, const Operation* operation);

// The most bytes that the search holds besides the table.
size_t TriangleSearchBytes(const DistanceTable& table);

}  // namespace skyhaul
