#include "report/score.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <vector>

namespace skyhaul {
namespace {

FlightScore SomeScore() {
  FlightScore score;
  score.file = "a.igc";
  score.settings = {.gap_m = 800, .fai_rule = true};
  score.fixes = 6;
  score.result.valid = true;
  score.result.elapsed_ms = 12;
  TaskResult& free5 = score.result.tasks[static_cast<size_t>(OptimiseTask::kFree5)];
  free5 = {
      .vertices = 5, .indices = {0, 1, 3, 4, 5}, .distance_m = 12345.6789, .score_m = 12345.6789};
  TaskResult& triangle = score.result.tasks[static_cast<size_t>(OptimiseTask::kFaiTriangle)];
  triangle = {.vertices = 5,
              .indices = {0, 1, 2, 3, 4},
              .distance_m = 30000,
              .closing_m = 499.6,
              .score_m = 29500.4};
  return score;
}

void ExpectLines(const FlightScore& score, const std::vector<std::string>& lines) {
  std::vector<TrackPoint> points(score.fixes);
  for (uint32_t i = 0; i < points.size(); ++i) points[i].time = 36000 + i * 60;
  const std::string text = ScoreText(score, points);
  for (const std::string& line : lines) {
    EXPECT_NE(text.find(line + "\n"), std::string::npos) << line << "\n" << text;
  }
}

TEST(Score, IsATableForPeople) {
  ExpectLines(SomeScore(), {
                               "Gap 800 m, FAI rule on, times in UTC",
                               "Task                         km    closing     points",
                               "Distance, 2 points            -",
                               "Distance, 5 points        12.35                 18.52",
                               "FAI triangle              30.00      500 m      59.00",
                               "  10:05:00     0.00000     0.00000",
                           });
}

TEST(Score, MarksWhatIsNotProved) {
  FlightScore score = SomeScore();
  score.result.exact = true;
  for (TaskResult& task : score.result.tasks) task.optimal = true;
  ExpectLines(score, {"Distances exact search on every fix, proved to 1 m",
                      "FAI triangle              30.00      500 m      59.00"});
  score.result.stopped = true;
  TaskResult& triangle = score.result.tasks[static_cast<size_t>(OptimiseTask::kFaiTriangle)];
  triangle.optimal = false;
  triangle.bound_m = 31234.5;
  ExpectLines(score, {"Distances exact search on every fix, stopped: the best so far",
                      "Distance, 5 points        12.35                 18.52",
                      "FAI triangle              30.00      500 m      59.00  not proved, at most "
                      "31.23"});
}

TEST(Score, HasStableJsonKeys) {
  const auto json = nlohmann::json::parse(ScoresJson(std::vector{SomeScore()}), nullptr, false);
  ASSERT_TRUE(json.is_array());
  const auto& flight = json[0];
  EXPECT_EQ(flight["file"], "a.igc");
  EXPECT_EQ(flight["fixes"], 6);
  EXPECT_EQ(flight["gap_m"], 800);
  EXPECT_EQ(flight["fai_rule"], true);
  EXPECT_EQ(flight["exact"], false);
  EXPECT_EQ(flight["elapsed_ms"], 12);
  for (const char* task :
       {"free2", "free3", "free4", "free5", "out_and_return", "flat_triangle", "fai_triangle"}) {
    ASSERT_TRUE(flight["tasks"].contains(task));
    for (const char* key : {"indices", "distance_m", "optimal", "bound_m"}) {
      EXPECT_TRUE(flight["tasks"][task].contains(key)) << task << key;
    }
  }
  EXPECT_EQ(flight["tasks"]["free2"]["indices"].size(), 0U);
  EXPECT_EQ(flight["tasks"]["free5"]["distance_m"], 12345.679);
  EXPECT_FALSE(flight["tasks"]["free5"].contains("closing_m"));
  EXPECT_EQ(flight["tasks"]["fai_triangle"]["closing_m"], 499.6);
  EXPECT_EQ(flight["tasks"]["fai_triangle"]["score_m"], 29500.4);
}

}  // namespace
}  // namespace skyhaul
