#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "core/operation.h"
#include "core/track_point.h"

namespace skyhaul {

// What a flight is measured by.
enum class OptimiseTask : uint32_t {
  kFree2,         // greatest distance over 2 points
  kFree3,         // over 3 points
  kFree4,         // over 4 points
  kFree5,         // over 5 points
  kOutAndReturn,  // start, turn, finish
  kFlatTriangle,  // start, three turnpoints, finish
  kFaiTriangle,   // likewise, no side below 28 % of the perimeter
};
inline constexpr size_t kOptimiseTasks = 7;

inline constexpr double kFaiRuleLeg_m = 10000;  // least leg between turnpoints with the FAI rule

struct OptimiseSettings {
  int32_t gap_m = 0;      // greatest closing distance; 0 switches the closed tasks off
  bool fai_rule = false;  // legs between turnpoints of the 4 and 5 point tasks have a least length
};

// The result of one task. Distances are geodesics on WGS-84 in metres.
struct TaskResult {
  uint32_t vertices = 0;                 // 2 to 5; 0: there is no result
  std::array<uint32_t, 5> indices = {};  // into the track, ascending
  std::array<double, 4> legs_m = {};  // free: leg by leg; out-and-return: the way out; triangles:
                                      // first to second, second to third, first to third turnpoint
  double distance_m = 0;  // free: sum of legs; out-and-return: twice the way out; perimeter
  double closing_m = 0;   // start to finish, closed tasks only
  double score_m = 0;     // free: the distance; closed tasks: distance less closing
  bool optimal = false;   // proved by the exact search
  double bound_m = 0;     // the exact search: no track of this task scores more
};

struct OptimiseResult {
  bool valid = false;
  bool exact = false;          // computed by OptimiseTrackExact
  bool stopped = false;        // aborted or out of time: the best so far
  size_t searched_points = 0;  // that vertices were taken from: all fixes, or those of the reduced
                               // track before refining
  std::array<TaskResult, kOptimiseTasks> tasks = {};
  uint32_t elapsed_ms = 0;
  size_t memory_bytes = 0;  // about the most that the search held at once
};

inline const TaskResult& ResultOf(const OptimiseResult& result, OptimiseTask task) {
  return result.tasks[static_cast<size_t>(task)];
}

// Finds the best of each task on a copy of the track reduced to at most 2000 points, with distances
// in whole metres on a plane, and refines the results on the whole track with geodesics, each
// vertex by up to two points. The result is the same as that of plain loops over all combinations:
// free_distance.h, closed_tasks.h, triangle_search.h and refine.h say which of several equal ones
// counts.
//
// points may be empty or few: tasks that need more have no result. operation may be null; its shell
// gets a status text for each step, and its abort flag is looked at often enough to end the search
// within some 30 ms. Returns 0, or -1 when the matrix cannot be allocated or the search was
// aborted; then result is not valid.
//
// Memory: 16.5 MB, less below 2000 points. Time on one core of 2.6 GHz with AVX2: 14 ms for a
// closed flight of 30 000 fixes, up to 105 ms for one that flies the same circle or ridge over and
// over. The slowest known tracks jump at random between a few spots, as no flight does: 180 ms.
int OptimiseTrack(std::span<const TrackPoint> points, const OptimiseSettings& settings,
                  OptimiseResult& result, const Operation* operation);

}  // namespace skyhaul
