#pragma once

#include "analysis/coarse_vertices.h"
#include "analysis/distance_table.h"

namespace skyhaul {

// The greatest distance over 2 to 5 reduced points, legs added up in whole metres. Of equal sums
// the one with the later point counts: the first point (2 points), the middle point (3 points), the
// first and then the second turnpoint (4 points), the middle turnpoint and then those beside it (5
// points). The points before the first and after the last turnpoint are the farthest of the table.
//
// With fai_rule, each leg between two turnpoints is at least 10 000 m.
CoarseVertices Farthest2Points(const DistanceTable& table);
CoarseVertices Farthest3Points(const DistanceTable& table);
CoarseVertices Farthest4Points(const DistanceTable& table, bool fai_rule);
CoarseVertices Farthest5Points(const DistanceTable& table, bool fai_rule);

}  // namespace skyhaul
