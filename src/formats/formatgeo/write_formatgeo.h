#pragma once

#include <span>
#include <string>

#include "formats/waypoints/waypoint_list.h"

namespace skyhaul {

// Write waypoints as the plain lists that read_formatgeo.h describes, UTF-8, lines ended by CR LF.
// Names beyond 8 characters are written whole, which moves the columns of their lines. Between 84
// north or 80 south and the pole the UTM form keeps the last zones and letters; our reader takes
// them, others need not.
std::string WriteFormatGeo(std::span<const FileWaypoint> waypoints);
std::string WriteFormatUtm(std::span<const FileWaypoint> waypoints);

}  // namespace skyhaul
