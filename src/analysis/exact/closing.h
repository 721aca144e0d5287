#pragma once

#include <cstdint>
#include <vector>

#include "analysis/exact/search.h"

namespace skyhaul {

// A start and a finish and how far they are apart on the ground.
struct ExactClosing {
  double distance_m = 0;
  uint32_t start = 0;
  uint32_t finish = 0;
};

// The nearest pairs of a start and a finish, as far as they are nearer than limit_m. The track is
// cut into at most 512 ranges; entry (i, j) is the nearest pair with a start in ranges 0..i and a
// finish in ranges j and later. Fewer starts and finishes never bring them nearer, so that an entry
// is a lower bound for all that it covers.
struct ClosingTable {
  double limit_m = 0;
  uint32_t level = 0;  // of the ranges
  uint32_t ranges = 0;
  std::vector<ExactClosing> nearest;  // ranges x ranges: last range of starts, first of finishes

  // Answers given before, in places found by hashing the question. A new answer overwrites the old
  // one in its place.
  struct Answer {
    uint32_t last_start = UINT32_MAX;
    uint32_t first_finish = UINT32_MAX;
    ExactClosing pair;
  };
  std::vector<Answer> closing_answers;
  std::vector<Answer> finish_answers;
  bool complete = false;  // false: given up, nothing may be asked
};

// Not complete when the search was given up meanwhile.
ClosingTable MakeClosingTable(ExactSearch& search, double limit_m);

// The bytes that the table holds.
size_t MemoryOf(const ClosingTable& table);

// Lower bound of the closing distance with a start up to last_start and a finish from first_finish
// on; limit_m when no such pair is nearer than that. A look into the table.
double ClosingBound_m(const ClosingTable& table, uint32_t last_start, uint32_t first_finish);

// The nearest start up to last_start and finish from first_finish on; last_start < first_finish.
// The distance is limit_m when no pair is nearer than that.
ExactClosing NearestClosing(ExactSearch& search, ClosingTable& table, uint32_t last_start,
                            uint32_t first_finish);

// The fix from first_finish on that is nearest to the start, when it is nearer than limit_m; its
// distance is limit_m otherwise.
ExactClosing NearestFinish(ExactSearch& search, ClosingTable& table, uint32_t start,
                           uint32_t first_finish);

// Lower bound of the distance of any fix of the range from any fix from first_finish on; limit_m
// when no finish is nearer than that.
double FinishBound_m(const ExactSearch& search, TreeNode starts, uint32_t first_finish,
                     double limit_m);

}  // namespace skyhaul
