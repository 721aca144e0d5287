#include "formats/waypoints/waypoint_list.h"

#include <gtest/gtest.h>

#include <cmath>
#include <set>

namespace skyhaul {
namespace {

struct Fitted {
  int cut = 0;
  std::vector<std::string> names;
};

Fitted FitNames(const std::vector<std::string>& names) {
  std::vector<FileWaypoint> waypoints;
  waypoints.reserve(names.size());
  for (const std::string& name : names) waypoints.push_back({.name = name});
  std::vector<WaypointRecord> records(3);
  Fitted fitted = {.cut = FitWaypoints(waypoints, records)};
  for (const WaypointRecord& record : records) fitted.names.emplace_back(record.name);
  return fitted;
}

TEST(FitWaypoints, KeepsNamesApart) {
  const struct {
    const char* what;
    std::vector<std::string> names;
    int cut;
    std::vector<std::string> fitted;
  } cases[] = {
      {"nothing to do", {"A01", "B02XYZ", ""}, 0, {"A01", "B02XYZ", ""}},
      {"cut", {"Interlaken"}, 1, {"Interl"}},
      {"cut to the same", {"TurnpiA", "TurnpiB", "TurnpiC"}, 3, {"Turnpi", "Turnp2", "Turnp3"}},
      {"a short name keeps its own", {"Turnpike", "TURNPI"}, 1, {"Turnp2", "TURNPI"}},
      {"the digit is taken", {"Turnp2", "TurnpiA", "TurnpiB"}, 2, {"Turnp2", "Turnpi", "Turnp3"}},
      {"equal in the file, short: left alone", {"A01", "A01"}, 0, {"A01", "A01"}},
      {"a blank before the cut", {"Zell  am See", "Zell  am Ziller"}, 2, {"Zell", "Zell2"}},
      {"accents fold", {"Altdörf", "Zürs", "Zurs"}, 1, {"Altdor", "Zurs2", "Zurs"}},
      {"one character becomes two", {"Straß", "Straße"}, 1, {"Strass", "Stras2"}},
      {"control characters and blanks around", {" A\t1 "}, 0, {"A 1"}},
  };
  for (const auto& test : cases) {
    const Fitted fitted = FitNames(test.names);
    EXPECT_EQ(fitted.cut, test.cut) << test.what;
    EXPECT_EQ(fitted.names, test.fitted) << test.what;
  }
}

TEST(FitWaypoints, KeepsManyNamesApart) {
  std::vector<std::string> names(2500, "Turnpoint");
  const Fitted fitted = FitNames(names);
  EXPECT_EQ(fitted.cut, 2500);
  EXPECT_EQ(std::set<std::string>(fitted.names.begin(), fitted.names.end()).size(), 2500U);
  EXPECT_EQ(fitted.names.back(), "Tu2500");
}

TEST(FitWaypoints, FitsTheOtherFields) {
  const FileWaypoint waypoints[] = {
      {.lat = -5,
       .lon = 7,
       .altitude_m = -1.5,
       .name = "A",
       .description = "Öde Alp\n" + std::string(40, 'x'),
       .time = 9,
       .type = kWaypointAirfield},
      {.altitude_m = 1e30},
      {.altitude_m = std::nan("")},
  };
  std::vector<WaypointRecord> records;
  EXPECT_EQ(FitWaypoints(waypoints, records), 0);
  EXPECT_EQ(records[0].lat, -5);
  EXPECT_EQ(records[0].lon, 7);
  EXPECT_EQ(records[0].altitude, -2);
  EXPECT_EQ(std::string(records[0].description), "Ode Alp " + std::string(32, 'x'));
  EXPECT_EQ(records[0].time, 9U);
  EXPECT_EQ(records[0].type, kWaypointAirfield);
  EXPECT_EQ(records[1].altitude, 2147483647);
  EXPECT_EQ(records[2].altitude, 0);
}

TEST(UnfitWaypoints, TakesTextThatFillsItsRoom) {
  WaypointRecord record = {.lat = 1, .lon = 2, .altitude = 3, .time = 4, .type = kWaypointAirfield};
  for (char& c : record.name) c = 'N';
  record.description[0] = '\xFC';
  const std::vector<FileWaypoint> waypoints = UnfitWaypoints({&record, 1});
  ASSERT_EQ(waypoints.size(), 1U);
  EXPECT_EQ(waypoints[0].name, "NNNNNNN");
  EXPECT_EQ(waypoints[0].description, "ü");
  EXPECT_EQ(waypoints[0].altitude_m, 3);
  EXPECT_EQ(waypoints[0].lat, 1);
  EXPECT_EQ(waypoints[0].lon, 2);
  EXPECT_EQ(waypoints[0].time, 4U);
  EXPECT_EQ(waypoints[0].type, kWaypointAirfield);
}

}  // namespace
}  // namespace skyhaul
