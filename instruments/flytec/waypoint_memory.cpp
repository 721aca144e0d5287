#include "instruments/flytec/waypoint_memory.h"

#include <algorithm>
#include <cstdio>

#include "instruments/flytec/instrument_text.h"

namespace skyhaul::flytec_simulator {

namespace {

constexpr size_t kLongName = 17;
constexpr size_t kLongestAltitude = 5;

// Returns false when the text is not an altitude.
bool ReadAltitude(std::string_view text, int& altitude_m) {
  const bool negative = text.starts_with('-');
  const std::string_view digits = text.substr(negative ? 1 : 0);
  if (digits.empty() || text.size() > kLongestAltitude) return false;
  const int number = WholeNumber(digits, digits.size());
  altitude_m = negative ? -number : number;
  return number >= 0;
}

// The first three characters in capitals, then tens of metres: "URT062" is 620 m high.
std::string ShortNameOf(const std::string& long_name, int altitude_m) {
  std::string name = long_name.substr(0, 3);
  for (char& c : name) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  char digits[16];
  (void)std::snprintf(digits, sizeof digits, "%03d", std::clamp(altitude_m, 0, 9999) / 10);
  return name + digits;
}

}  // namespace

bool ReadUploadedWaypoint(std::string_view fields, StoredWaypoint& waypoint) {
  const std::vector<std::string_view> cut = CutFields(fields);
  if (cut.size() != 7 || CheckPosition(cut, 0) != PositionCheck::kSound) return false;
  if (!cut[4].empty() || cut[5].size() != kLongName) return false;
  if (!ReadAltitude(cut[6], waypoint.altitude_m)) return false;
  const size_t position_length = cut[0].size() + cut[1].size() + cut[2].size() + cut[3].size() + 3;
  waypoint.position = fields.substr(0, position_length);
  waypoint.long_name = cut[5];
  waypoint.short_name = ShortNameOf(waypoint.long_name, waypoint.altitude_m);
  return true;
}

bool StoreWaypoint(std::vector<StoredWaypoint>& memory, const StoredWaypoint& waypoint,
                   size_t room) {
  const auto has_name = [&](const StoredWaypoint& known) {
    return known.long_name == waypoint.long_name;
  };
  const auto known = std::find_if(memory.begin(), memory.end(), has_name);
  if (known != memory.end()) {
    *known = waypoint;
    return true;
  }
  if (memory.size() >= room) return false;
  memory.push_back(waypoint);
  return true;
}

std::string WaypointListBody(const StoredWaypoint& waypoint) {
  char altitude[16];
  (void)std::snprintf(altitude, sizeof altitude, "%04d", waypoint.altitude_m);
  return "PBRWPS," + waypoint.position + "," + waypoint.short_name + "," + waypoint.long_name +
         "," + altitude;
}

StoredWaypoint GenerateWaypoint(uint32_t n) {
  // Steps that share no factor with their range spread the points over it without repeating.
  char text[64];
  (void)std::snprintf(text, sizeof text, "46%02u.%03u,N,%03u%02u.%03u,E,,P%03u%-13s,%04u",
                      n * 7 % 60, n * 137 % 1000, 7 + n % 5, n * 11 % 60, n * 211 % 1000, n % 1000,
                      " made up", 500 + n * 37 % 3000);
  StoredWaypoint waypoint;
  (void)ReadUploadedWaypoint(text, waypoint);
  return waypoint;
}

}  // namespace skyhaul::flytec_simulator
