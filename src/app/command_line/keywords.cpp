#include "app/command_line/keywords.h"

#include <algorithm>
#include <iterator>

#include "app/command_line/take_value.h"

namespace skyhaul {

namespace {

using Block = CommandLineBlock;

// What no command that is carried out today looks at.
constexpr CommandSet kNoCommand = 0;

constexpr CommandSet kTrackDownloads =
    Commands(Command::kTrackLogToKml, Command::kTrackLogToOzi, Command::kTrackLogToIgc);

constexpr CommandSet kUploads = Commands(
    Command::kUploadWaypoints, Command::kUploadWaypointsSecondForm, Command::kUploadAirspace);

constexpr std::string_view kMissingLogFile = "Missing log file name";
constexpr std::string_view kMissingWaypointFile = "Missing wpt file name";

// A command whose value is its file or directory.
constexpr Keyword FileCommand(std::string_view name, std::string_view value_name, Command command,
                              std::string_view missing, std::string_view help) {
  return {.name = name,
          .value_name = value_name,
          .help = help,
          .take = TakeText,
          .command = command,
          .text = &Block::file,
          .max_characters = kMaxFileName,
          .missing = missing};
}

constexpr Keyword Flag(std::string_view name, bool Block::*flag, std::string_view help,
                       CommandSet effective_with = kEveryCommand) {
  return {
      .name = name, .help = help, .take = TakeFlag, .effective_with = effective_with, .flag = flag};
}

constexpr Keyword Text(std::string_view name, std::string_view value_name, std::string Block::*text,
                       size_t max_characters, std::string_view missing, std::string_view help,
                       CommandSet effective_with = kEveryCommand) {
  return {.name = name,
          .value_name = value_name,
          .help = help,
          .take = TakeText,
          .effective_with = effective_with,
          .text = text,
          .max_characters = max_characters,
          .missing = missing};
}

constexpr Keyword kKeywords[] = {
    // Commands.
    FileCommand("KML_LOG", "FILE", Command::kTrackLogToKml, kMissingLogFile,
                "download the track log and save it as KML"),
    FileCommand("OZI_LOG", "FILE", Command::kTrackLogToOzi, kMissingLogFile,
                "download the track log and save it to the file"),
    FileCommand("RD_LOG", "FILE", Command::kTrackLogToOzi, kMissingLogFile, "the same as /OZI_LOG"),
    FileCommand("IGC_LOG", "DIRECTORY", Command::kTrackLogToIgc, "Missing log file directory name",
                "download the track log and save IGC files in the directory"),
    FileCommand("MPS_LOG", "FILE", Command::kTrackLogToMapSource, kMissingLogFile,
                "download the track log and save it in the MapSource format"),
    FileCommand("RD_WPT", "FILE", Command::kDownloadWaypoints, kMissingWaypointFile,
                "download waypoints to the file"),
    FileCommand("WR_WPT", "FILE", Command::kUploadWaypoints, kMissingWaypointFile,
                "upload waypoints from the file"),
    FileCommand("WR_WPT2", "FILE", Command::kUploadWaypointsSecondForm, kMissingWaypointFile,
                "upload waypoints from the file, second form"),
    FileCommand("RD_GEO_WPT", "FILE", Command::kDownloadGeographicWaypoints, kMissingWaypointFile,
                "download waypoints to the file, geographic form"),
    {.name = "COMP_LOG",
     .value_name = "KML|IGC",
     .help = "download the track log of a competition flight",
     .take = TakeCompetitionFormat,
     .command = Command::kCompetitionTrackLog,
     .bad = "Bad competition fle type"},
    FileCommand("WR_CTR", "FILE", Command::kUploadAirspace, "Missing CTR file name",
                "upload airspaces (CTRs) from the file"),
    {.name = "USERNAME",
     .value_name = "TEXT",
     .help = "upload the user name",
     .take = TakeText,
     .command = Command::kUploadUserName,
     .text = &Block::user_name,
     .max_characters = kMaxUserName,
     .missing = "Missing username"},
    {.name = "FLIGHTLIST",
     .help = "send the list of the stored flights to the /NOTIFY client",
     .take = TakeFlag,
     .command = Command::kFlightList},
    FileCommand("IGC2KML", "FILE", Command::kIgcToKml, "Missing IGC/KML file name",
                "convert an IGC file to KML"),
    FileCommand("DAT2KML", "FILE", Command::kDatToKml, "Missing DAT/KML file name",
                "convert a DAT track file to KML"),
    FileCommand("KML2IGC", "FILE", Command::kKmlToIgc, "Missing KML/IGC file name",
                "convert a KML file to IGC"),
    FileCommand("CHKKML", "FILE", Command::kCheckKml, "Missing file name", "check a KML file"),
    {.name = "WPTSRC",
     .value_name = "FILE",
     .help = "convert this waypoint file to /WPTDEST",
     .take = TakeText,
     .command = Command::kConvertWaypoints,
     .text = &Block::waypoint_source,
     .max_characters = kMaxFileName,
     .missing = "Missing wpt. source file name"},
    {.name = "WPTDEST",
     .value_name = "FILE",
     .help = "the waypoint file that /WPTSRC becomes",
     .take = TakeText,
     .command = Command::kConvertWaypoints,
     .text = &Block::waypoint_destination,
     .max_characters = kMaxFileName,
     .missing = "Missing wpt. destination file name"},

    // Instrument and port.
    {.name = "GPS",
     .value_name = "TYPE",
     .help = "the instrument, one of the names below",
     .take = TakeGpsType,
     .bad = "Bad GPS type"},
    {.name = "COM",
     .value_name = "PORT",
     .help = "the port: a number from 1 to 9999 or the path of a device",
     .take = TakePort,
     .bad = "Bad COM port"},
    Flag("USB", &Block::usb, "the instrument is on USB (GARMIN only)"),
    {.name = "TIMEOUT",
     .value_name = "SECONDS",
     .help = "how long to look for the instrument, at most 86400",
     .take = TakeTimeout,
     .bad = "Bad TIMEOUT value"},
    Flag("PWROFF", &Block::power_off, "switch the instrument off afterwards", kNoCommand),

    // What is downloaded and how it is saved.
    {.name = "TRACK",
     .value_name = "LIST",
     .help = "the flights to download by their list numbers, as in 1,3-5; at most 20",
     .take = TakeTracks,
     .effective_with = kTrackDownloads,
     .missing = "Missing TRACK list",
     .bad = "Bad TRACK value"},
    {.name = "FILTER",
     .value_name = "HH:MM[:SS]",
     .help = "drop what lies before this time (UTC)",
     .take = TakeFilterStart,
     .effective_with = kTrackDownloads,
     .bad = "Bad track log start filter time"},
    {.name = "FILTEREND",
     .value_name = "HH:MM[:SS]",
     .help = "drop what lies after this time (UTC)",
     .take = TakeFilterStop,
     .effective_with = kTrackDownloads,
     .bad = "Bad track log stop filter time"},
    Text("PILOT", "NAME", &Block::pilot, kMaxPilot, {}, "the pilot's name", kTrackDownloads),
    Text("ID", "TEXT", &Block::identifier, kMaxIdentifier, {}, "the pilot's or glider's identifier",
         kNoCommand),
    Text("LOGFILE", "FILE", &Block::log_file, kMaxFileName, "Missing track log file name",
         "the name of the track log file", kNoCommand),
    Flag("OVERWRITE", &Block::overwrite, "replace files that exist already"),
    Flag("NOSPLIT", &Block::no_split, "keep the downloaded flights in one file", kTrackDownloads),
    Flag("NOCHECK", &Block::no_check, "do not read an upload back to verify it", kUploads),
    Flag("NOLOOPOPT", &Block::no_loop_optimisation, "leave out the optimisation of loops",
         kNoCommand),

    // Another program, and the window.
    Text("NOTIFY", "CLIENT", &Block::notify_client, kMaxNotifyClient, "Missing window class name",
         "the program that positions, flights and the end are sent to"),
    {.name = "SENDLOG",
     .value_name = "SECONDS",
     .help = "flight time between two positions that are sent to it; 0: none",
     .take = TakeNumber,
     .effective_with = kTrackDownloads,
     .number = &Block::send_log_s,
     .bad = "Bad SENDLOG value"},
    Flag("EXIT", &Block::exit, "end the program when the command is done"),
    {.name = "WIN",
     .value_name = "0|1|2",
     .help = "window hidden, minimised, or normal",
     .take = TakeShowCode,
     .bad = "Bad window size"},
    {.name = "POSX",
     .value_name = "NUMBER",
     .help = "the window's place from the left",
     .take = TakeSignedNumber,
     .signed_number = &Block::position_x,
     .bad = "Bad POSX value"},
    {.name = "POSY",
     .value_name = "NUMBER",
     .help = "the window's place from the top",
     .take = TakeSignedNumber,
     .signed_number = &Block::position_y,
     .bad = "Bad POSY value"},

    // Competitions.
    Flag("COMP_SPECIAL", &Block::competition_special, "special form of the competition download",
         kNoCommand),
    Text("COMP_DIR", "DIRECTORY", &Block::competition_directory, kMaxFileName,
         "Missing competition directory name", "the competition's directory", kNoCommand),
    Text("COMP_FS", "FILE", &Block::flight_score_file, kMaxFileName,
         "Missing flight score file name", "the competition's flight score file", kNoCommand),
    {.name = "COMPID",
     .value_name = "NUMBER",
     .help = "the competition's number",
     .take = TakeNumber,
     .effective_with = kNoCommand,
     .number = &Block::competition_id,
     .bad = "Bad COMPID value"},
    {.name = "CIVLID",
     .value_name = "NUMBER",
     .help = "the pilot's CIVL number",
     .take = TakeNumber,
     .effective_with = kNoCommand,
     .number = &Block::civl_id,
     .bad = "Bad CIVLID value"},
    {.name = "SESSION",
     .value_name = "NUMBER",
     .help = "the competition's session number",
     .take = TakeNumber,
     .effective_with = kNoCommand,
     .number = &Block::session,
     .missing = "Missing session number",
     .bad = "Bad session number"},
};

// Null when there is none of that name.
const Keyword* FindKeyword(std::string_view name) {
  const auto has_name = [&](const Keyword& keyword) { return keyword.name == name; };
  const auto found = std::find_if(std::begin(kKeywords), std::end(kKeywords), has_name);
  return found == std::end(kKeywords) ? nullptr : &*found;
}

void Remember(std::string_view name, CommandLineBlock& block) {
  const auto& given = block.keywords;
  if (std::find(given.begin(), given.end(), name) == given.end()) block.keywords.push_back(name);
}

}  // namespace

std::span<const Keyword> Keywords() {
  return kKeywords;
}

bool CarriedOut(Command command) {
  constexpr CommandSet kCarriedOut =
      kTrackDownloads | Commands(Command::kDownloadWaypoints, Command::kUploadWaypoints,
                                 Command::kUploadWaypointsSecondForm, Command::kIgcToKml,
                                 Command::kOpenFile, Command::kUploadAirspace,
                                 Command::kDownloadGeographicWaypoints, Command::kFlightList,
                                 Command::kConvertWaypoints);
  return (kCarriedOut & Commands(command)) != 0;
}

std::vector<std::string> SwitchesWithoutEffect(const CommandLineBlock& block) {
  std::vector<std::string> names;
  // A command that ends with a refusal needs no remarks on its switches.
  if (!CarriedOut(block.command)) return names;
  for (const std::string_view name : block.keywords) {
    const Keyword* keyword = FindKeyword(name);
    if ((keyword->effective_with & Commands(block.command)) == 0) names.emplace_back(name);
  }
  return names;
}

int TakeItem(const Item& item, const CommandLineHost& host, CommandLineBlock& block,
             std::string& message) {
  const Keyword* keyword = FindKeyword(item.keyword);
  if (keyword == nullptr) {
    message = "Unrecognized command";
    return -1;
  }
  const std::string_view refusal = keyword->take(*keyword, item.value, host, block);
  if (!refusal.empty()) {
    message = refusal;
    return -1;
  }
  // Of two commands the last one counts, as of any switch that is given twice.
  if (keyword->command != Command::kNone) block.command = keyword->command;
  Remember(keyword->name, block);
  return 0;
}

}  // namespace skyhaul
