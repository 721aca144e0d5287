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

// The nearest pairs of fixes that close a track, none of them limit_m or more apart: for ranges of
// the track (at most 512, whatever its length) the nearest pair of a start in one of the first
// ranges and a finish in one of the last. Less room between start and finish never brings them
// nearer, so that the entry of wider ranges bounds all narrower ones.
struct ClosingTable {
  double limit_m = 0;
  uint32_t level = 0;  // of the ranges
  uint32_t ranges = 0;
  std::vector<ExactClosing> nearest;  // ranges x ranges: last range of starts, first of finishes

  // Answers given before, found by a number made from what was asked.
  struct Answer {
    uint32_t last_start = UINT32_MAX;
    uint32_t first_finish = UINT32_MAX;
    ExactClosing pair;
  };
  std::vector<Answer> closing_answers;
  std::vector<Answer> finish_answers;
  bool complete = false;  // false: given up, nothing may be asked
};

ClosingTable MakeClosingTable(ExactSearch& search, double limit_m);

size_t MemoryOf(const ClosingTable& table);

// No start up to last_start is nearer to a finish from first_finish on. limit_m when none is nearer
// than that.
double ClosingBound_m(const ClosingTable& table, uint32_t last_start, uint32_t first_finish);

// The nearest start up to last_start and finish from first_finish on; last_start < first_finish.
// The distance is limit_m when no pair is nearer than that.
ExactClosing NearestClosing(ExactSearch& search, ClosingTable& table, uint32_t last_start,
                            uint32_t first_finish);

// The fix from first_finish on that is nearest to the start, when it is nearer than limit_m; its
// distance is limit_m otherwise.
ExactClosing NearestFinish(ExactSearch& search, ClosingTable& table, uint32_t start,
                           uint32_t first_finish);

// No fix of the range is nearer to a fix from first_finish on; limit_m or more: all are too far.
double FinishBound_m(const ExactSearch& search, TreeNode starts, uint32_t first_finish,
                     double limit_m);

}  // namespace skyhaul
