#pragma once

#include <cstdint>
#include <vector>

#include "analysis/distance_table.h"
#include "analysis/reduce.h"

namespace skyhaul {

inline constexpr int32_t kNoPoint = 0x7FFFFFFF;  // comes after every point

// An order of the reduced points in which each block of kBlockPoints lies close together, so that
// bounds of distances between blocks are tight. A flight that hardly comes back to where it was has
// such blocks already as it was flown; one that circles, or flies a ridge up and down, is sorted by
// place. Within a block points ascend.
struct PointBlocks {
  bool as_flown = true;
  uint32_t count = 0;          // blocks
  std::vector<int32_t> order;  // reduced points, padded with kNoPoint to whole blocks
  std::vector<int32_t> first;  // per block: its first and last point as flown
  std::vector<int32_t> last;
};

PointBlocks MakePointBlocks(const ReducedTrack& track);

}  // namespace skyhaul
