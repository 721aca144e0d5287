#pragma once

#include <span>
#include <string>

#include "formats/waypoints/waypoint_list.h"

namespace skyhaul::compegps {

// Writes a CompeGPS waypoint file in Windows-1252, in degrees on WGS 84, lines ended by CR LF. What
// it keeps stands in formats/compegps/read_compegps.h.
std::string Write(std::span<const FileWaypoint> waypoints);

}  // namespace skyhaul::compegps
