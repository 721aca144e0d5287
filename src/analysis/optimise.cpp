#include "analysis/optimise.h"

#include <chrono>
#include <cstdio>

#include "analysis/closed_tasks.h"
#include "analysis/distance_table.h"
#include "analysis/free_distance.h"
#include "analysis/reduce.h"
#include "analysis/refine.h"
#include "analysis/triangle_search.h"

namespace skyhaul {

namespace {

struct Work {
  std::span<const TrackPoint> points;
  const OptimiseSettings* settings = nullptr;
  const Operation* operation = nullptr;
  ReducedTrack track;
  DistanceTable table;
};

bool Aborted(const Work& work) {
  return work.operation != nullptr && work.operation->aborted;
}

void Announce(const Work& work, const char* text) {
  if (work.operation != nullptr) ShowStatus(*work.operation, text);
}

// Refines a coarse result, after its vertices have become fixes of the whole track.
void Finish(const Work& work, OptimiseTask task, CoarseVertices coarse, OptimiseResult& result) {
  for (uint32_t k = 0; k < coarse.count; ++k) {
    coarse.points[k] = work.track.indices[coarse.points[k]];
  }
  result.tasks[static_cast<size_t>(task)] = RefineTask(work.points, task, coarse, *work.settings);
}

// Returns -1 when aborted.
int ComputeFree(const Work& work, OptimiseResult& result) {
  const bool fai_rule = work.settings->fai_rule;
  Announce(work, "Computing greatest distance (2 points)");
  Finish(work, OptimiseTask::kFree2, Farthest2Points(work.table), result);
  Announce(work, "Computing greatest distance (3 points)");
  Finish(work, OptimiseTask::kFree3, Farthest3Points(work.table), result);
  if (Aborted(work)) return -1;
  Announce(work, "Computing greatest distance (4 points)");
  Finish(work, OptimiseTask::kFree4, Farthest4Points(work.table, fai_rule), result);
  if (Aborted(work)) return -1;
  Announce(work, "Computing greatest distance (5 points)");
  Finish(work, OptimiseTask::kFree5, Farthest5Points(work.table, fai_rule), result);
  return Aborted(work) ? -1 : 0;
}

int ComputeClosed(Work& work, OptimiseResult& result) {
  if (work.settings->gap_m <= 0) return 0;
  Announce(work, "Computing out-and-return distance");
  Finish(work, OptimiseTask::kOutAndReturn, BestOutAndReturn(work.table, work.settings->gap_m),
         result);
  Announce(work, "Computing triangle distance");
  // Last, because it uses up the table of distances.
  CoarseTriangles triangles;
  if (SearchTriangles(work.track, work.settings->gap_m, work.table, triangles, work.operation) < 0)
    return -1;
  Finish(work, OptimiseTask::kFlatTriangle, triangles.flat, result);
  Finish(work, OptimiseTask::kFaiTriangle, triangles.fai, result);
  return 0;
}

size_t BytesOf(const Work& work) {
  // Index and place of each reduced point.
  const size_t point = sizeof(uint32_t) + 2 * sizeof(double);
  const size_t closed = work.settings->gap_m > 0 ? TriangleSearchBytes(work.table) : 0;
  return BytesOf(work.table) + closed + work.track.indices.size() * point;
}

void AnnounceEnd(const Work& work, uint32_t elapsed_ms) {
  char text[64];
  std::snprintf(text, sizeof text, "Computing completed (%u.%03u secs)", elapsed_ms / 1000,
                elapsed_ms % 1000);
  Announce(work, text);
}

}  // namespace

int OptimiseTrack(std::span<const TrackPoint> points, const OptimiseSettings& settings,
                  OptimiseResult& result, const Operation* operation) {
  const auto start = std::chrono::steady_clock::now();
  result = {};
  Work work = {.points = points, .settings = &settings, .operation = operation};
  Announce(work, "Computing distance matrix");
  work.track = ReduceTrack(points);
  if (FillDistances(work.track, work.table, operation) < 0) return -1;
  if (ComputeFree(work, result) < 0 || ComputeClosed(work, result) < 0) {
    result = {};
    return -1;
  }
  result.valid = true;
  result.searched_points = work.track.indices.size();
  result.memory_bytes = BytesOf(work);
  result.elapsed_ms = static_cast<uint32_t>(std::chrono::duration_cast<std::chrono::milliseconds>(
                                                std::chrono::steady_clock::now() - start)
                                                .count());
  AnnounceEnd(work, result.elapsed_ms);
  return 0;
}

}  // namespace skyhaul
