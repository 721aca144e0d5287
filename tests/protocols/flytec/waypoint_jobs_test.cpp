#include <cstdio>

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

WaypointRecord Waypoint(const char* name, const char* description, double lat_deg, double lon_deg,
                        int altitude) {
  WaypointRecord waypoint;
  std::snprintf(waypoint.name, sizeof waypoint.name, "%s", name);
  std::snprintf(waypoint.description, sizeof waypoint.description, "%s", description);
  waypoint.lat = RadiansToSemicircles(lat_deg / kDegreesPerRadian);
  waypoint.lon = RadiansToSemicircles(lon_deg / kDegreesPerRadian);
  waypoint.altitude = altitude;
  return waypoint;
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

TEST(ReadWaypoints, AnEmptyMemoryIsNotAFailure) {
  FlytecBench b;
  b.script.answers["$PBRWPS,"] = {"\x13\x11"};
  EXPECT_EQ(ReadWaypointsJob(b.job), 0);
  EXPECT_EQ(b.recorder.statuses.back(), "0 waypoints received");
}

TEST(WaypointSentence, IsPaddedSignedAndRounded) {
  const std::pair<WaypointRecord, const char*> cases[] = {
      {Waypoint("URT062", "Urthaler Hof", 47.7260667, 11.3595167, 620),
       "PBRWPR,4743.564,N,01121.571,E,,Urthaler Hof     ,0620"},
      {Waypoint("S03095", "", -4.4188333, -76.1268333, -7),
       "PBRWPR,0425.130,S,07607.610,W,,S03095           ,-007"},
      {Waypoint("A", "Seventeen letters and more", 0, 0, 12345),
       "PBRWPR,0000.000,N,00000.000,E,,Seventeen letters,12345"},
      {Waypoint("A", "a,b*c$d\te", 59.9999999, 9.99999999, 0),
       "PBRWPR,6000.000,N,01000.000,E,,a-b-c-d e        ,0000"},
      {Waypoint("A", "H\xc3\xb6rnle", 47, 11, 0),
       "PBRWPR,4700.000,N,01100.000,E,,Hornle           ,0000"},
  };
  for (const auto& [waypoint, body] : cases)
    EXPECT_EQ(WaypointSentence(
                  waypoint,
                  FieldText(waypoint.description[0] != 0 ? waypoint.description : waypoint.name)),
              Sentence(body));
}

struct Upload : FlytecBench {
  Upload() {
    for (int n = 0; n < 3; ++n) {
      const std::string name(1, static_cast<char>('B' + n));
      job.data.waypoints.push_back(Waypoint("A", name.c_str(), 47 + n * 0.1, 11, 100 * n));
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
