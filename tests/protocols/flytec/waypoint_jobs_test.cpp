#include <cmath>

#include "core/time_scale.h"
#include "core/units.h"
#include "protocols/flytec/field_text.h"
#include "protocols/flytec/waypoint_list.h"
#include "protocols/flytec/waypoint_upload.h"
#include "tests/protocols/flytec/flytec_bench.h"

namespace skyhaul::flytec {
namespace {

std::string WaypointLine(int n) {
  return Sentence("PBRWPS,4743.564,N,01121.571,E,URT" + std::to_string(100 + n) +
                  ",Urthaler Hof     ,0620");
}

FileWaypoint Waypoint(const std::string& name, const std::string& description, double lat_deg,
                      double lon_deg, double altitude_m) {
  return {.lat = RadiansToSemicircles(lat_deg / kDegreesPerRadian),
          .lon = RadiansToSemicircles(lon_deg / kDegreesPerRadian),
          .altitude_m = altitude_m,
          .name = name,
          .description = description};
}

TEST(ReadWaypoints, ReceivesUntilOneSecondOfSilence) {
  FlytecBench b;
  std::string list = "\x13";
  for (int n = 0; n < 45; ++n) list += WaypointLine(n);
  b.script.answers["$PBRWPS,"] = {list + "\x11"};
  const uint64_t start_ns = b.bench.now_ns;
  ASSERT_EQ(ReadWaypointsJob(b.job), 45);
  ASSERT_EQ(b.job.data.waypoints.size(), 45U);
  EXPECT_STREQ(b.job.data.waypoints[44].name, "URT144");
  const ClockFunctions& clock = b.platform.clock;
  const uint32_t now = TimeFromUnix(clock.unix_time_s(clock.context));
  EXPECT_LE(b.job.data.waypoints[0].time, now - 1);
  EXPECT_GE(b.job.data.waypoints[0].time, now - 3);
  EXPECT_EQ(b.bench.written, "\x11$PBRSNP,*21\r\n\x11$PBRWPS,*38\r\n");
  EXPECT_EQ(b.recorder.statuses.back(), "45 waypoints received");
  EXPECT_TRUE(b.recorder.messages.empty());
  const double wire_ms = static_cast<double>(b.bench.sent + b.bench.received) * 10'000 / 57600;
  EXPECT_NEAR(static_cast<double>(Elapsed_ms(b.bench, start_ns)), 2200 + wire_ms, 80);
}

TEST(ReadWaypoints, EachFailureHasItsMessageAndDeliversNothing) {
  const std::string good = WaypointLine(0);
  std::string endless;
  for (int n = 0; n < 10'001; ++n) endless += good;
  const Failure cases[] = {
      {good, FailWrite(1), "E304 COM port write error"},
      {good, Unplug(60), "E301 COM port read error"},
      {good + "$PBRWPS,4730,N,01100,E,SEVENCH,", {}, "E302 Format error 12"},
      {good + "$PBRWPS,x", {}, "E302 Format error 2"},
      {good + good.substr(0, 40), {}, "The waypoint list broke off inside a waypoint"},
      {endless, {}, "E303 Waypoint memory allocation"},
  };
  for (Failure failure : cases) {
    FlytecBench b;
    failure.message.insert(0, "Read GPS waypoints: ");
    ExpectFailure(b, ReadWaypointsJob, "$PBRWPS,", failure);
  }
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
      {{"Seventeen letters and more"}, {"Seventeen letters"}, 1},
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
    for (int n = 0; n < 3; ++n) {
      const std::string name(1, static_cast<char>('B' + n));
      job.data.waypoints_to_send.push_back(Waypoint("A", name, 47 + n * 0.1, 11, 100 * n));
    }
  }
};

TEST(WriteWaypoints, SendsOneAfterTheOther) {
  Upload b;
  const uint64_t start_ns = b.bench.now_ns;
  ASSERT_EQ(WriteWaypointsJob(b.job), 3);
  EXPECT_EQ(b.bench.written, "\x11$PBRSNP,*21\r\n" +
                                 Sentence("PBRWPR,4700.000,N,01100.000,E,,B                ,0000") +
                                 Sentence("PBRWPR,4706.000,N,01100.000,E,,C                ,0100") +
                                 Sentence("PBRWPR,4712.000,N,01100.000,E,,D                ,0200"));
  EXPECT_EQ(b.recorder.statuses, (Texts{"Product data read", "Waypoint 1 sent", "Waypoint 2 sent",
                                        "Waypoint 3 sent", "3 waypoints sent"}));
  EXPECT_EQ(b.recorder.progress.back(), "Sent wpt 3/3");
  EXPECT_EQ(b.recorder.percents.back(), 100);
  // 200 opening, 1000 after identification and 300 after each waypoint.
  EXPECT_NEAR(static_cast<double>(Elapsed_ms(b.bench, start_ns)), 2110, 60);
}

TEST(WriteWaypoints, TellsHowManyWereSentWhenItBreaksOff) {
  for (size_t sent = 0; sent < 3; ++sent) {
    Upload b;
    b.bench.fault = FailWrite(1 + sent);
    EXPECT_LT(WriteWaypointsJob(b.job), 0);
    EXPECT_EQ(b.recorder.statuses.back(), std::to_string(sent) + " waypoints sent");
    EXPECT_EQ(b.recorder.messages, Texts{"Write GPS waypoints: COM port write error"});
    EXPECT_EQ(b.script.requests.size(), 1 + sent);
  }
}

}  // namespace
}  // namespace skyhaul::flytec
