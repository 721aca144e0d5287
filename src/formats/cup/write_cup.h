#pragma once

#include <span>
#include <string>

#include "formats/waypoints/waypoint_list.h"

namespace skyhaul {

// Writes waypoints as a SeeYou CUP file, UTF-8, lines ended by CR LF, without tasks. What survives
// is told in read_cup.h.
std::string WriteCup(std::span<const FileWaypoint> waypoints);

}  // namespace skyhaul
