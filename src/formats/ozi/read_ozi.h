#pragma once

#include <string>
#include <string_view>

#include "formats/waypoints/waypoint_list.h"

namespace skyhaul::ozi {

// OziExplorer waypoint files, .wpt: four header lines (kind and version, datum, reserved, symbol
// set) and one line per waypoint, its fields separated by commas. Used are
//
//   field  2  name            field  5  spreadsheet day, UTC; empty or 0: not known
//          3  latitude, deg          11  description
//          4  longitude, deg         15  altitude in feet, -777: not known (read as 0)
//
// What survives writing and reading again:
//
//   position     exactly               name         yes, but for commas, see formats/ozi/ozi_text.h
//   altitude_m   to 0.2 m              description  its first 40 characters, likewise
//   time         yes                   type         no: symbols depend on the receiver's make
//
// Characters that Windows-1252 lacks become plain ASCII letters.

// Whether the text begins as an OziExplorer waypoint file does.
bool LooksLikeWaypoints(std::string_view text);

// Reads an OziExplorer waypoint file, UTF-8 or Windows-1252, on the datum WGS 84. Lines without a
// readable position are skipped with a note; an altitude or a day that cannot be read counts as not
// known, with a note. Returns the number of waypoints, or -1 with a message and an empty file: the
// wrong kind, another datum, or no readable line among the waypoint lines.
int ReadWaypoints(std::string_view text, WaypointFile& file, std::string& message);

}  // namespace skyhaul::ozi
