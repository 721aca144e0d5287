#include "tests/analysis/reference_optimiser.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <vector>

#include "analysis/geodesic.h"
#include "analysis/projection.h"
#include "core/units.h"

namespace skyhaul {

namespace {

using Vertices = std::vector<uint32_t>;  // empty: nothing found

struct Closing {
  int32_t distance_m = 999999999;
  uint32_t start = 0;
  uint32_t finish = 0;
};

struct Reference {
  std::span<const TrackPoint> points;
  OptimiseSettings settings;
  std::vector<uint32_t> kept;
  std::vector<std::vector<int32_t>> d;
  std::vector<Closing> closing;  // t1 * size + t3
  std::vector<int> farthest_before;
  std::vector<int> farthest_after;

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
  r.farthest_before.assign(r.Size(), -1);
  r.farthest_after.assign(r.Size(), -1);
  for (uint32_t i = 0; i < r.Size(); ++i) {
    for (uint32_t j = i + 1; j < r.Size(); ++j) {
      const double dx = places[i].x_m - places[j].x_m;
      const double dy = places[i].y_m - places[j].y_m;
      const double above = std::sqrt(dx * dx + dy * dy) + 0.5;
      const int d = static_cast<int>(above);
      r.d[i][j] = r.d[j][i] = d;
      int& after = r.farthest_after[i];
      int& before = r.farthest_before[j];
      if (after < 0 || d > r.d[i][static_cast<uint32_t>(after)]) after = static_cast<int>(j);
      if (before < 0 || d > r.d[j][static_cast<uint32_t>(before)]) before = static_cast<int>(i);
    }
  }
}

uint32_t After(const Reference& r, uint32_t i) {
  return static_cast<uint32_t>(r.farthest_after[i]);
}

uint32_t Before(const Reference& r, uint32_t i) {
  return static_cast<uint32_t>(r.farthest_before[i]);
}

int Ahead(const Reference& r, uint32_t i) {
  return r.d[i][After(r, i)];
}

int Behind(const Reference& r, uint32_t i) {
  return r.d[Before(r, i)][i];
}

Vertices Coarse2(const Reference& r) {
  Vertices best;
  int best_m = -1;
  for (uint32_t i = 0; i + 1 < r.Size(); ++i) {
    if (Ahead(r, i) < best_m) continue;
    best_m = Ahead(r, i);
    best = {i, After(r, i)};
  }
  return best;
}

Vertices Coarse3(const Reference& r) {
  Vertices best;
  int best_m = -1;
  for (uint32_t k = 1; k + 1 < r.Size(); ++k) {
    if (Behind(r, k) + Ahead(r, k) < best_m) continue;
    best_m = Behind(r, k) + Ahead(r, k);
    best = {Before(r, k), k, After(r, k)};
  }
  return best;
}

bool LongEnough(const Reference& r, uint32_t i, uint32_t j) {
  return !r.settings.fai_rule || r.d[i][j] > 9999;
}

Vertices Coarse4(const Reference& r) {
  Vertices best;
  int best_m = -1;
  for (uint32_t b = 1; b + 2 < r.Size(); ++b) {
    for (uint32_t c = b + 1; c + 1 < r.Size(); ++c) {
      const int sum = Behind(r, b) + r.d[b][c] + Ahead(r, c);
      if (!LongEnough(r, b, c) || sum < best_m) continue;
      best_m = sum;
      best = {Before(r, b), b, c, After(r, c)};
    }
  }
  return best;
}

Vertices Coarse5(const Reference& r) {
  Vertices best;
  int best_m = -1;
  for (uint32_t c = 2; c + 2 < r.Size(); ++c) {
    int b = -1;
    int first_m = -1;
    for (uint32_t i = 1; i < c; ++i) {
      if (!LongEnough(r, i, c) || Behind(r, i) + r.d[i][c] < first_m) continue;
      first_m = Behind(r, i) + r.d[i][c];
      b = static_cast<int>(i);
    }
    int d = -1;
    int rest_m = -1;
    for (uint32_t i = c + 1; i + 1 < r.Size(); ++i) {
      if (!LongEnough(r, c, i) || r.d[c][i] + Ahead(r, i) < rest_m) continue;
      rest_m = r.d[c][i] + Ahead(r, i);
      d = static_cast<int>(i);
    }
    if (b < 0 || d < 0 || first_m + rest_m < best_m) continue;
    best_m = first_m + rest_m;
    const auto second = static_cast<uint32_t>(b);
    const auto fourth = static_cast<uint32_t>(d);
    best = {Before(r, second), second, c, fourth, After(r, fourth)};
  }
  return best;
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

double Geodesic_m(const Reference& r, uint32_t i, uint32_t j) {
  const TrackPoint& from = r.points[i];
  const TrackPoint& to = r.points[j];
  const double distance_m =
      GeodesicDistance_m(SemicirclesToRadians(from.lat), SemicirclesToRadians(from.lon),
                         SemicirclesToRadians(to.lat), SemicirclesToRadians(to.lon));
  return distance_m < 0 ? 0 : distance_m;
}

TaskResult FreeResult(const Reference& r, const Vertices& at) {
  TaskResult result;
  for (size_t k = 0; k + 1 < at.size(); ++k) {
    result.legs_m[k] = Geodesic_m(r, at[k], at[k + 1]);
    result.distance_m += result.legs_m[k];
  }
  result.score_m = result.distance_m;
  return result;
}

TaskResult OutAndReturnResult(const Reference& r, const Vertices& at) {
  TaskResult result;
  result.legs_m[0] = Geodesic_m(r, at[0], at[1]);
  result.distance_m = 2 * result.legs_m[0];
  result.closing_m = Geodesic_m(r, at[0], at[2]);
  result.score_m = result.distance_m - result.closing_m;
  return result;
}

TaskResult TriangleResult(const Reference& r, const Vertices& at) {
  TaskResult result;
  result.legs_m = {Geodesic_m(r, at[1], at[2]), Geodesic_m(r, at[2], at[3]),
                   Geodesic_m(r, at[1], at[3])};
  result.distance_m = result.legs_m[0] + result.legs_m[1] + result.legs_m[2];
  result.closing_m = Geodesic_m(r, at[0], at[4]);
  result.score_m = result.distance_m - result.closing_m;
  return result;
}

TaskResult ResultAt(const Reference& r, OptimiseTask task, const Vertices& at) {
  TaskResult result;
  if (task == OptimiseTask::kOutAndReturn) {
    result = OutAndReturnResult(r, at);
  } else if (task == OptimiseTask::kFlatTriangle || task == OptimiseTask::kFaiTriangle) {
    result = TriangleResult(r, at);
  } else {
    result = FreeResult(r, at);
  }
  result.vertices = static_cast<uint32_t>(at.size());
  std::copy(at.begin(), at.end(), result.indices.begin());
  return result;
}

bool Allowed(const Reference& r, OptimiseTask task, const TaskResult& result) {
  const auto& legs_m = result.legs_m;
  if (task == OptimiseTask::kFree4 && r.settings.fai_rule) return legs_m[1] >= 10000.0;
  if (task == OptimiseTask::kFree5 && r.settings.fai_rule) {
    return legs_m[1] >= 10000.0 && legs_m[2] >= 10000.0;
  }
  if (task == OptimiseTask::kOutAndReturn) {
    return result.closing_m <= r.settings.gap_m && result.score_m > 0;
  }
  if (task == OptimiseTask::kFlatTriangle || task == OptimiseTask::kFaiTriangle) {
    if (result.closing_m >= r.settings.gap_m || result.score_m < 0) return false;
  }
  if (task != OptimiseTask::kFaiTriangle) return true;
  return legs_m[0] >= 0.28 * result.distance_m && legs_m[1] >= 0.28 * result.distance_m &&
         legs_m[2] >= 0.28 * result.distance_m;
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
    const TaskResult result = ResultAt(r, task, vertices);
    if (!Allowed(r, task, result)) return;
    if (best.vertices == 0 || result.score_m >= best.score_m) best = result;
  });
  if (best.vertices == 0 && task == OptimiseTask::kOutAndReturn) return ResultAt(r, task, coarse);
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
