#include "protocols/flytec/track_list.h"

#include <gtest/gtest.h>

#include "core/time_scale.h"
#include "protocols/flytec/join_flights.h"
#include "protocols/flytec/track_list_line.h"
#include "tests/protocols/flytec/flytec_bench.h"

namespace skyhaul::flytec {
namespace {

TEST(TrackListLine, EachFieldHasItsMessage) {
  constexpr const char* kSound[] = {"$PBRTL", "07", "01", "27.04.17", "15:29:56", "00:04:55*7D"};
  const std::tuple<size_t, const char*, Texts> cases[] = {
      {0, "Bad NMEA identifier", {"$PBRTR"}},
      {1, "Bad track count parameter", {"x"}},
      {2, "Bad track index parameter", {"1x"}},
      {3, nullptr, {"01.01.17", "31.12.17"}},
      {3,
       "Bad track date parameter",
       {"00.04.17", "32.04.17", "27.00.17", "27.13.17", "27.04", "27.04.2017"}},
      {4, nullptr, {"00:00:00", "23:59:59"}},
      {4, "Bad track time parameter", {"24:29:56", "15:60:56", "15-29-56"}},
      {5, nullptr, {"00:00:00", "99:59:59", "00:04:55,1,2,3,4,5*00"}},
      {5, "Bad track duration parameter", {"00:04:60", "*7D"}},
  };
  for (const auto& [at, message, texts] : cases) {
    for (const std::string& text : texts) {
      std::string line;
      for (size_t i = 0; i < std::size(kSound); ++i) {
        line += (i == 0 ? "" : ",") + (i == at ? text : kSound[i]);
      }
      TrackListEntry entry;
      EXPECT_STREQ(ParseTrackListLine(line, entry), message) << line;
    }
  }
  const std::string line = "$PBRTL,07,01,27.04.17,15:29:56,00:04:55*7D";
  TrackListEntry entry;
  EXPECT_EQ(ParseTrackListLine(line, entry), nullptr);
  const CalendarTime start = {
      .year = 2017, .month = 4, .day = 27, .hour = 15, .minute = 29, .second = 56};
  EXPECT_EQ(entry.index, 1U);
  EXPECT_EQ(CalendarFromTime(entry.start_time), start);
  EXPECT_EQ(entry.duration_s, 295U);
  EXPECT_EQ(entry.line, line);
}

TEST(TrackList, IsInTheOrderOfTheIndex) {
  FlytecBench b;
  b.script.answers["$PBRTL,"] = {ListLine(254) + ListLine(0)};
  ASSERT_EQ(FlightListJob(b.job), 2);
  EXPECT_EQ(b.job.data.track_list[0].index, 0U);
  EXPECT_EQ(b.job.data.track_list[1].index, 254U);
}

TEST(TrackList, TheGateRefusesWithoutAWord) {
  FlytecBench b("COMPETINO", "1.13");
  EXPECT_EQ(FlightListJob(b.job), kNoTrackList);
  EXPECT_EQ(b.script.requests.size(), 1U);
  EXPECT_TRUE(b.recorder.messages.empty());
}

TEST(JoinFlights, InTheOrderOfTimeWithoutOverlapOrLongGap) {
  using Times = std::vector<uint32_t>;
  // Each flight has two fixes: its start and its end.
  const std::tuple<std::vector<Times>, JoinResult, Times> cases[] = {
      {{{100, 200}}, JoinResult::kJoined, {100, 200}},
      {{{300, 400}, {100, 200}}, JoinResult::kJoined, {100, 200, 300, 400}},
      {{{100, 200}, {200, 300}}, JoinResult::kJoined, {100, 200, 200, 300}},
      {{{100, 200}, {3800, 3900}}, JoinResult::kJoined, {100, 200, 3800, 3900}},
      {{{100, 200}, {3801, 3900}}, JoinResult::kGap, {100, 200}},
      {{{100, 200}, {199, 300}}, JoinResult::kOverlap, {100, 200}},
  };
  for (const auto& [spans, result, expected] : cases) {
    std::vector<Flight> flights;
    for (const Times& span : spans) {
      flights.push_back({.points = {{.segment_start = 1, .time = span[0]}, {.time = span[1]}},
                         .instrument_igc = {.text = "its own"}});
    }
    ASSERT_EQ(JoinFlights(flights), result);
    EXPECT_EQ(flights.size(), result == JoinResult::kJoined ? 1 : spans.size());
    Times times;
    size_t segments = 0;
    for (const TrackPoint& point : flights[0].points) {
      times.push_back(point.time);
      segments += point.segment_start;
    }
    EXPECT_EQ(times, expected);
    EXPECT_EQ(segments, expected.size() / 2);
    EXPECT_EQ(flights[0].instrument_igc.text.empty(), expected.size() > 2);
  }
}

}  // namespace
}  // namespace skyhaul::flytec
