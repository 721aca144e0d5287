#include "core/track_log.h"

#include <gtest/gtest.h>

namespace skyhaul {
namespace {

TEST(TrackLog, InstallingResetsTheSelectionAndMarksOldResults) {
  InstallTrackLog({{.time = 1}, {.time = 2}, {.time = 3}, {.time = 4}},
                  {.expected = true, .text = "AXSH"});
  const uint32_t generation = CurrentTrackLog().generation;
  SelectTrackPoints({1, 2});
  InstallTrackLog({{.time = 9}});
  EXPECT_TRUE(CurrentTrackLog().selection.empty());
  EXPECT_FALSE(CurrentTrackLog().instrument_igc.expected);
  EXPECT_NE(CurrentTrackLog().generation, generation);
}

TEST(TrackLog, ExportsTheSelectionUnlessItHasAHole) {
  const std::tuple<std::vector<uint32_t>, int, std::vector<uint32_t>> cases[] = {
      {{}, 0, {10, 11, 12, 13}},    {{2}, 0, {12}},      {{2, 1}, 0, {11, 12}},
      {{1, 1, 2, 99}, 0, {11, 12}}, {{0, 1, 3}, -1, {}},
  };
  for (const auto& [selection, result, expected] : cases) {
    InstallTrackLog({{.time = 10}, {.time = 11}, {.time = 12}, {.time = 13}});
    SelectTrackPoints(selection);
    std::vector<TrackPoint> points;
    EXPECT_EQ(SelectedTrackPoints(CurrentTrackLog(), points), result);
    std::vector<uint32_t> times;
    for (const TrackPoint& point : points) times.push_back(point.time);
    EXPECT_EQ(times, expected);
  }
}

}  // namespace
}  // namespace skyhaul
