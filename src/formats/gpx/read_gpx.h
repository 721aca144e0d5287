#pragma once

#include <string>
#include <string_view>

#include "formats/waypoints/waypoint_list.h"

namespace skyhaul::gpx {

// What GPX calls an airfield; others that mean one are understood, too.
inline constexpr char kAirfield[] = "Airport";

// GPX 1.0 and 1.1 waypoints: the <wpt> elements, not the points of routes and tracks.
//
// What survives writing and reading again:
//
//   position     exactly               name         yes, without control characters
//   altitude_m   to 1 mm               description  likewise, as desc
//   comment      likewise, as cmt; without one the description stands there, too
//   time         yes, in seconds       type         kWaypointAirfield or 0, as sym and type

// Whether the text's first element is <gpx>, in UTF-8, UTF-16 or an eight-bit encoding.
bool LooksLike(std::string_view text);

// Reads a GPX file's waypoints, names with or without a namespace prefix. The description is desc,
// or cmt where there is none. Document types and entities of a file's own are not followed. A
// waypoint without a readable position is skipped, one without a readable altitude or time loses
// that, each with a note. Returns the number of waypoints, or -1 with a message and an empty file:
// the wrong kind, broken XML, routes or tracks only, or no readable waypoint among those there.
int Read(std::string_view text, WaypointFile& file, std::string& message);

}  // namespace skyhaul::gpx
