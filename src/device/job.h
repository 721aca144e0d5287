#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "core/airspace.h"
#include "core/file_waypoint.h"
#include "core/flight.h"
#include "core/operation.h"
#include "core/shell.h"
#include "core/waypoint_record.h"
#include "transport/serial_link.h"

namespace skyhaul {

// What is asked of an instrument.
enum AccessType : uint32_t {
  kReadWaypoints = 0,
  kReadTrackLog = 1,
  kReadProductData = 2,
  kWriteWaypoints = 3,
  kEraseTrackLog = 4,
  kWritePilotData = 5,
  kUploadTrackLog = 6,
  kUploadCtr = 7,
  kReadCtrList = 8,
  kReadFlightList = 9,
  kEraseWaypoints = 10,
};
inline constexpr uint32_t kAccessTypes = 11;

// What a job reads, or on entry what it is to write.
struct JobData {
  std::vector<TrackListEntry> track_list;
  bool list_is_whole = true;  // track_list has as many flights as the instrument has announced
  std::vector<Flight> flights;
  std::vector<WaypointRecord> waypoints;
  std::vector<FileWaypoint> waypoints_to_send;  // nothing cut: the driver knows its widths
  std::vector<CtrRecord> airspaces;
  uint32_t sent = 0;                 // records of an upload that have gone to the instrument
  std::optional<uint32_t> verified;  // of them, those that its list shows as sent; empty: not read
};

// Which flights of the instrument's list a job fetches.
struct FlightChoice {
  enum class How { kAsk, kNewest, kNumbers };
  How how = How::kAsk;
  std::vector<uint32_t> numbers;  // of kNumbers: as lists show them, from 1
};

// Who wants to know the positions while they arrive.
struct PositionReports {
  std::string client;       // empty: nobody
  uint32_t interval_s = 0;  // flight time between two reports; 0: none
};

// The result of a job that needs the instrument's track list when its model or software has none.
// Nothing has been said about it: a caller may know another way.
inline constexpr int kNoTrackList = -10;

// The result of such a job when nobody knows whether an instrument of this name has a track list.
// Nothing has been said about it either.
inline constexpr int kUnknownModel = -11;

// The parameter of a track log job that does not ask for flights from the list.
inline constexpr int32_t kCurrentTrack = -1;

// One operation on one instrument. It belongs to the job thread until its completion routine has
// returned; only the abort flag may be touched from outside.
struct Job {
  Operation operation;
  SerialLink link;
  uint32_t access_type = 0;
  uint32_t protocol_type = 0;  // the place in the job table
  int32_t parameter = 0;       // meaning per family
  bool join_tracks = false;    // several tracks become one log, which must not overlap or have gaps
  bool verify = true;          // an upload is read back from the instrument
  FlightChoice choice;
  PositionReports reports;

  // Results.
  std::string device_name;  // up to 16 characters, as the instrument tells it
  std::string description;  // one line for a person, up to 80 characters
  std::string owner;        // model and pilot, up to 50 characters
  std::string model_name;
  std::string pilot_name;
  JobData data;
  int result = 0;  // 0 or positive; negative is a failure
};

using JobProcedure = int (*)(Job& job);

// One protocol type: a conversation that a family's instruments hold, and the port it needs.
struct ProtocolJobs {
  std::array<JobProcedure, kAccessTypes> procedures = {};  // by access type; null: not supported
  bool xon_xoff = false;  // flow control when the driver changes the port's speed
  bool on_usb = false;    // not on a serial port, so no serial port is tried for it
};

// All protocol types; the place of each is its number.
using JobTable = std::span<const ProtocolJobs>;

// Called on the job thread when the procedure has ended; may take the job's data and texts over.
using JobCompletion = void (*)(void* context, Job& job);

}  // namespace skyhaul
