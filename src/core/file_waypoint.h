#pragma once

#include <cstdint>
#include <string>

namespace skyhaul {

// A waypoint with nothing cut, as files hold it. An upload carries it to the driver in this form:
// only the driver knows how much its instruments can hold.
struct FileWaypoint {
  int32_t lat = 0;  // semicircles, north positive; see core/units.h
  int32_t lon = 0;  // semicircles, east positive
  double altitude_m = 0;
  std::string name;  // UTF-8; short where the file has a short one
  std::string
      description;      // UTF-8; the place's full name, for formats that have only one more text
  std::string comment;  // UTF-8; what a file says beyond both
  uint32_t time = 0;    // seconds since 1989-12-31 00:00:00 UTC; 0: not known
  int32_t type = 0;     // kWaypointAirfield, or anything else for an ordinary point
};

// What a format with only one text beside the name writes: the description, else the comment.
inline const std::string& FurtherText(const FileWaypoint& waypoint) {
  return waypoint.description.empty() ? waypoint.comment : waypoint.description;
}

}  // namespace skyhaul
