#include "analysis/triangle_course.h"

#include <algorithm>

#include "analysis/closed_tasks.h"
#include "analysis/leg_tile.h"
#include "analysis/vector_clones.h"

namespace skyhaul {

namespace {

SKYHAUL_VECTOR_CLONES void BoundTile(const DistanceTable& table, uint32_t i, uint32_t k,
                                     int32_t& most, int32_t& least) {
  Tile tile;
  LoadTile(table, i, k, tile);
  most = tile.leg_m[0][0];
  least = most;
  for (const auto& row : tile.leg_m) {
    for (const int32_t leg_m : row) {
      most = std::max(most, leg_m);
      least = std::min(least, leg_m);
    }
  }
}

void BoundLegs(TriangleCourse& course) {
  const size_t count = course.blocks.count;
  course.most_m.resize(count * count);
  course.least_m.resize(count * count);
  for (uint32_t i = 0; i < count; ++i) {
    for (uint32_t k = i; k < count; ++k) {
      int32_t most = 0;
      int32_t least = 0;
      BoundTile(*course.table, i, k, most, least);
      course.most_m[i * count + k] = course.most_m[k * count + i] = most;
      course.least_m[i * count + k] = course.least_m[k * count + i] = least;
    }
  }
}

// More starts and finishes never close worse, so that the least closing distance between two blocks
// is that of the last t1 and the first t3. Where the blocks overlap in the order flown nothing is
// known, and where no t1 has a t2 and a t3 after it there is none.
void BoundClosing(TriangleCourse& course) {
  const PointBlocks& blocks = course.blocks;
  for (uint32_t i = 0; i < blocks.count; ++i) {
    for (uint32_t k = 0; k < blocks.count; ++k) {
      int32_t closing_m = 0;
      if (blocks.last[i] < blocks.first[k]) {
        closing_m = RowOf(*course.table, static_cast<uint32_t>(blocks.first[k]))[blocks.last[i]];
      } else if (blocks.first[i] + 1 >= blocks.last[k]) {
        closing_m = kNoClosing_m;
      }
      course.closing_m.push_back(closing_m);
    }
  }
}

// Puts the upper half of the table into the order of the blocks. Distances are computed anew, to
// the same whole metres: moving them about in place would be slower.
void SortDistances(const ReducedTrack& track, const PointBlocks& blocks, DistanceTable& table) {
  std::vector<double> x_m;
  std::vector<double> y_m;
  for (uint32_t p = 0; p < table.count; ++p) {
    x_m.push_back(track.x_m[static_cast<size_t>(blocks.order[p])]);
    y_m.push_back(track.y_m[static_cast<size_t>(blocks.order[p])]);
  }
  for (uint32_t p = 0; p < table.count; ++p) {
    const uint32_t next = p + 1;
    FillRow(x_m.data() + next, y_m.data() + next, x_m[p], y_m[p], table.count - next,
            table.cells.get() + size_t{p} * table.stride + next);
  }
}

}  // namespace

TriangleCourse MakeTriangleCourse(const ReducedTrack& track, int32_t gap_m, DistanceTable& table) {
  TriangleCourse course = {.table = &table, .blocks = MakePointBlocks(track)};
  TabulateClosing(table, gap_m);
  if (!course.blocks.as_flown) SortDistances(track, course.blocks, table);
  BoundLegs(course);
  BoundClosing(course);
  return course;
}

}  // namespace skyhaul
