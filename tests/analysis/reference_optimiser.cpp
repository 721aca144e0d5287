#include "tests/analysis/reference_optimiser.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <tuple>
#include <vector>

#include "analysis/projection.h"
#include "analysis/task_rules.h"
#include "core/geodesy/geodesic.h"
#include "core/units.h"

namespace skyhaul {

double Way_m(const TrackPoint& from, const TrackPoint& to) {
  return std::max(0.0,
                  GeodesicDistance_m(SemicirclesToRadians(from.lat), SemicirclesToRadians(from.lon),
                                     SemicirclesToRadians(to.lat), SemicirclesToRadians(to.lon)));
}

TaskResult MeasuredTask(std::span<const TrackPoint> points, OptimiseTask task,
                        std::span<const uint32_t> at) {
  const auto way = [&](size_t from, size_t to) { return Way_m(points[at[from]], points[at[to]]); };
  const bool is_return = task == OptimiseTask::kOutAndReturn;
  TaskResult result = {.vertices = static_cast<uint32_t>(at.size())};
  std::copy(at.begin(), at.end(), result.indices.begin());
  if (is_return) {
    result.legs_m = {way(0, 1)};
    result.closing_m = way(0, 2);
  } else if (task > OptimiseTask::kOutAndReturn) {
    result.legs_m = {way(1, 2), way(2, 3), way(1, 3)};
    result.closing_m = way(0, 4);
  } else {
    for (size_t k = 0; k + 1 < at.size(); ++k) result.legs_m[k] = way(k, k + 1);
  }
  result.distance_m =
      (is_return ? 2 : 1) * std::accumulate(result.legs_m.begin(), result.legs_m.end(), 0.0);
  result.score_m = result.distance_m - result.closing_m;
  return result;
}

namespace {

using Vertices = std::vector<uint32_t>;         // empty: nothing found
using Closing = std::tuple<int32_t, int, int>;  // distance, start, minus finish: the least counts

// From or to a point, without it. The last of equal ones wins where they are offered.
struct Chain {
  int32_t length_m = -1;
  Vertices at;
};

void Offer(Chain& best, int32_t length_m, const Vertices& at) {
  if (length_m >= best.length_m) best = {length_m, at};
}

using Chains = std::vector<Chain>;

struct Reference {
  std::span<const TrackPoint> points;
  OptimiseSettings settings;
  std::vector<uint32_t> kept;
  std::vector<std::vector<int32_t>> d;
  std::vector<std::vector<Closing>> closing;  // t1, t3
  Chains before, two_before;                  // by the point that they end at
  Chains after, two_after;

