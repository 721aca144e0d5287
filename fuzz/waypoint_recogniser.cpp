// The waypoint list as an instrument could send it: whatever is accepted lies in its range, is a
// string in every field and goes out again as a sentence of bounded length.

#include "protocols/flytec/waypoint_recogniser.h"

#include <cstring>

#include "fuzz/frame.h"
#include "protocols/flytec/field_text.h"
#include "protocols/flytec/waypoint_upload.h"

namespace skyhaul {

using namespace flytec;

void Fuzz(std::string_view text) {
  WaypointRecogniser recogniser;
  for (const char c : text) {
    const int result = FeedWaypointByte(recogniser, static_cast<uint8_t>(c));
    Require(result <= 1 && result >= -kWaypointLfMissing);
    Require(result == 1 || recogniser.state == WaypointState::kStart);
    if (result != 0) continue;
    const WaypointRecord& waypoint = recogniser.waypoint;
    Require(std::strlen(waypoint.name) <= kWaypointShortName);
    Require(std::strlen(waypoint.description) <= kWaypointLongName);
    Require(waypoint.altitude >= -9999 && waypoint.altitude <= 99999);
    Require(std::abs(int64_t{waypoint.lat}) <= 1 << 30);
    const FileWaypoint sent = {.lat = waypoint.lat,
                               .lon = waypoint.lon,
                               .altitude_m = static_cast<double>(waypoint.altitude),
                               .description = waypoint.description};
    if (!WaypointObstacle(sent).empty()) continue;
    Require(WaypointSentence(sent, FieldText(sent.description)).size() < 80);
  }
}

}  // namespace skyhaul
