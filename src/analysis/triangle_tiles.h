#pragma once

#include <cstdint>

#include "analysis/leg_tile.h"
#include "analysis/triangle.h"
#include "analysis/triangle_course.h"

namespace skyhaul {

// The part of the search that has t1 in block i and t3 in block k: the legs and the closing
// distances between the two blocks.
struct TriangleBase {
  uint32_t i = 0;
  uint32_t k = 0;
  Tile d13;
  Tile closing;  // kNoClosing_m where t3 is not at least two points after t1
};

void LoadBase(const TriangleCourse& course, uint32_t i, uint32_t k, TriangleBase& base);

// Offer every triangle of the base with t2 in block j that could replace the best.
void SearchFlatBlock(const TriangleCourse& course, const TriangleBase& base, uint32_t j,
                     Triangle& best);
void SearchFaiBlock(const TriangleCourse& course, const TriangleBase& base, uint32_t j,
                    Triangle& best);

}  // namespace skyhaul
