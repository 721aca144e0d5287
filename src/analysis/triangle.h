#pragma once

#include <cstdint>

#include "analysis/point_blocks.h"
#include "analysis/vector_clones.h"

namespace skyhaul {

// What the parts of the search for triangles share. t1, t2, t3 are the turnpoints, as reduced
// points; d12, d23, d13 the legs between them in whole metres.

inline constexpr int32_t kImpossible_m = -2;  // below the score of no triangle

struct Triangle {
  int32_t score_m = -1;  // no triangle
  int32_t t1 = kNoPoint;
  int32_t t2 = kNoPoint;
  int32_t t3 = kNoPoint;
};

// The best so far of each kind.
struct BestTriangles {
  Triangle flat;
  Triangle fai;
};

// The order of equals: t1 first, then t3, then t2.
inline bool ComesBefore(int32_t t1, int32_t t3, int32_t t2, const Triangle& other) {
  if (t1 != other.t1) return t1 < other.t1;
  if (t3 != other.t3) return t3 < other.t3;
  return t2 < other.t2;
}

// Whether a triangle with this score could replace the best. Of a whole range of triangles: score_m
// is an upper bound, and the turnpoints are the first of the range, so that an equal triangle that
// comes first in the order is not passed over.
SKYHAUL_ALWAYS_INLINE bool CouldReplace(const Triangle& best, int32_t score_m, int32_t t1,
                                        int32_t t3, int32_t t2) {
  return score_m > best.score_m || (score_m == best.score_m && ComesBefore(t1, t3, t2, best));
}

inline void Offer(Triangle& best, const Triangle& triangle) {
  if (CouldReplace(best, triangle.score_m, triangle.t1, triangle.t3, triangle.t2)) best = triangle;
}

// The FAI rule in whole metres: 28 % of the perimeter, rounded down, exceed no leg. (p * 7) / 25 <=
// leg is 7 p <= 25 leg + 24, which vector code can do without a division. Perimeters stay below
// 200 000 km, so that the product fits into 32 bits.
//
// Given a lower bound of the perimeter and an upper bound of the shortest leg it is false only when
// no triangle within these bounds keeps the rule.
SKYHAUL_ALWAYS_INLINE bool FaiAllows(int32_t perimeter_m, int32_t shortest_m) {
  return 7 * perimeter_m <= 25 * shortest_m + 24;
}

}  // namespace skyhaul
