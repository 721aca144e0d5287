#pragma once

#include <cstdint>

#include "analysis/coarse_vertices.h"
#include "analysis/distance_table.h"

namespace skyhaul {

// The coarse out-and-return: start, turn and finish a < b < c with d(a, c) below gap_m and the
// greatest 2 d(a, b) - d(a, c), if that is not negative. Of equal ones the first in the order of a,
// b, c counts.
CoarseVertices BestOutAndReturn(const DistanceTable& table, int32_t gap_m);

// Longer than the perimeter of any triangle on the plane of analysis/projection.h, so that a
// triangle with this closing distance has a negative score and is no result.
inline constexpr int32_t kNoClosing_m = 100'000'000;

// Replaces the lower half of the table by the least closing distances: row t3, column t1 < t3 holds
// the least d(s, f) of any start s up to t1 and finish f from t3 on, or kNoClosing_m when that is
// not below gap_m. The upper half stays; nothing but the triangles needs the lower one any more.
void TabulateClosing(DistanceTable& table, int32_t gap_m);

struct ClosingPair {
  uint32_t start = 0;
  uint32_t finish = 0;
};

// The pair that a tabulated closing distance belongs to. Of several that close equally the one with
// the first start counts, and for that start the last finish.
ClosingPair FindClosing(const ReducedTrack& track, uint32_t t1, uint32_t t3, int32_t closing_m);

}  // namespace skyhaul
