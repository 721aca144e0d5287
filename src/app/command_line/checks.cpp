#include "app/command_line/checks.h"

#include <algorithm>
#include <cstdint>
#include <initializer_list>

namespace skyhaul {

namespace {

using GpsTypeSet = uint32_t;  // bit n stands for the type with the code n

constexpr GpsTypeSet kAllGpsTypes = (GpsTypeSet{1} << kGpsTypeNames.size()) - 1;

constexpr GpsTypeSet Only(std::initializer_list<GpsType> types) {
  GpsTypeSet set = 0;
  for (const GpsType type : types) set |= GpsTypeSet{1} << static_cast<uint32_t>(type);
  return set;
}

constexpr GpsTypeSet AllBut(std::initializer_list<GpsType> types) {
  return kAllGpsTypes & ~Only(types);
}

constexpr GpsTypeSet kTrackLogTypes = AllBut({GpsType::kMlrc});
constexpr GpsTypeSet kIgcTypes = AllBut({GpsType::kTopnav, GpsType::kGraviter, GpsType::kMlrc});
constexpr GpsTypeSet kWaypointReadTypes =
    Only({GpsType::kGarmin, GpsType::kMlr, GpsType::kIqCompeo, GpsType::kFlymaster, GpsType::kMlrc,
          GpsType::kIqBasic, GpsType::kLeonardo, GpsType::kDigiflyAir, GpsType::kSyride,
          GpsType::kFlymasterOld});
constexpr GpsTypeSet kWaypointWriteTypes =
    Only({GpsType::kGarmin, GpsType::kMlr, GpsType::kTopnav, GpsType::kIqCompeo, GpsType::kMagellan,
          GpsType::kXcTrainer, GpsType::kFlymaster, GpsType::kIqBasic, GpsType::kLeonardo,
          GpsType::kDigiflyAir, GpsType::kSyride, GpsType::kFlymasterOld});
constexpr GpsTypeSet kAirspaceTypes = Only({GpsType::kGarmin, GpsType::kIqCompeo});
constexpr GpsTypeSet kUserNameTypes = Only({GpsType::kFlymaster, GpsType::kFlymasterOld});
constexpr GpsTypeSet kFlightListTypes =
    Only({GpsType::kIqCompeo, GpsType::kFlymaster, GpsType::kIqBasic, GpsType::kLeonardo,
          GpsType::kAscent, GpsType::kDigiflyAir, GpsType::kSyride, GpsType::kFlymasterOld});

constexpr std::string_view kNoTrackLog = "Unsupported GPS for track log download";
constexpr std::string_view kNoIgc = "Unsupported GPS for IGC track log download";
constexpr std::string_view kNoWaypointRead = "Unsupported GPS for waypoint download";
constexpr std::string_view kNoWaypointWrite = "Unsupported GPS for waypoint upload";
constexpr std::string_view kNoAirspace = "Unsupported GPS for CTR upload";
constexpr std::string_view kNoUserName = "Unsupported GPS for username upload";
constexpr std::string_view kNoFlightList = "Unsupported GPS for flightlist download";

struct DeviceCheck {
  Command command;
  bool checks_usb;  // USB is for Garmin instruments only
  GpsTypeSet gps_types;
  std::string_view message;
};

// A command that is not listed talks to no instrument.
constexpr DeviceCheck kDeviceChecks[] = {
    {Command::kTrackLogToKml, true, kTrackLogTypes, kNoTrackLog},
    {Command::kTrackLogToOzi, true, kTrackLogTypes, kNoTrackLog},
    {Command::kTrackLogToIgc, true, kIgcTypes, kNoIgc},
    {Command::kTrackLogToMapSource, true, kTrackLogTypes, kNoTrackLog},
    {Command::kDownloadWaypoints, true, kWaypointReadTypes, kNoWaypointRead},
    {Command::kUploadWaypoints, true, kWaypointWriteTypes, kNoWaypointWrite},
    {Command::kUploadWaypointsSecondForm, true, kWaypointWriteTypes, kNoWaypointWrite},
    {Command::kCompetitionTrackLog, true, kTrackLogTypes, kNoTrackLog},
    {Command::kUploadAirspace, true, kAirspaceTypes, kNoAirspace},
    {Command::kUploadUserName, false, kUserNameTypes, kNoUserName},
    {Command::kDownloadGeographicWaypoints, true, kWaypointReadTypes, kNoWaypointRead},
    {Command::kFlightList, false, kFlightListTypes, kNoFlightList},
};

std::string_view DeviceRefusal(const CommandLineBlock& block) {
  const auto is_for = [&](const DeviceCheck& check) { return check.command == block.command; };
  const auto check = std::find_if(std::begin(kDeviceChecks), std::end(kDeviceChecks), is_for);
  if (check == std::end(kDeviceChecks)) return {};
  if (check->checks_usb && block.usb && block.gps_type != GpsType::kGarmin) {
    return "USB is not supported";
  }
  if ((check->gps_types & Only({block.gps_type})) == 0) return check->message;
  return {};
}

std::string_view Refusal(const CommandLineBlock& block, const CommandLineHost& host) {
  const std::string_view device_refusal = DeviceRefusal(block);
  if (!device_refusal.empty()) return device_refusal;
  if (block.command == Command::kFlightList && block.notify_client.empty() &&
      !host.has_notify_client) {
    return "Missing notify window for flightlist download";
  }
  if (block.command == Command::kConvertWaypoints &&
      (block.waypoint_source.empty() || block.waypoint_destination.empty())) {
    return "Missing file name(s) for waypoint file conversion";
  }
  return {};
}

}  // namespace

int CheckBlock(const CommandLineBlock& block, const CommandLineHost& host, std::string& message) {
  const std::string_view refusal = Refusal(block, host);
  if (refusal.empty()) return 0;
  message = refusal;
  return -1;
}

}  // namespace skyhaul
