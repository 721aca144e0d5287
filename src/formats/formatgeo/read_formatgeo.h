#pragma once

#include <string>
#include <string_view>

#include "formats/waypoints/waypoint_list.h"

namespace skyhaul::formatgeo {

// The two plain waypoint lists of competition scoring: a heading, then a waypoint a line, in
// columns that are filled up with blanks. A short name may have blanks in it.
//
//   $FormatGEO
//   B07001    N 46 12 34.56    E 007 08 09.12  1234  Cabane du Mont
//   $FormatUTM
//   B07001   32T   0356321   5119241   1234  Cabane du Mont
//
// Name, position in degrees, minutes and seconds or in the UTM grid, altitude in metres,
// description. docs/file-formats.md says what a waypoint keeps on its way into a file and back.

// Whether the first line that is not blank is the heading of the one or the other.
bool LooksLikeGeo(std::string_view text);
bool LooksLikeUtm(std::string_view text);

// Read UTF-8 or Windows-1252. Columns need not be kept: any number of blanks and tabs separates the
// fields, and what stands before the position is the name. GEO positions may also be degrees and
// minutes or degrees alone, with a fraction in the last field, and 60.00 seconds are a minute. A
// line may end after the position; the altitude is 0 then. A line that is no waypoint is skipped
// with a note. Return the number of waypoints, or -1 with a message that names the line: another
// heading, or lines but not one waypoint among them; then the file is empty.
int ReadGeo(std::string_view text, WaypointFile& file, std::string& message);
int ReadUtm(std::string_view text, WaypointFile& file, std::string& message);

}  // namespace skyhaul::formatgeo
