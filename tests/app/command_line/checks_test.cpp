#include "app/command_line/checks.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <set>
#include <string>

namespace skyhaul {
namespace {

std::string MessageFor(const CommandLineBlock& block, const CommandLineHost& host = {}) {
  std::string message;
  const int result = CheckBlock(block, host, message);
  EXPECT_EQ(result, message.empty() ? 0 : -1);
  return message;
}

CommandLineBlock BlockOf(int command, uint32_t gps_type) {
  CommandLineBlock block;
  block.command = static_cast<Command>(command);
  block.gps_type = static_cast<GpsType>(gps_type);
  block.notify_client = "client";
  return block;
}

TEST(Checks, EveryCommandAcceptsItsInstrumentsOnly) {
  using Codes = std::set<uint32_t>;
  const Codes all = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18};
  const Codes tracks = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 12, 13, 14, 15, 16, 17, 18};
  const Codes igc = {0, 1, 3, 4, 6, 7, 8, 9, 10, 12, 13, 14, 15, 16, 17, 18};
  const Codes waypoint_read = {0, 1, 4, 9, 11, 12, 14, 16, 17, 18};
  const Codes waypoint_write = {0, 1, 2, 4, 6, 7, 9, 12, 14, 16, 17, 18};
  const Codes flight_list = {4, 9, 12, 14, 15, 16, 17, 18};
  const struct {
    std::set<int> commands;
    Codes accepted;
    const char* message = "";
  } cases[] = {
      {{1, 2, 4, 11}, tracks, "Unsupported GPS for track log download"},
      {{3}, igc, "Unsupported GPS for IGC track log download"},
      {{5, 15}, waypoint_read, "Unsupported GPS for waypoint download"},
      {{6, 7}, waypoint_write, "Unsupported GPS for waypoint upload"},
      {{13}, {0, 4}, "Unsupported GPS for CTR upload"},
      {{14}, {9, 18}, "Unsupported GPS for username upload"},
      {{17}, flight_list, "Unsupported GPS for flightlist download"},
      {{0, 8, 9, 10, 16, 19}, all},
  };
  for (const auto& c : cases) {
    for (const int command : c.commands) {
      for (const uint32_t type : all) {
        EXPECT_EQ(MessageFor(BlockOf(command, type)), c.accepted.contains(type) ? "" : c.message)
            << "command " << command << ", type " << type;
      }
    }
  }
}

TEST(Checks, UsbIsForGarminAndComesFirst) {
  const std::set<int> checks_usb = {1, 2, 3, 4, 5, 6, 7, 11, 13, 15};
  for (int command = 0; command <= 19; ++command) {
    for (const uint32_t type : {0U, 11U}) {
      CommandLineBlock block = BlockOf(command, type);
      block.usb = true;
      EXPECT_EQ(MessageFor(block) == "USB is not supported",
                type == 11 && checks_usb.contains(command))
          << command;
    }
  }
}

TEST(Checks, FlightListNeedsAClient) {
  CommandLineBlock block = BlockOf(17, 4);
  block.notify_client.clear();
  EXPECT_EQ(MessageFor(block), "Missing notify window for flightlist download");
  EXPECT_EQ(MessageFor(block, {.has_notify_client = true}), "");
  block.gps_type = GpsType::kGarmin;
  EXPECT_EQ(MessageFor(block), "Unsupported GPS for flightlist download");
}

TEST(Checks, WaypointConversionNeedsBothFiles) {
  for (const bool has_source : {false, true}) {
    for (const bool has_destination : {false, true}) {
      CommandLineBlock block = BlockOf(18, 11);
      if (has_source) block.waypoint_source = "a";
      if (has_destination) block.waypoint_destination = "b";
      EXPECT_EQ(MessageFor(block).empty(), has_source && has_destination);
    }
  }
}

}  // namespace
}  // namespace skyhaul
