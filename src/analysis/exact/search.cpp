#include "analysis/exact/search.h"

#include "analysis/task_rules.h"

namespace skyhaul {

double Ground_m(const ExactSearch& search, uint32_t from, uint32_t to) {
  return LegBetween_m(search.points[search.tree.indices[from]],
                      search.points[search.tree.indices[to]]);
}

bool EvaluateTask(std::span<const TrackPoint> points, const OptimiseSettings& settings,
                  OptimiseTask task, std::span<const uint32_t> indices, TaskResult& result) {
  result = {.vertices = ShapeOf(task).vertices};
  std::copy(indices.begin(), indices.end(), result.indices.begin());
  for (uint32_t i = 0; i + 1 < result.vertices; ++i) {
    // Ranges that overlap let one fix be taken for two vertices.
    if (result.indices[i] >= result.indices[i + 1]) return false;
  }
  MeasureTask(points, ShapeOf(task), result);
  return result.score_m >= 0 && KeepsRules(task, settings, result);
}

void OfferResult(const ExactSearch& search, OptimiseTask task, std::span<const uint32_t> fixes,
                 TaskResult& best) {
  std::array<uint32_t, 5> indices = {};
  for (size_t i = 0; i < fixes.size(); ++i) indices[i] = search.tree.indices[fixes[i]];
  TaskResult result;
  if (!EvaluateTask(search.points, search.settings, task, std::span(indices).first(fixes.size()),
                    result)) {
    return;
  }
  // Of equal scores the first found stays.
  if (best.vertices == 0 || result.score_m > best.score_m) best = result;
}

bool GiveUp(ExactSearch& search) {
  // Reading the clock takes as long as some legs; 64 legs take a few microseconds.
  constexpr uint32_t kPollsPerLook = 64;
  if (search.stopped) return true;
  if (search.polls++ % kPollsPerLook != 0) return false;
  const bool aborted = search.operation != nullptr && search.operation->aborted;
  bool late = false;
  if (search.has_deadline || IsShown(search.progress)) {
    const auto now = std::chrono::steady_clock::now();
    late = search.has_deadline && now >= search.deadline;
    ShowWhenDue(search.progress, now);
  }
  search.stopped = aborted || late;
  return search.stopped;
}

void NoteMemory(ExactSearch& search, size_t bytes) {
  search.memory_bytes = std::max(search.memory_bytes, bytes);
}

}  // namespace skyhaul
