#include "analysis/optimise.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>

#include "analysis/optimise_exact.h"
#include "analysis/task_rules.h"
#include "core/geodesy/geodesic.h"
#include "core/units.h"
#include "formats/igc/read_igc.h"
#include "instruments/flight_generator.h"
#include "tests/analysis/reference_optimiser.h"
#include "tests/analysis/track_shapes.h"
#include "tests/support/real_flights.h"
#include "tests/support/scratch_folder.h"

namespace skyhaul {
namespace {

void ExpectSame(const TaskResult& fast, const TaskResult& reference) {
  EXPECT_EQ(fast.vertices, reference.vertices);
  EXPECT_EQ(fast.indices, reference.indices);
  EXPECT_EQ(fast.legs_m, reference.legs_m);
  EXPECT_DOUBLE_EQ(fast.distance_m, reference.distance_m);
  EXPECT_EQ(fast.closing_m, reference.closing_m);
  EXPECT_DOUBLE_EQ(fast.score_m, reference.score_m);
}

// Returns false when they differ. A track that is reduced is compared in builds at full speed only;
// others have the search alone.
bool ExpectLikeReference(const std::vector<TrackPoint>& points, const OptimiseSettings& settings,
                         const std::string& name) {
  SCOPED_TRACE(testing::Message() << name << ", " << points.size() << " points, gap "
                                  << settings.gap_m << ", FAI rule " << settings.fai_rule);
  OptimiseResult fast;
  EXPECT_EQ(OptimiseTrack(points, settings, fast, nullptr), 0);
  EXPECT_TRUE(fast.valid);
  EXPECT_EQ(fast.searched_points, std::min<size_t>(points.size(), 2000));
  EXPECT_LE(fast.memory_bytes, size_t{3} * 2000 * 2001 / 2 * 4);
  if (points.size() > 2000 && !SKYHAUL_FULL_SIZE_TESTS) return !testing::Test::HasFailure();
  const OptimiseResult reference = ReferenceOptimise(points, settings);
  for (size_t task = 0; task < kOptimiseTasks; ++task) {
    SCOPED_TRACE(testing::Message() << "task " << task);
    ExpectSame(fast.tasks[task], reference.tasks[task]);
  }
  return !testing::Test::HasFailure();
}

struct Region {
  TrackRegion region;
  OptimiseSettings settings;
};

constexpr Region kRegions[] = {
    {{46.5, 8, 50000}, {3000, false}},        //
    {{46.5, 8, 50000}, {800, true}},          //
    {{-33, 179.99, 9000}, {3000, true}},      // across the 180th meridian, about the least leg
    {{0, -180, 9000}, {400, false}},          // likewise, on the equator
    {{46.5, 8, 150}, {3000, true}},           // everything closes
    {{-60, -70, 8}, {4, false}},              // rounding decides
    {{89.9, 20, 30000}, {2000, true}},        // about a pole
    {{-89, 20, 200000}, {150000, false}},     //
    {{10, 100, 300000}, {2147483647, true}},  // the greatest gap
    {{46.5, 8, 50000}, {0, true}},            // no closed tasks
};

class OptimiseShapes : public testing::TestWithParam<size_t> {};

TEST_P(OptimiseShapes, LikeTheReference) {
  constexpr size_t kSizes[] = {0, 2, 3, 4, 5, 6, 7, 9, 15, 16, 17, 31, 33, 48, 64, 100, 129};
  const auto shape = static_cast<TrackShape>(GetParam());
  uint32_t seed = 1;
  for (const auto& [region, settings] : kRegions) {
    for (const size_t points : kSizes) {
      ++seed;
      const std::vector<TrackPoint> track = MakeTrack({shape, points + seed % 2, seed, region});
      if (!ExpectLikeReference(track, settings, "shape " + std::to_string(GetParam()))) return;
    }
  }
  for (seed = 1; seed <= 3; ++seed) {
    const auto& [region, settings] =
        kRegions[(GetParam() + size_t{3} * seed) % std::size(kRegions)];
    const std::vector<TrackPoint> track = MakeTrack({shape, 401 - seed, seed, region});
    if (!ExpectLikeReference(track, settings, "shape " + std::to_string(GetParam()))) return;
  }
}

INSTANTIATE_TEST_SUITE_P(All, OptimiseShapes, testing::Range(size_t{0}, kTrackShapes));

// Few places on a small grid: nearly everything is a tie, also of closing distances. Every other
// grid is of a few metres, where a leg often is 28 % of the perimeter to the metre.
TEST(OptimiseTrack, TiesLikeTheReference) {
  uint32_t state = 7;
  for (int round = 0; round < 400; ++round) {
    std::vector<TrackPoint> track;
    const int points = 3 + round % 38;
    for (int i = 0; i < points; ++i) {
      state = state * 1664525 + 1013904223;
      const int32_t scale = round % 2 == 0 ? 20000 : 700;
      track.push_back({.lat = static_cast<int32_t>(state >> 28) * scale,
                       .lon = static_cast<int32_t>(state >> 20 & 7) * 2 * scale});
    }
    const OptimiseSettings settings = {.gap_m = 200 + 400 * (round % 5)};
    if (!ExpectLikeReference(track, settings, "grid " + std::to_string(round))) return;
  }
}

// Points in a row to the north with one leg between turnpoints that is near the least, 4 points, or
// two of them, 5 points.
std::vector<TrackPoint> RowOfPoints(size_t points, double leg_m) {
  std::vector<TrackPoint> track;
  GeodesicPosition at = {.lat_rad = 0.8, .lon_rad = 0.1};
  for (size_t i = 0; i < points; ++i) {
    track.push_back({.lat = RadiansToSemicircles(at.lat_rad), .lon = RadiansToSemicircles(0.1)});
    const bool end = i == 0 || i + 2 == points;
    at = GeodesicDestination(at.lat_rad, at.lon_rad, 0, end ? 3000 : leg_m);
  }
  return track;
}

TEST(OptimiseTrack, LeastLegOfTheFaiRule) {
  // 9999.8 m is 10 000 in whole metres, but less as a geodesic.
  for (const double leg_m : {9999.2, 9999.8, 10000.2}) {
    const bool allowed = leg_m >= 10000;
    OptimiseResult four;
    OptimiseResult five;
    OptimiseTrack(RowOfPoints(4, leg_m), {.fai_rule = true}, four, nullptr);
    OptimiseTrack(RowOfPoints(5, leg_m), {.fai_rule = true}, five, nullptr);
    EXPECT_EQ(ResultOf(four, OptimiseTask::kFree4).vertices, allowed ? 4 : 0) << leg_m;
    EXPECT_EQ(ResultOf(five, OptimiseTask::kFree5).vertices, allowed ? 5 : 0) << leg_m;
    EXPECT_EQ(ResultOf(five, OptimiseTask::kFree3).vertices, 3) << leg_m;
  }
}

class OptimiseFullSize : public testing::TestWithParam<int> {};

TEST_P(OptimiseFullSize, LikeTheReference) {
  // Circles and a ridge sort by place.
  const std::vector<TrackPoint> tracks[] = {GenerateFlightOfLength({.seed = 5}, 30000).points,
                                            MakeTrack({TrackShape::kCircles, 5000}),
                                            MakeTrack({TrackShape::kRidge, 5000})};
  ExpectLikeReference(tracks[GetParam()], {.gap_m = 3000, .fai_rule = GetParam() == 0}, "track");
}

INSTANTIATE_TEST_SUITE_P(Shared, OptimiseFullSize, testing::Range(0, 3));

// The proof on every fix is never below the coarse search, and ends: no real flight takes long.
void ExpectProofAboveCoarse(const std::vector<TrackPoint>& points,
                            const OptimiseSettings& settings) {
  constexpr uint32_t kBudget_ms = 60'000;  // a slow machine needs a second
  OptimiseResult coarse;
  OptimiseResult exact;
  ASSERT_EQ(OptimiseTrack(points, settings, coarse, nullptr), 0);
  ASSERT_EQ(OptimiseTrackExact(points, settings, kBudget_ms, exact, nullptr), 0);
  for (size_t i = 0; i < kOptimiseTasks; ++i) {
    const TaskResult& task = exact.tasks[i];
    EXPECT_TRUE(task.optimal) << "task " << i;
    EXPECT_GE(task.score_m, coarse.tasks[i].score_m - 1e-6) << "task " << i;
    EXPECT_LE(task.bound_m, task.score_m + 1) << "task " << i;
  }
}

class OptimiseRealFlights : public testing::TestWithParam<size_t> {};

// The flights are shared out to several runs, so that these can go on side by side.
constexpr size_t kRuns = 8;

TEST_P(OptimiseRealFlights, LikeTheReference) {
  const std::vector<std::filesystem::path> paths = RealFlights();
  int compared = 0;
  for (size_t i = GetParam(); i < paths.size(); i += kRuns) {
    std::vector<TrackPoint> points;
    std::string message;
    if (igc::Read(ReadText(paths[i].string()), points, message) < 0) continue;
    const OptimiseSettings settings = {.gap_m = i % 3 == 0 ? 20000 : 3000, .fai_rule = i % 2 == 0};
    ExpectLikeReference(points, settings, paths[i].filename().string());
    ExpectProofAboveCoarse(points, settings);
    ++compared;
  }
  RecordProperty("compared", compared);
  if (compared == 0) GTEST_SKIP() << "SKYHAUL_FLIGHTS names no flights for this run";
}

INSTANTIATE_TEST_SUITE_P(Shared, OptimiseRealFlights, testing::Range(size_t{0}, kRuns));

TEST(OptimiseTrack, StopsInWhateverStepItIsAborted) {
  struct AbortingShell {
    Operation operation;
    size_t texts_left = 0;
    std::string last;
  };
  const std::vector<TrackPoint> track = MakeTrack({.points = 500});
  for (size_t step = 1; step <= 8; ++step) {
    AbortingShell aborting = {.texts_left = step};
    const Shell shell = {.context = &aborting, .status = [](void* context, const char* text) {
                           auto& self = *static_cast<AbortingShell*>(context);
                           self.last = text;
                           if (--self.texts_left == 0) self.operation.aborted = true;
                         }};
    aborting.operation.shell = &shell;
    OptimiseResult result = {.valid = true};
    // The eighth text says that it is done.
    const bool done = step == 8;
    EXPECT_EQ(OptimiseTrack(track, {.gap_m = 3000}, result, &aborting.operation), done ? 0 : -1);
    EXPECT_EQ(result.valid, done);
    char end[80];
    std::snprintf(end, sizeof end, "Computing completed (%u.%03u secs)", result.elapsed_ms / 1000,
                  result.elapsed_ms % 1000);
    EXPECT_EQ(aborting.last == end, done) << aborting.last;
  }
}

TEST(TaskRules, TheGapItselfIsTooMuchForTrianglesOnly) {
  const OptimiseSettings settings = {.gap_m = 800};
  TaskResult result = {.legs_m = {5000, 5000, 5000}, .distance_m = 15000, .score_m = 14200};
  for (const double closing_m : {799.999, 800.0, 800.001}) {
    result.closing_m = closing_m;
    EXPECT_EQ(KeepsRules(OptimiseTask::kOutAndReturn, settings, result), closing_m <= 800);
    EXPECT_EQ(KeepsRules(OptimiseTask::kFlatTriangle, settings, result), closing_m < 800);
    EXPECT_EQ(KeepsRules(OptimiseTask::kFaiTriangle, settings, result), closing_m < 800);
  }
}

}  // namespace
}  // namespace skyhaul
