#include <gtest/gtest.h>

#include "core/time_scale.h"
#include "protocols/flytec/join_flights.h"
#include "protocols/flytec/track_list.h"
#include "protocols/flytec/track_list_line.h"
#include "tests/protocols/flytec/flytec_bench.h"

namespace skyhaul::flytec {
namespace {

TEST(TrackListLine, EachFieldHasItsMessage) {
  const struct {
    const char* line;
    const char* message;  // null: accepted
  } cases[] = {
      {"$PBRTL,07,01,27.04.17,15:29:56,00:04:55*7D", nullptr},
      {"$PBRTL,07,01,27.04.17,15:29:56,00:04:55,1,2,3,4,5*00", nullptr},
      {"$PBRTL,07,01,01.01.17,00:00:00,00:00:00", nullptr},
      {"$PBRTL,07,01,31.12.17,23:59:59,99:59:59", nullptr},
      {"$PBRTL,07,01,00.04.17,15:29:56,00:04:55", "Bad track date parameter"},
      {"$PBRTL,07,01,27.00.17,15:29:56,00:04:55", "Bad track date parameter"},
      {"$PBRTL,07,01,27.04.17,15:29:56", "NMEA line parse error"},
      {"$PBRTL", "NMEA line parse error"},
      {"$PBRTR,07,01,27.04.17,15:29:56,00:04:55", "Bad NMEA identifier"},
      {"$PBRTL,x,01,27.04.17,15:29:56,00:04:55", "Bad track count parameter"},
      {"$PBRTL,07,1x,27.04.17,15:29:56,00:04:55", "Bad track index parameter"},
      {"$PBRTL,07,01,32.04.17,15:29:56,00:04:55", "Bad track date parameter"},
      {"$PBRTL,07,01,27.13.17,15:29:56,00:04:55", "Bad track date parameter"},
      {"$PBRTL,07,01,27.04,15:29:56,00:04:55", "Bad track date parameter"},
      {"$PBRTL,07,01,27.04.2017,15:29:56,00:04:55", "Bad track date parameter"},
      {"$PBRTL,07,01,27.04.17,24:29:56,00:04:55", "Bad track time parameter"},
      {"$PBRTL,07,01,27.04.17,15:60:56,00:04:55", "Bad track time parameter"},
      {"$PBRTL,07,01,27.04.17,15-29-56,00:04:55", "Bad track time parameter"},
      {"$PBRTL,07,01,27.04.17,15:29:56,00:04:60", "Bad track duration parameter"},
      {"$PBRTL,07,01,27.04.17,15:29:56,*7D", "Bad track duration parameter"},
  };
  for (const auto& c : cases) {
    TrackListEntry entry;
    EXPECT_STREQ(ParseTrackListLine(c.line, entry), c.message) << c.line;
  }
  TrackListEntry entry;
  ParseTrackListLine("$PBRTL,07,01,27.04.17,15:29:56,00:04:55*7D", entry);
  const CalendarTime start = {
      .year = 2017, .month = 4, .day = 27, .hour = 15, .minute = 29, .second = 56};
  EXPECT_EQ(entry.index, 1U);
  EXPECT_EQ(CalendarFromTime(entry.start_time), start);
  EXPECT_EQ(entry.duration_s, 295U);
  EXPECT_EQ(entry.line, "$PBRTL,07,01,27.04.17,15:29:56,00:04:55*7D");
}

std::string ListLine(uint32_t index) {
  return Sentence("PBRTL,300," + std::to_string(index) + ",27.04.17,15:29:56,00:04:55");
}

TEST(TrackList, IsReadUntilTheInstrumentIsSilent) {
  FlytecBench b;
  // The last index that is kept, one that is not, and one that comes twice.
  b.script.answers["$PBRTL,"] = {"\x13" + ListLine(3) + ListLine(254) + ListLine(255) +
                                 ListLine(0) + ListLine(3) + "\x11"};
  EXPECT_EQ(FlightListJob(b.job), 3);
  std::vector<uint32_t> indices;
  for (const TrackListEntry& entry : b.job.data.track_list) indices.push_back(entry.index);
  EXPECT_EQ(indices, (std::vector<uint32_t>{0, 3, 254}));
  EXPECT_EQ(b.recorder.statuses.back(), "3 tracks in track list found");
  EXPECT_EQ(b.bench.written, "\x11$PBRSNP,*21\r\n\x11$PBRTL,*74\r\n");
  EXPECT_TRUE(b.recorder.messages.empty());
}

TEST(TrackList, EndsAfterOneSecondOfSilence) {
  FlytecBench b;
  b.script.answers["$PBRTL,"] = {""};
  const uint64_t start_ns = b.bench.now_ns;
  EXPECT_EQ(FlightListJob(b.job), 0);
  EXPECT_EQ(b.recorder.statuses.back(), "0 tracks in track list found");
  // Opening 200 ms, identification, its pause of 1000 ms, then the silence.
  EXPECT_NEAR(static_cast<double>(Elapsed_ms(b.bench, start_ns)), 2260, 60);
}

TEST(TrackList, TheGateRefusesWithoutAWord) {
  FlytecBench b("COMPETINO", "1.13");
  EXPECT_EQ(FlightListJob(b.job), kNoTrackList);
  EXPECT_EQ(b.script.requests.size(), 1U);
  EXPECT_TRUE(b.recorder.messages.empty());
}

TEST(TrackList, EachFailureHasItsMessage) {
  const Failure cases[] = {
      {"$PBRTL,1\r\n", {}, "Read GPS track list: NMEA line parse error"},
      {ListLine(0), FailWrite(1), "Read GPS track list: E500 COM port write error"},
      {ListLine(0), Unplug(60), "Read GPS track list: E503 COM port read error"},
  };
  for (const Failure& failure : cases) {
    FlytecBench b;
    ExpectFailure(b, FlightListJob, "$PBRTL,", failure);
  }
}

// Flights of two fixes each, from the start and to the end.
std::vector<Flight> Flights(const std::vector<std::pair<uint32_t, uint32_t>>& spans) {
  std::vector<Flight> flights;
  for (const auto& [start, end] : spans) {
    flights.push_back({.points = {{.segment_start = 1, .time = start}, {.time = end}},
                       .instrument_igc = {.text = "its own"}});
  }
  return flights;
}

TEST(JoinFlights, InTheOrderOfTimeWithoutOverlapOrLongGap) {
  const std::tuple<std::vector<std::pair<uint32_t, uint32_t>>, JoinResult, std::vector<uint32_t>>
      cases[] = {
          {{{100, 200}}, JoinResult::kJoined, {100, 200}},
          {{{300, 400}, {100, 200}}, JoinResult::kJoined, {100, 200, 300, 400}},
          {{{100, 200}, {200, 300}}, JoinResult::kJoined, {100, 200, 200, 300}},
          {{{100, 200}, {3800, 3900}}, JoinResult::kJoined, {100, 200, 3800, 3900}},
          {{{100, 200}, {3801, 3900}}, JoinResult::kGap, {}},
          {{{100, 200}, {199, 300}}, JoinResult::kOverlap, {}},
          {{{500, 600}, {100, 200}, {150, 400}}, JoinResult::kOverlap, {}},
      };
  for (const auto& [spans, result, expected] : cases) {
    std::vector<Flight> flights = Flights(spans);
    ASSERT_EQ(JoinFlights(flights), result);
    if (result != JoinResult::kJoined) {
      EXPECT_EQ(flights.size(), spans.size()) << "refused flights stay as they are";
      continue;
    }
    ASSERT_EQ(flights.size(), 1U);
    std::vector<uint32_t> times;
    uint32_t segments = 0;
    for (const TrackPoint& point : flights[0].points) {
      times.push_back(point.time);
      segments += point.segment_start;
    }
    EXPECT_EQ(times, expected);
    EXPECT_EQ(segments, spans.size());
    EXPECT_EQ(flights[0].instrument_igc.text.empty(), spans.size() > 1);
  }
}

}  // namespace
}  // namespace skyhaul::flytec
