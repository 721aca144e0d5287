#include "analysis/triangle_search.h"

#include <algorithm>
#include <array>
#include <vector>

#include "analysis/closed_tasks.h"
#include "analysis/leg_tile.h"
#include "analysis/triangle_course.h"
#include "analysis/vector_clones.h"

// Names: t1, t2, t3 are the turnpoints, d12, d23, d13 the legs between them in metres; i, j, k the
// blocks that they are in. most and least are bounds of a leg over a block.

namespace skyhaul {

namespace {

constexpr uint32_t kB = kBlockPoints;  // short, as it stands in every index
constexpr int32_t kImpossible_m = -2;  // less than the score of no triangle

struct Triangle {
  int32_t score_m = -1;
  int32_t t1 = kNoPoint;
  int32_t t2 = kNoPoint;
  int32_t t3 = kNoPoint;
};

// The part of the search that has t1 in block i and t3 in block k.
struct Base {
  uint32_t i = 0;
  uint32_t k = 0;
  Tile d13;
  Tile closing;
};

bool ComesBefore(int32_t t1, int32_t t3, int32_t t2, const Triangle& other) {
  if (t1 != other.t1) return t1 < other.t1;
  if (t3 != other.t3) return t3 < other.t3;
  return t2 < other.t2;
}

// Whether a triangle of this score, or one bounded by it, could replace the best. The turnpoints
// are the first that it could have.
SKYHAUL_ALWAYS_INLINE bool CouldReplace(const Triangle& best, int32_t score_m, int32_t t1,
                                        int32_t t3, int32_t t2) {
  return score_m > best.score_m || (score_m == best.score_m && ComesBefore(t1, t3, t2, best));
}

void Offer(Triangle& best, const Triangle& triangle) {
  if (CouldReplace(best, triangle.score_m, triangle.t1, triangle.t3, triangle.t2)) best = triangle;
}

// (p * 7) / 25 <= leg in integers is 7 p <= 25 leg + 24: a product for each side, no division.
SKYHAUL_ALWAYS_INLINE bool FaiAllows(int32_t perimeter_m, int32_t shortest_m) {
  return 7 * perimeter_m <= 25 * shortest_m + 24;
}

void LoadClosing(const TriangleCourse& course, uint32_t i, uint32_t k, Tile& tile) {
  const DistanceTable& table = *course.table;
  for (uint32_t r = 0; r < kB; ++r) {
    const int32_t t1 = course.blocks.order[i * kB + r];
    for (uint32_t c = 0; c < kB; ++c) {
      const int32_t t3 = course.blocks.order[k * kB + c];
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

struct Pair {
  const int32_t* d12 = nullptr;  // to each t2 of the block
  const int32_t* d23 = nullptr;
  const int32_t* t2 = nullptr;
  int32_t d13 = 0;
  int32_t closing_m = 0;
  int32_t t1 = 0;
  int32_t t3 = 0;
};

template <bool kFai>
SKYHAUL_ALWAYS_INLINE void SearchPair(const Pair& pair, Triangle& best) {
  std::array<int32_t, kB> sums = {};
  int32_t greatest = -1;
  for (uint32_t n = 0; n < kB; ++n) {
    const bool between = (pair.t2[n] > pair.t1) & (pair.t2[n] < pair.t3);
    sums[n] = LegsTo<kFai>(pair.d12[n], pair.d23[n], pair.d13, between);
    greatest = std::max(greatest, sums[n]);
  }
  const int32_t score_m = greatest + pair.d13 - pair.closing_m;
  if (greatest < 0 || !CouldReplace(best, score_m, pair.t1, pair.t3, 0)) return;
  const auto n = std::find(sums.begin(), sums.end(), greatest) - sums.begin();
  Offer(best, {.score_m = score_m, .t1 = pair.t1, .t2 = pair.t2[n], .t3 = pair.t3});
}

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

// Bounds the scores of one t1 with each t3. Returns the greatest.
template <bool kFai>
SKYHAUL_ALWAYS_INLINE int32_t BoundPairs(const Base& base, uint32_t r, const LegBounds& to_t1,
                                         const LegBounds& to_t3, int32_t best_m, int32_t* bounds) {
  const int32_t* d13 = base.d13.leg_m[r].data();
  const int32_t* closing = base.closing.leg_m[r].data();
  int32_t greatest = kImpossible_m;
  for (uint32_t c = 0; c < kB; ++c) {
    int32_t bound = to_t1.most[r] + to_t3.most[c] + d13[c] - closing[c];
    if constexpr (kFai) {
      // No perimeter is less than that of the least legs, or of a score as good as the best.
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
SKYHAUL_ALWAYS_INLINE void SearchBlock(const TriangleCourse& course, const Base& base, uint32_t j,
                                       Triangle& best) {
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
    if (BoundPairs<kFai>(base, r, to_t1, to_t3, best.score_m, bounds.data()) < best.score_m) {
      continue;
    }
    for (uint32_t c = 0; c < kB; ++c) {
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

SKYHAUL_VECTOR_CLONES void SearchFlatBlock(const TriangleCourse& course, const Base& base,
                                           uint32_t j, Triangle& best) {
  SearchBlock<false>(course, base, j, best);
}

SKYHAUL_VECTOR_CLONES void SearchFaiBlock(const TriangleCourse& course, const Base& base,
                                          uint32_t j, Triangle& best) {
  SearchBlock<true>(course, base, j, best);
}

// What each block j could give between blocks i and k. Blocks that are not between them in the
// order flown, and those that the FAI rule excludes, could give nothing.
struct BlockBounds {
  std::vector<int32_t> flat_m;
  std::vector<int32_t> fai_m;
  int32_t most_flat_m = 0;
  int32_t most_fai_m = 0;
};

SKYHAUL_VECTOR_CLONES void BoundBlocks(const TriangleCourse& course, uint32_t i, uint32_t k,
                                       int32_t best_fai_m, BlockBounds& bounds) {
  const uint32_t count = course.blocks.count;
  const int32_t* most_i = course.most_m.data() + size_t{i} * count;
  const int32_t* most_k = course.most_m.data() + size_t{k} * count;
  const int32_t* least_i = course.least_m.data() + size_t{i} * count;
  const int32_t* least_k = course.least_m.data() + size_t{k} * count;
  const int32_t* first = course.blocks.first.data();
  const int32_t* last = course.blocks.last.data();
  const int32_t first_i = first[i];
  const int32_t last_k = last[k];
  const int32_t most_13 = most_i[k];
  const int32_t least_13 = least_i[k];
  const int32_t closing = course.closing_m[size_t{i} * count + k];
  int32_t* flat_m = bounds.flat_m.data();
  int32_t* fai_m = bounds.fai_m.data();
  int32_t most_flat = kImpossible_m;
  int32_t most_fai = kImpossible_m;
  for (uint32_t j = 0; j < count; ++j) {
    const bool between = (last[j] > first_i) & (first[j] < last_k);
    const int32_t bound = most_i[j] + most_k[j] + most_13 - closing;
    const int32_t shortest = std::min(std::min(most_i[j], most_k[j]), most_13);
    const int32_t perimeter = std::max(least_i[j] + least_k[j] + least_13, best_fai_m + closing);
    flat_m[j] = between ? bound : kImpossible_m;
    fai_m[j] = (between & FaiAllows(perimeter, shortest)) ? bound : kImpossible_m;
    most_flat = std::max(most_flat, flat_m[j]);
    most_fai = std::max(most_fai, fai_m[j]);
  }
  bounds.most_flat_m = most_flat;
  bounds.most_fai_m = most_fai;
}

SKYHAUL_VECTOR_CLONES void LoadBase(const TriangleCourse& course, uint32_t i, uint32_t k,
                                    Base& base) {
  base.i = i;
  base.k = k;
  LoadTile(*course.table, i, k, base.d13);
  LoadClosing(course, i, k, base.closing);
}

void SearchBase(const TriangleCourse& course, uint32_t i, uint32_t k, BlockBounds& bounds,
                Triangle& flat, Triangle& fai) {
  BoundBlocks(course, i, k, fai.score_m, bounds);
  if (bounds.most_flat_m < flat.score_m && bounds.most_fai_m < fai.score_m) return;
  const PointBlocks& blocks = course.blocks;
  Base base;
  bool loaded = false;
  for (uint32_t j = 0; j < blocks.count; ++j) {
    const bool try_flat =
        CouldReplace(flat, bounds.flat_m[j], blocks.first[i], blocks.first[k], blocks.first[j]);
    const bool try_fai =
        CouldReplace(fai, bounds.fai_m[j], blocks.first[i], blocks.first[k], blocks.first[j]);
    if (!try_flat && !try_fai) continue;
    if (!loaded) LoadBase(course, i, k, base);
    loaded = true;
    if (try_flat) SearchFlatBlock(course, base, j, flat);
    if (try_fai) SearchFaiBlock(course, base, j, fai);
  }
}

// Triangles of one point of each block: good ones to begin with, so that the bounds bite early.
void SearchCorners(const TriangleCourse& course, const ReducedTrack& track, Triangle& flat,
                   Triangle& fai) {
  std::vector<int32_t> points = course.blocks.first;
  std::sort(points.begin(), points.end());
  const size_t count = points.size();
  std::vector<int32_t> legs_m(count * count);
  std::vector<double> x_m;
  std::vector<double> y_m;
  for (const int32_t point : points) {
    x_m.push_back(track.x_m[static_cast<size_t>(point)]);
    y_m.push_back(track.y_m[static_cast<size_t>(point)]);
  }
  for (size_t i = 0; i < count; ++i) {
    FillRow(x_m.data(), y_m.data(), x_m[i], y_m[i], static_cast<uint32_t>(count),
            legs_m.data() + i * count);
  }
  for (size_t i = 0; i < count; ++i) {
    for (size_t k = i + 2; k < count; ++k) {
      const int32_t d13 = legs_m[i * count + k];
      const int32_t closing_m = RowOf(*course.table, static_cast<uint32_t>(points[k]))[points[i]];
      for (size_t j = i + 1; j < k; ++j) {
        const int32_t d12 = legs_m[i * count + j];
        const int32_t d23 = legs_m[k * count + j];
        const int32_t perimeter = d12 + d23 + d13;
        const Triangle triangle = {perimeter - closing_m, points[i], points[j], points[k]};
        Offer(flat, triangle);
        if (FaiAllows(perimeter, std::min({d12, d23, d13}))) Offer(fai, triangle);
      }
    }
  }
}

CoarseVertices VerticesOf(const ReducedTrack& track, const DistanceTable& table,
                          const Triangle& triangle) {
  if (triangle.score_m < 0) return {};
  const auto t1 = static_cast<uint32_t>(triangle.t1);
  const auto t2 = static_cast<uint32_t>(triangle.t2);
  const auto t3 = static_cast<uint32_t>(triangle.t3);
  const ClosingPair pair = FindClosing(track, t1, t3, RowOf(table, t3)[t1]);
  return {.count = 5, .points = {pair.start, t1, t2, t3, pair.finish}};
}

}  // namespace

int SearchTriangles(const ReducedTrack& track, int32_t gap_m, DistanceTable& table,
                    CoarseTriangles& triangles, const Operation* operation) {
  const TriangleCourse course = MakeTriangleCourse(track, gap_m, table);
  Triangle flat;
  Triangle fai;
  SearchCorners(course, track, flat, fai);
  const uint32_t count = course.blocks.count;
  BlockBounds bounds = {.flat_m = std::vector<int32_t>(count),
                        .fai_m = std::vector<int32_t>(count)};
  for (uint32_t i = 0; i < count; ++i) {
    for (uint32_t k = 0; k < count; ++k) {
      if (operation != nullptr && operation->aborted) return -1;
      if (course.closing_m[size_t{i} * count + k] == kNoClosing_m) continue;
      SearchBase(course, i, k, bounds, flat, fai);
    }
  }
  triangles = {.flat = VerticesOf(track, table, flat), .fai = VerticesOf(track, table, fai)};
  return 0;
}

size_t TriangleSearchBytes(const DistanceTable& table) {
  const size_t blocks = BlocksOf(table);
  return (4 * blocks * blocks + (kB + 6) * size_t{table.stride}) * sizeof(int32_t);
}

}  // namespace skyhaul
