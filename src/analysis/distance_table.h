#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "analysis/reduce.h"
#include "core/operation.h"

namespace skyhaul {

// Points are looked at in blocks of this many where a bound decides for all of them.
inline constexpr uint32_t kBlockPoints = 16;

// The points farthest from each point on one side of it. Of several equally far the first counts.
struct Farthest {
  std::vector<int32_t> distance_m;  // -1 where there is no point on that side
  std::vector<uint32_t> index;
};

// Plane distances between reduced points in whole metres, rounded to the nearest. Both halves are
// held, so that the distances from any point stand side by side: 16 MB for 2000 points. Rows and
// columns are padded with zeros to whole blocks.
struct DistanceTable {
  uint32_t count = 0;
  uint32_t stride = 0;
  std::unique_ptr<int32_t[]> cells;
  Farthest after;
  Farthest before;
};

inline const int32_t* RowOf(const DistanceTable& table, uint32_t point) {
  return table.cells.get() + size_t{point} * table.stride;
}

inline uint32_t BlocksOf(const DistanceTable& table) {
  return table.stride / kBlockPoints;
}

// Fills the table; operation may be null. Returns 0, or -1 when there is no memory for it or the
// operation was aborted.
int FillDistances(const ReducedTrack& track, DistanceTable& table, const Operation* operation);

// The distances of one place from count others, in whole metres.
void FillRow(const double* x_m, const double* y_m, double from_x_m, double from_y_m, uint32_t count,
             int32_t* row);

// The bytes that the table holds.
size_t BytesOf(const DistanceTable& table);

}  // namespace skyhaul
