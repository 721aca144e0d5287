#include "analysis/optimise_exact.h"

#include <chrono>
#include <cmath>
#include <limits>

#include "analysis/exact/closed.h"
#include "analysis/exact/free.h"
#include "analysis/exact/search.h"
#include "analysis/task_rules.h"

namespace skyhaul {

namespace {

using Clock = std::chrono::steady_clock;

constexpr size_t kMaxFixes = size_t{1} << 26;

constexpr OptimiseTask kFreeTasks[] = {OptimiseTask::kFree2, OptimiseTask::kFree3,
                                       OptimiseTask::kFree4, OptimiseTask::kFree5};
constexpr OptimiseTask kClosedTasks[] = {OptimiseTask::kOutAndReturn, OptimiseTask::kFlatTriangle,
                                         OptimiseTask::kFaiTriangle};

uint32_t MillisecondsSince(Clock::time_point start) {
  return static_cast<uint32_t>(
      std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start).count());
}

// Gives the next piece of work an even part of the time that is left.
void ShareTime(ExactSearch& search, Clock::time_point end, uint32_t pieces_left) {
  search.stopped = false;
  search.polls = 0;
  const Clock::time_point now = Clock::now();
  search.deadline = now + (end - now) / pieces_left;
}

// Takes the coarse results that keep the rules to the millimetre.
void BeginFrom(const OptimiseResult& coarse, const ExactSearch& search, OptimiseResult& result) {
  if (!coarse.valid) return;
  for (size_t i = 0; i < kOptimiseTasks; ++i) {
    const TaskResult& found = coarse.tasks[i];
    if (found.vertices == 0) continue;
    TaskResult checked;
    if (EvaluateTask(search.points, search.settings, static_cast<OptimiseTask>(i),
                     std::span(found.indices).first(found.vertices), checked)) {
      result.tasks[i] = checked;
    }
  }
}

void Conclude(const ExactSearch& search, double bound_m, TaskResult& best, OptimiseResult& result) {
  best.optimal = !search.stopped;
  best.bound_m = bound_m;
  if (search.stopped) result.stopped = true;
}

void SearchFreeTasks(ExactSearch& search, Clock::time_point end, uint32_t& pieces_left,
                     OptimiseResult& result) {
  for (const OptimiseTask task : kFreeTasks) {
    TaskResult& best = result.tasks[static_cast<size_t>(task)];
    ShareTime(search, end, pieces_left--);
    const bool possible = SizeOf(search.tree) >= ShapeOf(task).vertices;
    Conclude(search, possible ? SearchFree(search, task, best) : 0, best, result);
  }
}

void SearchClosedTasks(ExactSearch& search, Clock::time_point end, uint32_t& pieces_left,
                       OptimiseResult& result) {
  const double above_gap_m = std::nextafter(static_cast<double>(search.settings.gap_m),
                                            std::numeric_limits<double>::max());
  ShareTime(search, end, pieces_left--);
  ClosingTable table = MakeClosingTable(search, above_gap_m);
  for (const OptimiseTask task : kClosedTasks) {
    TaskResult& best = result.tasks[static_cast<size_t>(task)];
    double bound_m = 3 * Extent_m(search.tree);
    if (table.complete) {
      ShareTime(search, end, pieces_left--);
      bound_m = task == OptimiseTask::kOutAndReturn ? SearchReturn(search, table, best)
                                                    : SearchTriangle(search, table, task, best);
    }
    Conclude(search, bound_m, best, result);
  }
}

}  // namespace

int OptimiseTrackExact(std::span<const TrackPoint> points, const OptimiseSettings& settings,
                       uint32_t budget_ms, OptimiseResult& result, const Operation* operation) {
  result = {};
  if (points.size() > kMaxFixes) return -1;
  const Clock::time_point start = Clock::now();
  OptimiseResult coarse;
  if (OptimiseTrack(points, settings, coarse, operation) < 0) coarse = {};
  if (!points.empty()) {
    ExactSearch search = {.points = points, .settings = settings, .operation = operation};
    search.tree = MakeTrackTree(points);
    search.has_deadline = budget_ms > 0;
    BeginFrom(coarse, search, result);
    const Clock::time_point end = Clock::now() + std::chrono::milliseconds(budget_ms);
    uint32_t pieces_left = kOptimiseTasks + 1;
    SearchFreeTasks(search, end, pieces_left, result);
    if (settings.gap_m > 0) SearchClosedTasks(search, end, pieces_left, result);
    result.memory_bytes =
        std::max(coarse.memory_bytes, MemoryOf(search.tree) + search.memory_bytes);
  }
  result.valid = true;
  result.exact = true;
  result.elapsed_ms = MillisecondsSince(start);
  return 0;
}

}  // namespace skyhaul
