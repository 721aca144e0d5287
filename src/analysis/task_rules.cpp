#include "analysis/task_rules.h"

#include <algorithm>

#include "core/geodesy/geodesic.h"
#include "core/units.h"

namespace skyhaul {

namespace {

constexpr TaskShape kReturn = {.vertices = 3,
                               .legs = 1,
                               .leg = {{{0, 1}}},
                               .legs_factor = 2,
                               .closed = true,
                               .closing = {0, 2}};
constexpr TaskShape kTriangle = {
    .vertices = 5, .legs = 3, .leg = {{{1, 2}, {2, 3}, {1, 3}}}, .closed = true, .closing = {0, 4}};
constexpr TaskShape kShapes[kOptimiseTasks] = {
    {.vertices = 2, .legs = 1, .leg = {{{0, 1}}}},
    {.vertices = 3, .legs = 2, .leg = {{{0, 1}, {1, 2}}}},
    {.vertices = 4, .legs = 3, .leg = {{{0, 1}, {1, 2}, {2, 3}}}},
    {.vertices = 5, .legs = 4, .leg = {{{0, 1}, {1, 2}, {2, 3}, {3, 4}}}},
    kReturn,
    kTriangle,
    kTriangle,
};

bool KeepsTriangleRules(const OptimiseSettings& settings, const TaskResult& result) {
  // Less than the gap for triangles, at most the gap for out-and-return.
  return result.closing_m < settings.gap_m && result.score_m >= 0;
}

}  // namespace

const TaskShape& ShapeOf(OptimiseTask task) {
  return kShapes[static_cast<size_t>(task)];
}

double LegBetween_m(const TrackPoint& from, const TrackPoint& to) {
  const double distance_m =
      GeodesicDistance_m(SemicirclesToRadians(from.lat), SemicirclesToRadians(from.lon),
                         SemicirclesToRadians(to.lat), SemicirclesToRadians(to.lon));
  // Negative between nearly antipodal positions.
  return std::max(distance_m, 0.0);
}

void AddUpTask(const TaskShape& shape, TaskResult& result) {
  double sum_m = 0;
  for (uint32_t i = 0; i < shape.legs; ++i) sum_m += result.legs_m[i];
  result.distance_m = shape.legs_factor * sum_m;
  result.score_m = result.distance_m - result.closing_m;
}

void MeasureTask(std::span<const TrackPoint> points, const TaskShape& shape, TaskResult& result) {
  const auto leg_m = [&](TaskLeg leg) {
    return LegBetween_m(points[result.indices[leg.from]], points[result.indices[leg.to]]);
  };
  for (uint32_t i = 0; i < shape.legs; ++i) result.legs_m[i] = leg_m(shape.leg[i]);
  if (shape.closed) result.closing_m = leg_m(shape.closing);
  AddUpTask(shape, result);
}

bool KeepsRules(OptimiseTask task, const OptimiseSettings& settings, const TaskResult& result) {
  const std::array<double, 4>& legs_m = result.legs_m;
  const double least_m =
      settings.fai_rule ? kFaiRuleLeg_m : 0;  // between turnpoints; the ends are free
  switch (task) {
    case OptimiseTask::kFree2:
    case OptimiseTask::kFree3:
      return true;
    case OptimiseTask::kFree4:
      return legs_m[1] >= least_m;
    case OptimiseTask::kFree5:
      return legs_m[1] >= least_m && legs_m[2] >= least_m;
    case OptimiseTask::kOutAndReturn:
      return result.closing_m <= settings.gap_m;
    case OptimiseTask::kFlatTriangle:
      return KeepsTriangleRules(settings, result);
    case OptimiseTask::kFaiTriangle:
      return KeepsTriangleRules(settings, result) &&
             std::min({legs_m[0], legs_m[1], legs_m[2]}) >= kFaiSide * result.distance_m;
  }
  return false;
}

}  // namespace skyhaul
