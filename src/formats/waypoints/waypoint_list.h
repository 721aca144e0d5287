#pragma once

#include <span>
#include <string>
#include <vector>

#include "core/file_waypoint.h"
#include "core/waypoint_record.h"

namespace skyhaul {

// What a reader of a waypoint file found. Notes name lines that were skipped and why.
struct WaypointFile {
  std::vector<FileWaypoint> waypoints;
  std::vector<std::string> notes;
};

// Records that an instrument has sent as file waypoints, their texts as UTF-8.
std::vector<FileWaypoint> UnfitWaypoints(std::span<const WaypointRecord> records);

}  // namespace skyhaul
