#include "protocols/families.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "protocols/flytec/ctr_list.h"
#include "protocols/flytec/ctr_upload.h"
#include "protocols/flytec/requests.h"
#include "protocols/flytec/track_list.h"
#include "protocols/flytec/track_log.h"
#include "protocols/flytec/waypoint_list.h"
#include "protocols/flytec/waypoint_upload.h"

namespace skyhaul {

namespace {

// Services say what an instrument may be asked for. The command line refuses the rest, and the job
// table what has no driver yet.
constexpr uint32_t kTracks = kTrackLogs | kIgcLogs;
constexpr uint32_t kWaypoints = kWaypointDownload | kWaypointUpload;

// One row each. What is left out of a row is not there: a family without jobs has no driver yet.
constexpr Family kFamilies[] = {
    {.protocol = kGarminSerial,
     .maker = "Garmin",
     .models = "receivers with a serial port or USB",
     .names = {{"GARMIN", GpsType::kGarmin, kTracks | kWaypoints | kAirspaceUpload}},
     .usb = kGarminUsb},
    {.protocol = kNmeaLogger,
     .maker = "Digifly",
     .models = "Leonardo",
     .names = {{"LEONARDO", GpsType::kLeonardo, kTracks | kWaypoints | kFlightLists}}},
    {.protocol = kTopNavigator,
     .maker = "Aircotec",
     .models = "Top Navigator",
     .names = {{"TOPNAV", GpsType::kTopnav, kTrackLogs | kWaypointUpload}}},
    {.protocol = kMlrLogit,
     .maker = "MLR",
     .models = "receivers and LogIt",
     // The same conversation; they differ in what they keep.
     .names = {{"MLR", GpsType::kMlr, kTracks | kWaypoints},
               {"LOGIT", GpsType::kLogit, kTracks},
               {"MLRC", GpsType::kMlrc, kWaypointDownload}}},
    {.protocol = kFlytec,
     .maker = "Flytec and Brauniger",
     .models = "5020, 5030, 6020, 6030, Compeo, Competino, Galileo",
     .names = {{"IQCOMPEO", GpsType::kIqCompeo,
                kTracks | kWaypoints | kAirspaceUpload | kFlightLists}},
     .port = flytec::kPortSettings,
     .jobs = {.read_waypoints = flytec::ReadWaypointsJob,
              .read_track_log = flytec::TrackLogJob,
              .write_waypoints = flytec::WriteWaypointsJob,
              .upload_ctr = flytec::WriteCtrJob,
              .read_ctr_list = flytec::ReadCtrJob,
              .read_flight_list = flytec::FlightListJob}},
    {.protocol = kGraviter,
     .maker = "Graviter",
     .names = {{"GRAVITER", GpsType::kGraviter, kTrackLogs}}},
    {.protocol = kMagellan,
     .maker = "Magellan",
     .models = "receivers with a serial port",
     .names = {{"MAGELLAN", GpsType::kMagellan, kTracks | kWaypointUpload}}},
    {.protocol = kXcTrainer,
     .maker = "Aircotec",
     .models = "XC Trainer",
     .names = {{"XCTRAINER", GpsType::kXcTrainer, kTracks | kWaypointUpload}},
     // The speed is found by the driver.
     .port = {.baud = 0, .xon_xoff = true}},
    {.protocol = kGarminUsb, .maker = "Garmin", .models = "receivers with USB", .on_usb = true},
    {.protocol = kAircotecSecondReader,
     .maker = "Aircotec",
     .models = "XC Trainer MXP",
     .names = {{"XCT_MXP", GpsType::kXctMxp, kTracks}}},
    // As the row before it, with flow control. No name of the command line leads here.
    {.protocol = kAircotecSecondReaderXonXoff,
     .maker = "Aircotec",
     .models = "XC Trainer MXP",
     .port = {.baud = 0, .xon_xoff = true}},
    // The instruments of kFlytec, asked for several flights in one job.
    {.protocol = kFlytecAllTracks,
     .maker = "Flytec and Brauniger",
     .models = "several flights at once",
     .port = flytec::kPortSettings,
     .jobs = {.read_track_log = flytec::AllTracksJob}},
    {.protocol = kFlymaster,
     .maker = "Flymaster",
     // The second name is for instruments with old software.
     .names = {{"FLYMASTER", GpsType::kFlymaster,
                kTracks | kWaypoints | kUserNameUpload | kFlightLists},
               {"FLYMASTEROLD", GpsType::kFlymasterOld,
                kTracks | kWaypoints | kUserNameUpload | kFlightLists}}},
    {.protocol = kDsx, .maker = "DSX", .names = {{"DSX", GpsType::kDsx, kTracks}}},
    // As kNmeaLogger. No name of the command line leads here.
    {.protocol = kNmeaLoggerSame, .maker = "Digifly", .models = "loggers that speak as Leonardo"},
    {.protocol = kMtkLogger,
     .maker = "Pentagram, Holux",
     .models = "loggers with an MTK chip",
     .names = {{"MTK", GpsType::kMtk, kTracks}}},
    {.protocol = kFlytec6015,
     .maker = "Flytec and Brauniger",
     .models = "6015, IQ Basic",
     .names = {{"IQBASIC", GpsType::kIqBasic, kTracks | kWaypoints | kFlightLists}}},
    {.protocol = kDigiflyAir,
     .maker = "Digifly",
     .models = "Air",
     .names = {{"DIGIFLYAIR", GpsType::kDigiflyAir, kTracks | kWaypoints | kFlightLists}}},
    // As kNmeaLogger, flights only. No name of the command line leads here.
    {.protocol = kNmeaLoggerTracks, .maker = "Digifly", .models = "loggers without waypoints"},
    {.protocol = kAscent,
     .maker = "Ascent",
     .names = {{"ASCENT", GpsType::kAscent, kTracks | kFlightLists}}},
    {.protocol = kSyride,
     .maker = "Syride",
     .names = {{"SYRIDE", GpsType::kSyride, kTracks | kWaypoints | kFlightLists}},
     .on_usb = true},
};

// In the order of AccessType.
constexpr std::array<JobProcedure, kAccessTypes> ByAccessType(const FamilyJobs& jobs) {
  return {jobs.read_waypoints,  jobs.read_track_log,   jobs.read_product_data, jobs.write_waypoints,
          jobs.erase_track_log, jobs.write_pilot_data, jobs.upload_track_log,  jobs.upload_ctr,
          jobs.read_ctr_list,   jobs.read_flight_list, jobs.erase_waypoints};
}

// Made while compiling, so that the job runner needs to know no family and nothing is set up at
// start.
constexpr auto MakeJobs() {
  std::array<ProtocolJobs, std::size(kFamilies)> table = {};
  for (size_t i = 0; i < table.size(); ++i) {
    const Family& family = kFamilies[i];
    table[i] = {.procedures = ByAccessType(family.jobs),
                .xon_xoff = family.port.xon_xoff,
                .on_usb = family.on_usb};
  }
  return table;
}

constexpr size_t CountNames() {
  size_t count = 0;
  for (const Family& family : kFamilies) {
    // Unused places of a row have no name.
    for (const GpsName& name : family.names) count += name.name.empty() ? 0 : 1;
  }
  return count;
}

constexpr auto MakeGpsTypes() {
  std::array<GpsTypeEntry, CountNames()> types = {};
  for (const Family& family : kFamilies) {
    for (const GpsName& name : family.names) {
      if (name.name.empty()) continue;
      // The place is the code that the settings and the command line keep, not the order of the
      // rows.
      types[static_cast<size_t>(name.code)] = {
          .name = name.name, .services = name.services, .family = &family};
    }
  }
  return types;
}

constexpr auto kJobs = MakeJobs();
constexpr auto kGpsTypes = MakeGpsTypes();

// A code that two names share leaves another one without a name.
constexpr bool TableIsSound() {
  for (const GpsTypeEntry& type : kGpsTypes) {
    if (type.family == nullptr) return false;
  }
  for (size_t i = 0; i < std::size(kFamilies); ++i) {
    // Job table and families are looked up by the protocol type as an index.
    if (kFamilies[i].protocol != i) return false;
  }
  return true;
}
static_assert(TableIsSound(), "A row stands out of order, or the codes have a gap or meet");

}  // namespace

std::span<const Family> Families() {
  return kFamilies;
}

bool HasDriver(const Family& family) {
  const auto jobs = ByAccessType(family.jobs);
  // A row that is there for its names only has no job at all.
  return std::any_of(jobs.begin(), jobs.end(), [](JobProcedure job) { return job != nullptr; });
}

JobTable AllJobs() {
  return kJobs;
}

std::span<const GpsTypeEntry> GpsTypes() {
  return kGpsTypes;
}

const GpsTypeEntry& EntryOf(GpsType type) {
  return kGpsTypes[static_cast<size_t>(type)];
}

ProtocolType ProtocolOf(GpsType type, bool usb) {
  const Family& family = *EntryOf(type).family;
  // The command line has refused /USB where there is no such row; other callers need not ask.
  return usb && family.usb != kNoProtocol ? family.usb : family.protocol;
}

}  // namespace skyhaul
