#include "instruments/flytec/waypoint_memory.h"

#include <gtest/gtest.h>

#include <set>

namespace skyhaul {
namespace {

TEST(WaypointMemory, MakesTheListLineOfARealInstrument) {
  FlytecWaypoint waypoint;
  ASSERT_TRUE(ReadUploadedWaypoint("4743.564,N,01121.571,E,,Urthaler Hof     ,0620", waypoint));
  EXPECT_EQ(WaypointListBody(waypoint),
            "PBRWPS,4743.564,N,01121.571,E,URT062,Urthaler Hof     ,0620");
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
    FlytecWaypoint waypoint;
    EXPECT_FALSE(ReadUploadedWaypoint(fields, waypoint)) << fields;
  }
}

TEST(WaypointMemory, TheSameNameOverwritesAndRoomEnds) {
  std::vector<FlytecWaypoint> memory;
  EXPECT_TRUE(StoreWaypoint(memory, {.long_name = "A", .altitude_m = 1}, 2));
  EXPECT_TRUE(StoreWaypoint(memory, {.long_name = "B", .altitude_m = 2}, 2));
  EXPECT_FALSE(StoreWaypoint(memory, {.long_name = "C", .altitude_m = 3}, 2));
  EXPECT_TRUE(StoreWaypoint(memory, {.long_name = "A", .altitude_m = 4}, 2));
  ASSERT_EQ(memory.size(), 2U);
  EXPECT_EQ(memory[0].altitude_m, 4);
  EXPECT_EQ(memory[1].altitude_m, 2);
}

TEST(WaypointMemory, GeneratedOnesDiffer) {
  std::set<std::string> names;
  std::set<std::string> positions;
  for (uint32_t n = 0; n < kFlytecMaxWaypoints; ++n) {
    const FlytecWaypoint waypoint = GenerateFlytecWaypoint(n);
    names.insert(waypoint.long_name);
    positions.insert(waypoint.position);
    EXPECT_EQ(waypoint.long_name.size(), 17U);
  }
  EXPECT_EQ(names.size(), kFlytecMaxWaypoints);
  EXPECT_EQ(positions.size(), kFlytecMaxWaypoints);
}

}  // namespace
}  // namespace skyhaul
