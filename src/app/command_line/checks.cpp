#include "app/command_line/checks.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <string_view>

#include "protocols/families.h"

namespace skyhaul {

namespace {

constexpr std::string_view kNoTrackLog = "Unsupported GPS for track log download";
constexpr std::string_view kNoIgc = "Unsupported GPS for IGC track log download";
constexpr std::string_view kNoWaypointRead = "Unsupported GPS for waypoint download";
constexpr std::string_view kNoWaypointWrite = "Unsupported GPS for waypoint upload";
constexpr std::string_view kNoAirspace = "Unsupported GPS for CTR upload";
constexpr std::string_view kNoUserName = "Unsupported GPS for username upload";
constexpr std::string_view kNoFlightList = "Unsupported GPS for flightlist download";

struct DeviceCheck {
  Command command;
  bool checks_usb;   // /USB is refused for instruments without it
  uint32_t service;  // what the instrument must offer
  std::string_view message;
};

// A command that is not listed talks to no instrument.
constexpr DeviceCheck kDeviceChecks[] = {
    {Command::kTrackLogToKml, true, kTrackLogs, kNoTrackLog},
    {Command::kTrackLogToOzi, true, kTrackLogs, kNoTrackLog},
    {Command::kTrackLogToIgc, true, kIgcLogs, kNoIgc},
    {Command::kTrackLogToMapSource, true, kTrackLogs, kNoTrackLog},
    {Command::kDownloadWaypoints, true, kWaypointDownload, kNoWaypointRead},
    {Command::kUploadWaypoints, true, kWaypointUpload, kNoWaypointWrite},
    {Command::kUploadWaypointsSecondForm, true, kWaypointUpload, kNoWaypointWrite},
    {Command::kCompetitionTrackLog, true, kTrackLogs, kNoTrackLog},
    {Command::kUploadAirspace, true, kAirspaceUpload, kNoAirspace},
    {Command::kUploadUserName, false, kUserNameUpload, kNoUserName},
    {Command::kDownloadGeographicWaypoints, true, kWaypointDownload, kNoWaypointRead},
    {Command::kFlightList, false, kFlightLists, kNoFlightList},
};

std::string_view DeviceRefusal(const CommandLineBlock& block) {
  const auto is_for = [&](const DeviceCheck& check) { return check.command == block.command; };
  const auto check = std::find_if(std::begin(kDeviceChecks), std::end(kDeviceChecks), is_for);
  if (check == std::end(kDeviceChecks)) return {};
  // USB comes first: with it no other instrument would do, whatever the command.
  const GpsTypeEntry& gps = EntryOf(block.gps_type);
  if (check->checks_usb && block.usb && gps.family->usb == kNoProtocol) {
    return "USB is not supported";
  }
  // What the driver cannot do yet is refused later, by the job table.
  if ((gps.services & check->service) == 0) return check->message;
  return {};
}

std::string_view Refusal(const CommandLineBlock& block, const CommandLineHost& host) {
  const std::string_view device_refusal = DeviceRefusal(block);
  if (!device_refusal.empty()) return device_refusal;
  // The list is meant for a client. Where the host has one of its own the switch may be left out.
  if (block.command == Command::kFlightList && block.notify_client.empty() &&
      !host.has_notify_client) {
    return "Missing notify window for flightlist download";
  }
  // Two switches name the files, so only a check after the last switch can miss one.
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
