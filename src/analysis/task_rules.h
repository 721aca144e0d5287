#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "analysis/optimise.h"
#include "core/track_point.h"

namespace skyhaul {

inline constexpr double kFaiSide = 0.28;  // least part of an FAI triangle's perimeter

// Two vertices of a task, by their places.
struct TaskLeg {
  uint32_t from;
  uint32_t to;
};

// How a task is measured: which legs lie between which of its vertices.
struct TaskShape {
  uint32_t vertices = 0;
  uint32_t legs = 0;
  std::array<TaskLeg, 4> leg = {};
  double legs_factor = 1;  // of the sum of legs in the distance
  bool closed = false;
  TaskLeg closing = {};
};

const TaskShape& ShapeOf(OptimiseTask task);

// The geodesic distance of two fixes, 0 when it cannot be computed.
double LegBetween_m(const TrackPoint& from, const TrackPoint& to);

// Fills legs, distance, closing and score of a result that has its vertices.
void MeasureTask(std::span<const TrackPoint> points, const TaskShape& shape, TaskResult& result);

// Distance and score from legs and closing.
void AddUpTask(const TaskShape& shape, TaskResult& result);

// Whether a measured result keeps the rules of its task: the closing distance at most the gap
// (out-and-return) or below it (triangles), no side below 28 % (FAI triangle), kFaiRuleLeg_m
// between the turnpoints of 4 and 5 points with the FAI rule, no triangle with a negative score.
bool KeepsRules(OptimiseTask task, const OptimiseSettings& settings, const TaskResult& result);

}  // namespace skyhaul
