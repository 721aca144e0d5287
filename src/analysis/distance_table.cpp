#include "analysis/distance_table.h"

#include <algorithm>
#include <cmath>
#include <new>

#include "analysis/row_search.h"
#include "analysis/vector_clones.h"

namespace skyhaul {

SKYHAUL_VECTOR_CLONES void FillRow(const double* x_m, const double* y_m, double from_x_m,
                                   double from_y_m, uint32_t count, int32_t* row) {
  for (uint32_t to = 0; to < count; ++to) {
    const double dx = x_m[to] - from_x_m;
    const double dy = y_m[to] - from_y_m;
    // The sum is above zero, so that cutting it rounds halves up. std::round is no vector code.
    const double above_m = std::sqrt(dx * dx + dy * dy) + 0.5;
    row[to] = static_cast<int32_t>(above_m);
  }
}

namespace {

// Of several equally far the first: std::find stops at it.
void NoteFarthest(const int32_t* row, uint32_t from, uint32_t to, uint32_t point, Farthest& list) {
  const int32_t distance_m = GreatestOf(row, from, to);
  list.distance_m[point] = distance_m;
  if (distance_m < 0) return;
  list.index[point] = static_cast<uint32_t>(std::find(row + from, row + to, distance_m) - row);
}

void FillPoint(const ReducedTrack& track, uint32_t point, DistanceTable& table) {
  int32_t* row = table.cells.get() + size_t{point} * table.stride;
  FillRow(track.x_m.data(), track.y_m.data(), track.x_m[point], track.y_m[point], table.count, row);
  std::fill(row + table.count, row + table.stride, 0);
  NoteFarthest(row, point + 1, table.count, point, table.after);
  NoteFarthest(row, 0, point, point, table.before);
}

}  // namespace

int FillDistances(const ReducedTrack& track, DistanceTable& table, const Operation* operation) {
  table.count = static_cast<uint32_t>(track.indices.size());
  table.stride = (table.count + kBlockPoints - 1) / kBlockPoints * kBlockPoints;
  const size_t used = size_t{table.count} * table.stride;
  const size_t cells = size_t{table.stride} * table.stride;
  // Up to 16 MB. It can fail only in a program that does not end by itself when memory is short.
  table.cells.reset(new (std::nothrow) int32_t[cells]);
  if (!table.cells) return -1;
  for (Farthest* list : {&table.after, &table.before}) {
    list->distance_m.assign(table.stride, -1);
    list->index.assign(table.stride, 0);
  }
  for (uint32_t point = 0; point < table.count; ++point) {
    if (operation != nullptr && operation->aborted) return -1;
    FillPoint(track, point, table);
  }
  // Rows of padding, which blocks read as legs of length 0.
  std::fill(table.cells.get() + used, table.cells.get() + cells, 0);
  return 0;
}

size_t BytesOf(const DistanceTable& table) {
  return (size_t{table.stride} + 4) * table.stride * sizeof(int32_t);
}

}  // namespace skyhaul
