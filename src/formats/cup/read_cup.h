#pragma once

#include <string>
#include <string_view>

#include "formats/waypoints/waypoint_list.h"

namespace skyhaul::cup {

// The waypoint part of a SeeYou CUP file. The heading names the columns, so that old and new field
// lists, which differ in the middle, are read alike; a file without one has the old list.
//
//   name, code, country, lat, lon, elev, style, rwdir, rwlen, (rwwidth,) freq, desc, (userdata,
//   pics)
//
//   name   text                               desc   text
//   code   a short name; may be empty         lat    DDMM.mmm and N or S
//   elev   metres; "m" or "ft" may follow     lon    DDDMM.mmm and E or W
//   style  2, 4 and 5 are airfields; 3, a field to land out on, is none
//
// docs/file-formats.md says what a waypoint keeps on its way into a file and back.
//
// On the way from a file into the program and back the country, the runway, the frequency, user
// data and pictures are lost; so are the styles other than above.

// Whether the first line that is not blank is a heading or a waypoint of a CUP file.
bool LooksLike(std::string_view text);

// Reads UTF-8 or Windows-1252. A waypoint's name is the code where there is one, because that is
// what fits into instruments; the description is then the name. desc is the comment, which formats
// with only one further text write where there is no description. An empty elevation is 0, and
// one that cannot be read is taken for 0 with a note. The list ends at a line that starts with
// "-----", where the tasks begin. A line that is no waypoint is skipped with a note. Returns the
// number of waypoints, or -1 with a message that names the line: no heading, or lines but not one
// waypoint among them; then the file is empty.
int Read(std::string_view text, WaypointFile& file, std::string& message);

}  // namespace skyhaul::cup
