#include "report/file_summary.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "core/time_scale.h"
#include "formats/igc/write_igc.h"
#include "instruments/flight_generator.h"

namespace skyhaul {
namespace {

struct SomeFlightText {
  std::vector<TrackPoint> points;
  std::string text;
};

SomeFlightText SomeFlight() {
  SomeFlightText flight;
  flight.points =
      GenerateFlight(
          {.start_time = TimeFromCalendar({.year = 2026, .month = 5, .day = 14, .hour = 23})})
          .points;
  igc::Write(flight.points, {.pilot = "Jos\xe9 \"Pepe\""},
             {.sign = true, .may_be_signed = true, .serial = "000", .free_text = "6030"},
             flight.text);
  return flight;
}

TEST(Summary, FindsTheFlightBetweenTheWaits) {
  const SomeFlightText flight = SomeFlight();
  const FlightSummary summary = SummariseFlight("a.igc", flight.text, flight.points);
  const uint32_t waited_before = summary.take_off_time - flight.points.front().time;
  const uint32_t waited_after = flight.points.back().time - summary.landing_time;
  EXPECT_TRUE(summary.flown);
  EXPECT_GE(waited_before, 20U);
  EXPECT_LE(waited_before, 90U);
  EXPECT_GE(waited_after, 10U);
  EXPECT_LE(waited_after, 180U);
  EXPECT_EQ(summary.fixes, flight.points.size());
  EXPECT_EQ(summary.security, igc::SecurityCheck::kPassed);
  EXPECT_GT(summary.highest_gps_m, 1700);
}

TEST(Summary, ATrackThatNeverFliesShowsItsEnds) {
  std::vector<TrackPoint> points(100);
  for (uint32_t i = 0; i < 100; ++i) points[i].time = 1000 + i;
  const FlightSummary summary = SummariseFlight("a.igc", "", points);
  EXPECT_FALSE(summary.flown);
  EXPECT_EQ(summary.take_off_time, 1000U);
  EXPECT_EQ(summary.landing_time, 1099U);
  EXPECT_NE(SummaryText(summary).find("First fix"), std::string::npos);
  const FlightSummary one = SummariseFlight("a.igc", "", std::span(points).first(1));
  EXPECT_EQ(one.landing_time, 1000U);
}

TEST(Summary, IsTextForPeopleAndJsonForMachines) {
  const SomeFlightText flight = SomeFlight();
  const FlightSummary summary = SummariseFlight("odd\xff.igc", flight.text, flight.points);
  const std::string text = SummaryText(summary);
  EXPECT_NE(text.find("Pilot           Jos\u00e9 \"Pepe\"\n"), std::string::npos) << text;
  EXPECT_NE(text.find("Date            2026-05-14\n"), std::string::npos) << text;
  EXPECT_NE(text.find("Security        Security check PASSED\n"), std::string::npos) << text;

  const auto json = nlohmann::json::parse(SummariesJson(std::vector<FileSummary>{summary, summary}),
                                          nullptr, false);
  ASSERT_TRUE(json.is_array());
  ASSERT_EQ(json.size(), 2U);
  EXPECT_EQ(json[0]["pilot"], "Jos\u00e9 \"Pepe\"");
  EXPECT_EQ(json[0]["fixes"], flight.points.size());
  EXPECT_EQ(json[0]["security"], "passed");
  EXPECT_EQ(json[0]["take_off"].get<std::string>().substr(0, 14), "2026-05-14T23:");
  EXPECT_EQ(nlohmann::json::parse(SummariesJson({}), nullptr, false).size(), 0U);
}

TEST(Summary, TellsWhatWasRepaired) {
  FlightSummary summary = {.file = "a.igc"};
  summary.reading = {.strict_message = "Format error on line 4",
                     .repairs = {{igc::RepairKind::kBadFix, 2, 4}},
                     .refused = {"why"},
                     .flights = 2,
                     .left_out = {.count = 3, .first_line = 7}};
  const std::string text = SummaryText(summary);
  EXPECT_EQ(text.substr(text.find("Repaired")),
            "Repaired        Format error on line 4; 2 lines left out\n"
            "Flights         2 in the file, this is the first\n"
            "Left out        3 fixes without a position, the first on line 7\n");
  const auto json =
      nlohmann::json::parse(SummariesJson(std::vector<FileSummary>{summary}), nullptr, false)[0];
  EXPECT_EQ(json["repairs"].dump(), R"([{"first_line":4,"kind":"bad_fix","lines":2}])");
  EXPECT_EQ(json["flights_refused"].dump(), R"(["why"])");
  EXPECT_EQ(json["fixes_left_out"], 3);
}

}  // namespace
}  // namespace skyhaul
