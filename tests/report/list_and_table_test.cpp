#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "core/units.h"
#include "report/file_summary.h"
#include "report/flight_table.h"
#include "report/settings_list.h"
#include "settings/table.h"
#include "tests/support/fake_registry.h"

namespace skyhaul {
namespace {

TEST(FlightTable, MarksTheChosen) {
  EXPECT_EQ(FlightTable({{.index = 0, .start_time = 200, .duration_s = 3661},
                         {.index = 11, .start_time = 300}},
                        {0}),
            "   No  Date        Start     Duration\n"
            "*   1  1989-12-31  00:03:20  01:01:01\n"
            "   12  1989-12-31  00:05:00  00:00:00\n");
}

TEST(ListSummary, SaysWhereAndWhat) {
  const auto degrees = [](double value) { return DegreesToSemicircles(value); };
  EXPECT_EQ(SummaryText(SummariseWaypoints(
                "a.cup",
                std::vector<FileWaypoint>{
                    {.lat = degrees(46.5), .lon = degrees(-7), .altitude_m = 1200.4},
                    {.lat = degrees(-3), .lon = degrees(8.25), .altitude_m = 482}})),
            "File            a.cup\nHolds           2 waypoints\n"
            "Latitude        -3.00000 to 46.50000\nLongitude       -7.00000 to 8.25000\n"
            "Altitude        482 to 1200 m\n");
  const AirspacePosition place = {.lat = degrees(47), .lon = degrees(11)};
  const CtrRecord circle = {.warning_m = 2000,
                            .airspace_class = "D",
                            .segments = {{.type = SegmentType::kCircle, .point = place}}};
  CtrRecord zone = circle;
  zone.name = "Zone";
  zone.type = "CTR";
  zone.damage = "Line 3: gone";
  const ListSummary summary =
      SummariseAirspaces("a.txt", std::vector<CtrRecord>{circle, circle, zone});
  EXPECT_EQ(SummaryText(summary),
            "File            a.txt\nHolds           3 airspaces\n"
            "Latitude        47.00000 to 47.00000\nLongitude       11.00000 to 11.00000\n"
            "Classes         D 2, D CTR 1\nWarnings at     2000 m 3\nDamaged         Zone: Line 3: "
            "gone\n");
  EXPECT_EQ(
      SummaryJson(summary)["airspaces"].dump(),
      R"([{"name":"","class":"D","warning_m":2000},{"name":"","class":"D","warning_m":2000},)"
      R"({"name":"Zone","class":"D","type":"CTR","damage":"Line 3: gone","warning_m":2000}])");
}

TEST(SettingsText, NothingThatSteersATerminalIsShown) {
  FakeRegistry registry;
  const SettingValues defaults = DefaultSettings(MakeRegistry(registry));
  SettingValues values = defaults;
  // Two controls, one of them of two bytes; bytes that are not UTF-8 and one that steers among
  // them.
  values.igc_site = "J\xc3\xb6rg\x1b\xc2\x9b.";
  values.igc_class = "J\xf6rg\x9b.";
  const std::string shown = SettingsText("a place", values, defaults);
  EXPECT_NE(shown.find("* IgcSite                  J\xc3\xb6rg??.  (default"), std::string::npos);
  EXPECT_NE(shown.find("* IgcClass                 J\xc3\xb6rg?.  (default"), std::string::npos);
  EXPECT_TRUE(shown.ends_with("2 of 92 differ from their default (*)\n"));
}

}  // namespace
}  // namespace skyhaul
