#include "app/command_line/checks.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace skyhaul {
namespace {

constexpr int kGpsTypeCount = static_cast<int>(kGpsTypeNames.size());

std::string MessageFor(const CommandLineBlock& block, const CommandLineHost& host = {}) {
  std::string message;
  const int result = CheckBlock(block, host, message);
  EXPECT_EQ(result, message.empty() ? 0 : -1);
  return message;
}

CommandLineBlock BlockOf(int command, int gps_type) {
  CommandLineBlock block;
  block.command = static_cast<Command>(command);
  block.gps_type = static_cast<GpsType>(gps_type);
  block.notify_client = "client";
  return block;
}

TEST(Checks, EveryCommandAcceptsItsInstrumentsOnly) {
  const std::vector<int> all_but_11 = {0, 1,  2,  3,  4,  5,  6,  7,  8,
                                       9, 10, 12, 13, 14, 15, 16, 17, 18};
  const std::vector<int> igc = {0, 1, 3, 4, 6, 7, 8, 9, 10, 12, 13, 14, 15, 16, 17, 18};
  const std::vector<int> waypoint_read = {0, 1, 4, 9, 11, 12, 14, 16, 17, 18};
  const std::vector<int> waypoint_write = {0, 1, 2, 4, 6, 7, 9, 12, 14, 16, 17, 18};
  const struct {
    int command;
    std::vector<int> accepted;
    const char* message;
  } cases[] = {
      {1, all_but_11, "Unsupported GPS for track log download"},
      {2, all_but_11, "Unsupported GPS for track log download"},
      {3, igc, "Unsupported GPS for IGC track log download"},
      {4, all_but_11, "Unsupported GPS for track log download"},
      {5, waypoint_read, "Unsupported GPS for waypoint download"},
      {6, waypoint_write, "Unsupported GPS for waypoint upload"},
      {7, waypoint_write, "Unsupported GPS for waypoint upload"},
      {11, all_but_11, "Unsupported GPS for track log download"},
      {13, {0, 4}, "Unsupported GPS for CTR upload"},
      {14, {9, 18}, "Unsupported GPS for username upload"},
      {15, waypoint_read, "Unsupported GPS for waypoint download"},
      {17, {4, 9, 12, 14, 15, 16, 17, 18}, "Unsupported GPS for flightlist download"},
  };
  for (const auto& c : cases) {
    for (int type = 0; type < kGpsTypeCount; ++type) {
      const bool accepted = std::count(c.accepted.begin(), c.accepted.end(), type) != 0;
      EXPECT_EQ(MessageFor(BlockOf(c.command, type)), accepted ? "" : c.message)
          << "command " << c.command << ", type " << type;
    }
  }
}

TEST(Checks, UsbIsForGarminAndComesFirst) {
  for (int command = 0; command <= 19; ++command) {
    const bool checks_usb =
        (command >= 1 && command <= 7) || command == 11 || command == 13 || command == 15;
    CommandLineBlock mlrc = BlockOf(command, 11);
    mlrc.usb = true;
    EXPECT_EQ(MessageFor(mlrc) == "USB is not supported", checks_usb) << command;
    CommandLineBlock garmin = BlockOf(command, 0);
    garmin.usb = true;
    EXPECT_NE(MessageFor(garmin), "USB is not supported") << command;
  }
}

TEST(Checks, OtherCommandsLookAtNoInstrument) {
  for (const int command : {0, 8, 9, 10, 16, 19}) {
    for (int type = 0; type < kGpsTypeCount; ++type) {
      EXPECT_EQ(MessageFor(BlockOf(command, type)), "") << command;
    }
  }
}

TEST(Checks, FlightListNeedsSomebodyToTell) {
  CommandLineBlock block = BlockOf(17, 4);
  block.notify_client.clear();
  EXPECT_EQ(MessageFor(block), "Missing notify window for flightlist download");
  EXPECT_EQ(MessageFor(block, {.has_notify_client = true}), "");
  block.gps_type = GpsType::kGarmin;
  EXPECT_EQ(MessageFor(block), "Unsupported GPS for flightlist download");
}

TEST(Checks, WaypointConversionNeedsBothFiles) {
  constexpr char kMissing[] = "Missing file name(s) for waypoint file conversion";
  CommandLineBlock block = BlockOf(18, 11);
  EXPECT_EQ(MessageFor(block), kMissing);
  block.waypoint_source = "a";
  EXPECT_EQ(MessageFor(block), kMissing);
  block.waypoint_destination = "b";
  EXPECT_EQ(MessageFor(block), "");
  block.waypoint_source.clear();
  EXPECT_EQ(MessageFor(block), kMissing);
}

}  // namespace
}  // namespace skyhaul
