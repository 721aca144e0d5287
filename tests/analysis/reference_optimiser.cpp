#include "tests/analysis/reference_optimiser.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <vector>

#include "analysis/projection.h"
#include "tests/analysis/measured_task.h"

namespace skyhaul {

namespace {

using Vertices = std::vector<uint32_t>;  // empty: nothing found

struct Closing {
  int32_t distance_m = 999999999;
  uint32_t start = 0;
  uint32_t finish = 0;
};

struct Farthest {
  int distance_m = -1;
  uint32_t at = 0;
};

struct Reference {
  std::span<const TrackPoint> points;
  OptimiseSettings settings;
  std::vector<uint32_t> kept;
  std::vector<std::vector<int32_t>> d;
  std::vector<Closing> closing;  // t1 * size + t3
  std::vector<Farthest> before;
  std::vector<Farthest> after;

  uint32_t Size() const { return static_cast<uint32_t>(kept.size()); }
};

void Reduce(Reference& r) {
  const size_t n = r.points.size();
  size_t sum = n;
  for (size_t i = 0; i < n; ++i) {
    if (n > 2000) {
      sum += 1999;
      if (sum < n) continue;
      sum -= n;
    }
    r.kept.push_back(static_cast<uint32_t>(i));
  }
}

void FillMatrix(Reference& r) {
  const PlaneProjection projection = ProjectionFor(r.points);
  std::vector<PlanePoint> places;
  for (const uint32_t i : r.kept) {
    places.push_back(ToPlane(projection, r.points[i].lat, r.points[i].lon));
  }
  r.d.assign(r.Size(), std::vector<int32_t>(r.Size(), 0));
  r.before.resize(r.Size());
  r.after.resize(r.Size());
  for (uint32_t i = 0; i < r.Size(); ++i) {
    for (uint32_t j = i + 1; j < r.Size(); ++j) {
      const double dx = places[i].x_m - places[j].x_m;
      const double dy = places[i].y_m - places[j].y_m;
      const double above = std::sqrt(dx * dx + dy * dy) + 0.5;
      const int d = static_cast<int>(above);
      r.d[i][j] = r.d[j][i] = d;
      if (d > r.after[i].distance_m) r.after[i] = {d, j};
      if (d > r.before[j].distance_m) r.before[j] = {d, i};
    }
  }
}

// The last of equal ones wins.
struct Best {
  int score_m = -1;
  Vertices at;
};

void Offer(Best& best, int score_m, const Vertices& at) {
  if (score_m >= best.score_m) best = {score_m, at};
}

bool LongEnough(const Reference& r, uint32_t i, uint32_t j) {
  return !r.settings.fai_rule || r.d[i][j] > 9999;
}

Vertices Coarse2(const Reference& r) {
  Best best;
  for (uint32_t a = 0; a + 1 < r.Size(); ++a) {
    Offer(best, r.after[a].distance_m, {a, r.after[a].at});
  }
  return best.at;
}

Vertices Coarse3(const Reference& r) {
  Best best;
  for (uint32_t b = 1; b + 1 < r.Size(); ++b) {
    Offer(best, r.before[b].distance_m + r.after[b].distance_m, {r.before[b].at, b, r.after[b].at});
  }
  return best.at;
}

Vertices Coarse4(const Reference& r) {
  Best best;
  for (uint32_t b = 1; b + 2 < r.Size(); ++b) {
    for (uint32_t c = b + 1; c + 1 < r.Size(); ++c) {
      if (!LongEnough(r, b, c)) continue;
      Offer(best, r.before[b].distance_m + r.d[b][c] + r.after[c].distance_m,
            {r.before[b].at, b, c, r.after[c].at});
    }
  }
  return best.at;
}

Vertices Coarse5(const Reference& r) {
  Best best;
  for (uint32_t c = 2; c + 2 < r.Size(); ++c) {
    Best first;
    for (uint32_t b = 1; b < c; ++b) {
      if (LongEnough(r, b, c)) Offer(first, r.before[b].distance_m + r.d[b][c], {b});
    }
    Best rest;
    for (uint32_t d = c + 1; d + 1 < r.Size(); ++d) {
      if (LongEnough(r, c, d)) Offer(rest, r.d[c][d] + r.after[d].distance_m, {d});
    }
    if (first.at.empty() || rest.at.empty()) continue;
    const uint32_t b = first.at[0];
    const uint32_t d = rest.at[0];
    Offer(best, first.score_m + rest.score_m, {r.before[b].at, b, c, d, r.after[d].at});
  }
  return best.at;
}

Vertices CoarseOutAndReturn(const Reference& r) {
  Vertices best;
  int best_m = -999999999;
  for (uint32_t a = 0; a < r.Size(); ++a) {
    const int32_t* from_a = r.d[a].data();
    for (uint32_t b = a + 1; b < r.Size(); ++b) {
      for (uint32_t c = b + 1; c < r.Size(); ++c) {
        const int score = 2 * from_a[b] - from_a[c];
        if (score <= best_m || from_a[c] >= r.settings.gap_m) continue;
        best_m = score;
        best = {a, b, c};
      }
    }
  }
  return best_m >= 0 ? best : Vertices{};
}

bool Closer(const Closing& one, const Closing& other) {
  if (one.distance_m != other.distance_m) return one.distance_m < other.distance_m;
  if (one.start != other.start) return one.start < other.start;
  return one.finish > other.finish;
}

// The best pair for t1 and t3 is that of a smaller t1, that of a greater t3, or t1 and t3.
void FillClosing(Reference& r) {
  const uint32_t m = r.Size();
  r.closing.assign(size_t{m} * m, {});
  for (uint32_t t1 = 0; t1 < m; ++t1) {
    for (uint32_t t3 = m - 1; t3 > t1; --t3) {
      Closing best = {r.d[t1][t3], t1, t3};
      if (t1 > 0) best = std::min(best, r.closing[size_t{t1 - 1} * m + t3], Closer);
      if (t3 + 1 < m) best = std::min(best, r.closing[size_t{t1} * m + t3 + 1], Closer);
      r.closing[size_t{t1} * m + t3] = best;
    }
  }
}

Vertices CoarseTriangle(const Reference& r, bool fai) {
  Vertices best;
  int best_m = -1;
  for (uint32_t t1 = 0; t1 < r.Size(); ++t1) {
    for (uint32_t t3 = t1 + 2; t3 < r.Size(); ++t3) {
      const Closing& closing = r.closing[size_t{t1} * r.Size() + t3];
      if (closing.distance_m >= r.settings.gap_m) continue;
      const int32_t* from_t1 = r.d[t1].data();
      const int32_t* from_t3 = r.d[t3].data();
      const int d13 = from_t1[t3];
      for (uint32_t t2 = t1 + 1; t2 < t3; ++t2) {
        const int p = from_t1[t2] + from_t3[t2] + d13;
        if (p - closing.distance_m <= best_m) continue;
        const int least = (p * 7) / 25;
        const int shortest = std::min({from_t1[t2], from_t3[t2], d13});
        if (fai && least > shortest) continue;
        best_m = p - closing.distance_m;
        best = {closing.start, t1, t2, t3, closing.finish};
      }
    }
  }
  return best;
}

// Every ascending combination within 2 points of the coarse vertices, the last vertex fastest.
void ForEachNear(const Vertices& coarse, uint32_t count, Vertices& at,
                 const std::function<void(const Vertices&)>& visit) {
  const size_t k = at.size();
  if (k == coarse.size()) return visit(at);
  for (int step = -2; step <= 2; ++step) {
    const int64_t index = int64_t{coarse[k]} + step;
    if (index < (k == 0 ? 0 : int64_t{at.back()} + 1) || index >= count) continue;
    at.push_back(static_cast<uint32_t>(index));
    ForEachNear(coarse, count, at, visit);
    at.pop_back();
  }
}

TaskResult Refine(const Reference& r, OptimiseTask task, Vertices coarse) {
  if (coarse.empty()) return {};
  for (uint32_t& vertex : coarse) vertex = r.kept[vertex];
  TaskResult best;
  Vertices at;
  ForEachNear(coarse, static_cast<uint32_t>(r.points.size()), at, [&](const Vertices& vertices) {
    const TaskResult result = MeasuredTask(r.points, task, vertices);
    if (!IsAllowed(task, r.settings, result)) return;
    if (task == OptimiseTask::kOutAndReturn && result.score_m <= 0) return;
    if (best.vertices == 0 || result.score_m >= best.score_m) best = result;
  });
  if (best.vertices == 0 && task == OptimiseTask::kOutAndReturn) {
    return MeasuredTask(r.points, task, coarse);
  }
  return best;
}

}  // namespace

OptimiseResult ReferenceOptimise(std::span<const TrackPoint> points,
                                 const OptimiseSettings& settings) {
  Reference r = {.points = points, .settings = settings};
  Reduce(r);
  FillMatrix(r);
  OptimiseResult result = {.valid = true};
  const auto refine = [&](OptimiseTask task, const Vertices& coarse) {
    result.tasks[static_cast<size_t>(task)] = Refine(r, task, coarse);
  };
  refine(OptimiseTask::kFree2, Coarse2(r));
  refine(OptimiseTask::kFree3, Coarse3(r));
  refine(OptimiseTask::kFree4, Coarse4(r));
  refine(OptimiseTask::kFree5, Coarse5(r));
  if (settings.gap_m == 0) return result;
  FillClosing(r);
  refine(OptimiseTask::kOutAndReturn, CoarseOutAndReturn(r));
  refine(OptimiseTask::kFlatTriangle, CoarseTriangle(r, false));
  refine(OptimiseTask::kFaiTriangle, CoarseTriangle(r, true));
  return result;
}

}  // namespace skyhaul
