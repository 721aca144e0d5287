#include "analysis/optimise_exact.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "analysis/exact/closed.h"
#include "analysis/exact/free.h"
#include "analysis/task_rules.h"
#include "tests/analysis/reference_optimiser.h"
#include "tests/analysis/track_shapes.h"
#include "tests/support/recording_shell.h"

namespace skyhaul {
namespace {

constexpr double kNone_m = -1e12;
constexpr double kPromise_m = 1;
constexpr double kRounding_m = 1e-6;

using Scores = std::array<double, kOptimiseTasks>;

using Matrix = std::vector<std::vector<double>>;

Matrix WaysBetween(const std::vector<TrackPoint>& points) {
  Matrix way_m(points.size(), std::vector<double>(points.size(), 0));
  for (size_t i = 0; i < points.size(); ++i) {
    for (size_t j = i + 1; j < points.size(); ++j) way_m[i][j] = Way_m(points[i], points[j]);
  }
  return way_m;
}

// The nearest start up to s and finish from f on.
Matrix NearestPairs(const Matrix& way_m) {
  Matrix near_m = way_m;
  for (size_t s = 0; s < way_m.size(); ++s) {
    for (size_t f = way_m.size(); f-- > s + 1;) {
      if (s > 0) near_m[s][f] = std::min(near_m[s][f], near_m[s - 1][f]);
      if (f + 1 < way_m.size()) near_m[s][f] = std::min(near_m[s][f], near_m[s][f + 1]);
    }
  }
  return near_m;
}

double BestChain(const Matrix& way_m, size_t vertices, bool fai_rule) {
  const size_t n = way_m.size();
  std::vector<double> sum(n, 0);
  for (size_t leg = 0; leg + 1 < vertices; ++leg) {
    // Legs between turnpoints.
    const bool ruled = fai_rule && vertices >= 4 && leg > 0 && leg + 2 < vertices;
    std::vector<double> next(n, kNone_m);
    for (size_t i = 0; i < n; ++i) {
      for (size_t j = i + 1; j < n; ++j) {
        if (!ruled || way_m[i][j] >= 10000) next[j] = std::max(next[j], sum[i] + way_m[i][j]);
      }
    }
    sum = next;
  }
  return n == 0 ? 0 : std::max(0.0, *std::max_element(sum.begin(), sum.end()));
}

// The true optima by trying everything.
Scores TryEverything(const std::vector<TrackPoint>& points, const OptimiseSettings& settings) {
  const Matrix way_m = WaysBetween(points);
  const Matrix near_m = NearestPairs(way_m);
  const size_t n = points.size();
  Scores best = {};
  for (size_t i = 0; i < 4; ++i) best[i] = BestChain(way_m, i + 2, settings.fai_rule);
  for (size_t t1 = 0; t1 < n && settings.gap_m > 0; ++t1) {
    double nearest_m = 1e12;  // finish after the turn t3
    for (size_t t3 = n; t3-- > t1 + 1; nearest_m = std::min(nearest_m, way_m[t1][t3])) {
      const double way_13_m = way_m[t1][t3];
      if (nearest_m <= settings.gap_m) best[4] = std::max(best[4], 2 * way_13_m - nearest_m);
      if (t1 == 0 || t3 + 1 == n || near_m[t1 - 1][t3 + 1] >= settings.gap_m) continue;
      for (size_t t2 = t1 + 1; t2 < t3; ++t2) {
        const double perimeter_m = way_m[t1][t2] + way_m[t2][t3] + way_13_m;
        const double score_m = perimeter_m - near_m[t1 - 1][t3 + 1];
        const double least_m = std::min({way_m[t1][t2], way_m[t2][t3], way_13_m});
        best[5] = std::max(best[5], score_m);
        if (least_m >= 0.28 * perimeter_m) best[6] = std::max(best[6], score_m);
      }
    }
  }
  return best;
}

// The legs, the closing and the score belong to the vertices, and these keep the rules.
void ExpectKeepsRules(const std::vector<TrackPoint>& points, const OptimiseSettings& settings,
                      OptimiseTask task, const TaskResult& result) {
  if (result.vertices == 0) {
    EXPECT_EQ(result.score_m, 0);
    return;
  }
  const auto at = std::span(result.indices).first(result.vertices);
  for (size_t i = 1; i < at.size(); ++i) ASSERT_LT(at[i - 1], at[i]);
  ASSERT_LT(at.back(), points.size());
  const TaskResult expected = MeasuredTask(points, task, at);
  EXPECT_TRUE(KeepsRules(task, settings, expected));
  EXPECT_EQ(result.legs_m, expected.legs_m);
  EXPECT_NEAR(result.distance_m, expected.distance_m, kRounding_m);
  EXPECT_NEAR(result.closing_m, expected.closing_m, kRounding_m);
  EXPECT_NEAR(result.score_m, expected.score_m, kRounding_m);
}

void ExpectProved(const std::vector<TrackPoint>& points, const OptimiseSettings& settings,
                  const Scores& optima, const OptimiseResult& result) {
  EXPECT_FALSE(result.stopped);
  for (size_t i = 0; i < kOptimiseTasks; ++i) {
    SCOPED_TRACE("task " + std::to_string(i));
    const TaskResult& task = result.tasks[i];
    ExpectKeepsRules(points, settings, static_cast<OptimiseTask>(i), task);
    EXPECT_LE(task.score_m, optima[i] + kRounding_m);
    EXPECT_GE(task.score_m, optima[i] - kPromise_m);
    EXPECT_GE(task.bound_m, optima[i] - kRounding_m);
    EXPECT_LE(task.bound_m, task.score_m + kPromise_m);
  }
}

ExactSearch SearchOf(const std::vector<TrackPoint>& points, const OptimiseSettings& settings) {
  ExactSearch search = {.points = points, .settings = settings};
  search.tree = MakeTrackTree(points);
  return search;
}

ClosingTable TableOf(ExactSearch& search) {
  return MakeClosingTable(search, std::nextafter(search.settings.gap_m, 1e30));
}

double SearchTask(ExactSearch& search, ClosingTable& table, OptimiseTask task, TaskResult& best) {
  if (task < OptimiseTask::kOutAndReturn) return SearchFree(search, task, best);
  if (!table.complete) return 3 * Extent_m(search.tree);
  return task == OptimiseTask::kOutAndReturn ? SearchReturn(search, table, best)
                                             : SearchTriangle(search, table, task, best);
}

// By the searches alone, without the coarse results, which on short tracks are nearly the optimum.
OptimiseResult Searched(const std::vector<TrackPoint>& points, const OptimiseSettings& settings) {
  ExactSearch search = SearchOf(points, settings);
  ClosingTable table = TableOf(search);
  OptimiseResult result;
  for (size_t i = 0; i < kOptimiseTasks; ++i) {
    const bool possible = i < 4 ? points.size() >= i + 2 : settings.gap_m > 0;
    TaskResult& best = result.tasks[i];
    if (possible) best.bound_m = SearchTask(search, table, static_cast<OptimiseTask>(i), best);
  }
  result.stopped = search.stopped;
  return result;
}

constexpr TrackRegion kPlaces[] = {
    {46.5, 8, 50'000},     // the Alps
    {-0.02, 179.99, 300},  // across the equator and the 180th meridian, tiny
    {0.5, -180, 200'000},  // the same, wide
    {-89.99, 30, 30'000},  // around the pole
    {60, 100, 3'000'000},  // as wide as no flight
};

void ExpectOptimum(const ShapePlan& plan, int32_t gap_m, bool fai_rule) {
  SCOPED_TRACE(testing::Message() << "shape " << static_cast<int>(plan.shape) << ", " << plan.points
                                  << " points, lat " << plan.region.lat_deg << ", gap " << gap_m
                                  << ", seed " << plan.seed);
  const std::vector<TrackPoint> points = MakeTrack(plan);
  const OptimiseSettings settings = {.gap_m = gap_m, .fai_rule = fai_rule};
  const Scores optima = TryEverything(points, settings);
  OptimiseResult result;
  ASSERT_EQ(OptimiseTrackExact(points, settings, 0, result, nullptr), 0);
  ExpectProved(points, settings, optima, result);
  if (!points.empty()) ExpectProved(points, settings, optima, Searched(points, settings));
}

TEST(OptimiseExact, FindsTheOptimumOfShortTracks) {
  uint32_t seed = 1;
  for (const TrackRegion& place : kPlaces) {
    for (size_t shape = 0; shape < kTrackShapes; ++shape) {
      for (const size_t count : {0U, 1U, 2U, 3U, 4U, 5U, 6U, 9U, 17U, 40U}) {
        const ShapePlan plan = {static_cast<TrackShape>(shape), count, seed++, place};
        for (const int32_t gap_m : {0, 30, 1000, 40'000, 2'000'000}) {
          ExpectOptimum(plan, gap_m, seed % 2 == 0);
          if (testing::Test::HasFailure()) return;
        }
      }
    }
  }
}

// Long enough for ranges of several fixes in the closing table.
TEST(OptimiseExact, FindsTheOptimumOfLongerTracks) {
  if (!SKYHAUL_FULL_SIZE_TESTS) GTEST_SKIP() << "for builds at full speed";
  for (const TrackShape shape : {TrackShape::kTriangle, TrackShape::kRidge, TrackShape::kRandomWalk,
                                 TrackShape::kBackToStart}) {
    ExpectOptimum({.shape = shape, .points = 700, .seed = 7}, 300, true);
    ExpectOptimum({.shape = shape, .points = 700, .seed = 7}, 3000, false);
  }
}

TEST(ClosingTable, FindsTheNearestPair) {
  const std::vector<TrackPoint> points =
      MakeTrack({.shape = TrackShape::kRandomWalk, .points = 1100, .seed = 11});
  const Matrix way_m = WaysBetween(points);
  const Matrix near_m = NearestPairs(way_m);
  ExactSearch search = SearchOf(points, {});
  constexpr double kLimit_m = 4000;
  ClosingTable table = MakeClosingTable(search, kLimit_m);
  ASSERT_TRUE(table.complete);
  const auto last = static_cast<uint32_t>(points.size()) - 1;
  for (uint32_t query = 0; query < 300; ++query) {
    const uint32_t start = query * 7919 % (last - 1);
    const uint32_t finish = start + 1 + query * 104729 % (last - start);
    SCOPED_TRACE(std::to_string(start) + " to " + std::to_string(finish));
    const double nearest_m = std::min(kLimit_m, near_m[start][finish]);
    const ExactClosing closing = NearestClosing(search, table, start, finish);
    ASSERT_DOUBLE_EQ(closing.distance_m, nearest_m);
    EXPECT_TRUE(nearest_m == kLimit_m || (closing.start <= start && closing.finish >= finish));
    EXPECT_LE(ClosingBound_m(table, start, finish), nearest_m);
    // More finishes than in the answer that is kept from the question before.
    for (const uint32_t first : {finish, start + 1}) {
      const double of_one_m = *std::min_element(way_m[start].begin() + first, way_m[start].end());
      ASSERT_DOUBLE_EQ(NearestFinish(search, table, start, first).distance_m,
                       std::min(kLimit_m, of_one_m));
    }
  }
}

TEST(OptimiseExact, ABoundHoldsWhereverTheSearchIsStopped) {
  const OptimiseSettings settings = {.gap_m = 2000};
  for (const TrackShape shape : {TrackShape::kRandomWalk, TrackShape::kBackToStart}) {
    const std::vector<TrackPoint> points = MakeTrack({.shape = shape, .points = 300, .seed = 3});
    const Scores optima = TryEverything(points, settings);
    const ExactSearch unlimited = SearchOf(points, settings);
    size_t stopped = 0;
    for (int part = 0; part < 40; ++part) {
      for (size_t i = 0; i < kOptimiseTasks; ++i) {
        ExactSearch search = unlimited;
        ClosingTable table = TableOf(search);
        TaskResult best;
        search.polls = 0;
        search.has_deadline = true;
        search.deadline = std::chrono::steady_clock::now() + std::chrono::microseconds(part * 30);
        const auto task = static_cast<OptimiseTask>(i);
        const double bound_m = SearchTask(search, table, task, best);
        if (search.stopped) ++stopped;
        SCOPED_TRACE("task " + std::to_string(i) + ", part " + std::to_string(part));
        ExpectKeepsRules(points, settings, task, best);
        EXPECT_GE(bound_m, optima[i] - kRounding_m);
        EXPECT_LE(best.score_m, optima[i] + kRounding_m);
      }
    }
    EXPECT_GT(stopped, 0U);
  }
}

TEST(OptimiseExact, ShowsHowFarItIsAndStops) {
  const std::vector<TrackPoint> points = MakeTrack({.points = 400, .seed = 5});
  RecordingShell recording;
  const Shell shell = MakeShell(recording);
  Operation operation = {.shell = &shell};
  OptimiseResult result;
  ASSERT_EQ(OptimiseTrackExact(points, {.gap_m = 2000}, 0, result, &operation), 0);
  EXPECT_EQ(result.searched_points, points.size());
  ASSERT_GE(recording.percents.size(), 8U);
  EXPECT_EQ(recording.progress[0], "Proving greatest distance (2 points)");
  EXPECT_EQ(recording.percents[0], 0);
  EXPECT_TRUE(std::is_sorted(recording.percents.begin(), recording.percents.end()));
  EXPECT_LT(recording.percents.back(), 100);

  operation.aborted = true;
  OptimiseResult aborted;
  ASSERT_EQ(OptimiseTrackExact(points, {.gap_m = 2000}, 0, aborted, &operation), 0);
  EXPECT_TRUE(aborted.valid && aborted.stopped);
  for (size_t i = 0; i < kOptimiseTasks; ++i) {
    EXPECT_FALSE(aborted.tasks[i].optimal);
    EXPECT_GE(aborted.tasks[i].bound_m, result.tasks[i].score_m);
    EXPECT_LE(aborted.tasks[i].score_m, result.tasks[i].bound_m);
  }
}

TEST(ExactProgress, SharesAndTextsFollowTheBound) {
  RecordingShell recording;
  const Shell shell = MakeShell(recording);
  const Operation operation = {.shell = &shell};
  ExactProgress progress = {.operation = &operation, .steps = 4};
  BeginStep(progress, "One");
  BeginStep(progress, "Two");
  NoteBound(progress, 5000, 1000);
  NoteBound(progress, 2000, 1000);
  const auto due = progress.next;
  ShowWhenDue(progress, due - std::chrono::milliseconds(1));
  ShowWhenDue(progress, due);
  ShowWhenDue(progress, due + std::chrono::milliseconds(1));
  EXPECT_EQ(recording.progress,
            (std::vector<std::string>{"One", "Two", "Two, at most 1000 m more"}));
  EXPECT_EQ(recording.percents, (std::vector<int>{0, 25, 43}));
}

TEST(TrackTree, BoundsHoldAndAreNear) {
  for (const TrackRegion& place : kPlaces) {
    const std::vector<TrackPoint> points =
        MakeTrack({.shape = TrackShape::kScattered, .points = 200, .region = place});
    const TrackTree tree = MakeTrackTree(points);
    const Ball all = BallOf(tree, {TopLevel(tree), 0});
    for (uint32_t i = 0; i < SizeOf(tree); ++i) {
      for (uint32_t j = i + 1; j < SizeOf(tree); ++j) {
        const double way_m = Way_m(points[tree.indices[i]], points[tree.indices[j]]);
        const double chord_m = Chord_m(tree.places[i], tree.places[j]);
        const double upper_m = UpperArc_m(tree.arc, chord_m);
        ASSERT_LE(chord_m, way_m + kRounding_m);
        ASSERT_GE(upper_m, way_m - 1e-3);
        ASSERT_LE(upper_m - way_m, 0.014 * (Extent_m(tree) - 2 * all.radius_m) + 1e-3);
        const TreeNode ranges[] = {{4, i >> 4}, {5, j >> 5}};
        ASSERT_GE(FarthestByBall_m(tree, BallOf(tree, ranges[0]), BallOf(tree, ranges[1])), way_m);
        ASSERT_LE(NearestByBall_m(BallOf(tree, ranges[0]), BallOf(tree, ranges[1])), way_m);
      }
    }
  }
}

}  // namespace
}  // namespace skyhaul
