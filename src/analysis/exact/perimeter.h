#pragma once

#include <array>

#include "analysis/exact/tree.h"

namespace skyhaul {

// Upper bound of the ground distance between a fix of one range and a fix of the other.
double LegBound_m(const TrackTree& tree, TreeNode from, TreeNode to);

// Upper bound of the perimeter, on the ground, of triangles with one fix of each range. With fai
// only triangles without a side below 28 % of the perimeter count, and 0 says that there are none.
// Cheap bounds are tried first; one that is at most enough_m is not improved.
double PerimeterBound_m(const TrackTree& tree, const std::array<TreeNode, 3>& ranges, bool fai,
                        double enough_m);

}  // namespace skyhaul
