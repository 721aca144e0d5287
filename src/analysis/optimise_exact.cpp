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

constexpr size_t kMaxFixes = size_t{1} << 26;  // the tree would need 8 GB

constexpr OptimiseTask kFreeTasks[] = {OptimiseTask::kFree2, OptimiseTask::kFree3,
                                       OptimiseTask::kFree4, OptimiseTask::kFree5};
constexpr OptimiseTask kClosedTasks[] = {OptimiseTask::kOutAndReturn, OptimiseTask::kFlatTriangle,
                                         OptimiseTask::kFaiTriangle};

// The progress texts, by task.
constexpr const char* kSteps[kOptimiseTasks] = {"Proving greatest distance (2 points)",
                                                "Proving greatest distance (3 points)",
                                                "Proving greatest distance (4 points)",
                                                "Proving greatest distance (5 points)",
                                                "Proving out-and-return distance",
                                                "Proving flat triangle",
                                                "Proving FAI triangle"};

uint32_t MillisecondsSince(Clock::time_point start) {
  return static_cast<uint32_t>(
      std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start).count());
}

// Begins the next step: it gets an even part of the time that is left, so that a step that ends
// early leaves more to the others.
void BeginStep(ExactSearch& search, Clock::time_point end, const char* step) {
  const uint32_t pieces_left = search.progress.steps - search.progress.begun;
  search.stopped = false;
  search.polls = 0;
  const Clock::time_point now = Clock::now();
  search.deadline = now + (end - now) / pieces_left;
  BeginStep(search.progress, step);
}

// Takes the coarse results that keep the rules. An out-and-return that could not be refined may
// not.
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

void SearchFreeTasks(ExactSearch& search, Clock::time_point end, OptimiseResult& result) {
  for (const OptimiseTask task : kFreeTasks) {
    TaskResult& best = result.tasks[static_cast<size_t>(task)];
    BeginStep(search, end, kSteps[static_cast<size_t>(task)]);
    const bool possible = SizeOf(search.tree) >= ShapeOf(task).vertices;
    Conclude(search, possible ? SearchFree(search, task, best) : 0, best, result);
  }
}

void SearchClosedTasks(ExactSearch& search, Clock::time_point end, OptimiseResult& result) {
  // An out-and-return may close at exactly the gap, and the table holds what is below its limit.
  const double above_gap_m = std::nextafter(static_cast<double>(search.settings.gap_m),
                                            std::numeric_limits<double>::max());
  BeginStep(search, end, "Measuring closing distances");
  ClosingTable table = MakeClosingTable(search, above_gap_m);
  for (const OptimiseTask task : kClosedTasks) {
    TaskResult& best = result.tasks[static_cast<size_t>(task)];
    double bound_m = 3 * Extent_m(search.tree);  // what is known without the table
    if (table.complete) {
      BeginStep(search, end, kSteps[static_cast<size_t>(task)]);
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
  // Without memory or time for the coarse results the searches begin from nothing.
  if (OptimiseTrack(points, settings, coarse, operation) < 0) coarse = {};
  if (!points.empty()) {
    ExactSearch search = {.points = points, .settings = settings, .operation = operation};
    search.tree = MakeTrackTree(points);
    search.has_deadline = budget_ms > 0;
    search.progress.operation = operation;
    BeginFrom(coarse, search, result);
    const Clock::time_point end = Clock::now() + std::chrono::milliseconds(budget_ms);
    const bool closed = settings.gap_m > 0;
    search.progress.steps = static_cast<uint32_t>(std::size(kFreeTasks)) +
                            (closed ? 1 + static_cast<uint32_t>(std::size(kClosedTasks)) : 0);
    SearchFreeTasks(search, end, result);
    if (closed) SearchClosedTasks(search, end, result);
    result.memory_bytes =
        std::max(coarse.memory_bytes, MemoryOf(search.tree) + search.memory_bytes);
  }
  result.valid = true;
  result.exact = true;
  result.searched_points = points.size();
  result.elapsed_ms = MillisecondsSince(start);
  return 0;
}

}  // namespace skyhaul
