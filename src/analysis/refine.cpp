#include "analysis/refine.h"

#include <algorithm>
#include <array>

#include "analysis/task_rules.h"

namespace skyhaul {

namespace {

constexpr uint32_t kReach = 2;  // points to each side of a coarse vertex

// The fixes that a vertex may move to.
struct Candidates {
  uint32_t count = 0;
  std::array<uint32_t, 2 * kReach + 1> index = {};
};

// The distances between the candidates of two vertices: 25 geodesics serve up to 3125 combinations.
using LegTable = std::array<std::array<double, 2 * kReach + 1>, 2 * kReach + 1>;

struct Refinement {
  const TaskShape* shape = nullptr;
  std::array<Candidates, 5> candidates = {};
  std::array<LegTable, 4> leg_m = {};
  LegTable closing_m = {};
};

using Choice = std::array<uint32_t, 5>;  // of candidates, a place per vertex

// Vertex k can be no later than leaves a point for each vertex after it.
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

void FillLeg(std::span<const TrackPoint> points, const Refinement& refinement, TaskLeg leg,
             LegTable& table) {
  const Candidates& from = refinement.candidates[leg.from];
  const Candidates& to = refinement.candidates[leg.to];
  for (uint32_t i = 0; i < from.count; ++i) {
    for (uint32_t j = 0; j < to.count; ++j) {
      table[i][j] = LegBetween_m(points[from.index[i]], points[to.index[j]]);
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
  AddUpTask(shape, result);
  return result;
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

// The next combination, the last vertex changing first, which makes the order of equals. Returns
// false after the last one.
bool NextChoice(const Refinement& refinement, Choice& choice) {
  for (uint32_t k = refinement.shape->vertices; k > 0; --k) {
    if (++choice[k - 1] < refinement.candidates[k - 1].count) return true;
    choice[k - 1] = 0;
  }
  return false;
}

}  // namespace

TaskResult RefineTask(std::span<const TrackPoint> points, OptimiseTask task,
                      const CoarseVertices& coarse, const OptimiseSettings& settings) {
  if (coarse.count == 0) return {};
  const TaskShape& shape = ShapeOf(task);
  const bool is_return = task == OptimiseTask::kOutAndReturn;
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
    if (is_return && result.score_m <= 0) continue;
    // Of equal scores the later combination counts.
    if (best.vertices == 0 || result.score_m >= best.score_m) best = result;
  }
  // Rounding to whole metres may have let an out-and-return close that as a geodesic does not. It
  // is a result all the same; triangles are not.
  if (best.vertices == 0 && is_return) {
    best = {.vertices = shape.vertices, .indices = coarse.points};
    MeasureTask(points, shape, best);
  }
  return best;
}

}  // namespace skyhaul
