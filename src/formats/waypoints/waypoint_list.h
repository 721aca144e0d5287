#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "core/waypoint_record.h"

namespace skyhaul {

// A waypoint as files hold it: nothing is cut yet.
struct FileWaypoint {
  int32_t lat = 0;  // semicircles, north positive; see core/units.h
  int32_t lon = 0;  // semicircles, east positive
  double altitude_m = 0;
  std::string name;  // UTF-8; short where the file has a short one
  std::string
      description;      // UTF-8; the place's full name, for formats that have only one more text
  std::string comment;  // UTF-8; what a file says beyond both
  uint32_t time = 0;    // seconds since 1989-12-31 00:00:00 UTC; 0: not known
  int32_t type = 0;     // kWaypointAirfield, or anything else for an ordinary point
};

// What a reader of a waypoint file found. Notes name lines that were skipped and why.
struct WaypointFile {
  std::vector<FileWaypoint> waypoints;
  std::vector<std::string> notes;
};

// Cuts waypoints to records that an instrument can hold: names to 6 plain ASCII characters,
// descriptions to 40, accented letters to their plain ones. A name that is cut goes whole into a
// description that would be empty; comments have no place. A name that was cut to one that is
// already there gets a digit, so that the list stays unambiguous. Returns how many names were
// changed for lack of room.
int FitWaypoints(std::span<const FileWaypoint> waypoints, std::vector<WaypointRecord>& records);

// The way back: records as file waypoints.
std::vector<FileWaypoint> UnfitWaypoints(std::span<const WaypointRecord> records);

}  // namespace skyhaul
