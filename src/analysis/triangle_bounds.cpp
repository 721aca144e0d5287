#include "analysis/triangle_bounds.h"

#include <algorithm>

#include "analysis/triangle.h"
#include "analysis/vector_clones.h"

namespace skyhaul {

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
  // One plain pass without branches over all j, so that it becomes vector code.
  for (uint32_t j = 0; j < count; ++j) {
    // False only when every t2 of block j comes before every t1 or after every t3.
    const bool between = (last[j] > first_i) & (first[j] < last_k);
    const int32_t bound = most_i[j] + most_k[j] + most_13 - closing;
    // No leg is longer than its bound, and no closing distance of these blocks is less than theirs.
    // A triangle that is to replace the best has a perimeter of at least best plus closing.
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

}  // namespace skyhaul
