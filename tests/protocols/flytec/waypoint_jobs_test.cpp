#include <cmath>

#include "core/time_scale.h"
#include "core/units.h"
#include "protocols/flytec/field_text.h"
#include "protocols/flytec/waypoint_list.h"
#include "protocols/flytec/waypoint_upload.h"
#include "tests/protocols/flytec/flytec_bench.h"

namespace skyhaul::flytec {
namespace {

FileWaypoint Waypoint(const std::string& name, const std::string& description, double lat_deg,
                      double lon_deg, double altitude_m) {
  return {.lat = RadiansToSemicircles(lat_deg / kDegreesPerRadian),
          .lon = RadiansToSemicircles(lon_deg / kDegreesPerRadian),
          .altitude_m = altitude_m,
          .name = name,
          .description = description};
}

TEST(ReadWaypoints, EachIsReadAsOfNow) {
  FlytecBench b;
  b.script.answers["$PBRWPS,"] = {WaypointLine(0) + WaypointLine(44)};
  ASSERT_EQ(ReadWaypointsJob(b.job), 2);
  EXPECT_STREQ(b.job.data.waypoints[1].name, "URT144");
  const ClockFunctions& clock = b.platform.clock;
  const uint32_t now = TimeFromUnix(clock.unix_time_s(clock.context));
  EXPECT_NEAR(b.job.data.waypoints[1].time, now - 2, 1);
}

// The sentences of an upload, which the instrument has received without checksum and line end.
Texts Sent(FlytecBench& b) {
  Texts sentences;
  for (const std::string& request : b.script.requests) {
    if (request.starts_with("$PBRWPR")) sentences.push_back(request.substr(1, request.size() - 4));
  }
  return sentences;
}

TEST(WriteWaypoints, OneNameOf17CharactersAndAPositionGoOverTheWire) {
  const std::pair<FileWaypoint, const char*> cases[] = {
      {Waypoint("URT062", "Urthaler Hof", 47.7260667, 11.3595167, 619.5),
       "PBRWPR,4743.564,N,01121.571,E,,Urthaler Hof     ,0620"},
      {Waypoint("S03095", "", -4.4188333, -76.1268333, -7),
       "PBRWPR,0425.130,S,07607.610,W,,S03095           ,-007"},
      {Waypoint("A", "Seventeen letters and more", 0, 0, 99999),
       "PBRWPR,0000.000,N,00000.000,E,,Seventeen letters,99999"},
      {Waypoint("A", " a,b*c$d\te", 59.9999999, 9.99999999, NAN),
       "PBRWPR,6000.000,N,01000.000,E,,a-b-c-d e        ,0000"},
      {Waypoint("H\xc3\xb6rnle und weiter", "\n", 89.99998, 179.99998, -9999),
       "PBRWPR,8959.999,N,17959.999,E,,Hornle und weiter,-9999"},
  };
  for (const auto& [waypoint, body] : cases) {
    FlytecBench b;
    b.job.data.waypoints_to_send = {waypoint};
    EXPECT_EQ(WriteWaypointsJob(b.job), 1);
    EXPECT_EQ(Sent(b), Texts{body});
  }
}

TEST(WriteWaypoints, NamesAreMadeDifferentAndTheChangesCounted) {
  const std::tuple<Texts, Texts, uint32_t> cases[] = {
      {{"Hut", "Pass"}, {"Hut              ", "Pass             "}, 0},
      {{"Hut", "Hut", "Hut"}, {"Hut              ", "Hut2             ", "Hut3             "}, 2},
      {{"Seventeen letters", "Seventeen letters"}, {"Seventeen letters", "Seventeen letter2"}, 1},
      {{"", ""}, {"Unnamed          ", "Unnamed2         "}, 1},
  };
  for (const auto& [names, expected, expected_changes] : cases) {
    uint32_t changed = 99;
    EXPECT_EQ(NameFields(names, changed), expected);
    EXPECT_EQ(changed, expected_changes);
  }
  FlytecBench b;
  b.job.data.waypoints_to_send = {Waypoint("A", "Seventeen letters and more", 0, 0, 0)};
  EXPECT_EQ(WriteWaypointsJob(b.job), 1);
  EXPECT_TRUE(Has(b.recorder.statuses, "1 names were changed to fit 17 characters"));
}

TEST(WriteWaypoints, WhatCannotBeSentIsNamedAndPassedOver) {
  constexpr const char* kPlace = " lies where the instrument knows no position";
  constexpr const char* kAltitude = " has an altitude of more than five characters";
  const std::pair<FileWaypoint, std::string> cases[] = {
      {Waypoint("N", "North Pole", 90, 0, 0), std::string("North Pole") + kPlace},
      {Waypoint("W", "", 0, -180, 0), std::string("W") + kPlace},
      {Waypoint("Low", "", 0, 0, -9999.5), std::string("Low") + kAltitude},
      {Waypoint("High", "", 0, 0, 99999.5), std::string("High") + kAltitude},
  };
  for (const auto& [waypoint, message] : cases) {
    FlytecBench b;
    b.job.data.waypoints_to_send = {waypoint, Waypoint("B", "", 0, 0, 0)};
    EXPECT_EQ(WriteWaypointsJob(b.job), 1);
    EXPECT_EQ(b.recorder.messages, Texts{"Write GPS waypoints: Waypoint " + message});
    EXPECT_EQ(Sent(b).size(), 1U);
  }
}

struct Upload : FlytecBench {
  Upload() {
    job.data.waypoints_to_send = {Waypoint("A", "", 0, 0, 0), Waypoint("B", "", 0, 0, 0),
                                  Waypoint("C", "", 0, 0, 0)};
  }
};

TEST(WriteWaypoints, SendsOneAfterTheOther) {
  Upload b;
  ASSERT_EQ(WriteWaypointsJob(b.job), 3);
  EXPECT_EQ(Sent(b).size(), 3U);
  EXPECT_EQ(b.recorder.statuses, (Texts{"Product data read", "Waypoint 1 sent", "Waypoint 2 sent",
                                        "Waypoint 3 sent", "3 waypoints sent"}));
  EXPECT_EQ(b.recorder.progress.back(), "Sent wpt 3/3");
  EXPECT_EQ(b.recorder.percents.back(), 100);
  // 200 opening, 1000 after identification and 300 after each waypoint.
  EXPECT_NEAR(b.Waited_ms(), 2100, 60);
}

TEST(WriteWaypoints, TellsHowManyWereSentWhenItBreaksOff) {
  Upload b;
  b.bench.fault = FailWrite(3);
  EXPECT_LT(WriteWaypointsJob(b.job), 0);
  EXPECT_EQ(b.recorder.statuses.back(), "2 waypoints sent");
  EXPECT_EQ(b.recorder.messages, Texts{"Write GPS waypoints: COM port write error"});
  EXPECT_EQ(b.script.requests.size(), 3U);
}

}  // namespace
}  // namespace skyhaul::flytec
