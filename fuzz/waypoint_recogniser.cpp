// The waypoint list as an instrument could send it: whatever is accepted lies in its range, is a
// string in every field and goes out again as a sentence of bounded length.

#include "protocols/flytec/waypoint_recogniser.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "protocols/flytec/field_text.h"
#include "protocols/flytec/waypoint_upload.h"

namespace {

void Require(bool holds) {
  if (!holds) __builtin_trap();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace skyhaul;
  using namespace skyhaul::flytec;
  constexpr int32_t kQuarterTurn = 1 << 30;  // semicircles
  WaypointRecogniser recogniser;
  for (size_t i = 0; i < size; ++i) {
    const int result = FeedWaypointByte(recogniser, data[i]);
    Require(result <= 1 && result >= -kWaypointLfMissing);
    Require((result == 1) || recogniser.state == WaypointState::kStart);
    if (result != 0) continue;
    const WaypointRecord& waypoint = recogniser.waypoint;
    Require(std::strlen(waypoint.name) <= kWaypointShortName);
    Require(std::strlen(waypoint.description) <= kWaypointLongName);
    Require(waypoint.altitude >= -9999 && waypoint.altitude <= 99999);
    Require(waypoint.lat >= -kQuarterTurn && waypoint.lat <= kQuarterTurn);
    const FileWaypoint sent = {.lat = waypoint.lat,
                               .lon = waypoint.lon,
                               .altitude_m = static_cast<double>(waypoint.altitude),
                               .description = waypoint.description};
    if (!WaypointObstacle(sent).empty()) continue;
    Require(WaypointSentence(sent, FieldText(sent.description)).size() < 80);
  }
  return 0;
}
