#include "analysis/triangle_search.h"

#include <algorithm>
#include <vector>

#include "analysis/closed_tasks.h"
#include "analysis/triangle.h"
#include "analysis/triangle_bounds.h"
#include "analysis/triangle_course.h"
#include "analysis/triangle_tiles.h"

// i, j, k are the blocks of t1, t2, t3.

namespace skyhaul {

namespace {

// Searches the triangles with t1 in block i and t3 in block k, of both kinds at once, because they
// need the same tiles.
void SearchBase(const TriangleCourse& course, uint32_t i, uint32_t k, BlockBounds& bounds,
                BestTriangles& best) {
  Triangle& flat = best.flat;
  Triangle& fai = best.fai;
  BoundBlocks(course, i, k, fai.score_m, bounds);
  // Less, not less or equal: an equal triangle may come first.
  if (bounds.most_flat_m < flat.score_m && bounds.most_fai_m < fai.score_m) return;
  const PointBlocks& blocks = course.blocks;
  TriangleBase base;
  bool loaded = false;
  // The best may rise in this loop; bounds made from a lesser best hold all the same.
  for (uint32_t j = 0; j < blocks.count; ++j) {
    const bool try_flat =
        CouldReplace(flat, bounds.flat_m[j], blocks.first[i], blocks.first[k], blocks.first[j]);
    const bool try_fai =
        CouldReplace(fai, bounds.fai_m[j], blocks.first[i], blocks.first[k], blocks.first[j]);
    if (!try_flat && !try_fai) continue;
    // Loaded late: for most pairs of blocks no j gets this far.
    if (!loaded) LoadBase(course, i, k, base);
    loaded = true;
    if (try_flat) SearchFlatBlock(course, base, j, flat);
    if (try_fai) SearchFaiBlock(course, base, j, fai);
  }
}

// Tries the triangles of one point of each block, about 300 000 of 2000 points. The best of them is
// near the best of all, so that bounds exclude most blocks from the start.
void SearchCorners(const TriangleCourse& course, const ReducedTrack& track, BestTriangles& best) {
  std::vector<int32_t> points = course.blocks.first;
  std::sort(points.begin(), points.end());  // blocks that are sorted by place are not as flown
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
        Offer(best.flat, triangle);
        if (FaiAllows(perimeter, std::min({d12, d23, d13}))) Offer(best.fai, triangle);
      }
    }
  }
}

// The table holds closing distances only; which start and finish they belong to is searched for the
// one triangle that is the result.
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
  BestTriangles best;
  SearchCorners(course, track, best);
  const uint32_t count = course.blocks.count;
  BlockBounds bounds = {.flat_m = std::vector<int32_t>(count),
                        .fai_m = std::vector<int32_t>(count)};
  for (uint32_t i = 0; i < count; ++i) {
    // Also k < i: blocks that are sorted by place overlap in the order flown.
    for (uint32_t k = 0; k < count; ++k) {
      if (operation != nullptr && operation->aborted) return -1;
      if (course.closing_m[size_t{i} * count + k] == kNoClosing_m) continue;
      SearchBase(course, i, k, bounds, best);
    }
  }
  triangles = {.flat = VerticesOf(track, table, best.flat),
               .fai = VerticesOf(track, table, best.fai)};
  return 0;
}

size_t TriangleSearchBytes(const DistanceTable& table) {
  // Four tables of blocks by blocks or less; per point the rows that TabulateClosing gathers, and
  // six vectors of the blocks' order and the sorting.
  const size_t blocks = BlocksOf(table);
  return (4 * blocks * blocks + (kBlockPoints + 6) * size_t{table.stride}) * sizeof(int32_t);
}

}  // namespace skyhaul
