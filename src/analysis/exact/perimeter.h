#pragma once

#include <array>

#include "analysis/exact/tree.h"

namespace skyhaul {

// No leg between two fixes, one of each range, is longer on the ground.
double LegBound_m(const TrackTree& tree, TreeNode from, TreeNode to);

// No triangle of three fixes, one of each range, has a longer perimeter on the ground; with fai
// only triangles count that have no side below 28 % of the perimeter, and 0 says that there are
// none. Once the bound is at most enough_m it is not made any better.
double PerimeterBound_m(const TrackTree& tree, const std::array<TreeNode, 3>& ranges, bool fai,
                        double enough_m);

}  // namespace skyhaul
