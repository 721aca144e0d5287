// Any bytes as a CUP file: the reader must survive them, what it gives is in range, and what the
// writer makes of it is read back as the same waypoints.

#include "formats/cup/read_cup.h"
#include "formats/cup/write_cup.h"
#include "fuzz/waypoint_file.h"

namespace skyhaul {

namespace {

bool IsSame(const FileWaypoint& before, const FileWaypoint& after) {
  constexpr int64_t kHalfMilliminute = 100;  // in semicircles
  if (!IsNear(before, after, kHalfMilliminute)) return false;
  // Of a name and a description the file holds one when the other is missing or repeats it.
  if (before.name.empty() || before.name == before.description) return true;
  return after.name == before.name && after.description == before.description &&
         after.comment == before.comment && after.type == before.type;
}

}  // namespace

void Fuzz(std::string_view text) {
  const WaypointFormat format = {cup::LooksLike, cup::Read, cup::Write, IsSame};
  const std::vector<FileWaypoint> waypoints = ReadWaypoints(format, text);
  for (const FileWaypoint& waypoint : waypoints) {
    Require(std::abs(waypoint.altitude_m) <= 1e5);
    Require(waypoint.type == 0 || waypoint.type == kWaypointAirfield);
  }
  RequireWrittenBack(format, waypoints);
}

}  // namespace skyhaul
