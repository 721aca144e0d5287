#include "analysis/optimise_exact.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "analysis/exact/closed.h"
#include "analysis/exact/free.h"
#include "formats/igc/read_igc.h"
#include "tests/analysis/measured_task.h"
#include "tests/analysis/track_shapes.h"
#include "tests/support/real_flights.h"
#include "tests/support/scratch_folder.h"

namespace skyhaul {
namespace {

constexpr double kNone_m = -1e12;
constexpr double kPromise_m = 1;
constexpr double kRounding_m = 1e-6;

using Scores = std::array<double, kOptimiseTasks>;

// All distances of a track, and the true optima by trying everything.
struct Exhaustive {
  std::vector<std::vector<double>> way_m;
  Scores best = {};
};

void TryChains(Exhaustive& all, bool fai_rule) {
  const size_t n = all.way_m.size();
  for (size_t vertices = 2; vertices <= 5; ++vertices) {
    // Legs between turnpoints, those that the rule is about.
    const size_t first_ruled = 1;
    const size_t end_ruled = vertices >= 4 && fai_rule ? vertices - 2 : 0;
    std::vector<double> sum(n, 0);
    for (size_t leg = 0; leg + 1 < vertices; ++leg) {
      std::vector<double> next(n, kNone_m);
      for (size_t i = 0; i < n; ++i) {
        for (size_t j = i + 1; j < n; ++j) {
          const bool ruled = leg >= first_ruled && leg < end_ruled;
          if (ruled && all.way_m[i][j] < kFaiRuleLeg_m) continue;
          next[j] = std::max(next[j], sum[i] + all.way_m[i][j]);
        }
      }
      sum = next;
    }
    all.best[vertices - 2] = n == 0 ? 0 : std::max(0.0, *std::max_element(sum.begin(), sum.end()));
  }
}

void TryReturns(Exhaustive& all, double gap_m) {
  const size_t n = all.way_m.size();
  for (size_t a = 0; a < n; ++a) {
    for (size_t b = a + 1; b < n; ++b) {
      for (size_t c = b + 1; c < n; ++c) {
        if (all.way_m[a][c] > gap_m) continue;
        all.best[4] = std::max(all.best[4], 2 * all.way_m[a][b] - all.way_m[a][c]);
      }
    }
  }
}

void TryTriangles(Exhaustive& all, double gap_m) {
  const size_t n = all.way_m.size();
  // Nearest finish after t3 of any start before t1, by t3; t1 grows.
  std::vector<double> closing_m(n + 1, 1e12);
  for (size_t t1 = 1; t1 < n; ++t1) {
    double nearest_m = 1e12;
    for (size_t f = n; f-- > t1 + 1;) {
      nearest_m = std::min(nearest_m, all.way_m[t1 - 1][f]);
      closing_m[f - 1] = std::min(closing_m[f - 1], nearest_m);
    }
    for (size_t t3 = t1 + 2; t3 + 1 < n; ++t3) {
      if (closing_m[t3] >= gap_m) continue;
      for (size_t t2 = t1 + 1; t2 < t3; ++t2) {
        const double legs_m[] = {all.way_m[t1][t2], all.way_m[t2][t3], all.way_m[t1][t3]};
        const double perimeter_m = legs_m[0] + legs_m[1] + legs_m[2];
        const double score_m = perimeter_m - closing_m[t3];
        all.best[5] = std::max(all.best[5], score_m);
        const bool fai = *std::min_element(legs_m, legs_m + 3) >= 0.28 * perimeter_m;
        if (fai) all.best[6] = std::max(all.best[6], score_m);
      }
    }
  }
}

Exhaustive TryEverything(const std::vector<TrackPoint>& points, const OptimiseSettings& settings) {
  Exhaustive all;
  all.way_m.assign(points.size(), std::vector<double>(points.size(), 0));
  for (size_t i = 0; i < points.size(); ++i) {
    for (size_t j = i + 1; j < points.size(); ++j) all.way_m[i][j] = Way_m(points[i], points[j]);
  }
  TryChains(all, settings.fai_rule);
  if (settings.gap_m > 0) {
    TryReturns(all, settings.gap_m);
    TryTriangles(all, settings.gap_m);
  }
  return all;
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
  EXPECT_TRUE(IsAllowed(task, settings, expected));
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

// The searches alone, without the coarse results, which on short tracks are nearly the optimum.
void SearchAll(ExactSearch& search, OptimiseResult& result) {
  for (size_t i = 0; i < 4; ++i) {
    if (SizeOf(search.tree) < i + 2) continue;
    result.tasks[i].bound_m = SearchFree(search, static_cast<OptimiseTask>(i), result.tasks[i]);
  }
  if (search.settings.gap_m > 0) {
    ClosingTable table = MakeClosingTable(search, std::nextafter(search.settings.gap_m, 1e30));
    if (table.complete) {
      result.tasks[4].bound_m = SearchReturn(search, table, result.tasks[4]);
      for (const OptimiseTask task : {OptimiseTask::kFlatTriangle, OptimiseTask::kFaiTriangle}) {
        TaskResult& best = result.tasks[static_cast<size_t>(task)];
        best.bound_m = SearchTriangle(search, table, task, best);
      }
    } else {
      for (size_t i = 4; i < 7; ++i) result.tasks[i].bound_m = 3 * Extent_m(search.tree);
    }
  }
  result.stopped = search.stopped;
}

constexpr TrackRegion kPlaces[] = {
    {46.5, 8, 50'000},     // the Alps
    {-0.02, 179.99, 300},  // across the equator and the 180th meridian, tiny
    {0.5, -180, 200'000},  // the same, wide
    {-89.99, 30, 30'000},  // around the pole
    {60, 100, 3'000'000},  // as wide as no flight
};

TEST(OptimiseExact, FindsTheOptimumOfShortTracks) {
  uint32_t seed = 1;
  for (const TrackRegion& place : kPlaces) {
    for (size_t shape = 0; shape < kTrackShapes; ++shape) {
      for (const size_t count : {2U, 3U, 4U, 5U, 6U, 9U, 17U, 40U}) {
        const ShapePlan plan = {static_cast<TrackShape>(shape), count, seed++, place};
        const std::vector<TrackPoint> points = MakeTrack(plan);
        for (const int32_t gap_m : {0, 30, 1000, 40'000, 2'000'000}) {
          const OptimiseSettings settings = {.gap_m = gap_m, .fai_rule = seed % 2 == 0};
          SCOPED_TRACE(std::string(NameOf(plan.shape)) + ", " + std::to_string(count) +
                       " points, lat " + std::to_string(place.lat_deg) + ", gap " +
                       std::to_string(gap_m) + ", seed " + std::to_string(plan.seed));
          const Scores optima = TryEverything(points, settings).best;
          OptimiseResult result;
          ASSERT_EQ(OptimiseTrackExact(points, settings, 0, result, nullptr), 0);
          ExpectProved(points, settings, optima, result);
          ExactSearch search = SearchOf(points, settings);
          OptimiseResult searched;
          SearchAll(search, searched);
          ExpectProved(points, settings, optima, searched);
          if (testing::Test::HasFailure()) return;
        }
      }
    }
  }
}

// Long enough for ranges of several fixes in the closing table.
TEST(OptimiseExact, FindsTheOptimumOfLongerTracks) {
  constexpr TrackShape kShapes[] = {TrackShape::kTriangle, TrackShape::kRidge,
                                    TrackShape::kRandomWalk, TrackShape::kBackToStart};
  for (const TrackShape shape : kShapes) {
    const std::vector<TrackPoint> points = MakeTrack({.shape = shape, .points = 700, .seed = 7});
    for (const int32_t gap_m : {300, 3000}) {
      SCOPED_TRACE(std::string(NameOf(shape)) + ", gap " + std::to_string(gap_m));
      const OptimiseSettings settings = {.gap_m = gap_m, .fai_rule = gap_m == 300};
      ExactSearch search = SearchOf(points, settings);
      OptimiseResult searched;
      SearchAll(search, searched);
      ExpectProved(points, settings, TryEverything(points, settings).best, searched);
    }
  }
}

TEST(ClosingTable, FindsTheNearestPair) {
  const std::vector<TrackPoint> points =
      MakeTrack({.shape = TrackShape::kRandomWalk, .points = 1100, .seed = 11});
  const Exhaustive all = TryEverything(points, {});
  ExactSearch search = SearchOf(points, {});
  constexpr double kLimit_m = 4000;
  ClosingTable table = MakeClosingTable(search, kLimit_m);
  ASSERT_TRUE(table.complete);
  const uint32_t last = SizeOf(search.tree) - 1;
  ASSERT_EQ(last + 1, points.size());
  for (uint32_t query = 0; query < 300; ++query) {
    const uint32_t start = query * 7919 % (last - 1);
    const uint32_t finish = start + 1 + query * 104729 % (last - start);
    double nearest_m = kLimit_m;
    double nearest_of_one_m = kLimit_m;
    for (size_t f = finish; f <= last; ++f) {
      nearest_of_one_m = std::min(nearest_of_one_m, all.way_m[start][f]);
      for (size_t s = 0; s <= start; ++s) nearest_m = std::min(nearest_m, all.way_m[s][f]);
    }
    SCOPED_TRACE(std::to_string(start) + " to " + std::to_string(finish));
    const ExactClosing closing = NearestClosing(search, table, start, finish);
    ASSERT_DOUBLE_EQ(closing.distance_m, nearest_m);
    if (nearest_m < kLimit_m) {
      EXPECT_LE(closing.start, start);
      EXPECT_GE(closing.finish, finish);
    }
    EXPECT_LE(ClosingBound_m(table, start, finish), nearest_m);
    ASSERT_DOUBLE_EQ(NearestFinish(search, table, start, finish).distance_m, nearest_of_one_m);
  }
}

TEST(OptimiseExact, VerticesMayShareAPlaceThatIsRepeated) {
  // Two places only: every chain that goes between them needs several fixes at each.
  std::vector<TrackPoint> points(20, TrackPoint{.lat = 500'000'000, .lon = 90'000'000});
  for (size_t i = 10; i < 20; ++i) points[i].lat += 1'000'000;
  const OptimiseSettings settings = {.gap_m = 100};
  ExactSearch search = SearchOf(points, settings);
  OptimiseResult searched;
  SearchAll(search, searched);
  ExpectProved(points, settings, TryEverything(points, settings).best, searched);
  EXPECT_EQ(searched.tasks[3].vertices, 5U);
}

TEST(OptimiseExact, ABoundHoldsWhereverTheSearchIsStopped) {
  const OptimiseSettings settings = {.gap_m = 2000};
  for (const TrackShape shape : {TrackShape::kRandomWalk, TrackShape::kBackToStart}) {
    const std::vector<TrackPoint> points = MakeTrack({.shape = shape, .points = 300, .seed = 3});
    const Scores optima = TryEverything(points, settings).best;
    const ExactSearch unlimited = SearchOf(points, settings);
    size_t stopped = 0;
    for (int part = 0; part < 40; ++part) {
      for (size_t i = 0; i < kOptimiseTasks; ++i) {
        ExactSearch search = unlimited;
        ClosingTable table = MakeClosingTable(search, std::nextafter(search.settings.gap_m, 1e30));
        TaskResult best;
        search.polls = 0;
        search.has_deadline = true;
        search.deadline = std::chrono::steady_clock::now() + std::chrono::microseconds(part * 30);
        const auto task = static_cast<OptimiseTask>(i);
        const double bound_m = i < 4    ? SearchFree(search, task, best)
                               : i == 4 ? SearchReturn(search, table, best)
                                        : SearchTriangle(search, table, task, best);
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

TEST(OptimiseExact, AnAbortedSearchSaysSo) {
  const std::vector<TrackPoint> points =
      MakeTrack({.shape = TrackShape::kTriangle, .points = 400, .seed = 5});
  const OptimiseSettings settings = {.gap_m = 2000};
  const Scores optima = TryEverything(points, settings).best;
  Operation operation;
  operation.aborted = true;
  OptimiseResult result;
  ASSERT_EQ(OptimiseTrackExact(points, settings, 0, result, &operation), 0);
  EXPECT_TRUE(result.valid);
  EXPECT_TRUE(result.stopped);
  for (size_t i = 0; i < kOptimiseTasks; ++i) {
    EXPECT_FALSE(result.tasks[i].optimal);
    EXPECT_GE(result.tasks[i].bound_m, optima[i]);
    EXPECT_LE(result.tasks[i].score_m, optima[i] + kRounding_m);
  }
}

TEST(OptimiseExact, NoFixesAndOneFixHaveNoResult) {
  for (const size_t count : {0U, 1U}) {
    const std::vector<TrackPoint> points(count);
    OptimiseResult result;
    ASSERT_EQ(OptimiseTrackExact(points, {.gap_m = 1000}, 0, result, nullptr), 0);
    EXPECT_TRUE(result.valid);
    for (const TaskResult& task : result.tasks) EXPECT_EQ(task.vertices, 0U);
  }
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

TEST(OptimiseExact, IsNeverBelowTheCoarseSearchOnRealFlights) {
  constexpr uint32_t kBudget_ms = 60'000;  // a slow machine needs a second
  const OptimiseSettings settings = {.gap_m = 1000, .fai_rule = true};
  const std::vector<std::filesystem::path> paths = RealFlights();
  if (paths.empty()) GTEST_SKIP() << "no real flights: SKYHAUL_FLIGHTS names no folder with them";
  size_t compared = 0;
  for (const std::filesystem::path& path : paths) {
    SCOPED_TRACE(path.filename().string());
    std::vector<TrackPoint> points;
    std::string message;
    if (igc::Read(ReadText(path.string()), points, message) <= 0) continue;
    ++compared;
    OptimiseResult coarse;
    OptimiseResult exact;
    ASSERT_EQ(OptimiseTrack(points, settings, coarse, nullptr), 0);
    ASSERT_EQ(OptimiseTrackExact(points, settings, kBudget_ms, exact, nullptr), 0);
    EXPECT_FALSE(exact.stopped) << "no real flight takes long";
    for (size_t i = 0; i < kOptimiseTasks; ++i) {
      SCOPED_TRACE("task " + std::to_string(i));
      ExpectKeepsRules(points, settings, static_cast<OptimiseTask>(i), exact.tasks[i]);
      EXPECT_GE(exact.tasks[i].score_m, coarse.tasks[i].score_m - kRounding_m);
      EXPECT_GE(exact.tasks[i].bound_m, exact.tasks[i].score_m);
      if (exact.tasks[i].optimal) {
        EXPECT_LE(exact.tasks[i].bound_m, exact.tasks[i].score_m + kPromise_m);
      }
    }
  }
  EXPECT_GT(compared, 0U);
}

}  // namespace
}  // namespace skyhaul
