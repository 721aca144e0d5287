#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "protocols/families.h"

namespace skyhaul {

// The one thing that a batch run does. The numbers are part of the program's interface: other
// programs and traces know the commands by them. There is no 12.
enum class Command {
  kNone = 0,
  kTrackLogToKml = 1,
  kTrackLogToOzi = 2,
  kTrackLogToIgc = 3,
  kTrackLogToMapSource = 4,
  kDownloadWaypoints = 5,
  kUploadWaypoints = 6,
  kUploadWaypointsSecondForm = 7,
  kIgcToKml = 8,
  kDatToKml = 9,
  kOpenFile = 10,
  kCompetitionTrackLog = 11,
  kUploadAirspace = 13,
  kUploadUserName = 14,
  kDownloadGeographicWaypoints = 15,
  kCheckKml = 16,
  kFlightList = 17,
  kConvertWaypoints = 18,
  kKmlToIgc = 19,
};

enum class CompetitionFormat { kNone, kKml, kIgc };

// How the main window appears, in the numbers that window systems use for it.
enum class ShowCode { kHidden = 0, kMinimised = 2, kNormal = 5 };

// Sizes of the text fields, in characters.
inline constexpr size_t kMaxPortText = 80;
inline constexpr size_t kMaxFileName = 260;
inline constexpr size_t kMaxPilot = 80;
inline constexpr size_t kMaxIdentifier = 20;
inline constexpr size_t kMaxUserName = 260;
inline constexpr size_t kMaxNotifyClient = 260;

inline constexpr uint32_t kMaxPort = 9999;
inline constexpr uint32_t kMaxTrackNumber = 255;
inline constexpr size_t kMaxTracks = 20;
inline constexpr uint32_t kMaxTimeoutSeconds = 86400;
inline constexpr uint32_t kMaxWarning_m = 9999;

// What the command line asked for, for the whole run. present tells a run with a command line from
// one without.
struct CommandLineBlock {
  bool present = false;
  Command command = Command::kNone;
  std::vector<std::string_view> keywords;  // names of the keywords given, each once
  GpsType gps_type = GpsType::kGarmin;
  bool usb = false;

  std::string port_text;     // as given; empty when /COM= was not
  uint32_t port_number = 0;  // 1..kMaxPort, or 0 when port_text is a device's own name

  std::string file;  // the command's file or directory, or the file to open
  std::string waypoint_source;
  std::string waypoint_destination;
  std::string user_name;
  std::string log_file;
  std::string pilot;
  std::string identifier;
  std::string notify_client;

  bool exit = false;
  bool overwrite = false;
  ShowCode show_code = ShowCode::kNormal;
  std::optional<int32_t> position_x;
  std::optional<int32_t> position_y;

  CompetitionFormat competition_format = CompetitionFormat::kNone;
  bool competition_special = false;
  std::string competition_directory;
  std::string flight_score_file;
  std::optional<uint32_t> competition_id;
  std::optional<uint32_t> civl_id;

  // The first and the last second to keep, of the UTC day: 0..86399. The start is not after the
  // stop.
  std::optional<uint32_t> filter_start_s;
  std::optional<uint32_t> filter_stop_s;
  std::optional<uint32_t> session;
  std::vector<uint32_t> tracks;  // list numbers 1..kMaxTrackNumber, ascending; empty: none selected
  std::optional<uint32_t> send_log_s;  // flight time between position reports, 0: none
  std::optional<uint32_t> warning_m;   // of airspaces, 0..kMaxWarning_m
  std::optional<uint32_t> timeout_s;   // 0..kMaxTimeoutSeconds

  bool no_split = false;
  bool no_check = false;
  bool power_off = false;
  bool no_loop_optimisation = false;
};

}  // namespace skyhaul