  uint32_t Size() const { return static_cast<uint32_t>(kept.size()); }
};

void Reduce(Reference& r) {
  const size_t n = r.points.size();
  for (size_t i = 0; i < n; ++i) {
    const bool kept = n <= 2000 || i == 0 || 1999 * (i + 1) / n > 1999 * i / n;
    if (kept) r.kept.push_back(static_cast<uint32_t>(i));
  }
}

void FillMatrix(Reference& r) {
  const PlaneProjection projection = ProjectionFor(r.points);
  std::vector<PlanePoint> places;
  for (const uint32_t i : r.kept) {
    places.push_back(ToPlane(projection, r.points[i].lat, r.points[i].lon));
  }
  r.d.assign(r.Size(), std::vector<int32_t>(r.Size(), 0));
  r.before = r.two_before = r.after = r.two_after = Chains(r.Size());
  for (uint32_t i = 0; i < r.Size(); ++i) {
    for (uint32_t j = i + 1; j < r.Size(); ++j) {
      const double dx = places[i].x_m - places[j].x_m;
      const double dy = places[i].y_m - places[j].y_m;
      const double above = std::sqrt(dx * dx + dy * dy) + 0.5;
      const auto d = static_cast<int32_t>(above);
      r.d[i][j] = r.d[j][i] = d;
      if (d > r.after[i].length_m) r.after[i] = {d, {j}};
      if (d > r.before[j].length_m) r.before[j] = {d, {i}};
    }
  }
}

void FillLongerChains(Reference& r) {
  for (uint32_t i = 1; i + 2 < r.Size(); ++i) {
    for (uint32_t j = i + 1; j + 1 < r.Size(); ++j) {
      const int32_t d = r.d[i][j];
      if (r.settings.fai_rule && d <= 9999) continue;
      Offer(r.two_before[j], r.before[i].length_m + d, {r.before[i].at[0], i});
      Offer(r.two_after[i], d + r.after[j].length_m, {j, r.after[j].at[0]});
    }
  }
}

Vertices CoarseFree(const Chains& before, const Chains& after) {
  Chain best;
  for (uint32_t i = 0; i < before.size(); ++i) {
    if (before[i].length_m < 0 || after[i].length_m < 0) continue;
    Vertices at = before[i].at;
    at.push_back(i);
    at.insert(at.end(), after[i].at.begin(), after[i].at.end());
    Offer(best, before[i].length_m + after[i].length_m, at);
  }
  return best.at;
}

Vertices CoarseOutAndReturn(const Reference& r) {
  Chain best;
  for (uint32_t a = 0; a < r.Size(); ++a) {
    const int32_t* from_a = r.d[a].data();
    for (uint32_t b = a + 1; b < r.Size(); ++b) {
      for (uint32_t c = b + 1; c < r.Size(); ++c) {
        const int32_t score_m = 2 * from_a[b] - from_a[c];
        if (score_m > best.length_m && from_a[c] < r.settings.gap_m) best = {score_m, {a, b, c}};
      }
    }
  }
  return best.at;
}

// The best pair for t1 and t3 is that of a smaller t1, that of a greater t3, or t1 and t3.
void FillClosing(Reference& r) {
  const uint32_t m = r.Size();
  r.closing.assign(m, std::vector<Closing>(m));
  for (uint32_t t1 = 0; t1 < m; ++t1) {
    for (uint32_t t3 = m - 1; t3 > t1; --t3) {
      Closing best = {r.d[t1][t3], static_cast<int>(t1), -static_cast<int>(t3)};
      if (t1 > 0) best = std::min(best, r.closing[t1 - 1][t3]);
      if (t3 + 1 < m) best = std::min(best, r.closing[t1][t3 + 1]);
      r.closing[t1][t3] = best;
    }
  }
}

Vertices CoarseTriangle(const Reference& r, bool fai) {
  Chain best;
  for (uint32_t t1 = 0; t1 < r.Size(); ++t1) {
    for (uint32_t t3 = t1 + 2; t3 < r.Size(); ++t3) {
      const auto [closing_m, start, minus_finish] = r.closing[t1][t3];
      if (closing_m >= r.settings.gap_m) continue;
      const int32_t* from_t1 = r.d[t1].data();
      const int32_t* from_t3 = r.d[t3].data();
      const int32_t d13 = from_t1[t3];
      for (uint32_t t2 = t1 + 1; t2 < t3; ++t2) {
        const int32_t p = from_t1[t2] + from_t3[t2] + d13;
        if (p - closing_m <= best.length_m) continue;
        if (fai && (p * 7) / 25 > std::min({from_t1[t2], from_t3[t2], d13})) continue;
        best = {p - closing_m,
                {static_cast<uint32_t>(start), t1, t2, t3, static_cast<uint32_t>(-minus_finish)}};
      }
    }
  }
  return best.at;
}

// Every ascending combination within 2 points of the coarse vertices, the last vertex fastest: the
// digits of a number to the base 5.
TaskResult Refine(const Reference& r, OptimiseTask task, const Vertices& coarse) {
  if (coarse.empty()) return {};
  TaskResult best;
  Vertices at(coarse.size());
  for (int code = 0; code < std::pow(5, coarse.size()); ++code) {
    bool ascends = true;
    int rest = code;
    // What is below 0 wraps to more than there are.
    for (size_t k = at.size(); k-- > 0; rest /= 5) {
      at[k] = r.kept[coarse[k]] + static_cast<uint32_t>(rest % 5) - 2;
    }
    for (size_t k = 0; k < at.size(); ++k) {
      ascends &= at[k] < r.points.size() && (k == 0 || at[k - 1] < at[k]);
    }
    if (!ascends) continue;
    const TaskResult result = MeasuredTask(r.points, task, at);
    if (!KeepsRules(task, r.settings, result)) continue;
    if (task == OptimiseTask::kOutAndReturn && result.score_m <= 0) continue;
    if (best.vertices == 0 || result.score_m >= best.score_m) best = result;
  }
  if (best.vertices > 0 || task != OptimiseTask::kOutAndReturn) return best;
  for (size_t k = 0; k < at.size(); ++k) at[k] = r.kept[coarse[k]];
  return MeasuredTask(r.points, task, at);
}

}  // namespace

OptimiseResult ReferenceOptimise(std::span<const TrackPoint> points,
                                 const OptimiseSettings& settings) {
  Reference r = {.points = points, .settings = settings};
  Reduce(r);
  FillMatrix(r);
  FillLongerChains(r);
  std::vector<Vertices> coarse = {CoarseFree(Chains(r.Size(), {.length_m = 0}), r.after),
                                  CoarseFree(r.before, r.after), CoarseFree(r.before, r.two_after),
                                  CoarseFree(r.two_before, r.two_after)};
  if (settings.gap_m > 0) {
    FillClosing(r);
    coarse.insert(coarse.end(),
                  {CoarseOutAndReturn(r), CoarseTriangle(r, false), CoarseTriangle(r, true)});
  }
  OptimiseResult result = {.valid = true};
  for (size_t i = 0; i < coarse.size(); ++i) {
    result.tasks[i] = Refine(r, static_cast<OptimiseTask>(i), coarse[i]);
  }
  return result;
}

}  // namespace skyhaul
