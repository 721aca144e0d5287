#pragma once

#include <span>
#include <string>

#include "formats/waypoints/waypoint_list.h"

namespace skyhaul::ozi {

// Writes an OziExplorer waypoint file in Windows-1252 on WGS 84, lines ended by CR LF. What it
// keeps stands in formats/ozi/read_ozi.h.
std::string WriteWaypoints(std::span<const FileWaypoint> waypoints);

}  // namespace skyhaul::ozi
