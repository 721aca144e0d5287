#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <span>

#include "analysis/exact/progress.h"
#include "analysis/exact/tree.h"
#include "analysis/optimise.h"

namespace skyhaul {

// What the searches on every fix share. A search throws away candidates that cannot score more than
// kTolerance_m above the best result so far. Fixes are numbered as in the tree unless said
// otherwise.
struct ExactSearch {
  std::span<const TrackPoint> points;
  OptimiseSettings settings;
  const Operation* operation = nullptr;
  TrackTree tree;
  std::chrono::steady_clock::time_point deadline;  // of the task being searched
  bool has_deadline = false;
  bool stopped = false;  // the task being searched was given up
  uint32_t polls = 0;    // calls of GiveUp
  ExactProgress progress;
  size_t memory_bytes = 0;  // the most that the searches held beside the tree
};

// A proved result is this near to the optimum. The promise is 1 m; the centimetre is for rounding,
// which stays below 1 mm even in sums of four geodesics.
inline constexpr double kTolerance_m = 0.99;

// Distance over ground of two fixes, 0 when it cannot be computed.
double Ground_m(const ExactSearch& search, uint32_t from, uint32_t to);

// The legs, closing and score of a task through fixes of the track (numbered as in the track, as
// many as the task has vertices), and whether the rules of the task admit them. Open tasks with the
// FAI rule and closed ones with the gap of the settings.
bool EvaluateTask(std::span<const TrackPoint> points, const OptimiseSettings& settings,
                  OptimiseTask task, std::span<const uint32_t> indices, TaskResult& result);

// Takes the fixes as the best result when the rules admit them and they score more.
void OfferResult(const ExactSearch& search, OptimiseTask task, std::span<const uint32_t> fixes,
                 TaskResult& best);

// What a candidate must exceed to be looked at.
inline double FloorOf(const TaskResult& best) {
  return best.vertices > 0 ? best.score_m + kTolerance_m : 0;
}

// True when the task has to be given up: aborted or out of time. Shows the progress when it is due.
// Cheap enough for inner loops: only every 64th call looks.
bool GiveUp(ExactSearch& search);

// Keeps the greatest of the sizes that searches report.
void NoteMemory(ExactSearch& search, size_t bytes);

}  // namespace skyhaul
