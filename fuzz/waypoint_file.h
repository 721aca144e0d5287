#pragma once

// What the targets of the waypoint formats share.

#include <cmath>
#include <span>

#include "formats/waypoints/waypoint_list.h"
#include "fuzz/frame.h"

namespace skyhaul {

struct WaypointFormat {
  bool (*looks_like)(std::string_view text);
  int (*read)(std::string_view text, WaypointFile& file, std::string& message);
  std::string (*write)(std::span<const FileWaypoint> waypoints);
  // Whether a waypoint that was written and read again is still the same, as far as the format
  // holds it.
  bool (*same)(const FileWaypoint& before, const FileWaypoint& after);
};

// Whether two positions differ by at most this many semicircles in latitude and in longitude.
inline bool IsNear(const FileWaypoint& one, const FileWaypoint& other, int64_t semicircles) {
  return std::abs(int64_t{one.lat} - other.lat) <= semicircles &&
         std::abs(int64_t{one.lon} - other.lon) <= semicircles;
}

// The same with nothing lost, and the time as well.
inline bool IsSamePlaceAndTime(const FileWaypoint& one, const FileWaypoint& other) {
  return IsNear(one, other, 0) && one.time == other.time;
}

// Reads any bytes: a file that is refused leaves nothing but a message, and the waypoints of one
// that is accepted lie on the globe.
inline std::vector<FileWaypoint> ReadWaypoints(const WaypointFormat& format,
                                               std::string_view text) {
  WaypointFile file = {.waypoints = {{}}, .notes = {"before"}};
  std::string message;
  const int count = format.read(text, file, message);
  RequireAllOrNothing(count, file.waypoints.size(), message);
  Require(format.looks_like(text) || count < 0);
  Require(count >= 0 || file.notes.empty());
  for (const FileWaypoint& waypoint : file.waypoints) {
    Require(std::abs(int64_t{waypoint.lat}) <= 1 << 30 && std::isfinite(waypoint.altitude_m));
  }
  return std::move(file.waypoints);
}

// Writes waypoints and reads them again: they are the same ones, and there is nothing to note.
inline void RequireWrittenBack(const WaypointFormat& format,
                               const std::vector<FileWaypoint>& waypoints) {
  WaypointFile again;
  std::string message;
  const int count = format.read(format.write(waypoints), again, message);
  RequireAllOrNothing(count, again.waypoints.size(), message);
  Require(again.notes.empty() && std::ranges::equal(waypoints, again.waypoints, format.same));
}

}  // namespace skyhaul
