#include <gtest/gtest.h>

#include "instruments/flytec/airspace_memory.h"
#include "instruments/flytec/waypoint_memory.h"

namespace skyhaul::flytec_simulator {
namespace {

using Texts = std::vector<std::string>;

const std::string kNameLine = "005,000,Kreisbogen       ,3440";
const std::string kRemarkLine = "005,001,Remark Kreisbogen";
const std::string kCentreLine = "005,002,X,4703.004,N,01110.400,E";
const std::string kStartLine = "005,003,T,4703.004,N,01110.400,E,+";
const std::string kEndLine = "005,004,Z,4710.001,N,01104.700,E,+";

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
  EXPECT_EQ(Take({name, remark, point}).fault, 0);
  const Texts bad_orders[] = {
      {remark, point},
      {name, point},
      {name, name, point},
      {name, "004,001,Remark Kreisbogen", point},
      {"003,000,Kreisbogen,3440", remark, point},
      {"003,000,Kreisbogen       ,344", remark, point},
      {name, "003,001,Remark", point},
      {kNameLine, kRemarkLine, kCentreLine, "005,003,T,4703.004,N,01110.400,E,x", kEndLine},
  };
  for (const Texts& lines : bad_orders) EXPECT_EQ(Take(lines).fault, kAirspaceSyntax) << lines[1];
  for (const std::string line : {"Q,4710.001,N,01104.700,E", "P,4710.001,N,01104.700,E,+",
                                 "P,4710.01,N,01104.700,E", "C,4710.001,N,01104.700,E,1234"}) {
    EXPECT_EQ(Take({name, remark, "003,002," + line}).fault, kAirspaceSyntax) << line;
  }
  for (const std::string line :
       {"P,4760.001,N,01104.700,E", "P,9000.001,N,01104.700,E", "C,4710.001,N,01104.700,E,00000",
        "T,4710.001,N,01104.700,E,+", "X,4710.001,N,01104.700,E"}) {
    EXPECT_EQ(Take({name, remark, "003,002," + line}).fault, kAirspaceImplausible) << line;
  }
  EXPECT_EQ(
      Take({kNameLine, kRemarkLine, kCentreLine, "005,003,P,4703.004,N,01110.400,E", kEndLine})
          .fault,
      kAirspaceImplausible);
}

TEST(AirspaceMemory, ANewStartForgetsTheOldOne) {
  AirspaceUpload upload;
  EXPECT_EQ(TakeUploadLine(upload, "009,005,P,broken"), UploadLine::kMore);
  EXPECT_NE(upload.fault, 0);
  EXPECT_EQ(TakeUploadLine(upload, kNameLine), UploadLine::kMore);
  EXPECT_EQ(upload.fault, 0);
  EXPECT_EQ(TakeUploadLine(upload, "5,0,A"), UploadLine::kNotOne);
  EXPECT_EQ(TakeUploadLine(upload, ""), UploadLine::kNotOne);
}

TEST(Memory, RoomEndsInsideAnAirspaceAndBetweenRecords) {
  AirspaceUpload upload;
  (void)TakeUploadLine(upload, "104,000,Kreisbogen       ,3440");
  (void)TakeUploadLine(upload, "104,001,Remark Kreisbogen");
  for (int line = 2; line < 102; ++line) {
    const std::string number = (line < 10 ? "00" : line < 100 ? "0" : "") + std::to_string(line);
    (void)TakeUploadLine(upload, "104," + number + ",P,4710.001,N,01104.700,E");
  }
  EXPECT_EQ(upload.fault, 0);
  (void)TakeUploadLine(upload, "104,102,P,4710.001,N,01104.700,E");
  EXPECT_EQ(upload.fault, kAirspaceNoMemory);

  std::vector<StoredAirspace> memory;
  EXPECT_TRUE(StoreAirspace(memory, {.name = "A", .number = "0001"}, 1));
  EXPECT_FALSE(StoreAirspace(memory, {.name = "B"}, 1));
  EXPECT_TRUE(StoreAirspace(memory, {.name = "A", .number = "0002"}, 1));
  EXPECT_EQ(memory[0].number, "0002");

  std::vector<StoredWaypoint> waypoints;
  EXPECT_TRUE(StoreWaypoint(waypoints, {.long_name = "A", .altitude_m = 1}, 1));
  EXPECT_FALSE(StoreWaypoint(waypoints, {.long_name = "B"}, 1));
  EXPECT_TRUE(StoreWaypoint(waypoints, {.long_name = "A", .altitude_m = 2}, 1));
  EXPECT_EQ(waypoints[0].altitude_m, 2);
}

TEST(WaypointMemory, AWaypointBelowTheSeaHasNoTensOfMetresInItsName) {
  StoredWaypoint waypoint;
  ASSERT_TRUE(ReadUploadedWaypoint("0425.130,N,07607.610,W,,S03              ,-012", waypoint));
  EXPECT_EQ(WaypointListBody(waypoint),
            "PBRWPS,0425.130,N,07607.610,W,S03000,S03              ,-012");
}

TEST(WaypointMemory, RefusesWhatIsNotAWaypoint) {
  const char* cases[] = {
      "",
      "4743.564,N,01121.571,E,,Urthaler Hof     ",            // no altitude
      "4743.564,N,01121.571,E,,Urthaler Hof     ,0620,1",     // a field too many
      "4743.564,N,01121.571,E,URT062,Urthaler Hof     ,620",  // a short name
      "4743.564,N,01121.571,E,,Urthaler Hof,0620",            // not padded
      "4743.564,N,01121.571,E,,Urthaler Hof     ,123456",
      "4743.564,N,01121.571,E,,Urthaler Hof     ,-",
      "4743.564,N,01121.571,E,,Urthaler Hof     ,6 20",
      "4743.56,N,01121.571,E,,Urthaler Hof     ,0620",
      "4743,564,N,01121.571,E,,Urthaler Hof     ,0620",
      "4743.564,E,01121.571,E,,Urthaler Hof     ,0620",
      "4743.564,N,01121.571,,,Urthaler Hof     ,0620",
      "4760.000,N,01121.571,E,,Urthaler Hof     ,0620",
      "9000.001,N,01121.571,E,,Urthaler Hof     ,0620",
      "4743.564,N,18000.001,E,,Urthaler Hof     ,0620",
  };
  for (const char* fields : cases) {
    StoredWaypoint waypoint;
    EXPECT_FALSE(ReadUploadedWaypoint(fields, waypoint)) << fields;
  }
}

}  // namespace
}  // namespace skyhaul::flytec_simulator
