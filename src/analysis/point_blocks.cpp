#include "analysis/point_blocks.h"

#include <algorithm>
#include <numeric>

namespace skyhaul {

namespace {

// Blocks as flown exclude by order as well as by distance (t1 before t2 before t3), which blocks by
// place cannot: sorting must make them this much smaller to be worth it.
constexpr double kWorthSorting = 0.5;

struct Extent {
  double width_m = 0;
  double height_m = 0;
};

using Place = std::vector<int32_t>::iterator;

Extent ExtentOf(const ReducedTrack& track, Place from, Place to) {
  const auto by = [](const std::vector<double>& axis_m) {
    return [&axis_m](int32_t a, int32_t b) {
      return axis_m[static_cast<size_t>(a)] < axis_m[static_cast<size_t>(b)];
    };
  };
  const auto [west, east] = std::minmax_element(from, to, by(track.x_m));
  const auto [south, north] = std::minmax_element(from, to, by(track.y_m));
  return {
      .width_m = track.x_m[static_cast<size_t>(*east)] - track.x_m[static_cast<size_t>(*west)],
      .height_m = track.y_m[static_cast<size_t>(*north)] - track.y_m[static_cast<size_t>(*south)]};
}

// Halves the range across its longer side, at a whole number of blocks, until one block is left.
void SortByPlace(const ReducedTrack& track, Place from, Place to) {
  const auto blocks = (to - from + kBlockPoints - 1) / kBlockPoints;
  if (blocks <= 1) {
    std::sort(from, to);
    return;
  }
  const Extent extent = ExtentOf(track, from, to);
  const std::vector<double>& axis_m = extent.width_m > extent.height_m ? track.x_m : track.y_m;
  const Place middle = from + blocks / 2 * kBlockPoints;
  std::nth_element(from, middle, to, [&axis_m](int32_t a, int32_t b) {
    const double a_m = axis_m[static_cast<size_t>(a)];
    const double b_m = axis_m[static_cast<size_t>(b)];
    // The order of equals keeps blocks, and so the time, the same on every machine.
    return a_m < b_m || (a_m == b_m && a < b);
  });
  SortByPlace(track, from, middle);
  SortByPlace(track, middle, to);
}

// The sum of the blocks' widths and heights. Bounds of legs between blocks are loose by about that.
double SizeOfBlocks(const ReducedTrack& track, std::vector<int32_t>& order) {
  double sum_m = 0;
  for (Place from = order.begin(); from != order.end();) {
    const Place to = from + std::min<std::ptrdiff_t>(kBlockPoints, order.end() - from);
    const Extent extent = ExtentOf(track, from, to);
    sum_m += extent.width_m + extent.height_m;
    from = to;
  }
  return sum_m;
}

void NoteEnds(PointBlocks& blocks) {
  const auto points = blocks.order.size();
  blocks.count = static_cast<uint32_t>((points + kBlockPoints - 1) / kBlockPoints);
  for (size_t from = 0; from < points; from += kBlockPoints) {
    blocks.first.push_back(blocks.order[from]);
    blocks.last.push_back(blocks.order[std::min(from + kBlockPoints, points) - 1]);
  }
  // After the ends were noted, which are those of real points.
  blocks.order.resize(size_t{blocks.count} * kBlockPoints, kNoPoint);
}

}  // namespace

PointBlocks MakePointBlocks(const ReducedTrack& track) {
  PointBlocks blocks;
  blocks.order.resize(track.indices.size());
  std::iota(blocks.order.begin(), blocks.order.end(), 0);
  std::vector<int32_t> sorted = blocks.order;
  SortByPlace(track, sorted.begin(), sorted.end());
  if (SizeOfBlocks(track, sorted) < kWorthSorting * SizeOfBlocks(track, blocks.order)) {
    blocks.order = sorted;
    blocks.as_flown = false;
  }
  NoteEnds(blocks);
  return blocks;
}

}  // namespace skyhaul
