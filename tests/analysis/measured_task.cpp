#include "tests/analysis/measured_task.h"

#include <algorithm>

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
  TaskResult result = {.vertices = static_cast<uint32_t>(at.size())};
  std::copy(at.begin(), at.end(), result.indices.begin());
  if (task == OptimiseTask::kOutAndReturn) {
    result.legs_m = {way(0, 1)};
    result.distance_m = 2 * way(0, 1);
    result.closing_m = way(0, 2);
  } else if (task == OptimiseTask::kFlatTriangle || task == OptimiseTask::kFaiTriangle) {
    result.legs_m = {way(1, 2), way(2, 3), way(1, 3)};
    result.distance_m = way(1, 2) + way(2, 3) + way(1, 3);
    result.closing_m = way(0, 4);
  } else {
    for (size_t k = 0; k + 1 < at.size(); ++k) {
      result.legs_m[k] = way(k, k + 1);
      result.distance_m += result.legs_m[k];
    }
  }
  result.score_m = result.distance_m - result.closing_m;
  return result;
}

bool IsAllowed(OptimiseTask task, const OptimiseSettings& settings, const TaskResult& result) {
  const auto& [first_m, second_m, third_m, fourth_m] = result.legs_m;
  const double least_m = settings.fai_rule ? 10000 : 0;
  if (task == OptimiseTask::kFree4) return second_m >= least_m;
  if (task == OptimiseTask::kFree5) return std::min(second_m, third_m) >= least_m;
  if (task == OptimiseTask::kOutAndReturn) return result.closing_m <= settings.gap_m;
  if (task == OptimiseTask::kFree2 || task == OptimiseTask::kFree3) return true;
  const bool fai = std::min({first_m, second_m, third_m}) >= 0.28 * result.distance_m;
  return result.closing_m < settings.gap_m && result.score_m >= 0 &&
         (fai || task == OptimiseTask::kFlatTriangle);
}

}  // namespace skyhaul
