#pragma once

#include <span>
#include <string>

#include "formats/waypoints/waypoint_list.h"

namespace skyhaul::cup {

// Writes waypoints as a SeeYou CUP file, UTF-8, lines ended by CR LF, without tasks.
// docs/file-formats.md says what is kept.
std::string Write(std::span<const FileWaypoint> waypoints);

}  // namespace skyhaul::cup
