#pragma once

#include <span>
#include <string>

#include "formats/waypoints/waypoint_list.h"

namespace skyhaul::gpx {

// Writes a GPX 1.1 file of waypoints in UTF-8, lines ended by LF, elements in the schema's order.
// What it keeps stands in formats/gpx/read_gpx.h.
std::string Write(std::span<const FileWaypoint> waypoints);

}  // namespace skyhaul::gpx
