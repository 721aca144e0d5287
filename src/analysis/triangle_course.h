#pragma once

#include <cstdint>
#include <vector>

#include "analysis/distance_table.h"
#include "analysis/point_blocks.h"
#include "analysis/reduce.h"

namespace skyhaul {

// Distances, blocks and bounds for the search for triangles. The upper half of the table holds
// distances in the order of the blocks, the lower half closing distances in the order flown.
struct TriangleCourse {
  DistanceTable* table = nullptr;
  PointBlocks blocks;
  // Blocks by blocks: bounds of the legs between two blocks, and a lower bound of the closing
  // distance with t1 in the first and t3 in the second.
  std::vector<int32_t> most_m;
  std::vector<int32_t> least_m;
  std::vector<int32_t> closing_m;
};

// Takes the table over: its lower half becomes closing distances below gap_m, and its upper half is
// sorted when the blocks are not as flown. The course refers to the table.
TriangleCourse MakeTriangleCourse(const ReducedTrack& track, int32_t gap_m, DistanceTable& table);

}  // namespace skyhaul
