#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

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

// Instrument families as the command line numbers them.
enum class GpsType {
  kGarmin = 0,
  kMlr = 1,
  kTopnav = 2,
  kLogit = 3,
  kIqCompeo = 4,
  kGraviter = 5,
  kMagellan = 6,
  kXcTrainer = 7,
  kXctMxp = 8,
  kFlymaster = 9,
  kDsx = 10,
  kMlrc = 11,
  kIqBasic = 12,
  kMtk = 13,
  kLeonardo = 14,
  kAscent = 15,
  kDigiflyAir = 16,
  kSyride = 17,
  kFlymasterOld = 18,
};

// What /GPS= takes; the place in the table is the GpsType.
inline constexpr auto kGpsTypeNames = std::to_array<std::string_view>({
    "GARMIN",    "MLR",     "TOPNAV",     "LOGIT",  "IQCOMPEO",     "GRAVITER", "MAGELLAN",
    "XCTRAINER", "XCT_MXP", "FLYMASTER",  "DSX",    "MLRC",         "IQBASIC",  "MTK",
    "LEONARDO",  "ASCENT",  "DIGIFLYAIR", "SYRIDE", "FLYMASTEROLD",
});
static_assert(kGpsTypeNames.size() == static_cast<size_t>(GpsType::kFlymasterOld) + 1);

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

// What the command line asked for. It lives for the whole run; present is the test for batch mode.
struct CommandLineBlock {
  bool present = false;
  Command command = Command::kNone;
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

  std::optional<uint32_t> filter_start_s;  // seconds of the day, UTC
  std::optional<uint32_t> filter_stop_s;   // the same
  std::optional<uint32_t> session;
  std::vector<uint32_t> tracks;  // list numbers 1..kMaxTrackNumber, ascending; empty: none selected
  std::optional<uint32_t> send_log_s;  // flight time between position reports, 0: none
  std::optional<uint32_t> timeout_s;   // 0..kMaxTimeoutSeconds

  bool no_split = false;
  bool no_check = false;
  bool power_off = false;
  bool no_loop_optimisation = false;
};

}  // namespace skyhaul
