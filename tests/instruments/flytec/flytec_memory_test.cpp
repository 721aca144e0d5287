#include <gtest/gtest.h>

#include <algorithm>

#include "core/time_scale.h"
#include "instruments/flytec/airspace_memory.h"
#include "instruments/flytec/flight_memory.h"
#include "instruments/flytec/waypoint_memory.h"

namespace skyhaul::flytec_simulator {
namespace {

using Texts = std::vector<std::string>;

AirspaceUpload Take(const Texts& lines) {
  AirspaceUpload upload;
  for (const std::string& line : lines) {
    const bool last = line == lines.back();
    EXPECT_EQ(TakeUploadLine(upload, line), last ? UploadLine::kLast : UploadLine::kMore) << line;
  }
  return upload;
}

TEST(AirspaceMemory, FindsWhatIsWrong) {
  const std::string name = "003,000,Kreisbogen       ,3440";
  const std::string remark = "003,001,Remark Kreisbogen";
  const std::string point = "003,002,P,4710.001,N,01104.700,E";
  const Texts arc = {"005,000,Kreisbogen       ,3440", "005,001,Remark Kreisbogen",
                     "005,002,X,4703.004,N,01110.400,E", "005,004,Z,4710.001,N,01104.700,E,+"};
  const Texts bad_orders[] = {
      {name, point},
      {name, "004,001,Remark Kreisbogen", point},
      {"003,000,Kreisbogen,3440", remark, point},
      {"003,000,Kreisbogen       ,344", remark, point},
      {name, "003,001,Remark", point},
      {arc[0], arc[1], arc[2], "005,003,T,4703.004,N,01110.400,E,x", arc[3]},
  };
  for (const Texts& lines : bad_orders) EXPECT_EQ(Take(lines).fault, kAirspaceSyntax) << lines[1];
  const std::pair<char, Texts> bad_elements[] = {
      {kAirspaceSyntax,
       {"Q,4710.001,N,01104.700,E", "P,4710.001,N,01104.700,E,+", "P,4710.01,N,01104.700,E",
        "C,4710.001,N,01104.700,E,1234"}},
      {kAirspaceImplausible,
       {"P,4760.001,N,01104.700,E", "P,9000.001,N,01104.700,E", "C,4710.001,N,01104.700,E,00000",
        "T,4710.001,N,01104.700,E,+", "X,4710.001,N,01104.700,E"}},
  };
  for (const auto& [fault, elements] : bad_elements) {
    for (const std::string& element : elements) {
      EXPECT_EQ(Take({name, remark, "003,002," + element}).fault, fault) << element;
    }
  }
  EXPECT_EQ(Take({arc[0], arc[1], arc[2], "005,003,P,4703.004,N,01110.400,E", arc[3]}).fault,
            kAirspaceImplausible);
}

TEST(AirspaceMemory, ANewStartForgetsTheOldOne) {
  AirspaceUpload upload;
  EXPECT_EQ(TakeUploadLine(upload, "009,005,P,broken"), UploadLine::kMore);
  EXPECT_NE(upload.fault, 0);
  EXPECT_EQ(TakeUploadLine(upload, "003,000,Kreisbogen       ,3440"), UploadLine::kMore);
  EXPECT_EQ(upload.fault, 0);
  EXPECT_EQ(TakeUploadLine(upload, ""), UploadLine::kNotOne);
}

TEST(Memory, RoomEndsInsideAnAirspaceAndBetweenRecords) {
  AirspaceUpload upload;
  (void)TakeUploadLine(upload, "104,000,Kreisbogen       ,3440");
  (void)TakeUploadLine(upload, "104,001,Remark Kreisbogen");
  for (int line = 2; line <= 102; ++line) {
    EXPECT_EQ(upload.fault, 0);
    const std::string number = std::to_string(1000 + line).substr(1);
    (void)TakeUploadLine(upload, "104," + number + ",P,4710.001,N,01104.700,E");
  }
  EXPECT_EQ(upload.fault, kAirspaceNoMemory);

  std::vector<StoredAirspace> airspaces;
  EXPECT_TRUE(StoreAirspace(airspaces, {.name = "A", .number = "0001"}, 1));
  EXPECT_FALSE(StoreAirspace(airspaces, {.name = "B"}, 1));
  EXPECT_TRUE(StoreAirspace(airspaces, {.name = "A", .number = "0002"}, 1));
  EXPECT_EQ(airspaces, (std::vector<StoredAirspace>{{.name = "A", .number = "0002"}}));

  std::vector<StoredWaypoint> waypoints;
  EXPECT_TRUE(StoreWaypoint(waypoints, {.long_name = "A", .altitude_m = 1}, 1));
  EXPECT_FALSE(StoreWaypoint(waypoints, {.long_name = "B"}, 1));
  EXPECT_TRUE(StoreWaypoint(waypoints, {.long_name = "A", .altitude_m = 2}, 1));
  EXPECT_EQ(waypoints, (std::vector<StoredWaypoint>{{.long_name = "A", .altitude_m = 2}}));
}

TEST(WaypointMemory, AWaypointBelowTheSeaHasNoTensOfMetresInItsName) {
  StoredWaypoint waypoint;
  ASSERT_TRUE(ReadUploadedWaypoint("0425.130,N,07607.610,W,,S03              ,-012", waypoint));
  EXPECT_EQ(WaypointListBody(waypoint),
            "PBRWPS,0425.130,N,07607.610,W,S03000,S03              ,-012");
}

TEST(WaypointMemory, RefusesWhatIsNotAWaypoint) {
  const char* cases[] = {
      "4743.564,N,01121.571,E,,Urthaler Hof     ",            // no altitude
      "4743.564,N,01121.571,E,,Urthaler Hof     ,0620,1",     // a field too many
      "4743.564,N,01121.571,E,URT062,Urthaler Hof     ,620",  // a short name
      "4743.564,N,01121.571,E,,Urthaler Hof,0620",            // not padded
      "4743.564,N,01121.571,E,,Urthaler Hof     ,123456",
      "4743.564,N,01121.571,E,,Urthaler Hof     ,6 20",
      "4743.564,E,01121.571,E,,Urthaler Hof     ,0620",
      "4743.564,N,18000.001,E,,Urthaler Hof     ,0620",
  };
  for (const char* fields : cases) {
    StoredWaypoint waypoint;
    EXPECT_FALSE(ReadUploadedWaypoint(fields, waypoint)) << fields;
  }
}

TEST(FlightFromIgc, FindsTheTimes) {
  const uint32_t noon = TimeFromCalendar({2021, 8, 5, 12});
  const uint32_t late = TimeFromCalendar({2021, 8, 5, 23, 59, 58});
  const std::tuple<const char*, uint32_t, uint32_t> cases[] = {
      {"AXSH000\r\nHFDTEDATE:050821,01\r\nB2359584700000N01100000EA0100001050\r\n"
       "B0000084700000N01100000EA0100001050\r\n",
       late, 10},
      // Damaged, but readable.
      {"HFDTE050821\nB120000\nB47\nBxxxxxx\nB120140 and no position\n", noon, 100},
      {"HFDTEDATE: 050821\nB235958\nB000008", late, 10},
      {"HFDTE0508\r\nB120000\r\n", 12 * 3600, 0},
  };
  for (const auto& [text, start, duration_s] : cases) {
    const StoredFlight flight = FlightFromIgc(text);
    EXPECT_EQ(flight.igc_text, text);
    EXPECT_EQ(flight.start_time, start) << text;
    EXPECT_EQ(flight.duration_s, duration_s) << text;
  }
}

TEST(FlightFromIgc, NewestComesFirst) {
  std::vector<StoredFlight> flights = {{.start_time = 1}, {.start_time = 3}, {.start_time = 2}};
  SortNewestFirst(flights);
  EXPECT_TRUE(std::ranges::is_sorted(flights, std::greater{}, &StoredFlight::start_time));
}

}  // namespace
}  // namespace skyhaul::flytec_simulator
