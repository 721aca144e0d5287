#include "analysis/refine.h"

#include <algorithm>
#include <array>
#include <optional>

#include "analysis/geodesic.h"
#include "core/units.h"

namespace skyhaul {

namespace {

constexpr uint32_t kReach = 2;  // points to each side of a coarse vertex
constexpr double kFaiTriangleShare = 0.28;

struct Leg {
  uint32_t from;
  uint32_t to;
};

// How a task is measured: which legs lie between which of its vertices.
struct TaskShape {
  uint32_t vertices = 0;
  uint32_t legs = 0;
  std::array<Leg, 4> leg = {};
  double legs_factor = 1;  // of the sum of legs in distance and score
  bool closed = false;
  Leg closing = {};
};

constexpr TaskShape kTaskShapes[kOptimiseTasks] = {
    {.vertices = 2, .legs = 1, .leg = {{{0, 1}}}},
    {.vertices = 3, .legs = 2, .leg = {{{0, 1}, {1, 2}}}},
    {.vertices = 4, .legs = 3, .leg = {{{0, 1}, {1, 2}, {2, 3}}}},
    {.vertices = 5, .legs = 4, .leg = {{{0, 1}, {1, 2}, {2, 3}, {3, 4}}}},
    {.vertices = 3,
     .legs = 1,
     .leg = {{{0, 1}}},
     .legs_factor = 2,
     .closed = true,
     .closing = {0, 2}},
    {.vertices = 5,
     .legs = 3,
     .leg = {{{1, 2}, {2, 3}, {1, 3}}},
     .closed = true,
     .closing = {0, 4}},
    {.vertices = 5,
     .legs = 3,
     .leg = {{{1, 2}, {2, 3}, {1, 3}}},
     .closed = true,
     .closing = {0, 4}},
};

struct Candidates {
  uint32_t count = 0;
  std::array<uint32_t, 2 * kReach + 1> index = {};
};

using LegTable = std::array<std::array<double, 2 * kReach + 1>, 2 * kReach + 1>;

struct Refinement {
  const TaskShape* shape = nullptr;
  std::array<Candidates, 5> candidates = {};
  std::array<LegTable, 4> leg_m = {};
  LegTable closing_m = {};
};

using Choice = std::array<uint32_t, 5>;  // of candidates, a place per vertex

double Between_m(const TrackPoint& from, const TrackPoint& to) {
  const double distance_m =
      GeodesicDistance_m(SemicirclesToRadians(from.lat), SemicirclesToRadians(from.lon),
                         SemicirclesToRadians(to.lat), SemicirclesToRadians(to.lon));
  return std::max(distance_m, 0.0);
}

// Vertex k of v can be no later than leaves points for those behind it.
Candidates CandidatesOf(size_t track_points, const TaskShape& shape, uint32_t vertex,
                        uint32_t index) {
  Candidates candidates;
  if (track_points < shape.vertices) return candidates;
  const auto last = static_cast<uint32_t>(track_points) - shape.vertices + vertex;
  for (uint32_t i = std::max(index, kReach) - kReach; i <= std::min(index + kReach, last); ++i) {
    candidates.index[candidates.count++] = i;
  }
  return candidates;
}

void FillLeg(std::span<const TrackPoint> points, const Refinement& refinement, Leg leg,
             LegTable& table) {
  const Candidates& from = refinement.candidates[leg.from];
  const Candidates& to = refinement.candidates[leg.to];
  for (uint32_t i = 0; i < from.count; ++i) {
    for (uint32_t j = 0; j < to.count; ++j) {
      table[i][j] = Between_m(points[from.index[i]], points[to.index[j]]);
    }
  }
}

Refinement Prepare(std::span<const TrackPoint> points, const TaskShape& shape,
                   const CoarseVertices& coarse) {
  Refinement refinement = {.shape = &shape};
  for (uint32_t k = 0; k < shape.vertices; ++k) {
    refinement.candidates[k] = CandidatesOf(points.size(), shape, k, coarse.points[k]);
  }
  for (uint32_t i = 0; i < shape.legs; ++i) {
    FillLeg(points, refinement, shape.leg[i], refinement.leg_m[i]);
  }
  if (shape.closed) FillLeg(points, refinement, shape.closing, refinement.closing_m);
  return refinement;
}

void AddUp(const TaskShape& shape, TaskResult& result) {
  double sum_m = 0;
  for (uint32_t i = 0; i < shape.legs; ++i) sum_m += result.legs_m[i];
  result.distance_m = shape.legs_factor * sum_m;
  result.score_m = result.distance_m - result.closing_m;
}

TaskResult Measure(const Refinement& refinement, const Choice& choice) {
  const TaskShape& shape = *refinement.shape;
  TaskResult result = {.vertices = shape.vertices};
  for (uint32_t k = 0; k < shape.vertices; ++k) {
    result.indices[k] = refinement.candidates[k].index[choice[k]];
  }
  for (uint32_t i = 0; i < shape.legs; ++i) {
    result.legs_m[i] = refinement.leg_m[i][choice[shape.leg[i].from]][choice[shape.leg[i].to]];
  }
  if (shape.closed) {
    result.closing_m = refinement.closing_m[choice[shape.closing.from]][choice[shape.closing.to]];
  }
  AddUp(shape, result);
  return result;
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
      return result.closing_m <= settings.gap_m && result.score_m > 0;
    case OptimiseTask::kFlatTriangle:
      return result.closing_m < settings.gap_m && result.score_m >= 0;
    case OptimiseTask::kFaiTriangle:
      return result.closing_m < settings.gap_m && result.score_m >= 0 &&
             std::min({legs_m[0], legs_m[1], legs_m[2]}) >= kFaiTriangleShare * result.distance_m;
  }
  return false;
}

bool Ascends(const Refinement& refinement, const Choice& choice) {
  for (uint32_t k = 1; k < refinement.shape->vertices; ++k) {
    if (refinement.candidates[k].index[choice[k]] <=
        refinement.candidates[k - 1].index[choice[k - 1]]) {
      return false;
    }
  }
  return true;
}

// Counts up, the last vertex changing first. False after the last combination.
bool NextChoice(const Refinement& refinement, Choice& choice) {
  for (uint32_t k = refinement.shape->vertices; k > 0; --k) {
    if (++choice[k - 1] < refinement.candidates[k - 1].count) return true;
    choice[k - 1] = 0;
  }
  return false;
}

TaskResult AsItIs(std::span<const TrackPoint> points, const TaskShape& shape,
                  const CoarseVertices& coarse) {
  TaskResult result = {.vertices = shape.vertices, .indices = coarse.points};
  for (uint32_t i = 0; i < shape.legs; ++i) {
    result.legs_m[i] =
        Between_m(points[coarse.points[shape.leg[i].from]], points[coarse.points[shape.leg[i].to]]);
  }
  result.closing_m =
      Between_m(points[coarse.points[shape.closing.from]], points[coarse.points[shape.closing.to]]);
  AddUp(shape, result);
  return result;
}

}  // namespace

TaskResult RefineTask(std::span<const TrackPoint> points, OptimiseTask task,
                      const CoarseVertices& coarse, const OptimiseSettings& settings) {
  if (coarse.count == 0) return {};
  const TaskShape& shape = kTaskShapes[static_cast<size_t>(task)];
  const Refinement refinement = Prepare(points, shape, coarse);
  TaskResult best;
  Choice choice = {};
  const bool possible =
      std::all_of(refinement.candidates.begin(), refinement.candidates.begin() + shape.vertices,
                  [](const Candidates& candidates) { return candidates.count > 0; });
  for (bool more = possible; more; more = NextChoice(refinement, choice)) {
    if (!Ascends(refinement, choice)) continue;
    const TaskResult result = Measure(refinement, choice);
    if (!KeepsRules(task, settings, result)) continue;
    if (best.vertices == 0 || result.score_m >= best.score_m) best = result;
  }
  if (best.vertices == 0 && task == OptimiseTask::kOutAndReturn) {
    return AsItIs(points, shape, coarse);
  }
  return best;
}

}  // namespace skyhaul
