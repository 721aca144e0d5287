#pragma once

#include <span>
#include <string>

#include "core/airspace.h"

namespace skyhaul::openair {

// Writes airspaces as an OpenAir file, UTF-8 with CR LF line ends. What its reader gives back:
//
//   name, class           the same; control characters and '*' become blanks, blanks around go; an
//                         empty class becomes "UNCLASSIFIED", because others refuse one without
//   limits                the same with their text; without one, a text is composed of the value
//   type, frequency, station, id, transponder, activation
//                         the same, as name and class
//   positions             the same semicircles, for latitudes within 90 degrees
//   radii                 those read from a file to the last bit when they have at most 9 decimals
//                         of nautical miles, others to 2 micrometres
//   bearings              likewise in degrees, when within 0 to 360
//   direction             the same; of points and circles none is written
//   remark, warning       lost
//   damage                lost: leave damaged airspaces out
//   selected              lost: reads as true
//   without an outline    the airspace is lost: readers leave it out
std::string Write(std::span<const CtrRecord> airspaces);

}  // namespace skyhaul::openair
