#include "app/score.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <vector>

namespace skyhaul {
namespace {

FlightScore SomeScore() {
  FlightScore score;
  score.file = "a.igc";
  score.settings = {.gap_m = 800, .fai_rule = true};
  score.fixes = 4;
  score.result.valid = true;
  score.result.elapsed_ms = 12;
  TaskResult& free5 = score.result.tasks[static_cast<size_t>(OptimiseTask::kFree5)];
  free5 = {.vertices = 2, .indices = {0, 3}, .distance_m = 12345.6789, .score_m = 12345.6789};
  TaskResult& triangle = score.result.tasks[static_cast<size_t>(OptimiseTask::kFaiTriangle)];
  triangle = {.vertices = 3,
              .indices = {0, 1, 3},
              .distance_m = 30000,
              .closing_m = 499.6,
              .score_m = 29500.4};
  return score;
}

TEST(Score, IsATableForPeople) {
  std::vector<TrackPoint> points(4);
  for (uint32_t i = 0; i < 4; ++i) points[i].time = 36000 + i * 60;
  const std::string text = ScoreText(SomeScore(), points);
  const char* const lines[] = {
      "Task                         km    closing     points\n",
      "Distance, 2 points            -\n",
      "Distance, 5 points        12.35                 18.52\n",
      "FAI triangle              30.00      500 m      59.00\n",
      "  10:03:00     0.00000     0.00000\n",
  };
  for (const char* line : lines) EXPECT_NE(text.find(line), std::string::npos) << line << text;
}

TEST(Score, HasStableJsonKeys) {
  const auto json = nlohmann::json::parse(ScoresJson(std::vector{SomeScore()}), nullptr, false);
  ASSERT_TRUE(json.is_array());
  const auto& flight = json[0];
  EXPECT_EQ(flight["file"], "a.igc");
  EXPECT_EQ(flight["fixes"], 4);
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

TEST(Score, SettingsFromText) {
  const struct {
    const char* gap;
    const char* fai_rule;
    int result;
    int32_t gap_m;
    bool rule;
  } cases[] = {
      {"", "", 0, 77, false},
      {"0", "on", 0, 0, true},
      {"1000000", "off", 0, 1000000, false},
      {"1000001", "", -1, 0, false},
      {"-1", "", -1, 0, false},
      {"1.5", "", -1, 0, false},
      {"x", "", -1, 0, false},
      {"", "yes", -1, 0, false},
  };
  for (const auto& c : cases) {
    OptimiseSettings settings = {.gap_m = 77};
    std::string message;
    EXPECT_EQ(ReadScoreSettings(c.gap, c.fai_rule, settings, message), c.result) << c.gap;
    EXPECT_EQ(message.empty(), c.result == 0);
    if (c.result != 0) continue;
    EXPECT_EQ(settings.gap_m, c.gap_m);
    EXPECT_EQ(settings.fai_rule, c.rule);
  }
}

}  // namespace
}  // namespace skyhaul
