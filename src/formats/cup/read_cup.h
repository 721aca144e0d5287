#pragma once

#include <string>
#include <string_view>

#include "formats/waypoints/waypoint_list.h"

namespace skyhaul {

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
// What a waypoint keeps on its way into a file and back:
//
//   position     to half a thousandth of a minute, 0.93 m
//   altitude_m   to 0.05 m
//   name         in code, and in name where there is no description; an empty one does not survive
//   description  in name
//   comment      in desc
//   type         airfield or not: an airfield is written as one with a solid runway
//   time         lost
//
// On the way from a file into the program and back the country, the runway, the frequency, user
// data and pictures are lost; so are the styles other than above.

// Whether the first line that is not blank is a heading or a waypoint of a CUP file.
bool LooksLikeCup(std::string_view text);

// Reads UTF-8 or Windows-1252. A waypoint's name is the code where there is one: that is what fits
// into instruments; the description is then the name where it differs. desc is the comment. An
// empty elevation is 0, and one that cannot be read is taken for 0 with a note. The list ends at a
// line that starts with "-----", where the tasks begin. A line that is no waypoint is skipped with
// a note. Returns the number of waypoints, or -1 with a message that names the line: no heading, or
// lines but not one waypoint among them; then the file is empty.
int ReadCup(std::string_view text, WaypointFile& file, std::string& message);

}  // namespace skyhaul
