// Any bytes as a CUP file: the reader must survive them, what it gives lies on the globe, and what
// the writer makes of it is read back as the same waypoints.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "formats/cup/read_cup.h"
#include "formats/cup/write_cup.h"

namespace {

using skyhaul::FileWaypoint;
using skyhaul::WaypointFile;

void Require(bool holds) {
  if (!holds) __builtin_trap();
}

void RequireOnTheGlobe(const FileWaypoint& waypoint) {
  Require(std::abs(int64_t{waypoint.lat}) <= 1 << 30);
  Require(waypoint.altitude_m >= -1e5 && waypoint.altitude_m <= 1e5);
  Require(waypoint.type == 0 || waypoint.type == skyhaul::kWaypointAirfield);
}

void RequireWrittenBack(const std::vector<FileWaypoint>& waypoints) {
  constexpr int64_t kHalfMilliminute = 100;  // in semicircles
  WaypointFile file;
  std::string message;
  const int count = skyhaul::cup::Read(skyhaul::cup::Write(waypoints), file, message);
  Require(count == static_cast<int>(waypoints.size()) && file.notes.empty());
  for (size_t i = 0; i < waypoints.size(); ++i) {
    const FileWaypoint& before = waypoints[i];
    const FileWaypoint& after = file.waypoints[i];
    Require(after.name == before.name);
    Require(after.description == before.description);
    Require(after.comment == before.comment);
    Require(after.type == before.type);
    Require(std::abs(int64_t{after.lat} - before.lat) <= kHalfMilliminute);
    Require(std::abs(int64_t{after.lon} - before.lon) <= kHalfMilliminute);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  WaypointFile file = {.waypoints = {{}}, .notes = {}};
  std::string message;
  const int count = skyhaul::cup::Read(text, file, message);
  Require(count == -1 || skyhaul::cup::LooksLike(text));
  if (count < 0) {
    Require(file.waypoints.empty() && file.notes.empty() && !message.empty());
    return 0;
  }
  Require(file.waypoints.size() == static_cast<size_t>(count) && message.empty());
  for (const FileWaypoint& waypoint : file.waypoints) RequireOnTheGlobe(waypoint);
  RequireWrittenBack(file.waypoints);
  return 0;
}
