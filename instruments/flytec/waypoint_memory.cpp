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

// Three characters and tens of metres. Without the digits there would be no altitude.
bool ReadShortName(std::string_view name, StoredWaypoint& waypoint) {
  const int tens = name.size() == 6 ? WholeNumber(name.substr(3), 3) : -1;
  waypoint.short_name = name;
  waypoint.altitude_m = tens * 10;
  return tens >= 0;
}

}  // namespace

bool ReadUploadedWaypoint(std::string_view fields, StoredWaypoint& waypoint) {
  // 4743.564,N,01121.571,E,,Urthaler Hof     ,0620   or   4743.564,N,01121.571,E,URT062
  const std::vector<std::string_view> cut = CutFields(fields);
  const bool by_short_name = cut.size() == 5;
  if (CheckPosition(cut, 0) != PositionCheck::kSound) return false;
  const size_t position_length = cut[0].size() + cut[1].size() + cut[2].size() + cut[3].size() + 3;
  waypoint.position = fields.substr(0, position_length);
  if (by_short_name) return ReadShortName(cut[4], waypoint);
  if (cut.size() != 7 || !cut[4].empty() || cut[5].size() != kLongName) return false;
  if (!ReadAltitude(cut[6], waypoint.altitude_m)) return false;
  waypoint.long_name = cut[5];
  waypoint.short_name = ShortNameOf(waypoint.long_name, waypoint.altitude_m);
  return true;
}

bool ReadExtendedWaypoint(std::string_view fields, StoredWaypoint& waypoint) {
  // 4743.564,N,01121.571,E,,Urthaler Hof     ,0620,007
  const size_t comma = fields.rfind(',');
  if (comma == std::string_view::npos) return false;
  const int type = WholeNumber(fields.substr(comma + 1), 3);
  if (type < 0 || type > 255 || !ReadUploadedWaypoint(fields.substr(0, comma), waypoint)) {
    return false;
  }
  waypoint.type = static_cast<uint8_t>(type);
  return true;
}

bool StoreWaypoint(std::vector<StoredWaypoint>& memory, const StoredWaypoint& waypoint,
                   size_t room) {
  const bool by_short_name = waypoint.long_name.empty();
  const auto known =
      std::find_if(memory.begin(), memory.end(), [&](const StoredWaypoint& candidate) {
        return by_short_name ? candidate.short_name == waypoint.short_name
                             : candidate.long_name == waypoint.long_name;
      });
  if (known != memory.end() && by_short_name) {
    known->position = waypoint.position;
  } else if (known != memory.end()) {
    *known = waypoint;
  } else if (memory.size() >= room) {
    return false;
  } else {
    memory.push_back(waypoint);
    std::string& long_name = memory.back().long_name;
    if (by_short_name) long_name = waypoint.short_name + std::string(kLongName - 6, ' ');
  }
  return true;
}

std::string WaypointListBody(const StoredWaypoint& waypoint) {
  char altitude[16];
  (void)std::snprintf(altitude, sizeof altitude, "%04d", waypoint.altitude_m);
  return "PBRWPS," + waypoint.position + "," + waypoint.short_name + "," + waypoint.long_name +
         "," + altitude;
}

std::string ExtendedWaypointListBody(const StoredWaypoint& waypoint) {
  // PBRWPSE,4743.564,N,01121.571,E,URT062,Urthaler Hof     ,0620,007
  char type[16];
  (void)std::snprintf(type, sizeof type, ",%03u", waypoint.type);
  return "PBRWPSE" + WaypointListBody(waypoint).substr(6) + type;
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
