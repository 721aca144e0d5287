// Any bytes as an OziExplorer waypoint file: what is read must be in range and come back.

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "formats/ozi/read_ozi.h"
#include "formats/ozi/write_ozi.h"

namespace {

void Require(bool holds) {
  if (!holds) __builtin_trap();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  skyhaul::WaypointFile file;
  std::string message;
  const int count = skyhaul::ozi::ReadWaypoints(text, file, message);
  if (count < 0) {
    Require(count == -1 && file.waypoints.empty() && file.notes.empty() && !message.empty());
    return 0;
  }
  Require(message.empty() && skyhaul::ozi::LooksLikeWaypoints(text));
  skyhaul::WaypointFile again;
  Require(skyhaul::ozi::ReadWaypoints(skyhaul::ozi::WriteWaypoints(file.waypoints), again,
                                      message) == count);
  for (size_t i = 0; i < file.waypoints.size(); ++i) {
    Require(again.waypoints[i].lat == file.waypoints[i].lat);
    Require(again.waypoints[i].lon == file.waypoints[i].lon);
    Require(again.waypoints[i].time == file.waypoints[i].time);
    Require(std::isfinite(file.waypoints[i].altitude_m));
  }
  return 0;
}
