#include "protocols/flytec/join_tracks.h"

#include <gtest/gtest.h>

namespace skyhaul {
namespace {

struct Span {
  uint32_t start;
  uint32_t end;
};

std::vector<DownloadedTrack> Tracks(const std::vector<Span>& spans) {
  std::vector<DownloadedTrack> tracks;
  for (const Span& span : spans) {
    DownloadedTrack track;
    track.index = static_cast<uint32_t>(tracks.size());
    track.points = {{.segment_start = 1, .time = span.start}, {.time = span.end}};
    track.igc.text = "its own";
    tracks.push_back(track);
  }
  return tracks;
}

TEST(JoinTracks, InTheOrderOfTimeWithoutOverlapOrLongGap) {
  const std::tuple<std::vector<Span>, JoinResult, std::vector<uint32_t>> cases[] = {
      {{{100, 200}}, JoinResult::kJoined, {100, 200}},
      {{{300, 400}, {100, 200}}, JoinResult::kJoined, {100, 200, 300, 400}},
      {{{100, 200}, {200, 300}}, JoinResult::kJoined, {100, 200, 200, 300}},
      {{{100, 200}, {3800, 3900}}, JoinResult::kJoined, {100, 200, 3800, 3900}},
      {{{100, 200}, {3801, 3900}}, JoinResult::kGap, {}},
      {{{100, 200}, {199, 300}}, JoinResult::kOverlap, {}},
      {{{500, 600}, {100, 200}, {150, 400}}, JoinResult::kOverlap, {}},
  };
  for (const auto& [spans, result, expected] : cases) {
    std::vector<DownloadedTrack> tracks = Tracks(spans);
    ASSERT_EQ(JoinTracks(tracks), result);
    if (result != JoinResult::kJoined) {
      EXPECT_EQ(tracks.size(), spans.size()) << "refused tracks stay as they are";
      continue;
    }
    ASSERT_EQ(tracks.size(), 1U);
    std::vector<uint32_t> times;
    uint32_t segments = 0;
    for (const TrackPoint& point : tracks[0].points) {
      times.push_back(point.time);
      segments += point.segment_start;
    }
    EXPECT_EQ(times, expected);
    EXPECT_EQ(segments, spans.size());
    EXPECT_EQ(tracks[0].igc.text.empty(), spans.size() > 1);
  }
}

}  // namespace
}  // namespace skyhaul
