#include "formats/waypoints/waypoint_list.h"

#include <algorithm>
#include <string_view>

#include "core/text/charset.h"

namespace skyhaul {

namespace {

template <size_t size>
std::string TextOf(const char (&room)[size]) {
  // A text that fills its room has no NUL behind it.
  return ToUtf8(
      std::string_view(room, static_cast<size_t>(std::find(room, room + size, '\0') - room)));
}

}  // namespace

std::vector<FileWaypoint> UnfitWaypoints(std::span<const WaypointRecord> records) {
  std::vector<FileWaypoint> waypoints;
  waypoints.reserve(records.size());
  for (const WaypointRecord& record : records) {
    waypoints.push_back({.lat = record.lat,
                         .lon = record.lon,
                         .altitude_m = static_cast<double>(record.altitude),
                         .name = TextOf(record.name),
                         .description = TextOf(record.description),
                         .time = record.time,
                         .type = record.type});
  }
  return waypoints;
}

}  // namespace skyhaul
