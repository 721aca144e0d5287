#pragma once

#include <cstdint>
#include <vector>

#include "analysis/triangle_course.h"

namespace skyhaul {

// The scores that triangles with t1 in one block, t3 in another and t2 in block j can at most have,
// by j. kImpossible_m where block j has no point between the two in the order flown, or where the
// FAI rule excludes all of its triangles that could replace the best.
struct BlockBounds {
  std::vector<int32_t> flat_m;  // one per block; to be made by the caller
  std::vector<int32_t> fai_m;
  int32_t most_flat_m = 0;
  int32_t most_fai_m = 0;
};

// For t1 in block i and t3 in block k; best_fai_m is the score of the best FAI triangle so far.
void BoundBlocks(const TriangleCourse& course, uint32_t i, uint32_t k, int32_t best_fai_m,
                 BlockBounds& bounds);

}  // namespace skyhaul
