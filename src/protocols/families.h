#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "device/job.h"
#include "platform/platform.h"

namespace skyhaul {

// The conversations that instruments hold. The numbers are part of the program's interface: traces
// and settings know the families by them. A new one goes at the end.
enum ProtocolType : uint32_t {
  kGarminSerial = 0,
  kNmeaLogger = 1,
  kTopNavigator = 2,
  kMlrLogit = 3,
  kFlytec = 4,
  kGraviter = 5,
  kMagellan = 6,
  kXcTrainer = 7,
  kGarminUsb = 8,
  kAircotecSecondReader = 9,
  kAircotecSecondReaderXonXoff = 10,
  kFlytecAllTracks = 11,
  kFlymaster = 12,
  kDsx = 13,
  kNmeaLoggerSame = 14,
  kMtkLogger = 15,
  kFlytec6015 = 16,
  kDigiflyAir = 17,
  kNmeaLoggerTracks = 18,
  kAscent = 19,
  kSyride = 20,
  kNoProtocol = UINT32_MAX,
};

// The instruments as the command line and the settings number them. A new one goes at the end.
enum class GpsType : uint32_t {
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

// What an instrument may be asked for, as a set of bits. A family may be asked for more than its
// driver can do yet; the job table refuses the rest.
enum Service : uint32_t {
  kTrackLogs = 1U << 0U,
  kIgcLogs = 1U << 1U,
  kWaypointDownload = 1U << 2U,
  kWaypointUpload = 1U << 3U,
  kAirspaceUpload = 1U << 4U,
  kUserNameUpload = 1U << 5U,
  kFlightLists = 1U << 6U,
};

// A name that the command line knows an instrument by.
struct GpsName {
  std::string_view name = {};  // upper case; empty: an unused place
  GpsType code = GpsType::kGarmin;
  uint32_t services = 0;
};

// The job procedure of each access type; null: the family cannot, or has no driver for it yet.
struct FamilyJobs {
  JobProcedure read_waypoints = nullptr;
  JobProcedure read_track_log = nullptr;
  JobProcedure read_product_data = nullptr;
  JobProcedure write_waypoints = nullptr;
  JobProcedure erase_track_log = nullptr;
  JobProcedure write_pilot_data = nullptr;
  JobProcedure upload_track_log = nullptr;
  JobProcedure upload_ctr = nullptr;
  JobProcedure read_ctr_list = nullptr;
  JobProcedure read_flight_list = nullptr;
  JobProcedure erase_waypoints = nullptr;
};

inline constexpr size_t kMaxGpsNames = 3;

// One family of instruments that hold the same conversation over the same kind of port.
struct Family {
  ProtocolType protocol = kNoProtocol;
  std::string_view maker;        // for a person
  std::string_view models = {};  // the same; empty: the maker says it all
  GpsName names[kMaxGpsNames] = {};
  ProtocolType usb = kNoProtocol;     // the row of the same instruments on USB
  bool on_usb = false;                // this is such a row
  SerialSettings port = {.baud = 0};  // with baud 0 the driver finds the speed
  FamilyJobs jobs = {};
};

// All families, in the order of their protocol types.
std::span<const Family> Families();

// True when a driver can do anything at all with the family's instruments.
bool HasDriver(const Family& family);

// What the job runner needs of all families, made from their rows.
JobTable AllJobs();

// One GpsType, made from the rows.
struct GpsTypeEntry {
  std::string_view name;
  uint32_t services = 0;
  const Family* family = nullptr;
};

// All GPS types; the place of each is its code.
std::span<const GpsTypeEntry> GpsTypes();

const GpsTypeEntry& EntryOf(GpsType type);

// The protocol type that a job for such an instrument runs with. usb counts only where the
// instruments have both kinds of port.
ProtocolType ProtocolOf(GpsType type, bool usb);

}  // namespace skyhaul
