#pragma once

#include <span>
#include <string>

#include "formats/waypoints/waypoint_list.h"

namespace skyhaul::formatgeo {

// Write waypoints as the plain lists that read_formatgeo.h describes, plain ASCII, lines ended by
// CR LF. Names lose accents and quotes, and their blanks become '_'; those beyond 8 characters are
// written whole, which moves the columns of their lines. Between 84
// north or 80 south and the pole the UTM form keeps the last zones and letters; our reader takes
// them, others need not.
std::string WriteGeo(std::span<const FileWaypoint> waypoints);
std::string WriteUtm(std::span<const FileWaypoint> waypoints);

}  // namespace skyhaul::formatgeo
