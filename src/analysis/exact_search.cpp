#include "analysis/exact_search.h"

#include "analysis/geodesic.h"
#include "core/units.h"

namespace skyhaul {

namespace {

constexpr double kFaiSide = 0.28;  // least part of the perimeter

double Ground_m(const TrackPoint& from, const TrackPoint& to) {
  const double distance_m =
      GeodesicDistance_m(SemicirclesToRadians(from.lat), SemicirclesToRadians(from.lon),
                         SemicirclesToRadians(to.lat), SemicirclesToRadians(to.lon));
  return std::max(distance_m, 0.0);
}

bool RuleAdmits(OptimiseTask task, const std::array<double, 4>& legs_m) {
  if (task == OptimiseTask::kFree4) return legs_m[1] >= kFaiRuleLeg_m;
  if (task == OptimiseTask::kFree5) return std::min(legs_m[1], legs_m[2]) >= kFaiRuleLeg_m;
  return true;
}

bool EvaluateTriangle(std::span<const TrackPoint> points, double gap_m, bool fai,
                      TaskResult& result) {
  const auto& at = result.indices;
  result.legs_m = {Ground_m(points[at[1]], points[at[2]]), Ground_m(points[at[2]], points[at[3]]),
                   Ground_m(points[at[1]], points[at[3]]), 0};
  const auto& legs_m = result.legs_m;
  result.distance_m = legs_m[0] + legs_m[1] + legs_m[2];
  result.closing_m = Ground_m(points[at[0]], points[at[4]]);
  result.score_m = result.distance_m - result.closing_m;
  if (result.closing_m >= gap_m || result.score_m < 0) return false;
  return !fai || std::min({legs_m[0], legs_m[1], legs_m[2]}) >= kFaiSide * result.distance_m;
}

bool EvaluateReturn(std::span<const TrackPoint> points, double gap_m, TaskResult& result) {
  const auto& at = result.indices;
  result.legs_m[0] = Ground_m(points[at[0]], points[at[1]]);
  result.distance_m = 2 * result.legs_m[0];
  result.closing_m = Ground_m(points[at[0]], points[at[2]]);
  result.score_m = result.distance_m - result.closing_m;
  return result.closing_m <= gap_m && result.score_m >= 0;
}

bool EvaluateFree(std::span<const TrackPoint> points, bool fai_rule, OptimiseTask task,
                  TaskResult& result) {
  for (uint32_t i = 0; i + 1 < result.vertices; ++i) {
    result.legs_m[i] = Ground_m(points[result.indices[i]], points[result.indices[i + 1]]);
    result.distance_m += result.legs_m[i];
  }
  result.score_m = result.distance_m;
  return !fai_rule || RuleAdmits(task, result.legs_m);
}

}  // namespace

double Ground_m(const ExactSearch& search, uint32_t from, uint32_t to) {
  return Ground_m(search.points[search.tree.indices[from]], search.points[search.tree.indices[to]]);
}

uint32_t VerticesOf(OptimiseTask task) {
  constexpr std::array<uint32_t, kOptimiseTasks> kVertices = {2, 3, 4, 5, 3, 5, 5};
  return kVertices[static_cast<size_t>(task)];
}

bool EvaluateTask(std::span<const TrackPoint> points, const OptimiseSettings& settings,
                  OptimiseTask task, std::span<const uint32_t> indices, TaskResult& result) {
  result = {.vertices = VerticesOf(task)};
  std::copy(indices.begin(), indices.end(), result.indices.begin());
  for (uint32_t i = 0; i + 1 < result.vertices; ++i) {
    if (result.indices[i] >= result.indices[i + 1]) return false;
  }
  switch (task) {
    case OptimiseTask::kOutAndReturn:
      return EvaluateReturn(points, settings.gap_m, result);
    case OptimiseTask::kFlatTriangle:
      return EvaluateTriangle(points, settings.gap_m, false, result);
    case OptimiseTask::kFaiTriangle:
      return EvaluateTriangle(points, settings.gap_m, true, result);
    default:
      return EvaluateFree(points, settings.fai_rule, task, result);
  }
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
  if (best.vertices == 0 || result.score_m > best.score_m) best = result;
}

bool GiveUp(ExactSearch& search) {
  constexpr uint32_t kPollsPerLook = 64;
  if (search.stopped) return true;
  if (search.polls++ % kPollsPerLook != 0) return false;
  const bool aborted = search.operation != nullptr && search.operation->aborted;
  const bool late = search.has_deadline && std::chrono::steady_clock::now() >= search.deadline;
  search.stopped = aborted || late;
  return search.stopped;
}

void NoteMemory(ExactSearch& search, size_t bytes) {
  search.memory_bytes = std::max(search.memory_bytes, bytes);
}

}  // namespace skyhaul
