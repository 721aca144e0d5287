#include "analysis/closed_tasks.h"

#include <algorithm>
#include <vector>

namespace skyhaul {

namespace {

struct OutAndReturn {
  int32_t score_m = -1;
  uint32_t start = 0;
  uint32_t turn = 0;
  uint32_t finish = 0;
};

// Turns are tried backwards, so that the nearest finish after each turn is known when the turn is
// reached. Of equal scores the first counts: one that equals the best of this start has an earlier
// turn and replaces it, but one that equals the best of an earlier start does not. Of finishes that
// close equally the last one reached, the first in the order flown, counts too.
void SearchStart(const DistanceTable& table, uint32_t start, int32_t gap_m, OutAndReturn& best) {
  const int32_t* row = RowOf(table, start);
  OutAndReturn here = {.score_m = best.score_m + 1};
  int32_t closing_m = kNoClosing_m;
  uint32_t finish = 0;
  for (uint32_t turn = table.count - 1; turn > start; --turn) {
    const int32_t score_m = 2 * row[turn] - closing_m;
    if (score_m >= here.score_m) here = {score_m, start, turn, finish};
    if (row[turn] < gap_m && row[turn] <= closing_m) {
      closing_m = row[turn];
      finish = turn;
    }
  }
  if (here.turn != 0) best = here;
}

// Goes on to row t1: least_m[t3] becomes the least d(s, f) with s up to t1 and f from t3 on. One
// pass from the last finish gives the least of this row, and the rows before are in least_m
// already.
void AdvanceClosing(const DistanceTable& table, uint32_t t1, int32_t* least_m) {
  const int32_t* distances = RowOf(table, t1);
  int32_t nearest_m = kNoClosing_m;
  for (uint32_t finish = table.count - 1; finish > t1; --finish) {
    nearest_m = std::min(nearest_m, distances[finish]);
    least_m[finish] = std::min(least_m[finish], nearest_m);
  }
}

void LimitToGap(const int32_t* least_m, uint32_t count, int32_t gap_m, int32_t* limited_m) {
  for (uint32_t i = 0; i < count; ++i) {
    limited_m[i] = least_m[i] < gap_m ? least_m[i] : kNoClosing_m;
  }
}

}  // namespace

CoarseVertices BestOutAndReturn(const DistanceTable& table, int32_t gap_m) {
  OutAndReturn best;
  for (uint32_t start = 0; start + 2 < table.count; ++start) {
    // Twice the way to the farthest point, with nothing to close, would have to be more.
    if (2 * table.after.distance_m[start] <= best.score_m) continue;
    SearchStart(table, start, gap_m, best);
  }
  if (best.score_m < 0) return {};
  return {.count = 3, .points = {best.start, best.turn, best.finish}};
}

void TabulateClosing(DistanceTable& table, int32_t gap_m) {
  const size_t stride = table.stride;
  std::vector<int32_t> least_m(stride, kNoClosing_m);
  std::vector<int32_t> block(kBlockPoints * stride, kNoClosing_m);
  for (uint32_t first = 0; first < table.count; first += kBlockPoints) {
    // Row t3 of the lower half takes a column of what is computed here row by row. Written one by
    // one, each number would touch a memory line of its own; 16 rows gathered fill whole lines.
    const uint32_t end = std::min(first + kBlockPoints, table.count);
    for (uint32_t t1 = first; t1 < end; ++t1) {
      AdvanceClosing(table, t1, least_m.data());
      LimitToGap(least_m.data(), table.stride, gap_m, block.data() + (t1 - first) * stride);
    }
    for (uint32_t t3 = first + 1; t3 < table.count; ++t3) {
      int32_t* line = table.cells.get() + t3 * stride;
      for (uint32_t t1 = first; t1 < std::min(end, t3); ++t1) {
        line[t1] = block[(t1 - first) * stride + t3];
      }
    }
  }
}

// The distances are computed anew: the table's own were replaced.
ClosingPair FindClosing(const ReducedTrack& track, uint32_t t1, uint32_t t3, int32_t closing_m) {
  const auto count = static_cast<uint32_t>(track.indices.size());
  std::vector<int32_t> row(count);
  for (uint32_t start = 0; start <= t1; ++start) {
    FillRow(track.x_m.data() + t3, track.y_m.data() + t3, track.x_m[start], track.y_m[start],
            count - t3, row.data() + t3);
    for (uint32_t finish = count - 1; finish >= t3; --finish) {
      // Rows are rounded alike, so that the least distance is met again exactly.
      if (row[finish] == closing_m) return {.start = start, .finish = finish};
    }
  }
  return {.start = t1, .finish = t3};
}

}  // namespace skyhaul
