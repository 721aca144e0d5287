#include "formats/waypoints/waypoint_list.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "core/units.h"
#include "formats/text/charset.h"
#include "formats/text/scan.h"

namespace skyhaul {

namespace {

constexpr size_t kNameRoom = sizeof(WaypointRecord::name) - 1;

// The names of a list under construction. Capitals make no difference to it, because most
// instruments show capitals only.
struct NameTable {
  std::unordered_set<std::string> taken;
  std::unordered_map<std::string, unsigned> next_number;  // by the name before its digits
};

std::string Capitals(std::string text) {
  for (char& c : text) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  return text;
}

// The first of name, name with 2, with 3, ... in its last places that nobody has. A list that has
// used up all numbers keeps the name as it is.
std::string FreeName(const std::string& name, NameTable& table) {
  if (table.taken.insert(Capitals(name)).second) return name;
  unsigned& number = table.next_number.try_emplace(Capitals(name), 2).first->second;
  while (true) {
    const std::string digits = std::to_string(number);
    if (digits.size() > kNameRoom) return name;
    ++number;
    std::string numbered = name.substr(0, kNameRoom - digits.size()) + digits;
    if (table.taken.insert(Capitals(numbered)).second) return numbered;
  }
}

template <size_t size>
void CopyText(char (&room)[size], std::string_view text) {
  const size_t length = std::min(text.size(), size - 1);
  std::memset(room, 0, size);
  std::memcpy(room, text.data(), length);
}

int32_t AltitudeInMetres(double altitude_m) {
  constexpr double kMin = std::numeric_limits<int32_t>::min();
  constexpr double kMax = std::numeric_limits<int32_t>::max();
  if (std::isnan(altitude_m)) return 0;
  return RoundHalfAwayFromZero(std::clamp(altitude_m, kMin, kMax));
}

WaypointRecord FitAllButName(const FileWaypoint& waypoint) {
  WaypointRecord record = {.lat = waypoint.lat,
                           .lon = waypoint.lon,
                           .altitude = AltitudeInMetres(waypoint.altitude_m),
                           .time = waypoint.time,
                           .type = waypoint.type};
  const std::string name = ToAscii(OneLine(waypoint.name));
  std::string description = ToAscii(OneLine(waypoint.description));
  if (description.empty() && name.size() > kNameRoom) description = name;
  CopyText(record.description, description);
  return record;
}

template <size_t size>
std::string TextOf(const char (&room)[size]) {
  return ToUtf8(
      std::string_view(room, static_cast<size_t>(std::find(room, room + size, '\0') - room)));
}

}  // namespace

int FitWaypoints(std::span<const FileWaypoint> waypoints, std::vector<WaypointRecord>& records) {
  records.clear();
  records.reserve(waypoints.size());
  NameTable table;
  std::vector<std::string> names;
  names.reserve(waypoints.size());
  // Names that need no change are nobody else's, wherever in the list they stand.
  for (const FileWaypoint& waypoint : waypoints) {
    names.push_back(ToAscii(OneLine(waypoint.name)));
    if (names.back() == waypoint.name && names.back().size() <= kNameRoom) {
      table.taken.insert(Capitals(names.back()));
    }
  }
  int cut = 0;
  for (size_t i = 0; i < waypoints.size(); ++i) {
    std::string& name = names[i];
    if (name.size() > kNameRoom) {
      name.resize(kNameRoom);
      name = FreeName(std::string(TrimBlanks(name)), table);
      ++cut;
    } else if (name != waypoints[i].name) {
      name = FreeName(name, table);
    }
    records.push_back(FitAllButName(waypoints[i]));
    CopyText(records.back().name, name);
  }
  return cut;
}

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
