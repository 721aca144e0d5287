#pragma once

#include <string>
#include <string_view>

#include "formats/waypoints/waypoint_list.h"

namespace skyhaul::compegps {

// CompeGPS waypoint files, .wpt: the letter that begins a line says what it holds.
//
//   G  WGS 84                                        the datum
//   U  1                                             positions in degrees (0: UTM)
//   W  NAME A 46.1234500000ºN 7.1234500000ºE 27-MAR-62 00:00:00 1234.000000 Description
//   w, z and others                                  looks of the waypoint before; not used
//
// The altitude is in metres, the date 27-MAR-62 stands for none, the description goes to the line's
// end. Between a degree's number and its hemisphere may stand anything that is no letter: the sign
// arrives in many encodings.
//
// What survives writing and reading again:
//
//   position     exactly               name         blanks become '_'; an empty one becomes "_"
//   altitude_m   to 0.000001 m         description  yes, without control characters
//   time         yes, in seconds       type         no
//
// Characters that Windows-1252 lacks become plain ASCII letters.

// Whether the text has CompeGPS waypoint lines, in degrees or UTM, or the header of a file without
// any.
bool LooksLike(std::string_view text);

// Reads a CompeGPS waypoint file, UTF-8 or Windows-1252, in degrees on WGS 84; a file that does not
// name its datum is taken to be so, with a note. Waypoint lines that cannot be read are skipped
// with a note. Returns the number of waypoints, or -1 with a message and an empty file: the wrong
// kind, UTM, another datum, or no readable line among the waypoint lines.
int Read(std::string_view text, WaypointFile& file, std::string& message);

}  // namespace skyhaul::compegps
