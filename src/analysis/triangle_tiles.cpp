#include "analysis/triangle_tiles.h"

#include <algorithm>
#include <array>

#include "analysis/closed_tasks.h"
#include "analysis/vector_clones.h"

// i, j, k are the blocks of t1, t2, t3. most and least are bounds of a leg over a block.

namespace skyhaul {

namespace {

constexpr uint32_t kB = kBlockPoints;  // short, as it stands in every index

void LoadClosing(const TriangleCourse& course, uint32_t i, uint32_t k, Tile& tile) {
  const DistanceTable& table = *course.table;
  for (uint32_t r = 0; r < kB; ++r) {
    const int32_t t1 = course.blocks.order[i * kB + r];
    for (uint32_t c = 0; c < kB; ++c) {
      const int32_t t3 = course.blocks.order[k * kB + c];
      // A second turnpoint needs room between them. A padded t1 is after every t3.
      const bool apart = t3 != kNoPoint && t1 < t3 - 1;
      tile.leg_m[r][c] = apart ? RowOf(table, static_cast<uint32_t>(t3))[t1] : kNoClosing_m;
    }
  }
}

// The sum of the two legs to t2, or -1 when t2 is not between or breaks the FAI rule.
template <bool kFai>
SKYHAUL_ALWAYS_INLINE int32_t LegsTo(int32_t d12, int32_t d23, int32_t d13, bool between) {
  const int32_t sum = d12 + d23;
  if constexpr (!kFai) return between ? sum : -1;
  const bool allowed = FaiAllows(sum + d13, std::min(std::min(d12, d23), d13));
  return (between & allowed) ? sum : -1;
}

// One t1 and one t3 with the block of t2.
struct Pair {
  const int32_t* d12 = nullptr;  // to each t2 of the block
  const int32_t* d23 = nullptr;
  const int32_t* t2 = nullptr;
  int32_t d13 = 0;
  int32_t closing_m = 0;
  int32_t t1 = 0;
  int32_t t3 = 0;
};

// Offers the best triangle of one t1 and one t3. All 16 sums are computed before one is looked at:
// vector code does them in the time of two.
template <bool kFai>
SKYHAUL_ALWAYS_INLINE void SearchPair(const Pair& pair, Triangle& best) {
  std::array<int32_t, kB> sums = {};
  int32_t greatest = -1;
  for (uint32_t n = 0; n < kB; ++n) {
    // Both sides are evaluated (& and not &&), which vector code needs. Padding is never between.
    const bool between = (pair.t2[n] > pair.t1) & (pair.t2[n] < pair.t3);
    sums[n] = LegsTo<kFai>(pair.d12[n], pair.d23[n], pair.d13, between);
    greatest = std::max(greatest, sums[n]);
  }
  const int32_t score_m = greatest + pair.d13 - pair.closing_m;
  if (greatest < 0 || !CouldReplace(best, score_m, pair.t1, pair.t3, 0)) return;
  // Of equal sums the first counts: points ascend within a block.
  const auto n = std::find(sums.begin(), sums.end(), greatest) - sums.begin();
  Offer(best, {.score_m = score_m, .t1 = pair.t1, .t2 = pair.t2[n], .t3 = pair.t3});
}

// The longest and the shortest leg from each point of one block to those of another.
struct LegBounds {
  std::array<int32_t, kB> most;
  std::array<int32_t, kB> least;
};

SKYHAUL_ALWAYS_INLINE LegBounds BoundsOf(const Tile& tile) {
  LegBounds bounds = {};
  for (uint32_t r = 0; r < kB; ++r) {
    int32_t most = tile.leg_m[r][0];
    int32_t least = most;
    for (uint32_t c = 1; c < kB; ++c) {
      most = std::max(most, tile.leg_m[r][c]);
      least = std::min(least, tile.leg_m[r][c]);
    }
    bounds.most[r] = most;
    bounds.least[r] = least;
  }
  return bounds;
}

// Bounds the scores of one t1 with each t3 over all t2 of a block. Returns the greatest.
template <bool kFai>
SKYHAUL_ALWAYS_INLINE int32_t BoundPairs(const TriangleBase& base, uint32_t r,
                                         const LegBounds& to_t1, const LegBounds& to_t3,
                                         int32_t best_m, int32_t* bounds) {
  const int32_t* d13 = base.d13.leg_m[r].data();
  const int32_t* closing = base.closing.leg_m[r].data();
  int32_t greatest = kImpossible_m;
  for (uint32_t c = 0; c < kB; ++c) {
    int32_t bound = to_t1.most[r] + to_t3.most[c] + d13[c] - closing[c];
    if constexpr (kFai) {
      // The perimeter of an FAI triangle that could replace the best is at least that of the
      // shortest legs, and at least best plus closing. When a perimeter so great allows no leg as
      // short as the shortest must be here, the pair has no such triangle.
      const int32_t shortest = std::min(std::min(to_t1.most[r], to_t3.most[c]), d13[c]);
      const int32_t perimeter = to_t1.least[r] + to_t3.least[c] + d13[c];
      const bool allowed = FaiAllows(std::max(perimeter, best_m + closing[c]), shortest);
      bound = allowed ? bound : kImpossible_m;
    }
    bounds[c] = bound;
    greatest = std::max(greatest, bound);
  }
  return greatest;
}

// t1 and t3 of the base, t2 of block j.
template <bool kFai>
SKYHAUL_ALWAYS_INLINE void SearchBlock(const TriangleCourse& course, const TriangleBase& base,
                                       uint32_t j, Triangle& best) {
  Tile d12;
  Tile d32;
  LoadTile(*course.table, base.i, j, d12);
  LoadTile(*course.table, base.k, j, d32);
  const LegBounds to_t1 = BoundsOf(d12);
  const LegBounds to_t3 = BoundsOf(d32);
  const int32_t* t1 = course.blocks.order.data() + size_t{base.i} * kB;
  const int32_t* t2 = course.blocks.order.data() + size_t{j} * kB;
  const int32_t* t3 = course.blocks.order.data() + size_t{base.k} * kB;
  std::array<int32_t, kB> bounds = {};
  for (uint32_t r = 0; r < kB; ++r) {
    // A bound that equals the best is followed: one of its triangles may come first.
    if (BoundPairs<kFai>(base, r, to_t1, to_t3, best.score_m, bounds.data()) < best.score_m) {
      continue;
    }
    for (uint32_t c = 0; c < kB; ++c) {
      // The cheap comparison throws out nearly all. t2[0] is the first point of the block.
      if (bounds[c] < best.score_m || !CouldReplace(best, bounds[c], t1[r], t3[c], t2[0])) continue;
      SearchPair<kFai>({.d12 = d12.leg_m[r].data(),
                        .d23 = d32.leg_m[c].data(),
                        .t2 = t2,
                        .d13 = base.d13.leg_m[r][c],
                        .closing_m = base.closing.leg_m[r][c],
                        .t1 = t1[r],
                        .t3 = t3[c]},
                       best);
    }
  }
}

}  // namespace

SKYHAUL_VECTOR_CLONES void LoadBase(const TriangleCourse& course, uint32_t i, uint32_t k,
                                    TriangleBase& base) {
  base.i = i;
  base.k = k;
  LoadTile(*course.table, i, k, base.d13);
  LoadClosing(course, i, k, base.closing);
}

// Two functions rather than one template, because a template cannot have vector clones.
SKYHAUL_VECTOR_CLONES void SearchFlatBlock(const TriangleCourse& course, const TriangleBase& base,
                                           uint32_t j, Triangle& best) {
  SearchBlock<false>(course, base, j, best);
}

SKYHAUL_VECTOR_CLONES void SearchFaiBlock(const TriangleCourse& course, const TriangleBase& base,
                                          uint32_t j, Triangle& best) {
  SearchBlock<true>(course, base, j, best);
}

}  // namespace skyhaul
