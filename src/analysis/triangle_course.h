#pragma once

#include <cstdint>
#include <vector>

#include "analysis/distance_table.h"
#include "analysis/point_blocks.h"
#include "analysis/reduce.h"

namespace skyhaul {

// What the search for triangles goes through. The upper half of the table holds distances in the
// order of the blocks, the lower one closing distances in the order flown.
struct TriangleCourse {
  DistanceTable* table = nullptr;
  PointBlocks blocks;
  std::vector<int32_t> most_m;     // blocks by blocks: of the legs between two blocks
  std::vector<int32_t> least_m;    // likewise
  std::vector<int32_t> closing_m;  // at least so much from any t1 of one to any t3 of another
};

// Takes the table over: its lower half becomes closing distances below gap_m, and its upper half is
// sorted when the blocks are not as flown. The course refers to the table.
TriangleCourse MakeTriangleCourse(const ReducedTrack& track, int32_t gap_m, DistanceTable& table);

}  // namespace skyhaul
